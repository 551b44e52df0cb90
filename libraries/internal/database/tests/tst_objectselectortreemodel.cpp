// The selector tree as an item model: only visible nodes are rows, every
// change is announced (rows, layout or reset) and checked by Qt's model
// tester; ticks asked through the model change nothing by themselves.
#include "tst_objectselectorsample.h"

#include <objectselectormodel.h>
#include <objectselectortreemodel.h>

#include <QAbstractItemModelTester>
#include <QFont>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

using Node = TTree<ObjectSelectorItemInterface*>;

// root: "A" with a0..a(n-1); "B" with "b0" (which holds "b0x") and "b1"; "C" empty but for "c0".
void build(ObjectSelectorModel& model, int leavesOfA)
{
    model.root().setAutoDelete(true);
    Node* a = sample::category(model, "A", "A");
    for (int i = 0; i < leavesOfA; ++i)
        sample::appendNode(a, sample::makeItem(QStringLiteral("a%1").arg(i), QStringLiteral("a%1").arg(i), {}, true));
    Node* b = sample::category(model, "B", "B");
    Node* b0 = sample::appendNode(b, sample::makeItem("b0", "b0", {}, true));
    sample::appendNode(b0, sample::makeItem("b0x", "b0x", {}, true));
    sample::appendNode(b, sample::makeItem("b1", "b1", {}, true));
    Node* c = sample::category(model, "C", "C");
    sample::appendNode(c, sample::makeItem("c0", "c0", {}, true));
}

Node* nodeOf(ObjectSelectorModel& model, const QString& id)
{
    return const_cast<Node*>(sample::nodeOf(model, sample::find(model, id)));
}

// Every row's title, with its parent's: "B/b0".
QStringList rows(const QAbstractItemModel& model, const QModelIndex& parent = QModelIndex())
{
    QStringList titles;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const QString prefix = parent.isValid() ? parent.data().toString() + "/" : QString();
        titles << prefix + index.data().toString();
        titles << rows(model, index);
    }
    return titles;
}

struct Spies
{
    explicit Spies(QAbstractItemModel* model)
        : removed(model, &QAbstractItemModel::rowsRemoved)
        , inserted(model, &QAbstractItemModel::rowsInserted)
        , layout(model, &QAbstractItemModel::layoutChanged)
        , reset(model, &QAbstractItemModel::modelReset)
    { }
    QString counts() const
    {
        return QStringLiteral("removed %1, inserted %2, layout %3, reset %4")
            .arg(removed.count())
            .arg(inserted.count())
            .arg(layout.count())
            .arg(reset.count());
    }
    QSignalSpy removed;
    QSignalSpy inserted;
    QSignalSpy layout;
    QSignalSpy reset;
};

} // namespace

class TestObjectSelectorTreeModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // What QSignalSpy needs to record a layout change.
        qRegisterMetaType<QList<QPersistentModelIndex>>();
        qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>();
    }

    void showsOnlyVisibleNodes_data()
    {
        QTest::addColumn<int>("leavesOfA");
        QTest::addColumn<QStringList>("hidden");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("announced");

        const QStringList all{"A", "A/a0", "A/a1", "A/a2", "B", "B/b0", "b0/b0x", "B/b1", "C", "C/c0"};
        QTest::newRow("nothing hidden") << 3 << QStringList() << all << "removed 0, inserted 0, layout 0, reset 0";
        QTest::newRow("one leaf") << 3 << QStringList{"a1"}
                                  << QStringList{"A", "A/a0", "A/a2", "B", "B/b0", "b0/b0x", "B/b1", "C", "C/c0"}
                                  << "removed 1, inserted 0, layout 0, reset 0";
        QTest::newRow("a hidden node takes its sons")
            << 3 << QStringList{"b0"} << QStringList{"A", "A/a0", "A/a1", "A/a2", "B", "B/b1", "C", "C/c0"}
            << "removed 1, inserted 0, layout 0, reset 0";
        QTest::newRow("hidden son under a hidden node")
            << 3 << QStringList{"b0", "b0x"} << QStringList{"A", "A/a0", "A/a1", "A/a2", "B", "B/b1", "C", "C/c0"}
            << "removed 1, inserted 0, layout 0, reset 0";
        QTest::newRow("a whole category") << 3 << QStringList{"A", "C"} << QStringList{"B", "B/b0", "b0/b0x", "B/b1"}
                                          << "removed 2, inserted 0, layout 0, reset 0";
        QTest::newRow("two runs in one list")
            << 3 << QStringList{"a0", "a2"} << QStringList{"A", "A/a1", "B", "B/b0", "b0/b0x", "B/b1", "C", "C/c0"}
            << "removed 2, inserted 0, layout 0, reset 0";

        // Every other leaf of a long list: too many runs for row signals.
        QStringList odd;
        QStringList expected{"A"};
        for (int i = 0; i < 100; ++i) {
            if (i % 2)
                odd << QStringLiteral("a%1").arg(i);
            else
                expected << QStringLiteral("A/a%1").arg(i);
        }
        expected << QStringList{"B", "B/b0", "b0/b0x", "B/b1", "C", "C/c0"};
        QTest::newRow("scattered runs") << 100 << odd << expected << "removed 0, inserted 0, layout 1, reset 0";
    }

    void showsOnlyVisibleNodes()
    {
        QFETCH(int, leavesOfA);
        QFETCH(QStringList, hidden);
        QFETCH(QStringList, expected);
        QFETCH(QString, announced);

        ObjectSelectorModel model;
        build(model, leavesOfA);
        ObjectSelectorTreeModel rowsModel;
        QAbstractItemModelTester tester(&rowsModel, QAbstractItemModelTester::FailureReportingMode::Fatal);
        rowsModel.setRoot(&model.root());
        const QStringList before = rows(rowsModel);

        Spies spies(&rowsModel);
        for (const QString& id : hidden)
            nodeOf(model, id)->setVisible(false);
        QCOMPARE(rows(rowsModel), before); // nothing moves before it is told
        rowsModel.refresh();
        QCOMPARE(rows(rowsModel), expected);
        QCOMPARE(spies.counts(), announced);

        // Shown again: the same rows as at the start.
        for (const QString& id : hidden)
            nodeOf(model, id)->setVisible(true);
        rowsModel.refresh();
        QCOMPARE(rows(rowsModel), before);
        QCOMPARE(spies.reset.count(), 0);
    }

    void persistentRowsFollowTheirNode_data()
    {
        QTest::addColumn<int>("leavesOfA");
        QTest::newRow("row signals") << 10;
        QTest::newRow("layout change") << 200;
    }

    void persistentRowsFollowTheirNode()
    {
        QFETCH(int, leavesOfA);
        ObjectSelectorModel model;
        build(model, leavesOfA);
        ObjectSelectorTreeModel rowsModel;
        QAbstractItemModelTester tester(&rowsModel, QAbstractItemModelTester::FailureReportingMode::Fatal);
        rowsModel.setRoot(&model.root());

        const QPersistentModelIndex a7 = rowsModel.indexOf(nodeOf(model, "a7")->attribute);
        const QPersistentModelIndex a8 = rowsModel.indexOf(nodeOf(model, "a8")->attribute);
        const QPersistentModelIndex b0x = rowsModel.indexOf(nodeOf(model, "b0x")->attribute);
        const QPersistentModelIndex c = rowsModel.index(2, 0);
        QCOMPARE(a7.row(), 7);
        QCOMPARE(b0x.parent().data().toString(), QStringLiteral("b0"));

        // Every even leaf but a8 goes (one run per leaf), and "A" with it stays.
        for (int i = 0; i < leavesOfA; i += 2)
            nodeOf(model, QStringLiteral("a%1").arg(i))->setVisible(i == 8);
        nodeOf(model, "b1")->setVisible(false);
        rowsModel.refresh();
        QCOMPARE(a7.row(), 3); // a1 a3 a5 a7
        QCOMPARE(a7.data().toString(), QStringLiteral("a7"));
        QCOMPARE(a8.data().toString(), QStringLiteral("a8"));
        QCOMPARE(rowsModel.nodeAt(a8), nodeOf(model, "a8"));
        QCOMPARE(b0x.data().toString(), QStringLiteral("b0x"));
        QCOMPARE(c.data().toString(), QStringLiteral("C"));

        nodeOf(model, "a7")->setVisible(false);
        nodeOf(model, "B")->setVisible(false);
        rowsModel.refresh();
        QVERIFY(!a7.isValid());
        QVERIFY(!b0x.isValid()); // went with its hidden category
        QCOMPARE(c.row(), 1);
        QVERIFY(!rowsModel.indexOf(nodeOf(model, "b0x")->attribute).isValid());
        QVERIFY(rowsModel.contains(nodeOf(model, "b0x")->attribute));
    }

    void aChangedStructureResets()
    {
        ObjectSelectorModel model;
        build(model, 3);
        ObjectSelectorTreeModel rowsModel;
        QAbstractItemModelTester tester(&rowsModel, QAbstractItemModelTester::FailureReportingMode::Fatal);
        rowsModel.setRoot(&model.root());
        Spies spies(&rowsModel);

        // A son added below a leaf makes it a branch; data refresh sees it too.
        sample::appendNode(nodeOf(model, "c0"), sample::makeItem("c0x", "c0x", {}, true));
        rowsModel.refreshData();
        QCOMPARE(spies.reset.count(), 1);
        QCOMPARE(rows(rowsModel).mid(8), QStringList({"C", "C/c0", "c0/c0x"}));
        QVERIFY(rowsModel.index(0, 0).data(Qt::FontRole).value<QFont>().bold());
        QVERIFY(!rowsModel.index(0, 0, rowsModel.index(0, 0)).data(Qt::FontRole).isValid());

        // A refill: every node new.
        while (Node* son = model.root().getFirstSon())
            delete son;
        sample::category(model, "Z", "Z");
        rowsModel.refresh();
        QCOMPARE(spies.reset.count(), 2);
        QCOMPARE(rows(rowsModel), QStringList({"Z"}));
        QCOMPARE(rowsModel.objectCount(), 1);

        rowsModel.setRoot(nullptr);
        QCOMPARE(rowsModel.rowCount(), 0);
        rowsModel.refresh(); // nothing to show: no harm
        QVERIFY(!rowsModel.index(0, 0).isValid());
    }

    void flagsAndTicks_data()
    {
        QTest::addColumn<bool>("checkable");
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("userCheckable");

        QTest::newRow("checkable") << true << false << true << true;
        QTest::newRow("read-only") << true << true << true << false;
        QTest::newRow("disabled node") << true << false << false << true;
        QTest::newRow("no check box") << false << false << true << false;
    }

    void flagsAndTicks()
    {
        QFETCH(bool, checkable);
        QFETCH(bool, readOnly);
        QFETCH(bool, enabled);
        QFETCH(bool, userCheckable);

        ObjectSelectorModel model;
        build(model, 3);
        Node* node = nodeOf(model, "a1");
        auto* item = dynamic_cast<QObject*>(node->attribute);
        item->setProperty("ISCHECKABLE", checkable);
        item->setProperty("ISREADONLY", readOnly);
        node->setEnable(enabled);
        ObjectSelectorTreeModel rowsModel;
        QAbstractItemModelTester tester(&rowsModel, QAbstractItemModelTester::FailureReportingMode::Fatal);
        rowsModel.setRoot(&model.root());
        QSignalSpy asked(&rowsModel, &ObjectSelectorTreeModel::checkRequested);

        const QModelIndex index = rowsModel.indexOf(node->attribute);
        QCOMPARE(bool(index.flags() & Qt::ItemIsUserCheckable), userCheckable);
        QCOMPARE(bool(index.flags() & Qt::ItemIsEnabled), enabled);
        QVERIFY(index.flags() & Qt::ItemNeverHasChildren);
        QVERIFY(index.flags() & Qt::ItemIsSelectable);
        QCOMPARE(index.data(Qt::CheckStateRole).isValid(), checkable);

        // A tick is asked for, never made by the model.
        const bool taken = rowsModel.setData(index, Qt::Checked, Qt::CheckStateRole);
        QCOMPARE(taken, userCheckable && enabled);
        QCOMPARE(asked.count(), taken ? 1 : 0);
        if (taken) {
            QVERIFY(asked.at(0).at(0).value<ObjectSelectorItemInterface*>() == node->attribute);
            QCOMPARE(asked.at(0).at(1).toBool(), true);
        }
        QVERIFY(!node->attribute->isChecked());
        QVERIFY(!rowsModel.setData(index, QStringLiteral("x"), Qt::DisplayRole));

        // Once the item changed, a data refresh shows it.
        QSignalSpy changed(&rowsModel, &QAbstractItemModel::dataChanged);
        node->attribute->setChecked(true);
        rowsModel.refreshData();
        QVERIFY(changed.count() >= 1);
        if (checkable)
            QCOMPARE(index.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    }

    void countsAndShownItems()
    {
        ObjectSelectorModel model;
        build(model, 3);
        ObjectSelectorTreeModel rowsModel;
        QAbstractItemModelTester tester(&rowsModel, QAbstractItemModelTester::FailureReportingMode::Fatal);
        rowsModel.setRoot(&model.root());
        QCOMPARE(rowsModel.objectCount(), 6); // a0 a1 a2 b0x b1 c0
        QCOMPARE(rowsModel.shownObjectCount(), 6);
        auto branches = [&rowsModel]() {
            QStringList titles;
            for (const QModelIndex& index : rowsModel.shownBranches())
                titles << index.data().toString();
            return titles;
        };
        QCOMPARE(branches(), QStringList({"A", "B", "b0", "C"}));
        nodeOf(model, "b0")->setVisible(false);
        nodeOf(model, "a2")->setVisible(false);
        rowsModel.refresh();
        QCOMPARE(rowsModel.shownObjectCount(), 4);
        QCOMPARE(branches(), QStringList({"A", "B", "C"}));
        QStringList ids;
        for (ObjectSelectorItemInterface* item : rowsModel.shownItems())
            ids << item->id();
        QCOMPARE(ids, QStringList({"A", "a0", "a1", "B", "b1", "C", "c0"}));

        // A branch with nothing shown below reads muted.
        rowsModel.setMutedBrush(QBrush(Qt::gray));
        nodeOf(model, "c0")->setVisible(false);
        rowsModel.refresh();
        QCOMPARE(rowsModel.index(2, 0).data(Qt::ForegroundRole).value<QBrush>(), QBrush(Qt::gray));
        QVERIFY(!rowsModel.index(0, 0).data(Qt::ForegroundRole).isValid());
    }
};

QTEST_MAIN(TestObjectSelectorTreeModel)
#include "tst_objectselectortreemodel.moc"
