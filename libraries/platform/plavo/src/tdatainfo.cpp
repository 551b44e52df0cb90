#include "tdatainfo.h"

namespace Plavo {

TDataInfo::TDataInfo(TYPE type, const QString& value)
    : m_type(type)
    , m_value(value)
{ }

bool TDataInfo::isKnownType(int type)
{
    return type >= TYPE_NAME && type <= TYPE_VALUE;
}

bool TDataInfo::operator==(const TDataInfo& other) const
{
    return m_type == other.m_type && m_value == other.m_value;
}

} // namespace Plavo
