#pragma once

#include "ttoviabstractmapper.h"

class VNObject2ToviGraph;

namespace Sedra {

class TToviOverlay;

/// Overlays (kind 1028): file records that belong to a graph (their parent),
/// drawn at "Graphs/<graph identifier>/<identifier>.xml" under the working
/// path. Removing a graph removes its overlays.
class VNSEDRA_EXPORT TToviOverlayMapper : public TToviAbstractMapper
{
public:
    TToviOverlayMapper();
    ~TToviOverlayMapper() override;

    /// A new overlay of `graph` (a graph of this database) under the
    /// identifier `name`; a null or empty `name` makes a new unique
    /// identifier. Null when the graph is not ours, the identifier is taken or
    /// the database is read-only. Written at once when `flush` is true and no
    /// batch is open; the drawing file is the caller's to write.
    TToviOverlay* overlayCreate(const VNObject2ToviGraph* graph, const QString& name, bool flush = true) const;

    TToviOverlay* overlay(const QString& identifier) const;
    TToviOverlay* overlay(const VNObject2* object) const;
    /// The overlays of `graph` (objects), in creation order.
    QList<const VNObject2*> overlaysOf(const VNObject2* graph) const;
    /// Every overlay, in creation order.
    QList<TToviOverlay*> overlayList() const;

    static QString relativeFilePath(const QString& graphIdentifier, const QString& identifier);

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;
    /// Overlays are made only for a graph: always null.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
};

} // namespace Sedra
