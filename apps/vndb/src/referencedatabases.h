#pragma once

#include <databasetype.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>

class VNDatabaseFactory;
class VNToviDatabaseInterface;

/// The three reference databases of one folder, opened the way the
/// application opens them: the folder is the named value "TOVIDBDIR", the
/// databases come from the database factory and belong to VNDatabaseToviMGR,
/// and the merged one is kept current by VNDatabaseToviMerged.
class ReferenceDatabases
{
    Q_DECLARE_TR_FUNCTIONS(ReferenceDatabases)
public:
    ReferenceDatabases();
    ~ReferenceDatabases();
    ReferenceDatabases(const ReferenceDatabases&) = delete;
    ReferenceDatabases& operator=(const ReferenceDatabases&) = delete;

    /// The folder of `--dir`, else of the environment's TOVIDBDIR, else the
    /// demo workspace's.
    static QString defaultFolder();
    /// "delivered", "user", "merged" -> 7, 9, 10; DatabaseUndefined otherwise.
    static Sedra::DatabaseType typeOf(const QString& name);
    static QString nameOf(Sedra::DatabaseType type);
    static QString fileName(Sedra::DatabaseType type);

    /// Points the module at `folder`. Without `create`, the folder must hold
    /// the three database files already (nothing is created then); false with
    /// a translated one-line `error`.
    bool open(const QString& folder, bool create, QString* error);
    QString folder() const { return m_folder; }

    /// The database of `type`, opened on first use; null with `error`.
    VNToviDatabaseInterface* database(Sedra::DatabaseType type, QString* error);
    /// Gives the database of `type` a new serial number after a change. The
    /// merged database is current when its stamp equals the delivered and
    /// user serials; the storage does not change them on writes, so whoever
    /// changes a source says so here. False with `error`.
    bool markChanged(Sedra::DatabaseType type, QString* error);
    /// Rebuilds the merged database when either source changed (or reloads it).
    bool merge(QString* error);

private:
    QString m_folder;
    std::unique_ptr<VNDatabaseFactory> m_factory;
};
