// vndb project: the structure check and repair, the synchronisation of the
// project database with the folders, and their refusals (read-only project,
// module running, damaged database), which leave the folder as it was.
#include "vndbrunner.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {
QJsonObject json(const VndbResult& result)
{
    return QJsonDocument::fromJson(result.out.toUtf8()).object();
}

QStringList strings(const QJsonValue& value)
{
    QStringList list;
    for (const QJsonValue& item : value.toArray())
        list << item.toString();
    return list;
}

VndbResult project(const QString& action, const QString& dir, const QStringList& more = {})
{
    return VndbRunner::run(QStringList{QStringLiteral("project"), action, dir} + more);
}
} // namespace

class TestVndbProject : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_tmp;
    int m_count = 0;

    // A project made by imports alone: an analyses folder and nothing else.
    QString importedProject(const QStringList& analyses)
    {
        const QString dir = m_tmp.filePath(QStringLiteral("p%1").arg(++m_count));
        [&] { QVERIFY(QDir().mkpath(dir)); }();
        const QString csv = m_tmp.filePath(QStringLiteral("run.csv"));
        VndbRunner::writeFile(csv, "1.0,57:12 71:3\n1.1,57:10 71:4\n1.2,57:8\n");
        for (const QString& name : analyses) {
            const VndbResult imported = VndbRunner::run({QStringLiteral("import"), dir, csv, QStringLiteral("--name"), name});
            [&] { QCOMPARE(imported.exitCode, 0); }();
        }
        return dir;
    }

