#pragma once

#include "ttoviabstractmapper.h"

#include <QStringList>

namespace Sedra {

class TToviAlias;

/// Aliases (kind 1041): one value per (object, field, vendor). An alias is
/// found by its identity through its key, by its value through the index of
/// values, and by vendor through the index of names (an alias record is named
/// after its vendor); none of these scans.
class VNSEDRA_EXPORT TToviAliasMapper : public TToviAbstractMapper
{
public:
    TToviAliasMapper();
    ~TToviAliasMapper() override;

    /// Every alias, in creation order.
    QList<TToviAlias*> aliasList() const;
    /// The distinct vendors, in order of first appearance.
    QStringList vendorList() const;
    /// The alias of (`object`, `field`, `vendor`), or null.
    TToviAlias* getAlias(const VNObject2* object, const QString& field, const QString& vendor) const;
    /// A new alias of `object` (a stored object of this database). Null when
    /// the object is not ours, the field is empty, the alias exists already
    /// or the database is read-only. Written at once when `flush` is true and
    /// no batch is open.
    TToviAlias* aliasCreate(const VNObject2* object, const QString& field, const QString& vendor, const QString& value,
                            bool flush = true) const;
    /// Gives an existing alias a new value (written at once). False when
    /// there is no such alias or the write fails; true when the value is
    /// already that. The alias record is replaced: records of it taken
    /// before are no longer valid.
    bool aliasUpdate(const VNObject2* object, const QString& field, const QString& vendor, const QString& value) const;
    /// Removes one alias (written at once). False when there is none.
    bool removeAlias(const VNObject2* object, const QString& field, const QString& vendor) const;
    /// Removes every alias of `vendor`, of every object, in one transaction.
    /// True when nothing failed (also when the vendor had no alias).
    bool removeVendor(const QString& vendor) const;
    /// The aliases of one object, in creation order.
    QList<TToviAlias*> aliasesOf(const VNObject2* object) const;
    /// The aliases whose value is exactly `value`.
    QList<TToviAlias*> getByValue(const QString& value) const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;
    /// Aliases are made only for an object: always null.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;

private:
    TToviAlias* makeAlias(const TDatabaseObject* parent, const QString& field, const QString& vendor,
                          const QString& value) const;
};

} // namespace Sedra
