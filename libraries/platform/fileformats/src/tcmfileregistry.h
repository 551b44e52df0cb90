#pragma once

#include "vnfileformats_export.h"

#include <QString>

class TCMFile;

/// The acquisition files open in the process, one `TCMFile` per path.
///
/// Everyone who reads an analysis shares its file: the content loaded by one
/// reader (for multichannel data) is released by another (when the data are
/// given back), so both must hold the same object. Files are opened on first
/// use and reopened when the file on disk was replaced (an analysis rewritten
/// by an import), so a reader never sees a stale map. Not thread-safe: the
/// application reads acquisitions on its user-interface thread.
class VNFILEFORMATS_EXPORT TCMFileRegistry
{
public:
    /// The shared file for `path`, or null when it is missing or refused (the
    /// reason is logged as a debug message). Owned by the registry.
    static TCMFile* file(const QString& path);
    /// Counts one more holder of the loaded content of `path`: readers that
    /// keep reading it (multichannel data) hold it, so that another reader
    /// giving it back does not unload it under them.
    static void hold(const QString& path);
    /// One holder gives the content of `path` back; the content is unloaded
    /// when the last holder goes, or at once when nobody held it. The file
    /// stays open.
    static void release(const QString& path);
    /// How many holders the content of `path` has.
    static int holders(const QString& path);
    /// Closes and forgets `path` (before the file is removed or replaced).
    static void forget(const QString& path);
    /// Closes every file.
    static void clear();
    /// The number of open files.
    static int count();
};
