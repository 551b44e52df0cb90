#include "vntovidata.h"

bool VNToviData::operator==(const VNToviData& other) const
{
    return m_toviName == other.m_toviName && m_isORL == other.m_isORL;
}
