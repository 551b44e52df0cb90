// Multichannel data read lazily from an analysis' acquisition file, and its
// deliberate asymmetries.
#include "tst_acquisitionproject.h"

#include <tdatacore.h>
#include <vnion.h>
#include <vnmcdatadynamic.h>

class TestMCDataDynamic : public QObject
{
    Q_OBJECT

private:
    static TCMFile* fileOf(const VNObject2Analysis* analysis)
    {
        TCMFile* tcm = nullptr;
        VNDatabase::analysisTCM(analysis, &tcm);
        return tcm;
    }

private slots:
    void boundDataReadTheFile()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::Multichannel, 80);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Bound"));
        QVERIFY(analysis);
        std::unique_ptr<VNMCData> data(VNDatabase::getMCData(analysis));
        auto* dynamic = dynamic_cast<VNMCDataDynamic*>(data.get());
        QVERIFY(dynamic);
        QCOMPARE(dynamic->object(), analysis);
        QCOMPARE(dynamic->nbScans(), 80);
        QVERIFY(fileOf(analysis)->isLoaded());
        QVERIFY(dynamic->isMultiChannel());
        // Times and TIC come from the file; channels never do.
        QCOMPARE(dynamic->getRetention(3), float(run.rtimes[3]));
        QCOMPARE(dynamic->getRetention(80), -9999.0f);
        QCOMPARE(dynamic->getRetention(-1), -9999.0f);
        QCOMPARE(dynamic->getCanalAbund(0, 3), -9999.0f);
        QCOMPARE(dynamic->canalCount(), 0);
        std::unique_ptr<float[]> rets(dynamic->getRets());
        QCOMPARE(rets[79], float(run.rtimes[79]));
        std::unique_ptr<TDataCore> curve(dynamic->toTData());
        QVERIFY(curve);
        QCOMPARE(curve->count(), 80);
        QCOMPARE(curve->y(40), float(run.tic[40]));
        // An ion outside the file's masses gives nothing.
        const VNIon far = VNIon::around(2000.0f);
        QVERIFY(!dynamic->extractCanal(&far));
        QVERIFY(!dynamic->extractCanal(nullptr));
        // The offset shifts the window that is read.
        const VNIon shifted(190.0f, 190.6f, 0.7f);
        std::unique_ptr<VNMCData> eic(dynamic->extractCanal(&shifted));
        QVERIFY(eic);
        QCOMPARE(eic->offset(), 0.7f);
        QCOMPARE(eic->window().first, 190.7f);
        QCOMPARE(eic->getRetention(5), float(run.rtimes[5]));

        // A copy shares the analysis (and its loaded file) without duplicating it.
        std::unique_ptr<VNMCData> copy(dynamic->copy());
        QCOMPARE(static_cast<VNMCDataDynamic*>(copy.get())->object(), analysis);
        QCOMPARE(copy->getRetention(3), float(run.rtimes[3]));
    }

    // Releasing keeps the object; it answers from the file only while loaded.
    void releaseAndDestruction()
    {
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 40), QStringLiteral("Released"));
        VNMCData* data = VNDatabase::getMCData(analysis);
        QVERIFY(data);
        VNDatabase::releaseMCData(data);
        QVERIFY(!fileOf(analysis)->isLoaded());
        QCOMPARE(data->nbScans(), 40);
        QCOMPARE(data->getRetention(0), -9999.0f);
        QVERIFY(!data->toTic());
        delete data;

        // Destroying bound data releases the file content.
        data = VNDatabase::getMCData(analysis);
        QVERIFY(fileOf(analysis)->isLoaded());
        delete data;
        QVERIFY(!fileOf(analysis)->isLoaded());

        // Anything else is ignored.
        VNDatabase::releaseMCData(nullptr);
        VNMCData plain(3, nullptr);
        VNDatabase::releaseMCData(&plain);
        QVERIFY(!VNDatabase::getMCData(nullptr));
        VNObject2Analysis loose(QStringLiteral("loose"));
        QVERIFY(!VNDatabase::getMCData(&loose));
    }

    // Readers of one analysis share its file: the content goes with the last
    // holder, whichever way the others give it back.
    void sharedContentGoesWithItsLastHolder_data()
    {
        QTest::addColumn<int>("giveBack");
        QTest::newRow("release") << 0;
        QTest::newRow("destruction") << 1;
        QTest::newRow("copy destroyed") << 2;
        QTest::newRow("spectrum extraction") << 3;
        QTest::newRow("convert to mono") << 4;
    }

    void sharedContentGoesWithItsLastHolder()
    {
        QFETCH(int, giveBack);
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 30);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Shared"));
        std::unique_ptr<VNMCData> kept(VNDatabase::getMCData(analysis));
        std::unique_ptr<VNMCData> other(VNDatabase::getMCData(analysis));
        QVERIFY(kept && other);
        if (giveBack == 0) {
            VNDatabase::releaseMCData(other.get());
            VNDatabase::releaseMCData(other.get()); // a second release is not a second holder
        } else if (giveBack == 1) {
            other.reset();
        } else if (giveBack == 2) {
            delete other->copy();
        } else if (giveBack == 3) {
            QString label;
            std::map<unsigned long, unsigned long>* spectrum = nullptr;
            QVERIFY(VNDatabase::returnSpectrumExtraction(analysis, 3, 5, label, spectrum) > 0);
            delete spectrum;
        } else {
            static_cast<VNMCDataDynamic*>(other.get())->convertToMono();
        }
        QVERIFY(fileOf(analysis)->isLoaded());
        QCOMPARE(kept->getRetention(29), float(run.rtimes[29]));
        std::unique_ptr<float[]> tic(kept->toTic());
        QVERIFY(tic);
        QCOMPARE(tic[0], float(run.tic[0]));
        // The last holder takes the content with it.
        kept.reset();
        other.reset();
        QVERIFY(!fileOf(analysis)->isLoaded());
    }

    // convertToMono copies times and TIC into memory and lets the file go.
    void convertToMonoDetaches()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 50);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Mono"));
        std::unique_ptr<VNMCData> data(VNDatabase::getMCData(analysis));
        auto* dynamic = static_cast<VNMCDataDynamic*>(data.get());
        QVERIFY(dynamic->isMultiChannel());
        dynamic->convertToMono();
        QVERIFY(!dynamic->object());
        QVERIFY(!fileOf(analysis)->isLoaded());
        QVERIFY(!dynamic->isMultiChannel());
        QVERIFY(dynamic->hasTic());
        QCOMPARE(dynamic->getRetention(10), float(run.rtimes[10]));
        std::unique_ptr<float[]> tic(dynamic->toTic());
        QCOMPARE(tic[49], float(run.tic[49]));
        // Detached data no longer read any file, even once it is loaded again.
        std::unique_ptr<VNMCData> other(VNDatabase::getMCData(analysis));
        const VNIon ion = VNIon::around(57.0f);
        QVERIFY(!dynamic->extractCanal(&ion));
        std::unique_ptr<VNMCData> eic(other->extractCanal(&ion));
        QVERIFY(eic);
    }

    void unboundData()
    {
        VNMCDataDynamic none(nullptr);
        QCOMPARE(none.nbScans(), 0);
        const VNIon ion = VNIon::around(57.0f);
        QVERIFY(!none.extractCanal(&ion));
        QVERIFY(!none.toTic());
        QVERIFY(!none.getRets());
        QVERIFY(!none.toTData());
        QCOMPARE(none.getRetention(0), -9999.0f);
        QVERIFY(!none.isMultiChannel());

        // An analysis whose file is damaged reads as no file at all.
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 20), QStringLiteral("Damaged"));
        QVERIFY(analysis);
        const QString path = project.file("Analyses/Damaged/Damaged.tcm");
        TCMFileRegistry::forget(path);
        QFile file(path);
        QVERIFY(file.resize(file.size() / 2));
        QVERIFY(!VNDatabase::getMCData(analysis));
        VNMCDataDynamic damaged(analysis);
        QCOMPARE(damaged.nbScans(), 0);
        QVERIFY(!damaged.toTic());
    }
};

QTEST_MAIN(TestMCDataDynamic)
#include "tst_vnmcdatadynamic.moc"
