#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tandimsfile.h>
#include <tcmfile.h>
#include <tcsvrunfile.h>
#include <trecordinglogger.h>
#include <trunreader.h>
#include <tsyntheticrun.h>
#include <ttranslator.h>

#include <QTemporaryDir>
#include <QtTest>

#include <netcdf.h>

#include <cmath>

namespace {

TAcquisitionRun sample(TSyntheticRun::Kind kind = TSyntheticRun::FullScan)
{
    TSyntheticRun::Options o;
    o.kind = kind;
    o.seed = 3;
    o.scanCount = 300;
    o.pointsPerScan = 40;
    return TSyntheticRun::generate(o);
}

// Times travel through seconds and text: equal to a few ulps; the rest exactly.
bool sameRuns(const TAcquisitionRun& a, const TAcquisitionRun& b)
{
    if (a.scanCount() != b.scanCount() || a.scanOffsets != b.scanOffsets || a.masses != b.masses
        || a.abundances != b.abundances)
        return false;
    for (int s = 0; s < a.scanCount(); ++s) {
        if (std::fabs(a.rtimes.at(s) - b.rtimes.at(s)) > 1e-12 * std::max(1.0, std::fabs(a.rtimes.at(s)))
            || std::fabs(a.tic.at(s) - b.tic.at(s)) > 1e-6 * std::max(1.0, std::fabs(a.tic.at(s))))
            return false;
    }
    return true;
}

} // namespace

class TestImporters : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString write(const QString& name, const QByteArray& content)
    {
        const QString path = m_dir.filePath(name);
        writeAll(path, content);
        return path;
    }

    // Reads must fail with one error naming the file, and leave the run as it was.
    void expectRefusal(bool (*reader)(const QString&, TAcquisitionRun*), const QString& path, const QString& english,
                       const QString& french)
    {
        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            TRecordingLogger logger;
            TAcquisitionRun run;
            run.name = "kept";
            QVERIFY(!reader(path, &run));
            QCOMPARE(run.name, QString("kept"));
            QCOMPARE(run.scanCount(), 0);
            const QStringList errors = logger.messages(MessageLoggerInterface::LevelError);
            QCOMPARE(errors.size(), 1);
            const QString expected = language == "fr" ? french : english;
            QVERIFY2(errors.first().contains(expected), qPrintable(errors.first()));
        }
        TTranslator::install("en");
    }

