#pragma once

#include "objectselectoriteminterface.h"
#include "ttree.h"
#include "vndatabase_export.h"

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

class QObject;

/// The state behind an object selector: the tree of items, the persisted
/// selection, collapsed branches, and filters named after the items' dynamic
/// properties, each with a value.
class VNDATABASE_EXPORT ObjectSelectorModelInterface
{
public:
    virtual ~ObjectSelectorModelInterface();

    virtual bool encode(QDomElement& parent) = 0;
    virtual bool decode(QDomElement& element) = 0;
    virtual QList<int> getCollapsedItems() = 0;
    virtual bool loadCollapsedItems(const QList<int>& ids) = 0;
    virtual bool enableFilter(const QString& name) = 0;
    virtual bool disableFilter(const QString& name) = 0;
    virtual void availableFilters(QList<QString>& list) const = 0;
    virtual void activeFilters(QList<QString>& names) const = 0;
    virtual void activeFilters(QHash<QString, QString>& filters) const = 0;
    virtual void activeFiltersDisplay(QHash<QString, QString>& filters) const = 0;
    virtual bool updateFilterValue(const QString& name, const QString& value) = 0;
    virtual QString filterValue(const QString& name) = 0;
    virtual bool updateVisibleFilterValue(const QString& label, const QString& name) = 0;
    virtual QString visibleFilterValue(const QString& label) = 0;
    virtual void visibleFilters(const QObject* item, QMap<QString, QString>& values) const = 0;
    virtual void visibleFilters(QStringList& labels) const = 0;
    virtual void disableAllFilters() = 0;
    virtual QList<ObjectSelectorItemInterface*> getSelectedItems(const TTree<ObjectSelectorItemInterface*>* node) = 0;

private:
    virtual void updateSelectedItems(const TTree<ObjectSelectorItemInterface*>* node, const QList<QVariant>& ids) = 0;
};
