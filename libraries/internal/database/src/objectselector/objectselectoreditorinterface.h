#pragma once

#include "vndatabase_export.h"

class ObjectSelectorEditorObserverInterface;
class ObjectSelectorItemInterface;
class ObjectSelectorModelInterface;

/// The selector widget as its controller sees it.
class VNDATABASE_EXPORT ObjectSelectorEditorInterface
{
public:
    virtual ~ObjectSelectorEditorInterface();

    /// Rebuilds the shown tree from the model (structure, visibility, branches, ticks).
    virtual void updateView() = 0;
    /// Refreshes what each shown line says (titles, icons, ticks, details).
    virtual void updateViewData() = 0;
    /// Makes `item` the current line.
    virtual void setSelectedItem(ObjectSelectorItemInterface* item) = 0;
    /// Shows or hides the "Check all items" control.
    virtual void setSelectAllVisible(bool visible) = 0;
    virtual void setModel(const ObjectSelectorModelInterface* model) = 0;
    /// False when `observer` is null or already registered.
    virtual bool addObserver(ObjectSelectorEditorObserverInterface* observer) = 0;
    /// False when `observer` was not registered.
    virtual bool removeObserver(ObjectSelectorEditorObserverInterface* observer) = 0;
};
