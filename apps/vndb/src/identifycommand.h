#pragma once

#include "clicommand.h"

/// `vndb identify DIR ANALYSIS [--dir REFDIR]`: the reference compounds of the
/// merged reference database found in an analysis, with their apex, index,
/// area and height, or why they were not found.
class IdentifyCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("identify"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS [--dir REFDIR] [--window I] [--json]"); }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;
};
