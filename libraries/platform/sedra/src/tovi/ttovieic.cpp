#include "ttovieic.h"

#include <vnobject2tovieic.h>

namespace Sedra {

TToviEIC::TToviEIC(VNObject2ToviEIC* object)
    : TPropertyObject(object)
{ }

TToviEIC::~TToviEIC() = default;

VNObject2ToviEIC* TToviEIC::eic()
{
    return static_cast<VNObject2ToviEIC*>(object());
}

const VNObject2ToviEIC* TToviEIC::eic() const
{
    return static_cast<const VNObject2ToviEIC*>(object());
}

void TToviEIC::setValue(const QString& value)
{
    eic()->setValue(value);
    setProperty(QLatin1String(KeyValue), value);
}

} // namespace Sedra
