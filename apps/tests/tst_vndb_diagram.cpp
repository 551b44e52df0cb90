// The diagram painter on hand-made data: barycentric placement on a ternary
// diagram, analyses lacking a value left out and named, zones and points drawn
// where their values say on a cross-plot.
#include <diagrampainter.h>

#include <QGuiApplication>
#include <QImage>
#include <QLineF>
#include <QPainter>
#include <QPolygonF>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

bool near(const QPointF& a, const QPointF& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y()) < 1e-9;
}

// Pixels of a colour close to `colour` inside `rect`.
int pixelsLike(const QImage& image, const QRect& rect, const QColor& colour)
{
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (std::abs(c.red() - colour.red()) < 12 && std::abs(c.green() - colour.green()) < 12
                && std::abs(c.blue() - colour.blue()) < 12)
                ++count;
        }
    }
    return count;
}

} // namespace

class TestVndbDiagram : public QObject
{
    Q_OBJECT

private slots:
    void ternaryPlacementIsBarycentric_data()
    {
        QTest::addColumn<double>("a");
        QTest::addColumn<double>("b");
        QTest::addColumn<double>("c");
        QTest::addColumn<QPointF>("expected"); // as weights of the three corners
        QTest::newRow("first axis at the top") << 1.0 << 0.0 << 0.0 << QPointF(1, 0);
        QTest::newRow("second bottom left") << 0.0 << 5.0 << 0.0 << QPointF(0, 1);
        QTest::newRow("third bottom right") << 0.0 << 0.0 << 0.2 << QPointF(0, 0);
        QTest::newRow("middle of an edge, percentages") << 50.0 << 50.0 << 0.0 << QPointF(0.5, 0.5);
        QTest::newRow("centre") << 30.0 << 30.0 << 30.0 << QPointF(1.0 / 3, 1.0 / 3);
    }

    void ternaryPlacementIsBarycentric()
    {
        QFETCH(double, a);
        QFETCH(double, b);
        QFETCH(double, c);
        QFETCH(QPointF, expected);
        const QPolygonF triangle = DiagramPainter::ternaryTriangle(QRectF(10, 20, 400, 300));
        QCOMPARE(triangle.size(), 3);
        // Equilateral, inside the room.
        const double side = QLineF(triangle.at(1), triangle.at(2)).length();
        QVERIFY(std::fabs(QLineF(triangle.at(0), triangle.at(1)).length() - side) < 1e-9);
        QVERIFY(std::fabs(QLineF(triangle.at(0), triangle.at(2)).length() - side) < 1e-9);
        QVERIFY(QRectF(10, 20, 400, 300).adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(triangle.boundingRect()));
        const double wa = expected.x(), wb = expected.y(), wc = 1.0 - wa - wb;
        const QPointF want = triangle.at(0) * wa + triangle.at(1) * wb + triangle.at(2) * wc;
        QVERIFY(near(DiagramPainter::ternaryPoint(triangle, a, b, c), want));
    }

    void analysesWithoutAValueAreNotPlaced()
    {
        DiagramPainter cross(Plavo::VIEW_ORTHOGONAL, {{"Pr/n-C17", 0.1, 10, true}, {"Ph/n-C18", 0.1, 10, true}});
        cross.addSample({"oil-a", {0.5, 0.4}, {}});
        cross.addSample({"oil-b", {0.5, NaN}, "Ph/n-C18: no value for Ph"});
        cross.addSample({"oil-c", {0.0, 0.3}, {}}); // no place on a logarithmic axis
        cross.addSample({"oil-d", {0.7}, {}});      // a value short
        QCOMPARE(cross.placed(), QStringList{"oil-a"});
        QCOMPARE(cross.unplaced(), (QStringList{"oil-b", "oil-c", "oil-d"}));

        DiagramPainter ternary(Plavo::VIEW_TERNARY, {{"%C27"}, {"%C28"}, {"%C29"}});
        ternary.addSample({"a", {30, 20, 50}, {}});
        ternary.addSample({"negative", {30, -20, 50}, {}});
        ternary.addSample({"nothing", {0, 0, 0}, {}});
        QCOMPARE(ternary.placed(), QStringList{"a"});

        DiagramPainter polar(Plavo::VIEW_POLAR, {{"1"}, {"2"}, {"3"}, {"4"}, {"5"}});
        polar.addSample({"whole", {1, 2, 3, 4, 5}, {}});
        polar.addSample({"partial", {1, 2, NaN, 4, 5}, {}});
        QCOMPARE(polar.unplaced(), QStringList{"partial"});
        // Every kind draws, even with nothing placed.
        for (const DiagramPainter* painter : {&cross, &ternary, &polar}) {
            QImage image(600, 400, QImage::Format_ARGB32_Premultiplied);
            QPainter p(&image);
            painter->paint(&p, image.size());
        }
    }

    void zonesAndPointsWhereTheirValuesSay()
    {
        // A linear cross-plot 0..10 x 0..10 with a pure-blue zone on its left
        // half and a point in its right half.
        DiagramPainter painter(Plavo::VIEW_ORTHOGONAL, {{"X", 0, 10, false}, {"Y", 0, 10, false}});
        painter.addZone({"left", QColor(0, 0, 255), {{0, 0}, {5, 0}, {5, 10}, {0, 10}}, true});
        painter.addSample({"oil", {7.5, 5}, {}});
        QImage image(800, 500, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        {
            QPainter p(&image);
            painter.paint(&p, image.size());
        }
        // The legend takes the right quarter: the plot spans the rest. The zone
        // tints the plot's left half and not its right half.
        // Blue at alpha 60 over white.
        const QColor blended(195, 195, 255);
        const QRect leftHalf(120, 150, 150, 150);
        const QRect rightHalf(400, 150, 100, 100);
        QVERIFY(pixelsLike(image, leftHalf, blended) > 15000);
        QCOMPARE(pixelsLike(image, rightHalf, blended), 0);
        QVERIFY(painter.placed() == QStringList{"oil"});
    }
};

QTEST_MAIN(TestVndbDiagram)
#include "tst_vndb_diagram.moc"
