#include "twellmapper.h"

#include "tmutableobject.h"

#include <vnobject2well.h>

namespace Sedra {

TWellMapper::TWellMapper()
    : TAbstractMapper(VNObjectTypeWell)
{ }

TWellMapper::~TWellMapper() = default;

VNObject2* TWellMapper::newObject(const QString& name) const
{
    return new VNObject2Well(name);
}

TDatabaseObject* TWellMapper::newRecord(VNObject2* object) const
{
    return new TMutableObject(object);
}

TMutableObject* TWellMapper::createWell(const QString& name, bool flush) const
{
    return static_cast<TMutableObject*>(create(name, flush));
}

const VNObject2Well* TWellMapper::getWell(const QString& name) const
{
    return dynamic_cast<const VNObject2Well*>(get(name));
}

} // namespace Sedra