private slots:
    void roundTrip_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("ANDI") << "run.cdf";
        QTest::newRow("CSV") << "run.csv";
    }

    void roundTrip()
    {
        QFETCH(QString, file);
        const bool andi = file.endsWith(".cdf");
        const TAcquisitionRun run = sample();
        const QString path = m_dir.filePath(file);
        QVERIFY(andi ? TAndiMSFile::write(path, run) : TCSVRunFile::write(path, run));
        TAcquisitionRun back;
        QVERIFY(andi ? TAndiMSFile::read(path, &back) : TCSVRunFile::read(path, &back));
        QVERIFY(sameRuns(run, back));
        QCOMPARE(back.name, andi ? run.name : QString("run")); // a table has no place for a name
        QCOMPARE(back.acquisitionSystem, quint32(TAcquisitionRun::SystemFullScan));
        if (andi)
            QCOMPARE(back.date, run.date);

        // What a reader gives is ready to become an analysis' acquisition file.
        const QString tcm = m_dir.filePath("imported.tcm");
        QVERIFY(TCMFile::save(tcm, back));
        TCMFile stored(tcm);
        TAcquisitionRun again;
        QVERIFY(stored.toRun(&again));
        QVERIFY(again == back);

        // An empty run survives too (a table without scans is refused).
        if (andi) {
            QVERIFY(TAndiMSFile::write(m_dir.filePath("empty.cdf"), TAcquisitionRun()));
            QVERIFY(TAndiMSFile::read(m_dir.filePath("empty.cdf"), &back));
            QCOMPARE(back.scanCount(), 0);
        }
    }

    void andiAsDataSystemsWriteIt()
    {
        // Integer intensities, masses stored as scaled shorts, times in
        // minutes, points out of order with a duplicate, no total_intensity.
        const QString path = m_dir.filePath("system.cdf");
        int id = -1, scanDim = -1, pointDim = -1, t = -1, idx = -1, cnt = -1, m = -1, in = -1;
        QCOMPARE(nc_create(QFile::encodeName(path).constData(), NC_CLOBBER, &id), NC_NOERR);
        nc_def_dim(id, "scan_number", 2, &scanDim);
        nc_def_dim(id, "point_number", 4, &pointDim);
        nc_def_var(id, "scan_acquisition_time", NC_FLOAT, 1, &scanDim, &t);
        nc_def_var(id, "scan_index", NC_INT, 1, &scanDim, &idx);
        nc_def_var(id, "point_count", NC_INT, 1, &scanDim, &cnt);
        nc_def_var(id, "mass_values", NC_SHORT, 1, &pointDim, &m);
        nc_def_var(id, "intensity_values", NC_INT, 1, &pointDim, &in);
        nc_put_att_text(id, t, "units", 7, "minutes");
        const double scale = 0.1;
        nc_put_att_double(id, m, "scale_factor", NC_DOUBLE, 1, &scale);
        QCOMPARE(nc_enddef(id), NC_NOERR);
        const float times[] = {1.5f, 1.75f};
        const int index[] = {0, 3};
        const int counts[] = {3, 1};
        const short masses[] = {711, 571, 571, 430};
        const int intensities[] = {5, 10, 2, 7};
        nc_put_var_float(id, t, times);
        nc_put_var_int(id, idx, index);
        nc_put_var_int(id, cnt, counts);
        nc_put_var_short(id, m, masses);
        nc_put_var_int(id, in, intensities);
        QCOMPARE(nc_close(id), NC_NOERR);

        TAcquisitionRun run;
        QVERIFY(TAndiMSFile::read(path, &run));
        QCOMPARE(run.scanCount(), 2);
        QCOMPARE(run.rtimes.at(1), 1.75);
        QCOMPARE(run.pointsAtScan(0), 2);
        QCOMPARE(run.massesAtScan(0)[0], 5710u);
        QCOMPARE(run.massesAtScan(0)[1], 7110u);
        QCOMPARE(run.abundancesAtScan(0)[0], 12.0f);
        QCOMPARE(run.tic.at(0), 17.0);
        QCOMPARE(run.name, QString("system"));
        QVERIFY(run.isConsistent());
    }

    // Values the format marks as "not recorded" are absent, never data.
    void andiFillValues_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("refusal"); // empty: read, with the TIC summed from the points
        QTest::newRow("TIC at -9999") << "tic-9999"
                                      << "";
        QTest::newRow("TIC at its _FillValue") << "tic-fill"
                                               << "";
        QTest::newRow("no acquisition time") << "times"
                                             << "no acquisition time";
        QTest::newRow("library spectra") << "library"
                                         << "library of reference spectra";
    }

    void andiFillValues()
    {
        QFETCH(QString, kind);
        QFETCH(QString, refusal);
        const QString path = m_dir.filePath(kind + ".cdf");
        int id = -1, scanDim = -1, pointDim = -1, t = -1, tic = -1, idx = -1, cnt = -1, m = -1, in = -1;
        QCOMPARE(nc_create(QFile::encodeName(path).constData(), NC_CLOBBER, &id), NC_NOERR);
        nc_def_dim(id, "scan_number", 2, &scanDim);
        nc_def_dim(id, "point_number", 3, &pointDim);
        nc_def_var(id, "scan_acquisition_time", NC_DOUBLE, 1, &scanDim, &t);
        nc_def_var(id, "total_intensity", NC_DOUBLE, 1, &scanDim, &tic);
        nc_def_var(id, "scan_index", NC_INT, 1, &scanDim, &idx);
        nc_def_var(id, "point_count", NC_INT, 1, &scanDim, &cnt);
        nc_def_var(id, "mass_values", NC_DOUBLE, 1, &pointDim, &m);
        nc_def_var(id, "intensity_values", NC_INT, 1, &pointDim, &in);
        const double fill = -1.0, scale = 1000.0;
        if (kind == "tic-fill")
            nc_put_att_double(id, tic, "_FillValue", NC_DOUBLE, 1, &fill);
        if (kind == "library")
            nc_put_att_text(id, NC_GLOBAL, "experiment_type", 21, "Library Mass Spectrum");
        nc_put_att_double(id, in, "scale_factor", NC_DOUBLE, 1, &scale);
        QCOMPARE(nc_enddef(id), NC_NOERR);
        const bool noTimes = kind == "times" || kind == "library";
        const double times[] = {noTimes ? -9999.0 : 60.0, noTimes ? -9999.0 : 61.0};
        const double totals[] = {kind == "tic-fill" ? -1.0 : -9999.0, kind == "tic-fill" ? -1.0 : -9999.0};
        const int index[] = {0, 2};
        const int counts[] = {2, 1};
        const double masses[] = {57.0, 71.0, 85.0};
        const int intensities[] = {5, 10, 2};
        nc_put_var_double(id, t, times);
        nc_put_var_double(id, tic, totals);
        nc_put_var_int(id, idx, index);
        nc_put_var_int(id, cnt, counts);
        nc_put_var_double(id, m, masses);
        nc_put_var_int(id, in, intensities);
        QCOMPARE(nc_close(id), NC_NOERR);

        TRecordingLogger logger;
        TAcquisitionRun run;
        const bool read = TAndiMSFile::read(path, &run);
        if (!refusal.isEmpty()) {
            QVERIFY(!read);
            QCOMPARE(run.scanCount(), 0);
            const QString errors = logger.messages(MessageLoggerInterface::LevelError).join(' ');
            QVERIFY2(errors.contains(refusal), qPrintable(errors));
            return;
        }
        QVERIFY(read);
        QCOMPARE(run.tic, (QVector<double>{15000.0, 2000.0}));
        QCOMPARE(run.rtimes, (QVector<double>{1.0, 61.0 / 60.0}));
    }

    // An AIA chromatography file is one detector trace with its own times.
    void andiChromatogram()
    {
        const QString path = m_dir.filePath("chrom.cdf");
        int id = -1, pointDim = -1, peakDim = -1, values = -1, interval = -1, delay = -1, area = -1, rt = -1;
        QCOMPARE(nc_create(QFile::encodeName(path).constData(), NC_CLOBBER, &id), NC_NOERR);
        nc_def_dim(id, "point_number", 5, &pointDim);
        nc_def_dim(id, "peak_number", 2, &peakDim);
        nc_def_var(id, "ordinate_values", NC_FLOAT, 1, &pointDim, &values);
        nc_def_var(id, "actual_sampling_interval", NC_FLOAT, 0, nullptr, &interval);
        nc_def_var(id, "actual_delay_time", NC_FLOAT, 0, nullptr, &delay);
        nc_def_var(id, "peak_retention_time", NC_FLOAT, 1, &peakDim, &rt);
        nc_def_var(id, "peak_area", NC_FLOAT, 1, &peakDim, &area);
        nc_put_att_text(id, NC_GLOBAL, "detector_name", 3, "FID");
        nc_put_att_text(id, NC_GLOBAL, "detector_unit", 2, "pA");
        nc_put_att_text(id, NC_GLOBAL, "retention_unit", 7, "seconds");
        QCOMPARE(nc_enddef(id), NC_NOERR);
        const float trace[] = {1.0f, 2.5f, 9.0f, 2.5f, 1.0f};
        const float step = 0.5f, start = 3.0f;
        const float times[] = {4.0f, 4.5f};
        const float areas[] = {120.5f, -9999.0f};
        nc_put_var_float(id, values, trace);
        nc_put_var_float(id, interval, &step);
        nc_put_var_float(id, delay, &start);
        nc_put_var_float(id, rt, times);
        nc_put_var_float(id, area, areas);
        QCOMPARE(nc_close(id), NC_NOERR);

        TAcquisitionRun run;
        QVERIFY(TAndiMSFile::read(path, &run));
        QVERIFY(run.isConsistent());
        QCOMPARE(run.acquisitionSystem, quint32(TAcquisitionRun::SystemChromatogram));
        QCOMPARE(run.detectors.size(), 1);
        const TDetectorChannel& fid = run.detectors.first();
        QCOMPARE(fid.name, QString("FID"));
        QCOMPARE(fid.unit, QString("pA"));
        QCOMPARE(fid.values, (QVector<double>{1.0, 2.5, 9.0, 2.5, 1.0}));
        QCOMPARE(fid.times.last(), 5.0 / 60.0);
        QCOMPARE(run.files.size(), 1);
        QCOMPARE(run.files.first().first, QString("vendor-peaks.csv"));
        const QList<QByteArray> lines = run.files.first().second.split('\n');
        QCOMPARE(lines.value(1), QByteArray("peak_retention_time,peak_area"));
        QCOMPARE(lines.value(2), QByteArray("4,120.5"));
        QCOMPARE(lines.value(3), QByteArray("4.5,")); // a fill value is an empty cell
    }

    void realVendorFiles_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("points"); // scans, or trace points; 0: refused
        QTest::addColumn<QString>("unit");
        QTest::newRow("TIC not recorded, scaled intensities") << "ms/EXTREL_CENTSCNL.CDF" << 5 << "";
        QTest::newRow("vendor MS") << "ms/HP_CENTSCNH.CDF" << 621 << "";
        QTest::newRow("library") << "ms/FISONS_A_LIBRARY.CDF" << 0 << "";
        QTest::newRow("ZIP named .CDF") << "ms/TEKNIVNT_CONTINUM.CDF" << 0 << "";
        QTest::newRow("chromatogram HP") << "chrom/Hewlett_Packard_HP-CH.CDF" << 1145 << "mAU";
        QTest::newRow("chromatogram Shimadzu") << "chrom/Shimadzu_SHIMADZU.CDF" << 1080 << "uV";
        QTest::newRow("chromatogram PerkinElmer") << "chrom/PerkinElmer_SOLV001.CDF" << 1200 << "uV";
        QTest::newRow("chromatogram example") << "chrom/EXAMPLE.CDF" << 4000 << "abundance units";
        // Flags non-uniform sampling on its trace but carries no times of its own: sampled
        // every 2.5 s from -2.5 s, the run length (7277.5 s) agreeing.
        QTest::newRow("chromatogram Thru-Put") << "chrom/Thru-Put_Systems_tgntpe41.cdf" << 2912 << "uVolts";
    }

    void realVendorFiles()
    {
        QFETCH(QString, file);
        QFETCH(int, points);
        QFETCH(QString, unit);
        const QString root = qEnvironmentVariableIsSet("VN_REALDATA_DIR") ? qEnvironmentVariable("VN_REALDATA_DIR")
                                                                          : QStringLiteral(VN_REALDATA_DIR);
        if (!QFileInfo::exists(root))
            QSKIP("../shared/realdata is absent: the real instrument files are not part of the project");
        TRecordingLogger logger;
        QVector<TImportedRun> runs;
        QString error;
        const bool read = TRunReaderRegistry::read(root + "/andi/" + file, &runs, nullptr, &error);
        QCOMPARE(read, points > 0);
        if (!read) {
            QVERIFY(runs.isEmpty());
            QVERIFY2(error.contains(QFileInfo(file).fileName()), qPrintable(error));
            if (file.contains("TEKNIVNT"))
                QVERIFY2(error.contains("ZIP archive"), qPrintable(error));
            return;
        }
        const TAcquisitionRun& run = runs.first().run;
        QCOMPARE(run.scanCount(), points);
        for (int s = 0; s < run.scanCount(); ++s)
            QVERIFY(run.rtimes.at(s) > -1.0 && run.tic.at(s) != -9999.0);
        if (!unit.isEmpty()) {
            QCOMPARE(run.detectors.value(0).unit, unit);
            QCOMPARE(run.detectors.value(0).values.size(), points);
            if (file.contains("Thru-Put")) {
                const QVector<double>& times = run.detectors.first().times;
                QVERIFY(qAbs(times.first() - -2.5 / 60.0) <= 1e-9);
                QVERIFY(qAbs(times.last() - 7275.0 / 60.0) <= 1e-9);
            }
        } else if (file.contains("EXTREL")) {
            for (int s = 0; s < run.scanCount(); ++s) {
                double sum = 0.0;
                for (int k = 0; k < run.pointsAtScan(s); ++k)
                    sum += run.abundancesAtScan(s)[k];
                QVERIFY(qAbs(run.tic.at(s) - sum) <= 1e-6 * sum);
                QVERIFY(sum > 1000.0); // scale_factor 1000 applied
            }
        }
    }

    void andiRefusals()
    {
        const QString good = m_dir.filePath("good.cdf");
        QVERIFY(TAndiMSFile::write(good, sample()));
        const QByteArray bytes = readAll(good);

        expectRefusal(&TAndiMSFile::read, m_dir.filePath("absent.cdf"), "cannot be opened", "ne peut pas être ouvert");
        expectRefusal(&TAndiMSFile::read, write("text.cdf", "time,mass\n"), "not a netCDF file",
                      "pas un fichier netCDF");
        // Cuts through the header and through the data.
        for (int size : {3, 4, 40, 300, bytes.size() / 2, bytes.size() - 1}) {
            TRecordingLogger logger;
            TAcquisitionRun run;
            QVERIFY2(!TAndiMSFile::read(write("cut.cdf", bytes.left(size)), &run), qPrintable(QString::number(size)));
            QCOMPARE(run.scanCount(), 0);
            QCOMPARE(logger.messages(MessageLoggerInterface::LevelError).size(), 1);
        }
        // Counts in the header that the bytes cannot hold never reach the
        // netCDF library (which would try to allocate them): here the length
        // of the first dimension's name, then the number of variables.
        QByteArray longName = bytes;
        QCOMPARE(longName.mid(8, 4), QByteArray("\0\0\0\x0a", 4));
        longName.replace(16, 4, QByteArray("\xff\xff\xff\xf0", 4));
        expectRefusal(&TAndiMSFile::read, write("name.cdf", longName), "header is damaged", "en-tête est endommagé");
        QByteArray manyVariables = bytes;
        const int variables = manyVariables.indexOf(QByteArray("\0\0\0\x0b\0\0\0\x06", 8));
        QVERIFY(variables > 0);
        manyVariables.replace(variables + 4, 4, QByteArray("\x7f\xff\xff\xff", 4));
        expectRefusal(&TAndiMSFile::read, write("vars.cdf", manyVariables), "header is damaged",
                      "en-tête est endommagé");

        // A variable renamed away.
        QByteArray renamed = bytes;
        const int at = renamed.indexOf("point_count");
        QVERIFY(at > 0);
        renamed[at] = 'q';
        expectRefusal(&TAndiMSFile::read, write("renamed.cdf", renamed), "<b>point_count</b> is missing",
                      "<b>point_count</b> est absente");

        // A scan whose points lie past the data: the count of scan 0 (40, a
        // big-endian int of point_count, before two more 40s) made huge.
        QByteArray forty(4, '\0');
        forty[3] = 40;
        QByteArray index = bytes;
        const int counts = index.indexOf(forty + forty + forty);
        QVERIFY(counts > 0);
        index[counts] = 0x7f;
        expectRefusal(&TAndiMSFile::read, write("index.cdf", index), "outside the data", "hors des données");
    }

    void csvLayouts()
    {
        TAcquisitionRun run;
        // Long layout, tab separated, seconds, unsorted masses and a duplicate.
        QVERIFY(TCSVRunFile::read(write("long.txt",
                                        "Time (s)\tm/z\tIntensity\n"
                                        "60\t71.1\t5\n60\t57.07\t10\n60\t57.07\t2\n"
                                        "# a comment\n\n"
                                        "66\t43\t1,5\n"),
                                  &run));
        QCOMPARE(run.scanCount(), 2);
        QCOMPARE(run.rtimes.at(0), 1.0);
        QCOMPARE(run.rtimes.at(1), 1.1);
        QCOMPARE(run.pointsAtScan(0), 2);
        QCOMPARE(run.massesAtScan(0)[0], 5707u);
        QCOMPARE(run.abundancesAtScan(0)[0], 12.0f);
        QCOMPARE(run.abundancesAtScan(1)[0], 1.5f);
        QCOMPARE(run.tic.at(0), 17.0);

        // One row per scan, semicolons and decimal commas, pairs as separate fields.
        QVERIFY(
            TCSVRunFile::read(write("wide.csv", "\xEF\xBB\xBFtemps;spectre\n12,5;57,07:100;71,09:50\n12,6;\n"), &run));
        QCOMPARE(run.scanCount(), 2);
        QCOMPARE(run.rtimes.at(0), 12.5);
        QCOMPARE(run.pointsAtScan(0), 2);
        QCOMPARE(run.pointsAtScan(1), 0);
        QCOMPARE(run.massesAtScan(0)[1], 7109u);

        // No header, commas, quoted numbers.
        QVERIFY(TCSVRunFile::read(write("plain.csv", "\"1.5\",57:1 58:2\r\n1.6,57:3\r\n"), &run));
        QCOMPARE(run.scanCount(), 2);
        QCOMPARE(run.abundancesAtScan(1)[0], 3.0f);
    }

    void csvRefusals_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("empty") << QByteArray("# nothing\n") << "holds no scan"
                               << "aucun scan";
        QTest::newRow("header only") << QByteArray("time,spectrum\n") << "holds no scan"
                                     << "aucun scan";
        QTest::newRow("bad time") << QByteArray("1,57:1\nabc,57:1\n") << "line 2: <b>abc</b> is not a number"
                                  << "ligne 2 : <b>abc</b> n'est pas un nombre";
        QTest::newRow("bad pair") << QByteArray("1,57:1 58\n") << "<b>58</b> is not a mass:abundance pair"
                                  << "<b>58</b> n'est pas une paire masse:abondance";
        QTest::newRow("negative mass") << QByteArray("1,-57:1\n") << "<b>-57:1</b>"
                                       << "<b>-57:1</b>";
        QTest::newRow("infinite") << QByteArray("1,57:inf\n") << "<b>57:inf</b>"
                                  << "<b>57:inf</b>";
        QTest::newRow("huge abundance") << QByteArray("1,57:1e300\n") << "<b>57:1e300</b>"
                                        << "<b>57:1e300</b>";
        QTest::newRow("time backwards") << QByteArray("2,57:1\n1,57:1\n") << "line 2: the time goes backwards"
                                        << "ligne 2 : le temps recule";
        QTest::newRow("long backwards") << QByteArray("2,57,1\n1,57,1\n") << "the time goes backwards"
                                        << "le temps recule";
        QTest::newRow("long bad mass") << QByteArray("1,x,1\n") << "<b>x</b> is not a number"
                                       << "<b>x</b> n'est pas";
        QTest::newRow("mixed layouts") << QByteArray("1,57,1\n2,57:1\n") << "layout of the rows changes"
                                       << "disposition des lignes change";
        QTest::newRow("binary") << QByteArray("1,57:1\n\x89TCM\0\0\n", 14) << "not text"
                                << "pas du texte";
    }

    void csvRefusals()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, english);
        QFETCH(QString, french);
        expectRefusal(&TCSVRunFile::read, write("bad.csv", content), english, french);
    }
};

QTEST_GUILESS_MAIN(TestImporters)
#include "tst_importers.moc"
