#include "vndatabasetovisample.h"

#include "vntovidatabaseinterface.h"

#include <tdatabase.h>
#include <ttovibatch.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <ttoviratio.h>
#include <vnobject2tovi.h>
#include <vnobject2tovigraph.h>

#include "vndatamodelgraph.h"
#include "vndatamodeloverlay.h"
#include "vngraphdocument.h"

#include <tgraphdocument.h>
#include <vnviewer2dgraph.h>

#include <QDomDocument>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
QString text(const QJsonObject& object, const char* name)
{
    const QJsonValue value = object.value(QLatin1String(name));
    return value.isDouble() ? QString::number(value.toDouble()) : value.toString();
}

void setError(QString* error, const QString& message)
{
    if (error)
        *error = message;
}
} // namespace

namespace {

Plavo::TData curveOf(const QJsonObject& zone)
{
    const QJsonArray points = zone.value(QStringLiteral("points")).toArray();
    QVector<float> x, y;
    for (const QJsonValue& point : points) {
        const QJsonArray pair = point.toArray();
        x << float(pair.at(0).toDouble());
        y << float(pair.at(1).toDouble());
    }
    // A zone is a closed polygon: its last point repeats its first.
    if (zone.value(QStringLiteral("closed")).toBool(true) && !x.isEmpty()
        && (x.first() != x.last() || y.first() != y.last())) {
        x << x.first();
        y << y.first();
    }
    Plavo::TData curve(x.size(), x.constData(), y.constData());
    curve.setLabel(text(zone, "label"));
    curve.setCurveColor(QColor(text(zone, "color")));
    return curve;
}

} // namespace

void VNDatabaseToviSample::loadGraphs(VNToviDatabaseInterface* db, const QJsonArray& graphs, Counts* made)
{
    QStringList existing;
    for (const VNObject2* object : db->getAllGraphs()) {
        if (const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(object))
            existing << graph->getTitle();
    }
    for (const QJsonValue& value : graphs) {
        const QJsonObject g = value.toObject();
        const QString name = text(g, "name");
        const auto type = Plavo::TYPE_VIEW(g.value(QStringLiteral("type")).toInt(1));
        if (name.isEmpty() || existing.contains(name) || !Plavo::isKnownTypeView(type))
            continue;
        VNDataModelGraph model(type);
        model.setToVIName(name);
        model.setIsORL(true);
        model.setStudyType(text(g, "studyType"));
        model.setFamilyName(text(g, "familyName"));
        model.setProcessType(text(g, "processType"));
        model.setExpectedAnalysisType(text(g, "analysisType"));
        model.setLiteratureReference(text(g, "literature"));
        model.setComments(text(g, "comments"));
        const QJsonArray axisList = g.value(QStringLiteral("axes")).toArray();
        if (type == Plavo::VIEW_POLAR) {
            while (model.rowCount() < axisList.size())
                model.addPolarAxe(model.rowCount());
        }
        for (int i = 0; i < axisList.size() && i < model.rowCount(); ++i)
            model.setAxisKey(i, text(axisList.at(i).toObject(), "ratio"));
        QDomDocument document = VNGraphDocument::create(model);
        Plavo::VNViewer2DGraph viewer;
        if (document.isNull() || !Plavo::TGraphDocument::readViewer(document, &viewer))
            continue;
        QList<Plavo::TAxis> axes = viewer.getAxesData();
        for (int i = 0; i < axes.size() && i < axisList.size(); ++i) {
            const QJsonObject a = axisList.at(i).toObject();
            axes[i].setLabel(text(a, "label"));
            axes[i].setRange(a.value(QStringLiteral("minimum")).toDouble(0.0),
                             a.value(QStringLiteral("maximum")).toDouble(0.0));
            axes[i].setLogarithmic(a.value(QStringLiteral("logarithmic")).toBool(false));
        }
        viewer.setAxesData(axes);
        Plavo::TGraphDocument::setViewer(document, viewer);
        const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(db->createGraph(&model, document));
        if (!graph)
            continue;
        ++made->graphs;
        for (const QJsonValue& o : g.value(QStringLiteral("overlays")).toArray()) {
            const QJsonObject overlay = o.toObject();
            // The overlay's drawing: a viewer of the graph's kind whose
            // curves are its zones and lines, in the graph's own terms.
            Plavo::VNViewer2DGraph drawing(type);
            drawing.setTitle(text(overlay, "name"));
            drawing.setAxesData(viewer.getAxesData());
            for (const QJsonValue& zone : overlay.value(QStringLiteral("zones")).toArray())
                drawing.addCurve(curveOf(zone.toObject()));
            QDomDocument overlayDocument = Plavo::TGraphDocument::create(drawing);
            VNDataModelOverlay overlayModel;
            overlayModel.setToVIName(text(overlay, "name"));
            overlayModel.setProcessType(text(overlay, "processType"));
            overlayModel.setLiteratureReference(text(overlay, "literature"));
            QDomElement root = overlayDocument.documentElement();
            overlayModel.encode(root);
            if (!overlayDocument.isNull() && db->overlayCreate(graph, &overlayModel, overlayDocument))
                ++made->overlays;
        }
    }
}

