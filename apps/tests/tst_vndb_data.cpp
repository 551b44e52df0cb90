// vndb tic, eic and spectrum: the numbers printed are the numbers of the run,
// in text and in JSON, and every bad request is a one-line refusal.
#include "vndbrunner.h"

#include <tcmfile.h>
#include <tsyntheticrun.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

class TestVndbData : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;
    QString m_project;
    TAcquisitionRun m_full;
    TAcquisitionRun m_msms;

    QJsonObject json(const QStringList& arguments)
    {
        const VndbResult result = VndbRunner::run(arguments + QStringList{"--json"});
        if (result.exitCode != 0)
            qWarning("vndb failed: %s", qPrintable(result.err));
        return QJsonDocument::fromJson(result.out.toUtf8()).object();
    }

    // What an extracted-ion chromatogram must be, straight from the run.
    static double eicAt(const TAcquisitionRun& run, int scan, double low, double high)
    {
        double sum = 0.0;
        const quint32 a = quint32(std::lround(low * 100)), b = quint32(std::lround(high * 100));
        for (int i = 0; i < run.pointsAtScan(scan); ++i) {
            const quint32 key = run.massesAtScan(scan)[i];
            if (key >= a && key <= b)
                sum += double(run.abundancesAtScan(scan)[i]);
        }
        return sum;
    }

    static QVector<double> numbers(const QJsonValue& array)
    {
        QVector<double> values;
        for (const QJsonValue& v : array.toArray())
            values << v.toDouble();
        return values;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        m_project = m_tmp.filePath("project");
        const QString analyses = m_project + "/Analyses";
        QVERIFY(QDir().mkpath(analyses));
        const QString inputs = m_tmp.filePath("inputs");
        QVERIFY(QDir().mkpath(inputs));
        m_full = VndbRunner::smallRun(TSyntheticRun::FullScan, 21, 300);
        m_msms = VndbRunner::smallRun(TSyntheticRun::MSMS, 22, 300);
        QVERIFY(TCMFile::save(inputs + "/full.tcm", m_full));
        QVERIFY(TCMFile::save(inputs + "/msms.tcm", m_msms));
        for (const QString name : {"full", "msms"})
            QCOMPARE(VndbRunner::run({"import", m_project, inputs + QLatin1Char('/') + name + ".tcm"}).exitCode, 0);
    }

    void ticIsTheRunsTotalCurrent()
    {
        const QJsonObject result = json({"tic", m_project, "full"});
        QCOMPARE(numbers(result.value("time")), m_full.rtimes);
        QCOMPARE(numbers(result.value("abundance")), m_full.tic);

        // The text form: a comment, a header, then one line per scan numbered as in the file;
        // an open side of the time window keeps everything up to the end.
        const VndbResult text
            = VndbRunner::run({"tic", m_project, "full", "--from", QString::number(m_full.rtimes.at(298), 'g', 17)});
        QCOMPARE(text.exitCode, 0);
        const QStringList lines = text.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2 + 2);
        QVERIFY(lines.at(0).startsWith("# full"));
        QVERIFY(lines.at(2).startsWith("298\t"));
        const QStringList last = lines.last().split(QLatin1Char('\t'));
        QCOMPARE(last.value(0).toInt(), m_full.scanCount() - 1);
        QCOMPARE(last.value(1).toDouble(), std::round(m_full.rtimes.last() * 10000) / 10000);
    }

    void eicSumsTheMassWindow_data()
    {
        QTest::addColumn<double>("mass");
        QTest::addColumn<QString>("window");
        QTest::newRow("m/z 57 default window") << 57.0 << QString();
        QTest::newRow("m/z 191 narrow") << 191.0 << "0.2";
        QTest::newRow("m/z 85 wide") << 85.0 << "2";
        QTest::newRow("exact mass, zero window") << 57.07 << "0";
    }

    void eicSumsTheMassWindow()
    {
        QFETCH(double, mass);
        QFETCH(QString, window);
        QStringList arguments{"eic", m_project, "full", QString::number(mass)};
        if (!window.isEmpty())
            arguments << "--window" << window;
        const QJsonObject result = json(arguments);
        const double w = window.isEmpty() ? 0.5 : window.toDouble();
        QCOMPARE(result.value("window").toDouble(), w);
        const QVector<double> values = numbers(result.value("abundance"));
        QCOMPARE(values.size(), m_full.scanCount());
        double total = 0.0;
        for (int scan = 0; scan < m_full.scanCount(); ++scan) {
            const double expected = eicAt(m_full, scan, mass - w, mass + w);
            QVERIFY2(std::fabs(values.at(scan) - expected) <= 1e-3 * std::max(1.0, expected),
                     qPrintable(QString("scan %1: %2 != %3").arg(scan).arg(values.at(scan)).arg(expected)));
            total += expected;
        }
        QVERIFY(total > 0.0);
    }

    void timeWindowKeepsTheScansInside()
    {
        const double from = m_full.rtimes.at(100), to = m_full.rtimes.at(119);
        const QJsonObject result = json({"eic", m_project, "full", "57", "--from", QString::number(from, 'g', 17),
                                         "--to", QString::number(to, 'g', 17)});
        QCOMPARE(result.value("firstScan").toInt(), 100);
        const QVector<double> times = numbers(result.value("time"));
        QCOMPARE(times, m_full.rtimes.mid(100, 20));
        QCOMPARE(numbers(result.value("abundance")).value(0), eicAt(m_full, 100, 56.5, 57.5));
    }

    void spectrumOfOneScanAndOfARange()
    {
        const int scan = 150;
        QJsonObject result = json({"spectrum", m_project, "full", QString::number(scan)});
        QJsonArray points = result.value("points").toArray();
        QCOMPARE(points.size(), m_full.pointsAtScan(scan));
        for (int i = 0; i < points.size(); ++i) {
            const QJsonObject p = points.at(i).toObject();
            QCOMPARE(p.value("mz").toDouble(), m_full.massesAtScan(scan)[i] / 100.0);
            QCOMPARE(p.value("abundance").toDouble(), double(std::lround(double(m_full.abundancesAtScan(scan)[i]))));
        }
        QVERIFY(result.value("title").toString().startsWith("scan 150"));

        // The mean of three scans: every mass summed and divided by three.
        result = json({"spectrum", m_project, "full", "10", "12"});
        points = result.value("points").toArray();
        QVERIFY(!points.isEmpty());
        const QJsonObject first = points.first().toObject();
        const double mz = first.value("mz").toDouble();
        double sum = 0.0;
        for (int s = 10; s <= 12; ++s)
            sum += eicAt(m_full, s, mz, mz);
        QVERIFY(std::fabs(first.value("abundance").toDouble() - sum / 3.0) <= 1.0);
        QVERIFY(result.value("title").toString().contains("10 to 12"));
    }

    void msmsBarsAreNamedParentToDaughter()
    {
        const QJsonObject result = json({"spectrum", m_project, "msms", "200"});
        QVERIFY(result.value("msms").toBool());
        const QJsonArray points = result.value("points").toArray();
        QCOMPARE(points.size(), m_msms.transitions.size());
        for (int i = 0; i < points.size(); ++i) {
            const auto& t = m_msms.transitions.at(i);
            QCOMPARE(points.at(i).toObject().value("label").toString(),
                     QString("%1->%2").arg(double(t.first)).arg(double(t.second)));
        }
        // Text output carries the same names in its third column.
        const VndbResult text = VndbRunner::run({"spectrum", m_project, "msms", "200"});
        QVERIFY(text.out.contains(QString("\t%1->%2")
                                      .arg(double(m_msms.transitions.first().first))
                                      .arg(double(m_msms.transitions.first().second))));
    }

    void badRequestsAreOneLineRefusals_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");
        const QString missing = "/nonexistent/vndb/project";
        QTest::newRow("missing project") << QStringList{"tic", missing, "full"} << 1 << "does not exist";
        QTest::newRow("unknown analysis") << QStringList{"tic", "@", "nope"} << 1 << "unknown analysis 'nope'";
        QTest::newRow("scan past the end") << QStringList{"spectrum", "@", "full", "300"} << 1 << "scans 0 to 299";
        QTest::newRow("reversed range") << QStringList{"spectrum", "@", "full", "9", "3"} << 2 << "comes before";
        QTest::newRow("scan not a number") << QStringList{"spectrum", "@", "full", "x"} << 2 << "not a scan number";
        QTest::newRow("mass outside the file") << QStringList{"eic", "@", "full", "5000"} << 1 << "outside the masses";
        QTest::newRow("negative window") << QStringList{"eic", "@", "full", "57", "--window", "-1"} << 2
                                         << "not a mass window";
        QTest::newRow("missing argument") << QStringList{"eic", "@", "full"} << 2 << "missing arguments";
        QTest::newRow("no scan in the time window")
            << QStringList{"tic", "@", "full", "--from", "500"} << 1 << "time window";
        QTest::newRow("reversed time window") << QStringList{"tic", "@", "full", "--from", "9", "--to", "8"} << 2 << "";
        QTest::newRow("unknown option") << QStringList{"tic", "@", "full", "--frobnicate"} << 2
                                        << "unknown option --frobnicate";
    }

    void badRequestsAreOneLineRefusals()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);
        arguments.replaceInStrings("@", m_project);
        const auto before = VndbRunner::snapshot(m_project);
        const VndbResult result = VndbRunner::run(arguments);
        VNDB_REFUSED(result, exitCode, reason);
        QVERIFY(result.out.isEmpty());
        QCOMPARE(VndbRunner::snapshot(m_project), before);
    }

    void damagedAcquisitionFileIsRefusedNotRead()
    {
        // The same run, its file cut in the middle, and with a header checksum that no longer matches.
        const QByteArray bytes = VndbRunner::readFile(m_project + "/Analyses/full/full.tcm");
        QByteArray flipped = bytes;
        flipped[30] = char(bytes.at(30) ^ 0x40);
        for (const auto& damaged :
             {qMakePair(QString("cut"), bytes.left(bytes.size() / 2)), qMakePair(QString("flipped"), flipped)}) {
            QVERIFY(QDir().mkpath(m_project + "/Analyses/" + damaged.first));
            QVERIFY(
                VndbRunner::writeFile(QString("%1/Analyses/%2/%2.tcm").arg(m_project, damaged.first), damaged.second));
        }
        const auto before = VndbRunner::snapshot(m_project);
        for (const QString analysis : {"cut", "flipped"}) {
            for (const QStringList& command :
                 {QStringList{"tic"}, QStringList{"eic", "57"}, QStringList{"spectrum", "0"}}) {
                const VndbResult result
                    = VndbRunner::run(QStringList{command.first(), m_project, analysis} + command.mid(1));
                VNDB_REFUSED(result, 1, "is damaged");
            }
        }
        const VndbResult french = VndbRunner::run({"spectrum", m_project, "cut", "0", "--lang", "fr"});
        VNDB_REFUSED(french, 1, "le fichier d'acquisition de l'analyse 'cut' est endommagé");
        // An analysis folder without its acquisition file says so.
        QVERIFY(QDir().mkpath(m_project + "/Analyses/empty"));
        const VndbResult result = VndbRunner::run({"tic", m_project, "empty"});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.err.contains("no acquisition file"));
        QVERIFY(QDir().rmdir(m_project + "/Analyses/empty"));
        QCOMPARE(VndbRunner::snapshot(m_project), before);
        for (const QString analysis : {"cut", "flipped"})
            QVERIFY(QDir(m_project + "/Analyses/" + analysis).removeRecursively());
    }
};

QTEST_GUILESS_MAIN(TestVndbData)
#include "tst_vndb_data.moc"
