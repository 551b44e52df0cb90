#include "vnobject2toviratio.h"

VNObject2ToviRatio::VNObject2ToviRatio(const QString& name, const QString& key)
    : VNObject2Tovi(name, key)
{ }

VNObject2ToviRatio::~VNObject2ToviRatio() = default;
