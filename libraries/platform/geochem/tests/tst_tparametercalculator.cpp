// Parameter values from measures built by hand: known areas and heights give
// exact values, and a missing compound, a division by zero or an unknown name
// give no value and a reason in the user's language.
#include <tparametercalculator.h>

#include <ttranslator.h>

#include <QtTest>

#include <cmath>

namespace {

const QStringList Names = {"Pr",   "Ph",   "P",    "nC17", "nC18", "nC24", "nC25", "nC26", "nC27", "nC28", "nC29",
                           "nC30", "nC31", "nC32", "nC33", "nC34", "Ts",   "Tm",   "2-MP", "3-MP", "1-MP", "9-MP"};

TCompoundMeasure found(const QString& name, double area, double height = 0.0)
{
    TCompoundMeasure m;
    m.shortName = name;
    m.found = true;
    m.area = area;
    m.height = height > 0.0 ? height : area / 10.0;
    return m;
}

TCompoundMeasure missing(const QString& name, const QString& reason)
{
    TCompoundMeasure m;
    m.shortName = name;
    m.reason = reason;
    return m;
}

// A mature oil's measures, chosen so that every value is exact.
TCompoundMeasures oil()
{
    TCompoundMeasures measures{found("Pr", 300, 50), found("Ph", 200, 20), found("nC17", 600), found("nC18", 400),
                               found("Ts", 30, 9),   found("Tm", 90, 3),   found("2-MP", 3),   found("3-MP", 2),
                               found("P", 10),       found("1-MP", 1),     found("9-MP", 4)};
    // Odd n-alkanes C25-C33 each 12, even C24-C32 each 10, C26-C34 each 8.
    for (int n = 24; n <= 34; ++n)
        measures << found(QStringLiteral("nC%1").arg(n), n % 2 ? 12.0 : (n == 24 ? 18.0 : (n == 34 ? 0.0 : 8.0)));
    return measures;
}

TParameterDefinition parameter(const QString& name, const QString& formula,
                               const QString& processType = QStringLiteral("Peak area ratio"))
{
    return TParameterDefinition{QStringLiteral("K-") + name, name, formula, processType};
}

} // namespace

class TestParameterCalculator : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install("en"); }

    void values_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("processType");
        QTest::addColumn<double>("expected");
        QTest::newRow("Pr/Ph") << "Pr/Ph"
                               << "Peak area ratio" << 1.5;
        QTest::newRow("Pr/n-C17") << "Pr/nC17"
                                  << "Peak area ratio" << 0.5;
        QTest::newRow("Ts/(Ts+Tm)") << "Ts/(Ts+Tm)"
                                    << "Peak area ratio" << 0.25;
        QTest::newRow("Ts/(Ts+Tm) on heights") << "Ts/(Ts+Tm)"
                                               << "Peak height ratio" << 0.75;
        QTest::newRow("Pr/Ph on heights, in French") << "Pr/Ph"
                                                     << "Rapport de hauteurs de pics" << 2.5;
        QTest::newRow("names that look like arithmetic") << "2-MP+3-MP"
                                                         << "" << 5.0;
        QTest::newRow("MPI-1") << "1.5*(2-MP+3-MP)/(P+1-MP+9-MP)"
                               << "Peak area ratio" << 0.5;
        // Odd C25-C33 = 60; even C24-C32 = 18 + 4 x 8 = 50; even C26-C34 = 4 x 8 + 0 = 32.
        QTest::newRow("CPI") << "0.5*((nC25+nC27+nC29+nC31+nC33)/(nC24+nC26+nC28+nC30+nC32)"
                                "+(nC25+nC27+nC29+nC31+nC33)/(nC26+nC28+nC30+nC32+nC34))"
                             << "Peak area ratio" << 0.5 * (60.0 / 50.0 + 60.0 / 32.0);
    }

    void values()
    {
        QFETCH(QString, formula);
        QFETCH(QString, processType);
        QFETCH(double, expected);
        const TParameterCalculator calculator({parameter("p", formula, processType)}, Names);
        const QList<TParameterValue> values = calculator.compute(oil());
        QCOMPARE(values.size(), 1);
        QVERIFY2(values.first().ok, qPrintable(values.first().reason));
        QVERIFY(values.first().reason.isEmpty());
        QCOMPARE(values.first().key, QStringLiteral("K-p"));
        QCOMPARE(values.first().name, QStringLiteral("p"));
        QVERIFY2(std::fabs(values.first().value - expected) < 1e-12, qPrintable(QString::number(values.first().value)));
    }

    void reasons_data()
    {
        QTest::addColumn<QString>("formula");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("reason");
        QTest::newRow("compound not identified, with identification's reason")
            << "Pr/Ph"
            << "en"
            << "no value for Ph (Ph: no peak within 15 index units of 1811)";
        QTest::newRow("compound never measured") << "Pr/nC19"
                                                 << "en"
                                                 << "no value for nC19";
        QTest::newRow("division by zero") << "nC30/nC34"
                                          << "en"
                                          << "division by zero";
        QTest::newRow("division by zero, in French") << "nC30/nC34"
                                                     << "fr"
                                                     << "division par zéro";
        QTest::newRow("unknown name") << "Pr/Xyz"
                                      << "en"
                                      << "unknown name 'Xyz'";
        QTest::newRow("no formula") << ""
                                    << "fr"
                                    << "la formule est vide";
    }

    void reasons()
    {
        QFETCH(QString, formula);
        QFETCH(QString, language);
        QFETCH(QString, reason);
        TTranslator::install(language);
        TCompoundMeasures measures = oil();
        for (int i = 0; i < measures.size(); ++i) {
            if (measures[i].shortName == QLatin1String("Ph"))
                measures[i] = missing("Ph", "no peak within 15 index units of 1811");
        }
        const TParameterCalculator calculator({parameter("p", formula)}, Names + QStringList{"nC19"});
        const QList<TParameterValue> values = calculator.compute(measures);
        QCOMPARE(values.size(), 1);
        QVERIFY(!values.first().ok);
        QCOMPARE(values.first().reason, reason);
    }

    void everyParameterInOrder()
    {
        // One failing parameter does not stop the others; the order is kept.
        const TParameterCalculator calculator(
            {parameter("a", "Pr/Ph"), parameter("b", "Pr/Xyz"), parameter("c", "Ts/Tm")}, Names);
        const QList<TParameterValue> values = calculator.compute(oil());
        QCOMPARE(values.size(), 3);
        QCOMPARE(values.at(0).name, QStringLiteral("a"));
        QVERIFY(values.at(0).ok);
        QVERIFY(!values.at(1).ok);
        QVERIFY(values.at(2).ok);
        QCOMPARE(values.at(2).value, 30.0 / 90.0);
        // Nothing measured: every parameter says why, none has a value.
        for (const TParameterValue& value : calculator.compute(TCompoundMeasures()))
            QVERIFY(!value.ok && !value.reason.isEmpty());
    }

    void firstMeasureOfACompoundCounts()
    {
        const TParameterCalculator calculator({parameter("a", "Pr/Ph")}, Names);
        const QList<TParameterValue> values
            = calculator.compute({found("Pr", 6), missing("Ph", "x"), found("Ph", 3), found("Ph", 100)});
        QVERIFY(values.first().ok);
        QCOMPARE(values.first().value, 2.0);
    }
};

QTEST_GUILESS_MAIN(TestParameterCalculator)
#include "tst_tparametercalculator.moc"
