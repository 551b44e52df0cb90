#include "tpeakfinder.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// A light smoothing for finding apices and boundaries only: areas and heights
// are measured on the values as recorded.
QVector<double> smoothed(const QVector<double>& values)
{
    const int n = values.size();
    QVector<double> out(n);
    for (int i = 0; i < n; ++i) {
        double sum = 0.0;
        int count = 0;
        for (int j = std::max(0, i - 2); j <= std::min(n - 1, i + 2); ++j) {
            sum += values[j];
            ++count;
        }
        out[i] = sum / count;
    }
    return out;
}

struct Range
{
    int start;
    int apex;
    int end;
};

// From the apex outwards while the signal keeps falling; bumps smaller than
// `tolerance` are walked over. Stops at a valley (the signal rises again by
// more than the tolerance) or once the signal has stayed flat for `flat`
// points (the baseline is reached).
int walk(const QVector<double>& s, int apex, int step, double tolerance, int flat)
{
    int lowest = apex;
    int sinceLower = 0;
    for (int j = apex + step; j >= 0 && j < s.size(); j += step) {
        if (s[j] > s[lowest] + tolerance)
            break;
        if (s[j] < s[lowest] - tolerance / 3.0) {
            lowest = j;
            sinceLower = 0;
        } else if (s[j] < s[lowest]) {
            lowest = j;
            ++sinceLower;
        } else {
            ++sinceLower;
        }
        if (sinceLower > flat)
            break;
    }
    return lowest;
}

// The level a peak rises from on one side: the lowest point before the
// signal climbs above the apex (a higher neighbour) or has stayed above that
// point for twice as long as it took to get there (the baseline's noise).
double footLevel(const QVector<double>& s, int apex, int step)
{
    double lowest = s[apex];
    int lowestAt = 0;
    for (int k = 1;; ++k) {
        const int j = apex + k * step;
        if (j < 0 || j >= s.size() || s[j] > s[apex])
            break;
        if (s[j] < lowest) {
            lowest = s[j];
            lowestAt = k;
        } else if (k > 2 * lowestAt + 5) {
            break;
        }
    }
    return lowest;
}

double baselineAt(double t, double t0, double y0, double t1, double y1)
{
    return t1 == t0 ? y0 : y0 + (y1 - y0) * (t - t0) / (t1 - t0);
}

} // namespace

double TPeakFinder::estimateNoise(const QVector<double>& values)
{
    if (values.size() < 3)
        return 0.0;
    std::vector<double> differences;
    differences.reserve(size_t(values.size() - 1));
    for (int i = 1; i < values.size(); ++i)
        differences.push_back(std::fabs(values[i] - values[i - 1]));
    auto middle = differences.begin() + differences.size() / 2;
    std::nth_element(differences.begin(), middle, differences.end());
    // For Gaussian noise, the median absolute difference of neighbours is
    // 0.6745 x sqrt(2) standard deviations.
    if (*middle > 0.0)
        return *middle / (0.6745 * std::sqrt(2.0));
    // A mostly flat trace (an ion the centroider keeps only now and then):
    // its noise is in the scattered points, so the median is taken over the
    // steps that are not flat.
    std::vector<double> steps;
    for (double d : differences) {
        if (d > 0.0)
            steps.push_back(d);
    }
    if (steps.empty())
        return 0.0;
    auto half = steps.begin() + steps.size() / 2;
    std::nth_element(steps.begin(), half, steps.end());
    return *half / (0.6745 * std::sqrt(2.0));
}

