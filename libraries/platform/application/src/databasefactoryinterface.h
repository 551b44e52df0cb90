#pragma once

#include "vnapplication_export.h"

#include <QString>

namespace Sedra {
class TDatabase;
enum DatabaseType : int;
} // namespace Sedra

/// The factory through which every database of the application is made, so
/// that the code that asks for a database never names the concrete classes.
/// The module that knows those classes installs its factory; returnMe() is
/// null while none is installed.
class VNAPPLICATION_EXPORT DatabaseFactoryInterface
{
public:
    DatabaseFactoryInterface() = default;
    DatabaseFactoryInterface(const DatabaseFactoryInterface&) = default;
    DatabaseFactoryInterface& operator=(const DatabaseFactoryInterface&) = default;
    /// An installed factory uninstalls itself: returnMe() never dangles.
    virtual ~DatabaseFactoryInterface();

    /// The factory installed last and still installed, or null.
    static DatabaseFactoryInterface* returnMe();
    /// Makes `factory` the current one; the caller keeps ownership.
    static void install(DatabaseFactoryInterface* factory);
    /// Removes `factory`; the one installed before it comes back.
    static void uninstall(DatabaseFactoryInterface* factory);

    /// A new, empty database of `type`, owned by the caller; null on failure.
    virtual Sedra::TDatabase* createDatabase(Sedra::DatabaseType type) = 0;
    /// A new database kept in the folder `path`, owned by the caller; null on failure.
    virtual Sedra::TDatabase* getDatabaseFromPath(const QString& path) = 0;
};
