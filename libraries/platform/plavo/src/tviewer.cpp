#include "tviewer.h"

#include "vnplavologging.h"

#include "plavoxml_p.h"

#include <txmlmethod.h>

namespace Plavo {

namespace {
const QString kVersionAttribute = QStringLiteral("version");
const QString kTypeView = QStringLiteral("typeView");
const QString kTitle = QStringLiteral("title");
} // namespace

TViewer::TViewer(TYPE_VIEW type)
    : m_typeView(type)
{ }

TViewer::~TViewer() = default;

bool TViewer::encode(QDomElement& parent) const
{
    if (parent.isNull() || !isKnownTypeView(m_typeView) || !canEncode())
        return false;
    QDomElement element = TXMLMethod::createChildElement(parent, tagName());
    if (element.isNull())
        return false;
    element.setAttribute(kVersionAttribute, kVersion);
    element.setAttribute(kTypeView, int(m_typeView));
    TXMLMethod::addToElement(element, kTitle, m_title);
    encodeContent(element);
    return true;
}

bool TViewer::decode(const QDomElement& element)
{
    if (element.isNull() || element.tagName() != tagName())
        return false;
    int version = 0;
    int type = 0;
    if (!Xml::readInt(element.attribute(kVersionAttribute), &version) || version < 1 || version > kVersion) {
        qCInfo(vnPlavo, "viewer refused: version '%s'", qUtf8Printable(element.attribute(kVersionAttribute)));
        return false;
    }
    if (!Xml::readInt(element.attribute(kTypeView), &type) || !isKnownTypeView(type)) {
        qCInfo(vnPlavo, "viewer refused: view type '%s'", qUtf8Printable(element.attribute(kTypeView)));
        return false;
    }
    if (TXMLMethod::getChildElement(element, kTitle).isNull())
        return false;
    const QString title = TXMLMethod::getInfoString(element, kTitle);
    if (!decodeContent(element, TYPE_VIEW(type)))
        return false;
    m_typeView = TYPE_VIEW(type);
    m_title = title;
    return true;
}

} // namespace Plavo
