#include "ttovialias.h"

namespace Sedra {

TToviAlias::TToviAlias(VNObject2* object)
    : TPropertyObject(object)
{ }

TToviAlias::~TToviAlias() = default;

QString TToviAlias::makeKey(int parentType, const QString& parentKey, const QString& field, const QString& vendor)
{
    const QChar separator(0x1f);
    return QString::number(parentType) + separator + parentKey + separator + field + separator + vendor;
}

} // namespace Sedra
