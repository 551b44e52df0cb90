// Peaks detected on the chromatograms of a project's analyses, kept as peak
// detections across sessions, and the reference compounds identified in a run
// whose compounds are known.
#include "tst_acquisitionproject.h"
#include "tst_vndatabasetovihelpers.h"

#include <tpeakdetectmapper.h>
#include <ttranslator.h>
#include <vndatabasetovisample.h>

#include <cmath>

namespace {

// Peaks stored and read back must be the same numbers, to the last digit.
bool samePeaks(const QList<TPeak>& a, const QList<TPeak>& b)
{
    if (a.size() != b.size())
        return false;
    for (int i = 0; i < a.size(); ++i) {
        const TPeak& x = a[i];
        const TPeak& y = b[i];
        if (x.start != y.start || x.apex != y.apex || x.end != y.end || x.baselineStart != y.baselineStart
            || x.baselineEnd != y.baselineEnd || x.area != y.area || x.height != y.height || x.width != y.width
            || x.signalToNoise != y.signalToNoise)
            return false;
    }
    return true;
}

int detections(VNDatabase* db)
{
    const auto* mapper = dynamic_cast<const Sedra::TPeakDetectMapper*>(db->getMapper(VNObjectTypePeakDetection));
    return mapper ? mapper->count() : -1;
}

} // namespace

Q_DECLARE_METATYPE(VNChromatogram)