QVector<TPeak> TPeakFinder::find(const QVector<double>& times, const QVector<double>& values, double noise,
                                 double minimumSignalToNoise)
{
    QVector<TPeak> peaks;
    const int n = values.size();
    if (n < 5 || times.size() != n)
        return peaks;
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(values[i]) || !std::isfinite(times[i]) || (i > 0 && !(times[i] > times[i - 1])))
            return peaks;
    }
    if (noise <= 0.0)
        noise = estimateNoise(values);
    double largest = 0.0;
    for (double v : values)
        largest = std::max(largest, std::fabs(v));
    // A noiseless trace still needs a scale below which changes do not count.
    const double sigma = std::max(noise, largest * 1e-9);
    const double tolerance = 3.0 * sigma;
    const QVector<double> s = smoothed(values);

    // Candidate apices, highest first, each walked out to its boundaries.
    // A peak's baseline never lies below the trace's lowest point, so a
    // maximum that does not stand the required height above it is noise and
    // is not walked at all: most maxima of a long trace are.
    const double lowest = *std::min_element(s.begin(), s.end());
    const double required = minimumSignalToNoise * sigma;
    std::vector<int> apices;
    for (int i = 1; i + 1 < n; ++i) {
        if (s[i] >= s[i - 1] && s[i] > s[i + 1] && !(s[i] - lowest < required))
            apices.push_back(i);
    }
    std::sort(apices.begin(), apices.end(), [&s](int a, int b) { return s[a] > s[b]; });
    std::vector<Range> ranges;
    std::vector<char> taken(size_t(n), 0);
    for (int apex : apices) {
        if (taken[size_t(apex)])
            continue;
        // Flat for as long as the peak took to rise to half its height, thrice.
        // The height counts from the higher of its two feet: a detector's
        // standing current is no part of it.
        const double half = (s[apex] + std::max(footLevel(s, apex, -1), footLevel(s, apex, +1))) / 2.0;
        int halfRise = 1;
        while (apex - halfRise > 0 && s[apex - halfRise] > half)
            ++halfRise;
        const int flat = std::max(5, 3 * halfRise);
        Range range{walk(s, apex, -1, tolerance, flat), apex, walk(s, apex, +1, tolerance, flat)};
        // A range stops where a higher peak's range begins.
        for (int j = range.apex - 1; j >= range.start; --j) {
            if (taken[size_t(j)]) {
                range.start = j + 1;
                break;
            }
        }
        for (int j = range.apex + 1; j <= range.end; ++j) {
            if (taken[size_t(j)]) {
                range.end = j - 1;
                break;
            }
        }
        if (range.end - range.start < 2)
            continue;
        const double base = baselineAt(times[apex], times[range.start], s[range.start], times[range.end], s[range.end]);
        if (s[apex] - base < required)
            continue;
        for (int j = range.start + 1; j < range.end; ++j)
            taken[size_t(j)] = 1;
        ranges.push_back(range);
    }
    std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.apex < b.apex; });

    // Neighbours that touch share one baseline under the group, and are split
    // by a vertical drop at their valley.
    size_t first = 0;
    while (first < ranges.size()) {
        size_t last = first;
        while (last + 1 < ranges.size() && ranges[last + 1].start <= ranges[last].end + 1)
            ++last;
        const int gs = ranges[first].start;
        const int ge = ranges[last].end;
        const double t0 = times[gs];
        const double t1 = times[ge];
        const double y0 = s[gs];
        const double y1 = s[ge];
        for (size_t k = first; k <= last; ++k) {
            const Range& r = ranges[k];
            TPeak peak;
            peak.start = times[r.start];
            peak.end = times[r.end];
            peak.baselineStart = baselineAt(peak.start, t0, y0, t1, y1);
            peak.baselineEnd = baselineAt(peak.end, t0, y0, t1, y1);
            double area = 0.0;
            for (int j = r.start; j < r.end; ++j) {
                const double a = values[j] - baselineAt(times[j], t0, y0, t1, y1);
                const double b = values[j + 1] - baselineAt(times[j + 1], t0, y0, t1, y1);
                area += (a + b) / 2.0 * (times[j + 1] - times[j]);
            }
            peak.area = area;
            // The apex between sampled points: the vertex of the parabola
            // through the highest point and its neighbours.
            int top = r.apex;
            for (int j = std::max(r.start, r.apex - 2); j <= std::min(r.end, r.apex + 2); ++j) {
                if (values[j] > values[top])
                    top = j;
            }
            double apexTime = times[top];
            double apexValue = values[top];
            if (top > 0 && top + 1 < n) {
                const double ym = values[top - 1], y = values[top], yp = values[top + 1];
                const double denominator = ym - 2.0 * y + yp;
                if (denominator < 0.0) {
                    const double offset = 0.5 * (ym - yp) / denominator;
                    if (std::fabs(offset) <= 1.0) {
                        const double dt = offset < 0 ? times[top] - times[top - 1] : times[top + 1] - times[top];
                        apexTime = times[top] + offset * dt;
                        apexValue = y - 0.25 * (ym - yp) * offset;
                    }
                }
            }
            peak.apex = apexTime;
            peak.height = apexValue - baselineAt(apexTime, t0, y0, t1, y1);
            // Width at half height, between the interpolated crossings.
            const double half = peak.height / 2.0;
            const auto above = [&](int j) { return values[j] - baselineAt(times[j], t0, y0, t1, y1); };
            double left = peak.start;
            for (int j = top; j > r.start; --j) {
                if (above(j - 1) <= half) {
                    const double a = above(j - 1), b = above(j);
                    left = times[j - 1] + (half - a) / (b - a) * (times[j] - times[j - 1]);
                    break;
                }
            }
            double right = peak.end;
            for (int j = top; j < r.end; ++j) {
                if (above(j + 1) <= half) {
                    const double a = above(j), b = above(j + 1);
                    right = times[j] + (a - half) / (a - b) * (times[j + 1] - times[j]);
                    break;
                }
            }
            peak.width = right - left;
            // A bump that does not rise above its own baseline is no peak.
            if (!(peak.height > 0.0) || !(peak.area > 0.0) || !std::isfinite(peak.width))
                continue;
            peak.signalToNoise = noise > 0.0 ? peak.height / noise : 0.0;
            peaks.append(peak);
        }
        first = last + 1;
    }
    return peaks;
}
