#include "vndatabasefactory.h"

#include "vndatabase.h"
#include "vndatabasetovi.h"

#include <vnmapperfactory.h>

#include <new>

namespace {
// The shared mapper factories exist before any database of this module. The
// reference databases' factory (VNDatabaseTovi::s_mapperFactory, a plain
// Sedra::TMapperFactory) is made the same way beside VNDatabaseTovi.
struct MapperFactoriesAtLoad
{
    MapperFactoriesAtLoad()
    {
        if (!VNDatabase::s_mapperFactory)
            VNDatabase::s_mapperFactory = new (std::nothrow) VNMapperFactory;
    }
};
const MapperFactoriesAtLoad s_mapperFactoriesAtLoad;
} // namespace

VNDatabaseFactory::~VNDatabaseFactory() = default;

Sedra::TDatabase* VNDatabaseFactory::createDatabase(Sedra::DatabaseType type)
{
    // 8 lies inside the reference range but has always given a project
    // database; the gap is kept on purpose.
    const int offset = int(type) - int(Sedra::DatabaseToviDelivered);
    const bool reference = offset >= 0 && offset <= 3 && type != Sedra::DatabaseToviRetired;
    try {
        if (reference)
            return new VNDatabaseTovi(type);
        return new VNDatabase(type);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Sedra::TDatabase* VNDatabaseFactory::getDatabaseFromPath(const QString& path)
{
    try {
        return new VNDatabase(path, QStringLiteral("1"));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
