#pragma once

#include "clicommand.h"

struct AnalysisSeries;
class ProjectFolder;

/// `vndb channel DIR ANALYSIS [NAME]`: a detector channel of an analysis (an
/// FID, a UV or analog trace), one line per point on its own time base.
class ChannelCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("channel"); }
    QString synopsis() const override { return QStringLiteral("DIR ANALYSIS [NAME]"); }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 3; }
    int run(CliContext& context, const CliArguments& arguments) override;

    /// The channel `channel` of `analysis` (the first one when `channel` is
    /// empty) as a chromatogram; false with a translated reason. The plot uses it too.
    static bool channelSeries(const ProjectFolder& project, const QString& analysis, const QString& channel,
                              AnalysisSeries* series, QString* unit, QString* error);
};
