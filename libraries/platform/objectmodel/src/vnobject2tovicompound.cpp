#include "vnobject2tovicompound.h"

VNObject2ToviCompound::VNObject2ToviCompound(const QString& name, const QString& key)
    : VNObject2Tovi(name, key)
{ }

VNObject2ToviCompound::~VNObject2ToviCompound() = default;
