#include "importcommand.h"

#include "clicontext.h"
#include "projectfolder.h"
#include "runimporter.h"

#include <tacquisitionrun.h>
#include <tprogressbarmgr.h>

#include <QFileInfo>
#include <QJsonObject>

QString ImportCommand::summary() const
{
    return tr("import a CSV or ANDI netCDF run as a new analysis",
              "importe une acquisition CSV ou ANDI netCDF comme nouvelle analyse");
}

QString ImportCommand::description() const
{
    return tr("The format is told by the content: classic netCDF (ANDI/AIA MS), an acquisition file (.tcm), else a\n"
              "text table (one row per scan 'time,mass:abundance ...' or one row per point 'time,mass,abundance').\n"
              "The analysis is written as <DIR>/Analyses/<NAME>/<NAME>.tcm with its acquisition.xml. A file that\n"
              "cannot be read completely is refused and the project is left as it was.",
              "Le format est reconnu au contenu : netCDF classique (ANDI/AIA MS), fichier d'acquisition (.tcm), sinon\n"
              "un tableau texte (une ligne par scan 'temps,masse:abondance ...' ou une ligne par point\n"
              "'temps,masse,abondance'). L'analyse est écrite dans <DIR>/Analyses/<NOM>/<NOM>.tcm avec son\n"
              "acquisition.xml. Un fichier illisible est refusé et le projet reste tel quel.");
}

QList<CliOption> ImportCommand::options() const
{
    return {CliOption{QStringLiteral("name"), QLatin1Char('n'), 1, QStringLiteral("NAME"),
                      tr("name of the new analysis (default: the file's name)",
                         "nom de la nouvelle analyse (par défaut : le nom du fichier)")}};
}

bool ImportCommand::importFile(const QString& dir, const QString& file, const QString& analysis,
                               TAcquisitionRun* imported, QString* format, QString* error)
{
    const ProjectFolder project(dir);
    // Everything that can be refused without reading is refused first.
    if (!project.acceptsAnalyses(error) || !ProjectFolder::isValidName(analysis, error))
        return false;
    if (project.hasAnalysis(analysis)) {
        *error = tr("analysis '%1' already exists in project '%2'", "l'analyse '%1' existe déjà dans le projet '%2'")
                     .arg(analysis, project.path());
        return false;
    }
    TProgressBarMgr progress(3, tr("Importing %1", "Import de %1").arg(QFileInfo(file).fileName()));
    TAcquisitionRun run;
    RunImporter::Format kind = RunImporter::Unknown;
    if (!RunImporter::read(file, &run, &kind, error))
        return false;
    progress.setProgress(1);
    if (!project.addAnalysis(analysis, run, error))
        return false;
    progress.setProgress(3);
    if (imported)
        *imported = run;
    if (format)
        *format = RunImporter::formatName(kind);
    return true;
}

int ImportCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QString dir = arguments.positionals().at(0);
    const QString file = arguments.positionals().at(1);
    const QString analysis = arguments.isSet(QStringLiteral("name")) ? arguments.value(QStringLiteral("name"))
                                                                     : QFileInfo(file).completeBaseName();
    TAcquisitionRun run;
    QString format;
    QString error;
    if (!importFile(dir, file, analysis, &run, &format, &error))
        return context.refuse(error);

    const ProjectFolder project(dir);
    context.print(tr("Imported %1 (%2): analysis '%3', %4 scans, %5 to %6 min, m/z %7 to %8",
                     "Importé %1 (%2) : analyse '%3', %4 scans, %5 à %6 min, m/z %7 à %8")
                      .arg(QFileInfo(file).fileName(), format, analysis)
                      .arg(run.scanCount())
                      .arg(run.rtimes.first(), 0, 'f', 2)
                      .arg(run.rtimes.last(), 0, 'f', 2)
                      .arg(run.minKey() / 100.0, 0, 'f', 2)
                      .arg(run.maxKey() / 100.0, 0, 'f', 2));
    context.print(QStringLiteral("  ") + project.acquisitionFile(analysis));
    QJsonObject json;
    json.insert(QStringLiteral("analysis"), analysis);
    json.insert(QStringLiteral("format"), format);
    json.insert(QStringLiteral("scans"), run.scanCount());
    json.insert(QStringLiteral("points"), double(run.pointCount()));
    json.insert(QStringLiteral("acquisitionSystem"), double(run.acquisitionSystem));
    json.insert(QStringLiteral("file"), project.acquisitionFile(analysis));
    json.insert(QStringLiteral("description"), project.descriptionFile(analysis));
    context.printJson(json);
    return CliContext::Success;
}
