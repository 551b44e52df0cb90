#include "filesizelimit.h"
#include <testfiles.h>

#include <tfile.h>
#include <trecordinglogger.h>
#include <ttranslator.h>

#include <QDir>
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

    // mkdir does not make a missing parent, and neither makes a folder where a
    // regular file is; they say so only when asked to, in the user's language.
    void mkdirAndMkdirs()
    {
        const QString one = m_dir.filePath("one");
        const QString deep = m_dir.filePath("a/b/c/d");
        const QString orphan = m_dir.filePath("two/three");
        const QString file = m_dir.filePath("file.txt");
        QVERIFY(writeAll(file, "x"));
        TRecordingLogger logger;
        for (int pass = 0; pass < 2; ++pass) { // the second pass finds them already there
            QVERIFY(TFile::mkdir(one, true));
            QVERIFY(TFile::mkdirs(deep, true));
        }
        QVERIFY(QFileInfo(one).isDir());
        QVERIFY(QFileInfo(deep).isDir());
        QVERIFY(!TFile::mkdir(orphan, false));
        QVERIFY(!TFile::mkdir(QString(), true));
        QVERIFY(!TFile::mkdirs(QString(), true));
        QCOMPARE(logger.count(), 0);

        QVERIFY(!TFile::mkdir(orphan, true));
        QVERIFY(!TFile::mkdir(file, true));
        QVERIFY(!TFile::mkdirs(file + "/sub/dir", true));
        TTranslator::install("fr");
        QVERIFY(!TFile::mkdirs(file + "/sous", true));
        const QString en = "Error while creating directory <b>%1</b>";
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList({en.arg(orphan), en.arg(file), en.arg(file + "/sub/dir"),
                              QString("Echec de création du répertoire <b>%1/sous</b>").arg(file)}));
        QVERIFY(!QFileInfo::exists(orphan));
        QCOMPARE(readAll(file), QByteArray("x"));
    }

    // Binary content larger than one read chunk arrives byte for byte, over an
    // existing target too.
    void copyFileCopiesEveryByte()
    {
        const QByteArray content = binaryContent(2 * 1024 * 1024 + 123);
        const QString source = m_dir.filePath("run.tcm");
        const QString target = m_dir.filePath("copy.tcm");
        QVERIFY(writeAll(source, content));
        QVERIFY(writeAll(target, "old"));
        TRecordingLogger logger;
        QVERIFY(TFile::copyFile(source, target, false, true));
        QCOMPARE(readAll(target), content);
        // Copying a file onto itself must not empty it.
        QVERIFY(TFile::copyFile(source, source, false, true));
        QCOMPARE(readAll(source), content);
        QCOMPARE(logger.count(), 0);

        const QString empty = m_dir.filePath("empty");
        QVERIFY(writeAll(empty, QByteArray()));
        QVERIFY(TFile::copyFile(empty, m_dir.filePath("empty-copy"), true, true));
        QVERIFY(QFileInfo(m_dir.filePath("empty-copy")).isFile());
    }

    // Refusals leave the target as it was and are told only when asked to.
    void copyFileRefusals()
    {
        const QString source = m_dir.filePath("new.xml");
        const QString target = m_dir.filePath("old.xml");
        const QString missing = m_dir.filePath("missing.xml");
        QVERIFY(writeAll(source, "new content"));
        QVERIFY(writeAll(target, "old"));

        TRecordingLogger logger;
        QVERIFY(!TFile::copyFile(missing, target, false, false));
        QVERIFY(!TFile::copyFile(m_dir.path(), target, false, false));
        QVERIFY(!TFile::copyFile(source, m_dir.filePath("no/such/folder/t.xml"), false, false));
        QVERIFY(!TFile::copyFile(source, m_dir.path(), false, false));
        QCOMPARE(logger.count(), 0);

        QVERIFY(!TFile::copyFile(source, target, true, true));
        TTranslator::install("fr");
        QVERIFY(!TFile::copyFile(missing, target, false, true));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList({QString("Unable to copy <b>%1</b> to <b>%2</b>").arg(source, target),
                              QString("Impossible de copier <b>%1</b> vers <b>%2</b>").arg(missing, target)}));
        QCOMPARE(readAll(target), QByteArray("old"));
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
