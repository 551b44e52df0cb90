#include "importcommand.h"

#include "clicontext.h"
#include "projectfolder.h"

#include <tacquisitionrun.h>
#include <trunreader.h>
#include <tprogressbarmgr.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

QString ImportCommand::summary() const
{
    return tr("import an instrument run (ChemStation, ANDI, mzML, CSV...) as new analyses",
              "importe une acquisition d'instrument (ChemStation, ANDI, mzML, CSV...) comme nouvelles analyses");
}

QString ImportCommand::description() const
{
    return tr(
        "The format is told by the content: an Agilent ChemStation data folder (NAME.D: data.ms, dataSim.ms,\n"
        ".ch detector channels) or file (.ms, .ch), classic netCDF (ANDI/AIA MS), JCAMP-DX GC-MS text, mzML or\n"
        "mzXML (MS1 spectra; SRM chromatograms as MS/MS transitions, <NAME>-MSMS beside spectra), an acquisition\n"
        "file (.tcm), else a text table (one row per scan 'time,mass:abundance ...' or one row per point\n"
        "'time,mass,abundance'). Each run becomes <DIR>/Analyses/<NAME>/<NAME>.tcm with its acquisition.xml\n"
        "and its detector channels; a folder's selected-ion data becomes <NAME>-SIM. A file that cannot be\n"
        "read completely is refused and the project is left as it was.",
        "Le format est reconnu au contenu : dossier de données Agilent ChemStation (NOM.D : data.ms,\n"
        "dataSim.ms, voies de détecteur .ch) ou fichier (.ms, .ch), netCDF classique (ANDI/AIA MS), texte\n"
        "JCAMP-DX de GC-MS, mzML ou mzXML (spectres MS1 ; chromatogrammes SRM comme transitions MS/MS,\n"
        "<NOM>-MSMS à côté des spectres), fichier d'acquisition (.tcm), sinon un tableau texte (une ligne par\n"
        "scan 'temps,masse:abondance ...' ou une ligne par point 'temps,masse,abondance'). Chaque acquisition\n"
        "devient <DIR>/Analyses/<NOM>/<NOM>.tcm avec son acquisition.xml et ses voies de détecteur ; les ions\n"
        "sélectionnés d'un dossier deviennent <NOM>-SIM. Un fichier illisible est refusé et le projet reste\n"
        "tel quel.");
}

QList<CliOption> ImportCommand::options() const
{
    return {CliOption{QStringLiteral("name"), QLatin1Char('n'), 1, QStringLiteral("NAME"),
                      tr("name of the new analysis (default: the file's name)",
                         "nom de la nouvelle analyse (par défaut : le nom du fichier)")}};
}

bool ImportCommand::importFile(const QString& dir, const QString& file, const QString& analysis,
                               QVector<TImportedRun>* imported, QString* format, QString* error)
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
    QVector<TImportedRun> runs;
    QString kind;
    if (!TRunReaderRegistry::read(file, &runs, &kind, error))
        return false;
    progress.setProgress(1);
    for (const TImportedRun& one : runs) {
        if (!ProjectFolder::isValidName(analysis + one.suffix, error))
            return false;
        if (project.hasAnalysis(analysis + one.suffix)) {
            *error
                = tr("analysis '%1' already exists in project '%2'", "l'analyse '%1' existe déjà dans le projet '%2'")
                      .arg(analysis + one.suffix, project.path());
            return false;
        }
    }
    // Several runs of one source come in together or not at all.
    QStringList added;
    for (const TImportedRun& one : runs) {
        if (!project.addAnalysis(analysis + one.suffix, one.run, error)) {
            for (const QString& name : added)
                project.removeAnalysis(name);
            return false;
        }
        added.append(analysis + one.suffix);
    }
    progress.setProgress(3);
    if (imported)
        *imported = runs;
    if (format)
        *format = kind;
    return true;
}

QString ImportCommand::defaultName(const QString& file)
{
    return QFileInfo(QDir::cleanPath(file)).completeBaseName();
}

int ImportCommand::run(CliContext& context, const CliArguments& arguments)
{
    const QString dir = arguments.positionals().at(0);
    const QString file = arguments.positionals().at(1);
    const QString analysis
        = arguments.isSet(QStringLiteral("name")) ? arguments.value(QStringLiteral("name")) : defaultName(file);
    QVector<TImportedRun> runs;
    QString format;
    QString error;
    if (!importFile(dir, file, analysis, &runs, &format, &error))
        return context.refuse(error);

    const ProjectFolder project(dir);
    QJsonArray all;
    for (const TImportedRun& one : runs) {
        const TAcquisitionRun& run = one.run;
        const QString name = analysis + one.suffix;
        context.print(tr("Imported %1 (%2): analysis '%3', %4 scans, %5 to %6 min, m/z %7 to %8",
                         "Importé %1 (%2) : analyse '%3', %4 scans, %5 à %6 min, m/z %7 à %8")
                          .arg(QFileInfo(QDir::cleanPath(file)).fileName(), format, name)
                          .arg(run.scanCount())
                          .arg(run.rtimes.value(0), 0, 'f', 2)
                          .arg(run.rtimes.isEmpty() ? 0.0 : run.rtimes.last(), 0, 'f', 2)
                          .arg(run.minKey() / 100.0, 0, 'f', 2)
                          .arg(run.maxKey() / 100.0, 0, 'f', 2));
        QJsonArray channels;
        for (const TDetectorChannel& channel : run.detectors) {
            context.print(tr("  channel %1 (%2, %3): %4 points", "  voie %1 (%2, %3) : %4 points")
                              .arg(channel.name, channel.unit, channel.signal)
                              .arg(channel.values.size()));
            channels.append(channel.name);
        }
        context.print(QStringLiteral("  ") + project.acquisitionFile(name));
        QJsonObject json;
        json.insert(QStringLiteral("analysis"), name);
        json.insert(QStringLiteral("format"), format);
        json.insert(QStringLiteral("scans"), run.scanCount());
        json.insert(QStringLiteral("points"), double(run.pointCount()));
        json.insert(QStringLiteral("acquisitionSystem"), double(run.acquisitionSystem));
        json.insert(QStringLiteral("channels"), channels);
        json.insert(QStringLiteral("file"), project.acquisitionFile(name));
        json.insert(QStringLiteral("description"), project.descriptionFile(name));
        all.append(json);
    }
    if (all.size() == 1) {
        context.printJson(all.first().toObject());
    } else {
        QJsonObject json = all.first().toObject();
        json.insert(QStringLiteral("runs"), all);
        context.printJson(json);
    }
    return CliContext::Success;
}
