#include "vndatabasetovimgr.h"

#include "vntovidatabaseinterface.h"

#include <QMutexLocker>

VNDatabaseToviMGR* VNDatabaseToviMGR::staticMe = nullptr;
QMutex VNDatabaseToviMGR::m_tSingletonMutex;

VNDatabaseToviMGR::VNDatabaseToviMGR() = default;

VNDatabaseToviMGR::VNDatabaseToviMGR(const VNDatabaseToviMGR& other) = default;

VNDatabaseToviMGR& VNDatabaseToviMGR::operator=(const VNDatabaseToviMGR& other) = default;

VNDatabaseToviMGR::~VNDatabaseToviMGR()
{
    for (auto it = m_databases.begin(); it != m_databases.end(); ++it) {
        it.value()->close();
        delete it.value();
    }
    m_databases.clear();
}

VNDatabaseToviMGR* VNDatabaseToviMGR::getInstance()
{
    if (staticMe)
        return staticMe;
    QMutexLocker lock(&m_tSingletonMutex);
    if (!staticMe)
        staticMe = new VNDatabaseToviMGR;
    return staticMe;
}

bool VNDatabaseToviMGR::isInstanciated()
{
    return staticMe != nullptr;
}

void VNDatabaseToviMGR::clear()
{
    delete staticMe;
    staticMe = nullptr;
}

VNToviDatabaseInterface* VNDatabaseToviMGR::db(int type) const
{
    return m_databases.value(type, nullptr);
}

void VNDatabaseToviMGR::setDb(VNToviDatabaseInterface* db)
{
    if (!db)
        return;
    const int type = int(db->getDatabaseType());
    if (m_databases.contains(type))
        return;
    m_databases.insert(type, db);
}

void VNDatabaseToviMGR::closeDb(int type)
{
    VNToviDatabaseInterface* db = m_databases.take(type);
    if (!db)
        return;
    db->close();
    delete db;
}
