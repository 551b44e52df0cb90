#pragma once

#include "vndatabase_export.h"

#include <QHash>
#include <QMutex>

class VNToviDatabaseInterface;

/// The process-wide owner of the open reference databases, one per database
/// type (delivered 7, user 9, merged 10). A database handed to setDb belongs
/// to the manager until closeDb or clear.
class VNDATABASE_EXPORT VNDatabaseToviMGR
{
public:
    /// The instance, made on first use.
    static VNDatabaseToviMGR* getInstance();
    static bool isInstanciated();
    /// Closes and deletes every registered database, then the instance.
    static void clear();

    // Copies share the databases: they do not take them over.
    VNDatabaseToviMGR(const VNDatabaseToviMGR& other);
    VNDatabaseToviMGR& operator=(const VNDatabaseToviMGR& other);
    virtual ~VNDatabaseToviMGR();

    /// The database registered under `type`, or null.
    VNToviDatabaseInterface* db(int type) const;
    /// Registers `db` under its type and takes it over, unless a database of
    /// that type is already registered: then nothing changes and the caller
    /// keeps `db`.
    void setDb(VNToviDatabaseInterface* db);
    /// Unregisters, closes and deletes the database of `type`, if any.
    void closeDb(int type);

protected:
    VNDatabaseToviMGR();

private:
    static VNDatabaseToviMGR* staticMe;
    static QMutex m_tSingletonMutex;

    QHash<int, VNToviDatabaseInterface*> m_databases;
};
