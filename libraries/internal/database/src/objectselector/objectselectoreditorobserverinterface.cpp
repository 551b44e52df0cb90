#include "objectselectoreditorobserverinterface.h"

ObjectSelectorEditorObserverInterface::~ObjectSelectorEditorObserverInterface() = default;

void ObjectSelectorEditorObserverInterface::searchRequested(const QString&)
{ }
void ObjectSelectorEditorObserverInterface::toggleCheckRequested(ObjectSelectorItemInterface*, bool)
{ }
void ObjectSelectorEditorObserverInterface::searchWithFilterRequested()
{ }
void ObjectSelectorEditorObserverInterface::stopSearchRequested()
{ }
void ObjectSelectorEditorObserverInterface::enableFilterRequested(const QString&)
{ }
void ObjectSelectorEditorObserverInterface::disableFilterRequested(const QString&)
{ }
void ObjectSelectorEditorObserverInterface::updateFilterRequested(const QString&, const QString&)
{ }
void ObjectSelectorEditorObserverInterface::quickFilterRequested(const QString&, const QString&)
{ }
void ObjectSelectorEditorObserverInterface::checkAllRequested(bool)
{ }
void ObjectSelectorEditorObserverInterface::currentItemChanged(ObjectSelectorItemInterface*)
{ }
void ObjectSelectorEditorObserverInterface::itemCollapsed(ObjectSelectorItemInterface*)
{ }
void ObjectSelectorEditorObserverInterface::itemExpanded(ObjectSelectorItemInterface*)
{ }
void ObjectSelectorEditorObserverInterface::itemActivated(ObjectSelectorItemInterface*)
{ }
