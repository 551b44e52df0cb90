#include "plotcommand.h"

#include "analysisdata.h"
#include "clicontext.h"
#include "eiccommand.h"
#include "picturewriter.h"
#include "plotpainter.h"
#include "channelcommand.h"
#include "projectfolder.h"
#include "spectrumcommand.h"
#include "ticcommand.h"

#include <QFileInfo>
#include <QJsonObject>

QString PlotCommand::summary() const
{
    return tr("draw a chromatogram or a spectrum as a PNG or SVG picture",
              "dessine un chromatogramme ou un spectre en image PNG ou SVG");
}

QList<CliOption> PlotCommand::options() const
{
    return QList<CliOption>{
               CliOption{QStringLiteral("tic"), QChar(), 0, QString(),
                         tr("total-ion chromatogram", "chromatogramme du courant ionique total")},
               CliOption{QStringLiteral("eic"), QChar(), 1, QStringLiteral("MASS"),
                         tr("extracted-ion chromatogram of m/z MASS", "chromatogramme de l'ion extrait m/z MASSE")},
               CliOption{QStringLiteral("window"), QLatin1Char('w'), 1, QStringLiteral("W"),
                         tr("half-width of the mass window (default 0.5)",
                            "demi-largeur de la fenêtre de masse (0,5 par défaut)")},
               CliOption{QStringLiteral("channel"), QChar(), 1, QStringLiteral("NAME"),
                         tr("detector channel NAME (FID, UV...)", "voie de détecteur NOM (FID, UV...)")},
               CliOption{QStringLiteral("spectrum"), QChar(), 2, QStringLiteral("FIRST [LAST]"),
                         tr("spectrum of a scan or mean of a range", "spectre d'un scan ou moyenne d'une plage")},
               CliOption{QStringLiteral("output"), QLatin1Char('o'), 1, QStringLiteral("FILE"),
                         tr("picture to write (.png or .svg)", "image à écrire (.png ou .svg)")},
               CliOption{QStringLiteral("size"), QChar(), 1, QStringLiteral("WxH"),
                         tr("picture size in pixels (default 1200x700)",
                            "taille de l'image en pixels (1200x700 par défaut)")},
               CliOption{QStringLiteral("title"), QChar(), 1, QStringLiteral("TEXT"),
                         tr("title instead of the analysis and signal", "titre à la place de l'analyse et du signal")},
           }
    + TicCommand::timeOptions();
}

int PlotCommand::run(CliContext& context, const CliArguments& arguments)
{
    const int kinds = int(arguments.isSet(QStringLiteral("tic"))) + int(arguments.isSet(QStringLiteral("eic")))
        + int(arguments.isSet(QStringLiteral("spectrum"))) + int(arguments.isSet(QStringLiteral("channel")));
    if (kinds != 1)
        return context.usageError(
            tr("choose one of --tic, --eic MASS, --spectrum FIRST [LAST] and --channel NAME",
               "choisir une option parmi --tic, --eic MASSE, --spectrum PREMIER [DERNIER] et --channel NOM"),
            name());
    QString output;
    QSize size = defaultSize();
    const QString pictureProblem = PictureWriter::readOutput(arguments, &output, &size);
    if (!pictureProblem.isEmpty())
        return context.usageError(pictureProblem, name());
    QString error;
    double mass = 0.0, window = EicCommand::DefaultWindow;
    int first = 0, last = 0;
    if (arguments.isSet(QStringLiteral("eic"))
        && !EicCommand::readMass(arguments.value(QStringLiteral("eic")), arguments, &mass, &window, &error))
        return context.usageError(error, name());
    if (arguments.isSet(QStringLiteral("spectrum"))) {
        const QStringList scans = arguments.values(QStringLiteral("spectrum"));
        if (!SpectrumCommand::readScans(scans.value(0), scans.value(1), &first, &last, &error))
            return context.usageError(error, name());
    }

    const QString analysis = arguments.positionals().at(1);
    AnalysisData data;
    AnalysisSeries series;
    const ProjectFolder project(arguments.positionals().at(0));
    QString unit;
    bool ok = true;
    if (arguments.isSet(QStringLiteral("channel")))
        ok = project.holdsProject(&error)
            && ChannelCommand::channelSeries(project, analysis, arguments.value(QStringLiteral("channel")), &series,
                                             &unit, &error);
    else
        ok = data.open(project, analysis, &error);
    if (ok && !arguments.isSet(QStringLiteral("channel"))) {
        if (arguments.isSet(QStringLiteral("tic")))
            ok = data.tic(&series, &error);
        else if (arguments.isSet(QStringLiteral("eic")))
            ok = data.eic(mass, window, &series, &error);
        else
            ok = data.spectrum(first, last, &series, &error);
    }
    if (!ok)
        return context.refuse(error);
    if (series.kind == AnalysisSeries::Chromatogram) {
        bool usage = false;
        if (!TicCommand::applyTimeWindow(arguments, &series, &error, &usage))
            return usage ? context.usageError(error, name()) : context.refuse(error);
    }

    PlotPainter painter(series);
    if (arguments.isSet(QStringLiteral("title")))
        painter.setTitle(arguments.value(QStringLiteral("title")));
    if (!painter.write(output, size, &error))
        return context.refuse(error);
    context.print(tr("Wrote %1 (%2, %3x%4)", "Écrit %1 (%2, %3x%4)")
                      .arg(QFileInfo(output).absoluteFilePath(), painter.title())
                      .arg(size.width())
                      .arg(size.height()));
    QJsonObject json;
    json.insert(QStringLiteral("file"), QFileInfo(output).absoluteFilePath());
    json.insert(QStringLiteral("title"), painter.title());
    json.insert(QStringLiteral("width"), size.width());
    json.insert(QStringLiteral("height"), size.height());
    json.insert(QStringLiteral("points"), series.x.size());
    context.printJson(json);
    return CliContext::Success;
}
