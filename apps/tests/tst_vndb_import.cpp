// vndb import: instrument files become analyses of a project, byte for byte
// what the readers saw, and a file that cannot be read changes nothing.
#include "vndbrunner.h"

#include <tandimsfile.h>
#include <tchemstationfile.h>
#include <tcmfile.h>
#include <tcsvrunfile.h>
#include <tdescriptionacquisition.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

class TestVndbImport : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;
    QString m_project;

    QString input(const QString& name) const { return m_tmp.filePath("inputs/" + name); }

    // The stored analysis, read back through the acquisition file reader.
    TAcquisitionRun stored(const QString& analysis)
    {
        TAcquisitionRun run;
        TCMFile file;
        const QString path = QString("%1/Analyses/%2/%2.tcm").arg(m_project, analysis);
        if (!file.open(path) || !file.verify() || !file.toRun(&run))
            qWarning("cannot read back %s: %s", qPrintable(path), qPrintable(file.errorString()));
        return run;
    }

    // Everything measured, as the reader saw it.
    static bool sameMeasurements(const TAcquisitionRun& actual, const TAcquisitionRun& expected)
    {
        return actual.scanCount() == expected.scanCount() && actual.rtimes == expected.rtimes
            && actual.scanOffsets == expected.scanOffsets && actual.masses == expected.masses
            && actual.abundances == expected.abundances && actual.acquisitionSystem == expected.acquisitionSystem
            && actual.transitions == expected.transitions;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        QVERIFY(QDir(m_tmp.path()).mkpath("inputs"));
    }

    void init()
    {
        m_project = m_tmp.filePath(QString("project-%1").arg(QTest::currentTestFunction()));
        QDir(m_project).removeRecursively();
        QVERIFY(QDir().mkpath(m_project));
    }

    void csvIsStoredAsTheReaderSawIt()
    {
        const QString csv = input("oil.csv");
        QVERIFY(TCSVRunFile::write(csv, VndbRunner::smallRun(TSyntheticRun::FullScan, 3)));
        TAcquisitionRun expected;
        QVERIFY(TCSVRunFile::read(csv, &expected));

        const VndbResult result = VndbRunner::run({"import", m_project, csv, "--name", "oil-1"});
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        QVERIFY(result.out.contains("oil-1"));
        QVERIFY(sameMeasurements(stored("oil-1"), expected));

        // The description beside it tells the same story, under the analysis' name.
        TDescriptionAcquisition description;
        QVERIFY(description.load(m_project + "/Analyses/oil-1/acquisition.xml"));
        QCOMPARE(description.name(), "oil-1");
        QCOMPARE(description.scanCount(), expected.scanCount());
        QCOMPARE(description.signalNames().value(0), "TIC");
        // Nothing else is left in the analysis folder (no work folder).
        QCOMPARE(QDir(m_project + "/Analyses").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{"oil-1"});
    }

    void andiImportReportsItselfInJson()
    {
        const QString cdf = input("andi.cdf");
        QVERIFY(TAndiMSFile::write(cdf, VndbRunner::smallRun(TSyntheticRun::FullScan, 4)));
        TAcquisitionRun expected;
        QVERIFY(TAndiMSFile::read(cdf, &expected));

        const VndbResult result = VndbRunner::run({"import", m_project, cdf, "--json"});
        QCOMPARE(result.exitCode, 0);
        const QJsonObject json = QJsonDocument::fromJson(result.out.toUtf8()).object();
        // Without --name the analysis is named after the file.
        QCOMPARE(json.value("analysis").toString(), "andi");
        QCOMPARE(json.value("format").toString(), "ANDI netCDF");
        QCOMPARE(json.value("scans").toInt(), expected.scanCount());
        QVERIFY(QFile::exists(json.value("file").toString()));
        QVERIFY(sameMeasurements(stored("andi"), expected));
    }

    // A data folder: scans, selected ions as NAME-SIM, and the FID channel on its own time base.
    void chemStationFolderBringsItsChannels()
    {
        TDetectorChannel fid{"FID1A", "pA", "Front Signal", {}, {}};
        for (int i = 0; i < 3000; ++i) {
            fid.times.append(0.01 + i * 0.005);
            fid.values.append(12.5 + (i % 97) * 0.25);
        }
        TAcquisitionRun ions;
        const quint32 keys[] = {13100, 20200};
        for (int s = 0; s < 50; ++s) {
            const float values[] = {float(100 + s), float(2000 - s)};
            ions.appendScan(0.1 + 0.02 * s, keys, values, 2);
        }
        const QString folder = input("RUN 7.D");
        QVERIFY(
            TChemStationFile::writeFolder(folder, VndbRunner::smallRun(TSyntheticRun::FullScan, 5, 80), ions, {fid}));

        const VndbResult result = VndbRunner::run({"import", m_project, folder + "/", "--json"});
        QCOMPARE(result.exitCode, 0);
        const QJsonObject json = QJsonDocument::fromJson(result.out.toUtf8()).object();
        QCOMPARE(json.value("analysis").toString(), "RUN 7");
        QCOMPARE(json.value("channels").toArray(), QJsonArray{"FID1A"});
        const QJsonArray runs = json.value("runs").toArray();
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs.at(1).toObject().value("analysis").toString(), "RUN 7-SIM");
        QCOMPARE(runs.at(1).toObject().value("acquisitionSystem").toInt(), 512);
        QCOMPARE(runs.at(0).toObject().value("acquisitionSystem").toInt(), 256);

        const VndbResult channel = VndbRunner::run({"channel", m_project, "RUN 7", "FID1A", "--json"});
        QCOMPARE(channel.exitCode, 0);
        const QJsonObject trace = QJsonDocument::fromJson(channel.out.toUtf8()).object();
        QCOMPARE(trace.value("unit").toString(), "pA");
        QCOMPARE(trace.value("channel").toString(), "FID1A");
        const QJsonArray times = trace.value("time").toArray();
        const QJsonArray values = trace.value("value").toArray();
        QCOMPARE(times.size(), 3000);
        for (int i = 0; i < 3000; i += 250) {
            QVERIFY(qAbs(times.at(i).toDouble() - fid.times.at(i)) < 1e-6);
            QCOMPARE(values.at(i).toDouble(), fid.values.at(i));
        }
        const QJsonObject list
            = QJsonDocument::fromJson(VndbRunner::run({"project", "list", m_project, "--json"}).out.toUtf8()).object();
        QVERIFY2(QJsonDocument(list).toJson().contains("\"FID1A\""), list.keys().join(",").toUtf8());

        const QString picture = m_tmp.filePath("fid.svg");
        QCOMPARE(VndbRunner::run({"plot", m_project, "RUN 7", "--channel", "FID1A", "-o", picture}).exitCode, 0);
        QVERIFY(VndbRunner::readFile(picture).contains("FID1A"));
        const VndbResult missing = VndbRunner::run({"channel", m_project, "RUN 7-SIM"});
        QCOMPARE(missing.exitCode, 1);
        QVERIFY2(missing.err.contains("no detector channel"), qPrintable(missing.err));
        // The same folder again: its names are taken, nothing is added.
        const auto before = VndbRunner::snapshot(m_project);
        QCOMPARE(VndbRunner::run({"import", m_project, folder, "--name", "RUN 7"}).exitCode, 1);
        QCOMPARE(VndbRunner::snapshot(m_project), before);
    }

    void msmsTransitionsSurviveTheImport()
    {
        const TAcquisitionRun run = VndbRunner::smallRun(TSyntheticRun::MSMS, 5);
        const QString tcm = input("msms.tcm");
        QVERIFY(TCMFile::save(tcm, run));
        const VndbResult result = VndbRunner::run({"import", m_project, tcm, "-n", "msms"});
        QCOMPARE(result.exitCode, 0);
        QVERIFY(sameMeasurements(stored("msms"), run));
        QVERIFY(run.acquisitionSystem == TAcquisitionRun::SystemMSMS && !run.transitions.isEmpty());
    }

    void refusalsLeaveTheProjectAsItWas_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("name"); // empty: "a"
        QTest::addColumn<QString>("reason");

        QTest::newRow("missing file") << "absent.csv" << QByteArray() << QString() << "does not exist";
        QTest::newRow("bad number in csv")
            << "bad.csv" << QByteArray("time,spectrum\n1.0,57:100 71:20\n1.1,57:abc\n") << QString() << "line 3";
        QTest::newRow("time going back") << "back.csv" << QByteArray("1.0,57,100\n2.0,57,10\n1.5,57,3\n") << QString()
                                         << "line 3";
        QTest::newRow("empty file") << "empty.csv" << QByteArray("# nothing\n") << QString() << "empty.csv";
        QTest::newRow("truncated netCDF")
            << "cut.cdf" << QByteArray("CDF\x01\x00\x00\x00\x05", 8) << QString() << "ANDI netCDF";
        QTest::newRow("netCDF-4") << "hdf.cdf" << QByteArray("\x89HDF\r\n\x1a\n0000", 12) << QString()
                                  << "classic netCDF";
        QTest::newRow("damaged acquisition file")
            << "cut.tcm" << (TCMFile::magic() + QByteArray(40, '\0')) << QString() << "TCM";
        QTest::newRow("ZIP archive named .CDF")
            << "archive.CDF" << QByteArray("PK\x03\x04\x14\x00\x00\x00", 8) << QString() << "ZIP archive";
        QTest::newRow("cut ChemStation scans")
            << "cut.ms"
            << TChemStationFile::writeMassSpectra(VndbRunner::smallRun(TSyntheticRun::FullScan, 2, 30)).left(900)
            << QString() << "declares 30 scans";
        QTest::newRow("cut ChemStation channel")
            << "cut.ch" << (QByteArray("\x03\x31\x37\x39", 4) + QByteArray(500, '\0')) << QString()
            << "not a ChemStation channel";
        QTest::newRow("name with a separator") << "ok.csv" << QByteArray("1.0,57,100\n") << "../escape"
                                               << "not a valid";
        QTest::newRow("hidden name") << "ok.csv" << QByteArray("1.0,57,100\n") << ".x"
                                     << "not a valid";
        QTest::newRow("existing analysis") << "ok.csv" << QByteArray("1.0,57,100\n") << "present"
                                           << "already exists";
    }

    void refusalsLeaveTheProjectAsItWas()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, name);
        QFETCH(QString, reason);

        // A project that already holds one analysis, so that damage would show.
        const QString seed = input("seed.csv");
        QVERIFY(TCSVRunFile::write(seed, VndbRunner::smallRun(TSyntheticRun::FullScan, 6, 20)));
        QCOMPARE(VndbRunner::run({"import", m_project, seed, "--name", "present"}).exitCode, 0);
        const QString path = input(file);
        if (!content.isEmpty())
            QVERIFY(VndbRunner::writeFile(path, content));
        const auto before = VndbRunner::snapshot(m_project);

        const VndbResult result = VndbRunner::run({"import", m_project, path, "--name", name.isEmpty() ? "a" : name});
        VNDB_REFUSED(result, 1, reason);
        QVERIFY(result.err.startsWith("vndb: ") && result.out.isEmpty());
        QCOMPARE(VndbRunner::snapshot(m_project), before);
    }

    void foldersAreMadeOnlyOnSuccess_data()
    {
        QTest::addColumn<bool>("missingProject");
        QTest::newRow("missing project folder") << true;
        QTest::newRow("project without an analyses folder") << false;
    }

    // An import makes the project folder, or its analyses folder, only when it succeeds.
    void foldersAreMadeOnlyOnSuccess()
    {
        QFETCH(bool, missingProject);
        if (missingProject)
            m_project = m_tmp.filePath("no-such-project");
        const QString made = missingProject ? m_project : m_project + "/Analyses";
        const QString bad = input("bad.csv");
        QVERIFY(VndbRunner::writeFile(bad, "1.0,57,x\n"));
        QCOMPARE(VndbRunner::run({"import", m_project, bad}).exitCode, 1);
        QVERIFY(!QFileInfo::exists(made));

        const QString good = input("good.csv");
        QVERIFY(VndbRunner::writeFile(good, "time (s),m/z,intensity\n60,57.07,100\n60,71.09,50\n61.5,57.07,80\n"));
        QCOMPARE(VndbRunner::run({"import", m_project, good}).exitCode, 0);
        const TAcquisitionRun run = stored("good");
        QCOMPARE(run.scanCount(), 2);
        QCOMPARE(run.rtimes.value(0), 1.0); // seconds in the header: read as minutes
        QCOMPARE(run.pointsAtScan(0), 2);
    }
};

QTEST_GUILESS_MAIN(TestVndbImport)
#include "tst_vndb_import.moc"
