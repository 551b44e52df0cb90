// vndb demo: a workspace that the other commands can use, made again safely.
#include "vndbrunner.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

class TestVndbDemo : public QObject
{
    Q_OBJECT

private slots:
    void demoBuildsAWorkspaceAndCanRunTwice()
    {
        QTemporaryDir tmp;
        QVERIFY(tmp.isValid());
        // The default folder is ./vndb-demo, in the folder vndb runs from.
        const VndbResult first = VndbRunner::run({QStringLiteral("demo")}, tmp.path());
        QCOMPARE(first.exitCode, 0);
        QVERIFY2(first.err.isEmpty(), qPrintable(first.err));
        const QString root = tmp.filePath(QStringLiteral("vndb-demo"));
        for (const QString& analysis : {QStringLiteral("crude-oil-a"), QStringLiteral("crude-oil-b"),
                                        QStringLiteral("biomarkers-msms")}) {
            QVERIFY2(QFile::exists(QStringLiteral("%1/project/Analyses/%2/%2.tcm").arg(root, analysis)), qPrintable(analysis));
            QVERIFY(QFile::exists(QStringLiteral("%1/project/Analyses/%2/acquisition.xml").arg(root, analysis)));
        }
        QVERIFY(first.out.contains(QLatin1String("ANDI netCDF")));
        QVERIFY(first.out.contains(QLatin1String("EIC m/z 191")));
        QVERIFY(first.out.contains(QLatin1String("->")));
        // The structure is repaired and the analyses registered in the project database.
        QVERIFY(first.out.contains(QStringLiteral("Project structure is obsolete - Adding directory %1/project/Wells").arg(root)));
        QVERIFY(first.out.contains(QLatin1String("sync while a module runs refused")));
        QVERIFY2(first.out.contains(QLatin1String("sync: 3 added; 3 analyses in project.sqlite")), qPrintable(first.out));
        QVERIFY(QFileInfo(root + QStringLiteral("/project/Wells")).isDir());
        // A selector search over the merged reference database, its ticks saved for vndb select.
        QVERIFY2(first.out.contains(QLatin1String("and Carbons = 30: C30 ab hopane")), qPrintable(first.out));
        const QString reference = root + QStringLiteral("/reference");
        const VndbResult reloaded = VndbRunner::run({QStringLiteral("select"), QStringLiteral("--dir"), reference,
                                                     QStringLiteral("--load"), root + QStringLiteral("/selection.xml"),
                                                     QStringLiteral("--search"), QStringLiteral("hopane")});
        QVERIFY2(reloaded.out.contains(QLatin1String("[x] C30 ab hopane")), qPrintable(reloaded.out));
        // The user's own compound is in the selector, as the merged database has it.
        const VndbResult user = VndbRunner::run({QStringLiteral("select"), QStringLiteral("--dir"), reference,
                                                 QStringLiteral("--search"), QStringLiteral("lycopane")});
        QVERIFY2(user.exitCode == 0 && user.out.contains(QLatin1String("Lycopane  (C:Lyc)")), qPrintable(user.out + user.err));
        // Reference databases: the user's compound reaches the merged one.
        QVERIFY2(first.out.contains(QLatin1String("user database: Lycopane added")), qPrintable(first.out));
        QVERIFY(first.out.contains(QLatin1String("the merged database holds both sources")));
        const VndbResult merged = VndbRunner::run({QStringLiteral("ref"), QStringLiteral("show"), QStringLiteral("Lyc"),
                                                   QStringLiteral("--dir"), root + QStringLiteral("/reference")});
        QVERIFY2(merged.exitCode == 0 && merged.out.contains(QLatin1String("45316-02-8")), qPrintable(merged.out + merged.err));
        QImage tic;
        QVERIFY(tic.load(root + QStringLiteral("/plots/crude-oil-a-tic.png")));
        QCOMPARE(tic.size(), QSize(1200, 700));

        // Again: the analyses are kept as they were, the walkthrough is the same.
        const auto analyses = VndbRunner::snapshot(root + QStringLiteral("/project/Analyses"));
        const VndbResult second = VndbRunner::run({QStringLiteral("demo"), root, QStringLiteral("--json")});
        QCOMPARE(second.exitCode, 0);
        QCOMPARE(VndbRunner::snapshot(root + QStringLiteral("/project/Analyses")), analyses);
        const QJsonObject json = QJsonDocument::fromJson(second.out.toUtf8()).object();
        QCOMPARE(json.value(QStringLiteral("project")).toString(), root + QStringLiteral("/project"));
        const QJsonArray steps = json.value(QStringLiteral("steps")).toArray();
        QVERIFY(steps.size() >= 7);
        const QString references = QString::fromUtf8(QJsonDocument(steps.at(5).toObject()).toJson());
        QVERIFY2(references.contains(QLatin1String("delivered database kept")) && !references.contains(QLatin1String("added")),
                 qPrintable(references));
        QVERIFY(references.contains(QLatin1String("the merged database holds both sources")));
        const QString imports = QString::fromUtf8(QJsonDocument(steps.at(1).toObject()).toJson());
        QCOMPARE(imports.count(QLatin1String("kept")), 3);
        const QString structure = QString::fromUtf8(QJsonDocument(steps.at(2).toObject()).toJson());
        QVERIFY(structure.contains(QLatin1String("structure check: complete")));
        QVERIFY(structure.contains(QLatin1String("read-only sync refused")));
        QVERIFY(structure.contains(QLatin1String("sync: 0 added; 3 analyses")));

        // The workspace serves the other commands.
        const VndbResult spectrum = VndbRunner::run({QStringLiteral("spectrum"), root + QStringLiteral("/project"),
                                                     QStringLiteral("crude-oil-b"), QStringLiteral("100")});
        QCOMPARE(spectrum.exitCode, 0);
    }

    void demoRefusesAFileInPlaceOfItsFolder()
    {
        QTemporaryDir tmp;
        const QString file = tmp.filePath(QStringLiteral("taken"));
        QVERIFY(VndbRunner::writeFile(file, "x"));
        const VndbResult result = VndbRunner::run({QStringLiteral("demo"), file});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errLines().size(), 1);
        QCOMPARE(VndbRunner::readFile(file), QByteArray("x"));
    }

    void demoStopsOnADamagedAnalysis()
    {
        QTemporaryDir tmp;
        const QString root = tmp.filePath(QStringLiteral("ws"));
        QCOMPARE(VndbRunner::run({QStringLiteral("demo"), root}).exitCode, 0);
        const QString tcm = root + QStringLiteral("/project/Analyses/crude-oil-a/crude-oil-a.tcm");
        QByteArray bytes = VndbRunner::readFile(tcm);
        bytes.chop(100);
        QVERIFY(VndbRunner::writeFile(tcm, bytes));
        const VndbResult result = VndbRunner::run({QStringLiteral("demo"), root});
        QCOMPARE(result.exitCode, 1);
        QCOMPARE(result.errLines().size(), 1);
        QVERIFY2(result.err.contains(QLatin1String("crude-oil-a")) && result.err.contains(QLatin1String("damaged")),
                 qPrintable(result.err));
        // The damaged file is reported, not replaced behind the user's back.
        QCOMPARE(VndbRunner::readFile(tcm), bytes);
    }
};

QTEST_GUILESS_MAIN(TestVndbDemo)
#include "tst_vndb_demo.moc"
