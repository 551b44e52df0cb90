// vndb export: an analysis written as ANDI netCDF, mzML or mzXML reads back
// (through vndb import) as the same scans, times and TIC; refusals change
// nothing, neither the project nor a file already at the output path.
#include "vndbrunner.h"

#include <tcmfile.h>
#include <trunwriter.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

class TestVndbExport : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;

    TAcquisitionRun stored(const QString& project, const QString& analysis)
    {
        TAcquisitionRun run;
        TCMFile file;
        const QString path = QString("%1/Analyses/%2/%2.tcm").arg(project, analysis);
        if (!file.open(path) || !file.verify() || !file.toRun(&run))
            qWarning("cannot read back %s: %s", qPrintable(path), qPrintable(file.errorString()));
        return run;
    }

    // A project holding one analysis "oil" of the given kind, brought in by vndb import.
    QString project(const QString& name, TSyntheticRun::Kind kind)
    {
        const QString dir = m_tmp.filePath(name);
        const QString source = m_tmp.filePath(name + "-source.mzML");
        QString error;
        if (!QDir().mkpath(dir)
            || !TRunWriterRegistry::write(source, VndbRunner::smallRun(kind, 11), nullptr, &error)) {
            qWarning("%s", qPrintable(error));
            return QString();
        }
        const VndbResult result = VndbRunner::run({"import", dir, source, "--name", "oil"});
        if (result.exitCode != 0)
            qWarning("%s", qPrintable(result.err));
        return dir;
    }

private slots:
    void initTestCase() { QVERIFY(m_tmp.isValid()); }

    void exportThenImport_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("format");
        QTest::addColumn<double>("timeTolerance"); // minutes
        QTest::newRow("ANDI") << "oil.cdf" << int(TSyntheticRun::FullScan) << "ANDI netCDF" << 1e-9;
        QTest::newRow("mzML") << "oil.mzML" << int(TSyntheticRun::FullScan) << "mzML" << 1e-9;
        QTest::newRow("mzML MS/MS") << "msms.mzML" << int(TSyntheticRun::MSMS) << "mzML" << 1e-9;
        QTest::newRow("mzXML") << "oil.mzXML" << int(TSyntheticRun::FullScan) << "mzXML" << 0.01 / 60.0;
    }

    void exportThenImport()
    {
        QFETCH(QString, file);
        QFETCH(int, kind);
        QFETCH(QString, format);
        QFETCH(double, timeTolerance);
        const QString tag = QString(QTest::currentDataTag()).replace('/', '-').replace(' ', '-');
        const QString from = project("from-" + tag, TSyntheticRun::Kind(kind));
        QVERIFY(!from.isEmpty());
        const QString output = m_tmp.filePath(file);
        const VndbResult result = VndbRunner::run({"export", from, "oil", "-o", output, "--json"});
        QCOMPARE(result.exitCode, 0);
        const QJsonObject json = QJsonDocument::fromJson(result.out.toUtf8()).object();
        QCOMPARE(json.value("format").toString(), format);
        QCOMPARE(json.value("file").toString(), QFileInfo(output).absoluteFilePath());

        const QString to = m_tmp.filePath("to-" + tag);
        QVERIFY(QDir().mkpath(to));
        const VndbResult back = VndbRunner::run({"import", to, output, "--name", "back"});
        QCOMPARE(back.exitCode, 0);
        const TAcquisitionRun a = stored(from, "oil");
        const TAcquisitionRun b = stored(to, "back");
        QCOMPARE(b.scanCount(), a.scanCount());
        QVERIFY(a.scanCount() > 0);
        QCOMPARE(b.masses, a.masses);
        QCOMPARE(b.abundances, a.abundances);
        for (int s = 0; s < a.scanCount(); ++s) {
            QVERIFY2(std::fabs(a.rtimes.at(s) - b.rtimes.at(s)) <= timeTolerance, qPrintable(QString::number(s)));
            QVERIFY2(std::fabs(a.tic.at(s) - b.tic.at(s)) <= 1e-6 * std::max(1.0, a.tic.at(s)),
                     qPrintable(QString::number(s)));
        }
        if (format == QLatin1String("mzML"))
            QCOMPARE(b.transitions, a.transitions);
    }

    // A cut mzML file is refused in one line naming it, and the project stays as it was.
    void damagedImportChangesNothing()
    {
        const QString dir = project("damaged", TSyntheticRun::FullScan);
        QVERIFY(!dir.isEmpty());
        const QString whole = m_tmp.filePath("damaged-source.mzML");
        const QString cut = m_tmp.filePath("cut.mzML");
        QVERIFY(VndbRunner::writeFile(cut, VndbRunner::readFile(whole).left(20000)));
        const auto before = VndbRunner::snapshot(dir);
        const VndbResult result = VndbRunner::run({"import", dir, cut, "--name", "cut"});
        VNDB_REFUSED(result, 1, "cannot read '" + cut + "' as mzML");
        QCOMPARE(VndbRunner::snapshot(dir), before);
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("no output") << QStringList{"oil"} << 2 << "the output file is missing";
        QTest::newRow("unknown extension") << QStringList{"oil", "-o", "OUT.raw"} << 2 << "(known: .cdf";
        QTest::newRow("unknown analysis") << QStringList{"nothing", "-o", "OUT.mzML"} << 1 << "nothing";
        QTest::newRow("MS/MS as mzXML") << QStringList{"oil", "-o", "OUT.mzXML"} << 1 << "no place for MS/MS";
    }

    void refusals()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, message);
        static const QString dir = project("refusals", TSyntheticRun::MSMS);
        QVERIFY(!dir.isEmpty());
        const QString previous = m_tmp.filePath("previous");
        QVERIFY(QDir().mkpath(previous));
        for (QString& word : arguments)
            word.replace("OUT", previous + "/out");
        for (const char* name : {"out.mzML", "out.mzXML", "out.raw"})
            QVERIFY(VndbRunner::writeFile(previous + "/" + name, "kept"));
        const auto projectBefore = VndbRunner::snapshot(dir);
        const auto outputBefore = VndbRunner::snapshot(previous);
        const VndbResult result = VndbRunner::run(QStringList{"export", dir} + arguments);
        VNDB_REFUSED(result, code, message);
        QCOMPARE(VndbRunner::snapshot(dir), projectBefore);
        QCOMPARE(VndbRunner::snapshot(previous), outputBefore);
    }
};

QTEST_GUILESS_MAIN(TestVndbExport)
#include "tst_vndb_export.moc"
