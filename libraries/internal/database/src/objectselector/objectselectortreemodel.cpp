#include "objectselectortreemodel.h"

#include "objectselectoritem.h"

#include <QFont>
#include <QHash>
#include <QIcon>
#include <QPixmap>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

using Node = ObjectSelectorTreeModel::Node;

// More runs of rows changing at once than this go out as one layout change:
// each row signal costs every view and every persistent index a pass, and a
// keystroke over a large tree can flip thousands of scattered runs.
constexpr int kMaxRowRuns = 32;

// What the model knows of one node that has sons: all of them, as they were
// when last compared with the tree, and which of them are rows now.
struct Branch
{
    const Node* node = nullptr;
    Branch* parent = nullptr;
    int row = -1; // among the parent's rows; -1 when not one of them
    std::vector<const Node*> sons;
    std::vector<ObjectSelectorItemInterface*> items; // the sons' items
    std::vector<Branch*> sonBranches;                // null for a son without sons
    std::vector<int> shown;                          // the rows, as indexes in sons (ascending)
    std::vector<int> next;                           // the rows the pending refresh makes

    const Node* nodeAt(int row) const { return sons[std::size_t(shown[std::size_t(row)])]; }
    Branch* branchAt(int row) const { return sonBranches[std::size_t(shown[std::size_t(row)])]; }

    void renumber()
    {
        for (Branch* son : sonBranches) {
            if (son)
                son->row = -1;
        }
        for (std::size_t r = 0; r < shown.size(); ++r) {
            if (Branch* son = sonBranches[std::size_t(shown[r])])
                son->row = int(r);
        }
    }

    // True when this branch's rows are reachable from the top.
    bool reachable() const
    {
        for (const Branch* b = this; b->parent; b = b->parent) {
            if (b->row < 0)
                return false;
        }
        return true;
    }
};

// The number of maximal runs of removed or inserted entries that turn the
// ascending list `from` into the ascending list `to`.
int changedRuns(const std::vector<int>& from, const std::vector<int>& to)
{
    int runs = 0;
    int last = 0; // 0 kept, 1 removed, 2 inserted
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < from.size() || j < to.size()) {
        int kind;
        if (i < from.size() && j < to.size() && from[i] == to[j]) {
            kind = 0;
            ++i;
            ++j;
        } else if (j == to.size() || (i < from.size() && from[i] < to[j])) {
            kind = 1;
            ++i;
        } else {
            kind = 2;
            ++j;
        }
        if (kind != 0 && kind != last)
            ++runs;
        last = kind;
    }
    return runs;
}

} // namespace

class ObjectSelectorTreeModelPrivate
{
public:
    const Node* root = nullptr;
    std::vector<std::unique_ptr<Branch>> branches; // the root's first
    QHash<const Node*, Branch*> branchOfNode;
    int objectCount = 0;
    QBrush muted;
    QFont bold;
    mutable QHash<qint64, QIcon> icons; // items of one kind share their pixmap

    Branch* top() const { return branches.empty() ? nullptr : branches.front().get(); }

    void build()
    {
        branches.clear();
        branchOfNode.clear();
        icons.clear();
        objectCount = 0;
        if (root)
            build(root, nullptr);
    }

    Branch* build(const Node* node, Branch* parent)
    {
        branches.push_back(std::make_unique<Branch>());
        Branch* branch = branches.back().get();
        branch->node = node;
        branch->parent = parent;
        branchOfNode.insert(node, branch);
        int k = 0;
        for (const Node* son = node->getFirstSon(); son; son = son->getBrother(), ++k) {
            branch->sons.push_back(son);
            branch->items.push_back(son->attribute);
            Branch* sonBranch = son->getFirstSon() ? build(son, branch) : nullptr;
            branch->sonBranches.push_back(sonBranch);
            if (!sonBranch && son->attribute)
                ++objectCount;
            if (son->isVisible())
                branch->shown.push_back(k);
        }
        branch->next = branch->shown;
        branch->renumber();
        return branch;
    }

