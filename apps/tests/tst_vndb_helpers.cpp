// Axis ticks and argument words: the pieces of vndb that are pure functions.
#include "cliarguments.h"
#include "nicescale.h"

#include <QtTest>

#include <cmath>
#include <limits>

class TestVndbHelpers : public QObject
{
    Q_OBJECT

private slots:
    void ticksCoverTheRangeAtRoundSteps_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<int>("wished");
        QTest::newRow("minutes") << 5.0 << 65.0 << 13;
        QTest::newRow("abundance") << 0.0 << 1.27e7 << 6;
        QTest::newRow("tiny") << 0.0012 << 0.0047 << 5;
        QTest::newRow("negative") << -3.3 << 7.1 << 6;
        QTest::newRow("reversed") << 10.0 << 2.0 << 5;
        QTest::newRow("flat") << 42.0 << 42.0 << 5;
        QTest::newRow("zero") << 0.0 << 0.0 << 5;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 1.0 << 5;
    }

    void ticksCoverTheRangeAtRoundSteps()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(int, wished);
        const NiceScale scale(low, high, wished);
        const QVector<double> ticks = scale.ticks();
        QVERIFY(ticks.size() >= 2);
        QVERIFY(ticks.size() <= 2 * wished + 1);
        if (std::isfinite(low)) {
            QVERIFY(scale.minimum() <= std::min(low, high) + 1e-12);
            QVERIFY(scale.maximum() >= std::max(low, high) - 1e-12);
        }
        // The step is 1, 2, 2.5 or 5 times a power of ten.
        const double mantissa = scale.step() / std::pow(10.0, std::floor(std::log10(scale.step())));
        QVERIFY2(std::fabs(mantissa - 1) < 1e-9 || std::fabs(mantissa - 2) < 1e-9 || std::fabs(mantissa - 2.5) < 1e-9
                     || std::fabs(mantissa - 5) < 1e-9,
                 qPrintable(QString::number(scale.step())));
        // Labels are short and distinct: no float noise, no repeated text.
        QStringList labels;
        for (double t : ticks)
            labels << scale.label(t);
        QCOMPARE(QSet<QString>(labels.begin(), labels.end()).size(), labels.size());
        for (const QString& label : labels) {
            QVERIFY2(label.size() <= 8, qPrintable(label));
            QVERIFY(label != "-0");
        }
    }

    void knownScalesReadAsPeopleWriteThem()
    {
        const NiceScale minutes(5.0, 65.0, 13);
        QCOMPARE(minutes.step(), 5.0);
        QCOMPARE(minutes.label(minutes.ticks().first()), "5");
        QCOMPARE(minutes.label(65.0), "65");
        const NiceScale small(0.0, 1.0, 5);
        QCOMPARE(small.step(), 0.25);
        QCOMPARE(small.label(0.75), "0.75");
        QCOMPARE(NiceScale(0.0, 0.3, 4).label(0.30000000000000004), "0.3");
        QCOMPARE(NiceScale::displayExponent(9999.0), 0);
        QCOMPARE(NiceScale::displayExponent(12700000.0), 7);
        QCOMPARE(NiceScale::niceNumber(0.0, true), 1.0);
        QCOMPARE(NiceScale::niceNumber(3.2, false), 5.0);
    }

    void argumentsAreSplitIntoOptionsAndWords()
    {
        const QList<CliOption> options = {CliOption{"tic", QChar(), 0, QString(), QString()},
                                          CliOption{"output", QLatin1Char('o'), 1, QString(), QString()},
                                          CliOption{"spectrum", QChar(), 2, QString(), QString()}};
        CliArguments arguments;
        QString error;
        QVERIFY(arguments.parse({"dir", "--spectrum", "10", "20", "name", "-o", "a.png"}, options, &error));
        QCOMPARE(arguments.positionals(), (QStringList{"dir", "name"}));
        QCOMPARE(arguments.values("spectrum"), (QStringList{"10", "20"}));
        QCOMPARE(arguments.value("output"), "a.png");
        QVERIFY(!arguments.isSet("tic"));

        // The optional second value is taken only when it is a number.
        QVERIFY(arguments.parse({"--spectrum=7", "x", "--tic"}, options, &error));
        QCOMPARE(arguments.values("spectrum"), QStringList{"7"});
        QCOMPARE(arguments.positionals(), QStringList{"x"});
        QVERIFY(arguments.isSet("tic"));

        // Negative numbers and words after "--" are words, not options.
        QVERIFY(arguments.parse({"-5", "--", "--tic"}, options, &error));
        QCOMPARE(arguments.positionals(), (QStringList{"-5", "--tic"}));
        // A short option without its value; the long forms of the refusals are
        // checked where vndb runs as a process.
        QVERIFY(!arguments.parse({"-o"}, options, &error));
    }

    void numbersAreFiniteAndIndexesNotNegative()
    {
        double number = 0.0;
        int index = 0;
        QVERIFY(CliArguments::toNumber(" 1e3 ", &number));
        QCOMPARE(number, 1000.0);
        QVERIFY(!CliArguments::toNumber("inf", &number));
        QVERIFY(!CliArguments::toNumber("nan", &number));
        QVERIFY(!CliArguments::toNumber("12abc", &number));
        QVERIFY(CliArguments::toIndex("0", &index));
        QVERIFY(!CliArguments::toIndex("-1", &index));
        QVERIFY(!CliArguments::toIndex("1.5", &index));
    }
};

QTEST_GUILESS_MAIN(TestVndbHelpers)
#include "tst_vndb_helpers.moc"
