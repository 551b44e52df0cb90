#include "vndatabase.h"
#include "vndatabase_p.h"

#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <modulelauncherinterface.h>
#include <projectmgrinterface.h>
#include <tapplicationdata.h>
#include <tassert.h>
#include <tfile.h>
#include <tfileobject.h>
#include <theaderdatabase.h>
#include <txmlmethod.h>
#include <vnmapperfactory.h>
#include <vnobject2analysis.h>
#include <vnobject2indexation.h>
#include <vnobject2pixmap.h>
#include <vnobject2project.h>
#include <tdatasetmapper.h>
#include <tvariablemapper.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>

VNMapperFactory* VNDatabase::s_mapperFactory = nullptr;

namespace {
// A listed file is named by its whole name, or by what comes before its
// first dot: "a.b.c" is "a.b.c" or "a".
QString entryName(const QFileInfo& info, bool withSuffix)
{
    return withSuffix ? info.fileName() : info.baseName();
}
} // namespace

VNDatabase::VNDatabase(const Sedra::DatabaseType& type)
    : Sedra::TDatabase(type)
    , d(std::make_unique<VNDatabasePrivate>())
{
    setMapperFactory(s_mapperFactory);
    connectDeletion();
}

VNDatabase::VNDatabase(const QString& path, const QString& serial)
    : Sedra::TDatabase(Sedra::DatabaseProjectFolder)
    , d(std::make_unique<VNDatabasePrivate>())
{
    TFile::mkdirs(path, false);
    setWorkingPath(path);
    Sedra::TDatabase::clearDB();
    if (!serial.isNull())
        headerDb()->setSerialNumber(serial);
    // A header that cannot be bound leaves the object without mappers: the
    // caller finds out from the neutral results of its first operations.
    if (!headerDb()->setCurrentProject(this))
        return;
    headerDb()->start();
    synchronizeSQLRoot();
    setMapperFactory(s_mapperFactory);
    connectDeletion();
}

VNDatabase::~VNDatabase() = default;

void VNDatabase::connectDeletion()
{
    // Direct, so that the records are dropped inside the emitting call.
    connect(this, &Sedra::TDatabase::aboutToDeleteObjects, this, &VNDatabase::onAboutToDeleteObjects,
            Qt::DirectConnection);
}

void VNDatabase::s_mapperFactoryClear()
{
    delete s_mapperFactory;
    s_mapperFactory = nullptr;
}

bool VNDatabase::loadDatabase()
{
    return Sedra::TDatabase::loadDatabase();
}

void VNDatabase::clearDB()
{
    Sedra::TDatabase::clearDB();
}

bool VNDatabase::setProject(const VNObject2Project* project)
{
    forceDisableDatasetSave(0, false);
    clearDB();
    return Sedra::TDatabase::setProject(project);
}

QStringList VNDatabase::folderNameList()
{
    return {VNObject2Analysis::folderName(), VNObject2Indexation::folderName(), VNObject2Pixmap::folderName(),
            VNObject2Well::folderName()};
}

QStringList VNDatabase::scanDir(VNObjectType type, bool withSuffix) const
{
    const QString folder = VNObject2::folderName(type);
    // A database kept in memory has no folder: the kind's folder name alone
    // would be taken from the root of the file system.
    if (folder.isNull() || getCurrentWorkingPath().isEmpty())
        return QStringList();
    return scanDir(getCurrentWorkingPath() + QDir::separator() + folder, withSuffix);
}

QStringList VNDatabase::scanDir(const QString& path, bool withSuffix) const
{
    QDir dir(path);
    if (!dir.exists()) {
        MessageLoggerInterface::Information(
            QCoreApplication::translate("SedraTr", "Project structure is obsolete - Adding directory <b>%1</b>",
                                        "La structure du projet est obsolète - Ajout du dossier <b>%1</b>")
                .arg(path),
            nullptr);
        if (!TFile::mkdirs(path, false)) {
            MessageLoggerInterface::Information(QCoreApplication::translate("SedraTr",
                                                                            "Error while creating directory <b>%1</b>",
                                                                            "Echec de création du répertoire <b>%1</b>")
                                                    .arg(path),
                                                nullptr);
        }
        dir.refresh();
    }
    // The default listing holds "." and ".." for any readable folder, so an
    // empty one means the folder could not be read at all.
    const QFileInfoList entries = dir.entryInfoList();
    if (entries.isEmpty()) {
        MessageLoggerInterface::Warning(
            QCoreApplication::translate("SedraTr", "The directory <b>%1</b> is unreadable or does not exist",
                                        "Le répertoire <b>%1</b> n'est pas accessible")
                .arg(path),
            nullptr);
        return QStringList();
    }
    // Folders report a size of their own on some systems: only files count.
    QStringList names;
    for (const QFileInfo& info : entries) {
        if (info.isFile() && !info.baseName().isEmpty() && info.size() > 0)
            names.append(entryName(info, withSuffix));
    }
    return names;
}

