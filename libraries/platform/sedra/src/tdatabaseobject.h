#pragma once

#include "vnsedra_export.h"

#include <QList>
#include <QString>

class VNObject2;

namespace Sedra {

/// Where a record stands while it is read back from the header file: changes
/// made while it is loading are not changes to write back.
enum ObjectLoadingState { ObjectNotLoaded = 0, ObjectLoading, ObjectLoaded };

/// A stored record. It owns its object of the object model; the header
/// database owns the record. The id is the row of the record in the header
/// file (-1 until it is written).
class VNSEDRA_EXPORT TDatabaseObject
{
public:
    /// Takes ownership of `object`, which must not be null.
    explicit TDatabaseObject(VNObject2* object);
    virtual ~TDatabaseObject();
    TDatabaseObject(const TDatabaseObject&) = delete;
    TDatabaseObject& operator=(const TDatabaseObject&) = delete;

    VNObject2* object() { return m_object; }
    const VNObject2* object() const { return m_object; }
    int type() const;
    const QString& key() const;
    const QString& name() const;

    qint64 id() const { return m_id; }
    void setId(qint64 id) { m_id = id; }

    /// The record this one belongs to (a signal's analysis, an alias's
    /// compound), by kind and key; kind 0 for none. Set before the record is
    /// added to its database: the index is built from it.
    int parentType() const { return m_parentType; }
    const QString& parentKey() const { return m_parentKey; }
    void setParent(int type, const QString& key);
    /// The parent record, looked up in the database of the object; null for
    /// none or for a free record.
    TDatabaseObject* getParent() const;
    /// The records that name this one as their parent, of every kind.
    QList<TDatabaseObject*> getDependantObjects() const;

    /// A secondary look-up value chosen by the kind's mapper (a variable's
    /// pair of reference keys, ...). Set before the record is added.
    const QString& tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }

    /// True when the record has changes not yet written to the header file.
    /// Changes made while the record is loading do not count.
    bool isModified() const { return m_modified; }
    void setModified(bool modified);
    ObjectLoadingState loadingState() const { return m_loadingState; }
    void setLoadingState(ObjectLoadingState state) { m_loadingState = state; }

private:
    VNObject2* m_object;
    qint64 m_id = -1;
    int m_parentType = 0;
    QString m_parentKey;
    QString m_tag;
    bool m_modified = true;
    ObjectLoadingState m_loadingState = ObjectLoaded;
};

} // namespace Sedra
