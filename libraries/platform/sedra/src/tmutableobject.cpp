#include "tmutableobject.h"

namespace Sedra {

TMutableObject::TMutableObject(VNObject2* object)
    : TPropertyObject(object)
{ }

TMutableObject::~TMutableObject() = default;

} // namespace Sedra
