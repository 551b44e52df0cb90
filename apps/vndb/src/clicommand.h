#pragma once

#include "cliarguments.h"

#include <QObject>

class CliContext;

/// One subcommand of vndb. A command describes its words (for the parser and
/// for `--help`) and runs on parsed arguments, returning the exit code:
/// 0 on success, 1 on a refusal (with its one-line message), 2 on a command
/// line it cannot understand.
class CliCommand : public QObject
{
    Q_OBJECT
public:
    explicit CliCommand(QObject* parent = nullptr);
    ~CliCommand() override;

    /// The word that names the command ("plot").
    virtual QString name() const = 0;
    /// What follows the name in the synopsis ("DIR ANALYSIS [--json]").
    virtual QString synopsis() const = 0;
    /// One translated line for the list of commands.
    virtual QString summary() const = 0;
    /// Translated paragraphs shown by `vndb NAME --help` after the synopsis.
    virtual QString description() const { return QString(); }
    virtual QList<CliOption> options() const { return {}; }
    /// How many positional words the command takes.
    virtual int minimumPositionals() const = 0;
    virtual int maximumPositionals() const = 0;

    virtual int run(CliContext& context, const CliArguments& arguments) = 0;

    /// The full help text of the command.
    QString helpText() const;
};
