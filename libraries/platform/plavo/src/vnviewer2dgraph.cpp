#include "vnviewer2dgraph.h"

#include "plavoxml_p.h"

#include <txmlmethod.h>

#include <cmath>

namespace Plavo {

namespace {
const QString kAxes = QStringLiteral("axes");
const QString kCurves = QStringLiteral("curves");

bool finiteCurve(const TData& curve)
{
    for (const QVector<float>* values : {&curve.xValues(), &curve.yValues(), &curve.colors()}) {
        for (float v : *values) {
            if (!std::isfinite(v))
                return false;
        }
    }
    return true;
}
} // namespace

VNViewer2DGraph::VNViewer2DGraph(TYPE_VIEW type)
    : TViewer(type)
{
    switch (type) {
    case VIEW_ORTHOGONAL:
        m_axes << TAxis(QStringLiteral("X")) << TAxis(QStringLiteral("Y"));
        break;
    case VIEW_POLAR:
        m_axes << TAxis(QStringLiteral("1")) << TAxis(QStringLiteral("2"));
        break;
    case VIEW_TERNARY:
        m_axes << TAxis(QStringLiteral("X"), 0.0, 100.0) << TAxis(QStringLiteral("Y"), 0.0, 100.0)
               << TAxis(QStringLiteral("Z"), 0.0, 100.0);
        break;
    default:
        break;
    }
}

VNViewer2DGraph::~VNViewer2DGraph() = default;

QString VNViewer2DGraph::elementTag()
{
    return QStringLiteral("Viewer2DGraph");
}

QString VNViewer2DGraph::tagName() const
{
    return elementTag();
}

int VNViewer2DGraph::axisCountFor(TYPE_VIEW type)
{
    switch (type) {
    case VIEW_ORTHOGONAL:
        return 2;
    case VIEW_TERNARY:
        return 3;
    case VIEW_POLAR:
        return -1;
    default:
        return 0;
    }
}

int VNViewer2DGraph::maxAxisCount()
{
    return Xml::kMaxAxes;
}

bool VNViewer2DGraph::axisCountFits(TYPE_VIEW type, int count)
{
    if (!isKnownTypeView(type) || count < 0 || count > Xml::kMaxAxes)
        return false;
    const int expected = axisCountFor(type);
    return expected < 0 || expected == count;
}

bool VNViewer2DGraph::setAxesData(const QList<TAxis>& axes)
{
    if (!axisCountFits(getTypeView(), axes.size()))
        return false;
    m_axes = axes;
    return true;
}

bool VNViewer2DGraph::setAxis(int index, const TAxis& axis)
{
    if (index < 0 || index >= m_axes.size())
        return false;
    m_axes[index] = axis;
    return true;
}

bool VNViewer2DGraph::insertPolarAxis(int position, const TAxis& axis)
{
    if (getTypeView() != VIEW_POLAR || m_axes.size() >= Xml::kMaxAxes)
        return false;
    if (position < 0 || position > m_axes.size())
        position = m_axes.size();
    m_axes.insert(position, axis);
    return true;
}

bool VNViewer2DGraph::removePolarAxis(int position)
{
    if (getTypeView() != VIEW_POLAR || position < 0 || position >= m_axes.size())
        return false;
    m_axes.removeAt(position);
    return true;
}

bool VNViewer2DGraph::addCurve(const TData& curve)
{
    if (m_curves.size() >= Xml::kMaxCurves)
        return false;
    m_curves.append(curve);
    return true;
}

bool VNViewer2DGraph::operator==(const VNViewer2DGraph& other) const
{
    return getTypeView() == other.getTypeView() && getTitle() == other.getTitle() && m_axes == other.m_axes
        && m_curves == other.m_curves;
}

bool VNViewer2DGraph::canEncode() const
{
    if (!axisCountFits(getTypeView(), m_axes.size()))
        return false;
    for (const TData& curve : m_curves) {
        if (!finiteCurve(curve))
            return false;
    }
    return true;
}

void VNViewer2DGraph::encodeContent(QDomElement& element) const
{
    QDomElement axes = TXMLMethod::createChildElement(element, kAxes);
    for (const TAxis& axis : m_axes)
        axis.encode(axes);
    QDomElement curves = TXMLMethod::createChildElement(element, kCurves);
    for (const TData& curve : m_curves)
        curve.encode(curves);
}

bool VNViewer2DGraph::decodeContent(const QDomElement& element, TYPE_VIEW type)
{
    QList<QDomElement> axesLists;
    QList<QDomElement> curvesLists;
    if (!Xml::childElements(element, kAxes, 1, false, &axesLists) || axesLists.isEmpty()
        || !Xml::childElements(element, kCurves, 1, false, &curvesLists) || curvesLists.isEmpty())
        return false;

    QList<QDomElement> axisElements;
    if (!Xml::childElements(axesLists.first(), TAxis::tagName(), Xml::kMaxAxes, true, &axisElements)
        || !axisCountFits(type, axisElements.size()))
        return false;
    QList<TAxis> axes;
    for (const QDomElement& e : axisElements) {
        TAxis axis;
        if (!axis.decode(e))
            return false;
        axes.append(axis);
    }

    QList<QDomElement> curveElements;
    if (!Xml::childElements(curvesLists.first(), TData::tagName(), Xml::kMaxCurves, true, &curveElements))
        return false;
    QList<TData> curves;
    qint64 points = 0;
    for (const QDomElement& e : curveElements) {
        TData curve;
        if (!curve.decode(e))
            return false;
        points += curve.count();
        if (points > Xml::kMaxPoints)
            return false;
        curves.append(curve);
    }

    setTypeViewValue(type);
    m_axes = axes;
    m_curves = curves;
    return true;
}

} // namespace Plavo
