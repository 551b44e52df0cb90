#include "ttovigraphmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "ttovigraph.h"

#include <vnobject2tovigraph.h>

#include <QUuid>

#include <algorithm>

namespace Sedra {

TToviGraphMapper::TToviGraphMapper()
    : TToviAbstractMapper(VNObjectTypeGraph)
{ }

TToviGraphMapper::~TToviGraphMapper() = default;

QString TToviGraphMapper::relativeFilePath(const QString& identifier)
{
    return VNObject2ToviGraph::folderName() + QLatin1Char('/') + TDatabase::safeFileName(identifier)
        + QStringLiteral(".xml");
}

TDatabaseObject* TToviGraphMapper::create(const QString& name, bool flush) const
{
    return createGraph(name, flush);
}

TToviGraph* TToviGraphMapper::createGraph(const QString& name, bool flush) const
{
    if (!canStore() || (!name.isEmpty() && exists(name)))
        return nullptr;
    // A new identifier must not meet one made in another database when both
    // are merged: a UUID, not a counter.
    QString identifier = name;
    while (identifier.isEmpty() || exists(identifier))
        identifier = QStringLiteral("G-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    int largest = 0;
    for (const TToviGraph* g : graphList())
        largest = std::max(largest, int(g->number()));
    auto* object = new VNObject2ToviGraph(identifier, identifier);
    auto* made = new TToviGraph(object, relativeFilePath(identifier));
    made->setProperties({TProperty(QLatin1String(TToviGraph::KeyMasterName), QString(QLatin1String(""))),
                         TProperty(QLatin1String(TToviGraph::KeyNumber), QString::number(largest + 1))});
    return static_cast<TToviGraph*>(store(made, flush));
}

TToviGraph* TToviGraphMapper::graph(const QString& identifier) const
{
    return dynamic_cast<TToviGraph*>(record(identifier));
}

TToviGraph* TToviGraphMapper::graph(const VNObject2* object) const
{
    return dynamic_cast<TToviGraph*>(record(object));
}

QList<TToviGraph*> TToviGraphMapper::graphList() const
{
    return only<TToviGraph>(records());
}

TDatabaseObject* TToviGraphMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    auto* object = new VNObject2ToviGraph(row.name, row.key);
    auto* made = new TToviGraph(object);
    fillFromRow(made, row);
    object->setTitle(made->getToVIName());
    bindConnector();
    return made;
}

} // namespace Sedra
