#pragma once

#include <messageloggerinterface.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>

/// What a running command talks to: standard output for its results (text or
/// JSON), standard error for notes and for the one-line refusal, and the
/// application's logger, whose warnings and errors are held back so that a
/// refusal can say in one line what the library said.
class CliContext : public MessageLoggerInterface
{
public:
    enum ExitCode { Success = 0, Refused = 1, UsageError = 2 };

    explicit CliContext(bool json);
    ~CliContext() override;
    CliContext(const CliContext&) = delete;
    CliContext& operator=(const CliContext&) = delete;

    bool json() const { return m_json; }

    /// One line of results on standard output (ignored in JSON mode).
    void print(const QString& line = QString());
    /// The JSON result of a command on standard output (ignored in text mode).
    void printJson(const QJsonObject& object);
    /// The same for a result that is a list.
    void printJson(const QJsonArray& array);
    /// A note on standard error (progress of long work, what was kept).
    void note(const QString& line);

    /// Writes "vndb: <message>[: <what the library said>]" on standard error
    /// as one line and returns the exit code of a refusal.
    int refuse(const QString& message);
    /// Same for a command line that cannot be understood.
    int usageError(const QString& message, const QString& command = QString());

    /// The last warning or error logged since the last call of `takeProblem`.
    QString takeProblem();
    /// Writes the warnings still held (after a success) to standard error.
    void flushProblems();

    /// Rich text of the libraries as one terminal line.
    static QString oneLine(const QString& text);

    void log(Level level, const QString& message) override;

private:
    bool m_json;
    QList<QPair<Level, QString>> m_held;
    MessageLoggerInterface* m_previous;
};
