#include "clicontext.h"

#include <tprintlogger.h>

#include <QCoreApplication>
#include <QJsonDocument>

#include <tprogressbarmgr.h>

#include <cstdio>
#include <unistd.h>

namespace {
// Results may be long (a chromatogram per scan): standard output is left
// to its buffer, and flushed only before anything goes to standard error so
// that a terminal shows both in order.
void writeLine(std::FILE* stream, const QString& line)
{
    if (stream == stderr)
        std::fflush(stdout);
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    if (stream == stderr)
        std::fflush(stream);
}
} // namespace

CliContext::CliContext(bool json)
    : m_json(json)
    , m_previous(MessageLoggerInterface::setDefault(this))
{ }

CliContext::~CliContext()
{
    MessageLoggerInterface::setDefault(m_previous);
}

void CliContext::print(const QString& line)
{
    if (m_json)
        return;
    // A progress bar may be standing on the terminal line: clear it, so that
    // the result line is whole and the bar is redrawn below it.
    if (TProgressBarMgr::terminalOutput() && isatty(fileno(stderr))) {
        std::fflush(stdout);
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
    }
    writeLine(stdout, line);
}

void CliContext::printJson(const QJsonObject& object)
{
    if (m_json)
        writeLine(stdout, QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented)).trimmed());
}

void CliContext::printJson(const QJsonArray& array)
{
    if (m_json)
        writeLine(stdout, QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Indented)).trimmed());
}

void CliContext::note(const QString& line)
{
    writeLine(stderr, QStringLiteral("vndb: ") + oneLine(line));
}

int CliContext::refuse(const QString& message)
{
    QString line = oneLine(message);
    const QString reason = takeProblem();
    if (!reason.isEmpty() && !line.contains(reason))
        line = QCoreApplication::translate("CliContext", "%1: %2", "%1 : %2").arg(line, reason);
    m_held.clear();
    writeLine(stderr, QStringLiteral("vndb: ") + line);
    return Refused;
}

int CliContext::usageError(const QString& message, const QString& command)
{
    QString line = QStringLiteral("vndb: ") + oneLine(message);
    const QString help
        = command.isEmpty() ? QStringLiteral("vndb --help") : QStringLiteral("vndb %1 --help").arg(command);
    line += QStringLiteral(" (") + QCoreApplication::translate("CliContext", "see %1", "voir %1").arg(help)
        + QLatin1Char(')');
    writeLine(stderr, line);
    return UsageError;
}

QString CliContext::takeProblem()
{
    QString last;
    for (const auto& entry : qAsConst(m_held)) {
        if (entry.first >= LevelWarning)
            last = entry.second;
    }
    m_held.clear();
    return last;
}

void CliContext::flushProblems()
{
    for (const auto& entry : qAsConst(m_held))
        writeLine(stderr, QStringLiteral("vndb: ") + entry.second);
    m_held.clear();
}

QString CliContext::oneLine(const QString& text)
{
    return TPrintLogger::plainText(text).simplified();
}

void CliContext::log(Level level, const QString& message)
{
    switch (level) {
    case LevelDebug:
        return;
    case LevelInformation:
        // What the libraries did (a folder repaired, a file kept) is worth
        // seeing at once; it is never the reason of a refusal.
        note(message);
        return;
    case LevelWarning:
    case LevelError:
        m_held.append(qMakePair(level, oneLine(message)));
        return;
    }
}
