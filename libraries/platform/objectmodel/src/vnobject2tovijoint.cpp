#include "vnobject2tovijoint.h"

VNObject2ToviJoint::VNObject2ToviJoint(const QString& name, const VNObject2ToviCompound* compound,
                                       const VNObject2ToviEIC* eic, const QString& key)
    : VNObject2Tovi(name, key)
    , m_compound(compound)
    , m_eic(eic)
{ }

VNObject2ToviJoint::~VNObject2ToviJoint() = default;
