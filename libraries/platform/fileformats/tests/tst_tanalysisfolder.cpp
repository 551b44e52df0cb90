// Analysis folders made from imports, and the shared open acquisition files.
#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tandimsfile.h>
#include <tanalysisfolder.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tcsvrunfile.h>
#include <tdescriptionacquisition.h>
#include <trecordinglogger.h>
#include <trunreader.h>
#include <tsyntheticrun.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include "categorymessages.h"

#include <QtTest>

class TestAnalysisFolder : public QObject
{
    Q_OBJECT

    static TAcquisitionRun smallRun(TSyntheticRun::Kind kind, int scans = 120)
    {
        TSyntheticRun::Options options;
        options.kind = kind;
        options.scanCount = scans;
        options.pointsPerScan = 40;
        options.seed = 7;
        return TSyntheticRun::generate(options);
    }

    static QStringList entries(const QString& folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private slots:
    void importsEveryFormatIntoAWholeFolder_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("text table") << "CSV";
        QTest::newRow("ANDI") << "ANDI netCDF";
        QTest::newRow("acquisition file") << "TCM";
    }

    void importsEveryFormatIntoAWholeFolder()
    {
        QFETCH(QString, format);
        QTemporaryDir dir;
        const TAcquisitionRun run = smallRun(TSyntheticRun::FullScan);
        const QString source = dir.filePath("export");
        if (format == "CSV")
            QVERIFY(TCSVRunFile::write(source, run));
        else if (format == "TCM")
            QVERIFY(TCMFile::save(source, run));
        else
            QVERIFY(TAndiMSFile::write(source, run));
        const TRunReader* reader = TRunReaderRegistry::find(source);
        QVERIFY(reader);
        QCOMPARE(reader->formatName(), format);

        const QString analyses = dir.filePath("Analyses");
        QString error;
        QVERIFY2(TAnalysisFolder::importFile(source, analyses, "Well 3 - 2450 m", &error), qPrintable(error));
        QCOMPARE(entries(analyses), QStringList{"Well 3 - 2450 m"});
        QCOMPARE(entries(TAnalysisFolder::folderPath(analyses, "Well 3 - 2450 m")),
                 (QStringList{"acquisition.xml", "Well 3 - 2450 m.tcm"}));

        TCMFile file(TAnalysisFolder::tcmPath(analyses, "Well 3 - 2450 m"));
        QVERIFY(file.verify());
        TAcquisitionRun back;
        QVERIFY(file.toRun(&back));
        QCOMPARE(back.scanCount(), run.scanCount());
        QCOMPARE(back.masses, run.masses);
        for (int i = 0; i < run.scanCount(); ++i)
            QVERIFY(qAbs(back.rtimes[i] - run.rtimes[i]) < 1e-6);

        TDescriptionAcquisition description;
        QVERIFY(description.load(
            QDir(TAnalysisFolder::folderPath(analyses, "Well 3 - 2450 m")).filePath("acquisition.xml")));
        QCOMPARE(description.scanCount(), run.scanCount());
    }

