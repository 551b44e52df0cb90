#include "diagrampainter.h"

#include "nicescale.h"
#include "picturewriter.h"

#include <tcolor.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace {

const double Pi = 3.14159265358979323846;

// One axis of a cross-plot or a polar diagram: its range (the stored one
// widened to what is drawn), its ticks and how a value maps to 0..1.
struct Scale
{
    bool log = false;
    double low = 0.0;
    double high = 1.0;
    QVector<double> ticks;
    QVector<QString> labels;

    double fraction(double value) const
    {
        if (log)
            return (std::log10(value) - std::log10(low)) / (std::log10(high) - std::log10(low));
        return (value - low) / (high - low);
    }
};

Scale makeScale(const DiagramPainter::Axis& axis, QVector<double> data, int wished, bool fromZero)
{
    Scale scale;
    scale.log = axis.logarithmic;
    if (axis.minimum < axis.maximum && (!axis.logarithmic || axis.minimum > 0.0))
        data << axis.minimum << axis.maximum;
    if (scale.log)
        data.erase(std::remove_if(data.begin(), data.end(), [](double v) { return !(v > 0.0); }), data.end());
    data.erase(std::remove_if(data.begin(), data.end(), [](double v) { return !std::isfinite(v); }), data.end());
    if (fromZero)
        data << 0.0;
    if (data.isEmpty())
        data << (scale.log ? 1.0 : 0.0) << (scale.log ? 10.0 : 1.0);
    const auto [low, high] = std::minmax_element(data.begin(), data.end());
    if (scale.log) {
        const int first = int(std::floor(std::log10(*low) + 1e-9));
        int last = int(std::ceil(std::log10(*high) - 1e-9));
        if (last <= first)
            last = first + 1;
        scale.low = std::pow(10.0, first);
        scale.high = std::pow(10.0, last);
        const bool fine = last - first <= 2;
        for (int e = first; e <= last; ++e) {
            for (double m : {1.0, 2.0, 5.0}) {
                const double tick = m * std::pow(10.0, e);
                if ((m != 1.0 && !fine) || tick > scale.high * (1 + 1e-9))
                    continue;
                scale.ticks << tick;
                scale.labels << QString::number(tick, 'g', 6);
            }
        }
        return scale;
    }
    const NiceScale nice(*low, *high, wished);
    scale.low = nice.minimum();
    scale.high = nice.maximum();
    for (double tick : nice.ticks()) {
        scale.ticks << tick;
        scale.labels << nice.label(tick);
    }
    return scale;
}

QPointF centroid(const QVector<QPointF>& points)
{
    QPointF sum;
    for (const QPointF& p : points)
        sum += p;
    return points.isEmpty() ? QPointF() : sum / points.size();
}

} // namespace

DiagramPainter::DiagramPainter(Plavo::TYPE_VIEW type, const QList<Axis>& axes)
    : m_type(type)
    , m_axes(axes)
{ }

QPolygonF DiagramPainter::ternaryTriangle(const QRectF& room)
{
    // An equilateral triangle as large as the room allows: the first axis at
    // the top, the second bottom left, the third bottom right.
    const double side = std::min(room.width(), room.height() * 2.0 / std::sqrt(3.0));
    const double height = side * std::sqrt(3.0) / 2.0;
    const QPointF top(room.center().x(), room.center().y() - height / 2);
    return QPolygonF(
        {top, QPointF(top.x() - side / 2, top.y() + height), QPointF(top.x() + side / 2, top.y() + height)});
}

QPointF DiagramPainter::ternaryPoint(const QPolygonF& triangle, double a, double b, double c)
{
    const double sum = a + b + c;
    if (triangle.size() != 3 || !(sum > 0.0))
        return QPointF();
    return (triangle.at(0) * a + triangle.at(1) * b + triangle.at(2) * c) / sum;
}

bool DiagramPainter::canPlace(const Sample& sample) const
{
    if (sample.values.size() < m_axes.size() || m_axes.isEmpty())
        return false;
    double sum = 0.0;
    for (int i = 0; i < m_axes.size(); ++i) {
        const double v = sample.values.at(i);
        if (!std::isfinite(v) || (m_axes.at(i).logarithmic && v <= 0.0))
            return false;
        if (m_type == Plavo::VIEW_TERNARY && v < 0.0)
            return false;
        sum += v;
    }
    return m_type != Plavo::VIEW_TERNARY || sum > 0.0;
}

