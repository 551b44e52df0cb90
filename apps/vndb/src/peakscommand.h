#pragma once

#include "clicommand.h"

#include <vnchromatogram.h>

class CliContext;
class ProjectDatabase;
class VNObject2Analysis;

/// `vndb peaks DIR ANALYSIS (--tic | --eic MASS | --channel NAME)`: finds and
/// integrates the peaks of one chromatogram of an analysis, stores them in
/// the project and prints them.
class PeaksCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("peaks"); }
    QString synopsis() const override
    {
        return QStringLiteral("DIR ANALYSIS (--tic | --eic MASS [--window W] | --channel NAME) [--json]");
    }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 2; }
    int run(CliContext& context, const CliArguments& arguments) override;

    /// Opens the project of `folder` and finds `analysis` in it, registering
    /// the analyses of its folder first when the header does not know it yet.
    /// Null with a translated reason.
    static const VNObject2Analysis* openAnalysis(ProjectDatabase& database, const QString& folder,
                                                 const QString& analysis, QString* error);
};
