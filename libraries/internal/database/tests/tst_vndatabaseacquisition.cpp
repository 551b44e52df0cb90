// New analyses from multichannel data and instrument exports, signals,
// spectra and noise of a real project folder.
#include "tst_acquisitionproject.h"

#include <messageloggerinterface.h>
#include <tandimsfile.h>
#include <tchemstationfile.h>
#include <tdetectorfile.h>
#include <tanalysisdata.h>
#include <tassert.h>
#include <tcsvrunfile.h>
#include <tcmfile.h>
#include <tcolor.h>
#include <tdata.h>
#include <tdatacore.h>
#include <tdescriptionacquisition.h>
#include <trecordinglogger.h>
#include <tsignalmapper.h>
#include <ttranslator.h>
#include <vnheader.h>
#include <vnmcdatadynamic.h>
#include <vnobject2signal.h>
#include <vnion.h>

#include <cmath>
#include <cstring>
#include <vector>

namespace {
using Spectrum = std::map<unsigned long, unsigned long>;

// The spectrum of scan i of a run as the acquisition file hands it out.
Spectrum spectrumOf(const TAcquisitionRun& run, int scan)
{
    Spectrum expected;
    const quint32* keys = run.massesAtScan(scan);
    const float* values = run.abundancesAtScan(scan);
    for (int p = 0; p < run.pointsAtScan(scan); ++p)
        expected[keys[p]] = values[p] > 0.0f ? static_cast<unsigned long>(std::lround(values[p])) : 0;
    return expected;
}

// The run an analysis' acquisition file holds.
TAcquisitionRun stored(const VNObject2Analysis* analysis)
{
    TCMFile* tcm = nullptr;
    TAcquisitionRun back;
    if (VNDatabase::analysisTCM(analysis, &tcm) < 0 || !tcm || !tcm->toRun(&back))
        return TAcquisitionRun();
    return back;
}

// The extracted-ion chromatogram of [low, high] computed from the run itself.
QVector<float> eicOf(const TAcquisitionRun& run, float low, float high)
{
    const quint32 lo = quint32(std::lround(double(low) * 100.0));
    const quint32 hi = quint32(std::lround(double(high) * 100.0));
    QVector<float> eic(run.scanCount(), 0.0f);
    for (int i = 0; i < run.scanCount(); ++i) {
        for (int p = 0; p < run.pointsAtScan(i); ++p) {
            if (run.massesAtScan(i)[p] >= lo && run.massesAtScan(i)[p] <= hi)
                eic[i] += run.abundancesAtScan(i)[p];
        }
    }
    return eic;
}

QStringList analysesOnDisk(const AcquisitionProject& project)
{
    return QDir(project.file(VNObject2Analysis::folderName()))
        .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
}
} // namespace

class TestAcquisition : public QObject
{
    Q_OBJECT

private slots:
    void init() { TTranslator::install(QStringLiteral("en")); }