QStringList DiagramPainter::placed() const
{
    QStringList labels;
    for (const Sample& sample : m_samples) {
        if (canPlace(sample))
            labels << sample.label;
    }
    return labels;
}

QStringList DiagramPainter::unplaced() const
{
    QStringList labels;
    for (const Sample& sample : m_samples) {
        if (!canPlace(sample))
            labels << sample.label;
    }
    return labels;
}

QColor DiagramPainter::sampleColor(int index) const
{
    return Plavo::TColor::colorGet(index, std::max(1, int(m_samples.size())));
}

void DiagramPainter::paint(QPainter* painter, const QSize& size) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setRenderHint(QPainter::TextAntialiasing, true);
    painter->fillRect(QRectF(QPointF(0, 0), size), Qt::white);
    const QFont font = PictureWriter::font(size);
    const double line = QFontMetricsF(font).height();

    painter->setFont(PictureWriter::titleFont(size));
    painter->setPen(PictureWriter::AxisColor);
    painter->drawText(QRectF(0, 0, size.width(), line * 2.6), Qt::AlignCenter, m_title);
    painter->setFont(font);

    // The legend takes a column on the right; the diagram the rest.
    const double legendWidth = std::max(line * 10, size.width() * 0.26);
    const QRectF legend(size.width() - legendWidth, line * 3.0, legendWidth - line * 0.8, size.height() - line * 3.6);
    const QRectF area(QPointF(line * 0.8, line * 3.0), QPointF(legend.left() - line, size.height() - line * 0.6));
    if (m_type == Plavo::VIEW_TERNARY)
        paintTernary(painter, area);
    else if (m_type == Plavo::VIEW_POLAR)
        paintPolar(painter, area);
    else
        paintCrossPlot(painter, area);
    paintLegend(painter, legend);
    painter->restore();
}

void DiagramPainter::paintZone(QPainter* painter, const Zone& zone, const QVector<QPointF>& polygon,
                               QVector<QRectF>* taken) const
{
    QColor fill = zone.color;
    fill.setAlpha(60);
    painter->setPen(QPen(zone.color, 1.4));
    painter->setBrush(zone.closed ? QBrush(fill) : QBrush(Qt::NoBrush));
    if (zone.closed)
        painter->drawPolygon(QPolygonF(polygon));
    else
        painter->drawPolyline(QPolygonF(polygon));
    painter->setBrush(Qt::NoBrush);
    paintZoneLabel(painter, zone, polygon, taken);
}

void DiagramPainter::paintZoneLabel(QPainter* painter, const Zone& zone, const QVector<QPointF>& polygon,
                                    QVector<QRectF>* taken) const
{
    if (zone.label.isEmpty() || polygon.isEmpty())
        return;
    const QFontMetricsF metrics(painter->font());
    const double w = metrics.horizontalAdvance(zone.label) + 6;
    QRectF box;
    if (zone.closed) {
        const QPointF at = centroid(polygon);
        box = QRectF(at.x() - w / 2, at.y() - metrics.height() / 2, w, metrics.height());
    } else {
        // A line is named halfway along, just beside it.
        const int n = polygon.size();
        const QPointF at = n % 2 ? polygon.at(n / 2) : (polygon.at(n / 2 - 1) + polygon.at(n / 2)) / 2.0;
        box = QRectF(at.x() + 4, at.y() - metrics.height(), w, metrics.height());
    }
    painter->setPen(zone.color.darker(170));
    painter->drawText(box, zone.closed ? Qt::AlignCenter : Qt::AlignLeft, zone.label);
    taken->append(box);
}

void DiagramPainter::paintMarker(QPainter* painter, const QPointF& at, const QColor& color, const QString& label,
                                 QVector<QRectF>* taken)
{
    const QFontMetricsF metrics(painter->font());
    const double r = std::max(3.5, metrics.height() * 0.3);
    painter->setPen(QPen(Qt::white, 1.2));
    painter->setBrush(color);
    painter->drawEllipse(at, r, r);
    painter->setBrush(Qt::NoBrush);
    if (label.isEmpty())
        return;
    // Analyses of equal values share a place: their labels stack downwards
    // instead of printing over each other.
    QRectF box(at.x() + r + 3, at.y() - r - 2 - metrics.ascent(), metrics.horizontalAdvance(label) + 2,
               metrics.height());
    for (int tries = 0; taken && tries < 12; ++tries) {
        const bool free = std::none_of(taken->begin(), taken->end(),
                                       [&](const QRectF& t) { return t.intersects(box.adjusted(0, 1, 0, -1)); });
        if (free)
            break;
        box.translate(0, metrics.height());
    }
    if (taken)
        taken->append(box);
    painter->setPen(color.darker(140));
    painter->drawText(box, Qt::AlignLeft | Qt::AlignTop, label);
}

