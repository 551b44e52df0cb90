#include "plotpainter.h"

#include "nicescale.h"
#include "picturewriter.h"

#include <tcolor.h>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
const QColor& kAxisColor = PictureWriter::AxisColor;
const QColor& kGridColor = PictureWriter::GridColor;
const QColor& kLineColor = PictureWriter::LineColor;

double power10(int exponent)
{
    return std::pow(10.0, exponent);
}
} // namespace

PlotPainter::PlotPainter(const AnalysisSeries& series)
    : m_series(series)
{
    m_title = series.analysis.isEmpty() ? series.title : series.analysis + QStringLiteral(" \u2014 ") + series.title;
}

void PlotPainter::paint(QPainter* painter, const QSize& size) const
{
    const bool spectrum = m_series.kind == AnalysisSeries::Spectrum;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setRenderHint(QPainter::TextAntialiasing, true);
    painter->fillRect(QRectF(QPointF(0, 0), size), Qt::white);

    const QFont font = PictureWriter::font(size);
    const QFont titleFont = PictureWriter::titleFont(size);
    const QFontMetricsF metrics(font);
    const double line = metrics.height();

    // Data ranges; abundances are shown divided by a power of ten when large.
    // MS/MS transitions share daughter masses, so their bars stand side by
    // side, one slot per transition, named parent->daughter under the axis.
    const bool categorical = spectrum && m_series.msms;
    double x0 = 0.0, x1 = 1.0, yMax = 0.0;
    for (double v : m_series.y)
        yMax = std::max(yMax, v);
    if (categorical) {
        x0 = -0.5;
        x1 = std::max(1, int(m_series.x.size())) - 0.5;
    } else if (!m_series.x.isEmpty()) {
        const auto [xmin, xmax] = std::minmax_element(m_series.x.begin(), m_series.x.end());
        x0 = *xmin;
        x1 = *xmax;
    }
    if (spectrum && !categorical) {
        const double pad = std::max(2.0, (x1 - x0) * 0.04);
        x0 = std::max(0.0, x0 - pad);
        x1 += pad;
    }
    const int exponent = NiceScale::displayExponent(yMax);
    const double unit = power10(exponent);
    const NiceScale xScale(x0, x1, std::max(4, size.width() / 90));
    const NiceScale yScale(0.0, std::max(yMax, 1.0) / unit * (spectrum ? 1.12 : 1.05), std::max(4, size.height() / 90));
    if (!categorical) {
        x0 = spectrum ? std::max(0.0, xScale.minimum()) : xScale.minimum();
        x1 = xScale.maximum();
    }

    double labelWidth = 0.0;
    for (double tick : yScale.ticks())
        labelWidth = std::max(labelWidth, metrics.horizontalAdvance(yScale.label(tick)));
    // Transition names need room under the axis; they lean when they are crowded.
    double categoryHeight = 0.0;
    bool leaning = false;
    if (categorical) {
        double widest = 0.0;
        for (const QString& label : m_series.labels)
            widest = std::max(widest, metrics.horizontalAdvance(label));
        const double slot = (size.width() - labelWidth - line * 4.1) / std::max(1, int(m_series.x.size()));
        leaning = widest + 6 > slot;
        categoryHeight = leaning ? widest * 0.72 + line * 0.3 : 0.0;
    }
    const QRectF area(QPointF(labelWidth + line * 2.6, line * 3.0),
                      QPointF(size.width() - line * 1.5, size.height() - line * 3.4 - categoryHeight));

    // Title.
    painter->setFont(titleFont);
    painter->setPen(kAxisColor);
    painter->drawText(QRectF(0, 0, size.width(), line * 2.6), Qt::AlignCenter, m_title);
    painter->setFont(font);

    // Grid and ticks.
    const auto px = [&](double x) { return area.left() + (x - x0) / (x1 - x0) * area.width(); };
    const auto py = [&](double y) { return area.bottom() - y / yScale.maximum() * area.height(); };
    for (double tick : yScale.ticks()) {
        const double y = py(tick);
        painter->setPen(QPen(kGridColor, 1));
        painter->drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        painter->setPen(QPen(kAxisColor, 1));
        painter->drawLine(QPointF(area.left() - 5, y), QPointF(area.left(), y));
        painter->drawText(QRectF(0, y - line / 2, area.left() - 8, line), Qt::AlignRight | Qt::AlignVCenter,
                          yScale.label(tick));
    }
    if (categorical) {
        painter->setPen(QPen(kAxisColor, 1));
        for (int i = 0; i < m_series.x.size(); ++i) {
            const double x = px(i);
            const QString label = m_series.labels.value(i);
            painter->drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + 5));
            if (!leaning) {
                painter->drawText(QRectF(x - 80, area.bottom() + 6, 160, line), Qt::AlignHCenter | Qt::AlignTop, label);
                continue;
            }
            painter->save();
            painter->translate(x + line * 0.3, area.bottom() + 8);
            painter->rotate(-45);
            const double w = metrics.horizontalAdvance(label);
            painter->drawText(QRectF(-w, 0, w, line), Qt::AlignRight | Qt::AlignTop, label);
            painter->restore();
        }
    } else {
        for (double tick : xScale.ticks()) {
            if (tick < x0 - 1e-9 || tick > x1 + 1e-9)
                continue;
            const double x = px(tick);
            painter->setPen(QPen(kAxisColor, 1));
            painter->drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + 5));
            painter->drawText(QRectF(x - 60, area.bottom() + 6, 120, line), Qt::AlignHCenter | Qt::AlignTop,
                              xScale.label(tick));
        }
    }

    // Data.
    painter->save();
    painter->setClipRect(area.adjusted(-1, -line * 2, 1, 1));
    if (spectrum)
        paintSpectrum(painter, area, x0, x1, yScale.maximum() * unit);
    else
        paintChromatogram(painter, area, x0, x1, yScale.maximum() * unit);
    painter->restore();

    // Axes and their titles.
    painter->setPen(QPen(kAxisColor, 1.2));
    painter->drawLine(area.bottomLeft(), area.bottomRight());
    painter->drawLine(area.bottomLeft(), area.topLeft());
    const QString xTitle = categorical ? tr("Transition (parent->daughter m/z)", "Transition (m/z parent->fille)")
        : spectrum                     ? QStringLiteral("m/z")
                                       : tr("Retention time (min)", "Temps de rétention (min)");
    QString yTitle = tr("Abundance", "Abondance");
    if (exponent > 0)
        yTitle += QStringLiteral(" (\u00d710%1)").arg(PictureWriter::superscript(exponent));
    painter->drawText(QRectF(area.left(), size.height() - line * 1.7, area.width(), line * 1.4), Qt::AlignCenter,
                      xTitle);
    painter->save();
    painter->translate(line * 0.4, area.center().y());
    painter->rotate(-90);
    painter->drawText(QRectF(-area.height() / 2, 0, area.height(), line * 1.4), Qt::AlignCenter, yTitle);
    painter->restore();

    if (m_series.x.isEmpty())
        painter->drawText(area, Qt::AlignCenter, tr("no data", "aucune donnée"));
    painter->restore();
}

