#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2indexation.h>
#include <vnobject2pixmap.h>
#include <vnobject2project.h>
#include <vnobject2signal.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

#include <QSet>
#include <QtTest>

class TestVNObject2 : public QObject
{
    Q_OBJECT
private slots:
    void kindsAndNumbers()
    {
        VNObject2Analysis analysis("A1");
        VNObject2Signal signal("TIC", &analysis);
        VNObject2Well well("W");
        VNObject2Project project("P");
        VNObject2Pixmap pixmap("img");
        VNObject2Dataset dataset("D");
        VNObject2Variable variable("V", "r1", "r2");
        QCOMPARE(analysis.type(), 1);
        QCOMPARE(signal.type(), 2);
        QCOMPARE(well.type(), 3);
        QCOMPARE(VNObject2Indexation("i").type(), 256);
        QCOMPARE(VNObject2Indexation("p", VNObjectTypePeakDetection).type(), 264);
        QCOMPARE(VNObject2Indexation("g", VNObjectTypeGlobalIndexation).type(), 528);
        // an unknown number must not produce an object of a foreign kind
        QCOMPARE(VNObject2Indexation("x", VNObjectTypeWell).type(), 256);
        QCOMPARE(signal.analysis(), &analysis);
        QCOMPARE(variable.reference2(), QString("r2"));

        // the kinds a database stores side by side never share a number
        QSet<int> numbers{project.type(), pixmap.type(), dataset.type(), variable.type(), 1, 2, 3, 256, 264,
                          528, 1025, 1026, 1027, 1028, 1033, 1040, 1041};
        QCOMPARE(numbers.size(), 17);
    }

    void folders()
    {
        QCOMPARE(VNObject2::folderName(VNObjectTypeAnalysis), VNObject2Analysis::folderName());
        QCOMPARE(VNObject2::folderName(VNObjectTypeWell), VNObject2Well::folderName());
        QCOMPARE(VNObject2::folderName(VNObjectTypePixmap), VNObject2Pixmap::folderName());
        QCOMPARE(VNObject2::folderName(VNObjectTypePeakDetection), VNObject2Indexation::folderName());
        QVERIFY(VNObject2::folderName(VNObjectTypeSignal).isNull());
        QVERIFY(VNObject2::folderName(VNObjectTypeRatio).isNull());
        QVERIFY(VNObject2::folderName(-1).isNull());
        QVERIFY(!VNObject2Analysis::folderName().isEmpty());
    }

    void keyDefaultsToName()
    {
        VNObject2Well well("W1");
        QCOMPARE(well.key(), QString("W1"));
        well.setKey("k");
        well.setName("W2");
        QCOMPARE(well.key(), QString("k"));
        QVERIFY(well.db() == nullptr);
    }
};

QTEST_APPLESS_MAIN(TestVNObject2)
#include "tst_vnobject2.moc"
