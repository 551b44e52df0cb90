#pragma once

#include "objectselectorctrlinterface.h"
#include "vndatabase_export.h"

#include <QPointer>
#include <QString>

class QObject;

/// The selector controller: keeps a model (not owned), makes the widget on
/// demand, watches it, and turns search text, filters, ticks and opened or
/// closed branches into changes of the model and of the nodes' visibility.
///
/// The search text is the value of the filter "MasterName": a node is shown
/// when it is a top-level node (directly below the item-less root) or when it
/// matches every active filter; a node's sons play no part in its own
/// visibility. Matching is a case-insensitive substring test of the filter
/// value in the item's property; an active filter without a value only asks
/// that the item carries the property.
class VNDATABASE_EXPORT ObjectSelectorCtrl : public ObjectSelectorCtrlInterface
{
public:
    enum SelectionMode { SingleSelection = 0, MultipleSelection = 1 };

    using Node = TTree<ObjectSelectorItemInterface*>;

    ObjectSelectorCtrl();
    ObjectSelectorCtrl(const ObjectSelectorCtrl& other) = default;
    ObjectSelectorCtrl& operator=(const ObjectSelectorCtrl& other) = default;
    ~ObjectSelectorCtrl() override;

    // Observer operations (called by the widget)
    void searchRequested(const QString& text) override;
    void toggleCheckRequested(ObjectSelectorItemInterface* item, bool checked) override;
    void searchWithFilterRequested() override;
    void stopSearchRequested() override;
    void enableFilterRequested(const QString& label) override;
    void disableFilterRequested(const QString& label) override;
    void updateFilterRequested(const QString& label, const QString& value) override;
    void itemCollapsed(ObjectSelectorItemInterface* item) override;
    void itemExpanded(ObjectSelectorItemInterface* item) override;

    // Controller operations
    ObjectSelectorEditorInterface* initView(QWidget* parent) override;
    void setActiveDB(const QList<VNToviDatabaseInterface*>& databases) override;
    void closeView() override;
    bool save(QDomElement& element) override;
    bool load(QDomElement& element) override;
    void clearSearch() override;
    const ObjectSelectorModelInterface* model() override;
    void setModel(ObjectSelectorModelInterface* model) override;
    QList<ObjectSelectorItemInterface*> getSelectedItems(const Node* node) override;
    QList<int> getCollapsedItems() override;
    bool loadCollapsedItems(const QList<int>& ids) override;

    SelectionMode getSelectionMode() const { return m_selectionMode; }
    void setSelectionMode(SelectionMode mode) { m_selectionMode = mode; }

    /// The widget made by initView, or null when none is open.
    ObjectSelectorEditorInterface* editor() const;

private:
    void startSearch(Node* node);
    void stopSearch(Node* node);
    bool getNodeVisibility(const Node* node, const QString& filterName);
    static bool isTopLevelNode(const Node* node);
    Node* modelRoot() const;
    void refreshVisibility();
    void updateEditorView();
    /// The filter that a label the model lists as visible stands for; false
    /// without a model or for a label it does not list.
    bool filterOfLabel(const QString& label, QString& name) const;

    ObjectSelectorModelInterface* m_model = nullptr;
    ObjectSelectorEditorInterface* m_editor = nullptr;
    SelectionMode m_selectionMode = SingleSelection;
    // The widget belongs to its Qt parent and may die first: this notices it.
    QPointer<QObject> m_editorGuard;
};
