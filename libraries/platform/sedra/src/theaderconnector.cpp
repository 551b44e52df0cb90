#include <QVariant>
#include "theaderconnector.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include <vnobjecttype.h>

namespace Sedra {

namespace {
QAtomicInt s_connectionCounter;
// 2: reference compounds carry a retention index ("RetentionIndex"); files of
// version 1 gain it, empty, when they are first opened for writing.
// 3: project headers keep the parameter values computed for their analyses
// (table parameter_values); earlier project files gain the table, empty.
const int SchemaVersion = 3;

// Many values per analysis, read and replaced per analysis: a typed table
// keyed by the analysis' row, not objects with properties held in memory.
const char* const ParameterValuesSchema
    = "CREATE TABLE IF NOT EXISTS parameter_values (object INTEGER NOT NULL, parameter TEXT NOT NULL, "
      "name TEXT NOT NULL, value REAL, reason TEXT NOT NULL DEFAULT '', position INTEGER NOT NULL DEFAULT 0, "
      "PRIMARY KEY (object, parameter))";

// Runs a prepared statement with the given values bound in order.
bool bindAndRun(QSqlQuery& query, const char* first, const char* second = nullptr)
{
    query.addBindValue(QString::fromLatin1(first));
    if (second)
        query.addBindValue(QString::fromLatin1(second));
    return query.exec();
}

QString damaged(const QString& detail)
{
    return QCoreApplication::translate("SedraTr", "the file is not an SQLite database or is damaged (%1)",
                                       "le fichier n'est pas une base SQLite ou est endommagé (%1)")
        .arg(detail.trimmed());
}
} // namespace

const char* const THeaderConnector::SerialKey = "serial_number";

THeaderConnector::THeaderConnector()
    : m_connectionName(QStringLiteral("sedra-header-%1").arg(s_connectionCounter.fetchAndAddOrdered(1)))
{ }

THeaderConnector::~THeaderConnector()
{
    close();
}

QString THeaderConnector::fileNameForType(DatabaseType type)
{
    switch (type) {
    case DatabaseToviDelivered:
        return QStringLiteral("tovi-delivered.sqlite");
    case DatabaseToviUser:
        return QStringLiteral("tovi-user.sqlite");
    case DatabaseToviMerged:
        return QStringLiteral("tovi-merged.sqlite");
    default:
        return QStringLiteral("project.sqlite");
    }
}

QString THeaderConnector::databaseFileName(DatabaseType type) const
{
    return fileNameForType(type);
}

bool THeaderConnector::open(const QString& folder, DatabaseType type, bool readOnly, QString* error)
{
    close();
    QString reason;
    m_readOnly = readOnly;
    m_type = type;
    m_fileName = QDir(folder).filePath(databaseFileName(type));
    const QFileInfo info(m_fileName);
    if (info.exists() && !info.isFile()) {
        reason = QCoreApplication::translate("SedraTr", "the path is not a file", "le chemin n'est pas un fichier");
    } else if (readOnly && !info.exists()) {
        reason = QCoreApplication::translate("SedraTr", "the file does not exist and the database is read only",
                                             "le fichier n'existe pas et la base de données est en lecture seule");
    } else if (info.exists() && info.size() == 0) {
        // SQLite would take an empty file for a new database and write a
        // schema into it; an empty header is a damaged one (an interrupted
        // copy, a full disk) and is left for the user to look at.
        reason = QCoreApplication::translate("SedraTr", "the file is empty (0 bytes): it is not a database",
                                             "le fichier est vide (0 octet) : ce n'est pas une base de données");
    }
    if (reason.isEmpty()) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
        db.setDatabaseName(m_fileName);
        if (readOnly)
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (!db.open())
            reason = db.lastError().text();
        else if (checkSchema(&reason) && !readOnly && createSchema(&reason))
            migrate(&reason);
    }
    if (!reason.isEmpty()) {
        close();
        if (error)
            *error = reason;
        return false;
    }
    return true;
}

void THeaderConnector::close()
{
    if (QSqlDatabase::contains(m_connectionName)) {
        {
            QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_connectionName);
    }
}

bool THeaderConnector::isOpen() const
{
    return QSqlDatabase::contains(m_connectionName) && QSqlDatabase::database(m_connectionName, false).isOpen();
}

