#include "tgraphdocument.h"

#include "tdatainfo.h"
#include "tdataxml.h"
#include "tviewer.h"
#include "vnviewer2dgraph.h"

#include <txmlmethod.h>

namespace Plavo {

QString TGraphDocument::documentTag()
{
    return QStringLiteral("GraphDocument");
}

QString TGraphDocument::dataTag()
{
    return QStringLiteral("TDataXml");
}

QDomDocument TGraphDocument::create(const TViewer& viewer)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(QStringLiteral("xml"),
                                                              QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    document.appendChild(document.createElement(documentTag()));
    if (!setViewer(document, viewer))
        return QDomDocument();
    return document;
}

bool TGraphDocument::setViewer(QDomDocument& document, const TViewer& viewer)
{
    QDomElement root = document.documentElement();
    if (root.isNull())
        return false;
    // Written into a detached element first, so that a viewer that cannot be
    // written leaves the document as it was.
    QDomElement fresh = document.createElement(dataTag());
    if (!viewer.encode(fresh))
        return false;
    const QDomElement existing = TXMLMethod::getChildElement(root, dataTag());
    if (existing.isNull())
        root.insertBefore(fresh, root.firstChild());
    else
        root.replaceChild(fresh, existing);
    return true;
}

QDomElement TGraphDocument::viewerElement(const QDomDocument& document)
{
    const QDomElement data = TXMLMethod::getChildElement(document.documentElement(), dataTag());
    if (data.isNull())
        return QDomElement();
    return data.firstChildElement();
}

bool TGraphDocument::readViewer(const QDomDocument& document, TViewer* viewer)
{
    const QDomElement element = viewerElement(document);
    if (!viewer || element.isNull())
        return false;
    return viewer->decode(TDataXml(element).contentElement());
}

QStringList TGraphDocument::ratioUids(const QDomDocument& document)
{
    VNViewer2DGraph viewer;
    if (!readViewer(document, &viewer))
        return QStringList();
    QStringList keys;
    for (const TAxis& axis : viewer.getAxesData())
        keys.append(axis.firstDataValue(TDataInfo::TYPE_VALUE));
    return keys;
}

} // namespace Plavo