    // Compares the branch with the tree below its node and works out its next
    // rows from the visible flags; false as soon as the structure differs
    // (the nodes are only dereferenced once known to be the same ones).
    static bool compare(Branch* branch)
    {
        branch->next.clear();
        std::size_t k = 0;
        const std::size_t known = branch->sons.size();
        for (const Node* son = branch->node->getFirstSon(); son; son = son->getBrother(), ++k) {
            // The walk waits on one node after the other, scattered over the
            // heap: ask early for those the last pass met, which are most
            // likely the ones to come (a wrong guess costs nothing).
            if (k + 16 < known)
                __builtin_prefetch(branch->sons[k + 16]);
            if (k >= known || branch->sons[k] != son || branch->items[k] != son->attribute)
                return false;
            Branch* sonBranch = branch->sonBranches[k];
            if ((sonBranch != nullptr) != (son->getFirstSon() != nullptr))
                return false;
            if (sonBranch && !compare(sonBranch))
                return false;
            if (son->isVisible())
                branch->next.push_back(int(k));
        }
        return k == known;
    }

    // Gives a branch that is not reachable, and everything below it, its next rows.
    static void settle(Branch* branch)
    {
        branch->shown = branch->next;
        branch->renumber();
        for (Branch* son : branch->sonBranches) {
            if (son)
                settle(son);
        }
    }

    int runsBelow(const Branch* branch, int limit) const
    {
        int runs = changedRuns(branch->shown, branch->next);
        for (std::size_t r = 0; r < branch->shown.size() && runs <= limit; ++r) {
            if (const Branch* son = branch->branchAt(int(r)))
                runs += runsBelow(son, limit - runs);
        }
        return runs;
    }

    // Calls visit(item, branch of the row or null) for every row in pre-order,
    // from the model's own lists; stops when visit answers false.
    template <typename Visit>
    static bool forEachShown(const Branch* branch, Visit& visit)
    {
        for (const int k : branch->shown) {
            const Branch* son = branch->sonBranches[std::size_t(k)];
            if (!visit(branch->items[std::size_t(k)], son))
                return false;
            if (son && !forEachShown(son, visit))
                return false;
        }
        return true;
    }

    // (branch, son index) of the node that carries `item`, searched everywhere.
    bool find(const ObjectSelectorItemInterface* item, Branch*& branch, int& k) const
    {
        for (const std::unique_ptr<Branch>& b : branches) {
            const auto it = std::find(b->items.cbegin(), b->items.cend(), item);
            if (it != b->items.cend()) {
                branch = b.get();
                k = int(it - b->items.cbegin());
                return true;
            }
        }
        return false;
    }

    static int rowOf(const Branch* branch, int k)
    {
        const auto it = std::lower_bound(branch->shown.cbegin(), branch->shown.cend(), k);
        return it != branch->shown.cend() && *it == k ? int(it - branch->shown.cbegin()) : -1;
    }
};

ObjectSelectorTreeModel::ObjectSelectorTreeModel(QObject* parent)
    : QAbstractItemModel(parent)
    , d(std::make_unique<ObjectSelectorTreeModelPrivate>())
{
    d->bold.setBold(true);
    static const int registered = qRegisterMetaType<ObjectSelectorItemInterface*>();
    Q_UNUSED(registered);
}

ObjectSelectorTreeModel::~ObjectSelectorTreeModel() = default;

void ObjectSelectorTreeModel::setRoot(const Node* root)
{
    beginResetModel();
    d->root = root;
    d->build();
    endResetModel();
}

const ObjectSelectorTreeModel::Node* ObjectSelectorTreeModel::root() const
{
    return d->root;
}

void ObjectSelectorTreeModel::setMutedBrush(const QBrush& brush)
{
    d->muted = brush;
}

// Keeping up with the tree ------------------------------------------------------

