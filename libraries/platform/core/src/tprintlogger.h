#pragma once

#include "messageloggerinterface.h"

#include <cstdio>

/// The default logger: one line per message on a stream (standard error by
/// default), prefixed with the level. Rich-text marks are removed so that the
/// line reads well in a terminal. Debug messages are shown only when enabled.
class VNCORE_EXPORT TPrintLogger : public MessageLoggerInterface
{
public:
    explicit TPrintLogger(std::FILE* stream = stderr);

    void log(Level level, const QString& message) override;

    void setMinimumLevel(Level level) { m_minimum = level; }
    Level minimumLevel() const { return m_minimum; }

    /// "<b>x</b> &amp; y" -> "x & y"
    static QString plainText(const QString& richText);

private:
    std::FILE* m_stream;
    Level m_minimum = LevelInformation;
};
