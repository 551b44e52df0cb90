#include <tdatamodel.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

// The smallest concrete model.
class TableModel : public TDataModel
{
public:
    QModelIndex index(int row, int column, const QModelIndex& = QModelIndex()) const override
    {
        return createIndex(row, column);
    }
    QModelIndex parent(const QModelIndex&) const override { return QModelIndex(); }
    int rowCount(const QModelIndex& = QModelIndex()) const override { return 2; }
    int columnCount(const QModelIndex& = QModelIndex()) const override { return 2; }
    QVariant data(const QModelIndex&, int = Qt::DisplayRole) const override { return QVariant(); }
};

} // namespace

class TestDataModel : public QObject
{
    Q_OBJECT

private slots:
    void validityAndReadOnly()
    {
        TableModel model;
        QVERIFY(!model.isValid() && !model.isReadOnly());
        model.setReadOnly(true); // independent of validity
        QVERIFY(model.isReadOnly() && !model.isValid());
        QSignalSpy spy(&model, &TDataModel::validityChanged);
        model.setValid(true);
        model.setValid(true); // no change, no signal
        QVERIFY(model.isValid());
        model.setValid(false);
        QVERIFY(!model.isValid());
        QCOMPARE(spy.size(), 2);
        QCOMPARE(spy.at(0).at(0).toBool(), true);
        QCOMPARE(spy.at(1).at(0).toBool(), false);
    }
};

QTEST_GUILESS_MAIN(TestDataModel)
#include "tst_tdatamodel.moc"
