#pragma once

#include "vnsedra_export.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>

class VNObject2;

namespace Sedra {

class TDatabaseObject;

/// The in-memory store of a database's records: one list per kind in creation
/// order, with indexes by key, by name, by tag, by parent and by object so
/// that no look-up scans a list. It owns the records it holds.
class VNSEDRA_EXPORT TAbstractDatabase
{
public:
    TAbstractDatabase();
    virtual ~TAbstractDatabase();
    TAbstractDatabase(const TAbstractDatabase&) = delete;
    TAbstractDatabase& operator=(const TAbstractDatabase&) = delete;

    /// The records of one kind, in creation order.
    QList<TDatabaseObject*> getObjectsList(int type) const;
    /// Every record, kind by kind in ascending kind number.
    QList<TDatabaseObject*> getObjectsList() const;
    int objectCount() const { return m_byObject.size(); }
    int objectCount(int type) const;

    TDatabaseObject* findByKey(int type, const QString& key) const;
    /// The first record of the kind created with this name.
    TDatabaseObject* findByName(int type, const QString& name) const;
    QList<TDatabaseObject*> findAllByName(int type, const QString& name) const;
    /// The records of every kind whose parent is (parentType, parentKey).
    QList<TDatabaseObject*> findChildren(int parentType, const QString& parentKey) const;
    /// The same, of one kind only.
    QList<TDatabaseObject*> findChildren(int parentType, const QString& parentKey, int type) const;
    /// The records of the kind whose mapper gave them this look-up tag.
    QList<TDatabaseObject*> findByTag(int type, const QString& tag) const;
    TDatabaseObject* findByObject(const VNObject2* object) const;

    /// The key of a record that belongs to the record of key `parentKey`
    /// (a signal of its analysis, a variable of its dataset): the parent's
    /// key with '%' and '/' escaped, '/', then `name`. ("a/b", "c") and
    /// ("a", "b/c") thus never share a key; parent keys without those
    /// characters appear as they are ("Run/TIC").
    static QString childKey(const QString& parentKey, const QString& name);

protected:
    /// Indexes and takes ownership; false when the kind already holds the key.
    bool insertObject(TDatabaseObject* record);
    /// Removes from the indexes without deleting.
    bool takeObject(TDatabaseObject* record);
    /// The same for many records at once, in time linear in the records held
    /// (removing them one by one would shift each list once per record). The
    /// records must belong to this store.
    void takeObjects(const QList<TDatabaseObject*>& records);
    /// Changes the name and the key of a record and its index entries.
    bool renameObject(TDatabaseObject* record, const QString& name, const QString& key);
    void deleteAllObjects();
    /// The records whose key changed since forgetKeyChanges(): their rows
    /// may still hold a key that another record now has.
    QList<TDatabaseObject*> keyChanges() const { return m_keyChanged.values(); }
    void forgetKeyChanges() { m_keyChanged.clear(); }

private:
    /// Moves the records that belong to (parentType, oldKey) to `newKey`;
    /// those keyed after their parent take the new key too, and so on down.
    void moveChildren(int parentType, const QString& oldKey, const QString& newKey);

    struct Kind
    {
        QList<TDatabaseObject*> list;
        QHash<QString, TDatabaseObject*> byKey;
        QHash<QString, QList<TDatabaseObject*>> byName;
        QHash<QString, QList<TDatabaseObject*>> byTag;
    };
    using ParentKey = QPair<int, QString>;
    QMap<int, Kind> m_kinds;
    QHash<ParentKey, QList<TDatabaseObject*>> m_children;
    QHash<const VNObject2*, TDatabaseObject*> m_byObject;
    QSet<TDatabaseObject*> m_keyChanged;
};

} // namespace Sedra
