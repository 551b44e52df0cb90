#include "identifycommand.h"

#include "clicontext.h"
#include "peakscommand.h"
#include "projectdatabase.h"
#include "referencedatabases.h"

#include <vndatabase.h>
#include <vnobject2analysis.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

QString IdentifyCommand::summary() const
{
    return tr("identify the reference compounds in an analysis", "identifie les composés de référence d'une analyse");
}

QString IdentifyCommand::description() const
{
    return tr("The analysis is calibrated on its n-alkanes (m/z 57, or its FID channel when it has no scans);\n"
              "each compound of the merged reference database with a retention index is the largest peak of its\n"
              "ion within +/- I index units of that index (15 by default). The peaks found are stored.\n"
              "The reference folder is --dir, else $TOVIDBDIR, else vndb-demo/reference.",
              "L'analyse est étalonnée sur ses n-alcanes (m/z 57, ou sa voie FID si elle n'a pas de scans) ;\n"
              "chaque composé de la base de référence fusionnée qui a un indice de rétention est le plus grand pic\n"
              "de son ion à +/- I unités de cet indice (15 par défaut). Les pics trouvés sont enregistrés.\n"
              "Le dossier de référence est --dir, sinon $TOVIDBDIR, sinon vndb-demo/reference.");
}

QList<CliOption> IdentifyCommand::options() const
{
    return {CliOption{QStringLiteral("dir"), QChar(), 1, QStringLiteral("REFDIR"),
                      tr("the folder of the reference databases", "le dossier des bases de référence")},
            CliOption{QStringLiteral("window"), QLatin1Char('w'), 1, QStringLiteral("I"),
                      tr("half-width of the window, in index units (default 15)",
                         "demi-largeur de la fenêtre, en unités d'indice (15 par défaut)")}};
}

int IdentifyCommand::run(CliContext& context, const CliArguments& arguments)
{
    double window = TIdentifier::DefaultWindow;
    if (arguments.isSet(QStringLiteral("window"))) {
        const QString text = arguments.value(QStringLiteral("window"));
        if (!CliArguments::toNumber(text, &window) || !(window > 0.0))
            return context.usageError(
                tr("'%1' is not an index window", "'%1' n'est pas une fenêtre d'indices").arg(text), name());
    }
    QString error;
    ReferenceDatabases references;
    const QString referenceFolder = arguments.isSet(QStringLiteral("dir")) ? arguments.value(QStringLiteral("dir"))
                                                                           : ReferenceDatabases::defaultFolder();
    if (!references.open(referenceFolder, false, &error))
        return context.refuse(error);
    VNToviDatabaseInterface* merged = references.database(Sedra::DatabaseToviMerged, &error);
    if (!merged)
        return context.refuse(error);
    const QList<TIdentificationTarget> targets = VNDatabase::identificationTargets(merged);

    const QString analysisName = arguments.positionals().at(1);
    ProjectDatabase database;
    const VNObject2Analysis* analysis
        = PeaksCommand::openAnalysis(database, arguments.positionals().at(0), analysisName, &error);
    if (!analysis)
        return context.refuse(error);
    const TCompoundMeasures measures = database.database()->analysisIdentify(analysis, targets, window);

    int found = 0;
    QJsonArray json;
    context.print(QStringLiteral("compound\tfound\tapex_min\tindex\tarea\theight\treason"));
    for (const TCompoundMeasure& m : measures) {
        found += m.found;
        const QString index = std::isfinite(m.retentionIndex) ? QString::number(m.retentionIndex, 'f', 1) : QString();
        context.print(QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6\t%7")
                          .arg(m.shortName, m.found ? QStringLiteral("yes") : QStringLiteral("no"),
                               m.found ? QString::number(m.apex, 'f', 4) : QString(), index,
                               m.found ? QString::number(m.area, 'g', 8) : QString(),
                               m.found ? QString::number(m.height, 'g', 8) : QString(), m.reason));
        QJsonObject object;
        object.insert(QStringLiteral("compound"), m.shortName);
        object.insert(QStringLiteral("id"), m.compoundId);
        object.insert(QStringLiteral("ion"), m.ion);
        object.insert(QStringLiteral("found"), m.found);
        object.insert(QStringLiteral("apex"), m.found ? QJsonValue(m.apex) : QJsonValue());
        object.insert(QStringLiteral("index"),
                      std::isfinite(m.retentionIndex) ? QJsonValue(m.retentionIndex) : QJsonValue());
        object.insert(QStringLiteral("area"), m.found ? QJsonValue(m.area) : QJsonValue());
        object.insert(QStringLiteral("height"), m.found ? QJsonValue(m.height) : QJsonValue());
        object.insert(QStringLiteral("reason"), m.reason);
        json.append(object);
    }
    context.printJson(json);
    context.note(tr("%1 of %2 compounds found in %3", "%1 composés sur %2 trouvés dans %3")
                     .arg(found)
                     .arg(measures.size())
                     .arg(analysisName));
    return CliContext::Success;
}
