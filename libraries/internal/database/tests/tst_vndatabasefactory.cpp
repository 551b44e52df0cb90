// The database factory's choice of class, its installation, and
// the shared mapper factory's life from module load to its clearing.
#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vndatabase.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vnmapperfactory.h>
#include <vnobject2project.h>

#include <QtTest>

#include <memory>

class TestFactory : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { TTranslator::install(QStringLiteral("en")); }

    void eachTypeMakesItsKindOfDatabase_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("reference");
        QTest::newRow("undefined") << 0 << false;
        QTest::newRow("in memory") << 1 << false;
        QTest::newRow("folder") << 6 << false;
        // Inside the reference range, yet a project database.
        QTest::newRow("retired reference kind") << int(Sedra::DatabaseProjectTransfer) << false;
        QTest::newRow("past the reference range") << 11 << false;
        QTest::newRow("negative") << -1 << false;
        QTest::newRow("delivered") << int(Sedra::DatabaseToviDelivered) << true;
        QTest::newRow("user") << int(Sedra::DatabaseToviUser) << true;
        QTest::newRow("merged") << int(Sedra::DatabaseToviMerged) << true;
    }

    void eachTypeMakesItsKindOfDatabase()
    {
        QFETCH(int, type);
        QFETCH(bool, reference);
        VNDatabaseFactory factory;
        TRecordingLogger log;
        std::unique_ptr<Sedra::TDatabase> db(factory.createDatabase(Sedra::DatabaseType(type)));
        QVERIFY(db);
        QCOMPARE(db->metaObject()->className(), reference ? "VNDatabaseTovi" : "VNDatabase");
        QCOMPARE(qobject_cast<VNDatabase*>(db.get()) != nullptr, !reference);
        QCOMPARE(int(db->getDatabaseType()), type);
        // Made in memory, with the mappers of its kind from the start; a
        // reference database has none of a project's.
        QVERIFY(db->getCurrentWorkingPath().isEmpty());
        QCOMPARE(db->getMapper(VNObjectTypeAnalysis) != nullptr, !reference);
        if (reference)
            QVERIFY(db->getMapper(VNObjectTypeCompound) && db->getMapper(VNObjectTypeIon));
        // Through the storage's own pointer, the kind's folders and its reset
        // for a new project are the module's.
        Sedra::TDatabase* base = db.get();
        const QStringList folders
            = reference ? QStringList{"Graphs"} : QStringList{"Analyses", "Indexations", "Pixmaps", "Wells"};
        QCOMPARE(base->folderNameList(), folders);
        base->forceDisableDatasetSave(0, true);
        VNObject2Project project(QStringLiteral("p"));
        QVERIFY(base->setProject(&project));
        QVERIFY(!base->isDatasetSaveDisabled());
        QVERIFY(log.messages(MessageLoggerInterface::LevelWarning).isEmpty());
    }

    void installedFactoryServesCallers()
    {
        VNDatabaseFactory factory;
        DatabaseFactoryInterface::install(&factory);
        std::unique_ptr<Sedra::TDatabase> db(
            DatabaseFactoryInterface::returnMe()->createDatabase(Sedra::DatabaseProject));
        QVERIFY(qobject_cast<VNDatabase*>(db.get()));
        // A copy is an independent factory, not a second installation.
        {
            VNDatabaseFactory copy(factory);
            QVERIFY(std::unique_ptr<Sedra::TDatabase>(copy.createDatabase(Sedra::DatabaseProject)));
        }
        QCOMPARE(DatabaseFactoryInterface::returnMe(), &factory);
        DatabaseFactoryInterface::uninstall(&factory);
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

        // A database made afterwards has no mappers (what it answers then is
        // the lifecycle tests' business).
        VNDatabase late(Sedra::DatabaseProject);
        QVERIFY(!late.getMapper(VNObjectTypeDataset));
    }
};

QTEST_GUILESS_MAIN(TestFactory)
#include "tst_vndatabasefactory.moc"
