#pragma once

#include "clicommand.h"

/// `vndb tic DIR ANALYSIS`: the total-ion chromatogram, one line per scan.
class TicCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("tic"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS"); }
    QString summary() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;
};
