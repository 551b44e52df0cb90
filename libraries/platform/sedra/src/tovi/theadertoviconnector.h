#pragma once

#include "theaderconnector.h"

#include <QHash>
#include <QStringList>

namespace Sedra {

class TDatabase;

/// What the last graphOverlaySync() found and did.
struct VNSEDRA_EXPORT TToviSyncReport
{
    /// Keys of the graph and overlay records dropped because their drawing
    /// file is missing (or their graph is gone).
    QStringList removed;
    /// Why the synchronisation failed; empty on success.
    QString error;
};

/// The connector of a reference database. Besides the header file it knows
/// the serial number (the stamp by which the merged database tells whether it
/// is current), makes graph and overlay records agree with their drawing
/// files, and groups many creations into one transaction (batches).
///
/// A connector may be told the database it serves (constructor or
/// setReferenceDatabase()); the reference mappers also tell it as soon as they hold
/// graph or overlay records. graphOverlaySync() then keeps the records in
/// memory and the rows of the file in step; without a database it works on
/// the rows of the file alone.
class VNSEDRA_EXPORT THeaderToviConnector : public THeaderConnector
{
public:
    explicit THeaderToviConnector(TDatabase* db = nullptr);
    ~THeaderToviConnector() override;

    /// The reference database this connector serves, or null.
    TDatabase* referenceDatabase() const { return m_owner; }
    void setReferenceDatabase(TDatabase* db) { m_owner = db; }

    /// Reads the serial number through `db`, a connection to a header file
    /// opened by the caller; an empty string when there is none.
    QString readSerialNumber(QSqlDatabase* db) const override;
    /// Writes the serial number through `db`, or through this connector's own
    /// connection when `db` is null. False when nothing could be written (a
    /// closed or read-only connection, a file that is not a header).
    bool writeSerialNumber(const QString& serial, QSqlDatabase* db = nullptr);
    /// A serial number no database has had: a new unique identifier.
    static QString newSerialNumber();
    /// True for the sources of the merge (delivered and user databases), whose
    /// serial changes with every committed change of their records.
    bool stampsChanges() const;
    /// Gives a source database a new serial inside the transaction.
    bool beforeCommit(QSqlDatabase& db) override;

    /// Makes records and files agree: every graph and overlay record whose
    /// drawing file is missing under the working folder, and every overlay
    /// whose graph is gone, is removed (records, rows and their dependants,
    /// in one transaction). True when afterwards every record has its file;
    /// false when the header is not open, or when records would have to go
    /// from a read-only database. Files without a record are left alone: the
    /// reference databases of one working folder share the graph folder.
    bool graphOverlaySync();
    const TToviSyncReport& lastSyncReport() const { return m_report; }

    /// Batches: while a batch is open the reference mappers keep new records
    /// in memory; the outermost endBatch() writes them all in one transaction
    /// (through the database's header) and returns whether that worked.
    /// Callers that write records themselves inside a batch should ask
    /// saveObjectToFile(record, !inBatch()) so that their writes join it.
    /// See TToviBatch for a scoped batch.
    void beginBatch() { ++m_batchDepth; }
    bool endBatch();
    bool inBatch() const { return m_batchDepth > 0; }
    /// Called by the reference mappers for each record they create while a
    /// batch is open; the end of the batch inserts these records with
    /// statements prepared once, then writes any other pending change.
    void noteCreated(int type, const QString& key);
    /// Sets a value of the header's meta table: at once, or at the end of the
    /// open batch.
    void noteMetaValue(const QString& name, const QString& value);

protected:
    /// Every new reference header gets a serial at creation, so that two new
    /// files never look alike (a fresh merged file is stale, not current).
    bool initializeNewFile(QSqlDatabase& db) override;

private:
    bool syncRecords();
    bool syncRows();
    bool writeCreated();

    TDatabase* m_owner = nullptr;
    int m_batchDepth = 0;
    QList<QPair<int, QString>> m_created;
    QHash<QString, QString> m_meta;
    TToviSyncReport m_report;
};

} // namespace Sedra
