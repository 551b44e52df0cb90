// The graph and overlay models over real reference databases: names shown
// through the merged database, descriptions read back from stored records.

#include <vndatabasetovi.h>
#include <vndatabasetovimgr.h>
#include <vndatamodelgraph.h>
#include <vndatamodeloverlay.h>
#include <vngraphdocument.h>

#include "tst_models_sample.h"

#include <tabstractmapper.h>
#include <tapplicationdata.h>
#include <tdataxml.h>
#include <tgraphdocument.h>
#include <ttoviratio.h>
#include <vnobject2tovigraph.h>

#include <QAbstractItemModelTester>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class TestVNDataModelReference : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<TApplicationData> m_app;
    VNDatabaseTovi* m_merged = nullptr; // owned by the manager

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_app = std::make_unique<TApplicationData>();
        m_app->setValue(QStringLiteral("TOVIDBDIR"), m_dir.path());
        m_merged = new VNDatabaseTovi(Sedra::DatabaseToviMerged);
        QVERIFY(m_merged->loadDatabase());
        VNDatabaseToviMGR::getInstance()->setDb(m_merged);
        QVERIFY(m_merged->createRatio(QStringLiteral("PR_PH"), QStringLiteral("Pr/Ph"), QStringLiteral("Pr/Ph"),
                                      QStringLiteral("Pristane/Phytane"), 1, QStringLiteral("Source rock"),
                                      QStringLiteral("GC"), QString(), QStringLiteral("Isoprenoids"), QString(),
                                      QStringLiteral("Didyk et al. (1978)")));
        QVERIFY(m_merged->createRatio(QStringLiteral("TS_TSTM"), QStringLiteral("Ts/(Ts+Tm)"), QString(), QString(), 2,
                                      QStringLiteral("Maturity"), QStringLiteral("GC-MS"), QString(), QString(),
                                      QStringLiteral("191"), QString()));
    }

    void cleanupTestCase()
    {
        VNDatabaseToviMGR::clear();
        m_app.reset();
    }

    void cellsShowMasterNamesOfTheMergedDatabase()
    {
        VNDataModelGraph model(Plavo::VIEW_POLAR);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.changeRatio(m_merged->getRatio(m_merged->getRatio(QStringLiteral("PR_PH"))), 0);
        model.setAxisKey(1, QStringLiteral("NOT_A_RATIO"));
        model.addPolarAxe(-1);
        model.setAxisKey(2, QStringLiteral("TS_TSTM"));
        QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("Pr/Ph"));
        QVERIFY(!model.data(model.index(1, 0)).isValid());
        QCOMPARE(model.data(model.index(2, 0)).toString(), QStringLiteral("Ts/(Ts+Tm)"));
        QVERIFY(!model.data(model.index(0, 0), Qt::EditRole).isValid());
        QCOMPARE(model.getAxes(), QStringList({"PR_PH", "NOT_A_RATIO", "TS_TSTM"}));
    }

    void storedGraphsAndOverlaysReadBack()
    {
        VNDataModelGraph graph(Plavo::VIEW_TERNARY);
        describeSterane(graph);
        graph.setAxisKey(0, QStringLiteral("PR_PH"));
        graph.setIsORL(true);
        const QDomDocument document = VNGraphDocument::create(graph, {"217"});
        const VNObject2* stored = m_merged->createGraph(&graph, document);
        QVERIFY(stored);
        QCOMPARE(m_merged->getRatioUids(document), QStringList({"PR_PH", "", ""}));

        VNGraphData back;
        back.setViewType(Plavo::VIEW_POLAR);
        QVERIFY(back.decode(stored));
        QStringList expected = descriptionOf(graph);
        expected[0] = QStringLiteral("2"); // the view type is not part of the record
        QCOMPARE(descriptionOf(back), expected);
        QVERIFY(back.getIsORL());

        // The drawing on disk reads back as the same axes and description.
        const QDomElement viewer = VNDatabaseTovi::getXmlData(stored);
        QVERIFY(!viewer.isNull());
        Plavo::TDataXml drawing;
        QVERIFY(drawing.open(Sedra::TAbstractMapper::objectFilePath(stored, nullptr)));
        QCOMPARE(Plavo::TGraphDocument::viewerElement(drawing.document()).tagName(), viewer.tagName());
        VNDataModelGraph reread(Plavo::VIEW_TERNARY);
        QAbstractItemModelTester rereadTester(&reread, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(VNGraphDocument::read(drawing.document(), &reread));
        QCOMPARE(descriptionOf(reread), descriptionOf(graph));
        QCOMPARE(reread.getAxes(), graph.getAxes());

        VNDataModelOverlay overlay;
        QAbstractItemModelTester overlayTester(&overlay, QAbstractItemModelTester::FailureReportingMode::QtTest);
        overlay.setHeadersData({"C27", "C28", "C29"}, {"Marine", "Lacustrine", "Terrigenous"});
        overlay.setToVIName(QStringLiteral("Oil families"));
        overlay.setProcessType(QStringLiteral("GC-MS SIM m/z 217"));
        overlay.setLiteratureReference(QStringLiteral("Huang & Meinschein (1979)"));
        const QDomDocument overlayDocument = overlayDocumentOf(overlay);
        QVERIFY(!overlayDocument.isNull());
        const auto* graphObject = dynamic_cast<const VNObject2ToviGraph*>(stored);
        QVERIFY(graphObject);
        const VNObject2* storedOverlay = m_merged->overlayCreate(graphObject, &overlay, overlayDocument);
        QVERIFY(storedOverlay);

        VNDataModelOverlay overlayBack;
        QAbstractItemModelTester overlayBackTester(&overlayBack,
                                                   QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(overlayBack.decode(storedOverlay));
        QCOMPARE(descriptionOf(overlayBack), descriptionOf(overlay));
        QCOMPARE(overlayBack.getGraph(), graphObject);

        // Objects of another kind have no such record: nothing changes.
        const VNObject2* ratio = m_merged->getRatio(QStringLiteral("PR_PH"));
        QVERIFY(!overlayBack.decode(ratio));
        QVERIFY(!overlayBack.decode(stored));
        QCOMPARE(descriptionOf(overlayBack), descriptionOf(overlay));
        QVERIFY(!back.decode(ratio));
        QVERIFY(!back.decode(static_cast<const VNObject2*>(nullptr)));
        const VNObject2ToviGraph unstored(QStringLiteral("Unstored"), QStringLiteral("UNSTORED"));
        QVERIFY(!back.decode(&unstored));
        QVERIFY(!back.decode(storedOverlay));
        QCOMPARE(back.getToVIName(), graph.getToVIName());
    }

    // Last: closes the merged database that the other cases read.
    void cellsAreEmptyOnceTheMergedDatabaseIsClosed()
    {
        VNDataModelGraph model(Plavo::VIEW_ORTHOGONAL);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setAxisKey(0, QStringLiteral("PR_PH"));
        QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("Pr/Ph"));
        VNDatabaseToviMGR::getInstance()->closeDb(Sedra::DatabaseToviMerged);
        m_merged = nullptr;
        QVERIFY(!model.data(model.index(0, 0)).isValid());
        QCOMPARE(model.getAxisKey(0), QStringLiteral("PR_PH"));
    }
};

QTEST_MAIN(TestVNDataModelReference)
#include "tst_vndatamodelreference.moc"
