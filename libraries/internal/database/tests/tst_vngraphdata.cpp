#include <vngraphdata.h>

#include "tst_models_sample.h"

#include <taxis.h>
#include <tdataxml.h>
#include <tgraphdocument.h>
#include <ttranslator.h>
#include <txmlmethod.h>
#include <vnviewer2dgraph.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

VNGraphData sterane()
{
    VNGraphData data;
    describeSterane(data);
    return data;
}

QStringList fields(const VNGraphData& d)
{
    return descriptionOf(d) << (d.getIsORL() ? QStringLiteral("ORL") : QStringLiteral("user"));
}

QDomElement parse(QDomDocument& document, const QString& xml)
{
    if (!document.setContent(xml))
        return QDomElement();
    return document.documentElement();
}

} // namespace

class TestVNGraphData : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void defaultsAndViewTypeTable()
    {
        const VNGraphData data;
        QCOMPARE(data.getViewType(), Plavo::VIEW_ORTHOGONAL);
        QCOMPARE(data.getViewTypeString(), QStringLiteral("1"));
        QVERIFY(data.getToVIName().isEmpty() && data.getComments().isEmpty());
        QVERIFY(!data.getIsORL());

        const auto& table = data.getViewTypes();
        QCOMPARE(table.size(), 3);
        QCOMPARE(table.value(1).name, QStringLiteral("Orthogonal"));
        QCOMPARE(table.value(1).axisCount, 2);
        QCOMPARE(table.value(1).axisLabels, QStringList({"X", "Y"}));
        QCOMPARE(table.value(2).name, QStringLiteral("Polar"));
        QCOMPARE(table.value(2).axisCount, -1);
        QCOMPARE(table.value(2).axisLabels, QStringList({"1 Axis", "2 Axis"}));
        QCOMPARE(table.value(3).name, QStringLiteral("Ternary"));
        QCOMPARE(table.value(3).axisCount, 3);
        QCOMPARE(table.value(3).axisLabels, QStringList({"X", "Y", "Z"}));
    }

    void frenchLabelsAndCopiesKeepTheirTable()
    {
        TTranslator::install(QStringLiteral("fr"));
        const VNGraphData french;
        QCOMPARE(french.getViewTypes().value(2).axisLabels, QStringList({"Axe 1", "Axe 2"}));
        QCOMPARE(french.getViewTypes().value(3).axisLabels, QStringList({"X", "Y", "Z"}));
        // Names of view types are not translated.
        QCOMPARE(french.getViewTypes().value(2).name, QStringLiteral("Polar"));

        TTranslator::install(QStringLiteral("en"));
        const VNGraphData copy(french);
        QCOMPARE(copy.getViewTypes().value(2).axisLabels, QStringList({"Axe 1", "Axe 2"}));
        VNGraphData assigned;
        assigned = french;
        QCOMPARE(assigned.getViewTypes().value(2).axisLabels, QStringList({"Axe 1", "Axe 2"}));
        QCOMPARE(VNGraphData().getViewTypes().value(2).axisLabels, QStringList({"1 Axis", "2 Axis"}));
    }

    void encodeWritesTheKeysInOrderAndNothingElse()
    {
        VNGraphData data = sterane();
        data.setIsORL(true);
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("graph"));
        document.appendChild(root);
        QVERIFY(data.encode(root));

        const QDomElement informations = root.firstChildElement();
        QCOMPARE(informations.tagName(), QStringLiteral("informations"));
        QStringList keys;
        for (QDomElement e = informations.firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
            keys << e.tagName();
        QCOMPARE(keys, QStringList({"graphType", "graphName", "studyType", "familyName", "processType",
                                    "expectedUnit", "expectedAnalysisType", "literatureReference", "comments"}));
        QCOMPARE(TXMLMethod::getInfoString(informations, "graphType"), QStringLiteral("3"));
        QCOMPARE(TXMLMethod::getInfoString(informations, "comments"), data.getComments());
    }

    void encodedElementIsOnlyReadableWithAnIonList()
    {
        const VNGraphData source = sterane();
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("graph"));
        document.appendChild(root);
        source.encode(root);

        VNGraphData target;
        target.setToVIName(QStringLiteral("untouched"));
        target.setIsORL(true);
        const QStringList before = fields(target);
        QVERIFY(!target.decode(root));
        QCOMPARE(fields(target), before);

        // The ion list may sit anywhere below "informations".
        QDomElement informations = root.firstChildElement(QStringLiteral("informations"));
        QDomElement wrapper = TXMLMethod::createChildElement(informations, QStringLiteral("ions"));
        TXMLMethod::createChildElement(wrapper, QStringLiteral("ionList"));
        QVERIFY(target.decode(root));
        QStringList expected = fields(source);
        expected.last() = QStringLiteral("ORL"); // the flag is never read from XML
        QCOMPARE(fields(target), expected);
    }

    void onlyTheFirstInformationsElementCounts()
    {
        QDomDocument document;
        const QDomElement root = parse(document,
            "<g><a><informations><graphName>first</graphName><ionList/></informations></a>"
            "<informations><graphName>second</graphName><ionList/></informations></g>");
        VNGraphData data;
        QVERIFY(data.decode(root));
        QCOMPARE(data.getToVIName(), QStringLiteral("first"));

        // An ion list in a later "informations" does not rescue the first.
        QDomDocument other;
        const QDomElement root2 = parse(other,
            "<g><informations><graphName>first</graphName></informations>"
            "<informations><graphName>second</graphName><ionList/></informations></g>");
        VNGraphData kept;
        QVERIFY(!kept.decode(root2));
        QVERIFY(kept.getToVIName().isEmpty());

        // The element itself is not one of its descendants.
        QDomDocument self;
        const QDomElement informations = parse(self, "<informations><graphName>x</graphName><ionList/></informations>");
        QVERIFY(!kept.decode(informations));
        QVERIFY(!kept.decode(QDomElement()));
    }

    void graphTypeThatIsNotANumberReadsAsZero_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << "" << "0";
        QTest::newRow("word") << "Ternary" << "0";
        QTest::newRow("decimal") << "2.5" << "0";
        QTest::newRow("beyond 32 bits") << "99999999999" << "0";
        QTest::newRow("negative") << "-4" << "-4";
        QTest::newRow("polar") << "2" << "2";
    }

    void graphTypeThatIsNotANumberReadsAsZero()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QDomDocument document;
        const QDomElement root = parse(document, QStringLiteral("<g><informations><graphType>%1</graphType><ionList/>"
                                                                "</informations></g>").arg(text));
        VNGraphData data;
        data.setViewType(Plavo::VIEW_TERNARY);
        QVERIFY(data.decode(root));
        QCOMPARE(data.getViewTypeString(), expected);
        QCOMPARE(int(data.getViewType()), expected.toInt());
        // Missing keys read as empty texts.
        QVERIFY(data.getToVIName().isEmpty());
    }

    void ternaryGraphDocumentRoundTripsThroughAFile()
    {
        Plavo::VNViewer2DGraph viewer(Plavo::VIEW_TERNARY);
        viewer.setTitle(QStringLiteral("Sterane distribution"));
        const QStringList keys = {"RATIO-C27-ST", "RATIO-C28-ST", "RATIO-C29-ST"};
        for (int i = 0; i < 3; ++i) {
            Plavo::TAxis axis(QStringLiteral("C%1 steranes").arg(27 + i), 0.0, 100.0);
            axis.addDataValue(Plavo::TDataInfo::TYPE_NAME, QStringLiteral("%C%1").arg(27 + i));
            axis.addDataValue(Plavo::TDataInfo::TYPE_VALUE, keys.at(i));
            QVERIFY(viewer.setAxis(i, axis));
        }
        QDomDocument document = Plavo::TGraphDocument::create(viewer);
        QVERIFY(!document.isNull());
        QDomElement root = document.documentElement();
        const VNGraphData source = sterane();
        QVERIFY(source.encode(root));
        QDomElement informations = root.firstChildElement(QStringLiteral("informations"));
        TXMLMethod::createChildElement(informations, QStringLiteral("ionList"));

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("graphs/sterane.xml"));
        QVERIFY(TXMLMethod::save(&document, path, true, false));

        Plavo::TDataXml file;
        QVERIFY2(file.open(path), qPrintable(file.errorString()));
        const QDomDocument read = file.document();
        QCOMPARE(Plavo::TGraphDocument::ratioUids(read), keys);

        Plavo::VNViewer2DGraph readViewer;
        QVERIFY(Plavo::TGraphDocument::readViewer(read, &readViewer));
        QVERIFY(readViewer == viewer);

        VNGraphData description;
        QVERIFY(description.decode(file.contentElement()));
        QCOMPARE(fields(description), fields(source));
        QCOMPARE(description.getViewTypeString(), QStringLiteral("3"));
        QCOMPARE(description.getViewTypes().value(description.getViewType()).axisCount,
                 readViewer.getAxesData().size());
    }
};

QTEST_GUILESS_MAIN(TestVNGraphData)
#include "tst_vngraphdata.moc"
