#pragma once

#include <tdatabase.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class TModuleLauncher;
class TProjectMgr;
class VNDatabase;
class VNObject2Project;

/// A project folder opened the way the application opens it: a project
/// database from the database factory, bound to a project named after the
/// folder, made the project manager's current database, beside a module
/// launcher. Read-only opening never creates nor changes a file.
class ProjectDatabase : public QObject
{
    Q_OBJECT
public:
    ProjectDatabase();
    ~ProjectDatabase() override;

    /// Opens the project database of `folder`, which must exist. Without
    /// `readOnly` a missing header file is created; with it, a missing header
    /// file is a refusal. False with a translated one-line `error`.
    bool open(const QString& folder, bool readOnly, QString* error);

    VNDatabase* database() const { return m_database.get(); }
    const VNObject2Project* project() const { return m_project.get(); }
    TModuleLauncher* launcher() const { return m_launcher.get(); }
    QString folder() const { return m_folder; }
    /// The header file of a project folder.
    static QString headerFile(const QString& folder);

    /// The structure check of `folder` without a header: the sub-folders a
    /// project must hold and, for each, whether it exists. With `repair`
    /// the project database's folder scan recreates the missing ones (and
    /// says so: its messages are added to `messages` as terminal lines).
    struct Folder
    {
        QString name;
        bool existed = false;
        bool exists = false;
        int files = 0;
        int folders = 0;
    };
    static QList<Folder> checkStructure(const QString& folder, bool repair, QStringList* messages);

    /// Names of the analyses registered in the header, sorted.
    QStringList registeredAnalyses() const;

    /// What a synchronisation of the header with the folders did.
    struct SyncOutcome
    {
        /// Refused by the project database (read-only, module in use).
        bool refused = false;
        /// What the library said, as terminal lines; the last one is the
        /// reason of a refusal.
        QStringList messages;
        Sedra::TSyncReport report;
        QStringList analyses;
    };
    /// The project database's synchronisation of its SQL root.
    SyncOutcome synchronize();

private:
    QString m_folder;
    std::unique_ptr<TProjectMgr> m_manager;
    std::unique_ptr<TModuleLauncher> m_launcher;
    std::unique_ptr<VNObject2Project> m_project;
    std::unique_ptr<VNDatabase> m_database;
};
