#pragma once

#include "tabstractdatabase.h"
#include "tproperty.h"

#include <QList>
#include <QString>

namespace Sedra {

class TDatabase;
class THeaderConnector;

/// One object row of a header file, with its properties in their order.
struct VNSEDRA_EXPORT THeaderRow
{
    qint64 id = -1;
    int type = 0;
    QString key;
    QString name;
    int parentType = 0;
    QString parentKey;
    QString path;
    QList<TProperty> properties;
};

/// The header database of a database: the records it holds in memory (with
/// their indexes, see TAbstractDatabase) and the SQLite file in the working
/// folder they are written to. Every write of several rows is one
/// transaction: a failed write leaves the file as it was and the records
/// still marked modified.
class VNSEDRA_EXPORT THeaderDatabase : public TAbstractDatabase
{
public:
    THeaderDatabase();
    ~THeaderDatabase() override;

    /// The serial number written to the header. Kept until the header is
    /// bound when it is not open yet.
    void setSerialNumber(const QString& serial);
    QString serialNumber() const;

    /// Binds the header to `db`: opens (or, unless the database is read-only,
    /// creates) the header file in its working folder, through the connector
    /// that `db` provides. A file that is not a header database is refused
    /// with a warning naming it; false then, and the header stays closed.
    bool setCurrentProject(TDatabase* db);
    TDatabase* currentProject() const { return m_db; }
    /// Reads the records of the file back (for the kinds the database has a
    /// mapper for). False when the header is not bound.
    bool start();
    bool isStarted() const { return m_started; }
    bool isOpen() const;
    bool isReadOnly() const;
    /// Closes the file; the records stay in memory.
    void close();
    /// Reopens the bound file in the given mode (read-only or not).
    bool reopen(bool readOnly);

    THeaderConnector* connector() const { return m_connector; }
    /// Why the last open or write failed (translated when it comes from us,
    /// SQLite's own words otherwise).
    const QString& lastError() const { return m_lastError; }

    /// Adds a record to memory (taking ownership) and, when `write` is true
    /// and the file is open, to the file. On failure the record is not kept
    /// and is NOT deleted: the caller still owns it.
    bool addObject(TDatabaseObject* record, bool write);
    /// Writes `record` (when `flush` is true) or only marks it for the next
    /// flush. A null record writes every pending change.
    bool saveObjectToFile(TDatabaseObject* record, bool flush);
    /// Removes the records from memory and deletes them. With `flush` the rows
    /// go from the file first, in one transaction, and nothing changes when
    /// that fails; without it they go at the next flushDatabase().
    bool removeObjects(QList<TDatabaseObject*>& records, bool flush);
    /// Writes every modified record and every pending removal in one
    /// transaction.
    bool flushDatabase();
    /// Changes the name and key of a record, its index entries and its row.
    bool renameRecord(TDatabaseObject* record, const QString& name, const QString& key, bool flush);
    /// True when records or removals wait for a flush.
    bool hasPendingChanges() const;
    /// Forgets every record (after writing pending changes when the file is
    /// writable): the file keeps them.
    void clearObjects();

    /// The rows of the file, kind by kind in ascending kind number, each with
    /// its properties. Empty when the header is not open.
    QList<THeaderRow> readRows() const;
    /// True when the file has a row of this id.
    bool containsRow(qint64 id) const;

private:
    struct Statements;
    bool writeRecord(TDatabaseObject* record, QList<TDatabaseObject*>* inserted, Statements& statements);
    bool deleteRows(const QList<qint64>& ids);
    bool parkChangedKeys();
    bool refuseWrite();
    void fail(const QString& error);

    TDatabase* m_db = nullptr;
    THeaderConnector* m_connector = nullptr;
    QString m_pendingSerial;
    QString m_lastError;
    QList<qint64> m_pendingRemovals;
    bool m_started = false;
};

} // namespace Sedra
