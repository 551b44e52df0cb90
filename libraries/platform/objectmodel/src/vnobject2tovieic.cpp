#include "vnobject2tovieic.h"

VNObject2ToviEIC::VNObject2ToviEIC(const QString& name, const QString& value, const QString& key)
    : VNObject2Tovi(name, key)
    , m_value(value)
{ }

VNObject2ToviEIC::~VNObject2ToviEIC() = default;
