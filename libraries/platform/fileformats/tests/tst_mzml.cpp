// mzML / mzXML import and the export formats: round trips through our writers,
// a second reader (ncdump, OpenMS FileInfo) on every export, hand-written files
// with what instruments do (seconds, unsorted points, SRM traces on their own
// times) and damaged files refused whole.
#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tmzmlfile.h>
#include <trunreader.h>
#include <trunwriter.h>
#include <tsyntheticrun.h>
#include <ttranslator.h>

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <cmath>

namespace {

TAcquisitionRun sample(TSyntheticRun::Kind kind)
{
    TSyntheticRun::Options o;
    o.kind = kind;
    o.seed = 7;
    o.scanCount = 200;
    o.pointsPerScan = 60;
    o.name = QStringLiteral("Oil 7");
    TAcquisitionRun run = TSyntheticRun::generate(o);
    run.date = QDateTime(QDate(2024, 3, 2), QTime(9, 0), Qt::UTC);
    return run;
}

// What differs between two runs beyond the format's precision (times to
// `timeTolerance` minutes, TIC to 1e-6 relative, abundances as 32-bit floats),
// empty when nothing.
QString difference(const TAcquisitionRun& a, const TAcquisitionRun& b, double timeTolerance)
{
    if (a.scanCount() != b.scanCount())
        return QStringLiteral("%1 scans for %2").arg(b.scanCount()).arg(a.scanCount());
    if (a.scanOffsets != b.scanOffsets || a.masses != b.masses)
        return QStringLiteral("other masses");
    if (a.abundances != b.abundances)
        return QStringLiteral("other abundances");
    for (int s = 0; s < a.scanCount(); ++s) {
        if (std::fabs(a.rtimes.at(s) - b.rtimes.at(s)) > timeTolerance)
            return QStringLiteral("time of scan %1: %2 for %3").arg(s).arg(b.rtimes.at(s)).arg(a.rtimes.at(s));
        if (std::fabs(a.tic.at(s) - b.tic.at(s)) > 1e-6 * std::max(1.0, std::fabs(a.tic.at(s))))
            return QStringLiteral("TIC of scan %1: %2 for %3").arg(s).arg(b.tic.at(s)).arg(a.tic.at(s));
    }
    return QString();
}

QByteArray doubles(const QVector<double>& values)
{
    QByteArray bytes(values.size() * 8, Qt::Uninitialized);
    for (int i = 0; i < values.size(); ++i)
        qToLittleEndian(values.at(i), bytes.data() + 8 * i);
    return bytes.toBase64();
}

QByteArray binaryArray(const QVector<double>& values, const char* accession, const char* name,
                       const QByteArray& unit = QByteArray())
{
    return "<binaryDataArray encodedLength=\"" + QByteArray::number(doubles(values).size())
        + "\"><cvParam cvRef=\"MS\" accession=\"MS:1000523\" name=\"64-bit float\"/>"
          "<cvParam cvRef=\"MS\" accession=\"MS:1000576\" name=\"no compression\"/>"
          "<cvParam cvRef=\"MS\" accession=\""
        + accession + "\" name=\"" + name + "\"" + unit + "/><binary>" + doubles(values)
        + "</binary></binaryDataArray>";
}

QByteArray srm(int index, double parent, double daughter, const QVector<double>& seconds, const QVector<double>& values)
{
    return "<chromatogram index=\"" + QByteArray::number(index) + "\" id=\"SRM " + QByteArray::number(index)
        + "\" defaultArrayLength=\"" + QByteArray::number(seconds.size())
        + "\"><cvParam cvRef=\"MS\" accession=\"MS:1001473\" name=\"selected reaction monitoring chromatogram\"/>"
          "<precursor><isolationWindow><cvParam cvRef=\"MS\" accession=\"MS:1000827\" name=\"isolation window "
          "target m/z\" value=\""
        + QByteArray::number(parent)
        + "\"/></isolationWindow><activation><cvParam cvRef=\"MS\" accession=\"MS:1000133\" "
          "name=\"collision-induced dissociation\"/></activation></precursor><product><isolationWindow>"
          "<cvParam cvRef=\"MS\" accession=\"MS:1000827\" name=\"isolation window target m/z\" value=\""
        + QByteArray::number(daughter) + "\"/></isolationWindow></product><binaryDataArrayList count=\"2\">"
        + binaryArray(seconds, "MS:1000595", "time array",
                      " unitCvRef=\"UO\" unitAccession=\"UO:0000010\" unitName=\"second\"")
        + binaryArray(values, "MS:1000515", "intensity array") + "</binaryDataArrayList></chromatogram>";
}

// A file as an instrument's converter writes it: one MS1 spectrum in seconds
// with its points out of order (two on the same hundredth), one MS2 spectrum,
// and two SRM traces listed 191 before 177, on their own times.
QByteArray handWritten()
{
    const QByteArray spectrum1
        = "<spectrum index=\"0\" id=\"scan=1\" defaultArrayLength=\"4\">"
          "<cvParam cvRef=\"MS\" accession=\"MS:1000511\" name=\"ms level\" value=\"1\"/>"
          "<cvParam cvRef=\"MS\" accession=\"MS:1000128\" name=\"profile spectrum\"/>"
          "<scanList count=\"1\"><scan><cvParam cvRef=\"MS\" accession=\"MS:1000016\" name=\"scan start time\" "
          "value=\"90\" unitCvRef=\"UO\" unitAccession=\"UO:0000010\" unitName=\"second\"/></scan></scanList>"
          "<binaryDataArrayList count=\"2\">"
        + binaryArray({85.1, 57.07, 57.0701, 43.05}, "MS:1000514", "m/z array")
        + binaryArray({10, 20, 5, 40}, "MS:1000515", "intensity array") + "</binaryDataArrayList></spectrum>";
    const QByteArray spectrum2
        = "<spectrum index=\"1\" id=\"scan=2\" defaultArrayLength=\"1\">"
          "<cvParam cvRef=\"MS\" accession=\"MS:1000511\" name=\"ms level\" value=\"2\"/>"
          "<scanList count=\"1\"><scan><cvParam cvRef=\"MS\" accession=\"MS:1000016\" name=\"scan start time\" "
          "value=\"91\" unitCvRef=\"UO\" unitAccession=\"UO:0000010\" unitName=\"second\"/></scan></scanList>"
          "<binaryDataArrayList count=\"2\">"
        + binaryArray({100}, "MS:1000514", "m/z array") + binaryArray({1}, "MS:1000515", "intensity array")
        + "</binaryDataArrayList></spectrum>";
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!-- converted -->\n"
           "<mzML xmlns=\"http://psi.hupo.org/ms/mzml\" version=\"1.1.0\" id=\"Biomarkers\">"
           "<cvList count=\"2\"><cv id=\"MS\" fullName=\"PSI-MS\" URI=\"https://x/psi-ms.obo\"/>"
           "<cv id=\"UO\" fullName=\"Unit Ontology\" URI=\"https://x/unit.obo\"/></cvList>"
           "<fileDescription><fileContent/></fileDescription>"
           "<softwareList count=\"1\"><software id=\"conv\" version=\"1\"/></softwareList>"
           "<instrumentConfigurationList count=\"1\"><instrumentConfiguration id=\"IC\"/>"
           "</instrumentConfigurationList><dataProcessingList count=\"1\"><dataProcessing id=\"dp\">"
           "<processingMethod order=\"0\" softwareRef=\"conv\"/></dataProcessing></dataProcessingList>"
           "<run id=\"r\" defaultInstrumentConfigurationRef=\"IC\" startTimeStamp=\"2023-05-04T10:20:30Z\">"
           "<spectrumList count=\"2\" defaultDataProcessingRef=\"dp\">"
        + spectrum1 + spectrum2 + "</spectrumList><chromatogramList count=\"2\" defaultDataProcessingRef=\"dp\">"
        + srm(0, 370, 191, {60, 66, 72, 78}, {100, 200, 300, 400}) + srm(1, 372, 177, {63, 69, 75}, {10, 30, 50})
        + "</chromatogramList></run></mzML>";
}

// A tool's output, or a null string when the tool is not installed.
QString runTool(const QString& tool, const QStringList& arguments)
{
    if (QStandardPaths::findExecutable(tool).isEmpty())
        return QString();
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(tool, arguments);
    if (!process.waitForFinished(120000))
        return QStringLiteral("(timed out)");
    return QString::fromLocal8Bit(process.readAll());
}

} // namespace

