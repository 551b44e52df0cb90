// Folder listings of the project database: which files count, how they are
// named, and how missing folders are recreated (and said to be).
#include <messageloggerinterface.h>
#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vndatabase.h>
#include <vnobject2indexation.h>
#include <vnobject2well.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write(bytes);
}
} // namespace

class TestScanDir : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_tmp;
    QString m_sample;

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        TTranslator::install(QStringLiteral("en"));
        // One folder holding every kind of entry the listings must tell apart.
        m_sample = m_tmp.filePath(QStringLiteral("sample"));
        QVERIFY(QDir().mkpath(m_sample + QStringLiteral("/run.d")));
        QVERIFY(QDir().mkpath(m_sample + QStringLiteral("/Wells")));
        writeFile(m_sample + QStringLiteral("/a.b.c"), "abc");
        writeFile(m_sample + QStringLiteral("/empty.tcm"), QByteArray());
        writeFile(m_sample + QStringLiteral("/run1.tcm"), "tcm");
        writeFile(m_sample + QStringLiteral("/notes"), "text");
        writeFile(m_sample + QStringLiteral("/run.d/inner.tcm"), "inner");
    }

    void filesOnly_data()
    {
        QTest::addColumn<bool>("withSuffix");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QStringList>("expected");
        // Zero-byte files and folders never count; "a.b.c" is one name with suffixes.
        QTest::newRow("all, full names") << true << QString() << QStringList{"a.b.c", "notes", "run1.tcm"};
        QTest::newRow("all, stems") << false << QString() << QStringList{"a", "notes", "run1"};
        // Only the last suffix is compared, exactly.
        QTest::newRow("last suffix") << true << "c" << QStringList{"a.b.c"};
        QTest::newRow("two suffixes do not match") << true << "b.c" << QStringList{};
        QTest::newRow("case matters") << true << "TCM" << QStringList{};
        QTest::newRow("tcm stems") << false << "tcm" << QStringList{"run1"};
    }

    void filesOnly()
    {
        QFETCH(bool, withSuffix);
        QFETCH(QString, suffix);
        QFETCH(QStringList, expected);
        VNDatabase db(Sedra::DatabaseProject);
        TRecordingLogger log;
        QCOMPARE(db.scanDir(m_sample, withSuffix, suffix, true), expected);
        // The structure check lists the same files.
        if (suffix.isEmpty())
            QCOMPARE(db.scanDir(m_sample, withSuffix), expected);
        QCOMPARE(log.count(), 0);
    }

    void subFoldersIgnoreSuffixes()
    {
        VNDatabase db(Sedra::DatabaseProject);
        const QStringList folders{"run.d", "Wells"};
        QCOMPARE(db.scanDir(m_sample, false, QStringLiteral("tcm"), false), folders);
        QCOMPARE(db.scanDir(m_sample, true, QString(), false), folders);
    }

    void emptyFolderIsNotUnreadable()
    {
        const QString empty = m_tmp.filePath(QStringLiteral("empty"));
        QVERIFY(QDir().mkpath(empty));
        VNDatabase db(Sedra::DatabaseProject);
        TRecordingLogger log;
        QCOMPARE(db.scanDir(empty, true), QStringList());
        QCOMPARE(db.scanDir(empty, true, QString(), true), QStringList());
        QCOMPARE(db.scanDir(empty, true, QString(), false), QStringList());
        QCOMPARE(log.count(), 0);
    }

    void missingFolderIsRecreated_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("message");
        QTest::newRow("en") << "en"
                            << "Project structure is obsolete - Adding directory <b>%1</b>";
        QTest::newRow("fr") << "fr"
                            << "La structure du projet est obsolète - Ajout du dossier <b>%1</b>";
    }

    void missingFolderIsRecreated()
    {
        QFETCH(QString, language);
        QFETCH(QString, message);
        TTranslator::install(language);
        VNDatabase db(Sedra::DatabaseProject);
        TRecordingLogger log;

        // The structure check says so, once, as information.
        const QString gone = m_tmp.filePath(language + QStringLiteral("/old/Indexations"));
        QCOMPARE(db.scanDir(gone, true), QStringList());
        QVERIFY(QFileInfo(gone).isDir());
        QCOMPARE(log.entries(),
                 QList<TRecordingLogger::Entry>({{MessageLoggerInterface::LevelInformation, message.arg(gone)}}));

        // The filtered listing repairs silently, files and folders alike.
        log.clear();
        const QString quiet = m_tmp.filePath(language + QStringLiteral("/quiet"));
        QCOMPARE(db.scanDir(quiet + QStringLiteral("/files"), true, QStringLiteral("tcm"), true), QStringList());
        QCOMPARE(db.scanDir(quiet + QStringLiteral("/dirs"), true, QString(), false), QStringList());
        QVERIFY(QFileInfo(quiet + QStringLiteral("/files")).isDir());
        QVERIFY(QFileInfo(quiet + QStringLiteral("/dirs")).isDir());
        QCOMPARE(log.count(), 0);
        TTranslator::install(QStringLiteral("en"));
    }

    void uncreatableFolderIsReportedNotFatal()
    {
        // A file stands where the folder should be: it cannot be created nor read.
        const QString blocked = m_tmp.filePath(QStringLiteral("blocked"));
        writeFile(blocked, "x");
        VNDatabase db(Sedra::DatabaseProject);
        TRecordingLogger log;
        const QString path = blocked + QStringLiteral("/Analyses");
        QCOMPARE(db.scanDir(path, true), QStringList());
        QCOMPARE(log.messages(MessageLoggerInterface::LevelInformation),
                 QStringList({QStringLiteral("Project structure is obsolete - Adding directory <b>%1</b>").arg(path),
                              QStringLiteral("Error while creating directory <b>%1</b>").arg(path)}));
        QCOMPARE(log.messages(MessageLoggerInterface::LevelWarning),
                 QStringList(QStringLiteral("The directory <b>%1</b> is unreadable or does not exist").arg(path)));

        log.clear();
        QCOMPARE(db.scanDir(path, true, QString(), true), QStringList());
        QCOMPARE(log.count(), 0);
        QVERIFY(QFileInfo(blocked).isFile());
    }

    void typedScanUsesTheKindsFolder()
    {
        const QString project = m_tmp.filePath(QStringLiteral("typed"));
        VNDatabase db(project, QStringLiteral("1"));
        const QString indexations = project + QDir::separator() + VNObject2Indexation::folderName();
        QVERIFY(QDir().mkpath(indexations));
        writeFile(indexations + QStringLiteral("/peaks.xml"), "<peaks/>");
        // Peak detections and global indexations share the indexations' folder.
        for (VNObjectType type : {VNObjectTypeIndexation, VNObjectTypePeakDetection, VNObjectTypeGlobalIndexation})
            QCOMPARE(db.scanDir(type, false), QStringList("peaks"));

        // A kind without a folder touches nothing on disk.
        const QStringList before = QDir(project).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        TRecordingLogger log;
        QCOMPARE(db.scanDir(VNObjectTypeSignal, true), QStringList());
        QCOMPARE(db.scanDir(VNObjectTypeProject, true), QStringList());
        QCOMPARE(QDir(project).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
        QCOMPARE(log.count(), 0);

        // A database kept in memory has no folder to scan: nothing is made at
        // the root of the file system (nor in the current folder).
        VNDatabase inMemory(Sedra::DatabaseProject);
        const QString atRoot = QDir::rootPath() + VNObject2Well::folderName();
        const bool existed = QFileInfo::exists(atRoot);
        const QString current = QDir::currentPath();
        QDir::setCurrent(project);
        QCOMPARE(inMemory.scanDir(VNObjectTypeWell, true), QStringList());
        QDir::setCurrent(current);
        QCOMPARE(QFileInfo::exists(atRoot), existed);
        QCOMPARE(QDir(project).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
        QCOMPARE(log.count(), 0);
    }

    void hostileNamesAreListedAsTheyAre()
    {
        const QString odd = m_tmp.filePath(QStringLiteral("odd"));
        QVERIFY(QDir().mkpath(odd));
        // Given in sorted order.
        const QStringList names{"O'Brien \"best\".tcm", "puits-Hédé Ω.tcm", "x; DROP TABLE objects;--.tcm"};
        for (const QString& name : names)
            writeFile(odd + QLatin1Char('/') + name, "data");
        VNDatabase db(Sedra::DatabaseProject);
        QStringList listed = db.scanDir(odd, true, QStringLiteral("tcm"), true);
        listed.sort();
        QCOMPARE(listed, names);
    }
};

QTEST_GUILESS_MAIN(TestScanDir)
#include "tst_vndatabasescandir.moc"
