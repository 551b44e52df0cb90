// vndb plot: pictures that decode, show something, and are written whole or
// not at all.
#include "vndbrunner.h"

#include <tcmfile.h>

#include <QDir>
#include <QDomDocument>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

class TestVndbPlot : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;
    QString m_project;

    QString out(const QString& name) const { return m_tmp.filePath("out/" + name); }

    // Share of the pixels that are not the white background, and whether some
    // are clearly coloured (the curve or bars, not only black axes).
    static void inkOf(const QImage& image, double* ink, bool* coloured)
    {
        qint64 count = 0;
        *coloured = false;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                if (c.red() < 240 || c.green() < 240 || c.blue() < 240)
                    ++count;
                if (c.saturation() > 120 && c.value() > 80)
                    *coloured = true;
            }
        }
        *ink = double(count) / (double(image.width()) * image.height());
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        m_project = m_tmp.filePath("project");
        QVERIFY(QDir().mkpath(m_project));
        QVERIFY(QDir().mkpath(m_tmp.filePath("out")));
        const QString full = m_tmp.filePath("full.tcm");
        const QString msms = m_tmp.filePath("msms.tcm");
        QVERIFY(TCMFile::save(full, VndbRunner::smallRun(TSyntheticRun::FullScan, 31, 400)));
        QVERIFY(TCMFile::save(msms, VndbRunner::smallRun(TSyntheticRun::MSMS, 32, 400)));
        QCOMPARE(VndbRunner::run({"import", m_project, full}).exitCode, 0);
        QCOMPARE(VndbRunner::run({"import", m_project, msms}).exitCode, 0);
    }

    void pngPicturesDecodeAndAreNotBlank_data()
    {
        QTest::addColumn<QStringList>("kind");
        QTest::addColumn<QString>("analysis");
        QTest::newRow("tic") << QStringList{"--tic"} << "full";
        QTest::newRow("eic") << QStringList{"--eic", "57", "-w", "1"} << "full";
        QTest::newRow("spectrum") << QStringList{"--spectrum", "120"} << "full";
        QTest::newRow("mean spectrum") << QStringList{"--spectrum", "100", "140"} << "full";
        QTest::newRow("msms") << QStringList{"--spectrum", "300"} << "msms";
    }

    void pngPicturesDecodeAndAreNotBlank()
    {
        QFETCH(QStringList, kind);
        QFETCH(QString, analysis);
        const QString file = out(QString("%1.png").arg(QTest::currentDataTag()));
        const VndbResult result = VndbRunner::run(QStringList{"plot", m_project, analysis} + kind
                                                  + QStringList{"-o", file, "--size", "800x500"});
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.err.isEmpty(), qPrintable(result.err));
        QImage image;
        QVERIFY(image.load(file, "PNG"));
        QCOMPARE(image.size(), QSize(800, 500));
        double ink = 0.0;
        bool coloured = false;
        inkOf(image, &ink, &coloured);
        // Axes, ticks, labels and data: more than a frame, far less than a fill.
        QVERIFY2(ink > 0.01 && ink < 0.6, qPrintable(QString::number(ink)));
        QVERIFY(coloured);
        // The corners stay background: nothing is drawn outside the margins.
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(image.pixelColor(799, 499), QColor(Qt::white));
    }

    void svgIsAWellFormedDocumentWithTheLabels()
    {
        const QString file = out("msms.svg");
        const VndbResult result = VndbRunner::run({"plot", m_project, "msms", "--spectrum", "300", "-o", file});
        QCOMPARE(result.exitCode, 0);
        QDomDocument document;
        QVERIFY(document.setContent(VndbRunner::readFile(file)));
        QCOMPARE(document.documentElement().tagName(), "svg");
        const QString text = QString::fromUtf8(VndbRunner::readFile(file));
        // Transitions are named parent->daughter (escaped in XML), and the title names the analysis.
        QVERIFY(text.contains("-&gt;191") || text.contains("->191"));
        QVERIFY(text.contains("msms"));
    }

    void refusedPlotsLeaveTheOldPicture_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");
        QTest::newRow("two kinds") << QStringList{"full", "--tic", "--eic", "57"} << 2 << "choose one";
        QTest::newRow("no kind") << QStringList{"full"} << 2 << "choose one";
        QTest::newRow("unknown analysis") << QStringList{"ghost", "--tic"} << 1 << "unknown analysis";
        QTest::newRow("scan out of range") << QStringList{"full", "--spectrum", "9999"} << 1 << "not in analysis";
        QTest::newRow("tiny picture") << QStringList{"full", "--tic", "--size", "10x10"} << 1 << "size";
    }

    void refusedPlotsLeaveTheOldPicture()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);
        const QString file = out("kept.png");
        QVERIFY(VndbRunner::writeFile(file, "previous picture"));
        const VndbResult result = VndbRunner::run(QStringList{"plot", m_project} + arguments + QStringList{"-o", file});
        VNDB_REFUSED(result, exitCode, reason);
        QCOMPARE(VndbRunner::readFile(file), QByteArray("previous picture"));
        QCOMPARE(QDir(m_tmp.filePath("out")).entryList({"kept*"}, QDir::Files | QDir::Hidden), QStringList{"kept.png"});
    }

    void unsupportedOrUnwritableOutputIsRefused()
    {
        VndbResult result = VndbRunner::run({"plot", m_project, "full", "--tic", "-o", out("tic.jpg")});
        QCOMPARE(result.exitCode, 2);
        QVERIFY(result.err.contains(".png or .svg"));
        QVERIFY(!QFile::exists(out("tic.jpg")));

        result = VndbRunner::run({"plot", m_project, "full", "--tic", "-o", m_tmp.filePath("no/such/folder/tic.png")});
        VNDB_REFUSED(result, 1, "cannot write");
    }
};

QTEST_GUILESS_MAIN(TestVndbPlot)
#include "tst_vndb_plot.moc"
