#pragma once

#include "objectselectormodelinterface.h"
#include "vndatabase_export.h"

#include <QCoreApplication>
#include <QHash>

/// The selector model: owns a tree of selector items below a root that carries
/// no item, and keeps the ticks, the collapsed branches and the filters.
///
/// Item state is read and written through the items' Qt properties ("id",
/// "ISCHECKABLE", "ISCHECKED", "ISEXPANDED"); nodes whose attribute is null or
/// not a QObject are skipped, their sons still visited. A filter is the name of
/// a dynamic property that items carry; a visible filter is a label shown to
/// the user for such a name.
///
/// To let the tree own its items, call root().setAutoDelete(true) before
/// adding sons. Copies are member-wise (the tree root included), so a copy
/// shares the source's nodes: only one of them may outlive the other.
class VNDATABASE_EXPORT ObjectSelectorModel : public ObjectSelectorModelInterface
{
    Q_DECLARE_TR_FUNCTIONS(ObjectSelectorModel)

public:
    using Node = TTree<ObjectSelectorItemInterface*>;

    ObjectSelectorModel();
    ObjectSelectorModel(const ObjectSelectorModel& other) = default;
    ObjectSelectorModel& operator=(const ObjectSelectorModel& other) = default;
    ~ObjectSelectorModel() override;

    /// Writes the selection as "ObjectSelectorModel" / "Version" / "SelectedItems".
    bool encode(QDomElement& parent) override;
    /// Restores it; false (and nothing changed) for a missing element or
    /// another version. An unreadable payload reads as an empty selection.
    bool decode(QDomElement& element) override;
    QList<int> getCollapsedItems() override;
    bool loadCollapsedItems(const QList<int>& ids) override;
    bool enableFilter(const QString& name) override;
    bool disableFilter(const QString& name) override;
    void availableFilters(QList<QString>& list) const override;
    void activeFilters(QList<QString>& names) const override;
    void activeFilters(QHash<QString, QString>& filters) const override;
    /// The active filters keyed by their label when they have one.
    void activeFiltersDisplay(QHash<QString, QString>& filters) const override;
    bool updateFilterValue(const QString& name, const QString& value) override;
    QString filterValue(const QString& name) override;
    bool updateVisibleFilterValue(const QString& label, const QString& name) override;
    QString visibleFilterValue(const QString& label) override;
    /// The visible filters that `item` carries, label -> current value.
    void visibleFilters(const QObject* item, QMap<QString, QString>& values) const override;
    /// The labels of the visible filters, sorted.
    void visibleFilters(QStringList& labels) const override;
    void disableAllFilters() override;
    QList<ObjectSelectorItemInterface*> getSelectedItems(const Node* node) override;

    void uncheckAll();
    /// The quick filters offered by the selector: a label and its values.
    QHash<const QString, QStringList> getFilters() const;
    /// A label whose filter is `name`, or a null string.
    QString visibleFilterKey(const QString& name);

    /// The root node (no item, id -1); the items hang below it.
    Node& root() { return m_tree; }
    const Node& root() const { return m_tree; }
    /// Every item of the tree that is a QObject, in pre-order.
    QList<QObject*> getAllItems() const;

    /// Reads the payload of "SelectedItems": Base64 of a version-12 stream of
    /// a count and that many variants. Anything unreadable gives an empty list.
    static QList<QVariant> decodeSelectedIds(const QByteArray& base64);
    static QByteArray encodeSelectedIds(const QList<QVariant>& ids);

private:
    void updateSelectedItems(const Node* node, const QList<QVariant>& ids) override;

    static void getSelectedItemsRecursive(const Node* node, QList<ObjectSelectorItemInterface*>& items);
    static void getAllItemsRecursive(const Node* node, QList<QObject*>& items);
    static void availableFilters(const Node* node, QList<QString>& list);
    static void setChecked(const Node* node, bool checked);
    bool hasAvailableFilter(const QString& name) const;

    Node m_tree;
    QHash<QString, QString> m_visibleFilters;
    QHash<QString, QString> m_activeFilters;
};