QString VNDatabaseToviSample::defaultFile()
{
    const QString installed
        = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/vndatabase/tovi-sample.json");
    return QFileInfo::exists(installed) ? QFileInfo(installed).canonicalFilePath() : QString();
}

bool VNDatabaseToviSample::load(VNToviDatabaseInterface* db, const QString& file, QString* error, Counts* counts)
{
    Counts made;
    if (counts)
        *counts = made;
    if (!db) {
        setError(error, tr("No reference database to fill", "Aucune base de référence à remplir"));
        return false;
    }
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        setError(error,
                 tr("Cannot read the reference content %1", "Impossible de lire le contenu de référence %1").arg(file));
        return false;
    }
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(input.readAll(), &parse);
    const QJsonObject root = document.object();
    if (parse.error != QJsonParseError::NoError || !root.value(QStringLiteral("compounds")).isArray()) {
        setError(error, tr("%1 is not reference content", "%1 n'est pas un contenu de référence").arg(file));
        return false;
    }

    auto* storage = dynamic_cast<Sedra::TDatabase*>(db);
    Sedra::TToviBatch batch(storage);

    for (const QJsonValue& value : root.value(QStringLiteral("ions")).toArray()) {
        const QJsonObject ion = value.toObject();
        if (db->createEIC(text(ion, "name"), text(ion, "value")))
            ++made.ions;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("compounds")).toArray()) {
        const QJsonObject c = value.toObject();
        Sedra::TToviCompound model;
        model.setToviKey(text(c, "toviKey"));
        model.setMasterName(text(c, "name"));
        model.setOrlName(text(c, "shortName"));
        model.setFormula(text(c, "formula"));
        model.setCas(text(c, "cas"));
        model.setInChI(text(c, "inchi"));
        model.setInChIKey(text(c, "inchiKey"));
        model.setFamily(text(c, "family"));
        model.setCarbons(text(c, "carbons"));
        model.setAnalysisType(text(c, "analysisType"));
        model.setStudyType(text(c, "studyType"));
        model.setFamilyName(text(c, "familyName"));
        model.setExpectedIons(text(c, "expectedIons"));
        model.setRetentionIndex(text(c, "retentionIndex"));
        // The reference key names the compound in joints and aliases.
        if (db->createCompound(&model, text(c, "toviKey")))
            ++made.compounds;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("joints")).toArray()) {
        const QJsonObject joint = value.toObject();
        if (db->createJoint(text(joint, "compound"), text(joint, "ion"), QString()))
            ++made.joints;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("parameters")).toArray()) {
        const QJsonObject p = value.toObject();
        if (db->createRatio(text(p, "ratioId"), text(p, "name"), text(p, "displayFormula"), text(p, "formula"),
                            p.value(QStringLiteral("displayOrder")).toInt(-1), text(p, "studyType"),
                            text(p, "analysisType"), text(p, "processType"), text(p, "familyName"),
                            text(p, "expectedIons"), text(p, "literature")))
            ++made.parameters;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("aliases")).toArray()) {
        const QJsonObject a = value.toObject();
        const QString kind = text(a, "kind");
        const VNObject2* named
            = kind == QLatin1String("ratio") ? db->getRatio(text(a, "ref")) : db->getCompound(text(a, "ref"));
        const auto* object = dynamic_cast<const VNObject2Tovi*>(named);
        if (object && db->aliasCreate(object, text(a, "field"), text(a, "vendor"), text(a, "value")))
            ++made.aliases;
    }

    const bool written = batch.commit();
    // Graphs write their drawings beside the header: made once the rows
    // they name are in.
    if (written)
        loadGraphs(db, root.value(QStringLiteral("graphs")).toArray(), &made);
    if (counts)
        *counts = made;
    if (!written || made.compounds + made.ions + made.parameters == 0) {
        setError(error,
                 tr("Nothing could be written to the reference database",
                    "Rien n'a pu être écrit dans la base de référence"));
        return false;
    }
    return true;
}
