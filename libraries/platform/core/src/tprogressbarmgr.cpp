#include "tprogressbarmgr.h"

#include <cstdio>
#include <unistd.h>

namespace {
bool s_terminal = false;
TProgressBarMgr::Listener& listener()
{
    static TProgressBarMgr::Listener l;
    return l;
}
} // namespace

TProgressBarMgr::TProgressBarMgr(int steps, const QString& text)
    : m_steps(qMax(0, steps))
    , m_text(text)
{
    notify();
}

TProgressBarMgr::~TProgressBarMgr()
{
    if (m_drawn) {
        std::fputc('\n', stderr);
        std::fflush(stderr);
    }
}

void TProgressBarMgr::setProgress(int step, const QString& text)
{
    m_step = qBound(0, step, m_steps);
    if (!text.isEmpty())
        m_text = text;
    notify();
}

void TProgressBarMgr::setTerminalOutput(bool enabled)
{
    s_terminal = enabled;
}

bool TProgressBarMgr::terminalOutput()
{
    return s_terminal;
}

void TProgressBarMgr::setListener(const Listener& l)
{
    listener() = l;
}

QString TProgressBarMgr::render(int step, int steps, const QString& text, int width)
{
    width = qMax(0, width);
    steps = qMax(0, steps);
    step = qBound(0, step, steps);
    const int filled = steps > 0 ? int(qint64(width) * step / steps) : width;
    return QStringLiteral("%1 [%2%3] %4/%5")
        .arg(text, QString(filled, QLatin1Char('#')), QString(width - filled, QLatin1Char('.')))
        .arg(step, int(QString::number(steps).size()))
        .arg(steps);
}

void TProgressBarMgr::notify()
{
    if (listener())
        listener()(m_step, m_steps, m_text);
    if (!s_terminal || !isatty(fileno(stderr)))
        return;
    const QByteArray line = ("\r" + render(m_step, m_steps, m_text)).toLocal8Bit();
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
    m_drawn = true;
}