void ObjectSelectorTreeModel::refresh()
{
    Branch* top = d->top();
    if (!top)
        return;
    if (!ObjectSelectorTreeModelPrivate::compare(top)) {
        setRoot(d->root);
        return;
    }

    const int runs = d->runsBelow(top, kMaxRowRuns);
    if (runs > kMaxRowRuns) {
        emit layoutAboutToBeChanged();
        // Persistent rows are followed by their node, known as (branch, son).
        const QModelIndexList before = persistentIndexList();
        std::vector<std::pair<Branch*, int>> nodes;
        nodes.reserve(std::size_t(before.size()));
        for (const QModelIndex& index : before) {
            auto* branch = static_cast<Branch*>(index.internalPointer());
            nodes.emplace_back(branch, branch->shown[std::size_t(index.row())]);
        }
        for (const std::unique_ptr<Branch>& branch : d->branches) {
            branch->shown.swap(branch->next);
            branch->renumber();
        }
        QModelIndexList after;
        after.reserve(before.size());
        for (int i = 0; i < before.size(); ++i) {
            Branch* branch = nodes[std::size_t(i)].first;
            const int row = branch->reachable()
                ? ObjectSelectorTreeModelPrivate::rowOf(branch, nodes[std::size_t(i)].second)
                : -1;
            after.append(row < 0 ? QModelIndex() : createIndex(row, before.at(i).column(), branch));
        }
        changePersistentIndexList(before, after);
        emit layoutChanged();
    } else if (runs > 0) {
        std::function<void(Branch*, const QModelIndex&)> apply = [&](Branch* branch, const QModelIndex& parent) {
            const std::vector<int> target = branch->next;
            std::vector<int>& shown = branch->shown;
            std::size_t pos = 0;
            std::size_t j = 0;
            while (pos < shown.size() || j < target.size()) {
                if (pos < shown.size() && j < target.size() && shown[pos] == target[j]) {
                    ++pos;
                    ++j;
                } else if (j == target.size() || (pos < shown.size() && shown[pos] < target[j])) {
                    std::size_t end = pos;
                    while (end < shown.size() && (j == target.size() || shown[end] < target[j]))
                        ++end;
                    beginRemoveRows(parent, int(pos), int(end) - 1);
                    shown.erase(shown.begin() + long(pos), shown.begin() + long(end));
                    branch->renumber();
                    endRemoveRows();
                } else {
                    std::size_t end = j;
                    while (end < target.size() && (pos == shown.size() || target[end] < shown[pos]))
                        ++end;
                    // New rows come with what they hold.
                    for (std::size_t k = j; k < end; ++k) {
                        if (Branch* son = branch->sonBranches[std::size_t(target[k])])
                            ObjectSelectorTreeModelPrivate::settle(son);
                    }
                    beginInsertRows(parent, int(pos), int(pos + end - j) - 1);
                    shown.insert(shown.begin() + long(pos), target.begin() + long(j), target.begin() + long(end));
                    branch->renumber();
                    endInsertRows();
                    pos += end - j;
                    j = end;
                }
            }
            for (std::size_t r = 0; r < shown.size(); ++r) {
                if (Branch* son = branch->branchAt(int(r)))
                    apply(son, index(int(r), 0, parent));
            }
        };
        apply(top, QModelIndex());
        // What is out of sight follows silently.
        for (const std::unique_ptr<Branch>& branch : d->branches) {
            if (branch->shown != branch->next) {
                branch->shown = branch->next;
                branch->renumber();
            }
        }
    }
    announceData();
}

void ObjectSelectorTreeModel::refreshData()
{
    Branch* top = d->top();
    if (!top)
        return;
    // The rows were made for nodes that may be gone: compare before reading.
    if (!ObjectSelectorTreeModelPrivate::compare(top)) {
        setRoot(d->root);
        return;
    }
    announceData();
}