class TestVNDatabasePeaks : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        TTranslator::install("en");
        TCMFileRegistry::clear();
    }

    void storedAcrossSessions_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<VNChromatogram>("chromatogram");
        QTest::addColumn<QString>("compound"); // one of the peaks found, by its placed time
        QTest::addColumn<double>("area");      // its area on that chromatogram (0: not checked)
        QTest::newRow("TIC") << int(TSyntheticRun::FullScan) << VNChromatogram::tic() << "nC18" << 0.0;
        QTest::newRow("m/z 191") << int(TSyntheticRun::FullScan) << VNChromatogram::ion(191.0) << "Tm" << 1.0;
        QTest::newRow("transition 370->191")
            << int(TSyntheticRun::MSMS) << VNChromatogram::transition(370.0, 191.0) << "Ts" << 1.0;
        QTest::newRow("FID channel") << int(TSyntheticRun::Multichannel) << VNChromatogram::detector("FID") << "nC20"
                                     << 1.0;
    }

    // Detected, stored, replaced by a second detection, and the same once
    // the project is reopened.
    void storedAcrossSessions()
    {
        QFETCH(int, kind);
        QFETCH(VNChromatogram, chromatogram);
        QFETCH(QString, compound);
        QFETCH(double, area);
        TSyntheticRun::Options options;
        options.kind = TSyntheticRun::Kind(kind);
        options.scanCount = 3600;
        options.pointsPerScan = 120;
        auto project = std::make_unique<AcquisitionProject>();
        const VNObject2Analysis* analysis = project->add(TSyntheticRun::generate(options), QStringLiteral("Oil"));
        QVERIFY(analysis);
        VNDatabase* db = project->db();
        QVERIFY(db->analysisPeaks(analysis, chromatogram).isEmpty());
        QVERIFY(!db->analysisHasPeaks(analysis, chromatogram));

        QString error;
        const QList<TPeak> peaks = db->analysisDetectPeaks(analysis, chromatogram, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QVERIFY(peaks.size() >= 2);
        QVERIFY(samePeaks(db->analysisPeaks(analysis, chromatogram), peaks));
        const int before = detections(db);
        QCOMPARE(db->analysisDetectPeaks(analysis, chromatogram, &error).size(), peaks.size());
        QCOMPARE(detections(db), before);
        QVERIFY(samePeaks(db->analysisPeaks(analysis, chromatogram), peaks));

        const TSyntheticRun::PlacedPeak truth = TSyntheticRun::placedPeak(options, compound);
        const TPeak* match = nullptr;
        for (const TPeak& p : peaks) {
            if (std::fabs(p.apex - truth.time) < 0.02)
                match = &p;
        }
        QVERIFY2(match, qPrintable(compound));
        QVERIFY(match->signalToNoise > 10.0);
        if (area > 0.0) {
            const double expected = chromatogram.kind == VNChromatogram::Channel ? truth.flameArea()
                : chromatogram.kind == VNChromatogram::Transition                ? truth.transitionArea(370, 191)
                                                                                 : truth.ionArea(chromatogram.mass);
            QVERIFY2(std::fabs(match->area - expected) < 0.05 * expected,
                     qPrintable(QStringLiteral("%1 against %2").arg(match->area).arg(expected)));
        }

        // Another session: the header is read back from the folder.
        const QString path = project->path();
        std::unique_ptr<Sedra::TDatabase> old(project->manager().takeCurrentDatabase());
        old.reset();
        TCMFileRegistry::clear();
        auto* reopened = new VNDatabase(path, QString());
        project->manager().setCurrentDatabase(reopened, true);
        const VNObject2Analysis* again = reopened->getAnalysis(QStringLiteral("Oil"));
        QVERIFY(again);
        QVERIFY(reopened->analysisHasPeaks(again, chromatogram));
        QVERIFY(samePeaks(reopened->analysisPeaks(again, chromatogram), peaks));
        // Each chromatogram keeps its own peaks.
        QVERIFY(reopened->analysisPeaks(again, VNChromatogram::ion(43.0)).isEmpty());
    }

    void refusals_data()
    {
        QTest::addColumn<VNChromatogram>("chromatogram");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no channel") << VNChromatogram::detector("UV") << "en"
                                    << "analysis 'Oil' has no detector channel";
        QTest::newRow("no channel, fr") << VNChromatogram::detector("UV") << "fr"
                                        << "l'analyse 'Oil' n'a aucune voie de détecteur";
        QTest::newRow("mass outside") << VNChromatogram::ion(900.0) << "en"
                                      << "m/z 900 is outside the masses";
        QTest::newRow("mass outside, fr") << VNChromatogram::ion(900.0) << "fr"
                                          << "m/z 900 est hors des masses";
        QTest::newRow("no transition") << VNChromatogram::transition(370.0, 191.0) << "en"
                                       << "analysis 'Oil' has no transition 370->191";
    }

    // A chromatogram the analysis does not have: no peaks, a reason, and
    // nothing stored.
    void refusals()
    {
        QFETCH(VNChromatogram, chromatogram);
        QFETCH(QString, language);
        QFETCH(QString, reason);
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 200), QStringLiteral("Oil"));
        QVERIFY(analysis);
        TTranslator::install(language);
        const auto before = project.snapshot();
        QString error;
        QVERIFY(project.db()->analysisDetectPeaks(analysis, chromatogram, &error).isEmpty());
        QVERIFY2(error.contains(reason), qPrintable(error));
        QVERIFY(!project.db()->analysisHasPeaks(analysis, chromatogram));
        QCOMPARE(detections(project.db()), 0);
        QCOMPARE(project.snapshot(), before);
    }

    // The sample reference's compounds in a synthetic oil: the parameters'
    // compounds found where they were placed, with their areas.
    void identifiesTheSampleCompounds()
    {
        std::unique_ptr<TApplicationData> settings;
        std::unique_ptr<QTemporaryDir> folder;
        ToviTest::useNewFolder(settings, folder);
        std::unique_ptr<VNDatabaseTovi> reference(ToviTest::makeTovi(Sedra::DatabaseToviDelivered));
        QVERIFY(reference);
        QString error;
        QVERIFY2(VNDatabaseToviSample::load(reference.get(), QStringLiteral(VN_TOVI_SAMPLE_FILE), &error),
                 qPrintable(error));
        const QList<TIdentificationTarget> targets = VNDatabase::identificationTargets(reference.get());
        QVERIFY(targets.size() > 40);
        QCOMPARE(TIdentifier::referenceAlkanes(targets.toVector()).size(), 31);

        TSyntheticRun::Options options;
        AcquisitionProject project;
        const VNObject2Analysis* analysis = project.add(TSyntheticRun::generate(options), QStringLiteral("Oil"));
        QVERIFY(analysis);
        const TCompoundMeasures measures = project.db()->analysisIdentify(analysis, targets);
        QCOMPARE(measures.size(), targets.size());
        QHash<QString, TCompoundMeasure> byName;
        for (const TCompoundMeasure& m : measures)
            byName.insert(m.shortName, m);
        for (const char* name : {"Pr", "Ph", "nC17", "nC18", "nC25", "nC33", "Ts", "Tm"}) {
            const TCompoundMeasure m = byName.value(QLatin1String(name));
            QVERIFY2(m.found, qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(name), m.reason)));
            const TSyntheticRun::PlacedPeak truth = TSyntheticRun::placedPeak(options, QLatin1String(name));
            const double expected = truth.ionArea(m.ion);
            QVERIFY2(
                std::fabs(m.area - expected) < 0.05 * expected,
                qPrintable(QStringLiteral("%1: %2 against %3").arg(QLatin1String(name)).arg(m.area).arg(expected)));
            QVERIFY2(std::fabs(m.retentionIndex - truth.retentionIndex) < 2.0,
                     qPrintable(QStringLiteral("%1: index %2").arg(QLatin1String(name)).arg(m.retentionIndex)));
        }
        // Compounds the reference places nowhere, or the run does not hold.
        QVERIFY(byName.value(QStringLiteral("Sq")).reason.contains(QLatin1String("no retention index")));
        // The ion chromatograms searched are kept.
        QVERIFY(project.db()->analysisHasPeaks(analysis, VNChromatogram::ion(191.0)));
        QVERIFY(project.db()->analysisHasPeaks(analysis, VNChromatogram::ion(57.0)));
    }

    // A run without n-alkanes gives reasons, never values.
    void noAlkanesNoValues()
    {
        TSyntheticRun::Options options;
        options.kind = TSyntheticRun::MSMS;
        options.scanCount = 1200;
        AcquisitionProject project;
        const VNObject2Analysis* analysis = project.add(TSyntheticRun::generate(options), QStringLiteral("Biomarkers"));
        QVERIFY(analysis);
        QList<TIdentificationTarget> targets;
        for (int n = 10; n <= 40; ++n)
            targets.append({QStringLiteral("nC%1").arg(n), QStringLiteral("nC%1").arg(n), 100.0 * n, 57.0, n});
        targets.append({QStringLiteral("Ts"), QStringLiteral("Ts"), 2880.0, 191.0, 27});
        TTranslator::install("fr");
        const TCompoundMeasures measures = project.db()->analysisIdentify(analysis, targets);
        QCOMPARE(measures.size(), targets.size());
        for (const TCompoundMeasure& m : measures) {
            QVERIFY(!m.found);
            QCOMPARE(m.area, 0.0);
            QVERIFY2(!m.reason.isEmpty(), qPrintable(m.shortName));
        }
        QVERIFY2(measures.last().reason.contains(QLatin1String("moins de deux n-alcanes")),
                 qPrintable(measures.last().reason));
    }
};

QTEST_GUILESS_MAIN(TestVNDatabasePeaks)
#include "tst_vndatabasepeaks.moc"
