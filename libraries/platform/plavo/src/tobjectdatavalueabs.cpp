#include "tobjectdatavalueabs.h"

#include "plavoxml_p.h"

#include <txmlmethod.h>

namespace Plavo {

namespace {
const QString kDataValues = QStringLiteral("dataValues");
const QString kDataValue = QStringLiteral("dataValue");
const QString kType = QStringLiteral("type");
} // namespace

TObjectDataValueAbs::~TObjectDataValueAbs() = default;

QList<TDataInfo> TObjectDataValueAbs::getDataValues(TDataInfo::TYPE type) const
{
    QList<TDataInfo> result;
    for (const TDataInfo& info : m_dataValues) {
        if (info.type() == type)
            result.append(info);
    }
    return result;
}

QString TObjectDataValueAbs::firstDataValue(TDataInfo::TYPE type) const
{
    for (const TDataInfo& info : m_dataValues) {
        if (info.type() == type && !info.value().isEmpty())
            return info.value();
    }
    return QString();
}

bool TObjectDataValueAbs::addDataValue(const TDataInfo& value)
{
    if (!value.isValid() || m_dataValues.size() >= Xml::kMaxDataValues)
        return false;
    m_dataValues.append(value);
    return true;
}

bool TObjectDataValueAbs::setDataValues(const QList<TDataInfo>& values)
{
    if (values.size() > Xml::kMaxDataValues)
        return false;
    for (const TDataInfo& info : values) {
        if (!info.isValid())
            return false;
    }
    m_dataValues = values;
    return true;
}

bool TObjectDataValueAbs::encodeDataValues(QDomElement& element) const
{
    QDomElement list = TXMLMethod::createChildElement(element, kDataValues);
    if (list.isNull())
        return false;
    QDomDocument document = element.ownerDocument();
    for (const TDataInfo& info : m_dataValues) {
        QDomElement value = TXMLMethod::createChildElement(list, kDataValue);
        value.setAttribute(kType, int(info.type()));
        value.appendChild(document.createTextNode(info.value()));
    }
    return true;
}

bool TObjectDataValueAbs::decodeDataValues(const QDomElement& element, QList<TDataInfo>* values)
{
    QList<TDataInfo> result;
    QList<QDomElement> lists;
    if (!Xml::childElements(element, kDataValues, 1, false, &lists))
        return false;
    if (!lists.isEmpty()) {
        QList<QDomElement> items;
        if (!Xml::childElements(lists.first(), kDataValue, Xml::kMaxDataValues, true, &items))
            return false;
        for (const QDomElement& item : items) {
            int type = 0;
            if (!Xml::readInt(item.attribute(kType), &type) || !TDataInfo::isKnownType(type))
                return false;
            result.append(TDataInfo(TDataInfo::TYPE(type), item.text()));
        }
    }
    *values = result;
    return true;
}

} // namespace Plavo
