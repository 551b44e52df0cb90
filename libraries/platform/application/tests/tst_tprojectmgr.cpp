// The default project manager with real storage databases: ownership of the
// current database, databases destroyed behind its back, refresh requests.
#include <projectmgrinterface.h>
#include <tdatabase.h>
#include <tprojectmgr.h>

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

class TestProjectMgr : public QObject
{
    Q_OBJECT
private slots:
    void installsItselfOnlyWhenAsked()
    {
        QCOMPARE(ProjectMgrInterface::returnMe(), static_cast<ProjectMgrInterface*>(nullptr));
        {
            TProjectMgr installed;
            TProjectMgr aside(false);
            QCOMPARE(ProjectMgrInterface::returnMe(), &installed);
        }
        QCOMPARE(ProjectMgrInterface::returnMe(), static_cast<ProjectMgrInterface*>(nullptr));
    }

    void ownedDatabasesAreDeletedWhenReplaced()
    {
        TProjectMgr manager;
        QSignalSpy changes(&manager, &TProjectMgr::currentDatabaseChanged);
        QPointer<Sedra::TDatabase> first = new Sedra::TDatabase(Sedra::DatabaseProject);
        auto* borrowed = new Sedra::TDatabase(Sedra::DatabaseProject);

        manager.setCurrentDatabase(first, true);
        QVERIFY(manager.ownsCurrentDatabase());
        // Setting the same database again neither deletes it nor signals.
        manager.setCurrentDatabase(first, true);
        QVERIFY(first);
        manager.setCurrentDatabase(borrowed, false);
        QVERIFY(!first);
        QCOMPARE(manager.getCurrentDatabase(), borrowed);
        QVERIFY(!manager.ownsCurrentDatabase());
        // A borrowed database survives being replaced.
        manager.setCurrentDatabase(nullptr);
        QCOMPARE(manager.getCurrentDatabase(), static_cast<Sedra::TDatabase*>(nullptr));
        QCOMPARE(changes.count(), 3);
        delete borrowed;
    }

    void databaseDestroyedElsewhereIsForgotten()
    {
        TProjectMgr manager;
        auto* db = new Sedra::TDatabase(Sedra::DatabaseProject);
        manager.setCurrentDatabase(db, true);
        delete db;
        QCOMPARE(ProjectMgrInterface::returnMe()->getCurrentDatabase(), static_cast<Sedra::TDatabase*>(nullptr));
        QVERIFY(!manager.ownsCurrentDatabase());
        // Nothing is deleted twice when the manager goes.
    }

    void takenDatabaseBelongsToTheCaller()
    {
        QPointer<Sedra::TDatabase> db;
        {
            TProjectMgr manager;
            db = new Sedra::TDatabase(Sedra::DatabaseProject);
            manager.setCurrentDatabase(db, true);
            QCOMPARE(manager.takeCurrentDatabase(), db.data());
            QCOMPARE(manager.getCurrentDatabase(), static_cast<Sedra::TDatabase*>(nullptr));
        }
        QVERIFY(db);
        delete db;
    }

    void refreshRequestsAreSignalled()
    {
        TProjectMgr manager;
        QSignalSpy refreshed(&manager, &TProjectMgr::projectRefreshed);
        ProjectMgrInterface::returnMe()->refreshProject();
        ProjectMgrInterface::returnMe()->refreshProject();
        QCOMPARE(refreshed.count(), 2);
        QCOMPARE(manager.refreshCount(), 2);
    }
};

QTEST_GUILESS_MAIN(TestProjectMgr)
#include "tst_tprojectmgr.moc"
