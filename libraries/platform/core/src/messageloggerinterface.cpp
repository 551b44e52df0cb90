#include "messageloggerinterface.h"

#include "tprintlogger.h"

namespace {
MessageLoggerInterface* s_installed = nullptr;

MessageLoggerInterface* printLogger()
{
    static TPrintLogger logger;
    return &logger;
}
} // namespace

MessageLoggerInterface::~MessageLoggerInterface() = default;

void MessageLoggerInterface::Debug(const QString& message, MessageLoggerInterface* logger)
{
    dispatch(LevelDebug, message, logger);
}

void MessageLoggerInterface::Information(const QString& message, MessageLoggerInterface* logger)
{
    dispatch(LevelInformation, message, logger);
}

void MessageLoggerInterface::Warning(const QString& message, MessageLoggerInterface* logger)
{
    dispatch(LevelWarning, message, logger);
}

void MessageLoggerInterface::Error(const QString& message, MessageLoggerInterface* logger)
{
    dispatch(LevelError, message, logger);
}

MessageLoggerInterface* MessageLoggerInterface::returnMe()
{
    return s_installed ? s_installed : printLogger();
}

MessageLoggerInterface* MessageLoggerInterface::setDefault(MessageLoggerInterface* logger)
{
    MessageLoggerInterface* previous = s_installed;
    s_installed = logger;
    return previous;
}

QString MessageLoggerInterface::levelName(Level level)
{
    switch (level) {
    case LevelDebug:
        return QStringLiteral("Debug");
    case LevelInformation:
        return QStringLiteral("Information");
    case LevelWarning:
        return QStringLiteral("Warning");
    case LevelError:
        return QStringLiteral("Error");
    }
    return QString();
}

void MessageLoggerInterface::dispatch(Level level, const QString& message, MessageLoggerInterface* logger)
{
    (logger ? logger : returnMe())->log(level, message);
}
