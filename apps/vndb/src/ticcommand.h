#pragma once

#include "clicommand.h"

struct AnalysisSeries;

/// `vndb tic DIR ANALYSIS`: the total-ion chromatogram, one line per scan.
class TicCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("tic"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS"); }
    QString summary() const override;
    QList<CliOption> options() const override { return timeOptions(); }
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;

    /// `--from MIN` and `--to MIN`, shared by the chromatogram commands.
    static QList<CliOption> timeOptions();
    /// Narrows a chromatogram to the time window asked for, if any; false
    /// with a translated reason for a bad or empty window.
    static bool applyTimeWindow(const CliArguments& arguments, AnalysisSeries* series, QString* error, bool* usage);
};
