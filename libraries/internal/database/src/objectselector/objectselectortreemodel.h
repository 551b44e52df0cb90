#pragma once

#include "objectselectoriteminterface.h"
#include "ttree.h"
#include "vndatabase_export.h"

#include <QAbstractItemModel>
#include <QBrush>
#include <QVector>

#include <functional>
#include <memory>

// Items travel in the model's signals.
Q_DECLARE_METATYPE(ObjectSelectorItemInterface*)

/// The selector tree (TTree<ObjectSelectorItemInterface*>) as a Qt item model,
/// one column, for a QTreeView. Only the nodes whose visible flag is set are
/// rows, and only below shown rows: a hidden node takes its subtree with it.
///
/// The model reads the tree and never writes it. The tree does not announce
/// its changes, so the owner calls refresh() after changing visibility or
/// structure and refreshData() after changing what items say (titles, icons,
/// ticks); the model then works out the difference and tells its views with
/// Qt's row, layout or reset signals. Until then it keeps showing the rows it
/// knew, so the tree's structure must not change under it without a refresh
/// before control returns to the event loop.
///
/// A view's check box click arrives as setData(CheckStateRole); the model
/// passes it on as checkRequested() and changes nothing: the tick shows once
/// the owner has changed the item and called refreshData().
class VNDATABASE_EXPORT ObjectSelectorTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    using Node = TTree<ObjectSelectorItemInterface*>;

    explicit ObjectSelectorTreeModel(QObject* parent = nullptr);
    ~ObjectSelectorTreeModel() override;

    /// Shows the sons of `root` as the top-level rows (null: no rows). A reset.
    void setRoot(const Node* root);
    const Node* root() const;

    /// Brings the rows in line with the tree's visible flags: a few changed
    /// runs of rows are announced as removed and inserted rows, more as one
    /// layout change; a changed structure resets the model. Then the data of
    /// every row is announced as changed.
    void refresh();
    /// Announces the data of every row as changed (the shown rows stay as they
    /// are unless the structure changed, which resets the model).
    void refreshData();

    const Node* nodeAt(const QModelIndex& index) const;
    ObjectSelectorItemInterface* itemAt(const QModelIndex& index) const;
    /// The row of the node that carries `item`; invalid when it is not shown.
    QModelIndex indexOf(const ObjectSelectorItemInterface* item) const;
    QModelIndex indexOfNode(const Node* node) const;
    /// True when some node of the tree carries `item`, shown or not.
    bool contains(const ObjectSelectorItemInterface* item) const;
    /// The items of every shown row, in pre-order.
    QVector<ObjectSelectorItemInterface*> shownItems() const;
    /// Calls `visit` with the item of every shown row, in pre-order, until it
    /// answers false; false when it did.
    bool forEachShownItem(const std::function<bool(ObjectSelectorItemInterface*)>& visit) const;
    /// The shown rows whose nodes have sons, in pre-order.
    QModelIndexList shownBranches() const;
    /// Objects are the nodes without sons that carry an item.
    int objectCount() const;
    int shownObjectCount() const;

    /// The text colour of branches with nothing shown below them.
    void setMutedBrush(const QBrush& brush);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Only CheckStateRole on a row the user may tick: emits checkRequested().
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// A view asked to tick (or untick) `item`.
    void checkRequested(ObjectSelectorItemInterface* item, bool checked);

private:
    void announceData();
    static bool isReadOnly(ObjectSelectorItemInterface* item);

    std::unique_ptr<class ObjectSelectorTreeModelPrivate> d;
};
