#include "ttoviratio.h"

#include <vnobject2toviratio.h>

namespace Sedra {

TToviRatio::TToviRatio(VNObject2ToviRatio* object)
    : TPropertyObject(object)
{ }

TToviRatio::~TToviRatio() = default;

VNObject2ToviRatio* TToviRatio::ratio()
{
    return static_cast<VNObject2ToviRatio*>(object());
}

const VNObject2ToviRatio* TToviRatio::ratio() const
{
    return static_cast<const VNObject2ToviRatio*>(object());
}

int TToviRatio::displayOrder() const
{
    return ratio()->displayOrder();
}

void TToviRatio::setDisplayOrder(int order)
{
    ratio()->setDisplayOrder(order);
    setProperty(QLatin1String(KeyDisplayOrder), QString::number(order));
}

} // namespace Sedra
