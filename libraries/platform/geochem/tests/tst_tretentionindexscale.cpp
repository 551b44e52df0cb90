// Retention indices from n-alkane times: exact at the alkanes, linear between
// the two that bracket a time, and reasons where there is no index.
#include <tretentionindexscale.h>

#include <ttranslator.h>

#include <QtTest>

#include <cmath>

using Alkane = TRetentionIndexScale::Alkane;
Q_DECLARE_METATYPE(Alkane)

class TestRetentionIndexScale : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install("en"); }

    void indicesBetweenTheAlkanes_data()
    {
        QTest::addColumn<double>("time");
        QTest::addColumn<double>("index");
        // nC17 at 20.0 min, nC18 at 22.0 min, nC20 at 25.0 min (nC19 not found).
        QTest::newRow("at an alkane") << 22.0 << 1800.0;
        QTest::newRow("pristane's place") << 20.14 << 1707.0;
        QTest::newRow("phytane's place, across a missing alkane") << 22.165 << 1811.0;
        QTest::newRow("across a missing alkane") << 23.5 << 1900.0;
        QTest::newRow("the last alkane") << 25.0 << 2000.0;
    }

    void indicesBetweenTheAlkanes()
    {
        QFETCH(double, time);
        QFETCH(double, index);
        // Given in any order: the scale sorts them by carbon number.
        const TRetentionIndexScale scale = TRetentionIndexScale::calibrate({{20, 25.0}, {17, 20.0}, {18, 22.0}});
        QVERIFY(scale.isValid());
        double found = 0.0;
        QVERIFY(scale.indexAt(time, &found));
        QVERIFY2(std::fabs(found - index) < 1e-9, qPrintable(QString::number(found, 'g', 17)));
        double back = 0.0;
        QVERIFY(scale.timeOf(index, &back));
        QVERIFY(std::fabs(back - time) < 1e-9);
    }

    void reasonsInsteadOfIndices_data()
    {
        QTest::addColumn<QVector<Alkane>>("alkanes");
        QTest::addColumn<double>("time");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no alkane") << QVector<Alkane>{} << 20.0 << "en"
                                   << "fewer than two n-alkanes found (0)";
        QTest::newRow("one alkane") << QVector<Alkane>{{17, 20.0}} << 20.0 << "fr"
                                    << "moins de deux n-alcanes trouvés (1)";
        QTest::newRow("out of order") << QVector<Alkane>{{17, 22.0}, {18, 20.0}} << 21.0 << "en"
                                      << "C17 and C18 do not elute in order";
        QTest::newRow("before the first") << QVector<Alkane>{{17, 20.0}, {18, 22.0}} << 19.0 << "en"
                                          << "outside the n-alkanes found (C17 to C18)";
        QTest::newRow("after the last") << QVector<Alkane>{{17, 20.0}, {18, 22.0}} << 30.0 << "fr"
                                        << "en dehors des n-alcanes trouvés (C17 à C18)";
    }

    void reasonsInsteadOfIndices()
    {
        QFETCH(QVector<Alkane>, alkanes);
        QFETCH(double, time);
        QFETCH(QString, language);
        QFETCH(QString, reason);
        TTranslator::install(language);
        const TRetentionIndexScale scale = TRetentionIndexScale::calibrate(alkanes);
        double index = -1.0;
        QString why;
        QVERIFY(!scale.indexAt(time, &index, &why));
        QCOMPARE(index, -1.0);
        QVERIFY2(why.contains(reason), qPrintable(why));
    }
};

QTEST_GUILESS_MAIN(TestRetentionIndexScale)
#include "tst_tretentionindexscale.moc"
