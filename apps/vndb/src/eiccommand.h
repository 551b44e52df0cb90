#pragma once

#include "clicommand.h"

/// `vndb eic DIR ANALYSIS MASS [--window W]`: an extracted-ion chromatogram.
class EicCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("eic"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS MASS [--window W]"); }
    QString summary() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 3; }
    int maximumPositionals() const override { return 3; }
    int run(CliContext& context, const CliArguments& arguments) override;

    static constexpr double DefaultWindow = 0.5;
    /// Reads MASS and --window; false with a translated reason.
    static bool readMass(const QString& massText, const CliArguments& arguments, double* mass, double* window,
                         QString* error);
};
