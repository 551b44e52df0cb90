#pragma once

#include "clicommand.h"

#include <QSize>

struct AnalysisSeries;

/// `vndb plot DIR ANALYSIS (--tic | --eic MASS [--window W] | --spectrum FIRST [LAST]) -o FILE`:
/// a chromatogram or a bar spectrum as a PNG or SVG picture.
class PlotCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("plot"); }
    QString synopsis() const override
    {
        return QStringLiteral(
            "DIR ANALYSIS (--tic | --eic MASS [--window W] | --spectrum FIRST [LAST]) -o FILE.png|.svg");
    }
    QString summary() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;

    static QSize defaultSize() { return QSize(1200, 700); }
};
