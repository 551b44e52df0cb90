#pragma once

#include "vndatabase_export.h"

#include <databasefactoryinterface.h>
#include <databasetype.h>

/// The application's factory of databases: it decides from a database type,
/// or from a folder, which class of this module makes the database.
class VNDATABASE_EXPORT VNDatabaseFactory : public DatabaseFactoryInterface
{
public:
    VNDatabaseFactory() = default;
    VNDatabaseFactory(const VNDatabaseFactory& other) = default;
    VNDatabaseFactory& operator=(const VNDatabaseFactory& other) = default;
    ~VNDatabaseFactory() override;

    /// A new database of `type`, owned by the caller: a reference database
    /// for the delivered, user and merged reference types, a project database
    /// for every other type. Null when it cannot be made.
    Sedra::TDatabase* createDatabase(Sedra::DatabaseType type) override;
    /// A new project database kept in the folder `path` (created when
    /// missing), owned by the caller; null when it cannot be made.
    Sedra::TDatabase* getDatabaseFromPath(const QString& path) override;
};
