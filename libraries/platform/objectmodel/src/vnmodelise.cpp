#include "vnmodelise.h"

#include "tdatacore.h"
#include "vnobject2analysis.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {
double median(std::vector<double>& values)
{
    const size_t middle = values.size() / 2;
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(middle), values.end());
    return values[middle];
}
} // namespace

VNModelise::VNModelise(const TDataCore* tic, const VNObject2Analysis* analysis)
{
    if (tic)
        m_noise = estimate(tic->yValues().constData(), tic->count());
    if (analysis)
        analysis->noise() = m_noise;
}

TAnalysisNoise VNModelise::estimate(const float* values, int count)
{
    TAnalysisNoise noise;
    if (!values || count < 3)
        return noise;
    std::vector<double> finite;
    finite.reserve(size_t(count));
    for (int i = 0; i < count; ++i) {
        if (std::isfinite(values[i]))
            finite.push_back(double(values[i]));
    }
    if (finite.size() < 3)
        return noise;
    std::vector<double> steps(finite.size() - 1);
    for (size_t i = 1; i < finite.size(); ++i)
        steps[i - 1] = finite[i] - finite[i - 1];
    const double centre = median(steps);
    for (double& step : steps)
        step = std::fabs(step - centre);
    // 1.4826 turns a median absolute deviation into a standard deviation for
    // Gaussian noise; the difference of two samples has sqrt(2) times their spread.
    const double spread = 1.4826 * median(steps) / std::sqrt(2.0);

    std::vector<double> sorted = finite;
    const size_t low = sorted.size() / 10;
    std::nth_element(sorted.begin(), sorted.begin() + std::ptrdiff_t(low), sorted.end());

    noise.kind = TAnalysisNoise::KindTicModel;
    noise.valid = std::isfinite(spread);
    noise.level = spread;
    noise.baseline = sorted[low];
    noise.pointCount = int(finite.size());
    return noise;
}