QSqlDatabase THeaderConnector::database() const
{
    return QSqlDatabase::database(m_connectionName, false);
}

bool THeaderConnector::checkSchema(QString* error) const
{
    // Reading the table list is the first access to the file: it is where
    // SQLite finds out that the file is not a database at all.
    QSqlQuery query(database());
    if (!query.prepare(QStringLiteral("SELECT name FROM sqlite_master WHERE type = ?"))
        || !bindAndRun(query, "table")) {
        *error = damaged(query.lastError().text());
        return false;
    }
    QSet<QString> tables;
    // A file with a valid first page can still be damaged further in.
    QSqlQuery check(database());
    if (!check.prepare(QStringLiteral("PRAGMA quick_check")) || !check.exec() || !check.next()
        || check.value(0).toString() != QLatin1String("ok")) {
        *error = damaged(check.lastError().isValid() ? check.lastError().text() : check.value(0).toString());
        return false;
    }
    while (query.next())
        tables.insert(query.value(0).toString());
    tables.remove(QStringLiteral("sqlite_sequence"));
    if (tables.isEmpty())
        return true;
    const QSet<QString> expected{QStringLiteral("meta"), QStringLiteral("objects"), QStringLiteral("properties")};
    if (!tables.contains(expected)) {
        *error = QCoreApplication::translate("SedraTr", "the file is an SQLite database of another application",
                                             "le fichier est une base SQLite d'une autre application");
        return false;
    }
    QSqlQuery version(database());
    version.prepare(QStringLiteral("SELECT value FROM meta WHERE name = ?"));
    version.addBindValue(QStringLiteral("schema_version"));
    if (!version.exec()) {
        *error = version.lastError().text();
        return false;
    }
    if (version.next() && version.value(0).toInt() > SchemaVersion) {
        *error = QCoreApplication::translate("SedraTr", "the file was written by a newer version (schema %1)",
                                             "le fichier a été écrit par une version plus récente (schéma %1)")
                     .arg(version.value(0).toInt());
        return false;
    }
    return true;
}

bool THeaderConnector::migrate(QString* error)
{
    QSqlDatabase db = database();
    QSqlQuery version(db);
    version.prepare(QStringLiteral("SELECT value FROM meta WHERE name = ?"));
    version.addBindValue(QStringLiteral("schema_version"));
    if (!version.exec() || !version.next() || version.value(0).toInt() >= SchemaVersion)
        return true;
    version.finish();
    if (!db.transaction()) {
        *error = db.lastError().text();
        return false;
    }
    const QStringList steps = {
        // Version 2: every reference compound gains its retention index, empty.
        isReferenceDatabase(m_type)
            ? QStringLiteral("INSERT INTO properties (object, name, value, position) "
                             "SELECT o.id, 'RetentionIndex', '', "
                             "(SELECT COALESCE(MAX(p.position), -1) + 1 FROM properties p WHERE p.object = o.id) "
                             "FROM objects o WHERE o.type = %1 AND NOT EXISTS (SELECT 1 FROM properties q "
                             "WHERE q.object = o.id AND q.name = 'RetentionIndex')")
                  .arg(int(VNObjectTypeCompound))
            : QString(),
        // Version 3: project headers gain the table of parameter values.
        hasParameterValues() ? QString::fromLatin1(ParameterValuesSchema) : QString(),
        QStringLiteral("UPDATE meta SET value = '%1' WHERE name = 'schema_version'").arg(SchemaVersion),
    };
    for (const QString& step : steps) {
        if (step.isEmpty())
            continue;
        QSqlQuery query(db);
        if (!query.exec(step)) {
            *error = query.lastError().text();
            db.rollback();
            return false;
        }
    }
    if (!db.commit()) {
        *error = db.lastError().text();
        return false;
    }
    return true;
}

