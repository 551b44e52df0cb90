#include "vnobject2project.h"

VNObject2Project::VNObject2Project(const QString& name)
    : VNObject2(name)
{ }

VNObject2Project::~VNObject2Project() = default;
