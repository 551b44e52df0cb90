#include <databasefactoryinterface.h>
#include <modulelauncherinterface.h>
#include <projectmgrinterface.h>
#include <tmodulelauncher.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {
struct Manager : ProjectMgrInterface
{
    Sedra::TDatabase* getCurrentDatabase() const override { return nullptr; }
    void refreshProject() override { }
};
struct Launcher : ModuleLauncherInterface
{
    bool inUse = false;
    bool isModuleInUse() const override { return inUse; }
};
struct Factory : DatabaseFactoryInterface
{
    Sedra::TDatabase* createDatabase(Sedra::DatabaseType) override { return nullptr; }
    Sedra::TDatabase* getDatabaseFromPath(const QString&) override { return nullptr; }
};

// The three services share one installation discipline; each case runs for all three.
template <typename Interface, typename Impl>
void checkStacking()
{
    QCOMPARE(Interface::returnMe(), static_cast<Interface*>(nullptr));
    Impl a, b, c;
    Interface::install(&a);
    Interface::install(&b);
    Interface::install(&c);
    QCOMPARE(Interface::returnMe(), &c);
    // Removing one from the middle leaves the top alone...
    Interface::uninstall(&b);
    QCOMPARE(Interface::returnMe(), &c);
    // ...and removing the top brings back the one below, not the removed one.
    Interface::uninstall(&c);
    QCOMPARE(Interface::returnMe(), &a);
    // Installing again moves an instance to the top without duplicating it.
    Interface::install(&b);
    Interface::install(&a);
    QCOMPARE(Interface::returnMe(), &a);
    Interface::uninstall(&a);
    QCOMPARE(Interface::returnMe(), &b);
    Interface::uninstall(&b);
    QCOMPARE(Interface::returnMe(), static_cast<Interface*>(nullptr));
    // Null and never-installed instances are ignored.
    Interface::install(nullptr);
    Interface::uninstall(&a);
    QCOMPARE(Interface::returnMe(), static_cast<Interface*>(nullptr));
}

template <typename Interface, typename Impl>
void checkDestructionAndCopies()
{
    Impl below;
    Interface::install(&below);
    {
        auto top = std::make_unique<Impl>();
        Interface::install(top.get());
        // A copy is a different service: it is not installed, and its end
        // leaves the installed original alone.
        {
            Impl copy(*top);
            QCOMPARE(Interface::returnMe(), static_cast<Interface*>(top.get()));
        }
        QCOMPARE(Interface::returnMe(), static_cast<Interface*>(top.get()));
    }
    // Destroyed while installed: the service below comes back, nothing dangles.
    QCOMPARE(Interface::returnMe(), static_cast<Interface*>(&below));
    Interface::uninstall(&below);
}
} // namespace

class TestServices : public QObject
{
    Q_OBJECT
private slots:
    void installationStacksInAnyOrder()
    {
        checkStacking<ProjectMgrInterface, Manager>();
        checkStacking<ModuleLauncherInterface, Launcher>();
        checkStacking<DatabaseFactoryInterface, Factory>();
    }

    void destroyedServicesUninstallThemselves()
    {
        checkDestructionAndCopies<ProjectMgrInterface, Manager>();
        checkDestructionAndCopies<ModuleLauncherInterface, Launcher>();
        checkDestructionAndCopies<DatabaseFactoryInterface, Factory>();
    }

    void launcherInstallsItselfOnlyWhenAsked()
    {
        {
            TModuleLauncher installed;
            QCOMPARE(ModuleLauncherInterface::returnMe(), &installed);
            TModuleLauncher aside(false);
            QCOMPARE(ModuleLauncherInterface::returnMe(), &installed);
        }
        QCOMPARE(ModuleLauncherInterface::returnMe(), static_cast<ModuleLauncherInterface*>(nullptr));
    }

    void launcherCountsNestedStarts()
    {
        TModuleLauncher launcher;
        QSignalSpy changes(&launcher, &TModuleLauncher::moduleInUseChanged);
        QVERIFY(!launcher.isModuleInUse());

        launcher.moduleStarted(QStringLiteral("Quantification"));
        launcher.moduleStarted(QStringLiteral("Quantification"));
        launcher.moduleStarted(QStringLiteral("Biomarkers"));
        QCOMPARE(launcher.runningModules(), QStringList({"Biomarkers", "Quantification"}));
        QVERIFY(ModuleLauncherInterface::returnMe()->isModuleInUse());

        // Finishing something that never started is refused and changes nothing.
        QVERIFY(!launcher.moduleFinished(QStringLiteral("Unknown")));
        QVERIFY(launcher.moduleFinished(QStringLiteral("Biomarkers")));
        QVERIFY(launcher.moduleFinished(QStringLiteral("Quantification")));
        // One start of "Quantification" is still running.
        QVERIFY(launcher.isModuleInUse());
        QVERIFY(launcher.moduleFinished(QStringLiteral("Quantification")));
        QVERIFY(!launcher.isModuleInUse());
        QVERIFY(!launcher.moduleFinished(QStringLiteral("Quantification")));

        // Only the transitions are signalled: in use once, idle once.
        QCOMPARE(changes.count(), 2);
        QCOMPARE(changes.at(0).at(0).toBool(), true);
        QCOMPARE(changes.at(1).at(0).toBool(), false);
    }
};

QTEST_GUILESS_MAIN(TestServices)
#include "tst_services.moc"
