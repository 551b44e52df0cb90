// vndb params and vndb diagram: the parameters of the reference databases for
// the analyses of a project (JSON keys, null with a reason where a compound is
// missing, values stored), and diagrams written whole, with refusals that leave
// every file as it was.
#include "vndbrunner.h"

#include <tcmfile.h>

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

class TestVndbParams : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;
    QString m_project;
    QString m_reference;

    QJsonArray paramsJson(const QStringList& words, VndbResult* result = nullptr)
    {
        const VndbResult run
            = VndbRunner::run(QStringList{"params", m_project} + words + QStringList{"--dir", m_reference, "--json"});
        if (result)
            *result = run;
        return QJsonDocument::fromJson(run.out.toUtf8()).array();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        m_project = m_tmp.filePath("project");
        m_reference = m_tmp.filePath("reference");
        QVERIFY(QDir().mkpath(m_project));
        for (const QString& name : {QStringLiteral("oil-a"), QStringLiteral("oil-b")}) {
            const QString file = m_tmp.filePath(name + ".tcm");
            QVERIFY(TCMFile::save(file, VndbRunner::smallRun(TSyntheticRun::FullScan, name == "oil-a" ? 41 : 42, 600)));
            QCOMPARE(VndbRunner::run({"import", m_project, file}).exitCode, 0);
        }
        QCOMPARE(VndbRunner::run({"ref", "init", "--dir", m_reference}).exitCode, 0);
    }

    void jsonListsEveryParameterOfEveryAnalysis()
    {
        VndbResult result;
        const QJsonArray values = paramsJson({}, &result);
        QCOMPARE(result.exitCode, 0);
        // Every parameter of the sample content, for both analyses.
        QCOMPARE(values.size(), 2 * 33);
        QSet<QString> analyses, parameters;
        int missing = 0;
        for (const QJsonValue& entry : values) {
            const QJsonObject object = entry.toObject();
            const QStringList keys = object.keys();
            QCOMPARE(QSet<QString>(keys.begin(), keys.end()),
                     (QSet<QString>{"analysis", "parameter", "value", "reason"}));
            analyses << object.value("analysis").toString();
            parameters << object.value("parameter").toString();
            if (object.value("value").isNull()) {
                ++missing;
                QVERIFY2(!object.value("reason").toString().isEmpty(),
                         qPrintable(object.value("parameter").toString()));
            } else {
                QVERIFY(object.value("value").isDouble());
                QVERIFY(object.value("reason").toString().isEmpty());
            }
        }
        QCOMPARE(analyses, (QSet<QString>{"oil-a", "oil-b"}));
        QVERIFY(parameters.contains("Pr/Ph") && parameters.contains("Ts/(Ts+Tm)") && parameters.contains("CPI"));
        // The small runs hold no aromatic compounds: those parameters have no value.
        QVERIFY(missing > 0);
    }

    void namedAnalysesAndLanguages()
    {
        const QJsonArray one = paramsJson({"oil-b"});
        QCOMPARE(one.size(), 33);
        QCOMPARE(one.first().toObject().value("analysis").toString(), QStringLiteral("oil-b"));
        // Reasons in the user's language.
        const VndbResult fr
            = VndbRunner::run({"params", m_project, "oil-b", "--dir", m_reference, "--json", "--lang", "fr"});
        QCOMPARE(fr.exitCode, 0);
        const QJsonArray french = QJsonDocument::fromJson(fr.out.toUtf8()).array();
        bool saidInFrench = false;
        for (const QJsonValue& entry : french)
            saidInFrench |= entry.toObject().value("reason").toString().startsWith("pas de valeur pour");
        QVERIFY(saidInFrench);
        // CSV: a header and one line per value.
        const VndbResult csv = VndbRunner::run({"params", m_project, "oil-a", "--dir", m_reference, "--csv"});
        QCOMPARE(csv.exitCode, 0);
        const QStringList lines = csv.out.trimmed().split('\n');
        QCOMPARE(lines.first(), QStringLiteral("analysis,parameter,value,reason"));
        QCOMPARE(lines.size(), 34);
    }

    void refusals()
    {
        const auto before = VndbRunner::snapshot(m_tmp.path());
        VNDB_REFUSED(VndbRunner::run({"params", m_project, "no-such-oil", "--dir", m_reference}), 1,
                     "no analysis 'no-such-oil'");
        VNDB_REFUSED(VndbRunner::run({"params", m_project, "--dir", m_tmp.filePath("nowhere")}), 1, "nowhere");
        VNDB_REFUSED(VndbRunner::run({"params", m_tmp.filePath("out"), "--dir", m_reference}), 1, "out");
        VNDB_REFUSED(VndbRunner::run({"params", m_project, "--dir", m_reference, "--csv", "--json"}), 2, "--csv");
        VNDB_REFUSED(VndbRunner::run(
                         {"diagram", m_project, "No such graph", "--dir", m_reference, "-o", m_tmp.filePath("d.png")}),
                     1, "no graph 'No such graph'");
        VNDB_REFUSED(VndbRunner::run({"diagram", m_project, "Pr/n-C17 vs Ph/n-C18", "--dir", m_reference, "-o",
                                      m_tmp.filePath("d.gif")}),
                     2, ".png or .svg");
        VNDB_REFUSED(VndbRunner::run({"diagram", m_project, "Pr/n-C17 vs Ph/n-C18", "--dir", m_reference}), 2,
                     "-o FILE");
        QCOMPARE(VndbRunner::snapshot(m_tmp.path()), before);
        const VndbResult french = VndbRunner::run(
            {"diagram", m_project, "Inconnu", "--dir", m_reference, "-o", m_tmp.filePath("d.png"), "--lang", "fr"});
        VNDB_REFUSED(french, 1, "aucun graphe 'Inconnu'");
    }

    void diagramsAreWritten_data()
    {
        QTest::addColumn<QString>("graph");
        QTest::addColumn<QString>("file");
        QTest::newRow("cross-plot, png") << "Pr/n-C17 vs Ph/n-C18"
                                         << "cross.png";
        QTest::newRow("cross-plot, svg") << "Pr/n-C17 vs Ph/n-C18"
                                         << "cross.svg";
        QTest::newRow("ternary") << "C27-C28-C29 regular steranes"
                                 << "ternary.png";
    }

    void diagramsAreWritten()
    {
        QFETCH(QString, graph);
        QFETCH(QString, file);
        const QString path = m_tmp.filePath(file);
        const VndbResult result = VndbRunner::run({"diagram", m_project, graph, "oil-a", "oil-b", "--dir", m_reference,
                                                   "-o", path, "--size", "900x600", "--json"});
        QCOMPARE(result.exitCode, 0);
        const QJsonObject json = QJsonDocument::fromJson(result.out.toUtf8()).object();
        QCOMPARE(json.value("graph").toString(), graph);
        // Every analysis is either placed or said not to be.
        const QStringList placed = json.value("placed").toVariant().toStringList();
        const QStringList unplaced = json.value("unplaced").toVariant().toStringList();
        QCOMPARE(placed.size() + unplaced.size(), 2);
        if (file.endsWith(".svg")) {
            const QByteArray svg = VndbRunner::readFile(path);
            QVERIFY(svg.contains("<svg"));
            QVERIFY(svg.contains("Marine, reducing")); // a zone's label
            return;
        }
        QImage image;
        QVERIFY(image.load(path, "PNG"));
        QCOMPARE(image.size(), QSize(900, 600));
    }
};

QTEST_MAIN(TestVndbParams)
#include "tst_vndb_params.moc"
