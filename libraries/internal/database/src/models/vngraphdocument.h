#pragma once

#include "vndatabase_export.h"

#include <QDomDocument>
#include <QStringList>

class VNDataModelGraph;

/// The document a graph of the reference database is saved as: the plotting
/// library's "TDataXml" element holding the graph viewer, whose axes name
/// their ratios by key (data values of kind TYPE_VALUE), and beside it the
/// graph's "informations" element with its "ionList".
///
///     <GraphDocument>
///       <TDataXml><Viewer2DGraph ...><axes><axis>...</axis>...</axes></Viewer2DGraph></TDataXml>
///       <informations><graphType/>...<ionList><ion>...</ion></ionList></informations>
///     </GraphDocument>
class VNDATABASE_EXPORT VNGraphDocument
{
public:
    /// The ratio keys of a graph document's axes: one entry per axis, in
    /// order, the text of the axis's first data value of kind TYPE_VALUE that
    /// carries one, or an empty text when the axis names none. Empty when the
    /// document has no "TDataXml" element, no viewer, or a viewer that cannot
    /// be read.
    static QStringList getRatioUids(const QDomDocument& document);

    /// Makes the complete document of `model`: its axes (labelled as its
    /// vertical header, each naming its ratio key), its description and the
    /// ion list. A null document when the model's view type is not a plot.
    static QDomDocument create(const VNDataModelGraph& model, const QStringList& ions = QStringList());

    /// Reads a document made by create() into `model`: its description and
    /// the ratio key of each axis (a polar model takes the document's number
    /// of axes). Refused, with nothing changed, when the document is not
    /// readable or its kind of view is not the model's.
    static bool read(const QDomDocument& document, VNDataModelGraph* model);

    /// The ions listed in the document's description.
    static QStringList ions(const QDomDocument& document);
};
