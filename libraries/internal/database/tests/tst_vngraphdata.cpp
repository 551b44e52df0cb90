#include <vngraphdata.h>

#include "tst_models_sample.h"

#include <ttranslator.h>
#include <txmlmethod.h>

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
        QCOMPARE(data.getViewTypeString(), QStringLiteral("1"));
        QStringList table;
        for (auto it = data.getViewTypes().cbegin(); it != data.getViewTypes().cend(); ++it)
            table << QStringLiteral("%1 %2 %3 %4")
                         .arg(it.key())
                         .arg(it->name)
                         .arg(it->axisCount)
                         .arg(it->axisLabels.join(','));
        table.sort(); // a hash: no order of its own
        QCOMPARE(table, QStringList({"1 Orthogonal 2 X,Y", "2 Polar -1 1 Axis,2 Axis", "3 Ternary 3 X,Y,Z"}));
    }

    void frenchLabelsAndCopiesKeepTheirTable()
    {
        TTranslator::install(QStringLiteral("fr"));
        const VNGraphData french;
        QCOMPARE(french.getViewTypes().value(2).axisLabels, QStringList({"Axe 1", "Axe 2"}));
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
        QCOMPARE(keys,
                 QStringList({"graphType", "graphName", "studyType", "familyName", "processType", "expectedUnit",
                              "expectedAnalysisType", "literatureReference", "comments"}));
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
        QTest::newRow("empty") << ""
                               << "0";
        QTest::newRow("word") << "Ternary"
                              << "0";
        QTest::newRow("decimal") << "2.5"
                                 << "0";
        QTest::newRow("beyond 32 bits") << "99999999999"
                                        << "0";
        QTest::newRow("negative") << "-4"
                                  << "-4";
        QTest::newRow("polar") << "2"
                               << "2";
    }

    void graphTypeThatIsNotANumberReadsAsZero()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QDomDocument document;
        const QDomElement root = parse(document,
                                       QStringLiteral("<g><informations><graphType>%1</graphType><ionList/>"
                                                      "</informations></g>")
                                           .arg(text));
        VNGraphData data;
        data.setViewType(Plavo::VIEW_TERNARY);
        QVERIFY(data.decode(root));
        QCOMPARE(data.getViewTypeString(), expected);
        QCOMPARE(int(data.getViewType()), expected.toInt());
        // Missing keys read as empty texts.
        QVERIFY(data.getToVIName().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestVNGraphData)
#include "tst_vngraphdata.moc"
