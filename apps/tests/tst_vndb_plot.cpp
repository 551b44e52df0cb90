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

    QString out(const QString& name) const { return m_tmp.filePath(QStringLiteral("out/") + name); }

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
        m_project = m_tmp.filePath(QStringLiteral("project"));
        QVERIFY(QDir().mkpath(m_project));
        QVERIFY(QDir().mkpath(m_tmp.filePath(QStringLiteral("out"))));
        const QString full = m_tmp.filePath(QStringLiteral("full.tcm"));
        const QString msms = m_tmp.filePath(QStringLiteral("msms.tcm"));
        QVERIFY(TCMFile::save(full, VndbRunner::smallRun(TSyntheticRun::FullScan, 31, 400)));
        QVERIFY(TCMFile::save(msms, VndbRunner::smallRun(TSyntheticRun::MSMS, 32, 400)));
        QCOMPARE(VndbRunner::run({QStringLiteral("import"), m_project, full}).exitCode, 0);
        QCOMPARE(VndbRunner::run({QStringLiteral("import"), m_project, msms}).exitCode, 0);
    }

    void pngPicturesDecodeAndAreNotBlank_data()
    {
        QTest::addColumn<QStringList>("kind");
        QTest::addColumn<QString>("analysis");
        QTest::newRow("tic") << QStringList{QStringLiteral("--tic")} << QStringLiteral("full");
        QTest::newRow("eic") << QStringList{QStringLiteral("--eic"), QStringLiteral("57"), QStringLiteral("-w"),
                                            QStringLiteral("1")}
                             << QStringLiteral("full");
        QTest::newRow("spectrum") << QStringList{QStringLiteral("--spectrum"), QStringLiteral("120")} << QStringLiteral("full");
        QTest::newRow("mean spectrum") << QStringList{QStringLiteral("--spectrum"), QStringLiteral("100"), QStringLiteral("140")}
                                       << QStringLiteral("full");
        QTest::newRow("msms") << QStringList{QStringLiteral("--spectrum"), QStringLiteral("300")} << QStringLiteral("msms");
    }

    void pngPicturesDecodeAndAreNotBlank()
    {
        QFETCH(QStringList, kind);
        QFETCH(QString, analysis);
        const QString file = out(QStringLiteral("%1.png").arg(QTest::currentDataTag()));
        const VndbResult result = VndbRunner::run(QStringList{QStringLiteral("plot"), m_project, analysis} + kind
                                                  + QStringList{QStringLiteral("-o"), file, QStringLiteral("--size"),
                                                                QStringLiteral("800x500")});
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
        const QString file = out(QStringLiteral("msms.svg"));
        const VndbResult result = VndbRunner::run({QStringLiteral("plot"), m_project, QStringLiteral("msms"),
                                                   QStringLiteral("--spectrum"), QStringLiteral("300"), QStringLiteral("-o"),
                                                   file});
        QCOMPARE(result.exitCode, 0);
        QDomDocument document;
        QVERIFY(document.setContent(VndbRunner::readFile(file)));
        QCOMPARE(document.documentElement().tagName(), QStringLiteral("svg"));
        const QString text = QString::fromUtf8(VndbRunner::readFile(file));
        // Transitions are named parent->daughter (escaped in XML), and the title names the analysis.
        QVERIFY(text.contains(QLatin1String("-&gt;191")) || text.contains(QLatin1String("->191")));
        QVERIFY(text.contains(QLatin1String("msms")));
    }

    void refusedPlotsLeaveTheOldPicture_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("reason");
        QTest::newRow("two kinds") << QStringList{QStringLiteral("full"), QStringLiteral("--tic"), QStringLiteral("--eic"),
                                                  QStringLiteral("57")}
                                   << 2 << QStringLiteral("choose one");
        QTest::newRow("no kind") << QStringList{QStringLiteral("full")} << 2 << QStringLiteral("choose one");
        QTest::newRow("unknown analysis") << QStringList{QStringLiteral("ghost"), QStringLiteral("--tic")} << 1
                                          << QStringLiteral("unknown analysis");
        QTest::newRow("scan out of range") << QStringList{QStringLiteral("full"), QStringLiteral("--spectrum"),
                                                          QStringLiteral("9999")}
                                           << 1 << QStringLiteral("not in analysis");
        QTest::newRow("tiny picture") << QStringList{QStringLiteral("full"), QStringLiteral("--tic"), QStringLiteral("--size"),
                                                     QStringLiteral("10x10")}
                                      << 1 << QStringLiteral("size");
    }

    void refusedPlotsLeaveTheOldPicture()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, reason);
        const QString file = out(QStringLiteral("kept.png"));
        QVERIFY(VndbRunner::writeFile(file, "previous picture"));
        const VndbResult result = VndbRunner::run(QStringList{QStringLiteral("plot"), m_project} + arguments
                                                  + QStringList{QStringLiteral("-o"), file});
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY2(result.err.contains(reason), qPrintable(result.err));
        QCOMPARE(VndbRunner::readFile(file), QByteArray("previous picture"));
        QCOMPARE(QDir(m_tmp.filePath(QStringLiteral("out"))).entryList({QStringLiteral("kept*")}, QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("kept.png")});
    }

    void unsupportedOrUnwritableOutputIsRefused()
    {
        VndbResult result = VndbRunner::run({QStringLiteral("plot"), m_project, QStringLiteral("full"), QStringLiteral("--tic"),
                                             QStringLiteral("-o"), out(QStringLiteral("tic.jpg"))});
        QCOMPARE(result.exitCode, 2);
        QVERIFY(result.err.contains(QLatin1String(".png or .svg")));
        QVERIFY(!QFile::exists(out(QStringLiteral("tic.jpg"))));

        result = VndbRunner::run({QStringLiteral("plot"), m_project, QStringLiteral("full"), QStringLiteral("--tic"),
                                  QStringLiteral("-o"), m_tmp.filePath(QStringLiteral("no/such/folder/tic.png"))});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY(result.err.contains(QLatin1String("cannot write")));
    }
};

QTEST_GUILESS_MAIN(TestVndbPlot)
#include "tst_vndb_plot.moc"
