// Agilent ChemStation files: the real instrument files with the values another
// reader gave, and files made by our writer (whole and damaged) that run everywhere.
#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tanalysisfolder.h>
#include <tchemstationfile.h>
#include <tdetectorfile.h>
#include <trecordinglogger.h>
#include <trunreader.h>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <cmath>

namespace {

// The project's sibling folder; VN_REALDATA_DIR in the environment points elsewhere (a worktree).
const QString RealData = (qEnvironmentVariableIsSet("VN_REALDATA_DIR") ? qEnvironmentVariable("VN_REALDATA_DIR")
                                                                       : QStringLiteral(VN_REALDATA_DIR))
    + QStringLiteral("/agilent");

struct Table
{
    QVector<double> masses; // header columns after the time
    QVector<QVector<double>> rows;
};

Table readTable(const QString& path)
{
    Table table;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return table;
    const QList<QByteArray> header = file.readLine().trimmed().split(',');
    for (int i = 1; i < header.size(); ++i) {
        if (!header.at(i).isEmpty())
            table.masses.append(header.at(i).toDouble());
    }
    while (!file.atEnd()) {
        QVector<double> row;
        for (const QByteArray& field : file.readLine().trimmed().split(','))
            row.append(field.toDouble());
        table.rows.append(row);
    }
    return table;
}

bool near(double a, double b, double relative)
{
    return std::fabs(a - b) <= relative * std::max(1.0, std::fabs(b));
}

// A run with integer abundances the 14-bit packing keeps exactly, and a TIC
// that is deliberately not the sum of the points, as instruments record it.
TAcquisitionRun smallRun(int scans, bool selectedIons)
{
    TAcquisitionRun run;
    for (int s = 0; s < scans; ++s) {
        QVector<quint32> keys;
        QVector<float> values;
        for (int k = 0; k < (selectedIons ? 2 : 30); ++k) {
            keys.append(selectedIons ? (k == 0 ? 13100u : 20200u) : quint32(5000 + 100 * k + (k % 3) * 5));
            values.append(float(((s * 37 + k * 11) % 900) * (k == 2 ? 512 : 1)));
        }
        run.appendScan(0.05 + s * 0.0125, keys.constData(), values.constData(), keys.size());
        run.tic.last() += 3.0;
    }
    return run;
}

TDetectorChannel fid(int points)
{
    TDetectorChannel channel;
    channel.name = QStringLiteral("FID1A");
    channel.unit = QStringLiteral("pA");
    channel.signal = QStringLiteral("Front Signal");
    for (int i = 0; i < points; ++i) {
        channel.times.append((500.0 + 200.0 * i) / 60000.0);
        channel.values.append(14.0 + std::sin(i / 40.0) * 3.25);
    }
    return channel;
}

QByteArray patched(QByteArray bytes, int offset, const QByteArray& with)
{
    return offset + with.size() <= bytes.size() ? bytes.replace(offset, with.size(), with) : bytes;
}

QByteArray be16(quint16 v)
{
    QByteArray out(2, '\0');
    qToBigEndian<quint16>(v, out.data());
    return out;
}

QByteArray be32(quint32 v)
{
    QByteArray out(4, '\0');
    qToBigEndian<quint32>(v, out.data());
    return out;
}

} // namespace

