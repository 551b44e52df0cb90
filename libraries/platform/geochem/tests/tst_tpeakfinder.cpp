// Peaks found and integrated on chromatograms whose peaks are known exactly:
// Gaussians of given area on a baseline, alone, with noise, and with a
// co-eluting neighbour.
#include <tpeakfinder.h>

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>

namespace {

struct Placed
{
    double apex;  // minutes
    double area;  // value x minutes
    double sigma; // minutes
};

struct Trace
{
    QVector<double> times;
    QVector<double> values;
};

// Sampled every 0.01 min from 0 to 10 min over a sloping baseline.
Trace trace(const QList<Placed>& peaks, double noise, quint32 seed = 1, double offset = 50.0)
{
    Trace t;
    QRandomGenerator random(seed);
    for (int i = 0; i <= 1000; ++i) {
        const double x = i * 0.01;
        double y = offset + 2.0 * x;
        for (const Placed& p : peaks)
            y += p.area / (p.sigma * std::sqrt(2.0 * M_PI)) * std::exp(-0.5 * std::pow((x - p.apex) / p.sigma, 2));
        if (noise > 0.0) {
            // Box-Muller: Gaussian noise of the given standard deviation.
            const double u1 = std::max(random.generateDouble(), 1e-12);
            const double u2 = random.generateDouble();
            y += noise * std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * M_PI * u2);
        }
        t.times << x;
        t.values << y;
    }
    return t;
}

double relative(double value, double expected)
{
    return std::fabs(value - expected) / std::fabs(expected);
}

} // namespace

Q_DECLARE_METATYPE(Placed)

class TestPeakFinder : public QObject
{
    Q_OBJECT

private slots:
    void knownPeaks_data()
    {
        QTest::addColumn<QList<Placed>>("placed");
        QTest::addColumn<double>("noise");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<double>("offset");
        const QList<Placed> apart{{3.0, 100.0, 0.05}, {6.0, 40.0, 0.08}};
        QTest::newRow("clean, apart") << apart << 0.0 << 0.02 << 50.0;
        QTest::newRow("noisy, apart") << apart << 5.0 << 0.05 << 50.0;
        QTest::newRow("noisy, co-eluting")
            << QList<Placed>{{4.0, 100.0, 0.05}, {4.3, 60.0, 0.05}} << 5.0 << 0.05 << 50.0;
        // A detector's standing current ten times the peaks' height.
        QTest::newRow("noisy, high baseline") << apart << 5.0 << 0.05 << 8000.0;
    }

    void knownPeaks()
    {
        QFETCH(QList<Placed>, placed);
        QFETCH(double, noise);
        QFETCH(double, tolerance);
        QFETCH(double, offset);
        const Trace t = trace(placed, noise, 1, offset);
        const QVector<TPeak> found = TPeakFinder::find(t.times, t.values);
        QCOMPARE(found.size(), placed.size());
        for (int i = 0; i < placed.size(); ++i) {
            const TPeak& peak = found[i];
            const Placed& truth = placed[i];
            QVERIFY2(std::fabs(peak.apex - truth.apex) < 0.01, qPrintable(QString::number(peak.apex)));
            QVERIFY2(relative(peak.area, truth.area) < tolerance,
                     qPrintable(QString("area %1 for %2").arg(peak.area).arg(truth.area)));
            const double height = truth.area / (truth.sigma * std::sqrt(2.0 * M_PI));
            QVERIFY2(relative(peak.height, height) < tolerance,
                     qPrintable(QString("height %1 for %2").arg(peak.height).arg(height)));
            const double width = 2.0 * std::sqrt(2.0 * std::log(2.0)) * truth.sigma;
            QVERIFY2(relative(peak.width, width) < 2 * tolerance,
                     qPrintable(QString("width %1 for %2").arg(peak.width).arg(width)));
            QVERIFY(peak.start < peak.apex && peak.apex < peak.end);
            if (noise > 0.0)
                QVERIFY2(relative(peak.signalToNoise, height / noise) < 0.2,
                         qPrintable(QString::number(peak.signalToNoise)));
        }
    }

    void noiseIsEstimatedFromTheTrace()
    {
        const Trace t = trace({{5.0, 100.0, 0.05}}, 4.0, 7);
        QVERIFY(relative(TPeakFinder::estimateNoise(t.values), 4.0) < 0.15);
        QCOMPARE(TPeakFinder::estimateNoise({1.0, 2.0}), 0.0);
    }

    // An ion the centroider keeps only now and then: zero most of the time,
    // scattered single points, and one real peak. The scattered points are
    // the noise, not peaks, and every peak found is a real one.
    void sparseTrace()
    {
        Trace t = trace({{5.0, 100.0, 0.05}}, 0.0);
        QRandomGenerator random(3);
        for (int i = 0; i < t.values.size(); ++i) {
            t.values[i] -= 50.0 + 2.0 * t.times[i];
            if (std::fabs(t.times[i] - 5.0) > 0.4)
                t.values[i] = random.bounded(20) == 0 ? 30.0 + random.bounded(40.0) : 0.0;
        }
        QVERIFY(TPeakFinder::estimateNoise(t.values) > 5.0);
        const QVector<TPeak> found = TPeakFinder::find(t.times, t.values);
        QCOMPARE(found.size(), 1);
        QVERIFY(relative(found.first().area, 100.0) < 0.05);
        QVERIFY(std::isfinite(found.first().width) && found.first().signalToNoise > 0.0);
    }

    // Nothing above the noise, or input that is not a chromatogram: no peaks.
    void nothingToFind_data()
    {
        QTest::addColumn<QVector<double>>("times");
        QTest::addColumn<QVector<double>>("values");
        const Trace flat = trace({}, 5.0);
        QTest::newRow("noise only") << flat.times << flat.values;
        QTest::newRow("lengths differ") << QVector<double>{0, 1, 2, 3, 4, 5} << QVector<double>{0, 1, 5, 1, 0};
        QTest::newRow("time going back") << QVector<double>{0, 1, 2, 1.5, 4, 5} << QVector<double>{0, 1, 50, 1, 0, 0};
        QTest::newRow("not a number") << QVector<double>{0, 1, 2, 3, 4, 5} << QVector<double>{0, 1, NAN, 1, 0, 0};
        QTest::newRow("too short") << QVector<double>{0, 1} << QVector<double>{0, 10};
    }

    void nothingToFind()
    {
        QFETCH(QVector<double>, times);
        QFETCH(QVector<double>, values);
        QVERIFY(TPeakFinder::find(times, values).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestPeakFinder)
#include "tst_tpeakfinder.moc"
