#include "trecordinglogger.h"

#include <QStringList>

namespace {
// The installed recorders still alive, so that one ending out of order can be
// taken out of the chain of previous loggers.
QList<TRecordingLogger*>& liveRecorders()
{
    static QList<TRecordingLogger*> list;
    return list;
}
} // namespace

TRecordingLogger::TRecordingLogger(bool install)
    : m_installed(install)
{
    if (m_installed) {
        m_previous = MessageLoggerInterface::setDefault(this);
        liveRecorders().append(this);
    }
}

TRecordingLogger::~TRecordingLogger()
{
    if (!m_installed)
        return;
    liveRecorders().removeOne(this);
    if (MessageLoggerInterface::returnMe() == this) {
        MessageLoggerInterface::setDefault(m_previous);
        return;
    }
    // A newer recorder is installed: whichever of them would come back to this
    // one comes back to this one's predecessor instead.
    for (TRecordingLogger* other : liveRecorders()) {
        if (other->m_previous == this)
            other->m_previous = m_previous;
    }
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
