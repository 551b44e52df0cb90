#include "taxis.h"

#include "plavoxml_p.h"

#include <txmlmethod.h>

#include <cmath>

namespace Plavo {

namespace {
const QString kLabel = QStringLiteral("label");
const QString kMinimum = QStringLiteral("minimum");
const QString kMaximum = QStringLiteral("maximum");
const QString kLogarithmic = QStringLiteral("logarithmic");
} // namespace

TAxis::TAxis() = default;

TAxis::TAxis(const QString& label, double minimum, double maximum)
    : m_label(label)
{
    setRange(minimum, maximum);
}

TAxis::~TAxis() = default;

QString TAxis::tagName()
{
    return QStringLiteral("axis");
}

bool TAxis::setRange(double minimum, double maximum)
{
    if (!std::isfinite(minimum) || !std::isfinite(maximum) || minimum > maximum)
        return false;
    m_minimum = minimum;
    m_maximum = maximum;
    return true;
}

bool TAxis::encode(QDomElement& parent) const
{
    QDomElement element = TXMLMethod::createChildElement(parent, tagName());
    if (element.isNull())
        return false;
    TXMLMethod::addToElement(element, kLabel, m_label);
    TXMLMethod::addToElement(element, kMinimum, Xml::writeDouble(m_minimum));
    TXMLMethod::addToElement(element, kMaximum, Xml::writeDouble(m_maximum));
    TXMLMethod::addToElement(element, kLogarithmic, m_logarithmic ? QStringLiteral("1") : QStringLiteral("0"));
    return encodeDataValues(element);
}

bool TAxis::decode(const QDomElement& element)
{
    if (element.isNull() || element.tagName() != tagName())
        return false;
    // Every field is required: an axis without its range is a damaged file,
    // not one to be completed with guesses.
    for (const QString& key : {kLabel, kMinimum, kMaximum, kLogarithmic}) {
        if (TXMLMethod::getChildElement(element, key).isNull())
            return false;
    }
    TAxis read;
    read.m_label = TXMLMethod::getInfoString(element, kLabel);
    double minimum = 0.0;
    double maximum = 0.0;
    if (!Xml::readFiniteDouble(TXMLMethod::getInfoString(element, kMinimum), &minimum)
        || !Xml::readFiniteDouble(TXMLMethod::getInfoString(element, kMaximum), &maximum)
        || !read.setRange(minimum, maximum))
        return false;
    if (!Xml::readBool(TXMLMethod::getInfoString(element, kLogarithmic), &read.m_logarithmic))
        return false;
    QList<TDataInfo> values;
    if (!decodeDataValues(element, &values) || !read.setDataValues(values))
        return false;
    *this = read;
    return true;
}

bool TAxis::operator==(const TAxis& other) const
{
    return m_label == other.m_label && m_minimum == other.m_minimum && m_maximum == other.m_maximum
        && m_logarithmic == other.m_logarithmic && sameDataValues(other);
}

} // namespace Plavo
