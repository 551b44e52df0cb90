// Identification against runs whose compounds are known: the synthetic
// generator says where it put every peak and how large it is, and the
// n-alkanes found, the indices and the areas measured must agree with that.
#include <tidentifier.h>

#include <tacquisitionrun.h>
#include <tsyntheticrun.h>
#include <ttranslator.h>

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

struct Chromatogram
{
    QVector<double> times;
    QVector<double> values;
};

// The sum of the points within half a mass unit of `mass` at every scan, as
// the acquisition file's extraction does it.
Chromatogram extract(const TAcquisitionRun& run, double mass)
{
    Chromatogram c;
    const quint32 low = quint32(std::lround((mass - 0.5) * 100.0));
    const quint32 high = quint32(std::lround((mass + 0.5) * 100.0));
    for (int scan = 0; scan < run.scanCount(); ++scan) {
        const quint32* keys = run.massesAtScan(scan);
        const float* abundances = run.abundancesAtScan(scan);
        double sum = 0.0;
        for (int p = 0; p < run.pointsAtScan(scan); ++p) {
            if (keys[p] >= low && keys[p] <= high)
                sum += double(abundances[p]);
        }
        c.times.append(run.rtimes.at(scan));
        c.values.append(sum);
    }
    return c;
}

// The molecular ion of an n-alkane in the spectrum at the apex, and none of
// the next homologue: what names the series.
TIdentifier::AlkaneEvidence molecularIon(const TAcquisitionRun& run, const QVector<TPeak>& peaks)
{
    return [&run, &peaks](int peak, int carbons) {
        int scan = 0;
        while (scan + 1 < run.scanCount() && run.rtimes.at(scan + 1) <= peaks[peak].apex)
            ++scan;
        double base = 0.0;
        QHash<long, double> byMass;
        for (int p = 0; p < run.pointsAtScan(scan); ++p) {
            const long nominal = long(std::floor(run.massesAtScan(scan)[p] / 100.0 + 0.3));
            byMass[nominal] += double(run.abundancesAtScan(scan)[p]);
            base = std::max(base, byMass[nominal]);
        }
        const double floor = 0.003 * base;
        const bool here = byMass.value(14 * carbons + 2) > floor;
        const bool next = byMass.value(14 * (carbons + 1) + 2) > floor;
        return here && !next ? 1.0 : 0.0;
    };
}

QVector<int> referenceAlkanes()
{
    QVector<int> carbons;
    for (int n = 10; n <= 40; ++n)
        carbons.append(n);
    return carbons;
}

} // namespace

