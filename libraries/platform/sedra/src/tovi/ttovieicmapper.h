#pragma once

#include "ttoviabstractmapper.h"

#include <QMetaObject>

namespace Sedra {

class TToviEIC;

/// Ions (kind 1040). An ion's key is its name unless it was created with an
/// identifier of its own, so that an ion keeps its key when it is copied
/// from one reference database to another. Removing an ion removes the
/// joints made with it, however the removal is asked for.
class VNSEDRA_EXPORT TToviEICMapper : public TToviAbstractMapper
{
public:
    TToviEICMapper();
    ~TToviEICMapper() override;

    /// A new ion named `name` with `value`, under `key` (the name when
    /// empty). Null when the name is empty, the key is taken or the database
    /// is read-only. Written at once when `flush` is true and no batch is open.
    TToviEIC* createEIC(const QString& name, const QString& value, const QString& key = QString(),
                        bool flush = true) const;

    TToviEIC* eic(const QString& key) const;
    TToviEIC* eic(const VNObject2* object) const;
    /// The first ion of this name, or null.
    TToviEIC* getEICByName(const QString& name) const;
    /// Every ion, in creation order.
    QList<TToviEIC*> eicList() const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;
    TDatabaseObject* create(const QString& name, bool flush = true) const override;

protected:
    VNObject2* newObject(const QString& name) const override;
    TDatabaseObject* newRecord(VNObject2* object) const override;

private:
    /// Listens to the database's removals so that joints follow their ion.
    void watchRemovals() const;

    mutable QMetaObject::Connection m_removals;
    mutable const TDatabase* m_watched = nullptr;
};

} // namespace Sedra
