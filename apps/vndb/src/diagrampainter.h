#pragma once

#include <type_view.h>

#include <QColor>
#include <QCoreApplication>
#include <QList>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

class QPainter;
class QPolygonF;
class QRectF;

/// Draws an interpretation diagram: a cross-plot (two axes, linear or
/// logarithmic), a polar diagram (one axis per parameter, radiating from the
/// centre) or a ternary diagram (three parameters as proportions), with the
/// zones and lines of its overlays and the analyses as labelled points.
///
/// Zones are given in the diagram's own terms: (x, y) on a cross-plot; (axis
/// index, value) on a polar diagram; on a ternary diagram the proportions of
/// the first two axes (0 to 1), the third being the rest. An analysis that
/// lacks a value for one axis is not placed: the legend says so.
class DiagramPainter
{
    Q_DECLARE_TR_FUNCTIONS(DiagramPainter)
public:
    struct Axis
    {
        QString label;
        double minimum = 0.0;
        double maximum = 0.0; ///< a range with minimum >= maximum is none: the data decide
        bool logarithmic = false;
    };
    struct Zone
    {
        QString label;
        QColor color;
        QVector<QPointF> points;
        /// A filled polygon; otherwise a line through the points.
        bool closed = true;
    };
    struct Sample
    {
        QString label;
        QVector<double> values; ///< one per axis; NaN where there is none
        QString reason;         ///< why a value is missing, for the legend
    };

    DiagramPainter(Plavo::TYPE_VIEW type, const QList<Axis>& axes);

    void setTitle(const QString& title) { m_title = title; }
    const QString& title() const { return m_title; }
    void addZone(const Zone& zone) { m_zones.append(zone); }
    void addSample(const Sample& sample) { m_samples.append(sample); }

    /// The labels of the samples that can be placed, and of those that cannot.
    QStringList placed() const;
    QStringList unplaced() const;

    void paint(QPainter* painter, const QSize& size) const;
    bool write(const QString& path, const QSize& size, QString* error) const;

    /// The triangle of a ternary diagram inside `room`: first axis at the
    /// top, second bottom left, third bottom right.
    static QPolygonF ternaryTriangle(const QRectF& room);
    /// Where the proportions (a, b, c) lie in `triangle` (barycentric, any
    /// positive total); a null point when the total is not positive.
    static QPointF ternaryPoint(const QPolygonF& triangle, double a, double b, double c);

private:
    bool canPlace(const Sample& sample) const;
    void paintCrossPlot(QPainter* painter, const QRectF& area) const;
    void paintTernary(QPainter* painter, const QRectF& area) const;
    void paintPolar(QPainter* painter, const QRectF& area) const;
    void paintLegend(QPainter* painter, const QRectF& box) const;
    /// A zone already placed in picture coordinates: filled when closed, with its label.
    void paintZone(QPainter* painter, const Zone& zone, const QVector<QPointF>& polygon, QVector<QRectF>* taken) const;
    void paintZoneLabel(QPainter* painter, const Zone& zone, const QVector<QPointF>& polygon,
                        QVector<QRectF>* taken) const;
    /// A point with its label, moved down past the labels already `taken`.
    static void paintMarker(QPainter* painter, const QPointF& at, const QColor& color, const QString& label,
                            QVector<QRectF>* taken);
    QColor sampleColor(int index) const;

    Plavo::TYPE_VIEW m_type;
    QList<Axis> m_axes;
    QList<Zone> m_zones;
    QList<Sample> m_samples;
    QString m_title;
};
