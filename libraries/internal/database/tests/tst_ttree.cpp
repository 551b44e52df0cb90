#include <ttree.h>
#include <QtTest>
class TestTree : public QObject { Q_OBJECT private slots: void order() {
 TTree<QObject*> r; new TTree<QObject*>(&r, 1); new TTree<QObject*>(&r, 2); QCOMPARE(r.getSon(0)->getNodeId(), 2); } };
QTEST_MAIN(TestTree)
#include "tst_ttree.moc"
