#include <vndatamodelgraph.h>
#include <vngraphdocument.h>

#include <taxis.h>
#include <tdataxml.h>
#include <tgraphdocument.h>
#include <ttoviratio.h>
#include <ttranslator.h>
#include <txmlmethod.h>
#include <vnobject2toviratio.h>
#include <vnviewer2dgraph.h>

#include "tst_models_sample.h"
#include "tst_shapespies.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QStringList verticalLabels(const QAbstractItemModel& model)
{
    QStringList labels;
    for (int row = 0; row < model.rowCount(); ++row)
        labels << model.headerData(row, Qt::Vertical).toString();
    return labels;
}

// A free ratio record, as a mapper would hand it out.
struct Ratio
{
    Ratio(const QString& key, const QString& name)
        : record(new VNObject2ToviRatio(name, key))
    { }
    Sedra::TToviRatio record;
};

void describeSterane(VNDataModelGraph& model)
{
    ::describeSterane(static_cast<VNGraphData&>(model));
    model.setAxisKey(0, QStringLiteral("STER_C27_PCT"));
    model.setAxisKey(1, QStringLiteral("STER_C28_PCT"));
    model.setAxisKey(2, QStringLiteral("STER_C29_PCT"));
}

QString viewerXml(const QString& typeView, const QString& axes)
{
    return QStringLiteral("<GraphDocument><TDataXml><Viewer2DGraph version=\"1\" typeView=\"%1\"><title/>"
                          "<axes>%2</axes><curves/></Viewer2DGraph></TDataXml>"
                          "<informations><graphType>%1</graphType><ionList/></informations></GraphDocument>")
        .arg(typeView, axes);
}

QString axisXml(const QString& dataValues)
{
    return QStringLiteral("<axis><label>a</label><minimum>0</minimum><maximum>1</maximum>"
                          "<logarithmic>0</logarithmic><dataValues>%1</dataValues></axis>")
        .arg(dataValues);
}

} // namespace

