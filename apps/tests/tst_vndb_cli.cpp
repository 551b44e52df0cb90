// The program as a whole: help, exit codes, one-line refusals and the two
// languages.
#include "vndbrunner.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

class TestVndbCli : public QObject
{
    Q_OBJECT

private slots:
    void everyCommandExplainsItself_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("mentions");
        QTest::newRow("demo") << "demo"
                              << "vndb-demo";
        QTest::newRow("project") << "project"
                                 << "--read-only";
        QTest::newRow("import") << "import"
                                << "--name";
        QTest::newRow("tic") << "tic"
                             << "DIR ANALYSIS";
        QTest::newRow("eic") << "eic"
                             << "--window";
        QTest::newRow("spectrum") << "spectrum"
                                  << "FIRST [LAST]";
        QTest::newRow("plot") << "plot"
                              << "--output";
        QTest::newRow("select") << "select"
                                << "--filter LABEL=VALUE";
    }

    void everyCommandExplainsItself()
    {
        QFETCH(QString, command);
        QFETCH(QString, mentions);
        for (const QStringList& words :
             {QStringList{command, "--help"}, QStringList{"help", command}, QStringList{command, "-h", "extra"}}) {
            const VndbResult result = VndbRunner::run(words);
            QCOMPARE(result.exitCode, 0);
            QVERIFY(result.out.startsWith("Usage: vndb " + command));
            QVERIFY2(result.out.contains(mentions), qPrintable(result.out));
            QVERIFY(result.out.contains("--lang"));
        }
        // The general help lists the command.
        const VndbResult general = VndbRunner::run({"--help"});
        QCOMPARE(general.exitCode, 0);
        QVERIFY(general.out.contains("  " + command + QLatin1Char(' ')));
    }

    void commandLineMistakesExitWithTwo_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("reason");
        QTest::newRow("nothing") << QStringList() << QString();
        QTest::newRow("unknown command") << QStringList{"frobnicate"} << "unknown command 'frobnicate'";
        QTest::newRow("unknown language") << QStringList{"--lang", "de", "tic"} << "unknown language 'de'";
        QTest::newRow("too many words") << QStringList{"tic", "a", "b", "c"} << "unexpected argument 'c'";
        QTest::newRow("value missing") << QStringList{"import", "a", "b", "--name"} << "needs a value";
        QTest::newRow("flag with a value") << QStringList{"plot", "a", "b", "--tic=yes"} << "takes no value";
        QTest::newRow("unknown project action")
            << QStringList{"project", "explode", "/tmp"} << "unknown action 'explode'";
    }

    void commandLineMistakesExitWithTwo()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, reason);
        const VndbResult result = VndbRunner::run(words);
        QVERIFY(!result.crashed);
        QCOMPARE(result.exitCode, 2);
        if (reason.isEmpty())
            return; // no command at all: the general help
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY2(result.err.startsWith("vndb: ") && result.err.contains(reason), qPrintable(result.err));
        QVERIFY(result.err.contains("--help"));
    }

    void frenchMessages_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("missing project") << QStringList{"tic", "/nonexistent/p", "a"}
                                         << "project folder '/nonexistent/p' does not exist"
                                         << "le dossier de projet '/nonexistent/p' n'existe pas";
        QTest::newRow("usage") << QStringList{"spectrum", "/tmp", "a", "x"}
                               << "'x' is not a scan number (see vndb spectrum --help)"
                               << "'x' n'est pas un numéro de scan (voir vndb spectrum --help)";
        const QString temp = QDir::tempPath();
        QTest::newRow("unknown analysis")
            << QStringList{"eic", temp, "no-such-analysis", "57"}
            << QString("unknown analysis 'no-such-analysis' in project '%1'").arg(temp)
            << QString("analyse 'no-such-analysis' inconnue dans le projet '%1'").arg(temp);
        QTest::newRow("unknown command") << QStringList{"frob"} << "unknown command 'frob'"
                                         << "commande inconnue 'frob'";
    }

    void frenchMessages()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const VndbResult en = VndbRunner::run(words);
        QVERIFY2(en.err.contains(english), qPrintable(en.err));
        // The option may stand anywhere on the line.
        const VndbResult fr = VndbRunner::run(words + QStringList{"--lang", "fr"});
        VNDB_REFUSED(fr, en.exitCode, french);
        const VndbResult frFirst = VndbRunner::run(QStringList{"--lang=fr"} + words);
        QCOMPARE(frFirst.err, fr.err);
    }

    void frenchHelpAndLibraryReasons()
    {
        const VndbResult help = VndbRunner::run({"--lang", "fr", "plot", "--help"});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.startsWith("Utilisation : vndb plot"));
        QVERIFY(help.out.contains("dessine un chromatogramme"));

        // A reason given by the file readers comes in French too, on the same line.
        QTemporaryDir tmp;
        QVERIFY(QDir().mkpath(tmp.filePath("p")));
        QVERIFY(VndbRunner::writeFile(tmp.filePath("bad.csv"), "1.0,57:12 71\n"));
        const VndbResult fr = VndbRunner::run({"import", tmp.filePath("p"), tmp.filePath("bad.csv"), "--lang", "fr"});
        VNDB_REFUSED(fr, 1, "");
        QVERIFY2(fr.err.contains("impossible de lire") && fr.err.contains("ligne 1"), qPrintable(fr.err));
    }

    void projectListShowsTheAnalyses()
    {
        QTemporaryDir tmp;
        const QString project = tmp.filePath("p");
        QVERIFY(QDir().mkpath(project));
        QVERIFY(VndbRunner::writeFile(tmp.filePath("one.csv"), "1.0,57:12 71:3\n1.1,57:10\n"));
        QCOMPARE(VndbRunner::run({"import", project, tmp.filePath("one.csv")}).exitCode, 0);
        const VndbResult list = VndbRunner::run({"project", "list", project});
        QCOMPARE(list.exitCode, 0);
        QVERIFY2(list.out.contains("one: 2 scans"), qPrintable(list.out));
    }
};

QTEST_GUILESS_MAIN(TestVndbCli)
#include "tst_vndb_cli.moc"
