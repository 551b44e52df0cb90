// Multichannel data in memory, ion windows and the noise model of a TIC.
#include <tdatacore.h>
#include <vnion.h>
#include <vnmcdata.h>
#include <vnmodelise.h>
#include <vnobject2analysis.h>

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

class TestMCData : public QObject
{
    Q_OBJECT

private:
    // Three channels (m/z 57, 71 and a detector) over five scans.
    static std::unique_ptr<VNMCData> sample()
    {
        const float times[5] = {1, 2, 3, 4, 5};
        const float a[5] = {1, 2, 3, 4, 5};
        const float b[5] = {10, 20, 30, 40, 50};
        const float fid[5] = {7, 7, 7, 7, 7};
        auto data = std::make_unique<VNMCData>(5, times);
        data->addCanal(a, VNIon::around(57.0f, 0.5f));
        data->addCanal(b, VNIon::around(71.0f, 0.5f));
        data->addCanal(fid, VNIon(), QStringLiteral("FID"));
        return data;
    }

private slots:
    void ionWindows()
    {
        const VNIon ion(190.5f, 191.5f, 0.25f);
        QVERIFY(ion.isValid());
        QCOMPARE(ion.mass(), 191.25f);
        QVERIFY(ion.contains(191.7f));
        QVERIFY(!ion.contains(190.6f));
        QCOMPARE(VNIon::around(191.0f).label(), QStringLiteral("m/z 191"));
        QCOMPARE(VNIon(190.0f, 192.0f).label(), QStringLiteral("m/z 190-192"));
        QVERIFY(!VNIon().isValid());
        QVERIFY(!VNIon(5.0f, 4.0f).isValid());
        QVERIFY(!VNIon(std::numeric_limits<float>::quiet_NaN(), 4.0f).isValid());
        QVERIFY(VNIon().label().isNull());
    }

    void channelsTicAndRetentions()
    {
        auto data = sample();
        QVERIFY(data->isMultiChannel());
        QCOMPARE(data->canalName(0), QStringLiteral("m/z 57"));
        QCOMPARE(data->canalName(2), QStringLiteral("FID"));
        // Without a TIC of its own, the TIC is the sum of the channels.
        std::unique_ptr<float[]> tic(data->toTic());
        QCOMPARE(tic[2], 40.0f);
        QCOMPARE(data->getCanalAbund(1, 4), 50.0f);
        QCOMPARE(data->getCanalAbund(3, 0), -9999.0f);
        QCOMPARE(data->getCanalAbund(0, 5), -9999.0f);
        QCOMPARE(data->getCanalAbund(-1, 0), -9999.0f);
        QCOMPARE(data->getRetention(4), 5.0f);
        QCOMPARE(data->getRetention(5), -9999.0f);
        std::unique_ptr<TDataCore> curve(data->toTData());
        QCOMPARE(curve->count(), 5);
        QCOMPARE(curve->x(1), 2.0f);
        QCOMPARE(curve->y(1), 29.0f);
        QCOMPARE(curve->y(9), 0.0f);
        // A channel needs its values; data without scans take none.
        QVERIFY(!data->addCanal(nullptr, VNIon::around(43.0f)));
        VNMCData empty(0, nullptr);
        const float one = 1.0f;
        QVERIFY(!empty.addCanal(&one, VNIon::around(43.0f)));
        QVERIFY(!empty.toTic() && !empty.getRets() && !empty.toTData());
    }