void DiagramPainter::paintCrossPlot(QPainter* painter, const QRectF& bounds) const
{
    if (m_axes.size() < 2)
        return;
    QVector<double> xs, ys;
    for (const Zone& zone : m_zones) {
        for (const QPointF& p : zone.points) {
            xs << p.x();
            ys << p.y();
        }
    }
    for (const Sample& sample : m_samples) {
        if (canPlace(sample)) {
            xs << sample.values.at(0);
            ys << sample.values.at(1);
        }
    }
    const Scale xScale = makeScale(m_axes.at(0), xs, std::max(4, int(bounds.width() / 90)), false);
    const Scale yScale = makeScale(m_axes.at(1), ys, std::max(4, int(bounds.height() / 90)), false);
    const QFontMetricsF metrics(painter->font());
    const double line = metrics.height();
    double labelWidth = 0.0;
    for (const QString& label : yScale.labels)
        labelWidth = std::max(labelWidth, metrics.horizontalAdvance(label));
    const QRectF area(QPointF(bounds.left() + labelWidth + line * 2.2, bounds.top()),
                      QPointF(bounds.right(), bounds.bottom() - line * 2.8));
    const auto at = [&](double x, double y) {
        return QPointF(area.left() + xScale.fraction(x) * area.width(),
                       area.bottom() - yScale.fraction(y) * area.height());
    };

    for (int i = 0; i < yScale.ticks.size(); ++i) {
        const double y = area.bottom() - yScale.fraction(yScale.ticks.at(i)) * area.height();
        painter->setPen(QPen(PictureWriter::GridColor, 1));
        painter->drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter->setPen(PictureWriter::AxisColor);
        painter->drawLine(QPointF(area.left() - 5, y), QPointF(area.left(), y));
        painter->drawText(QRectF(bounds.left(), y - line / 2, area.left() - bounds.left() - 8, line),
                          Qt::AlignRight | Qt::AlignVCenter, yScale.labels.at(i));
    }
    for (int i = 0; i < xScale.ticks.size(); ++i) {
        const double x = area.left() + xScale.fraction(xScale.ticks.at(i)) * area.width();
        painter->setPen(QPen(PictureWriter::GridColor, 1));
        painter->drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
        painter->setPen(PictureWriter::AxisColor);
        painter->drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + 5));
        painter->drawText(QRectF(x - 60, area.bottom() + 6, 120, line), Qt::AlignHCenter | Qt::AlignTop,
                          xScale.labels.at(i));
    }

    QVector<QRectF> taken; // labels drawn, which the analyses' labels avoid
    painter->save();
    painter->setClipRect(area);
    for (const Zone& zone : m_zones) {
        QVector<QPointF> polygon;
        for (const QPointF& p : zone.points) {
            if (xScale.log && p.x() <= 0.0)
                continue;
            if (yScale.log && p.y() <= 0.0)
                continue;
            polygon << at(p.x(), p.y());
        }
        paintZone(painter, zone, polygon, &taken);
    }
    painter->restore();
    for (int i = 0; i < m_samples.size(); ++i) {
        const Sample& sample = m_samples.at(i);
        if (canPlace(sample))
            paintMarker(painter, at(sample.values.at(0), sample.values.at(1)), sampleColor(i), sample.label, &taken);
    }

    painter->setPen(QPen(PictureWriter::AxisColor, 1.2));
    painter->drawLine(area.bottomLeft(), area.bottomRight());
    painter->drawLine(area.bottomLeft(), area.topLeft());
    painter->drawText(QRectF(area.left(), area.bottom() + line * 1.3, area.width(), line * 1.4), Qt::AlignCenter,
                      m_axes.at(0).label);
    painter->save();
    painter->translate(bounds.left() + line * 0.2, area.center().y());
    painter->rotate(-90);
    painter->drawText(QRectF(-area.height() / 2, 0, area.height(), line * 1.4), Qt::AlignCenter, m_axes.at(1).label);
    painter->restore();
}

