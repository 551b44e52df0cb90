#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

class CliCommand;

/// The vndb program: the global options (`--lang`, `--json`, `--help`,
/// `--version`, `--no-progress`), the list of commands and the dispatch of a
/// command line to one of them.
class CliApplication : public QObject
{
    Q_OBJECT
public:
    CliApplication();
    ~CliApplication() override;

    /// Adds a command; the application owns it.
    void addCommand(CliCommand* command);
    CliCommand* command(const QString& name) const;

    /// Runs the command line `words` (without the program name); returns the exit code.
    int exec(const QStringList& words);

    QString helpText() const;

private:
    QList<CliCommand*> m_commands;
};
