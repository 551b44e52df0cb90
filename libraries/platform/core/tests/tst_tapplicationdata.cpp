#include <testfiles.h>

#include <tapplicationdata.h>
#include <tapplicationdataloader.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestApplicationData : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        TApplicationDataLoader::getInstance()->setSettingsFile(QString());
        // Each test starts from an environment without the names it uses.
        for (const char* name :
             {"VN_TEST_FROM_FILE", "VN_TEST_BOTH", "VN_TEST_FROM_ENV", "VN_TEST_NOWHERE", "VNDB_SETTINGS", "VARNELDIR"})
            qunsetenv(name);
    }

    void instanceLivesWithItsOwner()
    {
        QCOMPARE(TApplicationData::getInstance(), nullptr);
        {
            TApplicationData data;
            QCOMPARE(TApplicationData::getInstance(), &data);
            {
                TApplicationData newer;
                QCOMPARE(TApplicationData::getInstance(), &newer);
            }
            QCOMPARE(TApplicationData::getInstance(), &data);
        }
        QCOMPARE(TApplicationData::getInstance(), nullptr);
    }

    void namedValues()
    {
        TApplicationData data;
        QCOMPARE(data.applicationRootPath(), QCoreApplication::applicationDirPath());
        QCOMPARE(data.language(), "en");
        QVERIFY(!data.contains("TOVIDBDIR"));
        QVERIFY(data.getString("TOVIDBDIR").isEmpty());
        QCOMPARE(data.value("TOVIDBDIR", "fallback").toString(), "fallback");

        data.setValue("TOVIDBDIR", "/opt/tovi");
        data.setValue("COUNT", 3);
        QVERIFY(data.contains("TOVIDBDIR"));
        QVERIFY(!data.contains("tovidbdir")); // names are case-sensitive
        QCOMPARE(data.getString("TOVIDBDIR"), "/opt/tovi");
        QCOMPARE(data.getString("COUNT"), "3");
        QStringList names = data.names();
        names.sort();
        QCOMPARE(names, QStringList({"COUNT", "TOVIDBDIR"}));

        data.removeValue("TOVIDBDIR");
        data.removeValue("NEVER-SET");
        QVERIFY(!data.contains("TOVIDBDIR"));
        QCOMPARE(data.names(), QStringList{"COUNT"});
    }

    // The environment comes first, the settings file second.
    void loaderSources()
    {
        const QString settings = m_dir.filePath("vndb.ini");
        QVERIFY(writeAll(settings,
                         "VN_TEST_FROM_FILE=/data/file\n"
                         "VN_TEST_BOTH=from file\n"
                         "[Elsewhere]\nVN_TEST_GROUPED=hidden\n"));
        TApplicationDataLoader* loader = TApplicationDataLoader::getInstance();
        loader->setSettingsFile(settings);
        qputenv("VN_TEST_BOTH", "from environment");
        qputenv("VN_TEST_FROM_ENV", "/data/env");

        TApplicationData data;
        QVERIFY(loader->loadParameterNoPrefix("VN_TEST_FROM_FILE"));
        QVERIFY(loader->loadParameterNoPrefix("VN_TEST_BOTH"));
        QVERIFY(loader->loadParameterNoPrefix("VN_TEST_FROM_ENV"));
        QCOMPARE(data.getString("VN_TEST_FROM_FILE"), "/data/file");
        QCOMPARE(data.getString("VN_TEST_BOTH"), "from environment");
        QCOMPARE(data.getString("VN_TEST_FROM_ENV"), "/data/env");

        // Only top-level keys count: a key inside a section is another name.
        QVERIFY(!loader->loadParameterNoPrefix("VN_TEST_GROUPED"));
        QVERIFY(!data.contains("VN_TEST_GROUPED"));
    }

    void loaderMissingValues()
    {
        TApplicationDataLoader* loader = TApplicationDataLoader::getInstance();

        // No TApplicationData: nothing to store into.
        qputenv("VN_TEST_NOWHERE", "x");
        QVERIFY(!loader->loadParameterNoPrefix("VN_TEST_NOWHERE"));
        qunsetenv("VN_TEST_NOWHERE");

        TApplicationData data;
        data.setValue("VN_TEST_NOWHERE", "kept");
        QVERIFY(!loader->loadParameterNoPrefix("VN_TEST_NOWHERE"));
        QVERIFY(!loader->loadParameterNoPrefix(QString()));

        loader->setSettingsFile(m_dir.filePath("missing.ini"));
        QVERIFY(!loader->loadParameterNoPrefix("VN_TEST_NOWHERE"));
        loader->setSettingsFile(m_dir.path()); // a folder, not a file
        QVERIFY(!loader->loadParameterNoPrefix("VN_TEST_NOWHERE"));

        const QString garbage = m_dir.filePath("garbage.ini");
        static const char garbageBytes[] = "\x00\xff[[[=\n=\x01\x02";
        QVERIFY(writeAll(garbage, QByteArray(garbageBytes, int(sizeof garbageBytes) - 1)));
        loader->setSettingsFile(garbage);
        QVERIFY(!loader->loadParameterNoPrefix("VN_TEST_NOWHERE"));

        // A failed look-up leaves a value already there alone.
        QCOMPARE(data.getString("VN_TEST_NOWHERE"), "kept");
    }

    // Without a file set here, the loader reads the file named by VNDB_SETTINGS.
    void loaderSettingsFromEnvironment()
    {
        const QString settings = m_dir.filePath("env.ini");
        QVERIFY(writeAll(settings, "VARNELDIR=/opt/varnel\n"));
        qputenv("VNDB_SETTINGS", QFile::encodeName(settings));
        TApplicationDataLoader* loader = TApplicationDataLoader::getInstance();
        QCOMPARE(loader->settingsFile(), settings);
        TApplicationData data;
        QVERIFY(loader->loadParameterNoPrefix("VARNELDIR"));
        QCOMPARE(data.getString("VARNELDIR"), "/opt/varnel");
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestApplicationData)
#include "tst_tapplicationdata.moc"
