#pragma once

#include "clicommand.h"

/// `vndb params DIR [ANALYSIS...]`: every parameter of the reference
/// databases computed for the analyses of a project (all of them when none is
/// named) from the compounds identified in them, stored in the project, and
/// printed as a table, CSV or JSON.
class ParamsCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("params"); }
    QString synopsis() const override { return QStringLiteral("DIR [ANALYSIS...] [--dir REFDIR] [--json | --csv]"); }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 1; }
    int maximumPositionals() const override { return 10000; }
    int run(CliContext& context, const CliArguments& arguments) override;
};
