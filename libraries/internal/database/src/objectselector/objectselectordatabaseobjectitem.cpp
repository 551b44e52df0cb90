#include "objectselectordatabaseobjectitem.h"

#include <vnobject2.h>

ObjectSelectorDatabaseObjectItem::ObjectSelectorDatabaseObjectItem() = default;

ObjectSelectorDatabaseObjectItem::~ObjectSelectorDatabaseObjectItem() = default;

void ObjectSelectorDatabaseObjectItem::setDatabaseObject(const VNObject2* object)
{
    m_object = object;
    setId(object ? object->key() : QString());
}
