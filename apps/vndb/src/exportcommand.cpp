#include "exportcommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "projectfolder.h"

#include <tacquisitionrun.h>
#include <tcmfile.h>
#include <trunwriter.h>

#include <QFileInfo>
#include <QJsonObject>

QString ExportCommand::summary() const
{
    return tr("export the data of an analysis as ANDI netCDF, mzML or mzXML",
              "exporte les données d'une analyse en ANDI netCDF, mzML ou mzXML");
}

QString ExportCommand::description() const
{
    return tr("The extension of FILE chooses the format: %1. ANDI files hold the scans (times in\n"
              "seconds, masses, intensities, TIC); mzML holds full-scan runs as MS1 spectra and MS/MS runs as one\n"
              "selected-reaction-monitoring chromatogram per transition, with a TIC chromatogram; mzXML holds\n"
              "spectra only. Detector channels are not exported. The file is written whole or left as it was.",
              "L'extension de FICHIER choisit le format : %1. Les fichiers ANDI contiennent les scans (temps\n"
              "en secondes, masses, intensités, TIC) ; le mzML contient les acquisitions en balayage complet comme\n"
              "spectres MS1 et les acquisitions MS/MS comme un chromatogramme SRM par transition, avec un\n"
              "chromatogramme TIC ; le mzXML ne contient que des spectres. Les voies de détecteur ne sont pas\n"
              "exportées. Le fichier est écrit en entier ou laissé tel quel.")
        .arg(TRunWriterRegistry::extensionList());
}

QList<CliOption> ExportCommand::options() const
{
    return {CliOption{QStringLiteral("output"), QLatin1Char('o'), 1, QStringLiteral("FILE"),
                      tr("file to write (.cdf, .mzML, .mzXML)", "fichier à écrire (.cdf, .mzML, .mzXML)")}};
}

int ExportCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QString output = arguments.value(QStringLiteral("output"));
    if (output.isEmpty())
        return context.usageError(tr("the output file is missing (-o FILE.cdf|.mzML|.mzXML)",
                                     "le fichier de sortie manque (-o FICHIER.cdf|.mzML|.mzXML)"),
                                  name());
    if (!TRunWriterRegistry::find(output))
        return context.usageError(tr("'%1': the extension tells no export format (known: %2)",
                                     "'%1' : l'extension n'indique aucun format d'export (connues : %2)")
                                      .arg(output, TRunWriterRegistry::extensionList()),
                                  name());
    const ProjectFolder project(arguments.positionals().at(0));
    const QString analysis = arguments.positionals().at(1);
    QString error;
    const QString path = project.findAcquisitionFile(analysis, &error);
    if (path.isNull())
        return context.refuse(error);
    TCMFile file;
    TAcquisitionRun run;
    if (!file.open(path) || !file.verify() || !file.toRun(&run))
        return context.refuse(AnalysisData::damaged(analysis, file.errorString()));
    if (run.name.isEmpty())
        run.name = analysis;
    QString format;
    if (!TRunWriterRegistry::write(output, run, &format, &error))
        return context.refuse(error);

    const QString written = QFileInfo(output).absoluteFilePath();
    context.print(tr("Exported analysis '%1' as %2: %3 scans, %4 to %5 min",
                     "Analyse '%1' exportée en %2 : %3 scans, "
                     "%4 à %5 min")
                      .arg(analysis, format)
                      .arg(run.scanCount())
                      .arg(run.rtimes.value(0), 0, 'f', 2)
                      .arg(run.rtimes.isEmpty() ? 0.0 : run.rtimes.last(), 0, 'f', 2));
    context.print(QStringLiteral("  ") + written);
    QJsonObject json;
    json.insert(QStringLiteral("analysis"), analysis);
    json.insert(QStringLiteral("format"), format);
    json.insert(QStringLiteral("scans"), run.scanCount());
    json.insert(QStringLiteral("points"), double(run.pointCount()));
    json.insert(QStringLiteral("transitions"), run.transitions.size());
    json.insert(QStringLiteral("file"), written);
    context.printJson(json);
    return CliContext::Success;
}
