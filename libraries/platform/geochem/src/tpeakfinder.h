#pragma once

#include "vngeochem_export.h"

#include <QVector>

/// One chromatographic peak: where it starts, peaks and ends (the time unit of
/// the chromatogram, minutes for this application), its baseline, and what is
/// measured above that baseline.
struct VNGEOCHEM_EXPORT TPeak
{
    double start = 0.0;
    double apex = 0.0;
    double end = 0.0;
    /// The baseline under the peak: a straight line from (start, baselineStart) to (end, baselineEnd).
    double baselineStart = 0.0;
    double baselineEnd = 0.0;
    /// Above the baseline: area (value x time), height at the apex, width at half height.
    double area = 0.0;
    double height = 0.0;
    double width = 0.0;
    /// Height over the chromatogram's noise (0 when the noise is unknown).
    double signalToNoise = 0.0;
};

/// Finds and integrates the peaks of a chromatogram (a TIC, an extracted-ion
/// chromatogram, an MS/MS transition, a detector trace).
///
/// A peak is a local maximum standing more than `minimumSignalToNoise` times
/// the noise above its surroundings. It extends on each side until the signal
/// stops falling: at the baseline (within the noise) or at a valley shared
/// with a neighbour. Co-eluting peaks are split at their valley by a vertical
/// drop, and each keeps the baseline drawn under the whole group, so that the
/// two areas add up to the group's. Areas are integrated with the trapezoid
/// rule above the baseline.
class VNGEOCHEM_EXPORT TPeakFinder
{
public:
    /// The noise of a chromatogram: the median absolute difference between
    /// neighbouring points, scaled to a standard deviation (robust to peaks).
    static double estimateNoise(const QVector<double>& values);

    /// The peaks of `values` sampled at `times` (increasing), in time order.
    /// `noise` <= 0 means estimate it. Empty for mismatched or too short input.
    static QVector<TPeak> find(const QVector<double>& times, const QVector<double>& values, double noise = 0.0,
                               double minimumSignalToNoise = 5.0);
};
