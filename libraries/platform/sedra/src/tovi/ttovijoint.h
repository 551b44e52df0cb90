#pragma once

#include "tpropertyobject.h"

class VNObject2ToviJoint;

namespace Sedra {

/// The record of a joint: a compound paired with the ion through which it is
/// measured. The joint belongs to its compound (it goes with it) and is
/// indexed by its ion (it goes with the ion too). Its key is made of the two
/// keys, so that a pair is joined once per database.
class VNSEDRA_EXPORT TToviJoint : public TPropertyObject
{
public:
    /// Takes ownership of `object`.
    explicit TToviJoint(VNObject2ToviJoint* object);
    ~TToviJoint() override;

    static constexpr const char* KeyMasterName = "MasterName";
    static constexpr const char* KeyCompoundId = "Compound ID";
    static constexpr const char* KeyIonId = "Ion ID";

    VNObject2ToviJoint* joint();
    const VNObject2ToviJoint* joint() const;

    QString compoundKey() const { return property(QLatin1String(KeyCompoundId)); }
    QString eicKey() const { return property(QLatin1String(KeyIonId)); }
    /// The key of the joint of a compound and an ion.
    static QString makeKey(const QString& compoundKey, const QString& eicKey);
};

} // namespace Sedra
