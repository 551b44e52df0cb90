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
    return value.toVariant().toStringList();
}

VndbResult project(const QString& action, const QString& dir, const QStringList& more = {})
{
    return VndbRunner::run(QStringList{"project", action, dir} + more);
}
} // namespace

class TestVndbProject : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_tmp;
    int m_count = 0;

    // A project made by imports alone: an analyses folder and nothing else.
    // Null when an import failed (its error printed).
    QString importedProject(const QStringList& analyses)
    {
        const QString dir = m_tmp.filePath(QString("p%1").arg(++m_count));
        const QString csv = m_tmp.filePath("run.csv");
        VndbRunner::writeFile(csv, "1.0,57:12 71:3\n1.1,57:10 71:4\n1.2,57:8\n");
        for (const QString& name : analyses) {
            const VndbResult imported = VndbRunner::run({"import", dir, csv, "--name", name});
            if (imported.exitCode != 0) {
                qWarning("vndb import failed: %s", qPrintable(imported.err));
                return QString();
            }
        }
        return dir;
    }

private slots:
    void initTestCase() { QVERIFY(m_tmp.isValid()); }

    void checkRepairsTheStructureAndSaysSo()
    {
        const QString dir = importedProject({"oil", "b"});
        QVERIFY(!dir.isNull());
        QVERIFY(QFile::remove(dir + "/Analyses/b/acquisition.xml"));

        // Read-only: the missing folders are reported, not made.
        const auto before = VndbRunner::snapshot(dir);
        const VndbResult readOnly = project("check", dir, {"--read-only"});
        VNDB_REFUSED(readOnly, 1, "Indexations, Pixmaps, Wells");
        QVERIFY(readOnly.out.contains("Wells/: missing (not repaired: read-only)"));
        QCOMPARE(VndbRunner::snapshot(dir), before);

        // Repair: the project database recreates them and its message is shown.
        const VndbResult repair = project("check", dir, {"--json"});
        QCOMPARE(repair.exitCode, 0);
        const QJsonObject result = json(repair);
        QCOMPARE(strings(result.value("created")), QStringList({"Indexations", "Pixmaps", "Wells"}));
        QCOMPARE(strings(result.value("incompleteAnalyses")), QStringList{"b"});
        const QStringList messages = strings(result.value("messages"));
        QCOMPARE(messages.size(), 3);
        QCOMPARE(messages.first(), QString("Project structure is obsolete - Adding directory %1/Indexations").arg(dir));
        for (const QString folder : {"Indexations", "Pixmaps", "Wells"})
            QVERIFY(QFileInfo(dir + QLatin1Char('/') + folder).isDir());
        // A check makes no project database.
        QVERIFY(!QFileInfo::exists(dir + "/project.sqlite"));

        // Now complete, in both modes and both languages.
        const VndbResult again = project("check", dir, {"--read-only"});
        QCOMPARE(again.exitCode, 0);
        QVERIFY(again.out.contains("Structure complete."));
        QVERIFY(again.out.contains("Analyses/: 0 files, 2 folders"));
        QVERIFY(project("check", dir, {"--lang", "fr"}).out.contains("Structure complète."));

        // A French repair shows the library's own French message.
        const QString fr = importedProject({"oil"});
        QVERIFY(!fr.isNull());
        const VndbResult french = project("check", fr, {"--lang", "fr"});
        QCOMPARE(french.exitCode, 0);
        QVERIFY2(
            french.out.contains(QString("La structure du projet est obsolète - Ajout du dossier %1/Wells").arg(fr)),
            qPrintable(french.out));
        QVERIFY(french.out.contains("Wells/: manquant, créé"));
    }

    void syncRegistersTheAnalysesFoundOnDisk()
    {
        const QString dir = importedProject({"oil-a", "oil-b"});
        QVERIFY(!dir.isNull());

        // Before any sync, list knows the folders but not the database.
        VndbResult list = project("list", dir, {"--json"});
        QCOMPARE(list.exitCode, 0);
        QCOMPARE(json(list).value("database").toBool(), false);
        QVERIFY(!QFileInfo::exists(dir + "/project.sqlite"));

        VndbResult sync = project("sync", dir, {"--json"});
        QCOMPARE(sync.exitCode, 0);
        QJsonObject result = json(sync);
        QCOMPARE(strings(result.value("added")), QStringList({"oil-a", "oil-b"}));
        QCOMPARE(strings(result.value("analyses")), QStringList({"oil-a", "oil-b"}));
        QVERIFY(strings(result.value("messages")).contains("Analysis oil-a found on disk was added to the project"));
        QVERIFY(QFileInfo(dir + "/project.sqlite").isFile());

        // Twice: nothing more to add.
        sync = project("sync", dir);
        QCOMPARE(sync.exitCode, 0);
        QVERIFY2(sync.out.contains("Synchronised: 0 added, 0 with a missing folder, 0 skipped; 2 analyses"),
                 qPrintable(sync.out));

        // A vanished folder is reported and its record kept.
        QVERIFY(QDir(dir + "/Analyses/oil-b").removeRecursively());
        sync = project("sync", dir, {"--json"});
        QCOMPARE(sync.exitCode, 0);
        result = json(sync);
        QCOMPARE(strings(result.value("missingFolders")), QStringList{"oil-b"});
        QCOMPARE(strings(result.value("analyses")).size(), 2);

        // list reads the database without changing it.
        const auto before = VndbRunner::snapshot(dir);
        list = project("list", dir, {"--json"});
        QCOMPARE(list.exitCode, 0);
        result = json(list);
        QCOMPARE(strings(result.value("missingFolders")), QStringList{"oil-b"});
        const QJsonObject first = result.value("analyses").toArray().at(0).toObject();
        QCOMPARE(first.value("name").toString(), "oil-a");
        QVERIFY(first.value("registered").toBool());
        QCOMPARE(strings(first.value("signals")), QStringList{"TIC"});
        QCOMPARE(VndbRunner::snapshot(dir), before);
    }

    void refusedSyncsChangeNothing_data()
    {
        QTest::addColumn<bool>("withDatabase");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        const QString readOnlyEn = "Impossible to synchronize project %1 because it is Read Only opened";
        const QString readOnlyFr = "Impossible de synchroniser le projet %1 car il est ouvert en Lecture Seule";
        const QString moduleEn = "Impossible to synchronize a project while a module is being used";
        const QString moduleFr = "Impossible de synchroniser un projet lorsqu'un module est en cours d'utilisation";
        QTest::newRow("read-only") << true << QStringList{"--read-only"} << readOnlyEn << readOnlyFr;
        QTest::newRow("module in use") << true << QStringList{"--module-in-use", "peaks"} << moduleEn << moduleFr;
        QTest::newRow("module in use, new project")
            << false << QStringList{"--module-in-use", "peaks"} << moduleEn << moduleFr;
        QTest::newRow("read-only without database")
            << false << QStringList{"--read-only"} << "has no project database yet"
            << "n'a pas encore de base de données de projet";
    }

    void refusedSyncsChangeNothing()
    {
        QFETCH(bool, withDatabase);
        QFETCH(QStringList, options);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const QString dir = importedProject({"oil"});
        QVERIFY(!dir.isNull());
        if (withDatabase) {
            QCOMPARE(project("sync", dir).exitCode, 0);
            // An analysis the next sync would add.
            QVERIFY(QDir().mkpath(dir + "/Analyses/later"));
        }
        const QString name = QFileInfo(dir).fileName();
        const auto before = VndbRunner::snapshot(dir);
        for (const auto& language : {qMakePair(QString("en"), english), qMakePair(QString("fr"), french)}) {
            const VndbResult result = project("sync", dir, options + QStringList{"--lang", language.first});
            VNDB_REFUSED(result, 1, "");
            const QString expected = language.second.contains("%1") ? language.second.arg(name) : language.second;
            QVERIFY2(result.err.startsWith("vndb: ") && result.err.contains(expected), qPrintable(result.err));
            QVERIFY(result.out.isEmpty());
            QCOMPARE(VndbRunner::snapshot(dir), before);
        }
    }

    void damagedDatabaseOrMissingFolderIsRefused()
    {
        const QString dir = importedProject({"oil"});
        QVERIFY(!dir.isNull());
        QVERIFY(VndbRunner::writeFile(dir + "/project.sqlite", "not a database"));
        const auto before = VndbRunner::snapshot(dir);
        for (const QString action : {"sync", "list"}) {
            const VndbResult result = project(action, dir);
            VNDB_REFUSED(result, 1, "");
            QVERIFY2(result.err.contains("cannot be opened") && result.err.contains("project.sqlite"),
                     qPrintable(result.err));
            QCOMPARE(VndbRunner::snapshot(dir), before);
        }

        const QString absent = m_tmp.filePath("absent");
        for (const QString action : {"check", "sync", "list"}) {
            const VndbResult result = project(action, absent, {"--lang", "fr"});
            VNDB_REFUSED(result, 1, "");
            QVERIFY2(result.err.contains(QString("le dossier de projet '%1' n'existe pas").arg(absent)),
                     qPrintable(result.err));
            QVERIFY(!QFileInfo::exists(absent));
        }
        // The module option is for sync alone.
        QCOMPARE(project("check", dir, {"--module-in-use", "x"}).exitCode, 2);
    }

    void aFolderWithoutAProjectIsRefused_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("reason");
        const QString en = "holds no project (no project database, no project folders); vndb project init %1 makes one";
        const QString fr = "ne contient pas de projet (ni base de données de projet, ni dossiers de projet) ; "
                           "vndb project init %1 en crée un";
        for (const QString action : {"list", "check", "sync"}) {
            QTest::addRow("%s en", qPrintable(action)) << action << "en" << en;
            QTest::addRow("%s fr", qPrintable(action)) << action << "fr" << fr;
        }
    }

    // A folder of other things never becomes a project by accident, not even
    // an empty one: only init and import make projects.
    void aFolderWithoutAProjectIsRefused()
    {
        QFETCH(QString, action);
        QFETCH(QString, language);
        QFETCH(QString, reason);
        const QString empty = m_tmp.filePath(QString("empty%1").arg(++m_count));
        const QString other = m_tmp.filePath(QString("other%1").arg(++m_count));
        QVERIFY(QDir().mkpath(empty));
        QVERIFY(QDir().mkpath(other) && VndbRunner::writeFile(other + "/notes.txt", "not a project"));
        for (const QString& dir : {empty, other}) {
            const auto before = VndbRunner::snapshot(dir);
            const VndbResult refused = project(action, dir, {"--lang", language});
            VNDB_REFUSED(refused, 1, reason.arg(dir));
            QCOMPARE(VndbRunner::snapshot(dir), before);
            QCOMPARE(QDir(dir).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), dir == empty ? 0 : 1);
        }
    }

    // init and import make projects in a missing or empty folder; only init
    // takes a folder of other things, and keeps them.
    void initAndImportMakeProjectsOnlyWhereAllowed()
    {
        const QString other = m_tmp.filePath(QString("other%1").arg(++m_count));
        QVERIFY(QDir().mkpath(other) && VndbRunner::writeFile(other + "/notes.txt", "kept"));
        const QString csv = m_tmp.filePath("run.csv");
        QVERIFY(VndbRunner::writeFile(csv, "1.0,57:12 71:3\n1.1,57:10 71:4\n"));
        const auto before = VndbRunner::snapshot(other);
        const VndbResult refused = VndbRunner::run({"import", other, csv});
        VNDB_REFUSED(refused, 1, "vndb project init");
        QCOMPARE(VndbRunner::snapshot(other), before);
        const QString empty = m_tmp.filePath(QString("empty%1").arg(++m_count));
        QVERIFY(QDir().mkpath(empty));
        QCOMPARE(VndbRunner::run({"import", empty, csv, "--name", "oil"}).exitCode, 0);
        QCOMPARE(project("list", empty).exitCode, 0);

        const QString missing = m_tmp.filePath(QString("new%1/project").arg(++m_count));
        for (const QString& dir : {other, missing}) {
            const VndbResult made = project("init", dir, {"--json"});
            QCOMPARE(made.exitCode, 0);
            QCOMPARE(strings(json(made).value("folders")),
                     QStringList({"Analyses", "Indexations", "Pixmaps", "Wells"}));
            QVERIFY(QFileInfo::exists(dir + "/project.sqlite"));
            QCOMPARE(project("list", dir).exitCode, 0);
            QVERIFY(project("check", dir, {"--read-only"}).out.contains("Structure complete."));
            // Again: nothing to make, nothing lost.
            QCOMPARE(project("init", dir).exitCode, 0);
        }
        QCOMPARE(VndbRunner::readFile(other + "/notes.txt"), QByteArray("kept"));
        QCOMPARE(project("init", other, {"--read-only"}).exitCode, 2);
        const VndbResult onAFile = project("init", other + "/notes.txt");
        VNDB_REFUSED(onAFile, 1, "is not a folder");
    }
};

QTEST_GUILESS_MAIN(TestVndbProject)
#include "tst_vndb_project.moc"
