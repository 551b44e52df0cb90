#pragma once

namespace Sedra {

/// Kinds of databases. The numbers are part of the header files and of the
/// factory's contract: never renumber a value.
enum DatabaseType : int {
    DatabaseUndefined = 0,
    /// A project database that lives only in memory.
    DatabaseProject = 1,
    /// A project database kept in a project folder.
    DatabaseProjectFolder = 6,
    /// The reference database delivered with the application (read-only for the user).
    DatabaseToviDelivered = 7,
    /// A project database opened for an import or an export (a second project
    /// beside the open one). The number lies inside the reference range, but
    /// a database of this type is a project database.
    DatabaseProjectTransfer = 8,
    /// The same value under the name the factory code first used.
    DatabaseToviRetired = DatabaseProjectTransfer,
    /// The user's own reference database.
    DatabaseToviUser = 9,
    /// The reference database merged from the delivered and the user's ones.
    DatabaseToviMerged = 10
};

/// True for the reference kinds (7, 9, 10); every other type, 8 included, is
/// a project database.
inline bool isReferenceDatabase(DatabaseType type)
{
    return type == DatabaseToviDelivered || type == DatabaseToviUser || type == DatabaseToviMerged;
}

} // namespace Sedra
