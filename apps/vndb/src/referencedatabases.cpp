#include "referencedatabases.h"

#include <databasefactoryinterface.h>
#include <tapplicationdata.h>
#include <tdatabase.h>
#include <tfile.h>
#include <ttovialias.h>
#include <ttovicompound.h>
#include <theaderconnector.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vndatabasetovimerged.h>
#include <vndatabasetovimgr.h>
#include <vndatabasetovisample.h>
#include <vnobject2.h>
#include <vntovidatabaseinterface.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace {
// The sample reference content: VNDB_REFERENCE_DATA when set, else the one
// beside the installed program, else the one of the source tree.
QString bundledSample()
{
    const QString fromEnvironment = qEnvironmentVariable("VNDB_REFERENCE_DATA");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QString installed
        = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/vndatabase/tovi-sample.json");
    if (QFileInfo::exists(installed))
        return QFileInfo(installed).canonicalFilePath();
#ifdef VNDB_REFERENCE_SAMPLE
    return QStringLiteral(VNDB_REFERENCE_SAMPLE);
#else
    return installed;
#endif
}

// Every key of a database, kind by kind, for comparing databases.
QSet<QString> allKeys(VNToviDatabaseInterface* db)
{
    QSet<QString> keys;
    for (const QString& kind : ReferenceDatabases::kinds()) {
        for (const VNObject2* object : ReferenceDatabases::objectsOf(db, kind))
            keys.insert(kind + QLatin1Char(':') + object->key());
    }
    for (const Sedra::TToviAlias* alias : db->getAllAlias())
        keys.insert(QStringLiteral("alias:") + alias->key());
    return keys;
}
} // namespace

ReferenceDatabases::ReferenceDatabases() = default;

ReferenceDatabases::~ReferenceDatabases()
{
    // The manager owns the databases: closing them writes what is pending.
    if (VNDatabaseToviMGR::isInstanciated())
        VNDatabaseToviMGR::clear();
    if (m_factory)
        DatabaseFactoryInterface::uninstall(m_factory.get());
}

QString ReferenceDatabases::defaultFolder()
{
    const QString fromEnvironment = qEnvironmentVariable("TOVIDBDIR");
    return fromEnvironment.isEmpty() ? QStringLiteral("vndb-demo/reference") : fromEnvironment;
}

Sedra::DatabaseType ReferenceDatabases::typeOf(const QString& name)
{
    if (name == QLatin1String("delivered"))
        return Sedra::DatabaseToviDelivered;
    if (name == QLatin1String("user"))
        return Sedra::DatabaseToviUser;
    if (name == QLatin1String("merged"))
        return Sedra::DatabaseToviMerged;
    return Sedra::DatabaseUndefined;
}

QString ReferenceDatabases::nameOf(Sedra::DatabaseType type)
{
    switch (type) {
    case Sedra::DatabaseToviDelivered:
        return QStringLiteral("delivered");
    case Sedra::DatabaseToviUser:
        return QStringLiteral("user");
    case Sedra::DatabaseToviMerged:
        return QStringLiteral("merged");
    default:
        return QString();
    }
}

QString ReferenceDatabases::fileName(Sedra::DatabaseType type)
{
    return Sedra::THeaderConnector::fileNameForType(type);
}

