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
        const VndbResult result = VndbRunner::run(arguments + QStringList{QStringLiteral("--json")});
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
        m_project = m_tmp.filePath(QStringLiteral("project"));
        const QString analyses = m_project + QStringLiteral("/Analyses");
        QVERIFY(QDir().mkpath(analyses));
        const QString inputs = m_tmp.filePath(QStringLiteral("inputs"));
        QVERIFY(QDir().mkpath(inputs));
        m_full = VndbRunner::smallRun(TSyntheticRun::FullScan, 21, 300);
        m_msms = VndbRunner::smallRun(TSyntheticRun::MSMS, 22, 300);
        QVERIFY(TCMFile::save(inputs + QStringLiteral("/full.tcm"), m_full));
        QVERIFY(TCMFile::save(inputs + QStringLiteral("/msms.tcm"), m_msms));
        for (const QString& name : {QStringLiteral("full"), QStringLiteral("msms")})
            QCOMPARE(VndbRunner::run({QStringLiteral("import"), m_project, inputs + QLatin1Char('/') + name
                                      + QStringLiteral(".tcm")})
                         .exitCode,
                     0);
    }

    void ticIsTheRunsTotalCurrent()
    {
        const QJsonObject result = json({QStringLiteral("tic"), m_project, QStringLiteral("full")});
        QCOMPARE(numbers(result.value(QStringLiteral("time"))), m_full.rtimes);
        QCOMPARE(numbers(result.value(QStringLiteral("abundance"))), m_full.tic);

        // The text form: a comment, a header, then one line per scan.
        const VndbResult text = VndbRunner::run({QStringLiteral("tic"), m_project, QStringLiteral("full")});
        QCOMPARE(text.exitCode, 0);
        const QStringList lines = text.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), m_full.scanCount() + 2);
        QVERIFY(lines.at(0).startsWith(QLatin1String("# full")));
        const QStringList last = lines.last().split(QLatin1Char('\t'));
        QCOMPARE(last.value(0).toInt(), m_full.scanCount() - 1);
        QCOMPARE(last.value(1).toDouble(), std::round(m_full.rtimes.last() * 10000) / 10000);
    }

    void eicSumsTheMassWindow_data()
    {
        QTest::addColumn<double>("mass");
        QTest::addColumn<QString>("window");
        QTest::newRow("m/z 57 default window") << 57.0 << QString();
        QTest::newRow("m/z 191 narrow") << 191.0 << QStringLiteral("0.2");
        QTest::newRow("m/z 85 wide") << 85.0 << QStringLiteral("2");
        QTest::newRow("exact mass, zero window") << 57.07 << QStringLiteral("0");
    }

    void eicSumsTheMassWindow()
    {
        QFETCH(double, mass);
        QFETCH(QString, window);
        QStringList arguments{QStringLiteral("eic"), m_project, QStringLiteral("full"), QString::number(mass)};
        if (!window.isEmpty())
            arguments << QStringLiteral("--window") << window;
        const QJsonObject result = json(arguments);
        const double w = window.isEmpty() ? 0.5 : window.toDouble();
        QCOMPARE(result.value(QStringLiteral("window")).toDouble(), w);
        const QVector<double> values = numbers(result.value(QStringLiteral("abundance")));
        QCOMPARE(values.size(), m_full.scanCount());
        double total = 0.0;
        for (int scan = 0; scan < m_full.scanCount(); ++scan) {
            const double expected = eicAt(m_full, scan, mass - w, mass + w);
            QVERIFY2(std::fabs(values.at(scan) - expected) <= 1e-3 * std::max(1.0, expected),
                     qPrintable(QStringLiteral("scan %1: %2 != %3").arg(scan).arg(values.at(scan)).arg(expected)));
            total += expected;
        }
        QVERIFY(total > 0.0);
    }

    void timeWindowKeepsTheScansInside()
    {
        const double from = m_full.rtimes.at(100), to = m_full.rtimes.at(119);
        const QJsonObject result = json({QStringLiteral("eic"), m_project, QStringLiteral("full"), QStringLiteral("57"),
                                         QStringLiteral("--from"), QString::number(from, 'g', 17), QStringLiteral("--to"),
                                         QString::number(to, 'g', 17)});
        QCOMPARE(result.value(QStringLiteral("firstScan")).toInt(), 100);
        const QVector<double> times = numbers(result.value(QStringLiteral("time")));
        QCOMPARE(times, m_full.rtimes.mid(100, 20));
        QCOMPARE(numbers(result.value(QStringLiteral("abundance"))).value(0), eicAt(m_full, 100, 56.5, 57.5));

        // An open side keeps everything up to the end; the text form numbers the scans as in the file.
        const VndbResult tail = VndbRunner::run({QStringLiteral("tic"), m_project, QStringLiteral("full"),
                                                 QStringLiteral("--from"), QString::number(m_full.rtimes.at(298), 'g', 17)});
        QCOMPARE(tail.exitCode, 0);
        const QStringList lines = tail.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2 + 2);
        QVERIFY(lines.at(2).startsWith(QLatin1String("298\t")));

        VndbResult refused = VndbRunner::run({QStringLiteral("tic"), m_project, QStringLiteral("full"), QStringLiteral("--from"),
                                              QStringLiteral("500")});
        QCOMPARE(refused.exitCode, 1);
        QVERIFY(refused.err.contains(QLatin1String("time window")));
        refused = VndbRunner::run({QStringLiteral("tic"), m_project, QStringLiteral("full"), QStringLiteral("--from"),
                                   QStringLiteral("9"), QStringLiteral("--to"), QStringLiteral("8")});
        QCOMPARE(refused.exitCode, 2);
        QCOMPARE(refused.errLines().size(), 1);
    }

    void spectrumOfOneScanAndOfARange()
    {
        const int scan = 150;
        QJsonObject result = json({QStringLiteral("spectrum"), m_project, QStringLiteral("full"), QString::number(scan)});
        QJsonArray points = result.value(QStringLiteral("points")).toArray();
        QCOMPARE(points.size(), m_full.pointsAtScan(scan));
        for (int i = 0; i < points.size(); ++i) {
            const QJsonObject p = points.at(i).toObject();
            QCOMPARE(p.value(QStringLiteral("mz")).toDouble(), m_full.massesAtScan(scan)[i] / 100.0);
            QCOMPARE(p.value(QStringLiteral("abundance")).toDouble(),
                     double(std::lround(double(m_full.abundancesAtScan(scan)[i]))));
        }
        QVERIFY(result.value(QStringLiteral("title")).toString().startsWith(QStringLiteral("scan 150")));

        // The mean of three scans: every mass summed and divided by three.
        result = json({QStringLiteral("spectrum"), m_project, QStringLiteral("full"), QStringLiteral("10"),
                       QStringLiteral("12")});
        points = result.value(QStringLiteral("points")).toArray();
        QVERIFY(!points.isEmpty());
        const QJsonObject first = points.first().toObject();
        const double mz = first.value(QStringLiteral("mz")).toDouble();
        double sum = 0.0;
        for (int s = 10; s <= 12; ++s)
            sum += eicAt(m_full, s, mz, mz);
        QVERIFY(std::fabs(first.value(QStringLiteral("abundance")).toDouble() - sum / 3.0) <= 1.0);
        QVERIFY(result.value(QStringLiteral("title")).toString().contains(QLatin1String("10 to 12")));
    }

    void msmsBarsAreNamedParentToDaughter()
    {
        const QJsonObject result = json({QStringLiteral("spectrum"), m_project, QStringLiteral("msms"), QStringLiteral("200")});
        QVERIFY(result.value(QStringLiteral("msms")).toBool());
        const QJsonArray points = result.value(QStringLiteral("points")).toArray();
        QCOMPARE(points.size(), m_msms.transitions.size());
        for (int i = 0; i < points.size(); ++i) {
            const auto& t = m_msms.transitions.at(i);
            QCOMPARE(points.at(i).toObject().value(QStringLiteral("label")).toString(),
                     QStringLiteral("%1->%2").arg(double(t.first)).arg(double(t.second)));
        }
        // Text output carries the same names in its third column.
        const VndbResult text = VndbRunner::run({QStringLiteral("spectrum"), m_project, QStringLiteral("msms"), QStringLiteral("200")});
        QVERIFY(text.out.contains(QStringLiteral("\t%1->%2").arg(double(m_msms.transitions.first().first))
                                      .arg(double(m_msms.transitions.first().second))));
    }

    void badRequestsAreOneLineRefusals_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");
        const QString missing = QStringLiteral("/nonexistent/vndb/project");
        QTest::newRow("missing project") << QStringList{QStringLiteral("tic"), missing, QStringLiteral("full")} << 1
                                         << QStringLiteral("does not exist");
        QTest::newRow("unknown analysis") << QStringList{QStringLiteral("tic"), QStringLiteral("@"), QStringLiteral("nope")}
                                          << 1 << QStringLiteral("unknown analysis 'nope'");
        QTest::newRow("scan past the end")
            << QStringList{QStringLiteral("spectrum"), QStringLiteral("@"), QStringLiteral("full"), QStringLiteral("300")}
            << 1 << QStringLiteral("scans 0 to 299");
        QTest::newRow("reversed range") << QStringList{QStringLiteral("spectrum"), QStringLiteral("@"), QStringLiteral("full"),
                                                       QStringLiteral("9"), QStringLiteral("3")}
                                        << 2 << QStringLiteral("comes before");
        QTest::newRow("scan not a number") << QStringList{QStringLiteral("spectrum"), QStringLiteral("@"),
                                                          QStringLiteral("full"), QStringLiteral("x")}
                                           << 2 << QStringLiteral("not a scan number");
        QTest::newRow("mass outside the file")
            << QStringList{QStringLiteral("eic"), QStringLiteral("@"), QStringLiteral("full"), QStringLiteral("5000")} << 1
            << QStringLiteral("outside the masses");
        QTest::newRow("negative window") << QStringList{QStringLiteral("eic"), QStringLiteral("@"), QStringLiteral("full"),
                                                        QStringLiteral("57"), QStringLiteral("--window"), QStringLiteral("-1")}
                                         << 2 << QStringLiteral("not a mass window");
        QTest::newRow("missing argument") << QStringList{QStringLiteral("eic"), QStringLiteral("@"), QStringLiteral("full")}
                                          << 2 << QStringLiteral("missing arguments");
        QTest::newRow("unknown option") << QStringList{QStringLiteral("tic"), QStringLiteral("@"), QStringLiteral("full"),
                                                       QStringLiteral("--frobnicate")}
                                        << 2 << QStringLiteral("unknown option --frobnicate");
    }

    void badRequestsAreOneLineRefusals()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);
        arguments.replaceInStrings(QStringLiteral("@"), m_project);
        const auto before = VndbRunner::snapshot(m_project);
        const VndbResult result = VndbRunner::run(arguments);
        QVERIFY(!result.crashed);
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY2(result.err.contains(reason), qPrintable(result.err));
        QVERIFY(result.out.isEmpty());
        QCOMPARE(VndbRunner::snapshot(m_project), before);
    }

    void damagedAcquisitionFileIsRefusedNotRead()
    {
        // Same analysis, its file cut in the middle: every reader refuses it.
        const QString folder = m_project + QStringLiteral("/Analyses/cut");
        QVERIFY(QDir().mkpath(folder));
        QByteArray bytes = VndbRunner::readFile(m_project + QStringLiteral("/Analyses/full/full.tcm"));
        bytes.truncate(bytes.size() / 2);
        QVERIFY(VndbRunner::writeFile(folder + QStringLiteral("/cut.tcm"), bytes));
        // And one whose header checksum no longer matches.
        const QString flipped = m_project + QStringLiteral("/Analyses/flipped");
        QVERIFY(QDir().mkpath(flipped));
        bytes = VndbRunner::readFile(m_project + QStringLiteral("/Analyses/full/full.tcm"));
        bytes[30] = char(bytes.at(30) ^ 0x40);
        QVERIFY(VndbRunner::writeFile(flipped + QStringLiteral("/flipped.tcm"), bytes));
        const auto before = VndbRunner::snapshot(m_project);

        for (const QString& analysis : {QStringLiteral("cut"), QStringLiteral("flipped")}) {
            for (const QStringList& command :
                 {QStringList{QStringLiteral("tic")}, QStringList{QStringLiteral("eic"), QStringLiteral("57")},
                  QStringList{QStringLiteral("spectrum"), QStringLiteral("0")}}) {
                QStringList arguments{command.first(), m_project, analysis};
                arguments << command.mid(1);
                const VndbResult result = VndbRunner::run(arguments);
                QVERIFY(!result.crashed);
                QCOMPARE(result.exitCode, 1);
                QCOMPARE(result.errLines().size(), 1);
                QVERIFY2(result.err.contains(QLatin1String("is damaged")), qPrintable(result.err));
            }
        }
        // In French too, on one line.
        const VndbResult french = VndbRunner::run({QStringLiteral("spectrum"), m_project, QStringLiteral("cut"),
                                                   QStringLiteral("0"), QStringLiteral("--lang"), QStringLiteral("fr")});
        QCOMPARE(french.exitCode, 1);
        QCOMPARE(french.errLines().size(), 1);
        QVERIFY2(french.err.contains(QStringLiteral("le fichier d'acquisition de l'analyse 'cut' est endommagé")),
                 qPrintable(french.err));
        // An analysis folder without its acquisition file says so.
        QVERIFY(QDir().mkpath(m_project + QStringLiteral("/Analyses/empty")));
        const VndbResult result = VndbRunner::run({QStringLiteral("tic"), m_project, QStringLiteral("empty")});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.err.contains(QLatin1String("no acquisition file")));
        QVERIFY(QDir().rmdir(m_project + QStringLiteral("/Analyses/empty")));
        QCOMPARE(VndbRunner::snapshot(m_project), before);
        QDir(folder).removeRecursively();
        QDir(flipped).removeRecursively();
    }
};

QTEST_GUILESS_MAIN(TestVndbData)
#include "tst_vndb_data.moc"
