#include "referencedatabases.h"

#include <databasefactoryinterface.h>
#include <tapplicationdata.h>
#include <tdatabase.h>
#include <tfile.h>
#include <theaderconnector.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vndatabasetovimerged.h>
#include <vndatabasetovimgr.h>
#include <vntovidatabaseinterface.h>

#include <QDir>
#include <QFileInfo>
#include <QUuid>

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
    case Sedra::DatabaseToviDelivered: return QStringLiteral("delivered");
    case Sedra::DatabaseToviUser: return QStringLiteral("user");
    case Sedra::DatabaseToviMerged: return QStringLiteral("merged");
    default: return QString();
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
        for (Sedra::DatabaseType type : {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
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

bool ReferenceDatabases::markChanged(Sedra::DatabaseType type, QString* error)
{
    VNToviDatabaseInterface* db = database(type, error);
    if (!db)
        return false;
    // A fresh unique text: a serial that only counted up could meet an older
    // stamp again after a database file was replaced by a copy.
    const QString serial = QUuid::createUuid().toString(QUuid::WithoutBraces);
    Sedra::THeaderConnector* connector = db->getConnector();
    if (!connector || !connector->setSerialNumber(serial) || db->serialNumber() != serial) {
        *error = tr("the %1 reference database in '%2' cannot be written",
                    "la base de référence %1 de '%2' ne peut pas être écrite")
                     .arg(nameOf(type), m_folder);
        return false;
    }
    return true;
}

bool ReferenceDatabases::merge(QString* error)
{
    for (Sedra::DatabaseType type : {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
        if (!database(type, error))
            return false;
    }
    VNDatabaseToviMerged merged;
    if (!merged.synchronize()) {
        *error = tr("the merged reference database cannot be rebuilt", "la base de référence fusionnée ne peut pas être reconstruite");
        return false;
    }
    return true;
}
