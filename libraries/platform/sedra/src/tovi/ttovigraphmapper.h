#pragma once

#include "ttoviabstractmapper.h"

namespace Sedra {

class TToviGraph;

/// Reference graphs (kind 1027): file records whose drawing is an XML file
/// under the working path, at "Graphs/<identifier>.xml". The file's path
/// depends on the identifier only, so that the reference databases sharing a
/// working folder name one file for one graph; removing a record therefore
/// leaves its file (another database may still name it).
class VNSEDRA_EXPORT TToviGraphMapper : public TToviAbstractMapper
{
public:
    TToviGraphMapper();
    ~TToviGraphMapper() override;

    /// A new graph record under the identifier `name`; a null or empty `name`
    /// makes a new unique identifier. The record is numbered after the
    /// largest number in use. Null when the identifier is taken or the
    /// database is read-only. Written at once when `flush` is true and no
    /// batch is open; the drawing file is the caller's to write.
    TToviGraph* createGraph(const QString& name, bool flush = true) const;

    TToviGraph* graph(const QString& identifier) const;
    TToviGraph* graph(const VNObject2* object) const;
    /// Every graph, in creation order.
    QList<TToviGraph*> graphList() const;
    /// The drawing's path of a graph of this identifier, relative to the
    /// working path.
    static QString relativeFilePath(const QString& identifier);

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
};

} // namespace Sedra
