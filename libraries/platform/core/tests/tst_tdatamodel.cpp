#include <tdatamodel.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

// The smallest concrete model; a subclass may also make itself read-only.
class TableModel : public TDataModel
{
public:
    bool locked = false;
    QModelIndex index(int row, int column, const QModelIndex& = QModelIndex()) const override
    {
        return createIndex(row, column);
    }
    QModelIndex parent(const QModelIndex&) const override { return QModelIndex(); }
    int rowCount(const QModelIndex& = QModelIndex()) const override { return 2; }
    int columnCount(const QModelIndex& = QModelIndex()) const override { return 2; }
    QVariant data(const QModelIndex&, int = Qt::DisplayRole) const override { return QVariant(); }
    bool isReadOnly() const override { return locked || TDataModel::isReadOnly(); }
};

} // namespace

class TestDataModel : public QObject
{
    Q_OBJECT

private slots:
    void validity()
    {
        TableModel model;
        QVERIFY(!model.isValid());
        QSignalSpy spy(&model, &TDataModel::validityChanged);
        model.setValid(true);
        model.setValid(true);
        QVERIFY(model.isValid());
        model.setValid(false);
        QVERIFY(!model.isValid());
        QCOMPARE(spy.size(), 2);
        QCOMPARE(spy.at(0).at(0).toBool(), true);
        QCOMPARE(spy.at(1).at(0).toBool(), false);
    }

    void readOnly()
    {
        TableModel model;
        QVERIFY(!model.isReadOnly());
        model.setReadOnly(true);
        QVERIFY(model.isReadOnly());
        model.setReadOnly(false);
        model.locked = true;
        const TDataModel& base = model;
        QVERIFY(base.isReadOnly());
        // Read-only and validity are independent.
        QVERIFY(!model.isValid());
    }
};

QTEST_GUILESS_MAIN(TestDataModel)
#include "tst_tdatamodel.moc"