    // A generated multichannel run (spectra, a detector and two ion channels)
    // becomes an analysis whose file holds exactly that run.
    void newAnalysisFromMultichannelData()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::Multichannel, 240);
        const int refreshes = project.manager().refreshCount();
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Oil A"));
        QVERIFY(analysis);
        QCOMPARE(project.manager().refreshCount(), refreshes + 1);
        QVERIFY(QFileInfo(project.file("Analyses/Oil A/Oil A.tcm")).isFile());
        TDescriptionAcquisition description;
        QVERIFY(description.load(project.file("Analyses/Oil A/acquisition.xml")));

        const TAcquisitionRun back = stored(analysis);
        QVERIFY(back == run);
        QVERIFY(project.db()->isMulticanal(analysis));

        // The same through the module's own readers: spectra, TIC, EIC.
        std::unique_ptr<VNMCData> data(VNDatabase::getMCData(analysis));
        QVERIFY(data);
        QCOMPARE(data->nbScans(), 240);
        std::unique_ptr<float[]> tic(data->toTic());
        for (int i = 0; i < 240; ++i)
            QCOMPARE(tic[size_t(i)], float(run.tic[i]));
        const VNIon hopanes = VNIon::around(191.0f, 0.3f);
        std::unique_ptr<VNMCData> eic(data->extractCanal(&hopanes));
        QVERIFY(eic);
        const QVector<float> expected = eicOf(run, 190.7f, 191.3f);
        for (int i = 0; i < 240; ++i)
            QVERIFY(std::fabs(eic->getCanalAbund(0, i) - expected[i]) <= 1e-3f * std::max(1.0f, expected[i]));
        data.reset();

        for (int scan : {0, 17, 239}) {
            QString label;
            Spectrum* spectrum = nullptr;
            QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, scan, scan, label, spectrum),
                     run.pointsAtScan(scan));
            std::unique_ptr<Spectrum> owned(spectrum);
            QCOMPARE(*owned, spectrumOf(run, scan));
            QCOMPARE(label, QString::number(scan));
        }
    }

    // Data made in memory, without spectra: each ion channel becomes a point
    // of the spectra, each channel a channel, and all read back.
    void newAnalysisFromChannelsInMemory()
    {
        AcquisitionProject project;
        const int n = 50;
        QVector<float> times(n), c57(n), c71(n), fid(n);
        for (int i = 0; i < n; ++i) {
            times[i] = 5.0f + 0.01f * float(i);
            c57[i] = float(100 + i);
            c71[i] = float(3 * i);
            fid[i] = float(1000 - i);
        }
        VNMCData data(n, times.constData());
        QVERIFY(data.addCanal(c57.constData(), VNIon::around(57.0f)));
        QVERIFY(data.addCanal(c71.constData(), VNIon::around(71.0f)));
        QVERIFY(data.addCanal(fid.constData(), VNIon(), QStringLiteral("FID")));
        QString name = QStringLiteral("Channels");
        QVERIFY(project.db()->saveNewMCData(&data, name));
        const VNObject2Analysis* analysis = project.db()->getAnalysis(name);
        QVERIFY(analysis);
        const TAcquisitionRun back = stored(analysis);
        QCOMPARE(back.scanCount(), n);
        QCOMPARE(back.acquisitionSystem, quint32(TAcquisitionRun::SystemSIM));
        QCOMPARE(back.channelNames, (QStringList{"m/z 57", "m/z 71", "FID"}));
        for (int i = 0; i < n; ++i) {
            QCOMPARE(back.pointsAtScan(i), 2);
            QCOMPARE(back.massesAtScan(i)[0], 5700u);
            QCOMPARE(back.abundancesAtScan(i)[1], c71[i]);
            QCOMPARE(back.tic[i], double(c57[i] + c71[i] + fid[i]));
            QCOMPARE(back.channels[2][i], double(fid[i]));
        }
        std::unique_ptr<VNMCData> read(VNDatabase::getMCData(analysis));
        const VNIon ion57 = VNIon::around(57.0f, 0.2f);
        std::unique_ptr<VNMCData> eic(read->extractCanal(&ion57));
        QVERIFY(eic);
        for (int i = 0; i < n; ++i)
            QCOMPARE(eic->getCanalAbund(0, i), c57[i]);
    }

    // An MS/MS run keeps its transitions: spectrum points are labelled
    // parent->daughter, other runs by their mass, each point with a colour.
    void msmsSpectrumLabels()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::MSMS, 120);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("MRM"));
        QVERIFY(analysis);
        QVERIFY(stored(analysis) == run);
        QCOMPARE(analysis->acquisitionSystem(), 768u);
        Plavo::TData* data = nullptr;
        const int count = VNDatabase::returnSpectrumExtraction(analysis, &data, true, 60, 60);
        std::unique_ptr<Plavo::TData> owned(data);
        QCOMPARE(count, run.pointsAtScan(60));
        QVERIFY(count > 2);
        QCOMPARE(owned->count(), count);
        for (int i = 0; i < count; ++i) {
            const auto& t = run.transitions[i];
            QCOMPARE(owned->pointLabel(i), QStringLiteral("%1->%2").arg(double(t.first)).arg(double(t.second)));
            QCOMPARE(owned->x(i), float(run.massesAtScan(60)[i] / 100.0));
            QVERIFY(owned->pointColor(i).isValid());
        }

        const VNObject2Analysis* full
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 30), QStringLiteral("Full"));
        QVERIFY(full);
        QCOMPARE(VNDatabase::returnSpectrumExtraction(full, &data, true, 3, 3), 60);
        owned.reset(data);
        QCOMPARE(owned->pointLabel(0), QString::number(double(owned->x(0)), 'f', 1));
        // The colour travels as a float, which keeps 24 bits of the RGB value.
        const float stored = float(Plavo::TColor::colorGet(int(owned->x(5)), 60).rgb());
        QCOMPARE(owned->pointColor(5).rgb(), QRgb(quint32(std::fmin(double(stored), 4294967295.0))));
        // Without labels, neither labels nor colours.
        QCOMPARE(VNDatabase::returnSpectrumExtraction(full, &data, false, 3, 3), 60);
        owned.reset(data);
        QVERIFY(owned->labels().isEmpty());
        QVERIFY(owned->colors().isEmpty());
    }

    void spectrumRanges()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 40);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Range"));
        QVERIFY(analysis);
        QString label = QStringLiteral("old");
        Spectrum* spectrum = nullptr;
        // An average over a range is labelled with the two retention times.
        const int count = VNDatabase::returnSpectrumExtraction(analysis, 10, 19, label, spectrum);
        std::unique_ptr<Spectrum> owned(spectrum);
        QVERIFY(count > 0);
        QCOMPARE(label, QStringLiteral("%1 - %2").arg(run.rtimes[10], 0, 'g', -1).arg(run.rtimes[19], 0, 'g', -1));
        // A range as long as the file is refused; so are reversed and negative ranges.
        QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, 0, 40, label, spectrum), -1);
        QVERIFY(label.isNull());
        QVERIFY(!spectrum);
        // One scan shorter is the whole file, averaged.
        QVERIFY(VNDatabase::returnSpectrumExtraction(analysis, 0, 39, label, spectrum) > 0);
        delete spectrum;
        QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, 5, 2, label, spectrum), -1);
        QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, -1, -1, label, spectrum), -1);
        // Not an analysis, or no file.
        QCOMPARE(VNDatabase::returnSpectrumExtraction(nullptr, 0, 0, label, spectrum), -1);
        VNObject2Analysis loose(QStringLiteral("loose"));
        QCOMPARE(VNDatabase::returnSpectrumExtraction(&loose, 0, 0, label, spectrum), -1);
        Plavo::TData* data = reinterpret_cast<Plavo::TData*>(&loose);
        QCOMPARE(VNDatabase::returnSpectrumExtraction(&loose, &data, true, 0, 0), -1);
        QVERIFY(!data);
        // A signal reads its analysis' file.
        QVERIFY(Sedra::TDatabase::signalTICCreate(project.db(), analysis));
        const VNObject2Signal* tic = nullptr;
        for (const VNObject2* object : project.db()->getObjectLst(VNObjectTypeSignal))
            tic = static_cast<const VNObject2Signal*>(object);
        QVERIFY(tic);
        QCOMPARE(VNDatabase::returnSpectrumExtraction(tic, 4, 4, label, spectrum), run.pointsAtScan(4));
        delete spectrum;
        QVERIFY(!project.db()->isMulticanal(tic));
        QVERIFY(!project.db()->isMulticanal(nullptr));
        QVERIFY(project.db()->isMulticanal(analysis)); // spectra without ion channels count too
    }

    void importCsvAndAndi_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("csv") << "export.csv";
        QTest::newRow("andi") << "export.cdf";
    }

    // Instrument exports become analyses equal to what the export holds (what
    // is read from a stored run is the first test's business).
    void importCsvAndAndi()
    {
        QFETCH(QString, fileName);
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 150, 11);
        const QString path = project.scratch(fileName);
        const bool andi = fileName.endsWith(QLatin1String(".cdf"));
        QVERIFY(andi ? TAndiMSFile::write(path, run) : TCSVRunFile::write(path, run));
        QString name = QStringLiteral("Imported");
        QVERIFY(project.db()->analysisImport(path, name));
        const VNObject2Analysis* analysis = project.db()->getAnalysis(name);
        QVERIFY(analysis);
        // Spectra, TIC and times; times and abundances to float precision.
        const TAcquisitionRun back = stored(analysis);
        QCOMPARE(back.scanCount(), run.scanCount());
        QCOMPARE(back.masses, run.masses);
        QCOMPARE(back.scanOffsets, run.scanOffsets);
        for (int i = 0; i < run.scanCount(); ++i) {
            QVERIFY(std::fabs(back.rtimes[i] - run.rtimes[i]) < 1e-6);
            QVERIFY(std::fabs(back.tic[i] - run.tic[i]) <= 1e-3 * std::max(1.0, std::fabs(run.tic[i])));
        }
        for (int p = 0; p < run.abundances.size(); ++p)
            QVERIFY(std::fabs(back.abundances[p] - run.abundances[p]) <= 1e-3f * std::max(1.0f, run.abundances[p]));
    }

    // A ChemStation folder with full-scan and selected-ion data gives two
    // analyses, "Run" and "Run-SIM", the detector channel kept beside the
    // acquisition file; when the second cannot be made, neither is kept.
    void importEveryRunOfAFolder()
    {
        AcquisitionProject project;
        // Masses on the format's 0.05 grid, abundances its packing keeps.
        TAcquisitionRun scans, ions;
        const quint32 scanKeys[] = {4305, 5700, 7100, 19100};
        const quint32 ionKeys[] = {13100, 20200};
        for (int s = 0; s < 30; ++s) {
            const float values[] = {float(5 + s), float(100 + s), float(900 - s), float(2000 + s)};
            scans.appendScan(1.0 + 0.01 * s, scanKeys, values, 4);
        }
        for (int s = 0; s < 25; ++s) {
            const float values[] = {float(40 + s), float(700 - s)};
            ions.appendScan(2.0 + 0.02 * s, ionKeys, values, 2);
        }
        const TDetectorChannel fid{"FID1A", "pA", "Front Signal", {1.0, 1.001, 1.002}, {3.5, 8.25, 4.0}};
        const QString folder = project.scratch(QStringLiteral("RUN.D"));
        QVERIFY(TChemStationFile::writeFolder(folder, scans, ions, {fid}));

        // A stray folder where "Run-SIM" would go: the main run, written first, goes again.
        QVERIFY(QDir().mkpath(project.file("Analyses/Run-SIM")));
        TRecordingLogger log;
        QString name = QStringLiteral("Run");
        QVERIFY(!project.db()->analysisImport(folder, name));
        QVERIFY(!project.db()->getAnalysis(QStringLiteral("Run")));
        QCOMPARE(analysesOnDisk(project), QStringList{"Run-SIM"});
        QVERIFY(QDir(project.file("Analyses/Run-SIM")).isEmpty());

        QVERIFY(QDir(project.file("Analyses/Run-SIM")).removeRecursively());
        QVERIFY(project.db()->analysisImport(folder, name));
        const VNObject2Analysis* main = project.db()->getAnalysis(QStringLiteral("Run"));
        const VNObject2Analysis* selected = project.db()->getAnalysis(QStringLiteral("Run-SIM"));
        QVERIFY(main && selected);
        QCOMPARE(stored(main).masses, scans.masses);
        QCOMPARE(stored(selected).masses, ions.masses);
        QCOMPARE(stored(selected).scanCount(), 25);
        QVector<TDetectorChannel> channels;
        QVERIFY(TDetectorFile::load(project.file("Analyses/Run/detectors.bin"), &channels));
        QCOMPARE(channels.size(), 1);
        QCOMPARE(channels.first().values, fid.values);
        QCOMPARE(analysesOnDisk(project), (QStringList{"Run", "Run-SIM"}));

        // Taken names refuse the whole file before anything is written.
        const QMap<QString, QString> before = project.snapshot();
        QString other = QStringLiteral("Run");
        QVERIFY(!project.db()->analysisImport(folder, other));
        QCOMPARE(project.snapshot(), before);
        const QStringList refusals = log.messages(MessageLoggerInterface::LevelError);
        QCOMPARE(refusals.size(), 1);
        QVERIFY2(refusals.first().contains(QLatin1String("an analysis named <b>Run</b> exists")),
                 qPrintable(refusals.first()));
    }

    void malformedImportsLeaveNoTrace_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("language");
        QTest::newRow("csv en") << "bad.csv" << QByteArray("time,spectrum\n1.0,57:10\n0.5,57:12\n") << "en";
        QTest::newRow("csv fr") << "bad.csv" << QByteArray("time,spectrum\n1.0,57:abc\n") << "fr";
        QTest::newRow("andi truncated en") << "bad.cdf" << QByteArray("CDF\x01\x00\x00\x00\x10", 8) << "en";
        QTest::newRow("andi truncated fr") << "bad.cdf" << QByteArray("CDF\x02\x00\x00", 6) << "fr";
        QTest::newRow("missing file") << "" << QByteArray() << "en";
    }

    // A refused file is said so, in the user's language, and the project
    // keeps no half-made analysis.
    void malformedImportsLeaveNoTrace()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, content);
        QFETCH(QString, language);
        TTranslator::install(language);
        AcquisitionProject project;
        QVERIFY(project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 20), QStringLiteral("Kept")));
        const QMap<QString, QString> before = project.snapshot();
        const QString path = project.scratch(fileName.isEmpty() ? QStringLiteral("absent.csv") : fileName);
        QVERIFY(fileName.isEmpty() || AcquisitionProject::write(path, content));
        TRecordingLogger log;
        QString name = QStringLiteral("Broken");
        QVERIFY(!project.db()->analysisImport(path, name));
        QCOMPARE(project.snapshot(), before);
        QVERIFY(!project.db()->getAnalysis(name));
        QCOMPARE(analysesOnDisk(project), QStringList{"Kept"});
        const QStringList errors = log.messages(MessageLoggerInterface::LevelError);
        QCOMPARE(errors.size(), 1);
        const QString expected
            = language == QLatin1String("fr") ? QStringLiteral("Le fichier <b>") : QStringLiteral("The file <b>");
        QVERIFY2(errors.first().startsWith(expected), qPrintable(errors.first()));
    }

    // New analyses never overwrite: a taken name, an existing folder, a
    // read-only project or an empty name are refused, the last two silently.
    void newAnalysisRefusals()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 20);
        QVERIFY(project.add(run, QStringLiteral("Taken")));
        QVERIFY(QDir().mkpath(project.file("Analyses/Stray")));
        const QMap<QString, QString> before = project.snapshot();
        std::unique_ptr<VNMCData> data(VNDatabaseImport::fromRun(AcquisitionProject::run(TSyntheticRun::FullScan, 25)));
        TRecordingLogger log;
        for (const QString& taken : {QStringLiteral("Taken"), QStringLiteral("Stray"), QString()}) {
            QString name = taken;
            QVERIFY(!project.db()->saveNewMCData(data.get(), name));
        }
        QString none = QStringLiteral("Nothing");
        QVERIFY(!project.db()->saveNewMCData(nullptr, none));
        // Data without retention times cannot make a file: the folder goes again.
        VNMCData empty(10, nullptr);
        QVERIFY(!project.db()->saveNewMCData(&empty, none));
        QCOMPARE(project.snapshot(), before);
        QCOMPARE(stored(project.db()->getAnalysis(QStringLiteral("Taken"))).scanCount(), 20);

        project.db()->setReadOnly(true);
        QString name = QStringLiteral("Fresh");
        QVERIFY(!project.db()->saveNewMCData(data.get(), name));
        const QString export_ = project.scratch(QStringLiteral("fresh.cdf"));
        QVERIFY(TAndiMSFile::write(export_, AcquisitionProject::run(TSyntheticRun::FullScan, 10)));
        QVERIFY(!project.db()->analysisImport(export_, name));
        QCOMPARE(log.count(), 0);
        QCOMPARE(project.snapshot(), before);
    }

    void signalCreateTCM()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 30);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Run"));
        QVERIFY(analysis);
        std::unique_ptr<VNMCData> data(
            VNDatabaseImport::fromRun(AcquisitionProject::run(TSyntheticRun::FullScan, 30, 3)));
        QString signal = QStringLiteral("Smoothed");
        QVERIFY(project.db()->signalCreateTCM(data.get(), analysis, signal));
        QCOMPARE(signal, QStringLiteral("Smoothed"));
        QVERIFY(QFileInfo(project.file("Analyses/Run/Smoothed.tcm")).isFile());
        QVERIFY(project.db()->signalExists(QStringLiteral("Run"), QStringLiteral("Smoothed")));
        // A taken name is moved to a free one; the analysis' own file is never a signal's.
        QString again = QStringLiteral("Smoothed");
        QVERIFY(project.db()->signalCreateTCM(data.get(), analysis, again));
        QCOMPARE(again, QStringLiteral("Smoothed 2"));
        QString own = QStringLiteral("Run");
        QCOMPARE(project.db()->signalCreateDestFileName(analysis, own), project.file("Analyses/Run/Run 2.tcm"));
        QCOMPARE(own, QStringLiteral("Run 2"));
        QCOMPARE(stored(analysis).scanCount(), 30);

        const VNObject2Signal* made = nullptr;
        for (const VNObject2* object : project.db()->getObjectLst(VNObjectTypeSignal)) {
            if (object->name() == QLatin1String("Smoothed"))
                made = static_cast<const VNObject2Signal*>(object);
        }
        QVERIFY(made);
        QVERIFY(project.db()->signalExists(made));
        QVERIFY(!project.db()->signalExists(static_cast<const VNObject2Signal*>(nullptr)));
        VNObject2Signal orphan(QStringLiteral("Smoothed"));
        QVERIFY(!project.db()->signalExists(&orphan));
        QCOMPARE(project.db()->getSignalByHash(QStringLiteral("Smoothed"),
                                               Sedra::TSignalMapper::analysisHash(analysis->key())),
                 made);
        QVERIFY(!project.db()->getSignalByHash(QStringLiteral("Smoothed"), 1u));
        QVERIFY(project.db()->signalIonList(made).isEmpty());
        // A signal given as the analysis writes into its analysis.
        QString third = QStringLiteral("Third");
        QVERIFY(project.db()->signalCreateTCM(data.get(), made, third));
        QVERIFY(project.db()->signalExists(QStringLiteral("Run"), QStringLiteral("Third")));
    }

    void signalCreateTCMRefusals_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("en") << "en";
        QTest::newRow("fr") << "fr";
    }

    // A read-only project refuses to save a signal and changes nothing on
    // disk; a file that cannot be made is said so.
    void signalCreateTCMRefusals()
    {
        QFETCH(QString, language);
        TTranslator::install(language);
        const bool fr = language == QLatin1String("fr");
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 20), QStringLiteral("Run"));
        QVERIFY(analysis);
        std::unique_ptr<VNMCData> data(VNDatabaseImport::fromRun(AcquisitionProject::run(TSyntheticRun::FullScan, 20)));

        project.db()->setReadOnly(true);
        const QMap<QString, QString> before = project.snapshot();
        TRecordingLogger log;
        QString name = QStringLiteral("Signal");
        QVERIFY(!project.db()->signalCreateTCM(data.get(), analysis, name));
        QCOMPARE(log.messages(MessageLoggerInterface::LevelError),
                 QStringList{
                     fr ? QStringLiteral("Impossible de sauvegarder un signal dans un projet en <b>lecture seule</b>")
                        : QStringLiteral("Impossible to save a signal in <b>read only</b> project")});
        QCOMPARE(project.snapshot(), before);
        QVERIFY(!project.db()->signalExists(QStringLiteral("Run"), name));

        project.db()->setReadOnly(false);
        log.clear();
        const QString cannot = fr ? QStringLiteral("Impossible de créer le fichier de sortie")
                                  : QStringLiteral("Impossible to create the destination file");
        // No analysis: no destination.
        QVERIFY(!project.db()->signalCreateTCM(data.get(), nullptr, name));
        // No data to write.
        QVERIFY(!project.db()->signalCreateTCM(nullptr, analysis, name));
        QCOMPARE(log.messages(MessageLoggerInterface::LevelError), (QStringList{cannot, cannot}));
        QCOMPARE(project.snapshot(), before);
    }

    // The noise is estimated from the TIC once and kept; another kind of
    // record is replaced by the estimate.
    void analysisNoise()
    {
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 600), QStringLiteral("Noisy"));
        QVERIFY(analysis);
        QVERIFY(!VNDatabase::analysisNoise(nullptr));
        const TAnalysisNoise* noise = VNDatabase::analysisNoise(analysis);
        QVERIFY(noise);
        QVERIFY(noise->valid);
        QCOMPARE(noise->kind, 51);
        QVERIFY(noise->level > 0.0);
        QCOMPARE(noise->pointCount, 600);
        const double level = noise->level;

        analysis->noise().level = 1.0;
        QCOMPARE(VNDatabase::analysisNoise(analysis)->level, 1.0);
        analysis->noise().kind = 7;
        QCOMPARE(VNDatabase::analysisNoise(analysis)->level, level);
        QCOMPARE(VNDatabase::analysisNoise(analysis)->kind, 51);

        VNObject2Analysis loose(QStringLiteral("loose"));
        QVERIFY(!VNDatabase::analysisNoise(&loose)->valid);
    }

    void modulationAndAnalysisData()
    {
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 20), QStringLiteral("GCxGC"));
        QVERIFY(analysis);
        QVERIFY(project.db()->modulationChanged(analysis, 6.5f));
        QVERIFY(project.db()->signalExists(QStringLiteral("GCxGC"), QStringLiteral("TIC")));
        Sedra::TAnalysisData* data = nullptr;
        QVERIFY(VNDatabase::analysisData(analysis, &data));
        std::unique_ptr<Sedra::TAnalysisData> owned(data);
        QCOMPARE(owned->modulation, 6.5);
        QCOMPARE(owned->scanCount, 20);
        QVERIFY(owned->descriptionFromFile);
        // A read-only project keeps its modulation and its files.
        project.db()->setReadOnly(true);
        const QMap<QString, QString> before = project.snapshot();
        QVERIFY(!project.db()->modulationChanged(analysis, 3.0f));
        QCOMPARE(project.snapshot(), before);
        project.db()->setReadOnly(false);
        VNObject2Analysis loose(QStringLiteral("loose"));
        QVERIFY(!project.db()->modulationChanged(&loose, 1.0f));
        QVERIFY(!VNDatabase::analysisData(&loose, &data));
        QVERIFY(!data);
        QVERIFY(VNDatabase::analysisData(analysis, &data));
        owned.reset(data);
        QCOMPARE(owned->modulation, 6.5);
    }

    void damagedAcquisitionFile_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::newRow("truncated") << "truncated";
        QTest::newRow("empty") << "empty";
        QTest::newRow("foreign") << "foreign";
        QTest::newRow("header changed") << "header";
        QTest::newRow("scan index overwritten") << "index";
        QTest::newRow("removed") << "removed";
    }

    // An analysis whose acquisition file is damaged reads as one without a
    // file: no data, no spectrum, no TIC, an invalid noise record; the file
    // is never rewritten and the rest of the project goes on working.
    void damagedAcquisitionFile()
    {
        QFETCH(QString, damage);
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 30);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Damaged"));
        QVERIFY(analysis);
        const QString path = project.file("Analyses/Damaged/Damaged.tcm");
        TCMFileRegistry::forget(path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        if (damage == QLatin1String("truncated")) {
            bytes.truncate(bytes.size() - 7);
        } else if (damage == QLatin1String("empty")) {
            bytes.clear();
        } else if (damage == QLatin1String("foreign")) {
            bytes = QByteArray("time,spectrum\n1.0,57:10\n");
        } else if (damage == QLatin1String("header")) {
            bytes[24] = char(bytes.at(24) + 1); // the scan count
        } else if (damage == QLatin1String("index")) {
            quint64 index = 0;
            std::memcpy(&index, bytes.constData() + 72, sizeof index);
            QVERIFY(index > 0 && index + 64 < quint64(bytes.size()));
            std::memset(bytes.data() + index, 0xff, 64);
        }
        QVERIFY(file.resize(0));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
        file.close();
        if (damage == QLatin1String("removed"))
            QVERIFY(QFile::remove(path));
        const QMap<QString, QString> before = project.snapshot();

        std::unique_ptr<VNMCData> data(VNDatabase::getMCData(analysis));
        QVERIFY(!data);
        QString label = QStringLiteral("old");
        Spectrum* spectrum = reinterpret_cast<Spectrum*>(&label);
        QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, 2, 2, label, spectrum), -1);
        QVERIFY(!spectrum);
        QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, 2, 9, label, spectrum), -1);
        Plavo::TData* plot = nullptr;
        QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, &plot, true, 2, 2), -1);
        QVERIFY(!plot);
        TDataCore* tic = nullptr;
        QVERIFY(!Sedra::TDatabase::returnTIC(analysis, &tic));
        QVERIFY(!tic);
        QVERIFY(!VNDatabase::analysisNoise(analysis)->valid);
        // The description is still there to say what the analysis was.
        Sedra::TAnalysisData* described = nullptr;
        QVERIFY(VNDatabase::analysisData(analysis, &described));
        std::unique_ptr<Sedra::TAnalysisData> owned(described);
        // Opening reads the header only: a sound header keeps its scan count
        // even though the scans themselves are refused when loaded.
        QCOMPARE(owned->scanCount, damage == QLatin1String("index") ? 30 : -1);
        QVERIFY(owned->descriptionFromFile);
        QCOMPARE(project.snapshot(), before);

        // A new signal of it does not touch the damaged file.
        std::unique_ptr<VNMCData> fresh(VNDatabaseImport::fromRun(run));
        QString signal = QStringLiteral("Rebuilt");
        QVERIFY(project.db()->signalCreateTCM(fresh.get(), analysis, signal));
        QVERIFY(project.db()->signalExists(QStringLiteral("Damaged"), signal));
        if (damage != QLatin1String("removed")) {
            QFile again(path);
            QVERIFY(again.open(QIODevice::ReadOnly));
            QCOMPARE(again.readAll(), bytes);
        }
        QVERIFY(project.add(run, QStringLiteral("Sound")));
    }

    // Without "acquisition.xml", or with a damaged one, the description comes
    // from the acquisition file's header; without both there is none.
    void missingDescription()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::MSMS, 25);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Bare"));
        QVERIFY(analysis);
        const QString xml = project.file("Analyses/Bare/acquisition.xml");
        for (const QByteArray& content :
             {QByteArray(), QByteArray("<acquisition version=\"1\"><name>"), QByteArray("<other/>")}) {
            QFile::remove(xml);
            QVERIFY(content.isNull() || AcquisitionProject::write(xml, content));
            TRecordingLogger log;
            Sedra::TAnalysisData* data = nullptr;
            QVERIFY(VNDatabase::analysisData(analysis, &data));
            std::unique_ptr<Sedra::TAnalysisData> owned(data);
            QVERIFY(!owned->descriptionFromFile);
            QCOMPARE(owned->scanCount, 25);
            QCOMPARE(owned->description.scanCount(), 25);
            QCOMPARE(owned->description.acquisitionSystem(), 768u);
            QCOMPARE(owned->description.transitions(), run.transitions);
            // The spectra do not depend on the description.
            QString label;
            Spectrum* spectrum = nullptr;
            QCOMPARE(VNDatabase::returnSpectrumExtraction(analysis, 5, 5, label, spectrum), run.pointsAtScan(5));
            delete spectrum;
        }
        QFile::remove(xml);
        const QString tcm = project.file("Analyses/Bare/Bare.tcm");
        TCMFileRegistry::forget(tcm);
        QVERIFY(QFile::remove(tcm));
        Sedra::TAnalysisData* data = reinterpret_cast<Sedra::TAnalysisData*>(&project);
        QVERIFY(!VNDatabase::analysisData(analysis, &data));
        QVERIFY(!data);
    }

    // Columns of numbers written through the import layer.
    void columnsToAcquisitionFile()
    {
        AcquisitionProject project;
        const int n = 4;
        double times[n] = {60, 120, 180, 240};
        double a[n] = {1, 2, 3, 4};
        double b[n] = {10, 20, 30, 40};
        double fid[n] = {5, 5, 5, 5};
        float masses[2] = {191.0f, 217.0f};
        VNHeader header(QStringLiteral("columns"));
        header.timeInSeconds = true;
        header.columnNames = QStringList{"m/z 191", "m/z 217", "FID"};
        const QString path = project.scratch("columns.tcm");
        QVERIFY(VNDatabaseImport::CSV2TCM(path, {times, a, b, fid}, n, masses, 2, &header));
        TCMFile file(path);
        TAcquisitionRun back;
        QVERIFY(file.toRun(&back));
        QCOMPARE(back.rtimes, (QVector<double>{1, 2, 3, 4}));
        QCOMPARE(back.tic, (QVector<double>{11, 22, 33, 44}));
        QCOMPARE(back.channelNames, QStringList{"FID"});
        QCOMPARE(back.pointsAtScan(2), 2);
        QCOMPARE(back.massesAtScan(2)[1], 21700u);
        // Times going backwards, a missing column, a non-finite value.
        double backwards[n] = {4, 3, 2, 1};
        double nan[n] = {1, std::nan(""), 3, 4};
        QVERIFY(!VNDatabaseImport::CSV2TCM(project.scratch("x.tcm"), {backwards, a}, n, masses, 1, nullptr));
        QVERIFY(!VNDatabaseImport::CSV2TCM(project.scratch("x.tcm"), {times, nullptr}, n, masses, 1, nullptr));
        QVERIFY(!VNDatabaseImport::CSV2TCM(project.scratch("x.tcm"), {times, nan}, n, masses, 1, nullptr));
        QVERIFY(!VNDatabaseImport::CSV2TCM(project.scratch("x.tcm"), {times, a}, 0, masses, 1, nullptr));
        QVERIFY(!QFileInfo::exists(project.scratch("x.tcm")));
    }

    // Signals made from an analysis' own file: one extracted-ion chromatogram
    // per ion, equal to the file's, and the TIC signal every analysis gets.
    void signalsExtractedFromTheAcquisition()
    {
        AcquisitionProject project;
        const TAcquisitionRun run = AcquisitionProject::run(TSyntheticRun::FullScan, 40);
        const VNObject2Analysis* analysis = project.add(run, QStringLiteral("Run"));
        QVERIFY(analysis);
        VNIon m57 = VNIon::around(57.0f);
        VNIon m71 = VNIon::around(71.0f);
        QVERIFY(project.db()->analysisExtractIonList(analysis, {&m57, &m71}));
        QVERIFY(project.db()->signalExists(QStringLiteral("Run"), m57.label()));
        QVERIFY(project.db()->signalExists(QStringLiteral("Run"), m71.label()));
        // The file is named after the signal, made safe ("m/z 57" has a separator).
        const QStringList files = QDir(project.file("Analyses/Run")).entryList({"*57*.tcm"});
        QCOMPARE(files.size(), 1);
        TCMFile signal(project.file("Analyses/Run/" + files.first()));
        TAcquisitionRun extracted;
        QVERIFY(signal.toRun(&extracted));
        QCOMPARE(extracted.scanCount(), 40);
        TCMFile own(project.file("Analyses/Run/Run.tcm"));
        QVERIFY(own.loadContent(-1.0f, -1.0f, 0, 39));
        std::vector<float> expected(40);
        own.ionAtFullRange(expected.data(), m57.lowerMass(), m57.upperMass());
        for (int scan : {0, 17, 39})
            QCOMPARE(float(extracted.tic.at(scan)), expected[size_t(scan)]);
        // Nothing left loaded by the extraction.
        TCMFile* shared = nullptr;
        VNDatabase::analysisTCM(analysis, &shared);
        QVERIFY(shared && !shared->isLoaded());

        QVERIFY(project.db()->analysisAutoExtract(analysis));
        QVERIFY(project.db()->signalExists(QStringLiteral("Run"), QStringLiteral("TIC")));
        // An invalid ion is passed over and said by the answer; no analysis, no ions: refused.
        VNIon none;
        QVERIFY(!project.db()->analysisExtractIonList(analysis, {&none}));
        QVERIFY(!project.db()->analysisExtractIonList(analysis, {}));
        QVERIFY(!project.db()->analysisExtractIonList(nullptr, {&m57}));
    }

    // Float columns from a caller (times, then one column per mass) become a
    // signal file whose TIC is the sum of the columns.
    void floatColumnsBecomeASignal()
    {
        AcquisitionProject project;
        const VNObject2Analysis* analysis
            = project.add(AcquisitionProject::run(TSyntheticRun::FullScan, 10), QStringLiteral("Run"));
        QVERIFY(analysis);
        float times[3] = {1.0f, 1.5f, 2.0f};
        float a[3] = {1, 2, 3};
        float b[3] = {10, 20, 30};
        float masses[2] = {191.0f, 217.0f};
        const QString path = project.scratch("floats.tcm");
        Sedra::TDatabase* base = project.db();
        QVERIFY(base->saveTCM(path, QList<float*>{times, a, b}, 3, masses, 2, QStringLiteral("Biomarkers"), analysis));
        TCMFile file(path);
        TAcquisitionRun back;
        QVERIFY(file.toRun(&back));
        QCOMPARE(back.tic, (QVector<double>{11, 22, 33}));
        QCOMPARE(back.rtimes, (QVector<double>{1.0, 1.5, 2.0}));
        // Columns that do not match their masses, or a missing column, are refused.
        QVERIFY(!base->saveTCM(project.scratch("x.tcm"), QList<float*>{times, a}, 3, masses, 2, "x", analysis));
        QVERIFY(!base->saveTCM(project.scratch("x.tcm"), QList<float*>{times, nullptr}, 3, masses, 1, "x", analysis));
        QVERIFY(!QFileInfo::exists(project.scratch("x.tcm")));
    }

    // Without a signal mapper, the look-ups assert and answer nothing.
    void missingSignalMapper()
    {
        VNDatabase db(Sedra::DatabaseProject);
        db.setMapperFactory(nullptr);
        TRecordingLogger log;
        TAssert::clear();
        QVERIFY(!db.signalExists(QStringLiteral("a"), QStringLiteral("b")));
        QVERIFY(db.signalIonList(nullptr).isEmpty());
        QVERIFY(!db.getSignalByHash(QStringLiteral("a"), 0));
        QCOMPARE(TAssert::count(), 3);
        QVERIFY(TAssert::contains(QStringLiteral("mapper != 0"), QStringLiteral("vndatabase")));
    }
};

QTEST_MAIN(TestAcquisition)
#include "tst_vndatabaseacquisition.moc"