    void extractCanal()
    {
        auto data = sample();
        // A window holding both ions sums them; the detector never counts.
        const VNIon wide(50.0f, 80.0f);
        std::unique_ptr<VNMCData> both(data->extractCanal(&wide));
        QVERIFY(both);
        QCOMPARE(both->canalCount(), 1);
        QCOMPARE(both->getCanalAbund(0, 0), 11.0f);
        QCOMPARE(both->getRetention(2), 3.0f);
        // The offset moves the window: 70 + 0.6 .. 71 + 0.6 misses m/z 71 +/- 0.5.
        const VNIon shifted(70.0f, 71.0f, 0.6f);
        QVERIFY(!data->extractCanal(&shifted));
        const VNIon around71(70.0f, 71.0f, 0.5f);
        std::unique_ptr<VNMCData> only(data->extractCanal(&around71));
        QVERIFY(only);
        QCOMPARE(only->getCanalAbund(0, 3), 40.0f);
        QCOMPARE(only->window(), qMakePair(70.5f, 71.5f));
        QVERIFY(!data->extractCanal(nullptr));
        const VNIon invalid;
        QVERIFY(!data->extractCanal(&invalid));
        // Without retention times there is no chromatogram to give.
        VNMCData noTimes(5, nullptr);
        const float a[5] = {1, 2, 3, 4, 5};
        noTimes.addCanal(a, VNIon::around(57.0f));
        QVERIFY(!noTimes.extractCanal(&wide));
    }

    void copyAndConvertToMono()
    {
        auto data = sample();
        std::unique_ptr<VNMCData> copy(data->copy());
        QCOMPARE(copy->getCanalAbund(1, 1), 20.0f);
        copy->convertToMono();
        QVERIFY(!copy->isMultiChannel());
        QCOMPARE(copy->canalCount(), 0);
        QVERIFY(copy->hasTic());
        std::unique_ptr<float[]> tic(copy->toTic());
        QCOMPARE(tic[4], 62.0f);
        // The original is untouched, and copying onto itself changes nothing.
        QCOMPARE(data->canalCount(), 3);
        data->copyTo(data.get());
        data->copyTo(nullptr);
        QCOMPARE(data->canalCount(), 3);
        // A TIC of its own survives the conversion as it is.
        const float own[5] = {9, 9, 9, 9, 9};
        data->setTic(own);
        data->convertToMono();
        tic.reset(data->toTic());
        QCOMPARE(tic[0], 9.0f);
    }

    // The estimate finds the spread of white noise under a drifting baseline
    // with a few tall peaks, and marks the analysis' record as kind 51.
    void noiseModel()
    {
        QRandomGenerator random(42);
        const int n = 4000;
        const double sigma = 25.0;
        QVector<float> x(n), y(n);
        for (int i = 0; i < n; ++i) {
            // Box-Muller from two uniform draws.
            const double u1 = std::max(random.generateDouble(), 1e-12);
            const double u2 = random.generateDouble();
            const double gauss = std::sqrt(-2.0 * std::log(u1)) * std::cos(2.0 * M_PI * u2);
            double peak = 0.0;
            for (int centre : {500, 1500, 2600, 3700})
                peak += 1.0e5 * std::exp(-0.5 * std::pow((i - centre) / 4.0, 2));
            x[i] = float(i);
            y[i] = float(1000.0 + 0.05 * i + sigma * gauss + peak);
        }
        const TDataCore tic(n, x.constData(), y.constData());
        VNObject2Analysis analysis(QStringLiteral("run"));
        const VNModelise model(&tic, &analysis);
        QVERIFY(model.noise().valid);
        QCOMPARE(analysis.noise().kind, TAnalysisNoise::KindTicModel);
        QVERIFY2(std::fabs(analysis.noise().level - sigma) < 0.1 * sigma,
                 qPrintable(QString::number(analysis.noise().level)));
        QVERIFY(analysis.noise().baseline > 900.0 && analysis.noise().baseline < 1100.0);
        QCOMPARE(analysis.noise().pointCount, n);

        // Too few finite values give no estimate; non-finite values are skipped.
        const float few[4] = {1.0f, std::numeric_limits<float>::quiet_NaN(), 2.0f, INFINITY};
        QVERIFY(!VNModelise::estimate(few, 4).valid);
        QVERIFY(!VNModelise::estimate(nullptr, 10).valid);
        const VNModelise none(nullptr, &analysis);
        QVERIFY(!analysis.noise().valid);
        QCOMPARE(analysis.noise().detectionLimit(), -9999.0);
    }
};

QTEST_MAIN(TestMCData)
#include "tst_vnmcdata.moc"
