#pragma once

#include "vnobject2tovigraph.h"

/// An overlay: a reference zone or curve drawn over one graph.
class VNOBJECTMODEL_EXPORT VNObject2ToviOverlay : public VNObject2Tovi
{
public:
    explicit VNObject2ToviOverlay(const QString& name = QString(), const VNObject2ToviGraph* graph = nullptr,
                                  const QString& key = QString());
    ~VNObject2ToviOverlay() override;
    int type() const override { return VNObjectTypeOverlay; }

    /// The graph the overlay is drawn over; not owned.
    const VNObject2ToviGraph* graph() const { return m_graph; }
    void setGraph(const VNObject2ToviGraph* graph) { m_graph = graph; }

private:
    const VNObject2ToviGraph* m_graph;
};
