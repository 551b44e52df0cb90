#include <tdataxml.h>
#include <tgraphdocument.h>
#include <ttranslator.h>
#include <txmlmethod.h>
#include <vnviewer2dgraph.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace Plavo;

namespace {

TAxis ratioAxis(const QString& label, const QString& key)
{
    TAxis axis(label, 0.0, 100.0);
    axis.addDataValue(TDataInfo::TYPE_NAME, label);
    if (!key.isNull())
        axis.addDataValue(TDataInfo::TYPE_VALUE, key);
    return axis;
}

VNViewer2DGraph ternary()
{
    VNViewer2DGraph viewer(VIEW_TERNARY);
    viewer.setTitle(QStringLiteral("C27-C28-C29 regular steranes"));
    viewer.setAxesData({ratioAxis("C27", "ST-C27"), ratioAxis("C28", "ST-C28"), ratioAxis("C29", "ST-C29")});
    const float x[] = {30.f, 45.f};
    const float y[] = {25.f, 20.f};
    TData samples(2, x, y);
    samples.setLabel(QStringLiteral("Well A-1"));
    viewer.addCurve(samples);
    return viewer;
}

// A document whose viewer element is `viewerXml`, beside an informations element.
QDomDocument documentWith(const QString& viewerXml)
{
    QDomDocument document;
    document.setContent(QStringLiteral("<GraphDocument><TDataXml>%1</TDataXml>"
                                       "<informations><ionList/></informations></GraphDocument>")
                            .arg(viewerXml));
    return document;
}

QString viewerXml(const QString& attributes, const QString& content)
{
    return QStringLiteral("<Viewer2DGraph %1><title>t</title>%2</Viewer2DGraph>").arg(attributes, content);
}

QString axisXml(const QString& key)
{
    return QStringLiteral("<axis><label>a</label><minimum>0</minimum><maximum>1</maximum><logarithmic>0</logarithmic>"
                          "<dataValues>%1</dataValues></axis>")
        .arg(key.isNull() ? QString() : QStringLiteral("<dataValue type='7'>%1</dataValue>").arg(key));
}

} // namespace

