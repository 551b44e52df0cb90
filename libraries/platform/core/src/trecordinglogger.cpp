#include "trecordinglogger.h"

#include <QStringList>

TRecordingLogger::TRecordingLogger(bool install)
    : m_installed(install)
{
    if (m_installed)
        m_previous = MessageLoggerInterface::setDefault(this);
}

TRecordingLogger::~TRecordingLogger()
{
    if (m_installed)
        MessageLoggerInterface::setDefault(m_previous);
}

void TRecordingLogger::log(Level level, const QString& message)
{
    m_entries.append(Entry(level, message));
}

QStringList TRecordingLogger::messages(Level level) const
{
    QStringList result;
    for (const Entry& entry : m_entries) {
        if (entry.first == level)
            result.append(entry.second);
    }
    return result;
}

bool TRecordingLogger::contains(Level level, const QString& message) const
{
    return m_entries.contains(Entry(level, message));
}
