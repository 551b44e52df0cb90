#include "diagramcommand.h"

#include "clicontext.h"
#include "diagrampainter.h"
#include "parametervaluesrun.h"
#include "picturewriter.h"

#include <tprogressbarmgr.h>
#include <vndatabasetovi.h>
#include <vnobject2tovigraph.h>
#include <vnobject2tovioverlay.h>
#include <vntovidatabaseinterface.h>
#include <vnviewer2dgraph.h>

#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The drawing of a graph or an overlay: the viewer its document holds.
bool viewerOf(const VNObject2* object, Plavo::VNViewer2DGraph* viewer)
{
    const QDomElement element = VNDatabaseTovi::getXmlData(object);
    return !element.isNull() && viewer->decode(element);
}

// Curves of an overlay are zones when they close on themselves (their last
// point repeats the first), lines otherwise.
DiagramPainter::Zone zoneOf(const Plavo::TData& curve)
{
    DiagramPainter::Zone zone;
    zone.label = curve.label();
    zone.color = curve.curveColor().isValid() ? curve.curveColor() : QColor(120, 120, 120);
    for (int i = 0; i < curve.count(); ++i)
        zone.points << QPointF(curve.x(i), curve.y(i));
    zone.closed = zone.points.size() > 2 && zone.points.first() == zone.points.last();
    if (zone.closed)
        zone.points.removeLast();
    return zone;
}

} // namespace

QString DiagramCommand::summary() const
{
    return tr("draw a reference diagram with analyses placed by their parameters",
              "dessine un diagramme de référence avec les analyses placées par leurs paramètres");
}

QString DiagramCommand::description() const
{
    return tr("GRAPH is the name of a graph of the merged reference database (vndb ref list --kind graphs).\n"
              "Its overlays are drawn as filled zones and lines with their labels; each ANALYSIS (every analysis\n"
              "of the project when none is named) is a labelled point at its parameter values, computed and\n"
              "stored as by vndb params. An analysis without a value for an axis is not placed: the legend says so.",
              "GRAPH est le nom d'un graphe de la base de référence fusionnée (vndb ref list --kind graphs).\n"
              "Ses overlays sont dessinés en zones remplies et en lignes avec leurs étiquettes ; chaque ANALYSE\n"
              "(toutes les analyses du projet si aucune n'est nommée) est un point étiqueté à ses valeurs de\n"
              "paramètres, calculées et enregistrées comme par vndb params. Une analyse sans valeur pour un axe\n"
              "n'est pas placée : la légende le dit.");
}

QList<CliOption> DiagramCommand::options() const
{
    return {
        CliOption{QStringLiteral("dir"), QChar(), 1, QStringLiteral("REFDIR"),
                  tr("folder of the reference databases (as for vndb ref)",
                     "dossier des bases de référence (comme pour vndb ref)")},
        CliOption{QStringLiteral("output"), QLatin1Char('o'), 1, QStringLiteral("FILE"),
                  tr("picture to write (.png or .svg)", "image à écrire (.png ou .svg)")},
        CliOption{QStringLiteral("size"), QChar(), 1, QStringLiteral("WxH"),
                  tr("picture size in pixels (default 1100x700)", "taille de l'image en pixels (1100x700 par défaut)")},
    };
}

QStringList DiagramCommand::graphNames(VNToviDatabaseInterface* reference)
{
    QStringList names;
    for (const VNObject2* object : reference->getAllGraphs()) {
        if (const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(object))
            names << graph->getTitle();
    }
    std::sort(names.begin(), names.end());
    return names;
}

const VNObject2* DiagramCommand::findGraph(VNToviDatabaseInterface* reference, const QString& name)
{
    for (const VNObject2* object : reference->getAllGraphs()) {
        const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(object);
        if (graph && (graph->getTitle() == name || graph->name() == name))
            return graph;
    }
    return nullptr;
}