void ObjectSelectorTreeModel::announceData()
{
    std::function<void(Branch*)> announce = [&](Branch* branch) {
        if (branch->shown.empty())
            return;
        const int last = int(branch->shown.size()) - 1;
        emit dataChanged(createIndex(0, 0, branch), createIndex(last, 0, branch));
        for (int r = 0; r <= last; ++r) {
            if (Branch* son = branch->branchAt(r))
                announce(son);
        }
    };
    if (Branch* top = d->top())
        announce(top);
}

// Look-ups ------------------------------------------------------------------------

const ObjectSelectorTreeModel::Node* ObjectSelectorTreeModel::nodeAt(const QModelIndex& index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    return static_cast<const Branch*>(index.internalPointer())->nodeAt(index.row());
}

ObjectSelectorItemInterface* ObjectSelectorTreeModel::itemAt(const QModelIndex& index) const
{
    const Node* node = nodeAt(index);
    return node ? node->attribute : nullptr;
}

QModelIndex ObjectSelectorTreeModel::indexOf(const ObjectSelectorItemInterface* item) const
{
    Branch* branch = nullptr;
    int k = -1;
    if (!item || !d->find(item, branch, k) || !branch->reachable())
        return QModelIndex();
    const int row = ObjectSelectorTreeModelPrivate::rowOf(branch, k);
    return row < 0 ? QModelIndex() : createIndex(row, 0, branch);
}

QModelIndex ObjectSelectorTreeModel::indexOfNode(const Node* node) const
{
    if (!node || node == d->root)
        return QModelIndex();
    Branch* branch = d->branchOfNode.value(node->getParent());
    if (!branch || !branch->reachable())
        return QModelIndex();
    const auto it = std::find(branch->sons.cbegin(), branch->sons.cend(), node);
    if (it == branch->sons.cend())
        return QModelIndex();
    const int row = ObjectSelectorTreeModelPrivate::rowOf(branch, int(it - branch->sons.cbegin()));
    return row < 0 ? QModelIndex() : createIndex(row, 0, branch);
}

bool ObjectSelectorTreeModel::contains(const ObjectSelectorItemInterface* item) const
{
    Branch* branch = nullptr;
    int k = -1;
    return item && d->find(item, branch, k);
}

QVector<ObjectSelectorItemInterface*> ObjectSelectorTreeModel::shownItems() const
{
    QVector<ObjectSelectorItemInterface*> items;
    if (const Branch* top = d->top()) {
        auto visit = [&items](ObjectSelectorItemInterface* item, const Branch*) {
            if (item)
                items.append(item);
            return true;
        };
        d->forEachShown(top, visit);
    }
    return items;
}

bool ObjectSelectorTreeModel::forEachShownItem(const std::function<bool(ObjectSelectorItemInterface*)>& visit) const
{
    const Branch* top = d->top();
    if (!top)
        return true;
    auto call = [&visit](ObjectSelectorItemInterface* item, const Branch*) { return !item || visit(item); };
    return ObjectSelectorTreeModelPrivate::forEachShown(top, call);
}

QModelIndexList ObjectSelectorTreeModel::shownBranches() const
{
    QModelIndexList indexes;
    // Branches were made in pre-order; the top one is no row.
    for (std::size_t i = 1; i < d->branches.size(); ++i) {
        Branch* branch = d->branches[i].get();
        if (branch->row >= 0 && branch->parent->reachable())
            indexes.append(createIndex(branch->row, 0, branch->parent));
    }
    return indexes;
}

int ObjectSelectorTreeModel::objectCount() const
{
    return d->objectCount;
}

int ObjectSelectorTreeModel::shownObjectCount() const
{
    int count = 0;
    if (const Branch* top = d->top()) {
        auto visit = [&count](ObjectSelectorItemInterface* item, const Branch* branch) {
            if (!branch && item)
                ++count;
            return true;
        };
        d->forEachShown(top, visit);
    }
    return count;
}

// The item model --------------------------------------------------------------------

