#pragma once

#include "vnobjectmodel_export.h"

#include <QVector>

/// A curve of the object model: `count` (x, y) points, a chromatogram's
/// retention times and abundances for instance. The plotting library turns it
/// into a plotted series; the object model itself draws nothing.
class VNOBJECTMODEL_EXPORT TDataCore
{
public:
    TDataCore() = default;
    /// Copies `count` values of `x` and `y`; a non-positive count or a null
    /// array gives an empty curve.
    TDataCore(int count, const float* x, const float* y);

    int count() const { return m_x.size(); }
    bool isEmpty() const { return m_x.isEmpty(); }
    /// Point i; 0 outside the curve.
    float x(int i) const { return i >= 0 && i < m_x.size() ? m_x[i] : 0.0f; }
    float y(int i) const { return i >= 0 && i < m_y.size() ? m_y[i] : 0.0f; }
    const QVector<float>& xValues() const { return m_x; }
    const QVector<float>& yValues() const { return m_y; }

private:
    QVector<float> m_x;
    QVector<float> m_y;
};
