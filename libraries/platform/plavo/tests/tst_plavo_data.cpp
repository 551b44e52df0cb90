#include <taxis.h>
#include <tcolor.h>
#include <tdata.h>

#include <QDomDocument>
#include <QtTest>

#include <limits>

using namespace Plavo;

namespace {
QDomElement root(QDomDocument& document)
{
    QDomElement element = document.createElement(QStringLiteral("root"));
    document.appendChild(element);
    return element;
}

// Writes `value` under a fresh root and reads it back into `into`.
template <class T>
bool roundTrip(const T& value, T& into)
{
    QDomDocument document;
    QDomElement parent = root(document);
    return value.encode(parent) && into.decode(parent.firstChildElement());
}
} // namespace

class TestPlavoData : public QObject
{
    Q_OBJECT

private slots:
    void seriesCopiesItsInput()
    {
        float x[] = {57.1f, 71.1f, 85.1f};
        float y[] = {1000.f, 650.5f, 420.25f};
        TData data(3, x, y);
        x[0] = 0.f; // the series owns its copy
        QCOMPARE(data.x(0), 57.1f);
        QCOMPARE(data.y(2), 420.25f);
        QCOMPARE(data.x(3), 0.f);
        QCOMPARE(data.x(-1), 0.f);

        QVERIFY(TData(0, x, y).isEmpty());
        QVERIFY(TData(-5, x, y).isEmpty());
        QVERIFY(TData(3, nullptr, y).isEmpty());
        QVERIFY(TData(3, x, nullptr).isEmpty());
    }

    void pointColoursAndLabelsAsASpectrumGivesThem()
    {
        const float x[] = {57.f, 71.f, 191.f};
        const float y[] = {10.f, 20.f, 30.f};
        TData data(3, x, y);
        float colors[3];
        QString labels[3];
        for (int i = 0; i < 3; ++i) {
            colors[i] = float(TColor::colorGet(int(x[i]), 3).rgb());
            labels[i] = QString::number(double(x[i]), 'f', 1);
        }
        data.setColor(colors);
        data.setLabels(labels);
        QCOMPARE(data.labels(), QStringList({"57.0", "71.0", "191.0"}));
        for (int i = 0; i < 3; ++i) {
            // A float keeps the red and green of an RGB exactly; blue may round.
            const QColor expected = TColor::colorGet(int(x[i]), 3);
            QVERIFY(data.pointColor(i).isValid());
            QCOMPARE(data.pointColor(i).red(), expected.red());
            QVERIFY(qAbs(data.pointColor(i).green() - expected.green()) <= 1);
        }
        // White rounds up past 32 bits as a float and must stay white.
        float white = float(QColor(Qt::white).rgb());
        TData one(1, x, y);
        one.setColor(&white);
        QCOMPARE(one.pointColor(0), QColor(Qt::white));
        float negative = -1.f;
        one.setColor(&negative);
        QVERIFY(!one.pointColor(0).isValid());
        QVERIFY(!one.pointColor(1).isValid());

        data.setColor(nullptr);
        data.setLabels(nullptr);
        QVERIFY(data.colors().isEmpty() && data.pointLabel(0).isEmpty());
    }

    void paletteIsDeterministicAndTotal()
    {
        QCOMPARE(TColor::colorGet(0, 4), TColor::paletteColor(0));
        QCOMPARE(TColor::colorGet(TColor::paletteSize(), 4), TColor::paletteColor(0));
        QCOMPARE(TColor::colorGet(-1, 4), TColor::paletteColor(TColor::paletteSize() - 1));
        QVERIFY(TColor::colorGet(0, 4) != TColor::colorGet(1, 4));
        // Many items: distinct neighbours, all valid, extremes accepted.
        QSet<QRgb> seen;
        for (int i = 0; i < 300; ++i) {
            const QColor c = TColor::colorGet(i, 300);
            QVERIFY(c.isValid());
            seen.insert(c.rgb());
        }
        QVERIFY(seen.size() > 250);
        QVERIFY(TColor::colorGet(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()).isValid());
        QVERIFY(TColor::colorGet(std::numeric_limits<int>::max(), -3).isValid());
        QCOMPARE(TColor::colorGet(5, 1000), TColor::colorGet(1005, 1000));
    }

