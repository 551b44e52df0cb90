#include <txmlmethod.h>
#include <QtTest>
class TestXml : public QObject { Q_OBJECT private slots: void roundTrip() {
 QDomDocument d; QDomElement e = d.createElement("a"); d.appendChild(e);
 QVERIFY(TXMLMethod::addToElement(e, "k", "v")); QCOMPARE(TXMLMethod::getInfoString(e, "k"), QString("v")); } };
QTEST_MAIN(TestXml)
#include "tst_txmlmethod.moc"
