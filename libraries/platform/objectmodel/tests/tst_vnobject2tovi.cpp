#include <vnobject2tovicompound.h>
#include <vnobject2tovieic.h>
#include <vnobject2tovigraph.h>
#include <vnobject2tovijoint.h>
#include <vnobject2tovioverlay.h>
#include <vnobject2toviratio.h>

#include <QtTest>

class TestVNObject2Tovi : public QObject
{
    Q_OBJECT
private slots:
    void kindsKeepTheirStoredNumbers()
    {
        QCOMPARE(VNObject2ToviRatio().type(), 1025);
        QCOMPARE(VNObject2ToviCompound().type(), 1026);
        QCOMPARE(VNObject2ToviGraph().type(), 1027);
        QCOMPARE(VNObject2ToviOverlay().type(), 1028);
        QCOMPARE(VNObject2ToviJoint().type(), 1033);
        QCOMPARE(VNObject2ToviEIC().type(), 1040);
        for (int t : {1025, 1026, 1027, 1028, 1033, 1040, 1041})
            QVERIFY(VNObject2Tovi::isToviType(t));
        for (int t : {0, 1, 2, 3, 16, 256, 1024, 1042})
            QVERIFY(!VNObject2Tovi::isToviType(t));
    }

    void keyIsTheNameUntilTheStorageChoosesOne()
    {
        VNObject2ToviEIC named("m/z 191", "191");
        QCOMPARE(named.key(), QString("m/z 191"));
        QCOMPARE(VNObject2ToviEIC("m/z 191", "191", "7").key(), QString("7"));
    }

    void referenceKeysSplitKeepingEmptyParts()
    {
        VNObject2ToviCompound c("Pristane");
        c.setToviKey("Pr;;ORL-Pr");
        QCOMPARE(c.toviKeys(), QStringList({"Pr", "", "ORL-Pr"}));
        c.setToviKey(QString());
        QCOMPARE(c.toviKeys(), QStringList({""}));
    }

    void jointAndOverlayPointAtTheirPeers()
    {
        VNObject2ToviCompound c("C30 hopane");
        VNObject2ToviEIC e("m/z 191", "191");
        VNObject2ToviJoint j("C30 hopane / 191", &c, &e);
        QCOMPARE(j.compound(), &c);
        QCOMPARE(j.eic(), &e);
        VNObject2ToviGraph g("Pr/n-C17 vs Ph/n-C18");
        QCOMPARE(g.getTitle(), QString("Pr/n-C17 vs Ph/n-C18"));
        VNObject2ToviOverlay o("Type II", &g);
        QCOMPARE(o.graph(), &g);
        QCOMPARE(VNObject2ToviGraph::folderName(), QString("Graphs"));
    }
};

QTEST_APPLESS_MAIN(TestVNObject2Tovi)
#include "tst_vnobject2tovi.moc"