    void seriesRoundTripsThroughXml()
    {
        // The extremes of float included: the shortest text of the largest
        // float reads back above it as a double.
        const float x[] = {1.f / 3.f, std::numeric_limits<float>::denorm_min(), -std::numeric_limits<float>::max()};
        const float y[] = {0.f, -0.f, std::numeric_limits<float>::max()};
        TData data(3, x, y);
        const float colors[] = {4.2e9f, 0.f, float(QColor(Qt::white).rgb())};
        const QString labels[] = {"a", "", "2->1 & <b>"};
        data.setColor(colors);
        data.setLabels(labels);
        data.setLabel(QStringLiteral("m/z 217"));
        data.setCurveColor(QColor(10, 20, 30, 128));
        TData read;
        QVERIFY(roundTrip(data, read));
        QVERIFY(read == data);

        // Colours finer than a document holds are kept as it would hold them.
        TData wide(1, x, y);
        wide.setCurveColor(QColor(QStringLiteral("#801020630")));
        QCOMPARE(wide.curveColor(), QColor(0x80, 0x02, 0x63));
        TData wideRead;
        QVERIFY(roundTrip(wide, wideRead));
        QVERIFY(wideRead == wide);

        // Reading a plain series over a coloured one leaves no colour behind.
        const TData plain(3, x, y);
        QVERIFY(roundTrip(plain, read));
        QVERIFY(read == plain);
        QVERIFY(!read.curveColor().isValid());

        const float bad[] = {std::numeric_limits<float>::quiet_NaN()};
        QDomDocument third;
        QDomElement parent3 = root(third);
        QVERIFY(!TData(1, bad, bad).encode(parent3));
        QVERIFY(!parent3.hasChildNodes());
    }

    void malformedSeriesAreRefused_data()
    {
        QTest::addColumn<QString>("xml");
        const QString head = "<curve><label>s</label><color>#ff0000</color><points>";
        QTest::newRow("no points element") << "<curve><label/><color/></curve>";
        QTest::newRow("no colour") << "<curve><label/><points/></curve>";
        QTest::newRow("bad colour") << "<curve><label/><color>blue-ish</color><points/></curve>";
        QTest::newRow("x not a number") << head + "<p x='one' y='1'/></points></curve>";
        QTest::newRow("y missing") << head + "<p x='1'/></points></curve>";
        QTest::newRow("x overflows a float") << head + "<p x='1e60' y='1'/></points></curve>";
        QTest::newRow("just past the largest float") << head + "<p x='3.4028236e38' y='1'/></points></curve>";
        QTest::newRow("infinite") << head + "<p x='inf' y='1'/></points></curve>";
        QTest::newRow("nan") << head + "<p x='nan' y='1'/></points></curve>";
        QTest::newRow("colours on some points") << head + "<p x='1' y='1' c='5'/><p x='2' y='2'/></points></curve>";
        QTest::newRow("labels on some points") << head + "<p x='1' y='1'/><p x='2' y='2' l='z'/></points></curve>";
        QTest::newRow("foreign element") << head + "<p x='1' y='1'/><q/></points></curve>";
        QTest::newRow("two point lists") << head + "</points><points/></curve>";
        QTest::newRow("wrong tag") << "<series><label/><color/><points/></series>";
    }

    void malformedSeriesAreRefused()
    {
        QFETCH(QString, xml);
        QDomDocument document;
        QVERIFY(document.setContent(xml));
        const float x[] = {7.f};
        TData data(1, x, x);
        const TData before = data;
        QVERIFY(!data.decode(document.documentElement()));
        QVERIFY(data == before);
    }

