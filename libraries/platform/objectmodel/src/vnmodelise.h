#pragma once

#include "tanalysisnoise.h"
#include "vnobjectmodel_export.h"

class TDataCore;
class VNObject2Analysis;

/// The noise model of a chromatogram. Peaks are few and narrow against the
/// run, so the noise shows in the scan-to-scan differences of the signal: its
/// level is the robust spread (median absolute deviation) of those
/// differences, which a slowly drifting baseline and the peaks hardly move.
/// The baseline is a low quantile of the signal.
class VNOBJECTMODEL_EXPORT VNModelise
{
public:
    /// Estimates the noise of `tic` and, when `analysis` is given, stores the
    /// result as the analysis' noise record (kind 51). Neither is owned.
    VNModelise(const TDataCore* tic, const VNObject2Analysis* analysis);

    const TAnalysisNoise& noise() const { return m_noise; }

    /// The estimate for `count` values; invalid (kind 0) under three finite
    /// values.
    static TAnalysisNoise estimate(const float* values, int count);

private:
    TAnalysisNoise m_noise;
};