class TestPlavoDocument : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void viewersRoundTrip_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("orthogonal") << int(VIEW_ORTHOGONAL);
        QTest::newRow("polar") << int(VIEW_POLAR);
        QTest::newRow("ternary") << int(VIEW_TERNARY);
    }

    void viewersRoundTrip()
    {
        QFETCH(int, type);
        VNViewer2DGraph viewer{TYPE_VIEW(type)};
        QCOMPARE(viewer.getAxesData().size(), type == VIEW_TERNARY ? 3 : 2);
        viewer.setTitle(QStringLiteral("Pr/nC17 vs Ph/nC18 & <others>"));
        if (type == VIEW_POLAR) {
            QVERIFY(viewer.insertPolarAxis(-1, ratioAxis("CPI", "CPI")));
            QVERIFY(viewer.insertPolarAxis(0, ratioAxis("Ts/Tm", "TS-TM")));
            QCOMPARE(viewer.getAxesData().first().label(), QStringLiteral("Ts/Tm"));
        }
        QVERIFY(viewer.setAxis(1, ratioAxis("Ph/nC18", "PH-NC18")));
        QVERIFY(!viewer.setAxis(viewer.getAxesData().size(), TAxis()));
        const float x[] = {0.5f, 1.5f};
        viewer.addCurve(TData(2, x, x));
        viewer.addCurve(TData());

        const QDomDocument document = TGraphDocument::create(viewer);
        QVERIFY(!document.isNull());
        QCOMPARE(document.documentElement().tagName(), QStringLiteral("GraphDocument"));
        VNViewer2DGraph read(VIEW_ORTHOGONAL);
        QVERIFY(TGraphDocument::readViewer(document, &read));
        QVERIFY(read == viewer);
        QCOMPARE(read.getTypeView(), TYPE_VIEW(type)); // read over a viewer of another kind
        // Through text as well, since that is how documents travel.
        QDomDocument reparsed;
        QVERIFY(reparsed.setContent(document.toByteArray()));
        VNViewer2DGraph again;
        QVERIFY(TGraphDocument::readViewer(reparsed, &again));
        QVERIFY(again == viewer);
    }

    void axisCountsFollowTheKindOfView()
    {
        VNViewer2DGraph orthogonal(VIEW_ORTHOGONAL);
        QVERIFY(!orthogonal.setAxesData({TAxis(), TAxis(), TAxis()}));
        QVERIFY(!orthogonal.insertPolarAxis(0, TAxis()));
        QVERIFY(!orthogonal.removePolarAxis(0));
        QCOMPARE(orthogonal.getAxesData().size(), 2);

        VNViewer2DGraph polar(VIEW_POLAR);
        QVERIFY(polar.removePolarAxis(1));
        QVERIFY(!polar.removePolarAxis(1));
        QVERIFY(polar.removePolarAxis(0));
        QVERIFY(TGraphDocument::ratioUids(TGraphDocument::create(polar)).isEmpty());
        while (polar.insertPolarAxis(-1, TAxis())) { }
        QCOMPARE(polar.getAxesData().size(), VNViewer2DGraph::maxAxisCount());

        // A viewer of no known kind cannot be written, and the document says so.
        VNViewer2DGraph none(VIEW_NONE);
        QVERIFY(TGraphDocument::create(none).isNull());
        QDomDocument document = TGraphDocument::create(ternary());
        const QByteArray before = document.toByteArray();
        QVERIFY(!TGraphDocument::setViewer(document, none));
        QCOMPARE(document.toByteArray(), before);
    }

    void setViewerReplacesOnlyTheViewer()
    {
        QDomDocument document = documentWith(
            viewerXml("version='1' typeView='1'", "<axes>" + axisXml("A") + axisXml("B") + "</axes><curves/>"));
        QCOMPARE(TGraphDocument::ratioUids(document), QStringList({"A", "B"}));
        QVERIFY(TGraphDocument::setViewer(document, ternary()));
        QCOMPARE(TGraphDocument::ratioUids(document), QStringList({"ST-C27", "ST-C28", "ST-C29"}));
        const QDomElement root = document.documentElement();
        QCOMPARE(root.elementsByTagName("TDataXml").size(), 1);
        QVERIFY(!root.firstChildElement("informations").firstChildElement("ionList").isNull());
    }

    void ratioUidsGiveOneEntryPerAxis()
    {
        // First value of kind 7 that carries a text; axes without one give "".
        const QString axes = axisXml(QString())
            + "<axis><label/><minimum>0</minimum><maximum>1</maximum>"
              "<logarithmic>1</logarithmic><dataValues><dataValue type='7'></dataValue>"
              "<dataValue type='1'>name</dataValue><dataValue type='7'>SECOND</dataValue>"
              "<dataValue type='7'>THIRD</dataValue></dataValues></axis>"
            + axisXml("  KEY WITH SPACES ");
        QCOMPARE(TGraphDocument::ratioUids(
                     documentWith(viewerXml("version='1' typeView='2'", "<axes>" + axes + "</axes><curves/>"))),
                 QStringList({"", "SECOND", "  KEY WITH SPACES "}));

        QCOMPARE(TGraphDocument::ratioUids(documentWith(viewerXml("version='1' typeView='3'",
                                                                  "<axes>" + axisXml(QString()) + axisXml(QString())
                                                                      + axisXml(QString()) + "</axes><curves/>"))),
                 QStringList({"", "", ""}));
    }

    void ratioUidsOfIncompleteDocumentsAreEmpty_data()
    {
        QTest::addColumn<QString>("xml");
        const QString good
            = viewerXml("version='1' typeView='1'", "<axes>" + axisXml("A") + axisXml("B") + "</axes><curves/>");
        QTest::newRow("no TDataXml") << "<GraphDocument><Viewer2DGraph/></GraphDocument>";
        QTest::newRow("TDataXml deeper down")
            << "<GraphDocument><x><TDataXml>" + good + "</TDataXml></x></GraphDocument>";
        QTest::newRow("empty TDataXml") << "<GraphDocument><TDataXml>text only</TDataXml></GraphDocument>";
        QTest::newRow("viewer not first") << "<GraphDocument><TDataXml><note/>" + good + "</TDataXml></GraphDocument>";
        QTest::newRow("unknown viewer")
            << "<GraphDocument><TDataXml><Viewer3D version='1' typeView='1'/></TDataXml></GraphDocument>";
        QTest::newRow("no document element") << "";
    }

    void ratioUidsOfIncompleteDocumentsAreEmpty()
    {
        QFETCH(QString, xml);
        QDomDocument document;
        document.setContent(xml);
        QVERIFY(TGraphDocument::ratioUids(document).isEmpty());
        QVERIFY(TGraphDocument::viewerElement(document).isNull() || !TGraphDocument::readViewer(document, nullptr));
    }

    void malformedViewersAreRefused_data()
    {
        QTest::addColumn<QString>("xml");
        const QString two = "<axes>" + axisXml("A") + axisXml("B") + "</axes><curves/>";
        const QString three = "<axes>" + axisXml("A") + axisXml("B") + axisXml("C") + "</axes><curves/>";
        QTest::newRow("no version") << viewerXml("typeView='1'", two);
        QTest::newRow("newer version") << viewerXml("version='2' typeView='1'", two);
        QTest::newRow("version zero") << viewerXml("version='0' typeView='1'", two);
        QTest::newRow("no type") << viewerXml("version='1'", two);
        QTest::newRow("type zero") << viewerXml("version='1' typeView='0'", two);
        QTest::newRow("type four") << viewerXml("version='1' typeView='4'", two);
        QTest::newRow("negative type") << viewerXml("version='1' typeView='-1'", two);
        QTest::newRow("huge type") << viewerXml("version='1' typeView='4294967297'", two);
        QTest::newRow("type as a word") << viewerXml("version='1' typeView='ternary'", three);
        QTest::newRow("orthogonal with three axes") << viewerXml("version='1' typeView='1'", three);
        QTest::newRow("ternary with two axes") << viewerXml("version='1' typeView='3'", two);
        QTest::newRow("no axes") << viewerXml("version='1' typeView='2'", "<curves/>");
        QTest::newRow("no curves") << viewerXml("version='1' typeView='2'", "<axes/>");
        QTest::newRow("two axes lists") << viewerXml("version='1' typeView='2'", "<axes/><axes/><curves/>");
        QTest::newRow("foreign element among axes")
            << viewerXml("version='1' typeView='2'", "<axes>" + axisXml("A") + "<curve/></axes><curves/>");
        QTest::newRow("broken axis") << viewerXml("version='1' typeView='2'",
                                                  "<axes><axis><label/></axis></axes><curves/>");
        QTest::newRow("broken curve") << viewerXml(
            "version='1' typeView='1'", "<axes>" + axisXml("A") + axisXml("B") + "</axes><curves><curve/></curves>");
        QTest::newRow("no title") << "<Viewer2DGraph version='1' typeView='1'>" + two + "</Viewer2DGraph>";
        QString many = "<axes>";
        for (int i = 0; i < 65; ++i)
            many += axisXml("K");
        QTest::newRow("too many polar axes") << viewerXml("version='1' typeView='2'", many + "</axes><curves/>");
    }

    void malformedViewersAreRefused()
    {
        QFETCH(QString, xml);
        const QDomDocument document = documentWith(xml);
        QVERIFY(!TGraphDocument::viewerElement(document).isNull());
        VNViewer2DGraph viewer = ternary();
        const VNViewer2DGraph before = viewer;
        QVERIFY(!TGraphDocument::readViewer(document, &viewer));
        QVERIFY(viewer == before);
        QVERIFY(TGraphDocument::ratioUids(document).isEmpty());
    }

    void dataXmlReadsFilesAndBytes()
    {
        QTemporaryDir dir;
        const QDomDocument document = TGraphDocument::create(ternary());
        TDataXml wrapper(document);
        QCOMPARE(wrapper.contentElement().tagName(), QStringLiteral("GraphDocument"));
        const QString path = dir.filePath("a/b/graph.xml");
        QVERIFY(wrapper.save(path));

        TDataXml file;
        QVERIFY(file.open(path));
        QVERIFY(file.errorString().isEmpty());
        const QDomElement viewerElement
            = TXMLMethod::getChildElement(file.contentElement(), "TDataXml").firstChildElement();
        const TDataXml inner(viewerElement);
        QCOMPARE(inner.contentElement(), viewerElement);
        VNViewer2DGraph viewer;
        QVERIFY(viewer.decode(inner.contentElement()));
        QVERIFY(viewer == ternary());
        QVERIFY(!TDataXml().save(dir.filePath("empty.xml")));
    }

    void dataXmlRefusesBadInputAndKeepsItsDocument_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not xml") << QByteArray("\x89PNG\r\n\x1a\n", 8);
        QTest::newRow("unclosed") << QByteArray("<GraphDocument><TDataXml>");
        QTest::newRow("two roots") << QByteArray("<a/><b/>");
        QTest::newRow("dtd") << QByteArray("<!DOCTYPE g [<!ENTITY e \"x\">]><g>&e;</g>");
        QByteArray laughs = "<!DOCTYPE l [<!ENTITY a \"aaaaaaaaaa\">";
        for (int i = 1; i < 10; ++i)
            laughs += QStringLiteral("<!ENTITY %1 \"&%2;&%2;&%2;&%2;&%2;&%2;&%2;&%2;&%2;&%2;\">")
                          .arg(QChar('a' + i))
                          .arg(QChar('a' + i - 1))
                          .toUtf8();
        QTest::newRow("entity expansion") << laughs + "]><l>&j;</l>";
        QTest::newRow("undeclared entity") << QByteArray("<g>&nothing;</g>");
        QTest::newRow("deep nesting") << QByteArray("<a>").repeated(100000) + QByteArray("</a>").repeated(100000);
        QTest::newRow("just too deep") << QByteArray("<a>").repeated(257) + QByteArray("</a>").repeated(257);
    }

    void dataXmlRefusesBadInputAndKeepsItsDocument()
    {
        QFETCH(QByteArray, bytes);
        TDataXml data;
        QVERIFY(data.setContent("<kept/>"));
        QVERIFY(!data.setContent(bytes));
        QVERIFY(!data.errorString().isEmpty());
        QCOMPARE(data.contentElement().tagName(), QStringLiteral("kept"));
    }

    void dataXmlAcceptsReasonableNesting()
    {
        TDataXml data;
        QVERIFY(data.setContent(QByteArray("<a>").repeated(256) + QByteArray("</a>").repeated(256)));
        QVERIFY(data.setContent("<?xml version='1.0' encoding='UTF-8'?><!-- note --><g a='&amp;&lt;'>&#233;</g>"));
        QCOMPARE(data.contentElement().text(), QStringLiteral("\u00e9"));
    }

    void dataXmlMessagesInBothLanguages()
    {
        TDataXml data;
        QVERIFY(!data.open(QStringLiteral("/nonexistent/graph.xml")));
        QCOMPARE(data.errorString(), QStringLiteral("Unable to open the file <b>/nonexistent/graph.xml</b>"));
        QVERIFY(!data.setContent(QByteArray("<a>").repeated(300)));
        QCOMPARE(data.errorString(), QStringLiteral("The document is nested too deeply"));

        TTranslator::install(QStringLiteral("fr"));
        QVERIFY(!data.open(QStringLiteral("/nonexistent/graph.xml")));
        QCOMPARE(data.errorString(), QStringLiteral("Impossible d'ouvrir le fichier <b>/nonexistent/graph.xml</b>"));
        QVERIFY(!data.setContent(QByteArray("<a>").repeated(300)));
        QCOMPARE(data.errorString(), QStringLiteral("Le document est trop profondément imbriqué"));
    }
};

QTEST_GUILESS_MAIN(TestPlavoDocument)
#include "tst_plavo_document.moc"