bool DiagramCommand::draw(ParameterValuesRun& run, const VNObject2* object, const QStringList& analyses,
                          const QString& output, const QSize& size, QStringList* placed, QStringList* unplaced,
                          QString* error)
{
    const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(object);
    Plavo::VNViewer2DGraph viewer;
    if (!graph || !viewerOf(graph, &viewer)) {
        *error = tr("the drawing of graph '%1' cannot be read", "le dessin du graphe '%1' ne peut pas être lu")
                     .arg(graph ? graph->getTitle() : QString());
        return false;
    }
    VNToviDatabaseInterface* reference = run.reference();
    QList<DiagramPainter::Axis> axes;
    QStringList keys;
    for (const Plavo::TAxis& a : viewer.getAxesData()) {
        DiagramPainter::Axis axis;
        keys << a.firstDataValue(Plavo::TDataInfo::TYPE_VALUE);
        const VNObject2* ratio = keys.last().isEmpty() ? nullptr : reference->getRatio(keys.last());
        axis.label = !a.label().isEmpty() ? a.label() : ratio ? ratio->name() : keys.last();
        axis.minimum = a.minimum();
        axis.maximum = a.maximum();
        axis.logarithmic = a.isLogarithmic();
        axes << axis;
    }
    DiagramPainter painter(viewer.getTypeView(), axes);
    painter.setTitle(graph->getTitle());
    for (const VNObject2* overlay : reference->getOverlays(graph)) {
        Plavo::VNViewer2DGraph drawing;
        if (!overlay || !viewerOf(overlay, &drawing))
            continue;
        for (const Plavo::TData& curve : drawing.getCurves())
            painter.addZone(zoneOf(curve));
    }
    {
        TProgressBarMgr progress(int(analyses.size()), tr("Computing parameters", "Calcul des paramètres"));
        for (int i = 0; i < analyses.size(); ++i) {
            progress.setProgress(i, analyses.at(i));
            QList<TParameterValue> values;
            if (!run.compute(analyses.at(i), &values, error))
                return false;
            QHash<QString, TParameterValue> byKey;
            for (const TParameterValue& value : qAsConst(values))
                byKey.insert(value.key, value);
            DiagramPainter::Sample sample;
            sample.label = analyses.at(i);
            for (const QString& key : qAsConst(keys)) {
                const TParameterValue value = byKey.value(key);
                sample.values << (value.ok ? value.value : std::numeric_limits<double>::quiet_NaN());
                if (!value.ok && sample.reason.isEmpty())
                    sample.reason = value.name.isEmpty() ? tr("no parameter '%1'", "aucun paramètre '%1'").arg(key)
                                                         : QStringLiteral("%1: %2").arg(value.name, value.reason);
            }
            painter.addSample(sample);
        }
        progress.setProgress(int(analyses.size()));
    }
    if (!painter.write(output, size, error))
        return false;
    *placed = painter.placed();
    *unplaced = painter.unplaced();
    return true;
}

int DiagramCommand::run(CliContext& context, const CliArguments& arguments)
{
    QString output;
    QSize size = defaultSize();
    const QString pictureProblem = PictureWriter::readOutput(arguments, &output, &size);
    if (!pictureProblem.isEmpty())
        return context.usageError(pictureProblem, name());
    const QString folder = arguments.isSet(QStringLiteral("dir")) ? arguments.value(QStringLiteral("dir"))
                                                                  : ReferenceDatabases::defaultFolder();
    QString error;
    ParameterValuesRun run;
    QStringList analyses;
    const QString project = arguments.positionals().at(0);
    const QStringList names = arguments.positionals().mid(2);
    if (!ParameterValuesRun::checkNames(project, names, &error) || !run.openReferences(folder, &error))
        return context.refuse(error);
    const QString graphName = arguments.positionals().at(1);
    const VNObject2* graph = findGraph(run.reference(), graphName);
    if (!graph) {
        const QStringList graphs = graphNames(run.reference());
        return context.refuse(
            tr("no graph '%1' in the reference databases (graphs: %2)",
               "aucun graphe '%1' dans les bases de référence (graphes : %2)")
                .arg(graphName, graphs.isEmpty() ? tr("none", "aucun") : graphs.join(QStringLiteral(", "))));
    }
    if (!run.openProject(project, &error) || !run.choose(names, &analyses, &error))
        return context.refuse(error);
    QStringList placed, unplaced;
    if (!draw(run, graph, analyses, output, size, &placed, &unplaced, &error))
        return context.refuse(error);
    const QString file = QFileInfo(output).absoluteFilePath();
    context.print(
        tr("Wrote %1 (%2, %3x%4)", "Écrit %1 (%2, %3x%4)").arg(file, graphName).arg(size.width()).arg(size.height()));
    context.print(tr("placed: %1", "placées : %1")
                      .arg(placed.isEmpty() ? tr("none", "aucune") : placed.join(QStringLiteral(", "))));
    if (!unplaced.isEmpty())
        context.print(tr("not placed (a value is missing): %1", "non placées (une valeur manque) : %1")
                          .arg(unplaced.join(QStringLiteral(", "))));
    QJsonObject json;
    json.insert(QStringLiteral("file"), file);
    json.insert(QStringLiteral("graph"), graphName);
    json.insert(QStringLiteral("width"), size.width());
    json.insert(QStringLiteral("height"), size.height());
    json.insert(QStringLiteral("placed"), QJsonArray::fromStringList(placed));
    json.insert(QStringLiteral("unplaced"), QJsonArray::fromStringList(unplaced));
    context.printJson(json);
    return CliContext::Success;
}
