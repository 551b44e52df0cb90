#include "tprojectmgr.h"

#include "tdatabase.h"

TProjectMgr::TProjectMgr(bool install, QObject* parent)
    : QObject(parent)
{
    if (install)
        ProjectMgrInterface::install(this);
}

TProjectMgr::~TProjectMgr()
{
    ProjectMgrInterface::uninstall(this);
    if (m_owned)
        delete m_database.data();
}

Sedra::TDatabase* TProjectMgr::getCurrentDatabase() const
{
    return m_database.data();
}

void TProjectMgr::refreshProject()
{
    ++m_refreshCount;
    emit projectRefreshed();
}

void TProjectMgr::setCurrentDatabase(Sedra::TDatabase* database, bool takeOwnership)
{
    Sedra::TDatabase* previous = m_database.data();
    const bool ownedPrevious = m_owned;
    m_database = database;
    m_owned = database && takeOwnership;
    if (previous && previous != database && ownedPrevious)
        delete previous;
    if (previous != database)
        emit currentDatabaseChanged(database);
}

Sedra::TDatabase* TProjectMgr::takeCurrentDatabase()
{
    Sedra::TDatabase* database = m_database.data();
    m_database = nullptr;
    m_owned = false;
    if (database)
        emit currentDatabaseChanged(nullptr);
    return database;
}