class TestChemStation : public QObject
{
    Q_OBJECT

private slots:
    void realFilesMatchTheReferenceValues_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("channel");
        QTest::addColumn<QString>("unit");
        QTest::addColumn<int>("count"); // scans or trace points
        QTest::newRow("GC-MS selected ions") << "gcms-sim.D/dataSim.ms"
                                             << "gcms-sim.D/expected-dataSim.csv" << false << QString() << 1309;
        QTest::newRow("LC-MS full scan") << "lcms.D/MSD1.MS"
                                         << "lcms.D/expected-MSD1.csv" << false << QString() << 469;
        QTest::newRow("FID, version 179") << "gc-fid.D/FID1A.ch"
                                          << "gc-fid.D/expected-FID1A.csv" << true << "pA" << 10197;
        QTest::newRow("analog, version 130") << "lc-adc.D/ADC1A.CH"
                                             << "lc-adc.D/expected-ADC1A.csv" << true << QString() << 4200;
    }

    // Each row of the reference: a time, then the abundance of each whole m/z
    // (spectra) or the trace's value (channels).
    void realFilesMatchTheReferenceValues()
    {
        QFETCH(QString, file);
        QFETCH(QString, expected);
        QFETCH(bool, channel);
        QFETCH(QString, unit);
        QFETCH(int, count);
        if (!QFileInfo::exists(RealData))
            QSKIP("../shared/realdata is absent: the real instrument files are not part of the project");
        const Table table = readTable(RealData + "/" + expected);
        QCOMPARE(table.rows.size(), count);
        QVector<double> times;
        QVector<QVector<double>> values;
        QString error;
        if (channel) {
            TDetectorChannel trace;
            QVERIFY2(TChemStationFile::readChannel(readAll(RealData + "/" + file), file, "X", &trace, &error),
                     qPrintable(error));
            if (!unit.isEmpty())
                QCOMPARE(trace.unit, unit);
            times = trace.times;
            for (double v : trace.values)
                values.append(QVector<double>{v});
        } else {
            TAcquisitionRun run;
            QVERIFY2(TChemStationFile::readMassSpectra(readAll(RealData + "/" + file), file, &run, &error),
                     qPrintable(error));
            QVERIFY(run.isConsistent());
            times = run.rtimes;
            for (int s = 0; s < run.scanCount(); ++s) {
                // Half-way masses go to the even neighbour, as the reference rounds them.
                QMap<long, double> byMass;
                for (int k = 0; k < run.pointsAtScan(s); ++k)
                    byMass[long(std::nearbyint(run.massesAtScan(s)[k] / 100.0))] += run.abundancesAtScan(s)[k];
                values.append(QVector<double>());
                for (double mass : table.masses)
                    values.last().append(byMass.value(std::lround(mass)));
            }
        }
        QCOMPARE(times.size(), count);
        QCOMPARE(values.size(), count);
        for (int i = 0; i < count; ++i) {
            QVERIFY2(std::fabs(times.at(i) - table.rows.at(i).at(0)) <= 1e-6, qPrintable(QString::number(i)));
            for (int c = 0; c < values.at(i).size(); ++c)
                QVERIFY2(near(values.at(i).at(c), table.rows.at(i).value(c + 1), 1e-9),
                         qPrintable(QStringLiteral("row %1 column %2").arg(i).arg(c + 1)));
        }
    }

    void realFolderGivesItsChannel()
    {
        if (!QFileInfo::exists(RealData))
            QSKIP("../shared/realdata is absent: the real instrument files are not part of the project");
        QVector<TImportedRun> runs;
        QString format;
        QString error;
        QVERIFY2(TRunReaderRegistry::read(RealData + "/gc-fid.D", &runs, &format, &error), qPrintable(error));
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs.first().run.acquisitionSystem, quint32(TAcquisitionRun::SystemChromatogram));
        QCOMPARE(runs.first().run.detectors.size(), 1);
        QCOMPARE(runs.first().run.detectors.first().name, QString("FID1A"));
        QCOMPARE(runs.first().run.detectors.first().signal, QString("Front Signal"));
    }

    // The folder our writer makes reads back through the registry as two runs.
    void writtenFolderReadsBack()
    {
        QTemporaryDir dir;
        const TAcquisitionRun scans = smallRun(40, false);
        const TAcquisitionRun ions = smallRun(60, true);
        const QString folder = dir.filePath("RUN.D");
        QVERIFY(TChemStationFile::writeFolder(folder, scans, ions, {fid(500)}));
        const TRunReader* reader = TRunReaderRegistry::find(folder);
        QVERIFY(reader);
        QCOMPARE(reader->formatName(), QString("Agilent ChemStation folder"));

        const QString analyses = dir.filePath("Analyses");
        QString error;
        QVERIFY2(TAnalysisFolder::importFile(folder, analyses, "RUN", &error), qPrintable(error));
        QCOMPARE(QDir(analyses).entryList(QDir::Dirs | QDir::NoDotAndDotDot), (QStringList{"RUN", "RUN-SIM"}));
        QVector<TDetectorChannel> channels;
        QVERIFY(TDetectorFile::load(QDir(TAnalysisFolder::folderPath(analyses, "RUN")).filePath("detectors.bin"),
                                    &channels, &error));
        QCOMPARE(channels.size(), 1);
        QCOMPARE(channels.first().values, fid(500).values);
        QVERIFY(!QFileInfo::exists(QDir(TAnalysisFolder::folderPath(analyses, "RUN-SIM")).filePath("detectors.bin")));

        QVector<TImportedRun> runs;
        QVERIFY(TRunReaderRegistry::read(folder, &runs, nullptr, &error));
        QCOMPARE(runs.size(), 2);
        QCOMPARE(runs.at(1).suffix, QString("-SIM"));
        QCOMPARE(runs.at(0).run.acquisitionSystem, quint32(TAcquisitionRun::SystemFullScan));
        QCOMPARE(runs.at(1).run.acquisitionSystem, quint32(TAcquisitionRun::SystemSIM));
        const TAcquisitionRun& back = runs.at(0).run;
        QCOMPARE(back.masses, scans.masses);
        QCOMPARE(back.abundances, scans.abundances);
        QCOMPARE(back.tic, scans.tic); // the file's own TIC, not the sum of the points
        for (int s = 0; s < scans.scanCount(); ++s)
            QVERIFY(std::fabs(back.rtimes.at(s) - scans.rtimes.at(s)) <= 1e-6);
        const TDetectorChannel& channel = back.detectors.value(0);
        QCOMPARE(channel.unit, QString("pA"));
        QCOMPARE(channel.values, fid(500).values);
        for (int i = 0; i < channel.times.size(); ++i)
            QVERIFY(std::fabs(channel.times.at(i) - fid(500).times.at(i)) <= 1e-6);
    }

    void damagedFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        const QByteArray ms = TChemStationFile::writeMassSpectra(smallRun(20, false));
        const QByteArray ch = TChemStationFile::writeChannel(fid(100));
        QTest::newRow("header cut") << ms.left(0x100) << "header";
        QTest::newRow("scans cut") << ms.left(ms.size() / 2) << "scan 9 is damaged";
        QTest::newRow("scans cut between scans") << ms.left(0x200 + 3 * 148) << "declares 20 scans but holds only 3";
        QTest::newRow("more scans declared") << patched(ms, 0x142, QByteArray("\x15\x00", 2)) << "declares 21 scans";
        QTest::newRow("data offset past the end") << patched(ms, 0x10A, be16(0xFFFF)) << "outside the file";
        QTest::newRow("scan length wrong") << patched(ms, 0x200, be16(3)) << "scan 1 is damaged";
        QTest::newRow("point count too big") << patched(ms, 0x200 + 12, be16(60000)) << "scan 1 is damaged";
        QTest::newRow("channel header cut") << ch.left(0x1000) << "header";
        QTest::newRow("channel points cut") << ch.left(ch.size() - 8) << "declares 100 points";
        QTest::newRow("channel count huge") << patched(ch, 0x116, be32(0xFFFFFFF0u)) << "declares";
        QByteArray delta = QByteArray("\x03\x31\x33\x30", 4) + QByteArray(0x1800 - 4, '\0');
        delta = patched(delta, 0x11E, be32(60000));
        QTest::newRow("delta channel cut") << delta + QByteArray("\x10\x05\x00\x01", 4) << "cut";
        QTest::newRow("delta channel bad mark") << delta + QByteArray("\x07\x01\x00\x01\x00\x00", 6) << "segment";
    }

    void damagedFilesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);
        TRecordingLogger logger;
        QVector<TImportedRun> runs{TImportedRun{"untouched", TAcquisitionRun()}};
        QString format;
        QString error;
        QVERIFY(!TRunReaderRegistry::readBytes(bytes, "damaged.bin", &runs, &format, &error));
        QVERIFY2(error.contains("damaged.bin") && error.contains(reason), qPrintable(error));
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs.first().suffix, QString("untouched"));
    }

    void detectorFileRefusesDamage_data()
    {
        QTest::addColumn<int>("cut");
        QTest::newRow("magic only") << 8;
        QTest::newRow("inside a name") << 26;
        QTest::newRow("inside the values") << -5;
        QTest::newRow("one byte too many") << 1;
    }

    void detectorFileRefusesDamage()
    {
        QFETCH(int, cut);
        const QByteArray whole = TDetectorFile::encode({fid(30), TDetectorChannel{"TCD", "mV", "", {0.5}, {2.0}}});
        QVector<TDetectorChannel> back;
        QVERIFY(TDetectorFile::decode(whole, &back));
        QCOMPARE(back.size(), 2);
        const QByteArray damaged = cut == 1 ? whole + "x" : cut < 0 ? whole.left(whole.size() + cut) : whole.left(cut);
        back.clear();
        QVERIFY(!TDetectorFile::decode(damaged, &back));
        QVERIFY(back.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestChemStation)
#include "tst_chemstation.moc"
