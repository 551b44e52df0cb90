#include "tplainobject.h"

namespace Sedra {

TPlainObject::TPlainObject(int type, const QString& name)
    : VNObject2(name)
    , m_type(type)
{ }

TPlainObject::~TPlainObject() = default;

} // namespace Sedra
