// vndb import: instrument files become analyses of a project, byte for byte
// what the readers saw, and a file that cannot be read changes nothing.
#include "vndbrunner.h"

#include <tandimsfile.h>
#include <tcmfile.h>
#include <tcsvrunfile.h>
#include <tdescriptionacquisition.h>

#include <QDir>
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

    QString input(const QString& name) const { return m_tmp.filePath(QStringLiteral("inputs/") + name); }

    // The stored analysis, read back through the acquisition file reader.
    TAcquisitionRun stored(const QString& analysis)
    {
        TAcquisitionRun run;
        TCMFile file;
        const QString path = QStringLiteral("%1/Analyses/%2/%2.tcm").arg(m_project, analysis);
        if (!file.open(path) || !file.verify() || !file.toRun(&run))
            qWarning("cannot read back %s: %s", qPrintable(path), qPrintable(file.errorString()));
        return run;
    }

    static void compareMeasurements(const TAcquisitionRun& actual, const TAcquisitionRun& expected)
    {
        QCOMPARE(actual.scanCount(), expected.scanCount());
        QCOMPARE(actual.rtimes, expected.rtimes);
        QCOMPARE(actual.scanOffsets, expected.scanOffsets);
        QCOMPARE(actual.masses, expected.masses);
        QCOMPARE(actual.abundances, expected.abundances);
        QCOMPARE(actual.acquisitionSystem, expected.acquisitionSystem);
        QCOMPARE(actual.transitions, expected.transitions);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        QVERIFY(QDir(m_tmp.path()).mkpath(QStringLiteral("inputs")));
    }

    void init()
    {
        m_project = m_tmp.filePath(QStringLiteral("project-%1").arg(QTest::currentTestFunction()));
        QDir(m_project).removeRecursively();
        QVERIFY(QDir().mkpath(m_project));
    }

    void csvIsStoredAsTheReaderSawIt()
    {
        const QString csv = input(QStringLiteral("oil.csv"));
        QVERIFY(TCSVRunFile::write(csv, VndbRunner::smallRun(TSyntheticRun::FullScan, 3)));
        TAcquisitionRun expected;
        QVERIFY(TCSVRunFile::read(csv, &expected));

        const VndbResult result = VndbRunner::run({QStringLiteral("import"), m_project, csv, QStringLiteral("--name"),
                                                   QStringLiteral("oil-1")});
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        QVERIFY(result.out.contains(QLatin1String("oil-1")));
        compareMeasurements(stored(QStringLiteral("oil-1")), expected);

        // The description beside it tells the same story, under the analysis' name.
        TDescriptionAcquisition description;
        QVERIFY(description.load(m_project + QStringLiteral("/Analyses/oil-1/acquisition.xml")));
        QCOMPARE(description.name(), QStringLiteral("oil-1"));
        QCOMPARE(description.scanCount(), expected.scanCount());
        QCOMPARE(description.signalNames().value(0), QStringLiteral("TIC"));
        // Nothing else is left in the analysis folder (no work folder).
        QCOMPARE(QDir(m_project + QStringLiteral("/Analyses")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{QStringLiteral("oil-1")});
    }

    void andiImportReportsItselfInJson()
    {
        const QString cdf = input(QStringLiteral("andi.cdf"));
        QVERIFY(TAndiMSFile::write(cdf, VndbRunner::smallRun(TSyntheticRun::FullScan, 4)));
        TAcquisitionRun expected;
        QVERIFY(TAndiMSFile::read(cdf, &expected));

        const VndbResult result = VndbRunner::run({QStringLiteral("import"), m_project, cdf, QStringLiteral("--json")});
        QCOMPARE(result.exitCode, 0);
        const QJsonObject json = QJsonDocument::fromJson(result.out.toUtf8()).object();
        // Without --name the analysis is named after the file.
        QCOMPARE(json.value(QStringLiteral("analysis")).toString(), QStringLiteral("andi"));
        QCOMPARE(json.value(QStringLiteral("format")).toString(), QStringLiteral("ANDI netCDF"));
        QCOMPARE(json.value(QStringLiteral("scans")).toInt(), expected.scanCount());
        QVERIFY(QFile::exists(json.value(QStringLiteral("file")).toString()));
        compareMeasurements(stored(QStringLiteral("andi")), expected);
    }

    void msmsTransitionsSurviveTheImport()
    {
        const TAcquisitionRun run = VndbRunner::smallRun(TSyntheticRun::MSMS, 5);
        const QString tcm = input(QStringLiteral("msms.tcm"));
        QVERIFY(TCMFile::save(tcm, run));
        const VndbResult result = VndbRunner::run({QStringLiteral("import"), m_project, tcm, QStringLiteral("-n"),
                                                   QStringLiteral("msms")});
        QCOMPARE(result.exitCode, 0);
        const TAcquisitionRun back = stored(QStringLiteral("msms"));
        compareMeasurements(back, run);
        QCOMPARE(back.acquisitionSystem, quint32(TAcquisitionRun::SystemMSMS));
        QVERIFY(!back.transitions.isEmpty());
    }

    void refusalsLeaveTheProjectAsItWas_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");

        QTest::newRow("missing file") << QStringLiteral("absent.csv") << QByteArray() << QStringLiteral("a") << 1
                                      << QStringLiteral("does not exist");
        QTest::newRow("bad number in csv")
            << QStringLiteral("bad.csv") << QByteArray("time,spectrum\n1.0,57:100 71:20\n1.1,57:abc\n")
            << QStringLiteral("a") << 1 << QStringLiteral("line 3");
        QTest::newRow("time going back")
            << QStringLiteral("back.csv") << QByteArray("1.0,57,100\n2.0,57,10\n1.5,57,3\n") << QStringLiteral("a") << 1
            << QStringLiteral("line 3");
        QTest::newRow("empty file") << QStringLiteral("empty.csv") << QByteArray("# nothing\n") << QStringLiteral("a")
                                    << 1 << QStringLiteral("empty.csv");
        QTest::newRow("truncated netCDF") << QStringLiteral("cut.cdf") << QByteArray("CDF\x01\x00\x00\x00\x05", 8)
                                          << QStringLiteral("a") << 1 << QStringLiteral("ANDI netCDF");
        QTest::newRow("netCDF-4") << QStringLiteral("hdf.cdf") << QByteArray("\x89HDF\r\n\x1a\n0000", 12)
                                  << QStringLiteral("a") << 1 << QStringLiteral("classic netCDF");
        QTest::newRow("damaged acquisition file")
            << QStringLiteral("cut.tcm") << (TCMFile::magic() + QByteArray(40, '\0')) << QStringLiteral("a") << 1
            << QStringLiteral("TCM");
        QTest::newRow("name with a separator") << QStringLiteral("ok.csv") << QByteArray("1.0,57,100\n")
                                               << QStringLiteral("../escape") << 1 << QStringLiteral("not a valid");
        QTest::newRow("hidden name") << QStringLiteral("ok.csv") << QByteArray("1.0,57,100\n") << QStringLiteral(".x")
                                     << 1 << QStringLiteral("not a valid");
        QTest::newRow("existing analysis") << QStringLiteral("ok.csv") << QByteArray("1.0,57,100\n")
                                           << QStringLiteral("present") << 1 << QStringLiteral("already exists");
    }

    void refusalsLeaveTheProjectAsItWas()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, name);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);

        // A project that already holds one analysis, so that damage would show.
        const QString seed = input(QStringLiteral("seed.csv"));
        QVERIFY(TCSVRunFile::write(seed, VndbRunner::smallRun(TSyntheticRun::FullScan, 6, 20)));
        QCOMPARE(VndbRunner::run({QStringLiteral("import"), m_project, seed, QStringLiteral("--name"),
                                  QStringLiteral("present")})
                     .exitCode,
                 0);
        const QString path = input(file);
        if (!content.isEmpty())
            QVERIFY(VndbRunner::writeFile(path, content));
        const auto before = VndbRunner::snapshot(m_project);

        const VndbResult result = VndbRunner::run({QStringLiteral("import"), m_project, path, QStringLiteral("--name"), name});
        QVERIFY(!result.crashed);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY2(result.err.startsWith(QLatin1String("vndb: ")), qPrintable(result.err));
        QVERIFY2(result.err.contains(reason), qPrintable(result.err));
        QVERIFY(result.out.isEmpty());
        QCOMPARE(VndbRunner::snapshot(m_project), before);
    }

    void missingProjectFolderIsNotCreated()
    {
        const QString csv = input(QStringLiteral("small.csv"));
        QVERIFY(TCSVRunFile::write(csv, VndbRunner::smallRun(TSyntheticRun::FullScan, 7, 10)));
        const QString absent = m_tmp.filePath(QStringLiteral("no-such-project"));
        const VndbResult result = VndbRunner::run({QStringLiteral("import"), absent, csv});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY(result.err.contains(QLatin1String("does not exist")));
        QVERIFY(!QFileInfo::exists(absent));
    }

    void aProjectWithoutAnalysesFolderGetsOneOnlyOnSuccess()
    {
        const QString bad = input(QStringLiteral("bad2.csv"));
        QVERIFY(VndbRunner::writeFile(bad, "1.0,57,x\n"));
        QCOMPARE(VndbRunner::run({QStringLiteral("import"), m_project, bad}).exitCode, 1);
        QVERIFY(!QFileInfo::exists(m_project + QStringLiteral("/Analyses")));

        const QString good = input(QStringLiteral("good.csv"));
        QVERIFY(VndbRunner::writeFile(good, "time (s),m/z,intensity\n60,57.07,100\n60,71.09,50\n61.5,57.07,80\n"));
        QCOMPARE(VndbRunner::run({QStringLiteral("import"), m_project, good}).exitCode, 0);
        const TAcquisitionRun run = stored(QStringLiteral("good"));
        QCOMPARE(run.scanCount(), 2);
        QCOMPARE(run.rtimes.value(0), 1.0); // seconds in the header: read as minutes
        QCOMPARE(run.pointsAtScan(0), 2);
    }
};

QTEST_GUILESS_MAIN(TestVndbImport)
#include "tst_vndb_import.moc"
