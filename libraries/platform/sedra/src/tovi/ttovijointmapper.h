#pragma once

#include "ttoviabstractmapper.h"

namespace Sedra {

class TToviCompound;
class TToviEIC;
class TToviJoint;

/// Joints (kind 1033): a compound paired with an ion. A joint belongs to its
/// compound (its parent) and is indexed by its ion's key; its key is made of
/// both keys (TToviJoint::makeKey), so the pair is joined once.
class VNSEDRA_EXPORT TToviJointMapper : public TToviAbstractMapper
{
public:
    TToviJointMapper();
    ~TToviJointMapper() override;

    /// A new joint of `compound` and `eic`, both records of this database.
    /// An empty `name` is made from the compound's and the ion's names. Null
    /// when either record is missing or foreign, the pair is already joined,
    /// or the database is read-only. Written at once when `flush` is true and
    /// no batch is open.
    TToviJoint* createJoint(TToviCompound* compound, TToviEIC* eic, const QString& name, bool flush = true) const;

    using TAbstractMapper::get;
    /// The joint of the compound of key `compoundKey` with the ion `second`,
    /// given by its key or by its name; null when there is none.
    TToviJoint* get(const QString& compoundKey, const QString& second) const;
    TToviJoint* joint(const QString& key) const;
    TToviJoint* joint(const VNObject2* object) const;
    /// The joints of one compound (by its key) or of one ion (by its key).
    QList<TToviJoint*> jointsOfCompound(const QString& compoundKey) const;
    QList<TToviJoint*> jointsOfEIC(const QString& eicKey) const;
    /// Every joint, in creation order.
    QList<TToviJoint*> jointList() const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;
    /// Joints are made only from a compound and an ion: always null.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
};

} // namespace Sedra