class TestMzML : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    // A refusal by the registry: false, the runs as they were, one line naming the file.
    QString refusal(const QString& path)
    {
        QVector<TImportedRun> runs(1);
        runs[0].suffix = QStringLiteral("kept");
        QString error;
        if (TRunReaderRegistry::read(path, &runs, nullptr, &error))
            return QStringLiteral("accepted");
        if (runs.size() != 1 || runs.first().suffix != QLatin1String("kept"))
            return QStringLiteral("runs changed");
        if (error.contains(QLatin1Char('\n')) || !error.contains(path))
            return QStringLiteral("bad message: ") + error;
        return error;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        TTranslator::install("en");
    }

    void roundTrip_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("format");
        QTest::newRow("mzML full scan") << "full.mzML" << int(TSyntheticRun::FullScan) << "mzML";
        QTest::newRow("mzML MS/MS") << "msms.mzML" << int(TSyntheticRun::MSMS) << "mzML";
        QTest::newRow("mzXML full scan") << "full.mzXML" << int(TSyntheticRun::FullScan) << "mzXML";
        QTest::newRow("ANDI full scan") << "full.cdf" << int(TSyntheticRun::FullScan) << "ANDI netCDF";
        QTest::newRow("ANDI MS/MS") << "msms.CDF" << int(TSyntheticRun::MSMS) << "ANDI netCDF";
    }

    void roundTrip()
    {
        QFETCH(QString, file);
        QFETCH(int, kind);
        QFETCH(QString, format);
        const TAcquisitionRun run = sample(TSyntheticRun::Kind(kind));
        const QString path = m_dir.filePath(file);
        QString written, error;
        QVERIFY2(TRunWriterRegistry::write(path, run, &written, &error), qPrintable(error));
        QCOMPARE(written, format);
        QVector<TImportedRun> runs;
        QString read;
        QVERIFY2(TRunReaderRegistry::read(path, &runs, &read, &error), qPrintable(error));
        QCOMPARE(read, format);
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs.first().suffix, QString());
        const TAcquisitionRun& back = runs.first().run;
        // mzXML keeps times as text durations in seconds, to the hundredth.
        const double timeTolerance = format == QLatin1String("mzXML") ? 0.01 / 60.0 : 1e-9;
        const QString diff = difference(run, back, timeTolerance);
        QVERIFY2(diff.isEmpty(), qPrintable(diff));
        if (format != QLatin1String("ANDI netCDF")) {
            QCOMPARE(back.acquisitionSystem, run.acquisitionSystem);
            QCOMPARE(back.transitions, run.transitions);
        }
        if (format == QLatin1String("mzXML"))
            return; // it has no place for a name or a date
        QCOMPARE(back.name, run.name);
        QCOMPARE(back.date, run.date);

        // Another reader than ours must read what we export.
        if (format == QLatin1String("ANDI netCDF")) {
            const QString header = runTool(QStringLiteral("ncdump"), {QStringLiteral("-h"), path});
            if (header.isNull())
                QSKIP("read back; ncdump (Debian netcdf-bin), the second reader, is not installed");
            QVERIFY2(header.contains(QStringLiteral("scan_number = %1 ;").arg(run.scanCount())), qPrintable(header));
            QVERIFY2(header.contains(QStringLiteral("point_number = %1 ;").arg(run.pointCount())), qPrintable(header));
            for (const char* variable : {"double scan_acquisition_time(scan_number)", "int scan_index(scan_number)",
                                         "int point_count(scan_number)", "double mass_values(point_number)",
                                         "float intensity_values(point_number)", "double total_intensity(scan_number)"})
                QVERIFY2(header.contains(QLatin1String(variable)), variable);
            // The first time, in seconds, as ncdump prints it.
            const QString times = runTool(QStringLiteral("ncdump"),
                                          {QStringLiteral("-v"), QStringLiteral("scan_acquisition_time"), path});
            const QRegularExpression first(QStringLiteral("scan_acquisition_time = ([0-9.e+-]+)"));
            const QRegularExpressionMatch match = first.match(times);
            QVERIFY(match.hasMatch());
            QVERIFY(std::fabs(match.captured(1).toDouble() - run.rtimes.first() * 60.0) < 1e-6);
            return;
        }
        const QString info = runTool(QStringLiteral("FileInfo"), {QStringLiteral("-in"), path});
        if (info.isNull())
            QSKIP("read back; OpenMS FileInfo (Debian topp), the second reader, is not installed");
        const bool msms = kind == TSyntheticRun::MSMS;
        const QRegularExpression spectra(QStringLiteral("Number of spectra: (\\d+)"));
        const QRegularExpression chromatograms(QStringLiteral("Number of chromatograms: (\\d+)"));
        QVERIFY2(spectra.match(info).hasMatch(), qPrintable(info));
        QCOMPARE(spectra.match(info).captured(1).toInt(), msms ? 0 : run.scanCount());
        QVERIFY2(chromatograms.match(info).hasMatch(), qPrintable(info));
        QCOMPARE(chromatograms.match(info).captured(1).toInt(), 1 + (msms ? run.transitions.size() : 0));
        if (!msms) {
            // Its retention-time range, in seconds.
            const QRegularExpression range(QStringLiteral("retention time: ([0-9.]+) \\.\\. ([0-9.]+) sec"));
            const QRegularExpressionMatch match = range.match(info);
            QVERIFY2(match.hasMatch(), qPrintable(info));
            QVERIFY(std::fabs(match.captured(1).toDouble() - run.rtimes.first() * 60.0) < 0.01);
            QVERIFY(std::fabs(match.captured(2).toDouble() - run.rtimes.last() * 60.0) < 0.01);
        }
    }

    void instrumentFile()
    {
        const QString path = m_dir.filePath("instrument.mzML");
        QVERIFY(writeAll(path, handWritten()));
        QVector<TImportedRun> runs;
        QString format, error;
        QVERIFY2(TRunReaderRegistry::read(path, &runs, &format, &error), qPrintable(error));
        QCOMPARE(format, QString("mzML"));
        QCOMPARE(runs.size(), 2);

        const TAcquisitionRun& scans = runs.at(0).run;
        QCOMPARE(runs.at(0).suffix, QString());
        QCOMPARE(scans.name, QString("Biomarkers"));
        QCOMPARE(scans.date, QDateTime(QDate(2023, 5, 4), QTime(10, 20, 30), Qt::UTC));
        QCOMPARE(scans.acquisitionSystem, quint32(TAcquisitionRun::SystemFullScan));
        QCOMPARE(scans.scanCount(), 1); // the MS2 spectrum is not a scan of the run
        QCOMPARE(scans.rtimes.first(), 1.5);
        QCOMPARE(scans.masses, (QVector<quint32>{4305, 5707, 8510}));
        QCOMPARE(scans.abundances, (QVector<float>{40, 25, 10}));
        QCOMPARE(scans.tic.first(), 75.0);

        const TAcquisitionRun& msms = runs.at(1).run;
        QCOMPARE(runs.at(1).suffix, QString("-MSMS"));
        QCOMPARE(msms.acquisitionSystem, quint32(TAcquisitionRun::SystemMSMS));
        QCOMPARE(msms.transitions, (QVector<QPair<float, float>>{{372, 177}, {370, 191}}));
        // The times of the longest trace; the other one interpolated, 0 outside its own times.
        QCOMPARE(msms.rtimes, (QVector<double>{1.0, 1.1, 1.2, 1.3}));
        QCOMPARE(msms.masses, (QVector<quint32>{17700, 19100, 17700, 19100, 17700, 19100, 17700, 19100}));
        const QVector<float> abundances{0, 100, 20, 200, 40, 300, 0, 400};
        const QVector<double> tic{100, 220, 340, 400};
        QCOMPARE(msms.abundances.size(), abundances.size());
        for (int i = 0; i < abundances.size(); ++i)
            QVERIFY2(std::fabs(msms.abundances.at(i) - abundances.at(i)) < 1e-3, qPrintable(QString::number(i)));
        for (int i = 0; i < tic.size(); ++i)
            QVERIFY(std::fabs(msms.tic.at(i) - tic.at(i)) < 1e-3);
    }

    void recognition_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QString>("format");
        QTest::newRow("indexed mzML") << QByteArray(
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<indexedmzML xmlns=\"x\">\n  <mzML>")
                                      << "mzML";
        QTest::newRow("mzML after a comment and a BOM")
            << QByteArray("\xEF\xBB\xBF<?xml version=\"1.0\"?><!-- <mzXML> --><mzML version=\"1.1\">") << "mzML";
        QTest::newRow("mzXML") << QByteArray("<?xml version=\"1.0\"?>\r\n<mzXML xmlns=\"http://sashimi\">") << "mzXML";
        QTest::newRow("other XML") << QByteArray("<?xml version=\"1.0\"?><html><mzML>") << "CSV";
        QTest::newRow("element named like it") << QByteArray("<mzMLx>") << "CSV";
    }

    void recognition()
    {
        QFETCH(QByteArray, head);
        QFETCH(QString, format);
        const TRunReader* reader = TRunReaderRegistry::findBytes(head, QStringLiteral("run.xml"));
        QVERIFY(reader);
        QCOMPARE(reader->formatName(), format);
    }

    void damaged_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QString good = m_dir.filePath("good.mzML");
        QString error;
        QVERIFY2(TRunWriterRegistry::write(good, sample(TSyntheticRun::FullScan), nullptr, &error), qPrintable(error));
        const QByteArray bytes = readAll(good);
        QTest::newRow("truncated") << bytes.left(bytes.size() / 2) << "cannot read";
        QTest::newRow("cut in the header") << bytes.left(300) << "cannot read";
        QByteArray binary = bytes;
        const int at = binary.indexOf("<binary>", binary.size() / 2) + 8;
        binary.replace(at, 40, QByteArray(40, '!'));
        QTest::newRow("binary data damaged") << binary << "cannot read";
        QByteArray tag = bytes;
        tag.replace(tag.indexOf("</spectrum>", bytes.size() / 2), 11, "</spectrun>");
        QTest::newRow("mismatched tag") << tag << "cannot read";
        QByteArray levels = bytes;
        levels.replace("name=\"ms level\" value=\"1\"", "name=\"ms level\" value=\"2\"");
        QTest::newRow("MS2 only") << levels << "holds no MS1 spectrum";
        QByteArray time = bytes;
        const int second = time.indexOf("id=\"scan=2\"");
        const int value = time.indexOf("name=\"scan start time\" value=\"", second) + 30;
        time.replace(value, time.indexOf('"', value) - value, "9999");
        QTest::newRow("time going back") << time << "spectrum 3 starts before";
        QByteArray mass = handWritten();
        mass.replace("value=\"191\"", "value=\"-4\"");
        QTest::newRow("SRM without product") << mass << "chromatogram 1 has no valid precursor and product m/z";
    }

    void damaged()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        const QString path = m_dir.filePath(QStringLiteral("damaged-%1.mzML").arg(QTest::currentDataTag()));
        QVERIFY(writeAll(path, content));
        const QString error = refusal(path);
        QVERIFY2(error.contains(expected) && error.contains("mzML"), qPrintable(error));
        // The bytes in memory, as the fuzzer gives them, are refused the same way.
        QVector<TImportedRun> runs;
        QVERIFY(!TMzMLFile::readBytes(content, TMzMLFile::MzML, &runs, nullptr));
        QVERIFY(runs.isEmpty());
    }

    void damagedInFrench()
    {
        QByteArray levels = handWritten();
        levels.replace("name=\"ms level\" value=\"1\"", "name=\"ms level\" value=\"2\"");
        levels.replace("MS:1001473", "MS:1000235"); // the SRM traces become TIC chromatograms
        const QString path = m_dir.filePath("rien.mzML");
        QVERIFY(writeAll(path, levels));
        TTranslator::install("fr");
        const QString error = refusal(path);
        TTranslator::install("en");
        QVERIFY2(error.contains("impossible de lire") && error.contains("ni spectre MS1 ni chromatogramme"),
                 qPrintable(error));
    }

    void exportRefusals_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("expected");
        QTest::newRow("unknown extension") << "run.raw" << int(TSyntheticRun::FullScan) << "(known: .cdf, .nc, .mzML";
        QTest::newRow("MS/MS as mzXML") << "msms.mzXML" << int(TSyntheticRun::MSMS) << "no place for MS/MS";
        QTest::newRow("empty run") << "empty.mzML" << -1 << "holds no scan";
    }

    void exportRefusals()
    {
        QFETCH(QString, file);
        QFETCH(int, kind);
        QFETCH(QString, expected);
        const QString path = m_dir.filePath(file);
        QVERIFY(writeAll(path, "previous content"));
        const TAcquisitionRun run = kind < 0 ? TAcquisitionRun() : sample(TSyntheticRun::Kind(kind));
        QString error;
        QVERIFY(!TRunWriterRegistry::write(path, run, nullptr, &error));
        QVERIFY2(error.contains(expected) && error.contains(path), qPrintable(error));
        QCOMPARE(readAll(path), QByteArray("previous content"));
    }
};

QTEST_GUILESS_MAIN(TestMzML)
#include "tst_mzml.moc"