bool THeaderConnector::createSchema(QString* error)
{
    const char* statements[] = {
        "CREATE TABLE IF NOT EXISTS meta (name TEXT PRIMARY KEY, value TEXT)",
        "CREATE TABLE IF NOT EXISTS objects (id INTEGER PRIMARY KEY AUTOINCREMENT, type INTEGER NOT NULL, "
        "key TEXT NOT NULL, name TEXT NOT NULL, parent_type INTEGER NOT NULL DEFAULT 0, "
        "parent TEXT NOT NULL DEFAULT '', path TEXT NOT NULL DEFAULT '', UNIQUE (type, key))",
        ("CREATE TABLE IF NOT EXISTS properties (object INTEGER NOT NULL, name TEXT NOT NULL, value TEXT, "
         "position INTEGER NOT NULL DEFAULT 0, PRIMARY KEY (object, name))"),
    };
    QSqlDatabase db = database();
    QSqlQuery existing(db);
    if (existing.prepare(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = ? AND name = ?")))
        bindAndRun(existing, "table", "objects");
    if (existing.next() && existing.value(0).toInt() > 0)
        return true; // nothing to write: an existing header is left byte for byte as it is
    if (!db.transaction()) {
        *error = db.lastError().text();
        return false;
    }
    for (const char* sql : statements) {
        QSqlQuery query(db);
        if (!query.prepare(QString::fromLatin1(sql)) || !query.exec()) {
            *error = query.lastError().text();
            db.rollback();
            return false;
        }
    }
    if (hasParameterValues()) {
        QSqlQuery query(db);
        if (!query.exec(QString::fromLatin1(ParameterValuesSchema))) {
            *error = query.lastError().text();
            db.rollback();
            return false;
        }
    }
    QSqlQuery meta(db);
    meta.prepare(QStringLiteral("INSERT OR REPLACE INTO meta (name, value) VALUES (?, ?)"));
    meta.addBindValue(QStringLiteral("schema_version"));
    meta.addBindValue(QString::number(SchemaVersion));
    if (!meta.exec()) {
        *error = meta.lastError().text();
        db.rollback();
        return false;
    }
    if (!initializeNewFile(db)) {
        *error = db.lastError().text();
        db.rollback();
        return false;
    }
    if (!db.commit()) {
        *error = db.lastError().text();
        return false;
    }
    return true;
}

bool THeaderConnector::hasParameterValues() const
{
    return !isReferenceDatabase(m_type);
}

bool THeaderConnector::beforeCommit(QSqlDatabase&)
{
    return true;
}

bool THeaderConnector::initializeNewFile(QSqlDatabase&)
{
    return true;
}

QString THeaderConnector::metaValue(const QString& name) const
{
    if (!isOpen())
        return QString();
    QSqlQuery query(database());
    query.prepare(QStringLiteral("SELECT value FROM meta WHERE name = ?"));
    query.addBindValue(name);
    if (!query.exec() || !query.next())
        return QString();
    return query.value(0).toString();
}

bool THeaderConnector::setMetaValue(const QString& name, const QString& value)
{
    if (!isOpen() || m_readOnly)
        return false;
    if (metaValue(name) == value && !metaValue(name).isNull())
        return true;
    QSqlQuery query(database());
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO meta (name, value) VALUES (?, ?)"));
    query.addBindValue(name);
    query.addBindValue(value.isNull() ? QStringLiteral("") : value);
    return query.exec();
}

QString THeaderConnector::serialNumber() const
{
    return metaValue(QString::fromLatin1(SerialKey));
}

bool THeaderConnector::setSerialNumber(const QString& serial)
{
    return setMetaValue(QString::fromLatin1(SerialKey), serial);
}

QString THeaderConnector::readSerialNumberFromFile(const QString& fileName) const
{
    if (!QFileInfo(fileName).isFile())
        return QString(QLatin1String(""));
    const QString name = QStringLiteral("sedra-serial-%1").arg(s_connectionCounter.fetchAndAddOrdered(1));
    QString serial(QLatin1String(""));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(fileName);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            serial = readSerialNumber(&db);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    return serial;
}

QString THeaderConnector::readSerialNumber(QSqlDatabase* db) const
{
    if (!db || !db->isOpen())
        return QString(QLatin1String(""));
    QSqlQuery query(*db);
    query.prepare(QStringLiteral("SELECT value FROM meta WHERE name = ?"));
    query.addBindValue(QString::fromLatin1(SerialKey));
    if (!query.exec() || !query.next())
        return QString(QLatin1String(""));
    return query.value(0).toString();
}

} // namespace Sedra
