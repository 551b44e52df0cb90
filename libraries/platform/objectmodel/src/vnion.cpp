#include "vnion.h"

#include <cmath>

VNIon::VNIon(float lowerMass, float upperMass, float offset)
    : m_lower(lowerMass)
    , m_upper(upperMass)
    , m_offset(offset)
{ }

VNIon VNIon::around(float mass, float tolerance, float offset)
{
    return VNIon(mass - tolerance, mass + tolerance, offset);
}

bool VNIon::isValid() const
{
    return std::isfinite(m_lower) && std::isfinite(m_upper) && std::isfinite(m_offset) && m_lower <= m_upper
        && !(m_lower == 0.0f && m_upper == 0.0f);
}

bool VNIon::contains(float mass) const
{
    return isValid() && mass >= m_lower + m_offset && mass <= m_upper + m_offset;
}

QString VNIon::label() const
{
    if (!isValid())
        return QString();
    const float low = m_lower + m_offset;
    const float high = m_upper + m_offset;
    if (std::fabs(high - low - 1.0f) < 1e-4f)
        return QStringLiteral("m/z %1").arg(double(mass()), 0, 'g', -1);
    return QStringLiteral("m/z %1-%2").arg(double(low), 0, 'g', -1).arg(double(high), 0, 'g', -1);
}

bool VNIon::operator==(const VNIon& other) const
{
    return m_lower == other.m_lower && m_upper == other.m_upper && m_offset == other.m_offset;
}
