#pragma once

#include "messageloggerinterface.h"

#include <QList>
#include <QPair>

/// A logger that keeps every message, for tests to read. While alive it is the
/// process-wide logger; the previous one comes back when it is destroyed.
class VNCORE_EXPORT TRecordingLogger : public MessageLoggerInterface
{
public:
    using Entry = QPair<Level, QString>;

    explicit TRecordingLogger(bool install = true);
    ~TRecordingLogger() override;

    void log(Level level, const QString& message) override;

    const QList<Entry>& entries() const { return m_entries; }
    QStringList messages(Level level) const;
    bool contains(Level level, const QString& message) const;
    int count() const { return m_entries.size(); }
    void clear() { m_entries.clear(); }

private:
    QList<Entry> m_entries;
    bool m_installed;
    MessageLoggerInterface* m_previous = nullptr;
};
