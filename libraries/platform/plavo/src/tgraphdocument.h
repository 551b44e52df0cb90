#pragma once

#include "vnplavo_export.h"

#include <QDomDocument>
#include <QDomElement>
#include <QStringList>

namespace Plavo {

class TViewer;

/// The document a graph editor saves:
///
///     <GraphDocument>
///       <TDataXml><Viewer2DGraph .../></TDataXml>
///       ... descriptive elements of the application, beside it ...
///     </GraphDocument>
///
/// The "TDataXml" element belongs to the plotting library; its first child
/// element is the viewer. Whoever owns the document adds its own elements next
/// to it; this class never touches them.
class VNPLAVO_EXPORT TGraphDocument
{
public:
    static QString documentTag();
    static QString dataTag();

    /// A new document holding `viewer`; a null document when the viewer cannot be written.
    static QDomDocument create(const TViewer& viewer);
    /// Writes `viewer` as the content of the document's "TDataXml" element,
    /// replacing what it held (the element is made when missing).
    static bool setViewer(QDomDocument& document, const TViewer& viewer);

    /// The viewer element: the first child element of the document element's
    /// "TDataXml" child. Null when either is missing.
    static QDomElement viewerElement(const QDomDocument& document);
    /// Reads the document's viewer into `viewer`; on false `viewer` is unchanged.
    static bool readViewer(const QDomDocument& document, TViewer* viewer);

    /// The keys of what each axis plots: one entry per axis of the document's
    /// 2D graph viewer, the text of its first TYPE_VALUE data value that
    /// carries one, or an empty text when the axis names none. Empty when the
    /// document has no readable viewer.
    static QStringList ratioUids(const QDomDocument& document);
};

} // namespace Plavo
