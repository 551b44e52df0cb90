// Parameters' formulas read over compound short names and evaluated: every
// formula of the sample reference content, the names that look like
// arithmetic, and the reasons given instead of a value.
#include <tformula.h>

#include <ttranslator.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <cmath>

namespace {

const QStringList Names
    = {"Pr", "Ph", "P", "nC17", "nC18", "2-MP", "3-MP", "1-MP", "9-MP", "Ts", "Tm", "C29aaa20S", "C29aaa20R"};

} // namespace

class TestFormula : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install("en"); }

    void values_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::addColumn<QStringList>("names");
        // Pr = 8, Ph = 4, P = 10, nC17 = 16, nC18 = 5, 2-MP = 3, 3-MP = 2, 1-MP = 1, 9-MP = 4, Ts = 1, Tm = 3
        QTest::newRow("ratio") << "Pr/Ph" << 2.0 << QStringList{"Pr", "Ph"};
        QTest::newRow("longest name first") << "P+Pr" << 18.0 << QStringList{"P", "Pr"};
        QTest::newRow("names with hyphens add") << "2-MP+3-MP" << 5.0 << QStringList{"2-MP", "3-MP"};
        QTest::newRow("MPI-1") << "1.5*(2-MP+3-MP)/(P+1-MP+9-MP)" << 1.5 * 5 / 15
                               << QStringList{"2-MP", "3-MP", "P", "1-MP", "9-MP"};
        QTest::newRow("a number minus a name") << "10-Pr" << 2.0 << QStringList{"Pr"};
        QTest::newRow("precedence") << "Pr+Ph*2-nC18/5" << 15.0 << QStringList{"Pr", "Ph", "nC18"};
        QTest::newRow("unary minus and blanks") << " - ( Ts - Tm ) " << 2.0 << QStringList{"Ts", "Tm"};
        QTest::newRow("a name used twice") << "Ts/(Ts+Tm)" << 0.25 << QStringList{"Ts", "Tm"};
        QTest::newRow("exponent") << "1e2*Pr/Ph/2.5E1" << 8.0 << QStringList{"Pr", "Ph"};
    }

    void values()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QFETCH(QStringList, names);
        const QHash<QString, double> measured{{"Pr", 8},   {"Ph", 4},   {"P", 10},   {"nC17", 16},
                                              {"nC18", 5}, {"2-MP", 3}, {"3-MP", 2}, {"1-MP", 1},
                                              {"9-MP", 4}, {"Ts", 1},   {"Tm", 3}};
        const TFormula formula = TFormula::parse(text, Names);
        QVERIFY2(formula.isValid(), qPrintable(formula.error()));
        QCOMPARE(formula.names(), names);
        const TFormula::Result result = formula.evaluate(measured);
        QVERIFY2(result.ok, qPrintable(result.reason));
        QVERIFY(result.reason.isEmpty());
        QVERIFY(std::fabs(result.value - expected) < 1e-12);
    }

    void reasonsInsteadOfValues_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown name") << "Pr/Xyz"
                                      << "en"
                                      << "unknown name 'Xyz'";
        QTest::newRow("a longer word is not a name") << "Prx/Ph"
                                                     << "fr"
                                                     << "nom inconnu 'Prx'";
        QTest::newRow("missing compound") << "Pr/nC17"
                                          << "en"
                                          << "no value for nC17";
        QTest::newRow("missing compounds, in French") << "(Pr+Ph)/(nC17+nC18)"
                                                      << "fr"
                                                      << "pas de valeur pour nC17, nC18";
        QTest::newRow("division by zero") << "Pr/(Ts-Ts)"
                                          << "en"
                                          << "division by zero";
        QTest::newRow("unclosed parenthesis") << "(Pr+Ph"
                                              << "en"
                                              << "a parenthesis is not closed";
        QTest::newRow("stray parenthesis") << "Pr)"
                                           << "en"
                                           << "unexpected ')' at position 3";
        QTest::newRow("dangling operator") << "Pr/"
                                           << "fr"
                                           << "la formule se termine trop tôt";
        QTest::newRow("two operators") << "Pr*/Ph"
                                       << "en"
                                       << "unexpected '/' at position 4";
        QTest::newRow("not a number") << "1.2.3*Pr"
                                      << "en"
                                      << "'1.2.3' is not a number";
        QTest::newRow("empty") << "  "
                               << "en"
                               << "the formula is empty";
        QTest::newRow("too deep") << QString(200, '(') + "Pr" + QString(200, ')') << "en"
                                  << "nested too deeply";
        QTest::newRow("huge value") << "1e308*1e308*Pr"
                                    << "en"
                                    << "not a finite number";
    }

    void reasonsInsteadOfValues()
    {
        QFETCH(QString, text);
        QFETCH(QString, language);
        QFETCH(QString, reason);
        TTranslator::install(language);
        const QHash<QString, double> measured{{"Pr", 8}, {"Ph", 4}, {"Ts", 1}, {"Tm", 3}};
        const TFormula::Result result = TFormula::parse(text, Names).evaluate(measured);
        QVERIFY(!result.ok);
        QVERIFY2(result.reason.contains(reason), qPrintable(result.reason));
    }

    // Every parameter of the sample reference content reads over the sample's
    // short names, and gives a value when each compound has one.
    void everySampleFormulaReads()
    {
        QFile file(VN_TOVI_SAMPLE_FILE);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        QStringList names;
        for (const QJsonValue& compound : root.value("compounds").toArray())
            names << compound.toObject().value("shortName").toString();
        int count = 0;
        for (const QJsonValue& parameter : root.value("parameters").toArray()) {
            const QString text = parameter.toObject().value("formula").toString();
            const TFormula formula = TFormula::parse(text, names);
            QVERIFY2(formula.isValid(), qPrintable(text + ": " + formula.error()));
            QHash<QString, double> ones;
            for (const QString& name : formula.names())
                ones.insert(name, 1.0 + formula.names().indexOf(name));
            QVERIFY2(formula.evaluate(ones).ok, qPrintable(text));
            ++count;
        }
        QCOMPARE(count, 33);
        // The methylphenanthrene index reads four compounds, not arithmetic on numbers.
        const TFormula mpi = TFormula::parse("1.5*(2-MP+3-MP)/(P+1-MP+9-MP)", names);
        QCOMPARE(mpi.names(), (QStringList{"2-MP", "3-MP", "P", "1-MP", "9-MP"}));
    }
};

QTEST_GUILESS_MAIN(TestFormula)
#include "tst_tformula.moc"
