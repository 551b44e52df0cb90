#include "vnobject2tovigraph.h"

VNObject2ToviGraph::VNObject2ToviGraph(const QString& name, const QString& key)
    : VNObject2Tovi(name, key)
{ }

VNObject2ToviGraph::~VNObject2ToviGraph() = default;

QString VNObject2ToviGraph::folderName()
{
    return QStringLiteral("Graphs");
}
