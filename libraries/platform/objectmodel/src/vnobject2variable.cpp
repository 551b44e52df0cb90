#include "vnobject2variable.h"

VNObject2Variable::VNObject2Variable(const QString& name, const QString& reference1, const QString& reference2)
    : VNObject2(name)
    , m_reference1(reference1)
    , m_reference2(reference2)
{ }

VNObject2Variable::~VNObject2Variable() = default;
