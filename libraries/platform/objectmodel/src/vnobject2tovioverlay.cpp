#include "vnobject2tovioverlay.h"

VNObject2ToviOverlay::VNObject2ToviOverlay(const QString& name, const VNObject2ToviGraph* graph, const QString& key)
    : VNObject2Tovi(name, key)
    , m_graph(graph)
{ }

VNObject2ToviOverlay::~VNObject2ToviOverlay() = default;
