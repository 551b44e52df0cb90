#include "tpixmapcache.h"

#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {
using Painter = void (*)(QPainter&);

const QColor kInk(0x2b, 0x3a, 0x4a);

void drawGraph(QPainter& p)
{
    p.setPen(QPen(kInk, 2));
    p.drawLine(5, 4, 5, 27);
    p.drawLine(5, 27, 28, 27);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xd9, 0x53, 0x4f));
    for (const QPoint& c : {QPoint(11, 20), QPoint(16, 13), QPoint(22, 16), QPoint(25, 8)})
        p.drawEllipse(c, 2, 2);
}

void drawRatio(QPainter& p)
{
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x3c, 0x8d, 0xbc));
    p.drawEllipse(QPoint(16, 8), 4, 4);
    p.drawEllipse(QPoint(16, 24), 4, 4);
    p.setPen(QPen(kInk, 3, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(6, 16, 26, 16);
}

void drawCompound(QPainter& p)
{
    QPolygonF ring;
    for (int i = 0; i < 6; ++i) {
        const double angle = M_PI / 3.0 * i + M_PI / 6.0;
        ring << QPointF(16 + 11 * std::cos(angle), 16 + 11 * std::sin(angle));
    }
    p.setPen(QPen(QColor(0x2e, 0x7d, 0x32), 2.2));
    p.setBrush(QColor(0xe8, 0xf5, 0xe9));
    p.drawPolygon(ring);
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(16, 16), 5.5, 5.5);
}

void drawAnalysis(QPainter& p)
{
    QPainterPath trace(QPointF(3, 27));
    const double peaks[][3] = {{8, 10, 1.5}, {14, 18, 1.2}, {19, 6, 1.4}, {25, 15, 1.3}};
    for (double x = 3; x <= 29; x += 0.5) {
        double y = 27;
        for (const auto& peak : peaks)
            y -= (27 - peak[1]) * std::exp(-(x - peak[0]) * (x - peak[0]) / (2 * peak[2] * peak[2]));
        trace.lineTo(x, y);
    }
    p.setPen(QPen(QColor(0x6a, 0x1b, 0x9a), 1.8));
    p.drawPath(trace);
    p.setPen(QPen(kInk, 1.5));
    p.drawLine(3, 28, 29, 28);
}

void drawOverlay(QPainter& p)
{
    p.setPen(QPen(kInk, 1.5));
    p.setBrush(QColor(0x3c, 0x8d, 0xbc, 150));
    p.drawPolygon(QPolygon({QPoint(4, 24), QPoint(14, 5), QPoint(22, 22)}));
    p.setBrush(QColor(0xf0, 0xad, 0x4e, 170));
    p.drawPolygon(QPolygon({QPoint(11, 27), QPoint(19, 9), QPoint(29, 26)}));
}

const QHash<QString, Painter>& painters()
{
    static const QHash<QString, Painter> table = {
        {QStringLiteral("graphIcon"), drawGraph},
        {QStringLiteral("ratioIcon"), drawRatio},
        {QStringLiteral("compound"), drawCompound},
        {QStringLiteral("analysis"), drawAnalysis},
        {QStringLiteral("grapheditor_overlay"), drawOverlay},
    };
    return table;
}
} // namespace

QImage TPixmapCache::image(const QString& name)
{
    static QHash<QString, QImage> cache;
    const auto cached = cache.constFind(name);
    if (cached != cache.constEnd())
        return *cached;
    const Painter draw = painters().value(name, nullptr);
    if (!draw)
        return QImage();
    QImage icon(size(), size(), QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    painter.end();
    cache.insert(name, icon);
    return icon;
}

QPixmap TPixmapCache::find(const QString& name)
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return QPixmap();
    static QHash<QString, QPixmap> cache;
    const auto cached = cache.constFind(name);
    if (cached != cache.constEnd())
        return *cached;
    const QImage icon = image(name);
    if (icon.isNull())
        return QPixmap();
    const QPixmap pixmap = QPixmap::fromImage(icon);
    cache.insert(name, pixmap);
    return pixmap;
}

QStringList TPixmapCache::names()
{
    QStringList list = painters().keys();
    list.sort();
    return list;
}
