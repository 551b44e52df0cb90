#pragma once

#include <QString>
#include <QVector>

/// Axis ticks at round numbers (1, 2, 2.5 or 5 times a power of ten) that
/// cover a data range with about the wished number of intervals.
class NiceScale
{
public:
    /// Any range is accepted: a reversed range is swapped, an empty or
    /// non-finite one is widened so that the scale always has ticks.
    NiceScale(double minimum, double maximum, int wishedTicks = 6);

    double minimum() const { return m_min; }
    double maximum() const { return m_max; }
    double step() const { return m_step; }
    QVector<double> ticks() const;

    /// The tick value as the axis shows it: no "-0", no float noise
    /// ("0.30000000000000004" is "0.3"), as many decimals as the step needs.
    QString label(double value) const;

    /// The power of ten by which values of magnitude `maximum` are best divided
    /// for display (0 below 10 000, else 3, 4, 5 ...).
    static int displayExponent(double maximum);

    /// 1, 2, 2.5, 5 or 10 times a power of ten, near `value` (rounded) or not below it.
    static double niceNumber(double value, bool round);

private:
    double m_min = 0.0;
    double m_max = 1.0;
    double m_step = 0.2;
};
