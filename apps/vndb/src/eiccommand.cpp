#include "eiccommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "projectfolder.h"
#include "ticcommand.h"

QString EicCommand::summary() const
{
    return tr("print an extracted-ion chromatogram (m/z MASS +/- W)",
              "affiche un chromatogramme d'ion extrait (m/z MASSE +/- W)");
}

QList<CliOption> EicCommand::options() const
{
    return QList<CliOption>{CliOption{QStringLiteral("window"), QLatin1Char('w'), 1, QStringLiteral("W"),
                                      tr("half-width of the mass window (default 0.5)",
                                         "demi-largeur de la fenêtre de masse (0,5 par défaut)")}}
    + TicCommand::timeOptions();
}

bool EicCommand::readMass(const QString& massText, const CliArguments& arguments, double* mass, double* window,
                          QString* error)
{
    *window = DefaultWindow;
    if (!CliArguments::toNumber(massText, mass) || *mass <= 0.0) {
        *error = tr("'%1' is not a positive mass", "'%1' n'est pas une masse positive").arg(massText);
        return false;
    }
    if (arguments.isSet(QStringLiteral("window"))) {
        const QString text = arguments.value(QStringLiteral("window"));
        if (!CliArguments::toNumber(text, window) || *window < 0.0) {
            *error = tr("'%1' is not a mass window", "'%1' n'est pas une fenêtre de masse").arg(text);
            return false;
        }
    }
    return true;
}

int EicCommand::run(CliContext& context, const CliArguments& arguments)
{
    double mass = 0.0, window = DefaultWindow;
    QString error;
    if (!readMass(arguments.positionals().at(2), arguments, &mass, &window, &error))
        return context.usageError(error, name());
    AnalysisData data;
    AnalysisSeries series;
    if (!data.open(ProjectFolder(arguments.positionals().at(0)), arguments.positionals().at(1), &error)
        || !data.eic(mass, window, &series, &error))
        return context.refuse(error);
    bool usage = false;
    if (!TicCommand::applyTimeWindow(arguments, &series, &error, &usage))
        return usage ? context.usageError(error, name()) : context.refuse(error);
    for (const QString& line : series.toText())
        context.print(line);
    QJsonObject json = series.toJson();
    json.insert(QStringLiteral("mass"), mass);
    json.insert(QStringLiteral("window"), window);
    context.printJson(json);
    return CliContext::Success;
}
