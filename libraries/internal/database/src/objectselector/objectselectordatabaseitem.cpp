#include "objectselectordatabaseitem.h"

ObjectSelectorDatabaseItem::ObjectSelectorDatabaseItem() = default;

ObjectSelectorDatabaseItem::~ObjectSelectorDatabaseItem() = default;