void DiagramPainter::paintTernary(QPainter* painter, const QRectF& bounds) const
{
    if (m_axes.size() < 3)
        return;
    const double line = QFontMetricsF(painter->font()).height();
    const QPolygonF triangle = ternaryTriangle(bounds.adjusted(line * 3, line * 1.5, -line * 3, -line * 1.8));
    const QPointF top = triangle.at(0), left = triangle.at(1), right = triangle.at(2);
    const auto at = [&](double a, double b, double c) { return ternaryPoint(triangle, a, b, c); };

    painter->setPen(QPen(PictureWriter::GridColor, 1));
    for (int step = 1; step < 5; ++step) {
        const double f = step / 5.0;
        painter->drawLine(at(f, 1 - f, 0), at(f, 0, 1 - f));
        painter->drawLine(at(1 - f, f, 0), at(0, f, 1 - f));
        painter->drawLine(at(1 - f, 0, f), at(0, 1 - f, f));
    }
    QVector<QRectF> taken; // labels drawn, which the analyses' labels avoid
    painter->save();
    painter->setClipRect(bounds);
    for (const Zone& zone : m_zones) {
        QVector<QPointF> polygon;
        for (const QPointF& p : zone.points)
            polygon << at(p.x(), p.y(), std::max(0.0, 1.0 - p.x() - p.y()));
        paintZone(painter, zone, polygon, &taken);
    }
    painter->restore();
    painter->setPen(QPen(PictureWriter::AxisColor, 1.2));
    painter->drawPolygon(QPolygonF({top, left, right}));
    painter->drawText(QRectF(top.x() - 150, top.y() - line * 1.4, 300, line * 1.2), Qt::AlignCenter,
                      m_axes.at(0).label);
    painter->drawText(QRectF(left.x() - 150, left.y() + line * 0.3, 300, line * 1.2), Qt::AlignCenter,
                      m_axes.at(1).label);
    painter->drawText(QRectF(right.x() - 150, right.y() + line * 0.3, 300, line * 1.2), Qt::AlignCenter,
                      m_axes.at(2).label);
    for (int i = 0; i < m_samples.size(); ++i) {
        const Sample& s = m_samples.at(i);
        if (canPlace(s))
            paintMarker(painter, at(s.values.at(0), s.values.at(1), s.values.at(2)), sampleColor(i), s.label, &taken);
    }
}

void DiagramPainter::paintPolar(QPainter* painter, const QRectF& bounds) const
{
    const int n = m_axes.size();
    if (n < 1)
        return;
    const QFontMetricsF metrics(painter->font());
    const double line = metrics.height();
    const QPointF centre = bounds.center();
    const double radius = std::min(bounds.width(), bounds.height()) / 2.0 - line * 2.5;
    // Each axis its own scale, from zero (or its stored minimum) to the
    // largest of its stored maximum and the values drawn on it.
    QVector<Scale> scales;
    for (int i = 0; i < n; ++i) {
        QVector<double> data;
        for (const Zone& zone : m_zones) {
            for (const QPointF& p : zone.points) {
                if (int(std::lround(p.x())) == i)
                    data << p.y();
            }
        }
        for (const Sample& sample : m_samples) {
            if (canPlace(sample))
                data << sample.values.at(i);
        }
        scales << makeScale(m_axes.at(i), data, 4, !m_axes.at(i).logarithmic);
    }
    const auto direction = [&](int i) {
        const double angle = -Pi / 2 + 2 * Pi * i / n;
        return QPointF(std::cos(angle), std::sin(angle));
    };
    const auto at = [&](int i, double value) {
        const double f = std::clamp(scales.at(i).fraction(value), 0.0, 1.0);
        return centre + direction(i) * (radius * f);
    };
    painter->setPen(QPen(PictureWriter::GridColor, 1));
    for (int ring = 1; ring <= 4; ++ring) {
        QPolygonF polygon;
        for (int i = 0; i < n; ++i)
            polygon << centre + direction(i) * (radius * ring / 4.0);
        painter->drawPolygon(polygon);
    }
    for (int i = 0; i < n; ++i) {
        painter->setPen(QPen(PictureWriter::AxisColor, 1));
        const QPointF end = centre + direction(i) * radius;
        painter->drawLine(centre, end);
        const QPointF labelAt = centre + direction(i) * (radius + line * 1.2);
        const QString text = m_axes.at(i).label + QStringLiteral(" (")
            + scales.at(i).labels.value(scales.at(i).labels.size() - 1) + QLatin1Char(')');
        const double w = metrics.horizontalAdvance(text) + 6;
        painter->drawText(QRectF(labelAt.x() - w / 2, labelAt.y() - line / 2, w, line), Qt::AlignCenter, text);
    }
    QVector<QRectF> taken; // labels drawn, which the analyses' labels avoid
    for (const Zone& zone : m_zones) {
        QVector<QPointF> polygon;
        for (const QPointF& p : zone.points) {
            const int axis = int(std::lround(p.x()));
            if (axis >= 0 && axis < n)
                polygon << at(axis, p.y());
        }
        paintZone(painter, zone, polygon, &taken);
    }
    for (int s = 0; s < m_samples.size(); ++s) {
        const Sample& sample = m_samples.at(s);
        if (!canPlace(sample))
            continue;
        QPolygonF polygon;
        for (int i = 0; i < n; ++i)
            polygon << at(i, sample.values.at(i));
        painter->setPen(QPen(sampleColor(s), 1.6));
        painter->drawPolygon(polygon);
        for (int i = 0; i < n; ++i)
            paintMarker(painter, polygon.at(i), sampleColor(s), i == 0 ? sample.label : QString(), &taken);
    }
}

