#pragma once

#include "objectselectoreditorinterface.h"
#include "objectselectoriteminterface.h"
#include "ttree.h"
#include "vndatabase_export.h"

#include <QHash>
#include <QList>
#include <QVector>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QTextBrowser;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;
class QVBoxLayout;

/// The on-screen object selector: a search line, a quick-filter menu, custom
/// filter lines, the model's tree with icons and check boxes, a "Check all
/// items" control (multiple selection only) and a details pane.
///
/// The widget never changes the model itself: every request (search text,
/// filters, ticks, opened and closed branches) goes to its observers, and the
/// controller among them answers with updateView(). The model is only read.
class VNDATABASE_EXPORT ObjectSelectorEditor : public QWidget, public ObjectSelectorEditorInterface
{
    Q_OBJECT

public:
    using Node = TTree<ObjectSelectorItemInterface*>;

    ObjectSelectorEditor(QWidget* parent, const ObjectSelectorModelInterface* model);
    ~ObjectSelectorEditor() override;

    void updateView() override;
    void updateViewData() override;
    void setSelectedItem(ObjectSelectorItemInterface* item) override;
    void setSelectAllVisible(bool visible) override;
    void setModel(const ObjectSelectorModelInterface* model) override;
    bool addObserver(ObjectSelectorEditorObserverInterface* observer) override;
    bool removeObserver(ObjectSelectorEditorObserverInterface* observer) override;

    /// Adds a custom filter line on `label` (the first label not yet used when
    /// empty) and asks the observers to enable it, and to give it `value` when
    /// one is given. False when the model offers no such label.
    bool addFilterLine(const QString& label = QString(), const QString& value = QString());
    /// Removes the line and asks the observers to disable its filter.
    void removeFilterLine(int index);
    int filterLineCount() const;
    /// Removes every filter line and clears the search text.
    void clearFilters();

    /// The HTML of the details pane for `item` (null: the pane's hint).
    QString detailsHtml(ObjectSelectorItemInterface* item) const;

    // The parts of the widget, for embedding applications and tests.
    QLineEdit* searchLine() const { return m_search; }
    QToolButton* quickFilterButton() const { return m_quickFilterButton; }
    QMenu* quickFilterMenu() const { return m_quickFilterMenu; }
    QToolButton* addFilterButton() const { return m_addFilterButton; }
    QComboBox* filterLabelBox(int index) const;
    QLineEdit* filterValueLine(int index) const;
    QToolButton* removeFilterButton(int index) const;
    QTreeWidget* treeWidget() const { return m_tree; }
    QCheckBox* checkAllBox() const { return m_checkAll; }
    QTextBrowser* detailsPane() const { return m_details; }
    QLabel* countLabel() const { return m_count; }
    /// The tree line that shows `item`, or null.
    QTreeWidgetItem* treeItem(ObjectSelectorItemInterface* item) const;
    /// The item shown on `line`, or null.
    ObjectSelectorItemInterface* itemOf(QTreeWidgetItem* line) const;

protected:
    void changeEvent(QEvent* event) override;

private:
    struct FilterLine;
    struct Row
    {
        const Node* node = nullptr;
        QTreeWidgetItem* line = nullptr;
    };

    void retranslate();
    const Node* modelRoot() const;
    QStringList visibleFilterLabels() const;
    void rebuildTree();
    bool treeMatchesModel() const;
    void applyData(const Row& row);
    void applyState(const Row& row);
    void rebuildQuickFilterMenu();
    void updateCheckAllState();
    void updateCount();
    void updateDetails();
    void updateFilterControls();

    void onSearchEdited(const QString& text);
    void onItemChanged(QTreeWidgetItem* line, int column);
    void onCheckAllClicked(bool checked);
    void onQuickFilter(const QString& label, const QString& value);
    void onFilterLabelChanged(FilterLine* line);
    void onFilterValueEdited(FilterLine* line);
    void removeFilterLine(FilterLine* line);

    template <typename Call>
    void notify(Call call);

    const ObjectSelectorModelInterface* m_model = nullptr;
    QList<ObjectSelectorEditorObserverInterface*> m_observers;

    QLineEdit* m_search = nullptr;
    QToolButton* m_quickFilterButton = nullptr;
    QMenu* m_quickFilterMenu = nullptr;
    QToolButton* m_addFilterButton = nullptr;
    QLabel* m_filtersTitle = nullptr;
    QVBoxLayout* m_filterLayout = nullptr;
    QList<FilterLine*> m_filterLines;
    QTreeWidget* m_tree = nullptr;
    QCheckBox* m_checkAll = nullptr;
    QLabel* m_count = nullptr;
    QTextBrowser* m_details = nullptr;

    QVector<Row> m_rows;
    QHash<ObjectSelectorItemInterface*, QTreeWidgetItem*> m_lineOfItem;
    QHash<QTreeWidgetItem*, const Node*> m_nodeOfLine;
    int m_updating = 0;
};
