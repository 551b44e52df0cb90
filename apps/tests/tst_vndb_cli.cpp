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
        QTest::newRow("demo") << QStringLiteral("demo") << QStringLiteral("vndb-demo");
        QTest::newRow("project") << QStringLiteral("project") << QStringLiteral("--read-only");
        QTest::newRow("import") << QStringLiteral("import") << QStringLiteral("--name");
        QTest::newRow("tic") << QStringLiteral("tic") << QStringLiteral("DIR ANALYSIS");
        QTest::newRow("eic") << QStringLiteral("eic") << QStringLiteral("--window");
        QTest::newRow("spectrum") << QStringLiteral("spectrum") << QStringLiteral("FIRST [LAST]");
        QTest::newRow("plot") << QStringLiteral("plot") << QStringLiteral("--output");
        QTest::newRow("select") << QStringLiteral("select") << QStringLiteral("--filter LABEL=VALUE");
    }

    void everyCommandExplainsItself()
    {
        QFETCH(QString, command);
        QFETCH(QString, mentions);
        for (const QStringList& words : {QStringList{command, QStringLiteral("--help")},
                                         QStringList{QStringLiteral("help"), command},
                                         QStringList{command, QStringLiteral("-h"), QStringLiteral("extra")}}) {
            const VndbResult result = VndbRunner::run(words);
            QCOMPARE(result.exitCode, 0);
            QVERIFY(result.out.startsWith(QStringLiteral("Usage: vndb ") + command));
            QVERIFY2(result.out.contains(mentions), qPrintable(result.out));
            QVERIFY(result.out.contains(QLatin1String("--lang")));
        }
        // The general help lists the command.
        const VndbResult general = VndbRunner::run({QStringLiteral("--help")});
        QCOMPARE(general.exitCode, 0);
        QVERIFY(general.out.contains(QStringLiteral("  ") + command + QLatin1Char(' ')));
    }

    void commandLineMistakesExitWithTwo_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("reason");
        QTest::newRow("nothing") << QStringList() << QString();
        QTest::newRow("unknown command") << QStringList{QStringLiteral("frobnicate")} << QStringLiteral("unknown command 'frobnicate'");
        QTest::newRow("unknown language") << QStringList{QStringLiteral("--lang"), QStringLiteral("de"), QStringLiteral("tic")}
                                          << QStringLiteral("unknown language 'de'");
        QTest::newRow("too many words") << QStringList{QStringLiteral("tic"), QStringLiteral("a"), QStringLiteral("b"),
                                                       QStringLiteral("c")}
                                        << QStringLiteral("unexpected argument 'c'");
        QTest::newRow("value missing") << QStringList{QStringLiteral("import"), QStringLiteral("a"), QStringLiteral("b"),
                                                      QStringLiteral("--name")}
                                       << QStringLiteral("needs a value");
        QTest::newRow("flag with a value") << QStringList{QStringLiteral("plot"), QStringLiteral("a"), QStringLiteral("b"),
                                                          QStringLiteral("--tic=yes")}
                                           << QStringLiteral("takes no value");
        QTest::newRow("unknown project action") << QStringList{QStringLiteral("project"), QStringLiteral("explode"),
                                                               QStringLiteral("/tmp")}
                                                << QStringLiteral("unknown action 'explode'");
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
        QVERIFY2(result.err.startsWith(QLatin1String("vndb: ")) && result.err.contains(reason), qPrintable(result.err));
        QVERIFY(result.err.contains(QLatin1String("--help")));
    }

    void frenchMessages_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("missing project") << QStringList{QStringLiteral("tic"), QStringLiteral("/nonexistent/p"), QStringLiteral("a")}
                                         << QStringLiteral("project folder '/nonexistent/p' does not exist")
                                         << QStringLiteral("le dossier de projet '/nonexistent/p' n'existe pas");
        QTest::newRow("usage") << QStringList{QStringLiteral("spectrum"), QStringLiteral("/tmp"), QStringLiteral("a"),
                                              QStringLiteral("x")}
                               << QStringLiteral("'x' is not a scan number (see vndb spectrum --help)")
                               << QStringLiteral("'x' n'est pas un numéro de scan (voir vndb spectrum --help)");
        const QString temp = QDir::tempPath();
        QTest::newRow("unknown analysis") << QStringList{QStringLiteral("eic"), temp, QStringLiteral("no-such-analysis"),
                                                         QStringLiteral("57")}
                                          << QStringLiteral("unknown analysis 'no-such-analysis' in project '%1'").arg(temp)
                                          << QStringLiteral("analyse 'no-such-analysis' inconnue dans le projet '%1'").arg(temp);
        QTest::newRow("unknown command") << QStringList{QStringLiteral("frob")} << QStringLiteral("unknown command 'frob'")
                                         << QStringLiteral("commande inconnue 'frob'");
    }

    void frenchMessages()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const VndbResult en = VndbRunner::run(words);
        QVERIFY2(en.err.contains(english), qPrintable(en.err));
        // The option may stand anywhere on the line.
        const VndbResult fr = VndbRunner::run(words + QStringList{QStringLiteral("--lang"), QStringLiteral("fr")});
        QCOMPARE(fr.exitCode, en.exitCode);
        QCOMPARE(fr.errLines().size(), 1);
        QVERIFY2(fr.err.contains(french), qPrintable(fr.err));
        const VndbResult frFirst = VndbRunner::run(QStringList{QStringLiteral("--lang=fr")} + words);
        QCOMPARE(frFirst.err, fr.err);
    }

    void frenchHelpAndLibraryReasons()
    {
        const VndbResult help = VndbRunner::run({QStringLiteral("--lang"), QStringLiteral("fr"), QStringLiteral("plot"),
                                                 QStringLiteral("--help")});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.startsWith(QStringLiteral("Utilisation : vndb plot")));
        QVERIFY(help.out.contains(QStringLiteral("dessine un chromatogramme")));

        // A reason given by the file readers comes in French too, on the same line.
        QTemporaryDir tmp;
        QVERIFY(QDir().mkpath(tmp.filePath(QStringLiteral("p"))));
        QVERIFY(VndbRunner::writeFile(tmp.filePath(QStringLiteral("bad.csv")), "1.0,57:12 71\n"));
        const VndbResult fr = VndbRunner::run({QStringLiteral("import"), tmp.filePath(QStringLiteral("p")),
                                               tmp.filePath(QStringLiteral("bad.csv")), QStringLiteral("--lang"),
                                               QStringLiteral("fr")});
        QCOMPARE(fr.exitCode, 1);
        QCOMPARE(fr.errLines().size(), 1);
        QVERIFY2(fr.err.contains(QStringLiteral("impossible de lire")) && fr.err.contains(QStringLiteral("ligne 1")),
                 qPrintable(fr.err));
    }

    void projectListShowsTheAnalysesAndRefusesMissingFolders()
    {
        QTemporaryDir tmp;
        const QString project = tmp.filePath(QStringLiteral("p"));
        QVERIFY(QDir().mkpath(project));
        QVERIFY(VndbRunner::writeFile(tmp.filePath(QStringLiteral("one.csv")), "1.0,57:12 71:3\n1.1,57:10\n"));
        QCOMPARE(VndbRunner::run({QStringLiteral("import"), project, tmp.filePath(QStringLiteral("one.csv"))}).exitCode, 0);
        const VndbResult list = VndbRunner::run({QStringLiteral("project"), QStringLiteral("list"), project});
        QCOMPARE(list.exitCode, 0);
        QVERIFY2(list.out.contains(QLatin1String("one: 2 scans")), qPrintable(list.out));

        const VndbResult missing = VndbRunner::run({QStringLiteral("project"), QStringLiteral("list"),
                                                    tmp.filePath(QStringLiteral("absent"))});
        QCOMPARE(missing.exitCode, 1);
        QCOMPARE(missing.errLines().size(), 1);
        QVERIFY(!QFileInfo::exists(tmp.filePath(QStringLiteral("absent"))));
    }
};

QTEST_GUILESS_MAIN(TestVndbCli)
#include "tst_vndb_cli.moc"
