#include "tdatabaseobject.h"

#include "tdatabase.h"
#include "theaderdatabase.h"

#include <vnobject2.h>

namespace Sedra {

TDatabaseObject::TDatabaseObject(VNObject2* object)
    : m_object(object)
{ }

TDatabaseObject::~TDatabaseObject()
{
    delete m_object;
}

int TDatabaseObject::type() const
{
    return m_object->type();
}

const QString& TDatabaseObject::key() const
{
    return m_object->key();
}

const QString& TDatabaseObject::name() const
{
    return m_object->name();
}

void TDatabaseObject::setParent(int type, const QString& key)
{
    m_parentType = key.isEmpty() ? 0 : type;
    m_parentKey = m_parentType ? key : QString();
}

TDatabaseObject* TDatabaseObject::getParent() const
{
    TDatabase* db = m_object->db();
    if (!db || !m_parentType)
        return nullptr;
    return db->headerDb()->findByKey(m_parentType, m_parentKey);
}

QList<TDatabaseObject*> TDatabaseObject::getDependantObjects() const
{
    TDatabase* db = m_object->db();
    return db ? db->headerDb()->findChildren(type(), key()) : QList<TDatabaseObject*>();
}

void TDatabaseObject::setModified(bool modified)
{
    if (modified && m_loadingState == ObjectLoading)
        return;
    m_modified = modified;
}

} // namespace Sedra