    // Whatever goes wrong, the analyses folder holds what it held before.
    void refusalsLeaveNothingBehind()
    {
        TRecordingLogger logger;
        QTemporaryDir dir;
        const QString analyses = dir.filePath("Analyses");
        QVERIFY(QDir().mkpath(analyses));
        QVERIFY(TAnalysisFolder::write(smallRun(TSyntheticRun::FullScan), analyses, "A1"));
        const QByteArray before = readAll(TAnalysisFolder::tcmPath(analyses, "A1"));

        const QString bad = dir.filePath("bad.csv");
        QVERIFY(writeAll(bad, "time,spectrum\n1.0,57:10 71:20\n0.5,57:12\n"));
        QString error;
        QVERIFY(!TAnalysisFolder::importFile(bad, analyses, "A2", &error));
        QVERIFY(!logger.messages(MessageLoggerInterface::LevelError).isEmpty());

        const QString truncated = dir.filePath("truncated.cdf");
        QVERIFY(TAndiMSFile::write(truncated, smallRun(TSyntheticRun::FullScan)));
        QFile cut(truncated);
        QVERIFY(cut.open(QIODevice::ReadWrite));
        QVERIFY(cut.resize(cut.size() / 2));
        cut.close();
        QVERIFY(!TAnalysisFolder::importFile(truncated, analyses, "A3", &error));
        QVERIFY(!TAnalysisFolder::importFile(dir.filePath("missing.csv"), analyses, "A4", &error));

        // A taken name keeps the analysis that has it.
        QVERIFY(!TAnalysisFolder::write(smallRun(TSyntheticRun::MSMS), analyses, "A1", &error));
        QVERIFY(error.contains("exists"));
        // Names that would leave the analyses folder or hide the analysis.
        for (const QString& name : QStringList{QString(), "../up", "a/b", "..", ".hidden", "  "})
            QVERIFY2(!TAnalysisFolder::write(smallRun(TSyntheticRun::FullScan), analyses, name), qPrintable(name));
        // An inconsistent run (times going backwards) is refused before anything is written.
        TAcquisitionRun broken = smallRun(TSyntheticRun::FullScan);
        std::swap(broken.rtimes[3], broken.rtimes[40]);
        QVERIFY(!TAnalysisFolder::write(broken, analyses, "A5", &error));

        QCOMPARE(entries(analyses), QStringList{"A1"});
        QCOMPARE(readAll(TAnalysisFolder::tcmPath(analyses, "A1")), before);
    }

    void readOnlyParentIsRefusedCleanly()
    {
        QTemporaryDir dir;
        const QString analyses = dir.filePath("Analyses");
        QVERIFY(QDir().mkpath(analyses));
        QFile::setPermissions(analyses, QFile::ReadOwner | QFile::ExeOwner);
        if (QFileInfo(analyses).isWritable())
            QSKIP("running with rights that ignore permissions");
        QString error;
        QVERIFY(!TAnalysisFolder::write(smallRun(TSyntheticRun::FullScan), analyses, "A", &error));
        QVERIFY(!error.isEmpty());
        QFile::setPermissions(analyses, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(entries(analyses).isEmpty());
    }

    // Loading through one holder and releasing through another act on one object;
    // a replaced file is reopened instead of being read through the old map.
    void registrySharesAndRefreshesFiles()
    {
        TCMFileRegistry::clear();
        QTemporaryDir dir;
        const QString path = dir.filePath("run.tcm");
        QVERIFY(!TCMFileRegistry::file(path));
        QVERIFY(TCMFile::save(path, smallRun(TSyntheticRun::FullScan, 50)));

        TCMFile* first = TCMFileRegistry::file(path);
        QVERIFY(first);
        QCOMPARE(TCMFileRegistry::file(dir.filePath("./run.tcm")), first);
        QVERIFY(first->loadContent(-1, -1, 0, 49));
        TCMFileRegistry::release(path);
        QVERIFY(!first->isLoaded());
        QCOMPARE(TCMFileRegistry::count(), 1);
        // A file that is not an acquisition is refused, and why is told to
        // the developer's category only.
        {
            const QString foreign = dir.filePath("notes.tcm");
            QVERIFY(writeAll(foreign, "not an acquisition file"));
            CategoryMessages diagnostics;
            TRecordingLogger user;
            QVERIFY(!TCMFileRegistry::file(foreign));
            const QStringList said = diagnostics.texts("vn.fileformats", QtInfoMsg);
            QCOMPARE(said.size(), 1);
            QVERIFY2(said.first().startsWith(foreign + " refused: "), qPrintable(said.first()));
            QCOMPARE(user.count(), 0);
        }

        QThread::msleep(20); // distinct modification time on coarse file systems
        QVERIFY(QFile::remove(path));
        QVERIFY(TCMFile::save(path, smallRun(TSyntheticRun::FullScan, 80)));
        TCMFile* second = TCMFileRegistry::file(path);
        QVERIFY(second);
        QCOMPARE(second->nbScans(), 80);

        QVERIFY(writeAll(path, "not an acquisition"));
        QVERIFY(!TCMFileRegistry::file(path));
        QVERIFY(QFile::remove(path));
        QVERIFY(!TCMFileRegistry::file(path));
        QCOMPARE(TCMFileRegistry::count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestAnalysisFolder)
#include "tst_tanalysisfolder.moc"
