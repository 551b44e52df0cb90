#include "vndatabasetovimerged.h"

#include "vndatabasetovimgr.h"
#include "vntovidatabaseinterface.h"

#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <tdatabase.h>
#include <tfile.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <theadertoviconnector.h>
#include <vnobjecttype.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>

namespace {
constexpr int kDelivered = Sedra::DatabaseToviDelivered;
constexpr int kUser = Sedra::DatabaseToviUser;
constexpr int kMerged = Sedra::DatabaseToviMerged;

// The serial of a merged copy from its making until its stamp.
const char* const kRebuilding = "rebuilding";

// Kinds in the order their dependants need them: ions and compounds before
// the joints and ratios that name them, graphs before their overlays.
constexpr int kImportOrder[] = {VNObjectTypeIon,   VNObjectTypeCompound, VNObjectTypeJoint,
                                VNObjectTypeRatio, VNObjectTypeGraph,    VNObjectTypeOverlay};

QString mergedSerial()
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    VNToviDatabaseInterface* delivered = manager->db(kDelivered);
    VNToviDatabaseInterface* user = manager->db(kUser);
    return (delivered ? delivered->serialNumber() : QString()) + (user ? user->serialNumber() : QString());
}

// SQLite keeps pending or half-written work in files beside the database; a
// leftover of the old merged file must never be applied to the new copy.
void removeWithSideFiles(const QString& file)
{
    QFile::remove(file);
    for (const char* side : {"-journal", "-wal", "-shm"})
        QFile::remove(file + QLatin1String(side));
}

// The copy of the delivered file carries the delivered serial: it is cleared
// before the copy takes the merged file's place, so that a rebuild cut short
// never looks current.
bool clearSerial(const QString& file)
{
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), file);
        db.setDatabaseName(file);
        if (db.open()) {
            Sedra::THeaderToviConnector connector;
            ok = connector.writeSerialNumber(QLatin1String(kRebuilding), &db);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(file);
    return ok;
}
} // namespace

VNDatabaseToviMerged::VNDatabaseToviMerged()
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    if (VNToviDatabaseInterface* delivered = manager->db(kDelivered))
        delivered->loadDatabase();
    if (VNToviDatabaseInterface* user = manager->db(kUser))
        user->loadDatabase();
}

VNDatabaseToviMerged::~VNDatabaseToviMerged() = default;

bool VNDatabaseToviMerged::synchronize()
{
    return synchronizeAll();
}

bool VNDatabaseToviMerged::isUpToDate()
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    VNToviDatabaseInterface* delivered = manager->db(kDelivered);
    if (!delivered || !delivered->graphOverlaySync())
        return false;
    VNToviDatabaseInterface* user = manager->db(kUser);
    if (!user || !user->graphOverlaySync())
        return false;
    VNToviDatabaseInterface* merged = manager->db(kMerged);
    return merged && merged->serialNumber() == mergedSerial();
}

bool VNDatabaseToviMerged::synchronizeAll()
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    if (!manager->db(kDelivered) || !manager->db(kUser) || !DatabaseFactoryInterface::returnMe())
        return false;
    if (isUpToDate()) {
        manager->db(kMerged)->loadDatabase();
        return true;
    }
    resetToVIDB();
    // Only a fresh copy, still marked as being rebuilt, is filled and
    // stamped: when no copy could be made, the old merged database stays as
    // it was, with a stamp that tells it stale, and is rebuilt next time.
    // The warning tells the failure; the answer, as for every other failure
    // of the rebuild, says only that both sources were there.
    VNToviDatabaseInterface* merged = manager->db(kMerged);
    if (!merged || merged->serialNumber() != QLatin1String(kRebuilding))
        return true;
    // A kind that could not be written leaves the copy unstamped, so the next
    // synchronisation rebuilds it instead of trusting half a merge.
    if (copyFromTo(manager->db(kUser), merged))
        saveMerged();
    return true;
}

