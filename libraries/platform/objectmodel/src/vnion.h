#pragma once

#include "vnobjectmodel_export.h"

#include <QString>

/// An ion channel: a mass window [lowerMass, upperMass] (mass units) read with
/// an offset added to both ends, as a chromatogram is extracted around a mass
/// that the instrument reports slightly shifted.
class VNOBJECTMODEL_EXPORT VNIon
{
public:
    VNIon() = default;
    VNIon(float lowerMass, float upperMass, float offset = 0.0f);
    /// The window of half-width `tolerance` around `mass`.
    static VNIon around(float mass, float tolerance = 0.5f, float offset = 0.0f);

    float lowerMass() const { return m_lower; }
    float upperMass() const { return m_upper; }
    float offset() const { return m_offset; }
    /// The centre of the window, offset included.
    float mass() const { return (m_lower + m_upper) / 2.0f + m_offset; }

    /// Finite bounds, not reversed, not both zero (a detector channel has no ion).
    bool isValid() const;
    /// True when the shifted window holds `mass`.
    bool contains(float mass) const;
    /// "m/z 191" for a unit-wide window, "m/z 190.5-191.5" otherwise.
    QString label() const;

    bool operator==(const VNIon& other) const;
    bool operator!=(const VNIon& other) const { return !(*this == other); }

private:
    float m_lower = 0.0f;
    float m_upper = 0.0f;
    float m_offset = 0.0f;
};
