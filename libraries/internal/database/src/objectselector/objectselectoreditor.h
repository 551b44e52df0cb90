#pragma once

#include "objectselectoreditorinterface.h"
#include "objectselectoriteminterface.h"
#include "vndatabase_export.h"

#include <QStringList>
#include <QWidget>

#include <memory>

class ObjectSelectorEditorPrivate;
class ObjectSelectorTreeModel;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QModelIndex;
class QTextBrowser;
class QToolButton;
class QTreeView;

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
    QLineEdit* searchLine() const;
    QToolButton* quickFilterButton() const;
    QMenu* quickFilterMenu() const;
    QToolButton* addFilterButton() const;
    QComboBox* filterLabelBox(int index) const;
    QLineEdit* filterValueLine(int index) const;
    QToolButton* removeFilterButton(int index) const;
    /// The tree: a view over treeModel(), which shows the model's visible nodes.
    QTreeView* treeView() const;
    ObjectSelectorTreeModel* treeModel() const;
    QCheckBox* checkAllBox() const;
    QTextBrowser* detailsPane() const;
    QLabel* countLabel() const;
    /// The item of the current line (kept while a search hides it), or null.
    ObjectSelectorItemInterface* currentItem() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    friend class ObjectSelectorEditorPrivate;
    struct FilterLine;

    void retranslate();
    QStringList visibleFilterLabels() const;
    void refreshTree(bool structureAndVisibility);
    void syncBranches();
    void rebuildQuickFilterMenu();
    void updateCheckAllState();
    void updateCount();
    void updateDetails();
    void updateFilterControls();

    void onSearchEdited(const QString& text);
    void onCheckRequested(ObjectSelectorItemInterface* item, bool checked);
    void onCurrentChanged(const QModelIndex& current);
    void onCheckAllClicked(bool checked);
    void onQuickFilter(const QString& label, const QString& value);
    void onFilterLabelChanged(FilterLine* line);
    void onFilterValueEdited(FilterLine* line);
    void removeFilterLine(FilterLine* line);

    template <typename Call>
    void notify(Call call);

    // Behind a private pointer: adding state does not change the layout other
    // modules were built against.
    std::unique_ptr<ObjectSelectorEditorPrivate> d;
};