private slots:
    void initTestCase() { QVERIFY(m_tmp.isValid()); }

    void checkRepairsTheStructureAndSaysSo()
    {
        const QString dir = importedProject({QStringLiteral("oil")});

        // Read-only: the missing folders are reported, not made.
        const auto before = VndbRunner::snapshot(dir);
        const VndbResult readOnly = project(QStringLiteral("check"), dir, {QStringLiteral("--read-only")});
        QCOMPARE(readOnly.exitCode, 1);
        QCOMPARE(readOnly.errLines().size(), 1);
        QVERIFY2(readOnly.err.contains(QLatin1String("Indexations, Pixmaps, Wells")), qPrintable(readOnly.err));
        QVERIFY(readOnly.out.contains(QLatin1String("Wells/: missing (not repaired: read-only)")));
        QCOMPARE(VndbRunner::snapshot(dir), before);

        // Repair: the project database recreates them and its message is shown.
        const VndbResult repair = project(QStringLiteral("check"), dir, {QStringLiteral("--json")});
        QCOMPARE(repair.exitCode, 0);
        const QJsonObject result = json(repair);
        QCOMPARE(strings(result.value(QStringLiteral("created"))),
                 QStringList({QStringLiteral("Indexations"), QStringLiteral("Pixmaps"), QStringLiteral("Wells")}));
        const QStringList messages = strings(result.value(QStringLiteral("messages")));
        QCOMPARE(messages.size(), 3);
        QCOMPARE(messages.first(),
                 QStringLiteral("Project structure is obsolete - Adding directory %1/Indexations").arg(dir));
        for (const QString& folder : {QStringLiteral("Indexations"), QStringLiteral("Pixmaps"), QStringLiteral("Wells")})
            QVERIFY(QFileInfo(dir + QLatin1Char('/') + folder).isDir());
        // A check makes no project database.
        QVERIFY(!QFileInfo::exists(dir + QStringLiteral("/project.sqlite")));

        // Now complete, in both modes and both languages.
        const VndbResult again = project(QStringLiteral("check"), dir, {QStringLiteral("--read-only")});
        QCOMPARE(again.exitCode, 0);
        QVERIFY(again.out.contains(QLatin1String("Structure complete.")));
        QVERIFY(again.out.contains(QLatin1String("Analyses/: 0 files, 1 folders")));
        const VndbResult french = project(QStringLiteral("check"), dir, {QStringLiteral("--lang"), QStringLiteral("fr")});
        QVERIFY(french.out.contains(QStringLiteral("Structure complète.")));
    }

    void checkInFrenchUsesTheLibrarysFrenchMessage()
    {
        const QString dir = importedProject({});
        const VndbResult repair = project(QStringLiteral("check"), dir, {QStringLiteral("--lang"), QStringLiteral("fr")});
        QCOMPARE(repair.exitCode, 0);
        QVERIFY2(repair.out.contains(QStringLiteral("La structure du projet est obsolète - Ajout du dossier %1/Wells").arg(dir)),
                 qPrintable(repair.out));
        QVERIFY(repair.out.contains(QStringLiteral("Wells/: manquant, créé")));
    }

    void checkReportsIncompleteAnalyses()
    {
        const QString dir = importedProject({QStringLiteral("a"), QStringLiteral("b")});
        QVERIFY(QFile::remove(dir + QStringLiteral("/Analyses/b/acquisition.xml")));
        const VndbResult result = project(QStringLiteral("check"), dir, {QStringLiteral("--json")});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(strings(json(result).value(QStringLiteral("incompleteAnalyses"))), QStringList{QStringLiteral("b")});
    }

    void syncRegistersTheAnalysesFoundOnDisk()
    {
        const QString dir = importedProject({QStringLiteral("oil-a"), QStringLiteral("oil-b")});

        // Before any sync, list knows the folders but not the database.
        VndbResult list = project(QStringLiteral("list"), dir, {QStringLiteral("--json")});
        QCOMPARE(list.exitCode, 0);
        QCOMPARE(json(list).value(QStringLiteral("database")).toBool(), false);
        QVERIFY(!QFileInfo::exists(dir + QStringLiteral("/project.sqlite")));

        VndbResult sync = project(QStringLiteral("sync"), dir, {QStringLiteral("--json")});
        QCOMPARE(sync.exitCode, 0);
        QJsonObject result = json(sync);
        QCOMPARE(strings(result.value(QStringLiteral("added"))), QStringList({QStringLiteral("oil-a"), QStringLiteral("oil-b")}));
        QCOMPARE(strings(result.value(QStringLiteral("analyses"))), QStringList({QStringLiteral("oil-a"), QStringLiteral("oil-b")}));
        QVERIFY(strings(result.value(QStringLiteral("messages")))
                    .contains(QStringLiteral("Analysis oil-a found on disk was added to the project")));
        QVERIFY(QFileInfo(dir + QStringLiteral("/project.sqlite")).isFile());

        // Twice: nothing more to add.
        sync = project(QStringLiteral("sync"), dir);
        QCOMPARE(sync.exitCode, 0);
        QVERIFY2(sync.out.contains(QLatin1String("Synchronised: 0 added, 0 with a missing folder, 0 skipped; 2 analyses")),
                 qPrintable(sync.out));

        // A vanished folder is reported and its record kept.
        QVERIFY(QDir(dir + QStringLiteral("/Analyses/oil-b")).removeRecursively());
        sync = project(QStringLiteral("sync"), dir, {QStringLiteral("--json")});
        QCOMPARE(sync.exitCode, 0);
        result = json(sync);
        QCOMPARE(strings(result.value(QStringLiteral("missingFolders"))), QStringList{QStringLiteral("oil-b")});
        QCOMPARE(strings(result.value(QStringLiteral("analyses"))).size(), 2);

        // list reads the database without changing it.
        const auto before = VndbRunner::snapshot(dir);
        list = project(QStringLiteral("list"), dir, {QStringLiteral("--json")});
        QCOMPARE(list.exitCode, 0);
        result = json(list);
        QCOMPARE(strings(result.value(QStringLiteral("missingFolders"))), QStringList{QStringLiteral("oil-b")});
        const QJsonObject first = result.value(QStringLiteral("analyses")).toArray().at(0).toObject();
        QCOMPARE(first.value(QStringLiteral("name")).toString(), QStringLiteral("oil-a"));
        QVERIFY(first.value(QStringLiteral("registered")).toBool());
        QCOMPARE(strings(first.value(QStringLiteral("signals"))), QStringList{QStringLiteral("TIC")});
        QCOMPARE(VndbRunner::snapshot(dir), before);
    }

    void refusedSyncsChangeNothing_data()
    {
        QTest::addColumn<bool>("withDatabase");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        const QString readOnlyEn = QStringLiteral("Impossible to synchronize project %1 because it is Read Only opened");
        const QString readOnlyFr = QStringLiteral("Impossible de synchroniser le projet %1 car il est ouvert en Lecture Seule");
        const QString moduleEn = QStringLiteral("Impossible to synchronize a project while a module is being used");
        const QString moduleFr = QStringLiteral("Impossible de synchroniser un projet lorsqu'un module est en cours d'utilisation");
        QTest::newRow("read-only") << true << QStringList{QStringLiteral("--read-only")} << readOnlyEn << readOnlyFr;
        QTest::newRow("module in use") << true << QStringList{QStringLiteral("--module-in-use"), QStringLiteral("peaks")}
                                       << moduleEn << moduleFr;
        QTest::newRow("module in use, new project") << false
                                                    << QStringList{QStringLiteral("--module-in-use"), QStringLiteral("peaks")}
                                                    << moduleEn << moduleFr;
        QTest::newRow("read-only without database") << false << QStringList{QStringLiteral("--read-only")}
                                                    << QStringLiteral("has no project database yet")
                                                    << QStringLiteral("n'a pas encore de base de données de projet");
    }

    void refusedSyncsChangeNothing()
    {
        QFETCH(bool, withDatabase);
        QFETCH(QStringList, options);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const QString dir = importedProject({QStringLiteral("oil")});
        if (withDatabase) {
            QCOMPARE(project(QStringLiteral("sync"), dir).exitCode, 0);
            // An analysis the next sync would add.
            QVERIFY(QDir().mkpath(dir + QStringLiteral("/Analyses/later")));
        }
        const QString name = QFileInfo(dir).fileName();
        const auto before = VndbRunner::snapshot(dir);
        for (const auto& language : {qMakePair(QStringLiteral("en"), english), qMakePair(QStringLiteral("fr"), french)}) {
            const VndbResult result = project(QStringLiteral("sync"), dir,
                                              options + QStringList{QStringLiteral("--lang"), language.first});
            QVERIFY(!result.crashed);
            QCOMPARE(result.exitCode, 1);
            QCOMPARE(result.errLines().size(), 1);
            const QString expected = language.second.contains(QLatin1String("%1")) ? language.second.arg(name) : language.second;
            QVERIFY2(result.err.startsWith(QLatin1String("vndb: ")) && result.err.contains(expected),
                     qPrintable(result.err));
            QVERIFY(result.out.isEmpty());
            QCOMPARE(VndbRunner::snapshot(dir), before);
        }
    }

    void damagedDatabaseOrMissingFolderIsRefused()
    {
        const QString dir = importedProject({QStringLiteral("oil")});
        QVERIFY(VndbRunner::writeFile(dir + QStringLiteral("/project.sqlite"), "not a database"));
        const auto before = VndbRunner::snapshot(dir);
        for (const QString& action : {QStringLiteral("sync"), QStringLiteral("list")}) {
            const VndbResult result = project(action, dir);
            QCOMPARE(result.exitCode, 1);
            QCOMPARE(result.errLines().size(), 1);
            QVERIFY2(result.err.contains(QLatin1String("cannot be opened")) && result.err.contains(QLatin1String("project.sqlite")),
                     qPrintable(result.err));
            QCOMPARE(VndbRunner::snapshot(dir), before);
        }

        const QString absent = m_tmp.filePath(QStringLiteral("absent"));
        for (const QString& action : {QStringLiteral("check"), QStringLiteral("sync"), QStringLiteral("list")}) {
            const VndbResult result = project(action, absent, {QStringLiteral("--lang"), QStringLiteral("fr")});
            QCOMPARE(result.exitCode, 1);
            QCOMPARE(result.errLines().size(), 1);
            QVERIFY2(result.err.contains(QStringLiteral("le dossier de projet '%1' n'existe pas").arg(absent)), qPrintable(result.err));
            QVERIFY(!QFileInfo::exists(absent));
        }
        // The module option is for sync alone.
        QCOMPARE(project(QStringLiteral("check"), dir, {QStringLiteral("--module-in-use"), QStringLiteral("x")}).exitCode, 2);
    }
};

QTEST_GUILESS_MAIN(TestVndbProject)
#include "tst_vndb_project.moc"
