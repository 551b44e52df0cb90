#pragma once

#include "vncore_export.h"

#include <QString>

/// The application's logger. Messages go to the logger passed in, or to the
/// process-wide one when the caller passes null (the usual case).
class VNCORE_EXPORT MessageLoggerInterface
{
public:
    enum Level { LevelDebug = 0, LevelInformation, LevelWarning, LevelError };

    virtual ~MessageLoggerInterface();

    virtual void log(Level level, const QString& message) = 0;

    static void Debug(const QString& message, MessageLoggerInterface* logger = nullptr);
    static void Information(const QString& message, MessageLoggerInterface* logger = nullptr);
    static void Warning(const QString& message, MessageLoggerInterface* logger = nullptr);
    static void Error(const QString& message, MessageLoggerInterface* logger = nullptr);

    /// The logger used when none is given: a TPrintLogger unless one was installed.
    static MessageLoggerInterface* returnMe();
    /// Installs `logger` as the process-wide logger (null restores the printing one)
    /// and returns the previous one. The caller keeps ownership.
    static MessageLoggerInterface* setDefault(MessageLoggerInterface* logger);

    static QString levelName(Level level);

private:
    static void dispatch(Level level, const QString& message, MessageLoggerInterface* logger);
};
