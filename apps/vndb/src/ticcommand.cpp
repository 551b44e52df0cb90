#include "ticcommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "projectfolder.h"

#include <limits>

QString TicCommand::summary() const
{
    return tr("print the total-ion chromatogram of an analysis",
              "affiche le chromatogramme du courant ionique total d'une analyse");
}

QList<CliOption> TicCommand::timeOptions()
{
    return {CliOption{QStringLiteral("from"), QChar(), 1, QStringLiteral("MIN"),
                      tr("first retention time to keep (minutes)", "premier temps de rétention gardé (minutes)")},
            CliOption{QStringLiteral("to"), QChar(), 1, QStringLiteral("MIN"),
                      tr("last retention time to keep (minutes)", "dernier temps de rétention gardé (minutes)")}};
}

bool TicCommand::applyTimeWindow(const CliArguments& arguments, AnalysisSeries* series, QString* error, bool* usage)
{
    *usage = true;
    double from = -std::numeric_limits<double>::infinity();
    double to = std::numeric_limits<double>::infinity();
    for (const QString& option : {QStringLiteral("from"), QStringLiteral("to")}) {
        if (!arguments.isSet(option))
            continue;
        double value = 0.0;
        if (!CliArguments::toNumber(arguments.value(option), &value)) {
            *error = tr("'%1' is not a time in minutes", "'%1' n'est pas un temps en minutes")
                         .arg(arguments.value(option));
            return false;
        }
        (option == QLatin1String("from") ? from : to) = value;
    }
    if (from > to) {
        *error = tr("the time window ends before it starts", "la fenêtre de temps finit avant de commencer");
        return false;
    }
    *usage = false;
    if (!series->cropTime(from, to)) {
        *error = tr("no scan of analysis '%1' lies in the time window (the analysis runs from %2 to %3 min)",
                    "aucun scan de l'analyse '%1' dans la fenêtre de temps (l'analyse va de %2 à %3 min)")
                     .arg(series->analysis)
                     .arg(series->x.value(0), 0, 'f', 2)
                     .arg(series->x.isEmpty() ? 0.0 : series->x.last(), 0, 'f', 2);
        return false;
    }
    return true;
}

int TicCommand::run(CliContext& context, const CliArguments& arguments)
{
    AnalysisData data;
    AnalysisSeries series;
    QString error;
    if (!data.open(ProjectFolder(arguments.positionals().at(0)), arguments.positionals().at(1), &error)
        || !data.tic(&series, &error))
        return context.refuse(error);
    bool usage = false;
    if (!applyTimeWindow(arguments, &series, &error, &usage))
        return usage ? context.usageError(error, name()) : context.refuse(error);
    for (const QString& line : series.toText())
        context.print(line);
    context.printJson(series.toJson());
    return CliContext::Success;
}
