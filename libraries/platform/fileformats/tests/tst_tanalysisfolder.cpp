// Analysis folders made from imports, and the shared open acquisition files.
#include <tacquisitionrun.h>
#include <tandimsfile.h>
#include <tanalysisfolder.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tcsvrunfile.h>
#include <tdescriptionacquisition.h>
#include <trecordinglogger.h>
#include <tsyntheticrun.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
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

    static void writeText(const QString& path, const QByteArray& text)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

private slots:
    void importsEveryFormatIntoAWholeFolder_data()
    {
        QTest::addColumn<int>("format");
        QTest::newRow("text table") << int(TAnalysisFolder::TextFormat);
        QTest::newRow("ANDI") << int(TAnalysisFolder::AndiFormat);
        QTest::newRow("acquisition file") << int(TAnalysisFolder::AcquisitionFormat);
    }

    void importsEveryFormatIntoAWholeFolder()
    {
        QFETCH(int, format);
        QTemporaryDir dir;
        const TAcquisitionRun run = smallRun(TSyntheticRun::FullScan);
        const QString source = dir.filePath(QStringLiteral("export"));
        switch (format) {
        case TAnalysisFolder::TextFormat: QVERIFY(TCSVRunFile::write(source, run)); break;
        case TAnalysisFolder::AndiFormat: QVERIFY(TAndiMSFile::write(source, run)); break;
        default: QVERIFY(TCMFile::save(source, run)); break;
        }
        QCOMPARE(int(TAnalysisFolder::sniff(source)), format);

        const QString analyses = dir.filePath(QStringLiteral("Analyses"));
        QString error;
        QVERIFY2(TAnalysisFolder::importFile(source, analyses, QStringLiteral("Well 3 - 2450 m"), &error),
                 qPrintable(error));
        QCOMPARE(entries(analyses), QStringList{QStringLiteral("Well 3 - 2450 m")});
        QCOMPARE(entries(TAnalysisFolder::folderPath(analyses, QStringLiteral("Well 3 - 2450 m"))),
                 (QStringList{QStringLiteral("acquisition.xml"), QStringLiteral("Well 3 - 2450 m.tcm")}));

        TCMFile file(TAnalysisFolder::tcmPath(analyses, QStringLiteral("Well 3 - 2450 m")));
        QVERIFY(file.verify());
        TAcquisitionRun back;
        QVERIFY(file.toRun(&back));
        QCOMPARE(back.scanCount(), run.scanCount());
        QCOMPARE(back.masses, run.masses);
        for (int i = 0; i < run.scanCount(); ++i)
            QVERIFY(qAbs(back.rtimes[i] - run.rtimes[i]) < 1e-6);

        TDescriptionAcquisition description;
        QVERIFY(description.load(QDir(TAnalysisFolder::folderPath(analyses, QStringLiteral("Well 3 - 2450 m")))
                                     .filePath(QStringLiteral("acquisition.xml"))));
        QCOMPARE(description.scanCount(), run.scanCount());
    }

    // Whatever goes wrong, the analyses folder holds what it held before.
    void refusalsLeaveNothingBehind()
    {
        TRecordingLogger logger;
        QTemporaryDir dir;
        const QString analyses = dir.filePath(QStringLiteral("Analyses"));
        QVERIFY(QDir().mkpath(analyses));
        QVERIFY(TAnalysisFolder::write(smallRun(TSyntheticRun::FullScan), analyses, QStringLiteral("A1")));
        const QByteArray before = [&] {
            QFile f(TAnalysisFolder::tcmPath(analyses, QStringLiteral("A1")));
            f.open(QIODevice::ReadOnly);
            return f.readAll();
        }();

        const QString bad = dir.filePath(QStringLiteral("bad.csv"));
        writeText(bad, "time,spectrum\n1.0,57:10 71:20\n0.5,57:12\n");
        QString error;
        QVERIFY(!TAnalysisFolder::importFile(bad, analyses, QStringLiteral("A2"), &error));
        QVERIFY(!logger.messages(MessageLoggerInterface::LevelError).isEmpty());

        const QString truncated = dir.filePath(QStringLiteral("truncated.cdf"));
        QVERIFY(TAndiMSFile::write(truncated, smallRun(TSyntheticRun::FullScan)));
        QFile cut(truncated);
        QVERIFY(cut.open(QIODevice::ReadWrite));
        QVERIFY(cut.resize(cut.size() / 2));
        cut.close();
        QVERIFY(!TAnalysisFolder::importFile(truncated, analyses, QStringLiteral("A3"), &error));
        QVERIFY(!TAnalysisFolder::importFile(dir.filePath(QStringLiteral("missing.csv")), analyses,
                                             QStringLiteral("A4"), &error));

        // A taken name keeps the analysis that has it.
        QVERIFY(!TAnalysisFolder::write(smallRun(TSyntheticRun::MSMS), analyses, QStringLiteral("A1"), &error));
        QVERIFY(error.contains(QLatin1String("exists")));
        // Names that would leave the analyses folder or hide the analysis.
        for (const QString& name : {QString(), QStringLiteral("../up"), QStringLiteral("a/b"), QStringLiteral(".."),
                                    QStringLiteral(".hidden"), QStringLiteral("  ")})
            QVERIFY2(!TAnalysisFolder::write(smallRun(TSyntheticRun::FullScan), analyses, name), qPrintable(name));
        // An inconsistent run (times going backwards) is refused before anything is written.
        TAcquisitionRun broken = smallRun(TSyntheticRun::FullScan);
        std::swap(broken.rtimes[3], broken.rtimes[40]);
        QVERIFY(!TAnalysisFolder::write(broken, analyses, QStringLiteral("A5"), &error));

        QCOMPARE(entries(analyses), QStringList{QStringLiteral("A1")});
        QFile after(TAnalysisFolder::tcmPath(analyses, QStringLiteral("A1")));
        QVERIFY(after.open(QIODevice::ReadOnly));
        QCOMPARE(after.readAll(), before);
    }

    void readOnlyParentIsRefusedCleanly()
    {
        QTemporaryDir dir;
        const QString analyses = dir.filePath(QStringLiteral("Analyses"));
        QVERIFY(QDir().mkpath(analyses));
        QFile::setPermissions(analyses, QFile::ReadOwner | QFile::ExeOwner);
        if (QFileInfo(analyses).isWritable())
            QSKIP("running with rights that ignore permissions");
        QString error;
        QVERIFY(!TAnalysisFolder::write(smallRun(TSyntheticRun::FullScan), analyses, QStringLiteral("A"), &error));
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
        const QString path = dir.filePath(QStringLiteral("run.tcm"));
        QVERIFY(!TCMFileRegistry::file(path));
        QVERIFY(TCMFile::save(path, smallRun(TSyntheticRun::FullScan, 50)));

        TCMFile* first = TCMFileRegistry::file(path);
        QVERIFY(first);
        QCOMPARE(TCMFileRegistry::file(dir.filePath(QStringLiteral("./run.tcm"))), first);
        QVERIFY(first->loadContent(-1, -1, 0, 49));
        TCMFileRegistry::release(path);
        QVERIFY(!first->isLoaded());
        QCOMPARE(TCMFileRegistry::count(), 1);

        QThread::msleep(20); // distinct modification time on coarse file systems
        QVERIFY(QFile::remove(path));
        QVERIFY(TCMFile::save(path, smallRun(TSyntheticRun::FullScan, 80)));
        TCMFile* second = TCMFileRegistry::file(path);
        QVERIFY(second);
        QCOMPARE(second->nbScans(), 80);

        QFile damaged(path);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("not an acquisition");
        damaged.close();
        QVERIFY(!TCMFileRegistry::file(path));
        QVERIFY(QFile::remove(path));
        QVERIFY(!TCMFileRegistry::file(path));
        QCOMPARE(TCMFileRegistry::count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestAnalysisFolder)
#include "tst_tanalysisfolder.moc"
