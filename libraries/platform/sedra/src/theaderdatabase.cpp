#include <QVariant>
#include "theaderdatabase.h"

#include "vnsedralogging.h"

#include "tdatabase.h"
#include "tdatabaseobject.h"
#include "tdbtransaction.h"
#include "tfileobject.h"
#include "theaderconnector.h"
#include "tpropertyobject.h"

#include <messageloggerinterface.h>
#include <vnobject2.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

namespace Sedra {

THeaderDatabase::THeaderDatabase() = default;

THeaderDatabase::~THeaderDatabase()
{
    clearObjects();
    delete m_connector;
}

void THeaderDatabase::fail(const QString& error)
{
    m_lastError = error;
    qCWarning(vnSedra, "header %s: %s", qUtf8Printable(m_connector ? m_connector->getDbFilename() : QString()),
              qUtf8Printable(error));
}

void THeaderDatabase::setSerialNumber(const QString& serial)
{
    m_pendingSerial = serial.isNull() ? QString(QLatin1String("")) : serial;
    if (isOpen() && !isReadOnly())
        m_connector->setSerialNumber(m_pendingSerial);
}

QString THeaderDatabase::serialNumber() const
{
    return isOpen() ? m_connector->serialNumber() : m_pendingSerial;
}

bool THeaderDatabase::isOpen() const
{
    return m_connector && m_connector->isOpen();
}

bool THeaderDatabase::isReadOnly() const
{
    return m_connector && m_connector->isReadOnly();
}

void THeaderDatabase::close()
{
    if (m_connector)
        m_connector->close();
    m_started = false;
}

bool THeaderDatabase::setCurrentProject(TDatabase* db)
{
    if (db != m_db || !db) {
        clearObjects();
        m_pendingRemovals.clear();
    }
    close();
    m_db = db;
    m_lastError.clear();
    if (!db) {
        fail(QStringLiteral("no database to bind"));
        return false;
    }
    const QString folder = db->getCurrentWorkingPath();
    if (folder.isEmpty()) {
        fail(QStringLiteral("the database has no working folder"));
        return false;
    }
    delete m_connector;
    m_connector = db->getNewConnector();
    if (!m_connector) {
        fail(QStringLiteral("the database gives no connector"));
        return false;
    }
    bool readOnly = db->isReadOnly();
    if (!readOnly && !QFileInfo(folder).exists() && !QDir().mkpath(folder))
        readOnly = true;
    // A folder or a file we may not write makes the whole database read-only:
    // nothing on disk is to change then.
    const QFileInfo file(QDir(folder).filePath(m_connector->databaseFileName(db->getDatabaseType())));
    if (!readOnly && (!QFileInfo(folder).isWritable() || (file.exists() && !file.isWritable()))) {
        readOnly = true;
        db->setReadOnly(true);
    }
    QString error;
    if (!m_connector->open(folder, db->getDatabaseType(), readOnly, &error)) {
        fail(error);
        MessageLoggerInterface::Warning(
            QCoreApplication::translate("SedraTr", "The database file <b>%1</b> cannot be opened: %2",
                                        "Le fichier de base de données <b>%1</b> ne peut pas être ouvert : %2")
                .arg(file.filePath(), error),
            nullptr);
        return false;
    }
    if (!m_pendingSerial.isNull() && !readOnly)
        m_connector->setSerialNumber(m_pendingSerial);
    return true;
}

bool THeaderDatabase::reopen(bool readOnly)
{
    if (!m_db || !m_connector || m_connector->getDbFilename().isEmpty())
        return false;
    if (!readOnly && hasPendingChanges() && isOpen() && !isReadOnly())
        flushDatabase();
    else if (readOnly && isOpen() && !isReadOnly())
        flushDatabase();
    const bool started = m_started;
    m_connector->close();
    QString error;
    if (!m_connector->open(m_db->getCurrentWorkingPath(), m_db->getDatabaseType(), readOnly, &error)) {
        fail(error);
        m_started = false;
        return false;
    }
    m_started = started;
    return true;
}

bool THeaderDatabase::start()
{
    if (!isOpen()) {
        fail(QStringLiteral("the header is not bound to a file"));
        return false;
    }
    m_started = true;
    return m_db ? m_db->loadDatabase() : true;
}

bool THeaderDatabase::refuseWrite()
{
    fail(QStringLiteral("the database is read only"));
    MessageLoggerInterface::Warning(
        QCoreApplication::translate("SedraTr", "The database <b>%1</b> is read only: nothing was written",
                                    "La base de données <b>%1</b> est en lecture seule : rien n'a été écrit")
            .arg(m_connector ? m_connector->getDbFilename() : QString()),
        nullptr);
    return false;
}

bool THeaderDatabase::addObject(TDatabaseObject* record, bool write)
{
    if (!record || !insertObject(record)) {
        fail(QStringLiteral("the key is already used"));
        return false;
    }
    record->setModified(true);
    if (!write || !isOpen())
        return true;
    if (saveObjectToFile(record, true))
        return true;
    takeObject(record);
    return false;
}

// The statements that write records, prepared once for a whole flush.
struct THeaderDatabase::Statements
{
    explicit Statements(const QSqlDatabase& db)
        : insert(db)
        , update(db)
        , reinsert(db)
        , clearProperties(db)
        , insertProperty(db)
    {
        ok = insert.prepare(QStringLiteral("INSERT INTO objects (type, key, name, parent_type, parent, path) "
                                           "VALUES (?, ?, ?, ?, ?, ?)"))
            && update.prepare(QStringLiteral("UPDATE objects SET type = ?, key = ?, name = ?, parent_type = ?, "
                                             "parent = ?, path = ? WHERE id = ?"))
            && reinsert.prepare(QStringLiteral("INSERT INTO objects (id, type, key, name, parent_type, parent, path) "
                                               "VALUES (?, ?, ?, ?, ?, ?, ?)"))
            && clearProperties.prepare(QStringLiteral("DELETE FROM properties WHERE object = ?"))
            && insertProperty.prepare(
                QStringLiteral("INSERT INTO properties (object, name, value, position) VALUES (?, ?, ?, ?)"));
    }