QModelIndex ObjectSelectorTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0)
        return QModelIndex();
    const Branch* branch = nullptr;
    if (!parent.isValid()) {
        branch = d->top();
    } else if (parent.model() == this && parent.column() == 0) {
        branch = static_cast<const Branch*>(parent.internalPointer())->branchAt(parent.row());
    }
    if (!branch || row >= int(branch->shown.size()))
        return QModelIndex();
    return createIndex(row, column, const_cast<Branch*>(branch));
}

QModelIndex ObjectSelectorTreeModel::parent(const QModelIndex& index) const
{
    if (!index.isValid())
        return QModelIndex();
    const Branch* branch = static_cast<const Branch*>(index.internalPointer());
    if (!branch->parent)
        return QModelIndex();
    return createIndex(branch->row, 0, branch->parent);
}

int ObjectSelectorTreeModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) {
        const Branch* top = d->top();
        return top ? int(top->shown.size()) : 0;
    }
    if (parent.column() != 0)
        return 0;
    const Branch* branch = static_cast<const Branch*>(parent.internalPointer())->branchAt(parent.row());
    return branch ? int(branch->shown.size()) : 0;
}

int ObjectSelectorTreeModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() && parent.column() != 0 ? 0 : 1;
}

bool ObjectSelectorTreeModel::hasChildren(const QModelIndex& parent) const
{
    return rowCount(parent) > 0;
}

namespace { } // namespace

// Views ask the flags of every row they lay out: selector items answer
// directly, other objects through the property.
bool ObjectSelectorTreeModel::isReadOnly(ObjectSelectorItemInterface* item)
{
    if (const ObjectSelectorItem* selectorItem = ObjectSelectorItem::fromInterface(item))
        return selectorItem->isReadOnly();
    const QObject* object = dynamic_cast<const QObject*>(item);
    return object && object->property("ISREADONLY").toBool();
}

QVariant ObjectSelectorTreeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const Branch* branch = static_cast<const Branch*>(index.internalPointer());
    const Node* node = branch->nodeAt(index.row());
    ObjectSelectorItemInterface* item = node->attribute;
    if (!item)
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return item->title();
    case Qt::DecorationRole: {
        const QPixmap pixmap = item->pixmap();
        if (pixmap.isNull())
            return QVariant();
        auto it = d->icons.find(pixmap.cacheKey());
        if (it == d->icons.end())
            it = d->icons.insert(pixmap.cacheKey(), QIcon(pixmap));
        return *it;
    }
    case Qt::CheckStateRole:
        if (!item->isCheckable())
            return QVariant();
        return item->isChecked() ? Qt::Checked : Qt::Unchecked;
    case Qt::FontRole:
        // Branches read as headings...
        if (branch->branchAt(index.row()))
            return d->bold;
        return QVariant();
    case Qt::ForegroundRole: {
        // ... greyed when a search leaves nothing below them.
        const Branch* son = branch->branchAt(index.row());
        if (son && son->shown.empty() && d->muted.style() != Qt::NoBrush)
            return d->muted;
        return QVariant();
    }
    default:
        return QVariant();
    }
}

Qt::ItemFlags ObjectSelectorTreeModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Branch* branch = static_cast<const Branch*>(index.internalPointer());
    const Node* node = branch->nodeAt(index.row());
    Qt::ItemFlags flags;
    if (node->getEnable())
        flags |= Qt::ItemIsEnabled;
    if (!branch->branchAt(index.row()))
        flags |= Qt::ItemNeverHasChildren;
    ObjectSelectorItemInterface* item = node->attribute;
    if (!item)
        return flags;
    flags |= Qt::ItemIsSelectable;
    if (item->isCheckable() && !isReadOnly(item))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool ObjectSelectorTreeModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::CheckStateRole || !index.isValid())
        return false;
    const Qt::ItemFlags can = flags(index);
    if (!(can & Qt::ItemIsUserCheckable) || !(can & Qt::ItemIsEnabled))
        return false;
    emit checkRequested(itemAt(index), value.toInt() == Qt::Checked);
    return true;
}
