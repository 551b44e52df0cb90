#include "tdata.h"

#include "plavoxml_p.h"

#include <txmlmethod.h>

#include <cmath>

namespace Plavo {

namespace {
const QString kLabel = QStringLiteral("label");
const QString kColor = QStringLiteral("color");
const QString kPoints = QStringLiteral("points");
const QString kPoint = QStringLiteral("p");
const QString kX = QStringLiteral("x");
const QString kY = QStringLiteral("y");
const QString kC = QStringLiteral("c");
const QString kL = QStringLiteral("l");

bool allFinite(const QVector<float>& values)
{
    for (float v : values) {
        if (!std::isfinite(v))
            return false;
    }
    return true;
}
} // namespace

TData::TData(int count, const float* x, const float* y)
{
    if (count <= 0 || !x || !y)
        return;
    m_x = QVector<float>(x, x + count);
    m_y = QVector<float>(y, y + count);
}

QString TData::tagName()
{
    return QStringLiteral("curve");
}

float TData::x(int i) const
{
    return i >= 0 && i < m_x.size() ? m_x.at(i) : 0.0f;
}

float TData::y(int i) const
{
    return i >= 0 && i < m_y.size() ? m_y.at(i) : 0.0f;
}

void TData::setColor(const float* colors)
{
    if (!colors || m_x.isEmpty()) {
        m_colors.clear();
        return;
    }
    m_colors = QVector<float>(colors, colors + m_x.size());
}

QColor TData::pointColor(int i) const
{
    if (i < 0 || i >= m_colors.size())
        return QColor();
    const float value = m_colors.at(i);
    if (!(value >= 0.0f))
        return QColor();
    // A float keeps 24 bits: an RGB with its opaque alpha may round up past
    // the largest 32-bit value, which must not wrap to black.
    const double clamped = std::fmin(double(value), 4294967295.0);
    return QColor::fromRgb(QRgb(quint32(clamped)));
}

void TData::setCurveColor(const QColor& color)
{
    m_curveColor = color.isValid() ? QColor::fromRgba(color.rgba()) : QColor();
}

void TData::setLabels(const QString* labels)
{
    m_labels.clear();
    if (!labels)
        return;
    m_labels.reserve(m_x.size());
    for (int i = 0; i < m_x.size(); ++i)
        m_labels.append(labels[i]);
}

QString TData::pointLabel(int i) const
{
    return i >= 0 && i < m_labels.size() ? m_labels.at(i) : QString();
}

bool TData::encode(QDomElement& parent) const
{
    if (parent.isNull() || !allFinite(m_x) || !allFinite(m_y) || !allFinite(m_colors))
        return false;
    QDomElement element = TXMLMethod::createChildElement(parent, tagName());
    TXMLMethod::addToElement(element, kLabel, m_label);
    TXMLMethod::addToElement(element, kColor, m_curveColor.isValid() ? m_curveColor.name(QColor::HexArgb) : QString());
    QDomElement points = TXMLMethod::createChildElement(element, kPoints);
    for (int i = 0; i < m_x.size(); ++i) {
        QDomElement p = TXMLMethod::createChildElement(points, kPoint);
        p.setAttribute(kX, Xml::writeFloat(m_x.at(i)));
        p.setAttribute(kY, Xml::writeFloat(m_y.at(i)));
        if (!m_colors.isEmpty())
            p.setAttribute(kC, Xml::writeFloat(m_colors.at(i)));
        if (!m_labels.isEmpty())
            p.setAttribute(kL, m_labels.at(i));
    }
    return true;
}

bool TData::decode(const QDomElement& element)
{
    if (element.isNull() || element.tagName() != tagName())
        return false;
    const QDomElement colorElement = TXMLMethod::getChildElement(element, kColor);
    QList<QDomElement> lists;
    if (colorElement.isNull() || TXMLMethod::getChildElement(element, kLabel).isNull()
        || !Xml::childElements(element, kPoints, 1, false, &lists) || lists.isEmpty())
        return false;

    TData read;
    read.m_label = TXMLMethod::getInfoString(element, kLabel);
    const QString colorText = colorElement.text().trimmed();
    if (!colorText.isEmpty()) {
        // Names may carry up to 16 bits per channel ("#rrrrggggbbbb").
        const QColor parsed(colorText);
        if (!parsed.isValid())
            return false;
        read.setCurveColor(parsed);
    }

    QList<QDomElement> points;
    if (!Xml::childElements(lists.first(), kPoint, Xml::kMaxPoints, true, &points))
        return false;
    // Point colours and labels are all or nothing: the first point decides.
    const bool withColors = !points.isEmpty() && points.first().hasAttribute(kC);
    const bool withLabels = !points.isEmpty() && points.first().hasAttribute(kL);
    read.m_x.reserve(points.size());
    read.m_y.reserve(points.size());
    for (const QDomElement& p : points) {
        float x = 0.0f;
        float y = 0.0f;
        if (!Xml::readFiniteFloat(p.attribute(kX), &x) || !Xml::readFiniteFloat(p.attribute(kY), &y))
            return false;
        read.m_x.append(x);
        read.m_y.append(y);
        if (p.hasAttribute(kC) != withColors || p.hasAttribute(kL) != withLabels)
            return false;
        if (withColors) {
            float c = 0.0f;
            if (!Xml::readFiniteFloat(p.attribute(kC), &c))
                return false;
            read.m_colors.append(c);
        }
        if (withLabels)
            read.m_labels.append(p.attribute(kL));
    }
    *this = read;
    return true;
}

bool TData::operator==(const TData& other) const
{
    return m_x == other.m_x && m_y == other.m_y && m_colors == other.m_colors && m_labels == other.m_labels
        && m_label == other.m_label && m_curveColor == other.m_curveColor;
}

} // namespace Plavo