    QString error() const
    {
        for (const QSqlQuery* query : {&insert, &update, &reinsert, &clearProperties, &insertProperty}) {
            if (query->lastError().isValid())
                return query->lastError().text();
        }
        return QStringLiteral("the statements could not be prepared");
    }

    QSqlQuery insert;
    QSqlQuery update;
    QSqlQuery reinsert;
    QSqlQuery clearProperties;
    QSqlQuery insertProperty;
    bool ok = false;
};

static QString orEmpty(const QString& text)
{
    return text.isNull() ? QString(QLatin1String("")) : text;
}

bool THeaderDatabase::writeRecord(TDatabaseObject* record, QList<TDatabaseObject*>* inserted, Statements& statements)
{
    if (!statements.ok) {
        fail(statements.error());
        return false;
    }
    const auto* file = dynamic_cast<const TFileObject*>(record);
    const QString path = file ? file->relativePath() : QString(QLatin1String(""));
    const bool isNew = record->id() < 0;
    QSqlQuery& query = isNew ? statements.insert : statements.update;
    query.addBindValue(record->type());
    query.addBindValue(record->key());
    query.addBindValue(record->name());
    query.addBindValue(record->parentType());
    query.addBindValue(orEmpty(record->parentKey()));
    query.addBindValue(path);
    if (!isNew)
        query.addBindValue(record->id());
    if (!query.exec()) {
        fail(query.lastError().text());
        return false;
    }
    if (isNew) {
        record->setId(query.lastInsertId().toLongLong());
        inserted->append(record);
    } else if (query.numRowsAffected() == 0) {
        // The row went away behind our back (another program): write it anew.
        QSqlQuery& again = statements.reinsert;
        again.addBindValue(record->id());
        again.addBindValue(record->type());
        again.addBindValue(record->key());
        again.addBindValue(record->name());
        again.addBindValue(record->parentType());
        again.addBindValue(orEmpty(record->parentKey()));
        again.addBindValue(path);
        if (!again.exec()) {
            fail(again.lastError().text());
            return false;
        }
    }
    QSqlQuery& clear = statements.clearProperties;
    clear.addBindValue(record->id());
    if (!clear.exec()) {
        fail(clear.lastError().text());
        return false;
    }
    const auto* withProperties = dynamic_cast<const TPropertyObject*>(record);
    if (!withProperties)
        return true;
    QSqlQuery& insert = statements.insertProperty;
    int position = 0;
    for (const TProperty& property : withProperties->properties()) {
        insert.addBindValue(record->id());
        insert.addBindValue(property.name());
        insert.addBindValue(orEmpty(property.value()));
        insert.addBindValue(position++);
        if (!insert.exec()) {
            fail(insert.lastError().text());
            return false;
        }
    }
    return true;
}

bool THeaderDatabase::deleteRows(const QList<qint64>& ids)
{
    QSqlDatabase db = m_connector->database();
    QSqlQuery properties(db);
    properties.prepare(QStringLiteral("DELETE FROM properties WHERE object = ?"));
    QSqlQuery objects(db);
    objects.prepare(QStringLiteral("DELETE FROM objects WHERE id = ?"));
    // An analysis' parameter values go with its row, in the same transaction.
    const bool values = m_connector->hasParameterValues();
    QSqlQuery parameterValues(db);
    if (values)
        parameterValues.prepare(QStringLiteral("DELETE FROM parameter_values WHERE object = ?"));
    for (qint64 id : ids) {
        properties.addBindValue(id);
        objects.addBindValue(id);
        if (values)
            parameterValues.addBindValue(id);
        if (!properties.exec() || !objects.exec() || (values && !parameterValues.exec())) {
            fail(properties.lastError().isValid()    ? properties.lastError().text()
                     : objects.lastError().isValid() ? objects.lastError().text()
                                                     : parameterValues.lastError().text());
            return false;
        }
    }
    return true;
}

bool THeaderDatabase::parkChangedKeys()
{
    // Keys that changed hands since the last flush (two records swapping
    // names) would collide row by row: their rows first get keys no record
    // has, then every row is written with its own.
    QSqlQuery park(m_connector->database());
    if (!park.prepare(QStringLiteral("UPDATE objects SET key = ? WHERE id = ?"))) {
        fail(park.lastError().text());
        return false;
    }
    for (const TDatabaseObject* record : keyChanges()) {
        // A record written since has its own key in its row already, and
        // only modified records are written again below.
        if (record->id() < 0 || !record->isModified())
            continue;
        park.addBindValue(QStringLiteral("\x01moving %1").arg(record->id()));
        park.addBindValue(record->id());
        if (!park.exec()) {
            fail(park.lastError().text());
            return false;
        }
    }
    return true;
}

bool THeaderDatabase::saveObjectToFile(TDatabaseObject* record, bool flush)
{
    if (!record)
        return flushDatabase();
    if (findByObject(record->object()) != record) {
        fail(QStringLiteral("the record does not belong to this database"));
        return false;
    }
    record->setModified(true);
    if (!flush)
        return true;
    if (!isOpen()) {
        fail(QStringLiteral("the header is not bound to a file"));
        return false;
    }
    if (isReadOnly())
        return refuseWrite();
    TDbTransaction transaction(m_connector->database());
    QList<TDatabaseObject*> inserted;
    Statements statements(m_connector->database());
    QSqlDatabase db = m_connector->database();
    if (transaction.isActive() && writeRecord(record, &inserted, statements) && m_connector->beforeCommit(db)
        && transaction.commit()) {
        record->setModified(false);
        return true;
    }
    if (!transaction.isActive() && m_lastError.isEmpty())
        fail(m_connector->database().lastError().text());
    for (TDatabaseObject* r : inserted)
        r->setId(-1);
    return false;
}

bool THeaderDatabase::hasPendingChanges() const
{
    if (!m_pendingRemovals.isEmpty())
        return true;
    const QList<TDatabaseObject*> all = getObjectsList();
    for (const TDatabaseObject* record : all) {
        if (record->isModified())
            return true;
    }
    return false;
}

bool THeaderDatabase::flushDatabase()
{
    if (!hasPendingChanges())
        return true;
    if (!isOpen()) {
        fail(QStringLiteral("the header is not bound to a file"));
        return false;
    }
    if (isReadOnly())
        return refuseWrite();
    TDbTransaction transaction(m_connector->database());
    if (!transaction.isActive()) {
        fail(m_connector->database().lastError().text());
        return false;
    }
    QList<TDatabaseObject*> inserted;
    QList<TDatabaseObject*> written;
    bool ok = deleteRows(m_pendingRemovals) && parkChangedKeys();
    Statements statements(m_connector->database());
    const QList<TDatabaseObject*> all = getObjectsList();
    for (int i = 0; ok && i < all.size(); ++i) {
        if (!all.at(i)->isModified())
            continue;
        ok = writeRecord(all.at(i), &inserted, statements);
        written.append(all.at(i));
    }
    QSqlDatabase db = m_connector->database();
    if (ok && m_connector->beforeCommit(db) && transaction.commit()) {
        for (TDatabaseObject* record : written)
            record->setModified(false);
        m_pendingRemovals.clear();
        forgetKeyChanges();
        return true;
    }
    for (TDatabaseObject* record : inserted)
        record->setId(-1);
    return false;
}

bool THeaderDatabase::removeObjects(QList<TDatabaseObject*>& records, bool flush)
{
    QList<TDatabaseObject*> mine;
    QSet<TDatabaseObject*> seen;
    QList<qint64> ids;
    for (TDatabaseObject* record : records) {
        if (record && !seen.contains(record) && findByObject(record->object()) == record) {
            seen.insert(record);
            mine.append(record);
            if (record->id() >= 0)
                ids.append(record->id());
        }
    }
    if (mine.size() != records.size()) {
        fail(QStringLiteral("some records do not belong to this database"));
        return false;
    }
    if (isOpen() && isReadOnly())
        return refuseWrite();
    if (flush && isOpen() && !ids.isEmpty()) {
        TDbTransaction transaction(m_connector->database());
        QSqlDatabase db = m_connector->database();
        if (!transaction.isActive() || !deleteRows(ids) || !m_connector->beforeCommit(db) || !transaction.commit())
            return false;
    } else {
        m_pendingRemovals += ids;
    }
    takeObjects(mine);
    qDeleteAll(mine);
    records.clear();
    return true;
}

bool THeaderDatabase::renameRecord(TDatabaseObject* record, const QString& name, const QString& key, bool flush)
{
    if (!record)
        return false;
    const QString oldName = record->name();
    const QString oldKey = record->key();
    if (!renameObject(record, name, key)) {
        fail(QStringLiteral("the new key is already used"));
        return false;
    }
    record->setModified(true);
    if (!flush || !isOpen())
        return true;
    // Children follow the new key: they are written in the same flush.
    if (flushDatabase())
        return true;
    renameObject(record, oldName, oldKey);
    return false;
}

void THeaderDatabase::clearObjects()
{
    if (isOpen() && !isReadOnly() && hasPendingChanges())
        flushDatabase();
    deleteAllObjects();
    m_pendingRemovals.clear();
}

QList<THeaderRow> THeaderDatabase::readRows() const
{
    QList<THeaderRow> rows;
    if (!isOpen())
        return rows;
    QSqlDatabase db = m_connector->database();
    QSqlQuery objects(db);
    if (!objects.prepare(QStringLiteral("SELECT id, type, key, name, parent_type, parent, path FROM objects "
                                        "ORDER BY type, id"))
        || !objects.exec())
        return rows;
    QHash<qint64, int> byId;
    while (objects.next()) {
        THeaderRow row;
        row.id = objects.value(0).toLongLong();
        row.type = objects.value(1).toInt();
        row.key = objects.value(2).toString();
        row.name = objects.value(3).toString();
        row.parentType = objects.value(4).toInt();
        row.parentKey = objects.value(5).toString();
        row.path = objects.value(6).toString();
        byId.insert(row.id, rows.size());
        rows.append(row);
    }
    QSqlQuery properties(db);
    if (properties.prepare(QStringLiteral("SELECT object, name, value FROM properties ORDER BY object, position"))
        && properties.exec()) {
        while (properties.next()) {
            const int index = byId.value(properties.value(0).toLongLong(), -1);
            if (index >= 0)
                rows[index].properties.append(
                    TProperty(properties.value(1).toString(), properties.value(2).toString()));
        }
    }
    return rows;
}

bool THeaderDatabase::containsRow(qint64 id) const
{
    if (!isOpen())
        return false;
    QSqlQuery query(m_connector->database());
    query.prepare(QStringLiteral("SELECT 1 FROM objects WHERE id = ?"));
    query.addBindValue(id);
    return query.exec() && query.next();
}

} // namespace Sedra
