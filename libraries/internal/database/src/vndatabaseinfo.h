#pragma once

#include "vndatabase_export.h"

#include <QString>

/// What a host application may want to print about the module it loaded.
class VNDATABASE_EXPORT VNDatabaseInfo
{
public:
    static QString version();
    static QString qtVersion();
};