void VNDatabaseToviMerged::resetToVIDB()
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    VNToviDatabaseInterface* delivered = manager->db(kDelivered);
    VNToviDatabaseInterface* merged = manager->db(kMerged);
    if (!delivered || !delivered->getConnector())
        return;
    const QString deliveredFile = delivered->getConnector()->getDbFilename();
    // The merged database is registered before any rebuild; without one, it
    // is made beside the delivered file.
    const QString workingPath = merged ? merged->getCurrentWorkingPath() : delivered->getCurrentWorkingPath();
    const QString mergedFile = merged && merged->getConnector()
        ? merged->getConnector()->getDbFilename()
        : QDir(workingPath).filePath(Sedra::THeaderConnector::fileNameForType(Sedra::DatabaseToviMerged));
    if (deliveredFile.isEmpty() || mergedFile.isEmpty() || QFileInfo(deliveredFile) == QFileInfo(mergedFile))
        return;

    // Made beside the merged file and put in its place only when complete:
    // the sources are only ever read.
    const QString rebuilt = mergedFile + QStringLiteral(".rebuild");
    removeWithSideFiles(rebuilt);
    if (!TFile::copyFile(deliveredFile, rebuilt, false, false) || !clearSerial(rebuilt)) {
        removeWithSideFiles(rebuilt);
        MessageLoggerInterface::Warning(
            tr("The merged reference database cannot be rebuilt: <b>%1</b> cannot be copied to <b>%2</b>",
               "La base de référence fusionnée ne peut pas être reconstruite : <b>%1</b> ne peut pas être "
               "copié vers <b>%2</b>")
                .arg(deliveredFile.toHtmlEscaped(), rebuilt.toHtmlEscaped()),
            nullptr);
        return;
    }

    manager->closeDb(kMerged);
    removeWithSideFiles(mergedFile);
    QFile::rename(rebuilt, mergedFile);
    removeWithSideFiles(rebuilt);

    Sedra::TDatabase* db = DatabaseFactoryInterface::returnMe()->createDatabase(Sedra::DatabaseToviMerged);
    auto* reference = dynamic_cast<VNToviDatabaseInterface*>(db);
    if (!reference) {
        delete db;
        return;
    }
    if (QDir::cleanPath(db->getCurrentWorkingPath()) != QDir::cleanPath(workingPath)) {
        db->setWorkingPath(workingPath);
        db->headerDb()->setCurrentProject(db);
    }
    reference->loadDatabase();
    manager->setDb(reference);
}

bool VNDatabaseToviMerged::copyFromTo(VNToviDatabaseInterface* from, VNToviDatabaseInterface* to)
{
    if (!from || !to)
        return false;
    bool all = true;
    for (int type : kImportOrder)
        all = to->importObjectsByType(from, type) && all;
    return all;
}

void VNDatabaseToviMerged::saveMerged()
{
    VNToviDatabaseInterface* merged = VNDatabaseToviMGR::getInstance()->db(kMerged);
    if (!merged)
        return;
    const QString serial = mergedSerial();
    if (auto* connector = dynamic_cast<Sedra::THeaderToviConnector*>(merged->getConnector())) {
        connector->setSerialNumber(serial);
        connector->writeSerialNumber(serial, nullptr);
    }
}

bool VNDatabaseToviMerged::updateMergedAfterGraphSaveORLorUSR()
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    VNToviDatabaseInterface* delivered = manager->db(kDelivered);
    VNToviDatabaseInterface* user = manager->db(kUser);
    if (!delivered || !user)
        return false;
    if (isUpToDate())
        return true;
    VNToviDatabaseInterface* merged = manager->db(kMerged);
    bool imported = merged != nullptr;
    if (merged) {
        for (VNToviDatabaseInterface* source : {delivered, user}) {
            imported = merged->importObjectsByType(source, VNObjectTypeGraph) && imported;
            imported = merged->importObjectsByType(source, VNObjectTypeOverlay) && imported;
        }
    }
    if (imported)
        saveMerged();
    return true;
}
