#include "tabstractdatabase.h"

#include "tdatabaseobject.h"

#include <vnobject2.h>

#include <QSet>

#include <algorithm>

namespace Sedra {

TAbstractDatabase::TAbstractDatabase() = default;

TAbstractDatabase::~TAbstractDatabase()
{
    deleteAllObjects();
}

QList<TDatabaseObject*> TAbstractDatabase::getObjectsList(int type) const
{
    auto it = m_kinds.constFind(type);
    return it == m_kinds.constEnd() ? QList<TDatabaseObject*>() : it->list;
}

QList<TDatabaseObject*> TAbstractDatabase::getObjectsList() const
{
    QList<TDatabaseObject*> all;
    for (const Kind& kind : m_kinds)
        all += kind.list;
    return all;
}

int TAbstractDatabase::objectCount(int type) const
{
    auto it = m_kinds.constFind(type);
    return it == m_kinds.constEnd() ? 0 : it->list.size();
}

TDatabaseObject* TAbstractDatabase::findByKey(int type, const QString& key) const
{
    auto it = m_kinds.constFind(type);
    return it == m_kinds.constEnd() ? nullptr : it->byKey.value(key, nullptr);
}

TDatabaseObject* TAbstractDatabase::findByName(int type, const QString& name) const
{
    const QList<TDatabaseObject*> all = findAllByName(type, name);
    return all.isEmpty() ? nullptr : all.first();
}

QList<TDatabaseObject*> TAbstractDatabase::findAllByName(int type, const QString& name) const
{
    auto it = m_kinds.constFind(type);
    return it == m_kinds.constEnd() ? QList<TDatabaseObject*>() : it->byName.value(name);
}

QList<TDatabaseObject*> TAbstractDatabase::findChildren(int parentType, const QString& parentKey) const
{
    return m_children.value(ParentKey(parentType, parentKey));
}

QList<TDatabaseObject*> TAbstractDatabase::findChildren(int parentType, const QString& parentKey, int type) const
{
    QList<TDatabaseObject*> result;
    for (TDatabaseObject* child : m_children.value(ParentKey(parentType, parentKey))) {
        if (child->type() == type)
            result.append(child);
    }
    return result;
}

QList<TDatabaseObject*> TAbstractDatabase::findByTag(int type, const QString& tag) const
{
    auto it = m_kinds.constFind(type);
    return it == m_kinds.constEnd() ? QList<TDatabaseObject*>() : it->byTag.value(tag);
}

TDatabaseObject* TAbstractDatabase::findByObject(const VNObject2* object) const
{
    return m_byObject.value(object, nullptr);
}

bool TAbstractDatabase::insertObject(TDatabaseObject* record)
{
    if (!record || m_byObject.contains(record->object()))
        return false;
    Kind& kind = m_kinds[record->type()];
    if (kind.byKey.contains(record->key()))
        return false;
    kind.list.append(record);
    kind.byKey.insert(record->key(), record);
    kind.byName[record->name()].append(record);
    if (!record->tag().isEmpty())
        kind.byTag[record->tag()].append(record);
    if (record->parentType())
        m_children[ParentKey(record->parentType(), record->parentKey())].append(record);
    m_byObject.insert(record->object(), record);
    return true;
}

template <typename Key>
static void removeFromBucket(QHash<Key, QList<TDatabaseObject*>>& hash, const Key& bucket, TDatabaseObject* record)
{
    auto it = hash.find(bucket);
    if (it == hash.end())
        return;
    it->removeOne(record);
    if (it->isEmpty())
        hash.erase(it);
}

bool TAbstractDatabase::takeObject(TDatabaseObject* record)
{
    if (!record || m_byObject.value(record->object()) != record)
        return false;
    Kind& kind = m_kinds[record->type()];
    kind.list.removeOne(record);
    kind.byKey.remove(record->key());
    removeFromBucket(kind.byName, record->name(), record);
    if (!record->tag().isEmpty())
        removeFromBucket(kind.byTag, record->tag(), record);
    if (record->parentType())
        removeFromBucket(m_children, ParentKey(record->parentType(), record->parentKey()), record);
    m_byObject.remove(record->object());
    m_keyChanged.remove(record);
    return true;
}

void TAbstractDatabase::takeObjects(const QList<TDatabaseObject*>& records)
{
    if (records.size() < 8) {
        for (TDatabaseObject* record : records)
            takeObject(record);
        return;
    }
    // Each touched list is filtered once, whatever the number of records it loses.
    struct Touched
    {
        QSet<QString> names;
        QSet<QString> tags;
    };
    QSet<TDatabaseObject*> gone;
    QHash<int, Touched> kinds;
    QSet<ParentKey> parents;
    for (TDatabaseObject* record : records) {
        if (!record || m_byObject.value(record->object()) != record)
            continue;
        gone.insert(record);
        Touched& touched = kinds[record->type()];
        touched.names.insert(record->name());
        if (!record->tag().isEmpty())
            touched.tags.insert(record->tag());
        if (record->parentType())
            parents.insert(ParentKey(record->parentType(), record->parentKey()));
        m_kinds[record->type()].byKey.remove(record->key());
        m_byObject.remove(record->object());
        m_keyChanged.remove(record);
    }
    const auto dropGone = [&gone](QList<TDatabaseObject*>& list) {
        list.erase(std::remove_if(list.begin(), list.end(), [&gone](TDatabaseObject* r) { return gone.contains(r); }),
                   list.end());
    };
    const auto filter = [&dropGone](auto& hash, const auto& bucket) {
        auto it = hash.find(bucket);
        if (it == hash.end())
            return;
        dropGone(*it);
        if (it->isEmpty())
            hash.erase(it);
    };
    for (auto touched = kinds.constBegin(); touched != kinds.constEnd(); ++touched) {
        Kind& kind = m_kinds[touched.key()];
        dropGone(kind.list);
        for (const QString& name : touched->names)
            filter(kind.byName, name);
        for (const QString& tag : touched->tags)
            filter(kind.byTag, tag);
    }
    for (const ParentKey& parent : parents)
        filter(m_children, parent);
}

bool TAbstractDatabase::renameObject(TDatabaseObject* record, const QString& name, const QString& key)
{
    if (!record || m_byObject.value(record->object()) != record)
        return false;
    Kind& kind = m_kinds[record->type()];
    if (name.isEmpty() || key.isEmpty() || (key != record->key() && kind.byKey.contains(key)))
        return false;
    const QString oldKey = record->key();
    kind.byKey.remove(oldKey);
    removeFromBucket(kind.byName, record->name(), record);
    record->object()->setName(name);
    record->object()->setKey(key == name ? QString() : key);
    if (record->key() != oldKey)
        m_keyChanged.insert(record);
    kind.byKey.insert(record->key(), record);
    kind.byName[record->name()].append(record);
    // The records that belong to this one follow it to its new key.
    moveChildren(record->type(), oldKey, record->key());
    return true;
}

void TAbstractDatabase::moveChildren(int parentType, const QString& oldKey, const QString& newKey)
{
    if (oldKey == newKey)
        return;
    const QList<TDatabaseObject*> children = m_children.take(ParentKey(parentType, oldKey));
    for (TDatabaseObject* child : children) {
        child->setParent(parentType, newKey);
        child->setModified(true);
        const QString childOld = child->key();
        if (childOld != childKey(oldKey, child->name()))
            continue; // a key of its own: it stays
        const QString childNew = childKey(newKey, child->name());
        Kind& kind = m_kinds[child->type()];
        if (kind.byKey.contains(childNew))
            continue; // cannot happen for keys made by childKey(); the old key still works
        kind.byKey.remove(childOld);
        child->object()->setKey(childNew);
        m_keyChanged.insert(child);
        kind.byKey.insert(childNew, child);
        moveChildren(child->type(), childOld, childNew);
    }
    if (!children.isEmpty())
        m_children[ParentKey(parentType, newKey)] += children;
}

QString TAbstractDatabase::childKey(const QString& parentKey, const QString& name)
{
    QString escaped = parentKey;
    if (escaped.contains(QLatin1Char('%')) || escaped.contains(QLatin1Char('/'))) {
        escaped.replace(QLatin1Char('%'), QLatin1String("%25"));
        escaped.replace(QLatin1Char('/'), QLatin1String("%2F"));
    }
    return escaped + QLatin1Char('/') + name;
}

void TAbstractDatabase::deleteAllObjects()
{
    const QMap<int, Kind> kinds = m_kinds;
    m_kinds.clear();
    m_children.clear();
    m_byObject.clear();
    m_keyChanged.clear();
    for (const Kind& kind : kinds)
        qDeleteAll(kind.list);
}

} // namespace Sedra
