#include "paramscommand.h"

#include "clicontext.h"
#include "parametervaluesrun.h"

#include <tprogressbarmgr.h>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

QString csvField(QString text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n')))
        return text;
    text.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

QString ParamsCommand::summary() const
{
    return tr("compute the reference parameters (Pr/Ph, CPI...) of analyses",
              "calcule les paramètres de référence (Pr/Ph, CPI...) des analyses");
}

QString ParamsCommand::description() const
{
    return tr("Identifies the reference compounds in each analysis (every analysis of the project when none is\n"
              "named), evaluates every parameter of the merged reference database on their areas (heights when\n"
              "the parameter's process type says so) and stores the values in the project. A parameter that\n"
              "lacks a compound, or divides by zero, has no value and says why.",
              "Identifie les composés de référence dans chaque analyse (toutes les analyses du projet si aucune\n"
              "n'est nommée), évalue chaque paramètre de la base de référence fusionnée sur leurs aires (leurs\n"
              "hauteurs si le type de traitement du paramètre le dit) et enregistre les valeurs dans le projet.\n"
              "Un paramètre à qui il manque un composé, ou qui divise par zéro, n'a pas de valeur et dit pourquoi.");
}

QList<CliOption> ParamsCommand::options() const
{
    return {
        CliOption{QStringLiteral("dir"), QChar(), 1, QStringLiteral("REFDIR"),
                  tr("folder of the reference databases (as for vndb ref)",
                     "dossier des bases de référence (comme pour vndb ref)")},
        CliOption{
            QStringLiteral("csv"), QChar(), 0, QString(),
            tr("print CSV (analysis,parameter,value,reason)", "affiche du CSV (analysis,parameter,value,reason)")},
    };
}

int ParamsCommand::run(CliContext& context, const CliArguments& arguments)
{
    const bool csv = arguments.isSet(QStringLiteral("csv"));
    if (csv && context.json())
        return context.usageError(tr("choose one of --json and --csv", "choisir --json ou --csv"), name());
    const QString folder = arguments.isSet(QStringLiteral("dir")) ? arguments.value(QStringLiteral("dir"))
                                                                  : ReferenceDatabases::defaultFolder();
    QString error;
    ParameterValuesRun run;
    QStringList analyses;
    if (!ParameterValuesRun::checkNames(arguments.positionals().at(0), arguments.positionals().mid(1), &error)
        || !run.open(arguments.positionals().at(0), folder, &error)
        || !run.choose(arguments.positionals().mid(1), &analyses, &error))
        return context.refuse(error);

    QJsonArray json;
    QStringList lines;
    if (csv)
        lines << QStringLiteral("analysis,parameter,value,reason");
    int width = 0;
    QList<QPair<QString, QList<TParameterValue>>> all;
    {
        TProgressBarMgr progress(int(analyses.size()), tr("Computing parameters", "Calcul des paramètres"));
        for (int i = 0; i < analyses.size(); ++i) {
            progress.setProgress(i, analyses.at(i));
            QList<TParameterValue> values;
            if (!run.compute(analyses.at(i), &values, &error))
                return context.refuse(error);
            for (const TParameterValue& value : qAsConst(values))
                width = std::max(width, int(value.name.size()));
            all.append(qMakePair(analyses.at(i), values));
        }
        progress.setProgress(int(analyses.size()));
    }
    for (const auto& [analysis, values] : qAsConst(all)) {
        if (!csv)
            lines << analysis;
        for (const TParameterValue& value : values) {
            QJsonObject entry;
            entry.insert(QStringLiteral("analysis"), analysis);
            entry.insert(QStringLiteral("parameter"), value.name);
            entry.insert(QStringLiteral("value"), value.ok ? QJsonValue(value.value) : QJsonValue());
            entry.insert(QStringLiteral("reason"), value.ok ? QString() : value.reason);
            json.append(entry);
            if (csv)
                lines << QStringList{csvField(analysis), csvField(value.name),
                                     value.ok ? number(value.value) : QString(),
                                     csvField(value.ok ? QString() : value.reason)}
                             .join(QLatin1Char(','));
            else
                lines << QStringLiteral("  %1  %2")
                             .arg(value.name.leftJustified(width),
                                  value.ok ? number(value.value)
                                           : QStringLiteral("-  (") + value.reason + QLatin1Char(')'));
        }
    }
    for (const QString& line : qAsConst(lines))
        context.print(line);
    context.printJson(json);
    return CliContext::Success;
}
