#pragma once

#include "clicommand.h"

#include <QSize>

class ParameterValuesRun;
class VNObject2;
class VNToviDatabaseInterface;

/// `vndb diagram DIR GRAPH [ANALYSIS...] -o FILE`: a graph of the reference
/// databases (cross-plot, polar or ternary) drawn with the zones and lines of
/// its overlays and the analyses placed by their parameter values.
class DiagramCommand : public CliCommand
{
    Q_OBJECT
public:
    QString name() const override { return QStringLiteral("diagram"); }
    QString synopsis() const override
    {
        return QStringLiteral("DIR GRAPH [ANALYSIS...] [--dir REFDIR] -o FILE.png|.svg");
    }
    QString summary() const override;
    QString description() const override;
    QList<CliOption> options() const override;
    int minimumPositionals() const override { return 2; }
    int maximumPositionals() const override { return 10000; }
    int run(CliContext& context, const CliArguments& arguments) override;

    static QSize defaultSize() { return QSize(1100, 700); }

    /// The graph of `reference` whose name (or identifier) is `name`, or null.
    static const VNObject2* findGraph(VNToviDatabaseInterface* reference, const QString& name);
    /// The names of every graph of `reference`, sorted.
    static QStringList graphNames(VNToviDatabaseInterface* reference);

    /// Draws the stored graph `graph` with its overlays and `analyses` (their
    /// parameter values computed and stored through `run`) to `output`.
    /// False with a translated `error`; `placed` and `unplaced` name the analyses.
    static bool draw(ParameterValuesRun& run, const VNObject2* graph, const QStringList& analyses,
                     const QString& output, const QSize& size, QStringList* placed, QStringList* unplaced,
                     QString* error);
};
