#include "ttovioverlaymapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "ttovigraph.h"
#include "ttovioverlay.h"

#include <vnobject2tovigraph.h>
#include <vnobject2tovioverlay.h>

#include <QUuid>

namespace Sedra {

TToviOverlayMapper::TToviOverlayMapper()
    : TToviAbstractMapper(VNObjectTypeOverlay)
{ }

TToviOverlayMapper::~TToviOverlayMapper() = default;

TDatabaseObject* TToviOverlayMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

QString TToviOverlayMapper::relativeFilePath(const QString& graphIdentifier, const QString& identifier)
{
    return VNObject2ToviGraph::folderName() + QLatin1Char('/') + TDatabase::safeFileName(graphIdentifier)
        + QLatin1Char('/') + TDatabase::safeFileName(identifier) + QStringLiteral(".xml");
}

TToviOverlay* TToviOverlayMapper::overlayCreate(const VNObject2ToviGraph* graph, const QString& name, bool flush) const
{
    if (!canStore() || !graph || !header() || !dynamic_cast<TToviGraph*>(database()->record(graph))
        || (!name.isEmpty() && exists(name)))
        return nullptr;
    QString identifier = name;
    while (identifier.isEmpty() || exists(identifier))
        identifier = QStringLiteral("O-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    auto* object = new VNObject2ToviOverlay(identifier, graph, identifier);
    auto* made = new TToviOverlay(object, relativeFilePath(graph->key(), identifier));
    made->setParent(VNObjectTypeGraph, graph->key());
    const QString empty(QLatin1String(""));
    made->setProperties({TProperty(QLatin1String(TToviOverlay::KeyEquation), empty),
                         TProperty(QLatin1String(TToviOverlay::KeyMasterName), empty),
                         TProperty(QLatin1String(TToviOverlay::KeyLiteratureReference), empty),
                         TProperty(QLatin1String(TToviOverlay::KeyProcessType), empty)});
    return static_cast<TToviOverlay*>(store(made, flush));
}

TToviOverlay* TToviOverlayMapper::overlay(const QString& identifier) const
{
    return dynamic_cast<TToviOverlay*>(record(identifier));
}

TToviOverlay* TToviOverlayMapper::overlay(const VNObject2* object) const
{
    return dynamic_cast<TToviOverlay*>(record(object));
}

QList<const VNObject2*> TToviOverlayMapper::overlaysOf(const VNObject2* graph) const
{
    QList<const VNObject2*> result;
    if (!graph || !header())
        return result;
    for (const TDatabaseObject* r : header()->findChildren(VNObjectTypeGraph, graph->key(), type()))
        result.append(r->object());
    return result;
}

QList<TToviOverlay*> TToviOverlayMapper::overlayList() const
{
    return only<TToviOverlay>(records());
}

TDatabaseObject* TToviOverlayMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    // Graphs are read back before overlays: the graph is found now.
    const VNObject2ToviGraph* graph = nullptr;
    if (header() && row.parentType == VNObjectTypeGraph) {
        if (auto* g = dynamic_cast<TToviGraph*>(header()->findByKey(VNObjectTypeGraph, row.parentKey)))
            graph = g->graph();
    }
    auto* object = new VNObject2ToviOverlay(row.name, graph, row.key);
    auto* made = new TToviOverlay(object);
    fillFromRow(made, row);
    bindConnector();
    return made;
}

} // namespace Sedra
