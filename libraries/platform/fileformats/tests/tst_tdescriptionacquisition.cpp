#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tcmfile.h>
#include <tdescriptionacquisition.h>
#include <trecordinglogger.h>
#include <tsyntheticrun.h>
#include <ttranslator.h>

#include <QTemporaryDir>
#include <QtTest>

class TestDescriptionAcquisition : public QObject
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

private slots:
    void cleanup() { TTranslator::install("en"); }

    void defaultDescription()
    {
        // What a new analysis gets: readable, with the single signal "TIC".
        const TDescriptionAcquisition d;
        const QString path = m_dir.filePath("new/analysis/acquisition.xml");
        QVERIFY(d.save(path));
        TDescriptionAcquisition back;
        back.setName("changed");
        QVERIFY(back.load(path));
        QVERIFY(back == d);
        QCOMPARE(back.signalNames(), QStringList() << "TIC");
        QCOMPARE(back.scanCount(), 0);
    }

    void roundTripOfARun()
    {
        TSyntheticRun::Options o;
        o.kind = TSyntheticRun::MSMS;
        o.scanCount = 50;
        TAcquisitionRun run = TSyntheticRun::generate(o);
        run.channelNames << "FID";
        run.channels << QVector<double>(50, 1.0);
        const TDescriptionAcquisition d = TDescriptionAcquisition::fromRun(run);
        QCOMPARE(d.acquisitionSystem(), quint32(768));
        QCOMPARE(d.signalNames(),
                 QStringList() << "TIC"
                               << "FID");
        QCOMPARE(d.startTime(), run.rtimes.first());
        QCOMPARE(d.lowMass(), 191.0);
        const QString path = m_dir.filePath("msms.xml");
        QVERIFY(d.save(path));
        TDescriptionAcquisition back;
        QVERIFY(back.load(path));
        QVERIFY(back == d);
        QCOMPARE(back.transitions().first(), qMakePair(370.0f, 191.0f));

        // The same description comes from the acquisition file's header and content.
        QVERIFY(TCMFile::save(m_dir.filePath("msms.tcm"), run));
        TCMFile file(m_dir.filePath("msms.tcm"));
        QVERIFY(file.loadContent(-1, -1, 0, 49));
        QVERIFY(TDescriptionAcquisition::fromFile(file) == d);
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("not xml") << QByteArray("<acquisition><name>x</acquisition>") << "cannot be read as XML"
                                 << "ne peut pas être lu comme du XML";
        QTest::newRow("empty") << QByteArray() << "cannot be read as XML"
                               << "ne peut pas être lu comme du XML";
        QTest::newRow("wrong root") << QByteArray("<graph><name>x</name></graph>") << "root <b>graph</b>"
                                    << "racine <b>graph</b>";
        QTest::newRow("future version") << QByteArray("<acquisition><version>9</version></acquisition>")
                                        << "version <b>9</b>"
                                        << "version <b>9</b>";
        QTest::newRow("bad scans") << QByteArray("<acquisition><scans>many</scans></acquisition>")
                                   << "<b>many</b> of <b>scans</b>"
                                   << "<b>many</b> de <b>scans</b>";
        QTest::newRow("fractional scans")
            << QByteArray("<acquisition><scans>2.5</scans></acquisition>") << "<b>scans</b>"
            << "<b>scans</b>";
        QTest::newRow("negative mass") << QByteArray("<acquisition><lowMass>-3</lowMass></acquisition>")
                                       << "<b>lowMass</b>"
                                       << "<b>lowMass</b>";
        QTest::newRow("bad date") << QByteArray("<acquisition><date>yesterday</date></acquisition>") << "<b>date</b>"
                                  << "<b>date</b>";
        QTest::newRow("reversed times") << QByteArray(
            "<acquisition><startTime>10</startTime><endTime>5</endTime></acquisition>")
                                        << "ends before it starts"
                                        << "finit avant de commencer";
        QTest::newRow("unnamed signal") << QByteArray(
            "<acquisition><signals><signal><name> </name></signal></signals></acquisition>")
                                        << "has no name"
                                        << "n'a pas de nom";
        QTest::newRow("bad transition") << QByteArray("<acquisition><transitions><transition><parent>414</parent>"
                                                      "<daughter>x</daughter></transition></transitions></acquisition>")
                                        << "<b>414->x</b>"
                                        << "<b>414->x</b>";
    }

    void refusals()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const QString path = write("bad.xml", content);
        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            TRecordingLogger logger;
            TDescriptionAcquisition d;
            d.setName("kept");
            d.setScanCount(12);
            QVERIFY(!d.load(path));
            QCOMPARE(d.name(), QString("kept"));
            QCOMPARE(d.scanCount(), 12);
            const QString expected = language == "fr" ? french : english;
            const QStringList errors = logger.messages(MessageLoggerInterface::LevelError);
            QVERIFY2(!errors.isEmpty() && errors.last().contains(expected), qPrintable(errors.join(" | ")));
            if (language == "fr")
                QVERIFY(errors.last().contains("refusée") || errors.last().contains("XML"));
        }
    }

    void missingFile()
    {
        TRecordingLogger logger;
        TDescriptionAcquisition d;
        QVERIFY(!d.load(m_dir.filePath("absent.xml")));
        QVERIFY(!logger.messages(MessageLoggerInterface::LevelError).isEmpty());
        QVERIFY(!d.save(QString()));
    }
};

QTEST_GUILESS_MAIN(TestDescriptionAcquisition)
#include "tst_tdescriptionacquisition.moc"
