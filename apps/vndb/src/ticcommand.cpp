#include "ticcommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "projectfolder.h"

QString TicCommand::summary() const
{
    return tr("print the total-ion chromatogram of an analysis", "affiche le chromatogramme du courant ionique total d'une analyse");
}

int TicCommand::run(CliContext& context, const CliArguments& arguments)
{
    AnalysisData data;
    AnalysisSeries series;
    QString error;
    if (!data.open(ProjectFolder(arguments.positionals().at(0)), arguments.positionals().at(1), &error)
        || !data.tic(&series, &error))
        return context.refuse(error);
    for (const QString& line : series.toText())
        context.print(line);
    context.printJson(series.toJson());
    return CliContext::Success;
}
