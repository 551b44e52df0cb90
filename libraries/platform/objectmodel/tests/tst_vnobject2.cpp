#include <tlocalization.h>
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

        // the kinds a database stores side by side never share a number
        QSet<int> numbers{project.type(),
                          pixmap.type(),
                          dataset.type(),
                          variable.type(),
                          1,
                          2,
                          3,
                          256,
                          264,
                          528,
                          1025,
                          1026,
                          1027,
                          1028,
                          1033,
                          1040,
                          1041};
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
    }

    void keyDefaultsToName()
    {
        VNObject2Well well("W1");
        QCOMPARE(well.key(), QString("W1"));
        well.setKey("k");
        well.setName("W2");
        QCOMPARE(well.key(), QString("k"));
    }

    void localizationKml()
    {
        // Text that must survive the XML: markup characters and non-ASCII.
        const QString name = QStringLiteral("Puits <A&B> \"Élan\"");
        const TLocalization position(-12.34567891, 179.99999999, -2.5);
        QString placeName;
        const TLocalization read = TLocalization::fromKml(position.toKml(name), &placeName);
        QVERIFY(read.isValid());
        QCOMPARE(placeName, name);
        QCOMPARE(QList<double>({read.latitude(), read.longitude(), read.altitude()}),
                 QList<double>({-12.34567891, 179.99999999, -2.5}));
        // Longitude comes first in KML; never an exponent, even for tiny values.
        const QByteArray kml = TLocalization(1e-9, 45.0).toKml(QString());
        QVERIFY2(kml.contains("<coordinates>45,0,0</coordinates>"), kml.constData());

        // A position written by someone else: other elements around, no altitude.
        const QByteArray foreign = "<?xml version=\"1.0\"?><kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>"
                                   "<Placemark><name>A</name><LineString><coordinates>1,2 3,4</coordinates>"
                                   "</LineString></Placemark><Placemark><name>B</name><Point><coordinates> 5.5 , "
                                   "-6.25 </coordinates></Point></Placemark></Document></kml>";
        const TLocalization point = TLocalization::fromKml(foreign, &placeName);
        QCOMPARE(placeName, QStringLiteral("B"));
        QCOMPARE(QList<double>({point.latitude(), point.longitude(), point.altitude()}),
                 QList<double>({-6.25, 5.5, 0.0}));

        QVERIFY(!TLocalization().isValid());
        for (const QByteArray& bad :
             QList<QByteArray>{QByteArray(), "not xml", "<gpx><Point><coordinates>1,2</coordinates></Point></gpx>",
                               "<kml><Placemark><Point><coordinates>1</coordinates></Point></Placemark></kml>",
                               "<kml><Placemark><Point><coordinates>1,2,3,4</coordinates></Point></Placemark></kml>",
                               "<kml><Placemark><Point><coordinates>200,2</coordinates></Point></Placemark></kml>",
                               "<kml><Placemark><Point><coordinates>1,nan</coordinates></Point></Placemark></kml>",
                               "<kml><Placemark><Point><coordinates>1,2"}) {
            placeName = QStringLiteral("unchanged");
            QVERIFY2(!TLocalization::fromKml(bad, &placeName).isValid(), bad.constData());
            QCOMPARE(placeName, QStringLiteral("unchanged"));
        }
    }
};

QTEST_APPLESS_MAIN(TestVNObject2)
#include "tst_vnobject2.moc"
