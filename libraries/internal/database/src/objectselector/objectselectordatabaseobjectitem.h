#pragma once

#include "objectselectoritem.h"
#include "vndatabase_export.h"

class VNObject2;

/// A line of the reference-database selector that stands for one object of a
/// reference database (a compound, a parameter, a joint, an ion, a graph or an
/// overlay). The object is not owned: it belongs to its database's storage.
/// The item's id is the object's key, so that a persisted selection finds the
/// object again after the databases are reloaded.
class VNDATABASE_EXPORT ObjectSelectorDatabaseObjectItem : public ObjectSelectorItem
{
    Q_OBJECT
public:
    ObjectSelectorDatabaseObjectItem();
    ~ObjectSelectorDatabaseObjectItem() override;

    const VNObject2* databaseObject() const { return m_object; }
    /// Binds the item to `object` and takes its key as the item's id (an
    /// empty id for a null object).
    void setDatabaseObject(const VNObject2* object);

private:
    const VNObject2* m_object = nullptr;
};
