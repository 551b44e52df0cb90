#pragma once

#include "objectselectoreditorobserverinterface.h"
#include "objectselectoriteminterface.h"
#include "ttree.h"
#include "vndatabase_export.h"

#include <QDomElement>
#include <QList>

class ObjectSelectorEditorInterface;
class ObjectSelectorModelInterface;
class QWidget;
class VNToviDatabaseInterface;

/// What an application holds to offer an object selector: a model, a widget
/// made on demand, and the saving and loading of the selection.
class VNDATABASE_EXPORT ObjectSelectorCtrlInterface : public ObjectSelectorEditorObserverInterface
{
public:
    ~ObjectSelectorCtrlInterface() override;

    virtual ObjectSelectorEditorInterface* initView(QWidget* parent) = 0;
    virtual void setActiveDB(const QList<VNToviDatabaseInterface*>& databases) = 0;
    virtual void closeView() = 0;
    virtual bool save(QDomElement& element) = 0;
    virtual bool load(QDomElement& element) = 0;
    virtual void clearSearch() = 0;
    virtual const ObjectSelectorModelInterface* model() = 0;
    virtual void setModel(ObjectSelectorModelInterface* model) = 0;
    virtual QList<ObjectSelectorItemInterface*> getSelectedItems(const TTree<ObjectSelectorItemInterface*>* node) = 0;
    virtual QList<int> getCollapsedItems() = 0;
    virtual bool loadCollapsedItems(const QList<int>& ids) = 0;
};
