#include "filesizelimit.h"
#include <testfiles.h>

#include <tfile.h>
#include <trecordinglogger.h>
#include <ttranslator.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray binaryContent(int size)
{
    QByteArray bytes(size, '\0');
    QRandomGenerator generator(42);
    for (int i = 0; i < size; ++i)
        bytes[i] = char(generator.bounded(256));
    return bytes;
}

} // namespace

class TestFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        TTranslator::install("en");
    }

    void mkdirNeedsItsParent()
    {
        TRecordingLogger logger;
        const QString one = m_dir.filePath("one");
        QVERIFY(TFile::mkdir(one, true));
        QVERIFY(QFileInfo(one).isDir());
        QVERIFY(TFile::mkdir(one, true)); // already there
        QCOMPARE(logger.count(), 0);

        const QString deep = m_dir.filePath("two/three");
        QVERIFY(!TFile::mkdir(deep, true));
        QVERIFY(!QFileInfo::exists(deep));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList{QString("Error while creating directory <b>%1</b>").arg(deep)});

        logger.clear();
        QVERIFY(!TFile::mkdir(deep, false));
        QVERIFY(!TFile::mkdir(QString(), true));
        QCOMPARE(logger.count(), 0);
    }

    void mkdirsMakesEveryLevel()
    {
        const QString deep = m_dir.filePath("a/b/c/d");
        QVERIFY(TFile::mkdirs(deep, true));
        QVERIFY(QFileInfo(deep).isDir());
        QVERIFY(TFile::mkdirs(deep, true));
        QVERIFY(!TFile::mkdirs(QString(), false));
    }

    // A regular file where a folder should be is refused by both, in both languages.
    void foldersBelowAFileAreRefused()
    {
        const QString file = m_dir.filePath("file.txt");
        QVERIFY(writeAll(file, "x"));
        TRecordingLogger logger;
        QVERIFY(!TFile::mkdir(file, true));
        QVERIFY(!TFile::mkdirs(file + "/sub/dir", true));
        TTranslator::install("fr");
        QVERIFY(!TFile::mkdirs(file + "/sous", true));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList({QString("Error while creating directory <b>%1</b>").arg(file),
                              QString("Error while creating directory <b>%1/sub/dir</b>").arg(file),
                              QString("Echec de création du répertoire <b>%1/sous</b>").arg(file)}));
        QCOMPARE(readAll(file), QByteArray("x"));
    }

    // Binary content larger than one read chunk arrives byte for byte.
    void copyFileCopiesEveryByte()
    {
        const QByteArray content = binaryContent(2 * 1024 * 1024 + 123);
        const QString source = m_dir.filePath("run.tcm");
        const QString target = m_dir.filePath("copy.tcm");
        QVERIFY(writeAll(source, content));
        QVERIFY(TFile::copyFile(source, target, true, true));
        QCOMPARE(readAll(target), content);
        QCOMPARE(readAll(source), content);

        const QString empty = m_dir.filePath("empty");
        QVERIFY(writeAll(empty, QByteArray()));
        QVERIFY(TFile::copyFile(empty, m_dir.filePath("empty-copy"), true, true));
        QVERIFY(QFileInfo(m_dir.filePath("empty-copy")).isFile());
    }

    void copyFileExistingTarget()
    {
        const QString source = m_dir.filePath("new.xml");
        const QString target = m_dir.filePath("old.xml");
        QVERIFY(writeAll(source, "new content"));
        QVERIFY(writeAll(target, "old"));

        TRecordingLogger logger;
        QVERIFY(!TFile::copyFile(source, target, true, true));
        QCOMPARE(readAll(target), QByteArray("old"));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList{QString("Unable to copy <b>%1</b> to <b>%2</b>").arg(source, target)});

        logger.clear();
        QVERIFY(!TFile::copyFile(source, target, true, false));
        QCOMPARE(logger.count(), 0);

        QVERIFY(TFile::copyFile(source, target, false, true));
        QCOMPARE(readAll(target), QByteArray("new content"));
        QCOMPARE(logger.count(), 0);

        // Copying a file onto itself must not empty it.
        QVERIFY(TFile::copyFile(source, source, false, true));
        QCOMPARE(readAll(source), QByteArray("new content"));
    }

    void copyFileRefusals()
    {
        const QString missing = m_dir.filePath("missing.tcm");
        const QString target = m_dir.filePath("target.tcm");
        const QString source = m_dir.filePath("source.tcm");
        QVERIFY(writeAll(source, "data"));

        TRecordingLogger logger;
        QVERIFY(!TFile::copyFile(missing, target, false, true));
        QVERIFY(!QFileInfo::exists(target));
        QVERIFY(!TFile::copyFile(m_dir.path(), target, false, false));
        QVERIFY(!QFileInfo::exists(target));
        QVERIFY(!TFile::copyFile(source, m_dir.filePath("no/such/folder/t.tcm"), false, false));
        QVERIFY(!TFile::copyFile(source, m_dir.path(), false, false));
        QCOMPARE(logger.count(), 1);

        TTranslator::install("fr");
        QVERIFY(!TFile::copyFile(missing, target, false, true));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning).last(),
                 QString("Impossible de copier <b>%1</b> vers <b>%2</b>").arg(missing, target));
    }

    // A copy that fails halfway (the file-size cap is hit) keeps the old
    // target whole and leaves no partial file.
    void failedCopyKeepsTheOldTarget()
    {
        const QString folder = m_dir.filePath("capped");
        QVERIFY(QDir().mkdir(folder));
        const QString source = m_dir.filePath("big.bin");
        const QString target = folder + "/target.bin";
        QVERIFY(writeAll(source, binaryContent(256 * 1024)));
        QVERIFY(writeAll(target, "previous"));
        {
            FileSizeLimit limit(8192);
            QVERIFY(limit.active());
            QVERIFY(!TFile::copyFile(source, target, false, false));
        }
        QCOMPARE(readAll(target), QByteArray("previous"));
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{"target.bin"});
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestFile)
#include "tst_tfile.moc"
