#include "channelcommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "projectfolder.h"
#include "ticcommand.h"

#include <tacquisitionrun.h>

#include <QJsonArray>
#include <QJsonObject>

QString ChannelCommand::summary() const
{
    return tr("print a detector channel (FID, UV...) of an analysis",
              "affiche une voie de détecteur (FID, UV...) d'une analyse");
}

QString ChannelCommand::description() const
{
    return tr("Without NAME, the analysis's first channel; `vndb project list DIR` names them all.\n"
              "Times are in minutes, on the channel's own time base.",
              "Sans NOM, la première voie de l'analyse ; `vndb project list DIR` les nomme toutes.\n"
              "Les temps sont en minutes, sur la base de temps propre à la voie.");
}

QList<CliOption> ChannelCommand::options() const
{
    return TicCommand::timeOptions();
}

bool ChannelCommand::channelSeries(const ProjectFolder& project, const QString& analysis, const QString& channel,
                                   AnalysisSeries* series, QString* unit, QString* error)
{
    if (!project.hasAnalysis(analysis)) {
        *error = tr("analysis '%1' does not exist in project '%2'", "l'analyse '%1' n'existe pas dans le projet '%2'")
                     .arg(analysis, project.path());
        return false;
    }
    QVector<TDetectorChannel> channels;
    if (!project.channels(analysis, &channels, error))
        return false;
    QStringList names;
    for (const TDetectorChannel& one : channels)
        names.append(one.name);
    if (channels.isEmpty()) {
        *error
            = tr("analysis '%1' has no detector channel", "l'analyse '%1' n'a aucune voie de détecteur").arg(analysis);
        return false;
    }
    const int index = channel.isEmpty() ? 0 : names.indexOf(channel);
    if (index < 0) {
        *error = tr("analysis '%1' has no channel '%2' (its channels: %3)",
                    "l'analyse '%1' n'a pas de voie '%2' (ses voies : %3)")
                     .arg(analysis, channel, names.join(QStringLiteral(", ")));
        return false;
    }
    const TDetectorChannel& found = channels.at(index);
    series->kind = AnalysisSeries::Chromatogram;
    series->analysis = analysis;
    series->title = found.unit.isEmpty() ? found.name : QStringLiteral("%1 (%2)").arg(found.name, found.unit);
    series->x = found.times;
    series->y = found.values;
    series->firstScan = 0;
    *unit = found.unit;
    return true;
}

int ChannelCommand::run(CliContext& context, const CliArguments& arguments)
{
    const ProjectFolder project(arguments.positionals().at(0));
    const QString analysis = arguments.positionals().at(1);
    AnalysisSeries series;
    QString unit;
    QString error;
    if (!project.holdsProject(&error)
        || !channelSeries(project, analysis, arguments.positionals().value(2), &series, &unit, &error))
        return context.refuse(error);
    bool usage = false;
    if (!TicCommand::applyTimeWindow(arguments, &series, &error, &usage))
        return usage ? context.usageError(error, name()) : context.refuse(error);
    const QString channel = series.title.section(QStringLiteral(" ("), 0, 0);
    context.print(QStringLiteral("# %1: %2").arg(analysis, series.title));
    context.print(QStringLiteral("time_min\tvalue"));
    QJsonArray times;
    QJsonArray values;
    for (int i = 0; i < series.x.size(); ++i) {
        context.print(QStringLiteral("%1\t%2").arg(series.x.at(i), 0, 'f', 6).arg(series.y.at(i), 0, 'g', 12));
        times.append(series.x.at(i));
        values.append(series.y.at(i));
    }
    QJsonObject json;
    json.insert(QStringLiteral("analysis"), analysis);
    json.insert(QStringLiteral("channel"), channel);
    json.insert(QStringLiteral("unit"), unit);
    json.insert(QStringLiteral("time"), times);
    json.insert(QStringLiteral("value"), values);
    context.printJson(json);
    return CliContext::Success;
}
