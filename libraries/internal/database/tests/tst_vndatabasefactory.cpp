// The database factory's choice of class, databases made from folders, and
// the shared mapper factory's life from module load to its clearing.
#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <tassert.h>
#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vndatabase.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <theaderdatabase.h>
#include <vnmapperfactory.h>
#include <vnobject2dataset.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class TestFactory : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { TTranslator::install(QStringLiteral("en")); }

    void projectTypesMakeProjectDatabases_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("undefined") << 0;
        QTest::newRow("in memory") << 1;
        QTest::newRow("folder") << 6;
        // Inside the reference range, yet a project database.
        QTest::newRow("retired reference kind") << 8;
        QTest::newRow("past the reference range") << 11;
        QTest::newRow("negative") << -1;
    }

    void projectTypesMakeProjectDatabases()
    {
        QFETCH(int, type);
        VNDatabaseFactory factory;
        std::unique_ptr<Sedra::TDatabase> db(factory.createDatabase(Sedra::DatabaseType(type)));
        QVERIFY(db);
        QCOMPARE(db->metaObject()->className(), "VNDatabase");
        QCOMPARE(int(db->getDatabaseType()), type);
        // Made in memory: no folder, and the shared mappers from the start.
        QVERIFY(db->getCurrentWorkingPath().isEmpty());
        QVERIFY(db->getMapper(VNObjectTypeAnalysis));
    }

    void referenceTypesMakeReferenceDatabases_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("delivered") << 7;
        QTest::newRow("user") << 9;
        QTest::newRow("merged") << 10;
    }

    void referenceTypesMakeReferenceDatabases()
    {
        QFETCH(int, type);
        VNDatabaseFactory factory;
        TRecordingLogger log;
        std::unique_ptr<Sedra::TDatabase> db(factory.createDatabase(Sedra::DatabaseType(type)));
        QVERIFY(db);
        QCOMPARE(db->metaObject()->className(), "VNDatabaseTovi");
        QVERIFY(!qobject_cast<VNDatabase*>(db.get()));
        QCOMPARE(int(db->getDatabaseType()), type);
        // The reference databases' own mappers, none of a project's.
        QVERIFY(db->getMapper(VNObjectTypeCompound));
        QVERIFY(db->getMapper(VNObjectTypeIon));
        QVERIFY(!db->getMapper(VNObjectTypeAnalysis));
        QVERIFY(db->getCurrentWorkingPath().isEmpty());
        QVERIFY(log.messages(MessageLoggerInterface::LevelWarning).isEmpty());
    }

    void installedFactoryServesCallers()
    {
        VNDatabaseFactory factory;
        DatabaseFactoryInterface::install(&factory);
        std::unique_ptr<Sedra::TDatabase> db(DatabaseFactoryInterface::returnMe()->createDatabase(Sedra::DatabaseProject));
        QVERIFY(qobject_cast<VNDatabase*>(db.get()));
        // A copy is an independent factory, not a second installation.
        {
            VNDatabaseFactory copy(factory);
            QVERIFY(std::unique_ptr<Sedra::TDatabase>(copy.createDatabase(Sedra::DatabaseProject)));
        }
        QCOMPARE(DatabaseFactoryInterface::returnMe(), &factory);
        DatabaseFactoryInterface::uninstall(&factory);
    }

    void folderDatabaseIsMadeFromNothing()
    {
        QTemporaryDir tmp;
        const QString path = tmp.filePath(QStringLiteral("Basin/Project 1"));
        VNDatabaseFactory factory;
        std::unique_ptr<Sedra::TDatabase> db(factory.getDatabaseFromPath(path));
        auto* project = qobject_cast<VNDatabase*>(db.get());
        QVERIFY(project);
        QCOMPARE(int(project->getDatabaseType()), int(Sedra::DatabaseProjectFolder));
        QVERIFY(QFileInfo(path).isDir());
        QCOMPARE(QDir(project->getCurrentWorkingPath()).canonicalPath(), QDir(path).canonicalPath());
        QCOMPARE(project->headerDb()->serialNumber(), QStringLiteral("1"));
        QVERIFY(project->getMapper(VNObjectTypeAnalysis));
    }

    // Last: it ends the shared factory's life, as the application does at exit.
    void mapperFactoryLivesFromLoadToClear()
    {
        VNMapperFactory* atLoad = VNDatabase::s_mapperFactory;
        QVERIFY(atLoad);
        // The reference databases have a factory of their own, a plain one.
        QVERIFY(VNDatabaseTovi::s_mapperFactory);
        QVERIFY(static_cast<Sedra::TMapperFactory*>(atLoad) != VNDatabaseTovi::s_mapperFactory);
        QVERIFY(!dynamic_cast<VNMapperFactory*>(VNDatabaseTovi::s_mapperFactory));
        {
            VNDatabase one(Sedra::DatabaseProject), two(Sedra::DatabaseProject);
            QCOMPARE(one.mapperFactory(), two.mapperFactory());
            QCOMPARE(one.mapperFactory(), static_cast<Sedra::TMapperFactory*>(atLoad));
        }

        VNDatabase::s_mapperFactoryClear();
        QCOMPARE(VNDatabase::s_mapperFactory, static_cast<VNMapperFactory*>(nullptr));
        VNDatabase::s_mapperFactoryClear();
        QCOMPARE(VNDatabase::s_mapperFactory, static_cast<VNMapperFactory*>(nullptr));

        // A database made afterwards has no mappers: typed operations assert and answer neutrally.
        TAssert::clear();
        TRecordingLogger log;
        VNDatabase late(Sedra::DatabaseProject);
        QVERIFY(!late.getMapper(VNObjectTypeDataset));
        VNObject2Dataset dataset(QStringLiteral("Pr/Ph"));
        QVERIFY(!late.datasetObjectSave(&dataset, true));
        QVERIFY(TAssert::contains(QStringLiteral("mapper != 0"), QStringLiteral("vndatabase")));
        QCOMPARE(TAssert::failures().constLast().line > 0, true);
    }
};

QTEST_GUILESS_MAIN(TestFactory)
#include "tst_vndatabasefactory.moc"