    void axisKeepsItsDataValues()
    {
        TAxis axis(QStringLiteral("Pr/nC17"), 0.01, 10.0);
        axis.setLogarithmic(true);
        QVERIFY(axis.addDataValue(TDataInfo::TYPE_VALUE, QString()));
        QVERIFY(axis.addDataValue(TDataInfo::TYPE_UNIT, QStringLiteral("ratio")));
        QVERIFY(axis.addDataValue(TDataInfo::TYPE_VALUE, QStringLiteral("PR-NC17")));
        QVERIFY(axis.addDataValue(TDataInfo::TYPE_VALUE, QStringLiteral("other")));
        QVERIFY(!axis.addDataValue(TDataInfo(TDataInfo::TYPE_NONE, QStringLiteral("x"))));
        QVERIFY(!axis.addDataValue(TDataInfo(TDataInfo::TYPE(8), QStringLiteral("x"))));
        QCOMPARE(axis.getDataValues().size(), 4);
        QCOMPARE(axis.getDataValues(TDataInfo::TYPE_VALUE).size(), 3);
        QCOMPARE(axis.firstDataValue(TDataInfo::TYPE_VALUE), QStringLiteral("PR-NC17"));
        QVERIFY(axis.firstDataValue(TDataInfo::TYPE_FORMULA).isEmpty());
        QVERIFY(!axis.setDataValues({TDataInfo(TDataInfo::TYPE_NAME, "a"), TDataInfo()}));
        QCOMPARE(axis.getDataValues().size(), 4);

        QVERIFY(!axis.setRange(5.0, 1.0));
        QVERIFY(!axis.setRange(0.0, std::numeric_limits<double>::infinity()));
        QCOMPARE(axis.maximum(), 10.0);

        TAxis read;
        QVERIFY(roundTrip(axis, read));
        QVERIFY(read == axis);
    }

    void malformedAxesAreRefused_data()
    {
        QTest::addColumn<QString>("xml");
        const QString fields = "<label>a</label><minimum>0</minimum><maximum>1</maximum><logarithmic>0</logarithmic>";
        QTest::newRow("no maximum") << "<axis><label/><minimum>0</minimum><logarithmic>0</logarithmic></axis>";
        QTest::newRow("no label")
            << "<axis><minimum>0</minimum><maximum>1</maximum><logarithmic>0</logarithmic></axis>";
        QTest::newRow("reversed range")
            << "<axis><label/><minimum>2</minimum><maximum>1</maximum><logarithmic>0</logarithmic></axis>";
        QTest::newRow("huge bound")
            << "<axis><label/><minimum>0</minimum><maximum>1e999</maximum><logarithmic>0</logarithmic></axis>";
        QTest::newRow("flag not boolean")
            << "<axis><label/><minimum>0</minimum><maximum>1</maximum><logarithmic>yes</logarithmic></axis>";
        QTest::newRow("unknown kind") << "<axis>" + fields
                + "<dataValues><dataValue type='8'>k</dataValue></dataValues></axis>";
        QTest::newRow("kind zero") << "<axis>" + fields
                + "<dataValues><dataValue type='0'>k</dataValue></dataValues></axis>";
        QTest::newRow("negative kind") << "<axis>" + fields
                + "<dataValues><dataValue type='-7'>k</dataValue></dataValues></axis>";
        QTest::newRow("kind not a number")
            << "<axis>" + fields + "<dataValues><dataValue type='seven'>k</dataValue></dataValues></axis>";
        QTest::newRow("kind missing") << "<axis>" + fields + "<dataValues><dataValue>k</dataValue></dataValues></axis>";
        QTest::newRow("foreign value") << "<axis>" + fields
                + "<dataValues><value type='7'>k</value></dataValues></axis>";
        QTest::newRow("two value lists") << "<axis>" + fields + "<dataValues/><dataValues/></axis>";
        QString many = "<axis>" + fields + "<dataValues>";
        for (int i = 0; i < 300; ++i)
            many += "<dataValue type='7'>k</dataValue>";
        QTest::newRow("too many values") << many + "</dataValues></axis>";
    }

    void malformedAxesAreRefused()
    {
        QFETCH(QString, xml);
        QDomDocument document;
        QVERIFY(document.setContent(xml));
        TAxis axis(QStringLiteral("kept"));
        axis.addDataValue(TDataInfo::TYPE_VALUE, QStringLiteral("K"));
        const TAxis before = axis;
        QVERIFY(!axis.decode(document.documentElement()));
        QVERIFY(axis == before);
    }
};

QTEST_GUILESS_MAIN(TestPlavoData)
#include "tst_plavo_data.moc"
