#include "spectrumcommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "projectfolder.h"

QString SpectrumCommand::summary() const
{
    return tr("print the mass spectrum of a scan or the mean of a range of scans",
              "affiche le spectre de masse d'un scan ou la moyenne d'une plage de scans");
}

QString SpectrumCommand::description() const
{
    return tr("Scans are numbered from 0. MS/MS bars are labelled parent->daughter.",
              "Les scans sont numérotés à partir de 0. Les barres MS/MS sont étiquetées parent->fille.");
}

bool SpectrumCommand::readScans(const QString& firstText, const QString& lastText, int* first, int* last,
                                QString* error)
{
    if (!CliArguments::toIndex(firstText, first)) {
        *error = tr("'%1' is not a scan number", "'%1' n'est pas un numéro de scan").arg(firstText);
        return false;
    }
    *last = *first;
    if (!lastText.isNull() && !CliArguments::toIndex(lastText, last)) {
        *error = tr("'%1' is not a scan number", "'%1' n'est pas un numéro de scan").arg(lastText);
        return false;
    }
    if (*last < *first) {
        *error = tr("the last scan (%1) comes before the first (%2)", "le dernier scan (%1) précède le premier (%2)")
                     .arg(*last)
                     .arg(*first);
        return false;
    }
    return true;
}

int SpectrumCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QStringList& words = arguments.positionals();
    int first = 0, last = 0;
    QString error;
    if (!readScans(words.at(2), words.value(3), &first, &last, &error))
        return context.usageError(error, name());
    AnalysisData data;
    AnalysisSeries series;
    if (!data.open(ProjectFolder(words.at(0)), words.at(1), &error) || !data.spectrum(first, last, &series, &error))
        return context.refuse(error);
    for (const QString& line : series.toText())
        context.print(line);
    QJsonObject json = series.toJson();
    json.insert(QStringLiteral("first"), first);
    json.insert(QStringLiteral("last"), last);
    context.printJson(json);
    return CliContext::Success;
}
