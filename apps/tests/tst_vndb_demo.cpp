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
        const VndbResult first = VndbRunner::run({"demo"}, tmp.path());
        QCOMPARE(first.exitCode, 0);
        QVERIFY2(first.err.isEmpty(), qPrintable(first.err));
        const QString root = tmp.filePath("vndb-demo");
        for (const QString analysis : {"crude-oil-a", "crude-oil-b", "biomarkers-msms", "gas-oil-gcms"}) {
            QVERIFY2(QFile::exists(QString("%1/project/Analyses/%2/%2.tcm").arg(root, analysis)), qPrintable(analysis));
            QVERIFY(QFile::exists(QString("%1/project/Analyses/%2/acquisition.xml").arg(root, analysis)));
        }
        QVERIFY(first.out.contains("ANDI netCDF"));
        // The ChemStation folder brings its FID trace as a channel of the analysis.
        QVERIFY(QFile::exists(root + "/inputs/gas-oil-gcms.D/FID1A.ch"));
        QVERIFY2(first.out.contains("gas-oil-gcms: channel FID1A (pA), 14396 points"), qPrintable(first.out));
        const VndbResult fid = VndbRunner::run({"channel", root + "/project", "gas-oil-gcms", "FID1A"});
        QVERIFY2(fid.exitCode == 0 && fid.out.contains("FID1A (pA)"), qPrintable(fid.out + fid.err));
        QVERIFY(first.out.contains("EIC m/z 191"));
        QVERIFY(first.out.contains("->"));
        // The structure is repaired and the analyses registered in the project database.
        QVERIFY(
            first.out.contains(QString("Project structure is obsolete - Adding directory %1/project/Wells").arg(root)));
        QVERIFY(first.out.contains("sync while a module runs refused"));
        QVERIFY2(first.out.contains("sync: 4 added; 4 analyses in project.sqlite"), qPrintable(first.out));
        QVERIFY(QFileInfo(root + "/project/Wells").isDir());
        // A selector search over the merged reference database, its ticks saved for vndb select.
        QVERIFY2(first.out.contains("and Carbons = 30: C30 ab hopane"), qPrintable(first.out));
        const QString reference = root + "/reference";
        const VndbResult reloaded
            = VndbRunner::run({"select", "--dir", reference, "--load", root + "/selection.xml", "--search", "hopane"});
        QVERIFY2(reloaded.out.contains("[x] C30 ab hopane"), qPrintable(reloaded.out));
        // The user's own compound is in the selector, as the merged database has it.
        const VndbResult user = VndbRunner::run({"select", "--dir", reference, "--search", "lycopane"});
        QVERIFY2(user.exitCode == 0 && user.out.contains("Lycopane  (C:Lyc)"), qPrintable(user.out + user.err));
        // Reference databases: the user's compound reaches the merged one.
        QVERIFY2(first.out.contains("user database: Lycopane added"), qPrintable(first.out));
        QVERIFY(first.out.contains("the merged database holds both sources"));
        const VndbResult merged = VndbRunner::run({"ref", "show", "Lyc", "--dir", root + "/reference"});
        QVERIFY2(merged.exitCode == 0 && merged.out.contains("45316-02-8"), qPrintable(merged.out + merged.err));
        QImage tic;
        QVERIFY(tic.load(root + "/plots/crude-oil-a-tic.png"));
        QCOMPARE(tic.size(), QSize(1200, 700));
        // Parameters of the full-scan runs, stored, and a diagram with its zones.
        QVERIFY2(first.out.contains("crude-oil-a: Pr/Ph"), qPrintable(first.out));
        QVERIFY(first.out.contains("Ts/(Ts+Tm)"));
        for (const QString diagram : {"maturity-diagram.png", "pristane-phytane-diagram.png"}) {
            QImage image;
            QVERIFY2(image.load(root + "/plots/" + diagram), qPrintable(diagram));
            QCOMPARE(image.size(), QSize(900, 600));
        }
        QVERIFY2(first.out.contains("plots/maturity-diagram.png: Ts/(Ts+Tm) vs CPI with its zones"),
                 qPrintable(first.out));
        const VndbResult stored
            = VndbRunner::run({"params", root + "/project", "crude-oil-b", "--dir", reference, "--csv"});
        QVERIFY2(stored.exitCode == 0 && stored.out.contains("crude-oil-b,CPI,"), qPrintable(stored.out + stored.err));

        // Again: the analyses are kept as they were, the walkthrough is the same.
        const auto analyses = VndbRunner::snapshot(root + "/project/Analyses");
        const VndbResult second = VndbRunner::run({"demo", root, "--json"});
        QCOMPARE(second.exitCode, 0);
        QCOMPARE(VndbRunner::snapshot(root + "/project/Analyses"), analyses);
        const QJsonObject json = QJsonDocument::fromJson(second.out.toUtf8()).object();
        QCOMPARE(json.value("project").toString(), root + "/project");
        const QJsonArray steps = json.value("steps").toArray();
        QVERIFY(steps.size() >= 7);
        const QString references = QString::fromUtf8(QJsonDocument(steps.at(5).toObject()).toJson());
        QVERIFY2(references.contains("delivered database kept") && !references.contains("added"),
                 qPrintable(references));
        QVERIFY(references.contains("the merged database holds both sources"));
        const QString imports = QString::fromUtf8(QJsonDocument(steps.at(1).toObject()).toJson());
        QCOMPARE(imports.count("kept"), 4);
        const QString structure = QString::fromUtf8(QJsonDocument(steps.at(2).toObject()).toJson());
        QVERIFY(structure.contains("structure check: complete"));
        QVERIFY(structure.contains("read-only sync refused"));
        QVERIFY(structure.contains("sync: 0 added; 4 analyses"));

        // The workspace serves the other commands.
        const VndbResult spectrum = VndbRunner::run({"spectrum", root + "/project", "crude-oil-b", "100"});
        QCOMPARE(spectrum.exitCode, 0);
    }

    void demoRefusesAFileInPlaceOfItsFolder()
    {
        QTemporaryDir tmp;
        const QString file = tmp.filePath("taken");
        QVERIFY(VndbRunner::writeFile(file, "x"));
        const VndbResult result = VndbRunner::run({"demo", file});
        VNDB_REFUSED(result, 1, "");
        QCOMPARE(VndbRunner::readFile(file), QByteArray("x"));
    }

    void demoStopsOnADamagedAnalysis()
    {
        QTemporaryDir tmp;
        const QString root = tmp.filePath("ws");
        QCOMPARE(VndbRunner::run({"demo", root}).exitCode, 0);
        const QString tcm = root + "/project/Analyses/crude-oil-a/crude-oil-a.tcm";
        QByteArray bytes = VndbRunner::readFile(tcm);
        bytes.chop(100);
        QVERIFY(VndbRunner::writeFile(tcm, bytes));
        const VndbResult result = VndbRunner::run({"demo", root});
        VNDB_REFUSED(result, 1, "");
        QVERIFY2(result.err.contains("crude-oil-a") && result.err.contains("damaged"), qPrintable(result.err));
        // The damaged file is reported, not replaced behind the user's back.
        QCOMPARE(VndbRunner::readFile(tcm), bytes);
    }
};

QTEST_GUILESS_MAIN(TestVndbDemo)
#include "tst_vndb_demo.moc"
