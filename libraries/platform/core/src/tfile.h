#pragma once

#include "vncore_export.h"

#include <QString>

/// File-system helpers. The last flag of each operation asks for a warning
/// through the logger when the operation fails; callers that report failures
/// in their own words pass false.
class VNCORE_EXPORT TFile
{
public:
    /// Creates the folder `path`; its parent must exist. True when it exists afterwards.
    static bool mkdir(const QString& path, bool logErrors);
    /// Creates the folder `path` and every missing parent. True when it exists afterwards.
    static bool mkdirs(const QString& path, bool logErrors);
    /// Copies `source` to `target` atomically (the target is complete or
    /// untouched). With `failIfExists` an existing target is kept and false returned.
    static bool copyFile(const QString& source, const QString& target, bool failIfExists, bool logErrors);
};
