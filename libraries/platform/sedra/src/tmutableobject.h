#pragma once

#include "tpropertyobject.h"

namespace Sedra {

/// A record whose object may be renamed after creation (wells, datasets).
/// Renaming goes through the kind's mapper, which keeps the index current;
/// the loading state and the modified flag come from TDatabaseObject.
class VNSEDRA_EXPORT TMutableObject : public TPropertyObject
{
public:
    explicit TMutableObject(VNObject2* object);
    ~TMutableObject() override;
};

} // namespace Sedra
