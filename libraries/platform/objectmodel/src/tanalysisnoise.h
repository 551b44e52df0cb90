#pragma once

#include "vnobjectmodel_export.h"

/// The noise record of an analysis: how its baseline noise was estimated
/// (the kind), whether the estimate holds, and the estimate itself.
class VNOBJECTMODEL_EXPORT TAnalysisNoise
{
public:
    /// Estimated from the analysis' total ion current by VNModelise.
    static constexpr int KindTicModel = 51;

    int kind = 0;
    bool valid = false;
    /// Standard deviation of the noise, in abundance units.
    double level = 0.0;
    /// The abundance of the baseline (a low quantile of the signal).
    double baseline = 0.0;
    /// The number of points the estimate was made from.
    int pointCount = 0;

    /// Back to "not estimated".
    void clear() { *this = TAnalysisNoise(); }
    /// Level over baseline-free signal: the smallest peak height (3 x level)
    /// that stands out of the noise.
    double detectionLimit() const { return valid ? 3.0 * level : -9999.0; }
};
