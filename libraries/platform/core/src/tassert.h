#pragma once

#include "vncore_export.h"

#include <QList>
#include <QString>

/// Records a failed assertion and, when `log` is true, reports it as an error
/// through the application's logger. It never aborts, so that the neutral
/// result that follows the assertion really reaches the caller.
VNCORE_EXPORT void t_assert(const char* expression, const char* file, int line, bool log);

/// The assertions raised through t_assert, oldest first.
class VNCORE_EXPORT TAssert
{
public:
    struct Failure
    {
        QString expression;
        QString file;
        int line = 0;
    };

    static QList<Failure> failures();
    static int count();
    static bool contains(const QString& expression, const QString& file);
    static void clear();
};