void PlotPainter::paintChromatogram(QPainter* painter, const QRectF& area, double x0, double x1, double y1) const
{
    const int n = m_series.x.size();
    if (n == 0 || y1 <= 0.0)
        return;
    const auto px = [&](double x) { return area.left() + (x - x0) / (x1 - x0) * area.width(); };
    const auto py = [&](double y) { return area.bottom() - std::max(0.0, y) / y1 * area.height(); };
    // Thousands of scans on a few hundred pixels: keep each pixel column's
    // lowest and highest value, so that narrow peaks keep their full height.
    QPainterPath path;
    int column = -1;
    double low = 0.0, high = 0.0;
    const auto flush = [&]() {
        if (column < 0)
            return;
        const double x = column + 0.5;
        if (path.elementCount() == 0)
            path.moveTo(x, py(low));
        else
            path.lineTo(x, py(low));
        if (high != low)
            path.lineTo(x, py(high));
    };
    for (int i = 0; i < n; ++i) {
        const int c = int(std::floor(px(m_series.x.at(i))));
        const double y = m_series.y.at(i);
        if (c != column) {
            flush();
            column = c;
            low = high = y;
        } else {
            low = std::min(low, y);
            high = std::max(high, y);
        }
    }
    flush();
    painter->setPen(QPen(kLineColor, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(path);
}

void PlotPainter::paintSpectrum(QPainter* painter, const QRectF& area, double x0, double x1, double y1) const
{
    const int n = m_series.x.size();
    if (n == 0 || y1 <= 0.0)
        return;
    const bool categorical = m_series.msms;
    const auto px = [&](int i) {
        const double x = categorical ? double(i) : m_series.x.at(i);
        return area.left() + (x - x0) / (x1 - x0) * area.width();
    };
    const auto py = [&](double y) { return area.bottom() - std::max(0.0, y) / y1 * area.height(); };
    const double width = categorical ? std::max(2.0, area.width() / n * 0.6)
                                     : std::clamp(area.width() / std::max(1.0, x1 - x0) * 0.6, 1.0, 3.0);
    QVector<QRectF> bars(n);
    for (int i = 0; i < n; ++i) {
        const QColor color = categorical ? Plavo::TColor::colorGet(i, n) : kLineColor;
        bars[i] = QRectF(px(i) - width / 2, py(m_series.y.at(i)), width, area.bottom() - py(m_series.y.at(i)));
        painter->fillRect(bars[i], color);
    }
    if (categorical)
        return; // the transitions are named under the axis
    // Labels on the highest bars first, skipping those that would cover
    // another label or another bar.
    QVector<int> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return m_series.y.at(a) > m_series.y.at(b); });
    const QFontMetricsF metrics(painter->font());
    QVector<QRectF> placed;
    painter->setPen(kAxisColor);
    for (int i : qAsConst(order)) {
        if (placed.size() >= m_maxLabels || m_series.y.at(i) <= 0.0)
            break;
        const QString text = m_series.labels.value(i, QString::number(m_series.x.at(i), 'f', 1));
        const double w = metrics.horizontalAdvance(text) + 4;
        const QRectF box(px(i) - w / 2, py(m_series.y.at(i)) - metrics.height() - 2, w, metrics.height());
        if (std::any_of(placed.begin(), placed.end(), [&](const QRectF& r) { return r.intersects(box); }))
            continue;
        bool coversBar = false;
        for (int j = 0; j < n && !coversBar; ++j)
            coversBar = j != i && bars.at(j).height() > 0.5 && bars.at(j).intersects(box);
        if (coversBar)
            continue;
        placed << box;
        painter->drawText(box, Qt::AlignCenter, text);
    }
}

bool PlotPainter::write(const QString& path, const QSize& size, QString* error) const
{
    return PictureWriter::write(
        path, size, m_title, QStringLiteral("vndb plot"),
        [this](QPainter* painter, const QSize& pictureSize) { paint(painter, pictureSize); }, error);
}
