#pragma once

#include "vndatabase_export.h"

#include <QString>

class ObjectSelectorItemInterface;

/// What a selector widget tells the parties that watch it. Every operation
/// does nothing by default, so an observer overrides only what it handles.
class VNDATABASE_EXPORT ObjectSelectorEditorObserverInterface
{
public:
    virtual ~ObjectSelectorEditorObserverInterface();

    /// The search text changed and is not empty.
    virtual void searchRequested(const QString& text);
    /// The user ticked or unticked `item`.
    virtual void toggleCheckRequested(ObjectSelectorItemInterface* item, bool checked);
    /// Recompute what is shown with the active filters.
    virtual void searchWithFilterRequested();
    /// The search text was cleared.
    virtual void stopSearchRequested();
    /// Filters are addressed by the labels the model shows for them.
    virtual void enableFilterRequested(const QString& label);
    virtual void disableFilterRequested(const QString& label);
    virtual void updateFilterRequested(const QString& label, const QString& value);
    /// A value was picked in the quick-filter menu (sent after the filter
    /// itself was enabled and given that value).
    virtual void quickFilterRequested(const QString& label, const QString& value);
    /// "Check all items" was toggled (sent after the visible items were ticked
    /// or unticked one by one through toggleCheckRequested).
    virtual void checkAllRequested(bool checked);
    /// The current line of the tree changed; `item` may be null.
    virtual void currentItemChanged(ObjectSelectorItemInterface* item);
    virtual void itemCollapsed(ObjectSelectorItemInterface* item);
    virtual void itemExpanded(ObjectSelectorItemInterface* item);
    /// A line was double-clicked (usually: open or use that object).
    virtual void itemActivated(ObjectSelectorItemInterface* item);
};
