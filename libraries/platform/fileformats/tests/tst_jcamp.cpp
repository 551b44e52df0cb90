// GC-MS runs as JCAMP-DX text: the real file with the values it declares, runs
// written by our writer, small hand-written texts, and damaged variants.
#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tjcampfile.h>
#include <trunreader.h>
#include <tsyntheticrun.h>
#include <ttranslator.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

const QString RealData = qEnvironmentVariableIsSet("VN_REALDATA_DIR") ? qEnvironmentVariable("VN_REALDATA_DIR")
                                                                      : QStringLiteral(VN_REALDATA_DIR);

bool near(double a, double b, double relative)
{
    return std::fabs(a - b) <= relative * std::max(1.0, std::fabs(b));
}

// What the real file declares, read with nothing but line splitting: per page
// the retention time (seconds), the TIC, the point count and the sum of the abundances.
struct Page
{
    double seconds = 0.0;
    double tic = 0.0;
    int points = 0;
    double sum = 0.0;
};

QVector<Page> declaredPages(const QByteArray& text, double* first, double* last)
{
    QVector<Page> pages;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        const QByteArray value = line.mid(line.indexOf('=') + 1).trimmed();
        if (line.startsWith("##FIRST=") || line.startsWith("##LAST="))
            *(line.startsWith("##FIRST=") ? first : last) = value.split(',').last().trimmed().toDouble();
        else if (line.startsWith("##PAGE="))
            pages.append(Page());
        else if (pages.isEmpty())
            continue;
        else if (line.startsWith("##RETENTION_TIME="))
            pages.last().seconds = value.toDouble();
        else if (line.startsWith("##TIC="))
            pages.last().tic = value.toDouble();
        else if (line.startsWith("##NPOINTS="))
            pages.last().points = value.toInt();
        else if (!line.startsWith("##") && line.contains(','))
            pages.last().sum += line.split(',').last().toDouble();
    }
    return pages;
}

// A run of three scans in the usual layout, with its parts to vary.
QByteArray smallText(const QByteArray& header = "##XUNITS=M/Z\n##YUNITS=RELATIVE ABUNDANCE\n",
                     const QByteArray& secondTime = "##RETENTION_TIME=66\n")
{
    return "##TITLE=Small run\n##JCAMP-DX=5.01\n##DATA TYPE=MASS SPECTRUM\n" + header
        + "##LONG DATE=2024/03/02 09:30:00\n"
          "##PAGE=T=60\n##RETENTION_TIME=60\n##TIC=1000\n##NPOINTS=3\n##XYDATA=(XY..XY)\n"
          " 57.07, 500\n 71.09, 300\n 85.10, 150\n"
          "##PAGE=T=66\n"
        + secondTime
        + "##NPOINTS=2\n##XYDATA=(XY..XY)\n"
          " 57.07, 10; 43.05, 20\n"
          "##PAGE=T=72\n##RETENTION_TIME=72\n##NPOINTS=0\n##XYDATA=(XY..XY)\n"
          "##END=\n";
}

} // namespace

class TestJcamp : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString write(const QString& name, const QByteArray& content)
    {
        const QString path = m_dir.filePath(name);
        return writeAll(path, content) ? path : QString();
    }

