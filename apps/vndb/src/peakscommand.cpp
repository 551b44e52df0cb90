#include "peakscommand.h"

#include "clicontext.h"
#include "eiccommand.h"
#include "projectdatabase.h"
#include "projectfolder.h"

#include <tprogressbarmgr.h>
#include <vndatabase.h>
#include <vnobject2analysis.h>

#include <QJsonArray>
#include <QJsonObject>

QString PeaksCommand::summary() const
{
    return tr("find, integrate and store the peaks of a chromatogram",
              "trouve, intègre et enregistre les pics d'un chromatogramme");
}

QString PeaksCommand::description() const
{
    return tr(
        "One chromatogram: the TIC, the extracted-ion chromatogram of MASS (+/- W), or a detector channel.\n"
        "The peaks are stored in the project, replacing those of an earlier run on the same chromatogram.\n"
        "Times in minutes; area in value x minutes; width at half height; sn = height over the noise.",
        "Un chromatogramme : le TIC, le chromatogramme d'ion extrait de MASSE (+/- W), ou une voie de détecteur.\n"
        "Les pics sont enregistrés dans le projet et remplacent ceux d'une détection précédente sur le même\n"
        "chromatogramme. Temps en minutes ; aire en valeur x minutes ; largeur à mi-hauteur ; sn = hauteur\n"
        "sur bruit.");
}

QList<CliOption> PeaksCommand::options() const
{
    return {CliOption{QStringLiteral("tic"), QChar(), 0, QString(),
                      tr("the total-ion chromatogram", "le chromatogramme du courant ionique total")},
            CliOption{QStringLiteral("eic"), QChar(), 1, QStringLiteral("MASS"),
                      tr("the extracted-ion chromatogram of MASS", "le chromatogramme d'ion extrait de MASSE")},
            CliOption{QStringLiteral("window"), QLatin1Char('w'), 1, QStringLiteral("W"),
                      tr("half-width of the mass window (default 0.5)",
                         "demi-largeur de la fenêtre de masse (0,5 par défaut)")},
            CliOption{QStringLiteral("channel"), QChar(), 1, QStringLiteral("NAME"),
                      tr("the detector channel NAME", "la voie de détecteur NOM")}};
}

const VNObject2Analysis* PeaksCommand::openAnalysis(ProjectDatabase& database, const QString& folder,
                                                    const QString& analysis, QString* error)
{
    const ProjectFolder project(folder);
    if (!project.holdsProject(error))
        return nullptr;
    if (!project.hasAnalysis(analysis)) {
        *error = tr("analysis '%1' does not exist in project '%2'", "l'analyse '%1' n'existe pas dans le projet '%2'")
                     .arg(analysis, project.path());
        return nullptr;
    }
    if (!database.open(folder, false, error))
        return nullptr;
    const VNObject2Analysis* found = database.database()->getAnalysis(analysis);
    if (!found) {
        // An analysis copied into the folder since the header was written.
        const ProjectDatabase::SyncOutcome outcome = database.synchronize();
        if (outcome.refused) {
            *error = outcome.messages.value(outcome.messages.size() - 1);
            return nullptr;
        }
        found = database.database()->getAnalysis(analysis);
    }
    if (!found)
        *error = tr("analysis '%1' cannot be registered in project '%2'",
                    "l'analyse '%1' ne peut être enregistrée dans le projet '%2'")
                     .arg(analysis, project.path());
    return found;
}

int PeaksCommand::run(CliContext& context, const CliArguments& arguments)
{
    const bool tic = arguments.isSet(QStringLiteral("tic"));
    const bool eic = arguments.isSet(QStringLiteral("eic"));
    const bool channel = arguments.isSet(QStringLiteral("channel"));
    if (int(tic) + int(eic) + int(channel) != 1)
        return context.usageError(tr("give one of --tic, --eic MASS and --channel NAME",
                                     "donnez une option parmi --tic, --eic MASSE et --channel NOM"),
                                  name());
    QString error;
    VNChromatogram chromatogram = VNChromatogram::tic();
    if (eic) {
        double mass = 0.0, window = 0.0;
        if (!EicCommand::readMass(arguments.value(QStringLiteral("eic")), arguments, &mass, &window, &error))
            return context.usageError(error, name());
        chromatogram = VNChromatogram::ion(mass, window);
    } else if (channel) {
        chromatogram = VNChromatogram::detector(arguments.value(QStringLiteral("channel")));
    }
    const QString folder = arguments.positionals().at(0);
    const QString analysisName = arguments.positionals().at(1);
    ProjectDatabase database;
    const VNObject2Analysis* analysis = openAnalysis(database, folder, analysisName, &error);
    if (!analysis)
        return context.refuse(error);
    TProgressBarMgr progress(1, tr("Detecting peaks in %1", "Détection des pics de %1").arg(analysisName));
    const QList<TPeak> peaks = database.database()->analysisDetectPeaks(analysis, chromatogram, &error);
    progress.setProgress(1);
    if (!error.isEmpty())
        return context.refuse(error);

    context.print(QStringLiteral("# %1: %2, %3 peaks").arg(analysisName, chromatogram.key()).arg(peaks.size()));
    context.print(QStringLiteral("apex_min\tstart_min\tend_min\tarea\theight\twidth_min\tsn"));
    QJsonArray json;
    for (const TPeak& p : peaks) {
        context.print(QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6\t%7")
                          .arg(p.apex, 0, 'f', 4)
                          .arg(p.start, 0, 'f', 4)
                          .arg(p.end, 0, 'f', 4)
                          .arg(p.area, 0, 'g', 8)
                          .arg(p.height, 0, 'g', 8)
                          .arg(p.width, 0, 'f', 4)
                          .arg(p.signalToNoise, 0, 'f', 1));
        QJsonObject object;
        object.insert(QStringLiteral("apex"), p.apex);
        object.insert(QStringLiteral("start"), p.start);
        object.insert(QStringLiteral("end"), p.end);
        object.insert(QStringLiteral("area"), p.area);
        object.insert(QStringLiteral("height"), p.height);
        object.insert(QStringLiteral("width"), p.width);
        object.insert(QStringLiteral("sn"), p.signalToNoise);
        json.append(object);
    }
    context.printJson(json);
    return CliContext::Success;
}