QStringList VNDatabase::scanDir(const QString& path, bool withSuffix, const QString& suffix, bool files) const
{
    QDir dir(path);
    if (!dir.exists()) {
        if (!TFile::mkdirs(path, false))
            return QStringList();
        dir.refresh();
    }
    QStringList names;
    if (!files) {
        for (const QFileInfo& info : dir.entryInfoList(QDir::AllDirs | QDir::NoDotAndDotDot))
            names.append(info.fileName());
        return names;
    }
    for (const QFileInfo& info : dir.entryInfoList(QDir::Files | QDir::NoDotAndDotDot)) {
        if (info.baseName().isEmpty() || info.size() <= 0)
            continue;
        if (!suffix.isEmpty() && info.suffix() != suffix)
            continue;
        names.append(entryName(info, withSuffix));
    }
    return names;
}

void VNDatabase::synchronizeSQLRoot()
{
    if (isReadOnly()) {
        if (const VNObject2Project* bound = project()) {
            MessageLoggerInterface::Information(
                tr("Impossible to synchronize project <b>%1</b> because it is <b>Read Only</b> opened",
                   "Impossible de synchroniser le projet <b>%1</b> car il est ouvert en <b>Lecture Seule</b>")
                    .arg(bound->name()),
                nullptr);
        }
        return;
    }
    ProjectMgrInterface* manager = ProjectMgrInterface::returnMe();
    ModuleLauncherInterface* launcher = ModuleLauncherInterface::returnMe();
    if (manager && manager->getCurrentDatabase() == this && launcher && launcher->isModuleInUse()) {
        MessageLoggerInterface::Warning(
            tr("Impossible to synchronize a project while a module is being used",
               "Impossible de synchroniser un projet lorsqu'un module est en cours d'utilisation"),
            nullptr);
        return;
    }
    Sedra::TDatabase::synchronizeSQLRoot();
}

namespace {
const QString kLocalizationFile = QStringLiteral("localization.kml");
}

// An object's own folder (the storage's: wells, pixmaps... get a folder named
// after them inside their kind's folder, since one file there would be theirs all).
QString VNDatabase::geolocalizationFolder(const VNObject2* object) const
{
    return objectOwnFolder(object);
}

bool VNDatabase::setObjectGeolocalization(const VNObject2* object, const TLocalization& localization)
{
    if (!object || !localization.isValid())
        return false;
    if (isReadOnly()) {
        MessageLoggerInterface::Information(
            tr("Impossible to save the geolocation of <b>%1</b> because the project is <b>Read Only</b> opened",
               "Impossible d'enregistrer la géolocalisation de <b>%1</b> car le projet est ouvert en <b>Lecture "
               "Seule</b>")
                .arg(object->name()),
            nullptr);
        return false;
    }
    const QString folder = geolocalizationFolder(object);
    if (folder.isEmpty())
        return false;
    const QString path = QDir(folder).filePath(kLocalizationFile);
    QSaveFile file(path);
    const bool written = QDir().mkpath(folder) && file.open(QIODevice::WriteOnly)
        && file.write(localization.toKml(object->name())) >= 0 && file.commit();
    if (!written) {
        MessageLoggerInterface::Error(
            tr("Impossible to save geolocation file %1", "Impossible de sauvegarder le fichier de géolocalisation %1")
                .arg(path),
            nullptr);
    }
    return written;
}

TLocalization VNDatabase::getObjectGeolocalization(const VNObject2* object) const
{
    const QString folder = geolocalizationFolder(object);
    if (folder.isEmpty())
        return TLocalization();
    QFile file(QDir(folder).filePath(kLocalizationFile));
    if (!file.open(QIODevice::ReadOnly))
        return TLocalization();
    // A position file is a few hundred bytes; anything far larger is not ours.
    return TLocalization::fromKml(file.read(1 << 20));
}

bool VNDatabase::openSQLBase() const
{
    const TApplicationData* data = TApplicationData::getInstance();
    if (!data)
        return false;
    // The browser opens on its own: it is not told which database to show.
    const QString program = data->applicationRootPath() + QDir::separator() + QStringLiteral("bin\\sqlbrowser.exe");
    return QProcess::startDetached(program, QStringList());
}

QDomElement VNDatabase::getModelViewer(const QString& path, bool* ok)
{
    QDomDocument document;
    const bool loaded = TXMLMethod::load(&document, path, false, true);
    if (ok)
        *ok = loaded;
    return loaded ? TXMLMethod::detachedCopy(document.documentElement()) : QDomElement();
}

QString VNDatabase::getReferenceName(const QString& key1, const QString& key2)
{
    const VNObject2Variable* variable = getReference(key1, key2);
    return variable ? variable->name() : QString();
}

bool VNDatabase::datasetObjectSave(const VNObject2Dataset* dataset, bool flush)
{
    auto* mapper = dynamic_cast<const Sedra::TDatasetMapper*>(getMapper(VNObjectTypeDataset));
    if (!mapper) {
        t_assert("mapper != 0", "vndatabase", __LINE__, true);
        return false;
    }
    return mapper->save(dataset, flush);
}

bool VNDatabase::variableObjectSave(const VNObject2Variable* variable, bool flush)
{
    auto* mapper = dynamic_cast<const Sedra::TVariableMapper*>(getMapper(VNObjectTypeVariable));
    if (!mapper) {
        t_assert("mapper!= 0", "vndatabase", __LINE__, true);
        return false;
    }
    return mapper->save(variable, flush);
}
