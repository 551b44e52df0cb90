#pragma once

#include "projectmgrinterface.h"
#include "tdatabase.h"
#include "vnapplication_export.h"

#include <QObject>
#include <QPointer>

/// The default project manager: it holds the database of the open project,
/// owning it or not, and turns refresh requests into a signal. A database
/// destroyed elsewhere is forgotten, never left dangling.
class VNAPPLICATION_EXPORT TProjectMgr : public QObject, public ProjectMgrInterface
{
    Q_OBJECT
public:
    /// With `install`, the manager is the installed one while it lives.
    explicit TProjectMgr(bool install = true, QObject* parent = nullptr);
    /// Deletes the current database when the manager owns it.
    ~TProjectMgr() override;

    Sedra::TDatabase* getCurrentDatabase() const override;
    void refreshProject() override;

    /// Makes `database` the open project's database (null closes the
    /// project). The previous database is deleted when the manager owned it
    /// and it is not `database`.
    void setCurrentDatabase(Sedra::TDatabase* database, bool takeOwnership = false);
    /// Gives the current database back to the caller, who then owns it, and
    /// leaves no project open.
    Sedra::TDatabase* takeCurrentDatabase();
    bool ownsCurrentDatabase() const { return m_owned && m_database; }

    /// How many refreshes were asked for since the manager was made.
    int refreshCount() const { return m_refreshCount; }

signals:
    void currentDatabaseChanged(Sedra::TDatabase* database);
    void projectRefreshed();

private:
    QPointer<Sedra::TDatabase> m_database;
    bool m_owned = false;
    int m_refreshCount = 0;
};
