#pragma once

#include "vndatabase_export.h"

#include <QPixmap>
#include <QString>

/// What the selector framework knows of one line of a selector tree: its key,
/// title and icon, its check box, and whether its branch is open. The tree
/// (TTree<ObjectSelectorItemInterface*>) holds items through this interface.
class VNDATABASE_EXPORT ObjectSelectorItemInterface
{
public:
    ObjectSelectorItemInterface() = default;
    ObjectSelectorItemInterface(const ObjectSelectorItemInterface&) = default;
    ObjectSelectorItemInterface& operator=(const ObjectSelectorItemInterface&) = default;
    virtual ~ObjectSelectorItemInterface();

    virtual void setId(const QString& id) = 0;
    virtual QString id() = 0;
    virtual void setIsCheckable(bool checkable) = 0;
    virtual bool isCheckable() const = 0;
    virtual void setChecked(bool checked) = 0;
    virtual bool isChecked() const = 0;
    virtual void setTitle(const QString& title) = 0;
    virtual QString title() = 0;
    virtual void setPixmap(const QPixmap& pixmap) = 0;
    virtual QPixmap pixmap() = 0;
    virtual bool isExpanded() const = 0;
    virtual void setExpanded(bool expanded) = 0;
};
