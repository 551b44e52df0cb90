#pragma once

#include "vnobjectmodel_export.h"
#include "vnobjecttype.h"

#include <QString>

namespace Sedra {
class TDatabase;
}

/// An object of the application's model. It is owned by the storage record
/// that holds it; its properties live in that record, not here. The key
/// identifies the object among the objects of its kind in one database.
class VNOBJECTMODEL_EXPORT VNObject2
{
public:
    explicit VNObject2(const QString& name = QString());
    virtual ~VNObject2();
    VNObject2(const VNObject2&) = delete;
    VNObject2& operator=(const VNObject2&) = delete;

    virtual int type() const = 0;

    const QString& name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }
    /// The identifier of the object in its database; the name unless the
    /// storage chose another one.
    const QString& key() const { return m_key.isNull() ? m_name : m_key; }
    void setKey(const QString& key) { m_key = key; }

    /// The database that owns the object, or null for a free object.
    Sedra::TDatabase* db() const { return m_db; }
    void setDb(Sedra::TDatabase* db) { m_db = db; }

    /// True when the object belongs to a database that may not be changed.
    bool isReadOnly() const { return m_readOnly; }
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }

    /// The folder, under the project folder, that holds the objects of `type`;
    /// a null string for a kind that has no folder of its own.
    static QString folderName(int type);

private:
    QString m_name;
    QString m_key;
    Sedra::TDatabase* m_db = nullptr;
    bool m_readOnly = false;
};