void DiagramPainter::paintLegend(QPainter* painter, const QRectF& box) const
{
    const QFontMetricsF metrics(painter->font());
    const double line = metrics.height() * 1.3;
    double y = box.top();
    const auto text = [&](const QString& value, const QColor& color, bool bold = false) {
        QFont font = painter->font();
        font.setBold(bold);
        painter->save();
        painter->setFont(font);
        painter->setPen(color);
        const QRectF r(box.left() + line, y, box.width() - line, box.bottom() - y);
        const QRectF used = painter->boundingRect(r, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, value);
        painter->drawText(r, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, value);
        painter->restore();
        const double top = y;
        y += std::max(line, used.height() + line * 0.2);
        return top;
    };
    if (!m_zones.isEmpty()) {
        text(tr("Zones", "Zones"), PictureWriter::AxisColor, true);
        for (const Zone& zone : m_zones) {
            const double top = text(zone.label, PictureWriter::AxisColor);
            QColor fill = zone.color;
            fill.setAlpha(zone.closed ? 90 : 255);
            const QRectF swatch(box.left(), top + line * 0.15, line * 0.7, zone.closed ? line * 0.55 : 2.0);
            painter->fillRect(swatch, fill);
        }
        y += line * 0.4;
    }
    text(tr("Analyses", "Analyses"), PictureWriter::AxisColor, true);
    QStringList missing;
    for (int i = 0; i < m_samples.size(); ++i) {
        const Sample& sample = m_samples.at(i);
        if (!canPlace(sample)) {
            missing << (sample.reason.isEmpty() ? sample.label
                                                : QStringLiteral("%1 (%2)").arg(sample.label, sample.reason));
            continue;
        }
        const double top = text(sample.label, PictureWriter::AxisColor);
        paintMarker(painter, QPointF(box.left() + line * 0.35, top + line * 0.4), sampleColor(i), QString(), nullptr);
    }
    if (m_samples.isEmpty())
        text(tr("none chosen", "aucune choisie"), PictureWriter::AxisColor);
    if (!missing.isEmpty()) {
        y += line * 0.4;
        text(tr("Not placed (a value is missing):", "Non placées (une valeur manque) :"), QColor(150, 40, 30), true);
        // Two lines at most each: the legend names the analysis and the first reason.
        for (const QString& entry : qAsConst(missing))
            text(metrics.elidedText(entry, Qt::ElideRight, (box.width() - line) * 1.9), QColor(150, 40, 30));
    }
}

bool DiagramPainter::write(const QString& path, const QSize& size, QString* error) const
{
    return PictureWriter::write(
        path, size, m_title, QStringLiteral("vndb diagram"),
        [this](QPainter* painter, const QSize& pictureSize) { paint(painter, pictureSize); }, error);
}
