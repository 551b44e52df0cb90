#pragma once

#include "objectselectoreditor.h"

#include <QList>
#include <QString>

class ObjectSelectorEditorObserverInterface;
class ObjectSelectorModelInterface;
class QVBoxLayout;

struct ObjectSelectorEditor::FilterLine
{
    QWidget* row = nullptr;
    QComboBox* label = nullptr;
    QLineEdit* value = nullptr;
    QToolButton* remove = nullptr;
    QString enabledLabel; // the label whose filter the observers were asked to enable
};

// The state of an ObjectSelectorEditor.
class ObjectSelectorEditorPrivate
{
public:
    const ObjectSelectorModelInterface* model = nullptr;
    QList<ObjectSelectorEditorObserverInterface*> observers;

    QLineEdit* search = nullptr;
    QToolButton* quickFilterButton = nullptr;
    QMenu* quickFilterMenu = nullptr;
    QToolButton* addFilterButton = nullptr;
    QLabel* filtersTitle = nullptr;
    QVBoxLayout* filterLayout = nullptr;
    QList<ObjectSelectorEditor::FilterLine*> filterLines;
    ObjectSelectorTreeModel* treeModel = nullptr;
    QTreeView* tree = nullptr;
    QCheckBox* checkAll = nullptr;
    QLabel* count = nullptr;
    QTextBrowser* details = nullptr;
    QString detailsShown; // the pane's HTML, not set again when unchanged

    // The item the user made current: a search may hide its line for a while.
    ObjectSelectorItemInterface* current = nullptr;
    // Above zero while the widget itself changes the view: what the view
    // reports then is not the user's doing.
    int updating = 0;
};
