#include "vnobject2tovi.h"

VNObject2Tovi::VNObject2Tovi(const QString& name, const QString& key)
    : VNObject2(name)
{
    if (!key.isNull())
        setKey(key);
}

VNObject2Tovi::~VNObject2Tovi() = default;

bool VNObject2Tovi::isToviType(int type)
{
    switch (type) {
    case VNObjectTypeRatio:
    case VNObjectTypeCompound:
    case VNObjectTypeGraph:
    case VNObjectTypeOverlay:
    case VNObjectTypeJoint:
    case VNObjectTypeIon:
    case VNObjectTypeAlias:
        return true;
    default:
        return false;
    }
}
