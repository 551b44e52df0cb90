#include <vndatamodeloverlay.h>

#include "tst_models_sample.h"

#include <vnobject2tovigraph.h>
#include <vnobject2tovioverlay.h>

#include <QAbstractItemModelTester>
#include <QFile>
#include <QHeaderView>
#include <QTableView>
#include <QTemporaryDir>
#include <QSignalSpy>
#include <QtTest>

namespace {

// A filled overlay: the oil-family zones of a sterane ternary diagram.
void fill(VNDataModelOverlay& model)
{
    model.setHeadersData({"C27", "C28", "C29"}, {"Marine shale", "Lacustrine", "Terrigenous"});
}

QStringList headers(const QAbstractItemModel& model, Qt::Orientation orientation, int role)
{
    QStringList result;
    for (int i = 0; i < 3; ++i)
        result << model.headerData(i, orientation, role).toString();
    return result;
}

} // namespace

class TestVNDataModelOverlay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<Qt::Orientation>(); }

    void anInvalidModelShowsNothing()
    {
        VNDataModelOverlay model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(!model.isValid());
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.columnCount(), 0);
        for (int section : {-1, 0, 1, 50}) {
            QVERIFY(!model.headerData(section, Qt::Horizontal).isValid());
            QVERIFY(!model.headerData(section, Qt::Vertical, VNDataModel::HeaderTextRole).isValid());
        }

        QSignalSpy headerChanged(&model, &QAbstractItemModel::headerDataChanged);
        QVERIFY(!model.setHeaderData(-1, Qt::Horizontal, QStringLiteral("x")));
        QVERIFY(!model.isValid());
        QCOMPARE(headerChanged.count(), 0);
    }

    // Every accepted header edit is announced while notify is set, sections
    // past the grid included. Qt's model tester takes a header signal for a
    // section the model does not have as a fault, so it is not attached here:
    // the announcement is meant for listeners that keep labels of their own.
    void everyHeaderEditIsAnnounced_data()
    {
        QTest::addColumn<bool>("filled");
        QTest::addColumn<int>("orientation");
        QTest::addColumn<int>("section");
        QTest::newRow("empty grid, column 3") << false << int(Qt::Horizontal) << 3;
        QTest::newRow("empty grid, row 0") << false << int(Qt::Vertical) << 0;
        QTest::newRow("column past the grid") << true << int(Qt::Horizontal) << 7;
        QTest::newRow("row past the grid") << true << int(Qt::Vertical) << 3;
        QTest::newRow("row inside the grid") << true << int(Qt::Vertical) << 1;
    }

    void everyHeaderEditIsAnnounced()
    {
        QFETCH(bool, filled);
        QFETCH(int, orientation);
        QFETCH(int, section);
        VNDataModelOverlay model;
        if (filled)
            fill(model);
        const int columns = model.columnCount();
        QSignalSpy headerChanged(&model, &QAbstractItemModel::headerDataChanged);
        QVERIFY(model.setHeaderData(section, Qt::Orientation(orientation), QStringLiteral("x")));
        QVERIFY(model.isValid());
        QCOMPARE(model.columnCount(), columns); // nothing stored outside the grid
        QCOMPARE(headerChanged.count(), 1);
        QCOMPARE(headerChanged.at(0).at(0).value<Qt::Orientation>(), Qt::Orientation(orientation));
        QCOMPARE(headerChanged.at(0).at(1).toInt(), section);
        QCOMPARE(headerChanged.at(0).at(2).toInt(), section);
    }

    // A view attached before the first fill shows the grid once it is filled.
    void aViewAttachedFirstShowsTheGrid_data()
    {
        QTest::addColumn<bool>("fromFile");
        QTest::newRow("setHeadersData") << false;
        QTest::newRow("open") << true;
    }

    void aViewAttachedFirstShowsTheGrid()
    {
        QFETCH(bool, fromFile);
        VNDataModelOverlay model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QTableView view;
        view.setModel(&model);
        QCOMPARE(view.horizontalHeader()->count(), 0);
        if (fromFile) {
            QTemporaryDir dir;
            const QString path = dir.filePath("zones.txt");
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("\tC27\tC28\tC29\nMarine shale\nLacustrine\nTerrigenous\n");
            file.close();
            QVERIFY(model.open(path));
        } else {
            fill(model);
        }
        QCOMPARE(view.horizontalHeader()->count(), 3);
        QCOMPARE(view.verticalHeader()->count(), 3);
        QCOMPARE(view.model()->headerData(2, Qt::Horizontal).toString(), QStringLiteral("C29"));
    }

    void headersCarryTheGrid()
    {
        VNDataModelOverlay model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        fill(model);
        QCOMPARE(reset.count(), 1);
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(headers(model, Qt::Horizontal, Qt::DisplayRole), QStringList({"C27", "C28", "C29"}));
        QCOMPARE(headers(model, Qt::Vertical, VNDataModel::HeaderTextRole),
                 QStringList({"Marine shale", "Lacustrine", "Terrigenous"}));
        QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
        QVERIFY(!model.headerData(0, Qt::Vertical, Qt::ToolTipRole).isValid());
        // Beyond the grid the item model's own numbering answers.
        QCOMPARE(model.headerData(3, Qt::Horizontal).toInt(), 4);
        QVERIFY(!model.headerData(3, Qt::Vertical, VNDataModel::HeaderTextRole).isValid());

        // The table operations name rows; editing a row header does not.
        QSignalSpy headerChanged(&model, &QAbstractItemModel::headerDataChanged);
        QVERIFY(model.renameRow(1, QStringLiteral("Lacustrine (fresh water)")));
        QVERIFY(model.setHeaderData(2, Qt::Vertical, QStringLiteral("ignored")));
        QVERIFY(model.setHeaderData(0, Qt::Horizontal, QStringLiteral("C27 steranes"), Qt::ToolTipRole));
        QCOMPARE(headerChanged.count(), 3);
        QCOMPARE(headerChanged.at(1).at(0).value<Qt::Orientation>(), Qt::Vertical);
        QCOMPARE(model.headerData(1, Qt::Vertical).toString(), QStringLiteral("Lacustrine (fresh water)"));
        QCOMPARE(model.headerData(2, Qt::Vertical).toString(), QStringLiteral("Terrigenous"));
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("C27 steranes"));

        model.setValid(false);
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!model.headerData(0, Qt::Horizontal).isValid());
    }

    // Cell edits are only announced (the zones hold no values); the grid's
    // shape is fixed.
    void cellsOnlySignalAndShapesAreFixed()
    {
        VNDataModelOverlay model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        fill(model);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy aboutToReset(&model, &QAbstractItemModel::modelAboutToBeReset);
        QVERIFY(model.setData(1, 2, 42.0));
        QVERIFY(model.setData(model.index(0, 0), QStringLiteral("x"), Qt::DisplayRole));
        QCOMPARE(changed.count(), 2);
        QVERIFY(changed.at(0).at(2).value<QVector<int>>().isEmpty());
        for (int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
            QVERIFY(!model.data(1, 2, role).isValid());
            QVERIFY(!model.data(model.index(0, 0), role).isValid());
        }
        QVERIFY(!model.setData(3, 0, 1.0));
        QVERIFY(!model.setData(0, 3, 1.0));
        QVERIFY(!model.setData(-1, 0, 1.0));
        QVERIFY(!model.setData(QModelIndex(), 1.0));
        QCOMPARE(changed.count(), 2);

        QVERIFY(!model.insertRows(0, 1));
        QVERIFY(!model.removeRows(0, 1));
        QList<int> rows{0, 1};
        QVERIFY(!model.removeRows(rows));
        QVERIFY(model.paste(model.index(0, 0), QStringLiteral("1\t2\n3\t4"), true).isEmpty());
        model.clear();
        QCOMPARE(aboutToReset.count(), 0);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(model.headerData(2, Qt::Vertical).toString(), QStringLiteral("Terrigenous"));

        model.setReadOnly(true);
        QVERIFY(!model.setData(0, 0, 1.0));
        QCOMPARE(changed.count(), 2);
    }

    void encodeAndDecode()
    {
        VNDataModelOverlay model;
        model.setToVIName(QStringLiteral("Oil families (Huang & Meinschein)"));
        model.setProcessType(QStringLiteral("GC-MS SIM m/z 217"));
        model.setLiteratureReference(QStringLiteral("Huang & Meinschein (1979) <GCA>"));
        QDomDocument document;
        QDomElement root = document.createElement(QStringLiteral("OverlayDocument"));
        document.appendChild(root);
        QVERIFY(model.encode(root));
        const QDomElement informations = root.firstChildElement(QStringLiteral("informations"));
        QCOMPARE(informations.firstChildElement().tagName(), QStringLiteral("overlayName"));
        QCOMPARE(informations.firstChildElement().nextSiblingElement().tagName(), QStringLiteral("processType"));
        QCOMPARE(informations.lastChildElement().tagName(), QStringLiteral("literatureReference"));

        QDomDocument reread;
        QVERIFY(reread.setContent(document.toString()));
        VNDataModelOverlay back;
        QVERIFY(back.decode(reread.documentElement()));
        QCOMPARE(descriptionOf(back), descriptionOf(model));

        // Refusals change nothing.
        QDomDocument other;
        QVERIFY(other.setContent(QStringLiteral("<o><informations><graphName>g</graphName></informations></o>")));
        QVERIFY(!back.decode(other.documentElement()));
        QVERIFY(!back.decode(QDomElement()));
        QVERIFY(!back.decode(static_cast<const VNObject2*>(nullptr)));
        QCOMPARE(descriptionOf(back), descriptionOf(model));

        // A free overlay object belongs to no database: nothing to read.
        VNObject2ToviGraph graph(QStringLiteral("Sterane ternary"));
        VNObject2ToviOverlay overlay(QStringLiteral("Zones"), &graph);
        QVERIFY(!back.decode(&overlay));
        QVERIFY(back.getGraph() == nullptr);
        QCOMPARE(descriptionOf(back), descriptionOf(model));
    }
};

QTEST_MAIN(TestVNDataModelOverlay)
#include "tst_vndatamodeloverlay.moc"