bool ReferenceDatabases::open(const QString& folder, bool create, QString* error)
{
    m_folder = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    const QFileInfo info(m_folder);
    if (create && !info.exists() && !TFile::mkdirs(m_folder, false)) {
        *error = tr("cannot create the folder '%1'", "impossible de créer le dossier '%1'").arg(m_folder);
        return false;
    }
    if (!QFileInfo(m_folder).isDir()) {
        *error = tr("reference folder '%1' does not exist (vndb ref init makes one)",
                    "le dossier de référence '%1' n'existe pas (vndb ref init en crée un)")
                     .arg(m_folder);
        return false;
    }
    if (!create) {
        for (Sedra::DatabaseType type :
             {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
            if (!QFileInfo(QDir(m_folder).filePath(fileName(type))).isFile()) {
                *error = tr("'%1' holds no reference databases (%2 is missing; vndb ref init makes them)",
                            "'%1' ne contient pas de bases de référence (%2 manque ; vndb ref init les crée)")
                             .arg(m_folder, fileName(type));
                return false;
            }
        }
    }
    TApplicationData* data = TApplicationData::getInstance();
    if (!data) {
        *error = tr("no application data", "pas de données d'application");
        return false;
    }
    data->setValue(QStringLiteral("TOVIDBDIR"), m_folder);
    m_factory = std::make_unique<VNDatabaseFactory>();
    DatabaseFactoryInterface::install(m_factory.get());
    return true;
}

VNToviDatabaseInterface* ReferenceDatabases::database(Sedra::DatabaseType type, QString* error)
{
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    if (VNToviDatabaseInterface* open = manager->db(int(type)))
        return open;
    Sedra::TDatabase* made = m_factory ? m_factory->createDatabase(type) : nullptr;
    auto* database = dynamic_cast<VNDatabaseTovi*>(made);
    if (!database) {
        delete made;
        database = new VNDatabaseTovi(type);
    }
    if (!database->headerDb() || !database->getConnector()) {
        delete database;
        *error = tr("the %1 reference database in '%2' cannot be opened",
                    "la base de référence %1 de '%2' ne peut pas être ouverte")
                     .arg(nameOf(type), m_folder);
        return nullptr;
    }
    database->loadDatabase();
    manager->setDb(database);
    return database;
}

bool ReferenceDatabases::merge(QString* error)
{
    for (Sedra::DatabaseType type :
         {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
        if (!database(type, error))
            return false;
    }
    VNDatabaseToviMerged merged;
    if (!merged.synchronize()) {
        *error = tr("the merged reference database cannot be rebuilt",
                    "la base de référence fusionnée ne peut pas être reconstruite");
        return false;
    }
    return true;
}

bool ReferenceDatabases::fillDelivered(const QString& sample, bool* filled, QString* error)
{
    *filled = false;
    VNToviDatabaseInterface* delivered = database(Sedra::DatabaseToviDelivered, error);
    if (!delivered)
        return false;
    if (!delivered->getAllCompounds().isEmpty())
        return true;
    QString file = sample;
    if (file.isEmpty())
        file = VNDatabaseToviSample::defaultFile();
    if (file.isEmpty())
        file = bundledSample();
    if (!VNDatabaseToviSample::load(delivered, file, error))
        return false;
    if (!delivered->flush()) {
        *error = tr("the delivered reference database in '%1' cannot be written",
                    "la base de référence livrée de '%1' ne peut pas être écrite")
                     .arg(m_folder);
        return false;
    }
    *filled = true;
    return true;
}

QString ReferenceDatabases::addCompound(const QString& name, const QString& key, Sedra::TToviCompound* model,
                                        QString* error)
{
    VNToviDatabaseInterface* user = database(Sedra::DatabaseToviUser, error);
    VNToviDatabaseInterface* merged = user ? database(Sedra::DatabaseToviMerged, error) : nullptr;
    if (!merged)
        return QString();
    // A compound always gets a reference key: it is how the merged database
    // finds the compound again when it copies the compound's joints.
    const QString made = key.isEmpty() ? name : key;
    if (merged->getCompoundByName(name) || user->getCompoundByName(name)) {
        *error = tr("compound '%1' exists already", "le composé '%1' existe déjà").arg(name);
        return QString();
    }
    if (made.trimmed().isEmpty() || made.contains(QLatin1Char(';'))) {
        *error = tr("'%1' is not a compound key", "'%1' n'est pas une clé de composé").arg(made);
        return QString();
    }
    if (merged->getCompound(made) || user->getCompound(made)) {
        *error = tr("compound '%1' exists already", "le composé '%1' existe déjà").arg(made);
        return QString();
    }
    model->setMasterName(name);
    model->setToviKey(made);
    const Sedra::TToviCompound* compound = user->createCompound(model, made);
    if (!compound) {
        *error = tr("compound '%1' cannot be added", "le composé '%1' ne peut pas être ajouté").arg(name);
        return QString();
    }
    return compound->key();
}

bool ReferenceDatabases::userChanged(QString* error)
{
    VNToviDatabaseInterface* user = database(Sedra::DatabaseToviUser, error);
    if (!user)
        return false;
    if (!user->flush()) {
        *error = tr("the user reference database cannot be written",
                    "la base de référence utilisateur ne peut pas être écrite");
        return false;
    }
    return merge(error);
}

const QStringList& ReferenceDatabases::kinds()
{
    static const QStringList names
        = {QStringLiteral("compounds"), QStringLiteral("parameters"), QStringLiteral("ions"),
           QStringLiteral("joints"),    QStringLiteral("graphs"),     QStringLiteral("overlays")};
    return names;
}

QList<const VNObject2*> ReferenceDatabases::objectsOf(VNToviDatabaseInterface* db, const QString& kind)
{
    if (kind == QLatin1String("compounds"))
        return db->getAllCompounds();
    if (kind == QLatin1String("parameters"))
        return db->getAllRatios();
    if (kind == QLatin1String("ions"))
        return db->getAllIons();
    if (kind == QLatin1String("joints"))
        return db->getAllJoints();
    if (kind == QLatin1String("graphs"))
        return db->getAllGraphs();
    if (kind == QLatin1String("overlays"))
        return db->getAllOverlays();
    return {};
}

QString ReferenceDatabases::counts(VNToviDatabaseInterface* db)
{
    return tr("%1 compounds, %2 parameters, %3 ions, %4 joints, %5 aliases",
              "%1 composés, %2 paramètres, %3 ions, %4 jointures, %5 alias")
        .arg(db->getAllCompounds().size())
        .arg(db->getAllRatios().size())
        .arg(db->getAllIons().size())
        .arg(db->getAllJoints().size())
        .arg(db->getAllAlias().size());
}

int ReferenceDatabases::missingFromMerged(QString* error)
{
    VNToviDatabaseInterface* delivered = database(Sedra::DatabaseToviDelivered, error);
    VNToviDatabaseInterface* user = delivered ? database(Sedra::DatabaseToviUser, error) : nullptr;
    VNToviDatabaseInterface* merged = user ? database(Sedra::DatabaseToviMerged, error) : nullptr;
    if (!merged)
        return -1;
    QSet<QString> missing = allKeys(delivered) + allKeys(user);
    missing.subtract(allKeys(merged));
    return missing.size();
}
