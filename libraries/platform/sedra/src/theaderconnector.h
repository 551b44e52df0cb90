#pragma once

#include "databasetype.h"
#include "vnsedra_export.h"

#include <QSqlDatabase>
#include <QString>

namespace Sedra {

/// Owns the SQLite connection of one header database (a connection name of
/// its own, so that any number of databases are open side by side) and knows
/// the header file and its schema.
///
/// Schema: meta(name PRIMARY KEY, value), objects(id, type, key, name,
/// parent_type, parent, path) unique on (type, key), properties(object, name,
/// value, position) unique on (object, name).
class VNSEDRA_EXPORT THeaderConnector
{
public:
    THeaderConnector();
    virtual ~THeaderConnector();
    THeaderConnector(const THeaderConnector&) = delete;
    THeaderConnector& operator=(const THeaderConnector&) = delete;

    /// The header file name of a database of `type` inside its working folder,
    /// so that databases of different types can share one folder.
    static QString fileNameForType(DatabaseType type);
    /// The file name this connector uses; reference connectors may choose their own.
    virtual QString databaseFileName(DatabaseType type) const;

    /// Opens (and, unless read-only, creates) the header of a database of
    /// `type` in `folder`. A file that is not a header database is refused:
    /// false, with the reason in `error`.
    bool open(const QString& folder, DatabaseType type, bool readOnly, QString* error);
    void close();
    bool isOpen() const;
    bool isReadOnly() const { return m_readOnly; }

    QSqlDatabase database() const;
    const QString& connectionName() const { return m_connectionName; }
    /// The full path of the header file (empty before open()).
    QString getDbFilename() const { return m_fileName; }

    QString metaValue(const QString& name) const;
    bool setMetaValue(const QString& name, const QString& value);
    QString serialNumber() const;
    bool setSerialNumber(const QString& serial);
    /// Reads the serial number through another connection to a header file
    /// (used to compare databases without opening them as databases). An
    /// empty string when the connection holds no serial number.
    virtual QString readSerialNumber(QSqlDatabase* db) const;
    /// The same through a read-only connection of its own to `fileName`; an
    /// empty string when the file is missing or holds no serial number.
    QString readSerialNumberFromFile(const QString& fileName) const;

    static const char* const SerialKey;

    /// The type of the database this connector opened (undefined before open()).
    DatabaseType databaseType() const { return m_type; }

    /// Whether the header keeps parameter values of analyses (table
    /// parameter_values: object, parameter, name, value, reason, position):
    /// project headers do, reference headers do not.
    bool hasParameterValues() const;

    /// Called inside every transaction that changes records, just before it
    /// commits; false rolls the transaction back. Reference connectors give
    /// their database a new serial number here, so that the serial changes
    /// in the same transaction as the data.
    virtual bool beforeCommit(QSqlDatabase& db);

protected:
    /// Called inside the transaction that writes the schema of a new header
    /// file; false abandons the file's creation.
    virtual bool initializeNewFile(QSqlDatabase& db);

private:
    bool createSchema(QString* error);
    /// Brings a header written by an earlier version of the schema to the
    /// current one, in one transaction; a current header is left as it is.
    bool migrate(QString* error);
    bool checkSchema(QString* error) const;

    QString m_connectionName;
    QString m_fileName;
    bool m_readOnly = false;
    DatabaseType m_type = DatabaseUndefined;
};

} // namespace Sedra
