#pragma once

#include <databasetype.h>

#include <QCoreApplication>
#include <QString>
#include <QList>
#include <QStringList>

#include <memory>

class VNDatabaseFactory;
class VNObject2;
class VNToviDatabaseInterface;
namespace Sedra {
class TToviCompound;
}

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
    /// Rebuilds the merged database when either source changed (or reloads it).
    bool merge(QString* error);

    /// Fills the delivered database from `sample` (the sample content when
    /// empty) when it holds no compound yet, and stamps it; `filled` says
    /// whether it did. False with `error`.
    bool fillDelivered(const QString& sample, bool* filled, QString* error);
    /// Adds a compound to the user database: `name` is its master name, `key`
    /// (the name when empty) both its identifier and its reference key, the
    /// other properties come from `model`. Refused when the merged or the user
    /// database knows the name or the key. The key made, or empty with `error`.
    QString addCompound(const QString& name, const QString& key, Sedra::TToviCompound* model, QString* error);
    /// After a change of the user database: writes what is pending (the
    /// storage gives it a new serial with the write) and rebuilds the merged
    /// one. False with `error`.
    bool userChanged(QString* error);
    /// How many objects of the delivered and user databases the merged one
    /// lacks (kind and key compared); -1 with `error`.
    int missingFromMerged(QString* error);

    /// "N compounds, N parameters, N ions, N joints, N aliases", translated.
    static QString counts(VNToviDatabaseInterface* db);
    /// The kinds that `objectsOf` lists, as the command line names them.
    static const QStringList& kinds();
    static QList<const VNObject2*> objectsOf(VNToviDatabaseInterface* db, const QString& kind);

private:
    QString m_folder;
    std::unique_ptr<VNDatabaseFactory> m_factory;
};
