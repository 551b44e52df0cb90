#pragma once

#include "ttoviabstractmapper.h"

#include <QStringList>

namespace Sedra {

class TToviCompound;

/// Reference compounds (kind 1026). Look-ups by key ("Compound ID"), by name
/// (the master name) and by the list of reference keys go through the
/// header's indexes; none scans.
class VNSEDRA_EXPORT TToviCompoundMapper : public TToviAbstractMapper
{
public:
    TToviCompoundMapper();
    ~TToviCompoundMapper() override;

    /// A new compound with the values of `model` (a free record, or a record
    /// of another database; may be null) under the identifier `name`; an
    /// empty `name` makes a new identifier. The master name is the model's
    /// (its object's name when it has none, else the identifier); the
    /// reference keys are the model's. Null when the identifier is taken or
    /// the database is read-only. Written at once when `flush` is true and no
    /// batch is open.
    TToviCompound* createCompound(const TToviCompound* model, const QString& name, bool flush = true) const;

    TToviCompound* compound(const QString& key) const;
    TToviCompound* compound(const VNObject2* object) const;
    /// The first compound of this master name (its object), or null.
    const VNObject2* getCompoundByName(const QString& name) const;
    /// The compound whose reference keys are exactly `keys`, or null (also
    /// for a list of empty keys).
    TToviCompound* getByToViKey(const QStringList& keys) const;
    /// Every compound, in creation order.
    QList<TToviCompound*> compoundList() const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;

protected:
    VNObject2* newObject(const QString& name) const override;
    TDatabaseObject* newRecord(VNObject2* object) const override;
};

} // namespace Sedra