private slots:
    void cleanup() { TTranslator::install("en"); }

    // The real run: every page's time and declared TIC as the file gives them,
    // every abundance kept (each page's sum), and the header's first and last times (minutes).
    void realFile()
    {
        const QString path = RealData + QStringLiteral("/jcamp/GECO_2_SUBTRACT.JDX");
        if (!QFileInfo::exists(path))
            QSKIP("../shared/realdata/jcamp is absent: the real instrument files are not part of the project");
        double first = -1.0, last = -1.0;
        const QVector<Page> pages = declaredPages(readAll(path), &first, &last);
        QCOMPARE(pages.size(), 2103);
        QVector<TImportedRun> runs;
        QString format, error;
        QVERIFY2(TRunReaderRegistry::read(path, &runs, &format, &error), qPrintable(error));
        QCOMPARE(format, QStringLiteral("JCAMP-DX"));
        QCOMPARE(runs.size(), 1);
        const TAcquisitionRun& run = runs.first().run;
        QCOMPARE(run.scanCount(), pages.size());
        QCOMPARE(run.acquisitionSystem, quint32(TAcquisitionRun::SystemFullScan));
        QCOMPARE(run.name, QStringLiteral("GECO_2_SUBTRACT")); // the title is empty
        QCOMPARE(run.date, QDateTime(QDate(2019, 2, 8), QTime(16, 11), Qt::UTC));
        QVERIFY(std::fabs(run.rtimes.first() - first) <= 1e-6);
        QVERIFY(std::fabs(run.rtimes.last() - last) <= 1e-6);
        int different = 0;
        for (int s = 0; s < run.scanCount(); ++s) {
            const Page& page = pages.at(s);
            QVERIFY2(std::fabs(run.rtimes.at(s) - page.seconds / 60.0) <= 1e-6, qPrintable(QString::number(s)));
            QVERIFY2(near(run.tic.at(s), page.tic, 1e-9), qPrintable(QString::number(s)));
            QVERIFY(run.pointsAtScan(s) <= page.points && run.pointsAtScan(s) > 0);
            double sum = 0.0;
            for (int i = 0; i < run.pointsAtScan(s); ++i)
                sum += double(run.abundancesAtScan(s)[i]);
            QVERIFY2(near(sum, page.sum, 1e-9), qPrintable(QString::number(s)));
            different += page.tic != page.sum ? 1 : 0;
        }
        QVERIFY(different > 0); // the data system's TIC is kept, not recomputed
        QCOMPARE(run.pointsAtScan(0), 71);
        QCOMPARE(run.massesAtScan(0)[0], 4557u); // 45.5725
        QCOMPARE(run.abundancesAtScan(0)[0], 657.0f);
    }

    // Our writer's layout reads back as the run it came from.
    void roundTrip()
    {
        TSyntheticRun::Options options;
        options.scanCount = 120;
        options.pointsPerScan = 30;
        options.seed = 5;
        TAcquisitionRun run = TSyntheticRun::generate(options);
        run.date = QDateTime(QDate(2024, 3, 2), QTime(9, 0), Qt::UTC);
        run.tic[7] += 2.5; // a declared TIC that is not the sum
        // Named as a table: the content decides.
        const QString path = write(QStringLiteral("run.csv"), TJcampFile::write(run));
        QVector<TImportedRun> runs;
        QString format, error;
        QVERIFY2(TRunReaderRegistry::read(path, &runs, &format, &error), qPrintable(error));
        QCOMPARE(format, QStringLiteral("JCAMP-DX"));
        const TAcquisitionRun& back = runs.first().run;
        QCOMPARE(back.name, run.name);
        QCOMPARE(back.date, run.date);
        QCOMPARE(back.scanOffsets, run.scanOffsets);
        QCOMPARE(back.masses, run.masses);
        QCOMPARE(back.abundances, run.abundances);
        for (int s = 0; s < run.scanCount(); ++s) {
            QVERIFY(near(back.rtimes.at(s), run.rtimes.at(s), 1e-12));
            QVERIFY(near(back.tic.at(s), run.tic.at(s), 1e-12));
        }
    }

    void smallFiles_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QVector<float>>("secondValues");
        QTest::newRow("seconds by default") << smallText() << QVector<float>{20, 10};
        QTest::newRow("unit after the time")
            << smallText("##XUNITS=M/Z\n", "##RETENTION_TIME=1.1 MIN\n") << QVector<float>{20, 10};
        QTest::newRow("milliseconds") << smallText("", "##RETENTION_TIME=66000 ms\n") << QVector<float>{20, 10};
        QTest::newRow("factors") << smallText("##XUNITS=M/Z\n##XFACTOR=1\n##YFACTOR=0.5\n") << QVector<float>{10, 5};
        // Tables of variables: units and factors come with the symbols.
        QTest::newRow("ntuples") << QByteArray(
            "##TITLE=Tuples\n##JCAMP-DX=5.01\n##DATA TYPE=MASS SPECTRUM\n##DATA CLASS=NTUPLES\n"
            "##NTUPLES=MASS SPECTRUM\n##VAR_NAME=MASS, INTENSITY, RETENTION TIME\n##SYMBOL=X, Y, W\n"
            "##UNITS=M/Z, RELATIVE ABUNDANCE, MINUTES\n##FACTOR=0.01, 1, 1\n"
            "##PAGE=W=1.0\n##NPOINTS=1\n##DATA TABLE=(XY..XY), PEAKS\n5707, 3\n"
            "##PAGE=W=1.1\n##NPOINTS=3\n##DATA TABLE=(XY..XY), PEAKS\n5707,4 4305,5 4305.4,1\n"
            "##END NTUPLES=MASS SPECTRUM\n##END=\n")
                                 << QVector<float>{6, 4};
        // Files of the de-facto layout: no version, no end, blank lines and comments.
        QTest::newRow("unversioned") << QByteArray(
            "\xEF\xBB\xBF\n##TITLE=\n##RETENTION_TIME=60\n##XYDATA=(XY..XY)\n57.07,1 $$ first\n\n"
            "##RETENTION TIME=66\n##XYDATA=(XY..XY)\n57.07,10\n43.05,20\n")
                                     << QVector<float>{20, 10};
    }

    // Units, factors, sorting and repeated masses of small files.
    void smallFiles()
    {
        QFETCH(QByteArray, text);
        QFETCH(QVector<float>, secondValues);
        QVector<TImportedRun> runs;
        QString error;
        QVERIFY2(TRunReaderRegistry::readBytes(text, QStringLiteral("small.jdx"), &runs, nullptr, &error),
                 qPrintable(error));
        const TAcquisitionRun& run = runs.first().run;
        QVERIFY(run.scanCount() >= 2);
        // Every layout puts the second scan at 1.1 min, its masses sorted.
        QVERIFY(near(run.rtimes.at(1), 1.1, 1e-12));
        QCOMPARE(QVector<quint32>(run.massesAtScan(1), run.massesAtScan(1) + run.pointsAtScan(1)),
                 (QVector<quint32>{4305, 5707}));
        QCOMPARE(QVector<float>(run.abundancesAtScan(1), run.abundancesAtScan(1) + run.pointsAtScan(1)), secondValues);
        // Without a declared TIC, the sum of the points.
        QCOMPARE(run.tic.at(1), double(secondValues.at(0) + secondValues.at(1)));
    }

    void declaredTicAndEmptyScan()
    {
        QVector<TImportedRun> runs;
        QVERIFY(TRunReaderRegistry::readBytes(smallText(), QStringLiteral("small.jdx"), &runs));
        const TAcquisitionRun& run = runs.first().run;
        QCOMPARE(run.name, QStringLiteral("Small run"));
        QCOMPARE(run.date, QDateTime(QDate(2024, 3, 2), QTime(9, 30), Qt::UTC));
        QCOMPARE(run.scanCount(), 3);
        QCOMPARE(run.tic.at(0), 1000.0); // declared, not the 950 of the points
        QCOMPARE(run.pointsAtScan(2), 0);
        QCOMPARE(run.tic.at(2), 0.0);
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        const QByteArray whole = smallText();
        QTest::newRow("cut inside a pair")
            << whole.left(whole.indexOf(" 71.09") + 4) << "line 13: a mass without its abundance"
            << "ligne 13 : une masse sans son abondance";
        QTest::newRow("cut between pairs") << whole.left(whole.indexOf(" 85.10")) << "declares 3 points but holds 2"
                                           << "annonce 3 points mais en contient 2";
        QTest::newRow("cut before the end") << whole.left(whole.indexOf("##END=")) << "not closed by ##END="
                                            << "pas fermé par ##END=";
        QTest::newRow("time goes back") << smallText(QByteArray(), "##RETENTION_TIME=30\n")
                                        << "the retention time of scan 2 goes back"
                                        << "le temps de rétention du scan 2 recule";
        QTest::newRow("unknown time unit")
            << smallText(QByteArray(), "##RETENTION_TIME=66 fortnights\n") << "the time unit 'fortnights' is not known"
            << "l'unité de temps 'fortnights' est inconnue";
        QTest::newRow("no retention time")
            << QByteArray("##TITLE=Hexane\n##JCAMP-DX=4.24\n##DATA TYPE=MASS SPECTRUM\n##NPOINTS=1\n"
                          "##PEAK TABLE=(XY..XY)\n57,999\n##END=\n")
            << "no retention time (a single spectrum, not a run)"
            << "pas de temps de rétention (un spectre seul, pas une acquisition)";
        QTest::newRow("infrared") << QByteArray("##TITLE=Film\n##JCAMP-DX=4.24\n##XUNITS=1/CM\n##YUNITS=TRANSMITTANCE\n"
                                                "##RETENTION_TIME=3\n##XYDATA=(XY..XY)\n400,0.5\n##END=\n")
                                  << "in TRANSMITTANCE against 1/CM, not abundances against m/z"
                                  << "en TRANSMITTANCE selon 1/CM, pas en abondances selon m/z";
        QTest::newRow("other data type") << QByteArray(
            "##TITLE=Film\n##JCAMP-DX=4.24\n##DATA TYPE=INFRARED SPECTRUM\n##RETENTION_TIME=3\n"
            "##XYDATA=(XY..XY)\n400,0.5\n##END=\n")
                                         << "holds INFRARED SPECTRUM data, not mass spectra"
                                         << "contient des données INFRARED SPECTRUM, pas des spectres de masse";
        QTest::newRow("equidistant compressed form")
            << QByteArray("##TITLE=Profile\n##JCAMP-DX=5.01\n##RETENTION_TIME=3\n##FIRSTX=50\n##DELTAX=0.1\n"
                          "##XYDATA=(X++(Y..Y))\n50@A1J2\n##END=\n")
            << "line 6: the spectrum is in the compressed form (X++(Y..Y)), which is not read"
            << "ligne 6 : le spectre est sous la forme compressée (X++(Y..Y)), qui n'est pas lue";
        QTest::newRow("compressed pairs")
            << QByteArray("##TITLE=Packed\n##JCAMP-DX=5.01\n##RETENTION_TIME=3\n##XYDATA=(XY..XY)\n57J3\n##END=\n")
            << "line 5: the spectrum is compressed (ASDF characters)"
            << "ligne 5 : le spectre est compressé";
        QTest::newRow("not a number") << QByteArray("##TITLE=Bad\n##RETENTION_TIME=3\n##XYDATA=(XY..XY)\n57,1e999\n")
                                      << "'1e999' is not a number"
                                      << "'1e999' n'est pas un nombre";
        QTest::newRow("bad TIC") << QByteArray("##TITLE=Bad\n##RETENTION_TIME=3\n##TIC=lots\n")
                                 << "line 3: the TIC 'lots' is not a number"
                                 << "ligne 3 : le TIC 'lots' n'est pas";
        QTest::newRow("no spectrum") << QByteArray("##TITLE=Empty\n##JCAMP-DX=5.01\n##END=\n") << "holds no spectrum"
                                     << "ne contient aucun spectre";
        QTest::newRow("negative mass") << QByteArray("##TITLE=Bad\n##RETENTION_TIME=3\n##XYDATA=(XY..XY)\n-57,1\n")
                                       << "the mass -57 is out of range"
                                       << "la masse -57 est hors limites";
    }

    // A damaged file is refused whole, with one line naming it and what is
    // wrong, in the user's language; nothing is handed out.
    void refusals()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const QString path = write(QStringLiteral("damaged.jdx"), text);
        QVERIFY(!path.isEmpty());
        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            QVector<TImportedRun> runs{TImportedRun{QStringLiteral("kept"), TAcquisitionRun()}};
            QString format, error;
            QVERIFY(!TRunReaderRegistry::read(path, &runs, &format, &error));
            QCOMPARE(format, QStringLiteral("JCAMP-DX"));
            QCOMPARE(runs.size(), 1);
            QCOMPARE(runs.first().suffix, QStringLiteral("kept"));
            QVERIFY2(!error.contains('\n') && error.contains(path), qPrintable(error));
            QVERIFY2(error.contains(language == "fr" ? french : english), qPrintable(error));
        }
    }

    void recognition_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<bool>("jcamp");
        QTest::newRow("title") << QByteArray("##TITLE=run\n") << true;
        QTest::newRow("version first") << QByteArray("##JCAMP-DX= 4.24 $$ comment\n##TITLE=x\n") << true;
        QTest::newRow("label spelled loosely") << QByteArray("\r\n  ##title =x\r\n") << true;
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF##TITLE=x\n") << true;
        QTest::newRow("other label first") << QByteArray("##ORIGIN=x\n##TITLE=x\n") << false;
        QTest::newRow("table") << QByteArray("time (min),spectrum\n12.5,57.07:1250\n") << false;
        QTest::newRow("comment of a table") << QByteArray("# TITLE=x\n1,2\n") << false;
    }

    // By content only: the reader's test is the first line, whatever the name.
    void recognition()
    {
        QFETCH(QByteArray, head);
        QFETCH(bool, jcamp);
        QCOMPARE(TJcampFile::isJcamp(head), jcamp);
        const TRunReader* reader = TRunReaderRegistry::findBytes(head, QStringLiteral("file.jdx"));
        QVERIFY(reader);
        QCOMPARE(reader->formatName() == QLatin1String("JCAMP-DX"), jcamp);
    }
};

QTEST_GUILESS_MAIN(TestJcamp)
#include "tst_jcamp.moc"