class TestIdentifier : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install("en"); }

    void seriesAndNamesOfTheAlkanes_data()
    {
        QTest::addColumn<double>("noise");
        QTest::addColumn<quint32>("seed");
        QTest::newRow("clean") << 1.0 << 3u;
        QTest::newRow("noisy") << 50.0 << 11u;
    }

    // Every n-alkane the run holds is found and named, within a scan of its time.
    void seriesAndNamesOfTheAlkanes()
    {
        QFETCH(double, noise);
        QFETCH(quint32, seed);
        TSyntheticRun::Options options;
        options.noise = noise;
        options.seed = seed;
        const TAcquisitionRun run = TSyntheticRun::generate(options);
        const Chromatogram c = extract(run, 57.0);
        const QVector<TPeak> peaks = TPeakFinder::find(c.times, c.values);
        const TRetentionIndexScale scale = TIdentifier::calibrate(peaks, referenceAlkanes(), molecularIon(run, peaks));
        QVERIFY2(scale.isValid(), qPrintable(scale.reason()));
        QCOMPARE(scale.alkanes().size(), 31);
        const double scanInterval = c.times.at(1) - c.times.at(0);
        for (const auto& alkane : scale.alkanes()) {
            const double truth = TSyntheticRun::placedPeak(options, QStringLiteral("nC%1").arg(alkane.carbons)).time;
            QVERIFY2(
                std::fabs(alkane.time - truth) < scanInterval,
                qPrintable(QStringLiteral("C%1 at %2, placed at %3").arg(alkane.carbons).arg(alkane.time).arg(truth)));
        }
    }

    // Without evidence, a series naming the lightest reference alkane first;
    // with it, the offset the evidence supports, even for a partial series.
    void namingAPartialSeries()
    {
        QVector<TPeak> peaks;
        for (int k = 0; k < 6; ++k) {
            TPeak p;
            p.apex = 10.0 + 2.0 * k;
            p.height = p.area = 100.0;
            peaks.append(p);
        }
        const QVector<int> series = TIdentifier::homologousSeries(peaks);
        QCOMPARE(series.size(), 6);
        auto alkanes = TIdentifier::assignAlkanes(peaks, series, referenceAlkanes());
        QCOMPARE(alkanes.first().carbons, 10);
        alkanes = TIdentifier::assignAlkanes(peaks, series, referenceAlkanes(),
                                             [](int peak, int carbons) { return carbons == peak + 20 ? 1.0 : 0.0; });
        QCOMPARE(alkanes.first().carbons, 20);
        QCOMPARE(alkanes.last().carbons, 25);
        QCOMPARE(alkanes.last().time, 20.0);
    }

    void markersNameAFlameSeries_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<bool>("isoprenoids");
        QTest::addColumn<int>("named");
        QTest::newRow("from n-C12") << 12 << true << 12;
        QTest::newRow("topped, from n-C15") << 15 << true << 15;
        QTest::newRow("from n-C17") << 17 << true << 17;
        // Nothing tells: the lightest reference alkane, as before.
        QTest::newRow("no isoprenoid peaks") << 15 << false << 10;
    }

    // A flame trace has no spectra: pristane 7% and phytane 11% of the way
    // after n-C17 and n-C18 are what put the names on a series that does not
    // start at the lightest reference alkane.
    void markersNameAFlameSeries()
    {
        QFETCH(int, first);
        QFETCH(bool, isoprenoids);
        QFETCH(int, named);
        QVector<TPeak> peaks;
        const auto add = [&peaks](double apex, double height) {
            TPeak p;
            p.apex = apex;
            p.height = p.area = height;
            peaks.append(p);
        };
        const auto timeOf = [first](double index) { return 10.0 + 2.0 * (index / 100.0 - first); };
        for (int c = first; c <= 30; ++c)
            add(timeOf(100.0 * c), 100.0);
        if (isoprenoids) {
            add(timeOf(1707.0), 60.0);
            add(timeOf(1811.0), 45.0);
        }
        std::sort(peaks.begin(), peaks.end(), [](const TPeak& a, const TPeak& b) { return a.apex < b.apex; });
        const TRetentionIndexScale scale
            = TIdentifier::calibrate(peaks, referenceAlkanes(), TIdentifier::markerEvidence(peaks, {1707.0, 1811.0}));
        QVERIFY2(scale.isValid(), qPrintable(scale.reason()));
        QCOMPARE(scale.alkanes().first().carbons, named);
        QCOMPARE(scale.alkanes().size(), 31 - first);
    }

    // A small peak between two homologues is not taken into the series, and
    // a peak off the spacing ends it.
    void seriesKeepsItsSpacing()
    {
        QVector<TPeak> peaks;
        const double times[] = {10.0, 11.0, 11.5, 12.0, 13.0, 14.0, 17.3};
        const double heights[] = {100, 100, 3, 100, 100, 100, 100};
        for (int k = 0; k < 7; ++k) {
            TPeak p;
            p.apex = times[k];
            p.height = p.area = heights[k];
            peaks.append(p);
        }
        QCOMPARE(TIdentifier::homologousSeries(peaks), (QVector<int>{0, 1, 3, 4, 5}));
    }

    void areasAgainstThePlacedPeaks_data()
    {
        QTest::addColumn<double>("noise");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<QString>("compound");
        QTest::addColumn<double>("ion");
        // Pristane and n-C17, phytane and n-C18 overlap on m/z 57; Ts and Tm
        // stand alone on m/z 191.
        QTest::newRow("clean Ts") << 1.0 << 0.02 << "Ts" << 191.0;
        QTest::newRow("clean Tm") << 1.0 << 0.02 << "Tm" << 191.0;
        QTest::newRow("clean n-C25") << 1.0 << 0.02 << "nC25" << 57.0;
        QTest::newRow("noisy Ts") << 50.0 << 0.05 << "Ts" << 191.0;
        QTest::newRow("noisy Tm") << 50.0 << 0.05 << "Tm" << 191.0;
        QTest::newRow("noisy pristane, co-eluting n-C17") << 50.0 << 0.05 << "Pr" << 57.0;
        QTest::newRow("noisy n-C17, co-eluting pristane") << 50.0 << 0.05 << "nC17" << 57.0;
        QTest::newRow("noisy phytane, co-eluting n-C18") << 50.0 << 0.05 << "Ph" << 57.0;
        QTest::newRow("noisy n-C18, co-eluting phytane") << 50.0 << 0.05 << "nC18" << 57.0;
    }

    void areasAgainstThePlacedPeaks()
    {
        QFETCH(double, noise);
        QFETCH(double, tolerance);
        QFETCH(QString, compound);
        QFETCH(double, ion);
        TSyntheticRun::Options options;
        options.noise = noise;
        const TAcquisitionRun run = TSyntheticRun::generate(options);
        const Chromatogram alkaneTrace = extract(run, 57.0);
        const QVector<TPeak> alkanePeaks = TPeakFinder::find(alkaneTrace.times, alkaneTrace.values);
        const TRetentionIndexScale scale
            = TIdentifier::calibrate(alkanePeaks, referenceAlkanes(), molecularIon(run, alkanePeaks));
        const TSyntheticRun::PlacedPeak truth = TSyntheticRun::placedPeak(options, compound);
        const Chromatogram trace = extract(run, ion);
        TIdentificationTarget target{compound, compound, truth.retentionIndex, ion};
        const TCompoundMeasure measure
            = TIdentifier::identify(target, TPeakFinder::find(trace.times, trace.values), scale);
        QVERIFY2(measure.found, qPrintable(measure.reason));
        QVERIFY(measure.reason.isEmpty());
        const double expected = truth.ionArea(ion);
        QVERIFY2(std::fabs(measure.area - expected) <= tolerance * expected,
                 qPrintable(QStringLiteral("area %1, placed %2").arg(measure.area).arg(expected)));
        QVERIFY2(std::fabs(measure.retentionIndex - truth.retentionIndex) < 2.0,
                 qPrintable(QString::number(measure.retentionIndex)));
        QVERIFY(std::fabs(measure.apex - truth.time) < alkaneTrace.times.at(1) - alkaneTrace.times.at(0));
    }

    void reasonsInsteadOfMeasures_data()
    {
        QTest::addColumn<double>("retentionIndex");
        QTest::addColumn<double>("ion");
        QTest::addColumn<int>("alkanes");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no index") << qQNaN() << 57.0 << 5 << "en"
                                  << "the reference gives no retention index";
        QTest::newRow("no index, fr") << qQNaN() << 57.0 << 5 << "fr"
                                      << "la référence ne donne pas d'indice";
        QTest::newRow("no ion") << 1250.0 << 0.0 << 5 << "fr"
                                << "la référence ne donne pas d'ion";
        QTest::newRow("no alkanes") << 1250.0 << 57.0 << 0 << "en"
                                    << "fewer than two n-alkanes found (0)";
        QTest::newRow("a lone peak, fr") << 1250.0 << 57.0 << 1 << "fr"
                                         << "moins de deux n-alcanes trouvés (0)";
        QTest::newRow("beyond the alkanes") << 2500.0 << 57.0 << 5 << "en"
                                            << "index 2500 lies outside the n-alkanes found (C10 to C14)";
        QTest::newRow("no peak in the window") << 1250.0 << 57.0 << 5 << "en"
                                               << "no peak of m/z 57 within indices 1235 to 1265";
        QTest::newRow("no peak in the window, fr") << 1250.0 << 57.0 << 5 << "fr"
                                                   << "aucun pic de m/z 57 entre les indices 1235 et 1265";
    }

    void reasonsInsteadOfMeasures()
    {
        QFETCH(double, retentionIndex);
        QFETCH(double, ion);
        QFETCH(int, alkanes);
        QFETCH(QString, language);
        QFETCH(QString, reason);
        TTranslator::install(language);
        QVector<TPeak> peaks;
        for (int k = 0; k < alkanes; ++k) {
            TPeak p;
            p.apex = 10.0 + k;
            p.height = p.area = 100.0;
            peaks.append(p);
        }
        const TRetentionIndexScale scale = TIdentifier::calibrate(peaks, referenceAlkanes());
        const TCompoundMeasure measure
            = TIdentifier::identify({QStringLiteral("X"), QStringLiteral("X"), retentionIndex, ion}, peaks, scale);
        QVERIFY(!measure.found);
        QCOMPARE(measure.area, 0.0);
        QVERIFY(std::isnan(measure.retentionIndex));
        QVERIFY2(measure.reason.contains(reason), qPrintable(measure.reason));
    }

    // The largest peak in the window is the compound, not the nearest one.
    void largestPeakInTheWindow()
    {
        QVector<TPeak> alkanes;
        for (int k = 0; k < 3; ++k) {
            TPeak p;
            p.apex = 10.0 + k;
            p.height = p.area = 100.0;
            alkanes.append(p);
        }
        const TRetentionIndexScale scale = TIdentifier::calibrate(alkanes, referenceAlkanes());
        QVector<TPeak> ionPeaks(3);
        ionPeaks[0].apex = 10.50, ionPeaks[0].area = 10.0;  // index 1050, the reference's own
        ionPeaks[1].apex = 10.60, ionPeaks[1].area = 50.0;  // 1060, within +/- 15
        ionPeaks[2].apex = 10.70, ionPeaks[2].area = 500.0; // 1070, outside
        const TCompoundMeasure measure
            = TIdentifier::identify({QStringLiteral("X"), QStringLiteral("X"), 1050.0, 57.0}, ionPeaks, scale);
        QVERIFY(measure.found);
        QCOMPARE(measure.area, 50.0);
        QVERIFY(std::fabs(measure.retentionIndex - 1060.0) < 1e-9);
        const TCompoundMeasure wider
            = TIdentifier::identify({QStringLiteral("X"), QStringLiteral("X"), 1050.0, 57.0}, ionPeaks, scale, 25.0);
        QCOMPARE(wider.area, 500.0);
    }
};

QTEST_GUILESS_MAIN(TestIdentifier)
#include "tst_tidentifier.moc"
