#include "ttovijoint.h"

#include <vnobject2tovijoint.h>

namespace Sedra {

TToviJoint::TToviJoint(VNObject2ToviJoint* object)
    : TPropertyObject(object)
{ }

TToviJoint::~TToviJoint() = default;

VNObject2ToviJoint* TToviJoint::joint()
{
    return static_cast<VNObject2ToviJoint*>(object());
}

const VNObject2ToviJoint* TToviJoint::joint() const
{
    return static_cast<const VNObject2ToviJoint*>(object());
}

QString TToviJoint::makeKey(const QString& compoundKey, const QString& eicKey)
{
    // The unit separator never appears in typed text: two different pairs
    // never make the same key.
    return compoundKey + QChar(0x1f) + eicKey;
}

} // namespace Sedra