class TestVNDataModelGraph : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void axesPerViewType()
    {
        const struct
        {
            Plavo::TYPE_VIEW type;
            QStringList labels;
        } cases[] = {{Plavo::VIEW_ORTHOGONAL, {"X", "Y"}},
                     {Plavo::VIEW_POLAR, {"1 Axis", "2 Axis"}},
                     {Plavo::VIEW_TERNARY, {"X", "Y", "Z"}},
                     {Plavo::VIEW_NONE, {}},
                     {Plavo::TYPE_VIEW(77), {}}};
        for (const auto& c : cases) {
            VNDataModelGraph model(c.type);
            QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
            QVERIFY(model.isValid());
            QCOMPARE(model.columnCount(), 1);
            QCOMPARE(verticalLabels(model), c.labels);
            QVERIFY(!model.headerData(c.labels.size(), Qt::Vertical).isValid());
            QCOMPARE(model.headerData(7, Qt::Horizontal).toString(), QStringLiteral("Name"));
            QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
            // No ratio chosen yet: no name to show.
            for (int row = 0; row < model.rowCount(); ++row)
                QVERIFY(!model.data(model.index(row, 0)).isValid());
            QVERIFY(!model.index(0, 1).isValid());
        }
    }

    void frenchLabels()
    {
        TTranslator::install(QStringLiteral("fr"));
        VNDataModelGraph model(Plavo::VIEW_POLAR);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Nom"));
        QCOMPARE(verticalLabels(model), QStringList({"Axe 1", "Axe 2"}));
        model.addPolarAxe(-1);
        QCOMPARE(model.headerData(2, Qt::Vertical).toString(), QStringLiteral("Axe 3"));
    }

    void polarAxesAreFullResets()
    {
        VNDataModelGraph model(Plavo::VIEW_POLAR);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ShapeSpies spies(&model);
        Ratio prph(QStringLiteral("PR_PH"), QStringLiteral("Pr/Ph"));
        model.changeRatio(&prph.record, 1);
        QCOMPARE(model.getAxes(), QStringList({"", "PR_PH"}));

        model.addPolarAxe(-1); // appends
        model.addPolarAxe(99); // appends
        model.addPolarAxe(0);  // in front
        QCOMPARE(model.getAxes(), QStringList({"", "", "PR_PH", "", ""}));
        QCOMPARE(verticalLabels(model), QStringList({"5 axis", "1 Axis", "2 Axis", "3 axis", "4 axis"}));

        model.removePolarAxe(5); // equal to the count: nothing
        model.removePolarAxe(-1);
        QCOMPARE(spies.resets(), 4);
        model.removePolarAxe(2);
        QCOMPARE(model.getAxes(), QStringList({"", "", "", ""}));
        // Labels stay as they were: the rows keep their earlier names.
        QCOMPARE(verticalLabels(model), QStringList({"5 axis", "1 Axis", "2 Axis", "3 axis"}));
        QCOMPARE(model.headerData(4, Qt::Vertical).toString(), QStringLiteral("4 axis"));
        QCOMPARE(spies.resets(), 5);
        QCOMPARE(spies.partial(), 0);
    }

    void changesOutsideTheAxesAreIgnored()
    {
        VNDataModelGraph model(Plavo::VIEW_ORTHOGONAL);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ShapeSpies spies(&model);
        Ratio cpi(QStringLiteral("CPI"), QStringLiteral("Carbon preference index"));
        model.changeRatio(&cpi.record, -1);
        model.changeRatio(&cpi.record, 2);
        model.changeRatio(nullptr, 0);
        model.addPolarAxe(0);
        model.removePolarAxe(0);
        QCOMPARE(spies.resets(), 0);
        QCOMPARE(model.getAxes(), QStringList({"", ""}));
        QVERIFY(!model.setAxisKey(2, QStringLiteral("CPI")));
        model.changeRatio(&cpi.record, 0);
        QCOMPARE(spies.resets(), 1);
        QCOMPARE(model.getAxisKey(0), QStringLiteral("CPI"));
        QVERIFY(model.getAxisKey(5).isEmpty());
    }

    void ternaryDocumentReadsBackEqual()
    {
        VNDataModelGraph model(Plavo::VIEW_TERNARY);
        describeSterane(model);
        const QStringList ions{"217", "218"};
        const QDomDocument document = VNGraphDocument::create(model, ions);
        QVERIFY(!document.isNull());

        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath(QStringLiteral("graphs/sterane.xml"));
        QVERIFY(TXMLMethod::save(&document, path, true, false));
        Plavo::TDataXml file;
        QVERIFY(file.open(path));
        const QDomDocument reread = file.document();

        QCOMPARE(VNGraphDocument::getRatioUids(reread), QStringList({"STER_C27_PCT", "STER_C28_PCT", "STER_C29_PCT"}));
        QCOMPARE(VNGraphDocument::ions(reread), ions);
        VNGraphData data;
        QVERIFY(data.decode(reread.documentElement()));
        QCOMPARE(descriptionOf(data), descriptionOf(model));

        VNDataModelGraph back(Plavo::VIEW_TERNARY);
        QAbstractItemModelTester tester(&back, QAbstractItemModelTester::FailureReportingMode::QtTest);
        back.setIsORL(true);
        QVERIFY(VNGraphDocument::read(reread, &back));
        QCOMPARE(back.getAxes(), model.getAxes());
        QCOMPARE(descriptionOf(back), descriptionOf(model));
        QVERIFY(back.getIsORL()); // not part of the document

        // The viewer's axes carry the vertical labels and the keys.
        Plavo::VNViewer2DGraph viewer;
        QVERIFY(Plavo::TGraphDocument::readViewer(reread, &viewer));
        QCOMPARE(viewer.getTypeView(), Plavo::VIEW_TERNARY);
        QCOMPARE(viewer.getAxesData().at(2).label(), QStringLiteral("Z"));
    }

    void polarDocumentResizesThePolarModel()
    {
        VNDataModelGraph model(Plavo::VIEW_POLAR);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.addPolarAxe(-1);
        model.addPolarAxe(-1);
        model.setAxisKey(0, QStringLiteral("PR_PH"));
        model.setAxisKey(3, QStringLiteral("TS_TSTM"));
        const QDomDocument document = VNGraphDocument::create(model);
        QCOMPARE(VNGraphDocument::getRatioUids(document), QStringList({"PR_PH", "", "", "TS_TSTM"}));

        VNDataModelGraph back(Plavo::VIEW_POLAR);
        QAbstractItemModelTester testerBack(&back, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ShapeSpies spies(&back);
        QVERIFY(VNGraphDocument::read(document, &back));
        QCOMPARE(back.getAxes(), model.getAxes());
        QVERIFY(spies.resets() > 0);
        QCOMPARE(spies.partial(), 0);

        // A document of another kind of view is refused, the model unchanged.
        VNDataModelGraph ternary(Plavo::VIEW_TERNARY);
        describeSterane(ternary);
        QVERIFY(!VNGraphDocument::read(VNGraphDocument::create(ternary), &back));
        QCOMPARE(back.getAxes(), model.getAxes());
        QVERIFY(back.getToVIName().isEmpty());
        QVERIFY(!VNGraphDocument::read(document, nullptr));
        QVERIFY(VNGraphDocument::create(VNDataModelGraph(Plavo::VIEW_NONE)).isNull());
    }

    // A document whose viewer or description cannot be read is refused
    // whole, the model unchanged; with a readable viewer ("description ..."
    // rows) its axes' keys still read.
    void malformedDocumentsAreRefused_data()
    {
        QTest::addColumn<QString>("xml");
        const QString axis = axisXml(QStringLiteral("<dataValue type=\"7\">K</dataValue>"));
        const QString ternary = viewerXml("3", axis + axis + axis);
        QTest::newRow("description without ion list") << QString(ternary).remove(QStringLiteral("<ionList/>"));
        QTest::newRow("description of another view") << QString(ternary).replace(
            QStringLiteral("<graphType>3</graphType>"), QStringLiteral("<graphType>x</graphType>"));
        QTest::newRow("no TDataXml") << QStringLiteral(
            "<GraphDocument><informations><ionList/></informations></GraphDocument>");
        QTest::newRow("empty TDataXml") << QStringLiteral(
            "<GraphDocument><TDataXml>text only</TDataXml></GraphDocument>");
        QTest::newRow("TDataXml not a child of the root")
            << QStringLiteral("<GraphDocument><x><TDataXml>%1</TDataXml></x></GraphDocument>")
                   .arg(viewerXml("3", axis + axis + axis));
        QTest::newRow("foreign viewer") << QStringLiteral("<G><TDataXml><Viewer3D typeView=\"3\"/></TDataXml></G>");
        QTest::newRow("typeView not a number") << viewerXml("ternary", axis + axis + axis);
        QTest::newRow("typeView negative") << viewerXml("-3", axis + axis + axis);
        QTest::newRow("typeView huge") << viewerXml("99999999999999999999", axis + axis + axis);
        QTest::newRow("ternary with two axes") << viewerXml("3", axis + axis);
        QTest::newRow("axis bound not a number")
            << viewerXml("1",
                         axis
                             + QString(axis).replace(QStringLiteral("<maximum>1</maximum>"),
                                                     QStringLiteral("<maximum>lots</maximum>")));
        QTest::newRow("data value of no kind")
            << viewerXml("1", axis + axisXml(QStringLiteral("<dataValue type=\"-7\">K</dataValue>")));
        QTest::newRow("data value kind beyond 32 bits")
            << viewerXml("1", axis + axisXml(QStringLiteral("<dataValue type=\"4294967303\">K</dataValue>")));
        QTest::newRow("newer viewer version")
            << viewerXml("1", axis + axis).replace(QStringLiteral("version=\"1\""), QStringLiteral("version=\"2\""));
    }

    void malformedDocumentsAreRefused()
    {
        QFETCH(QString, xml);
        QDomDocument document;
        QVERIFY(document.setContent(xml));
        const bool viewerReads = QByteArray(QTest::currentDataTag()).startsWith("description");
        QCOMPARE(VNGraphDocument::getRatioUids(document), viewerReads ? QStringList({"K", "K", "K"}) : QStringList());

        VNDataModelGraph model(Plavo::VIEW_TERNARY);
        describeSterane(model);
        const QStringList before = descriptionOf(model) + model.getAxes();
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ShapeSpies spies(&model);
        QVERIFY(!VNGraphDocument::read(document, &model));
        QCOMPARE(descriptionOf(model) + model.getAxes(), before);
        QCOMPARE(spies.resets(), 0);
    }

    void deepOrHugeInputIsRefusedByTheReader()
    {
        QByteArray deep;
        for (int i = 0; i < 100000; ++i)
            deep += "<a>";
        Plavo::TDataXml data;
        QVERIFY(!data.setContent("<GraphDocument><TDataXml>" + deep));
        QVERIFY(data.isNull());
        QVERIFY(VNGraphDocument::getRatioUids(data.document()).isEmpty());
        QVERIFY(VNGraphDocument::getRatioUids(QDomDocument()).isEmpty());
        QVERIFY(VNGraphDocument::ions(QDomDocument()).isEmpty());

        // Polar views accept many axes, but not without bound.
        QString axes;
        const QString axis = axisXml(QString());
        for (int i = 0; i <= Plavo::VNViewer2DGraph::maxAxisCount(); ++i)
            axes += axis;
        QDomDocument tooMany;
        QVERIFY(tooMany.setContent(viewerXml("2", axes)));
        QVERIFY(VNGraphDocument::getRatioUids(tooMany).isEmpty());
        VNDataModelGraph polar(Plavo::VIEW_POLAR);
        QAbstractItemModelTester tester(&polar, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(!VNGraphDocument::read(tooMany, &polar));
        QCOMPARE(polar.rowCount(), 2);
    }
};

QTEST_MAIN(TestVNDataModelGraph)
#include "tst_vndatamodelgraph.moc"
