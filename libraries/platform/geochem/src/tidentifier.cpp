#include "tidentifier.h"

#include "vngeochemlogging.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

QString translate(const char* english, const char* french)
{
    return QCoreApplication::translate("TIdentifier", english, french);
}

// Peaks below this share of the largest are not taken for n-alkanes: on an
// m/z 57 trace they are branched alkanes, column bleed or noise.
constexpr double SeriesFloor = 0.005;

} // namespace

QVector<int> TIdentifier::referenceAlkanes(const QVector<TIdentificationTarget>& targets)
{
    QVector<int> carbons;
    for (const TIdentificationTarget& t : targets) {
        if (t.carbons > 0 && std::isfinite(t.retentionIndex) && std::fabs(t.retentionIndex - 100.0 * t.carbons) < 1e-6)
            carbons.append(t.carbons);
    }
    std::sort(carbons.begin(), carbons.end());
    carbons.erase(std::unique(carbons.begin(), carbons.end()), carbons.end());
    return carbons;
}

QVector<double> TIdentifier::alkaneMarkers(const QVector<TIdentificationTarget>& targets)
{
    // Pristane and phytane: in nearly every oil, and each alone between two
    // homologues on a non-polar column.
    QVector<double> markers;
    for (const TIdentificationTarget& t : targets) {
        if ((t.shortName == QLatin1String("Pr") || t.shortName == QLatin1String("Ph"))
            && std::isfinite(t.retentionIndex))
            markers.append(t.retentionIndex);
    }
    return markers;
}

QVector<int> TIdentifier::homologousSeries(const QVector<TPeak>& peaks, double tolerance)
{
    double largest = 0.0;
    for (const TPeak& p : peaks)
        largest = std::max(largest, p.height);
    QVector<int> candidates;
    for (int i = 0; i < peaks.size(); ++i) {
        if (peaks[i].height > 0.0 && peaks[i].height >= SeriesFloor * largest)
            candidates.append(i);
    }
    std::sort(candidates.begin(), candidates.end(), [&peaks](int a, int b) { return peaks[a].apex < peaks[b].apex; });

    QVector<int> best;
    double bestArea = 0.0;
    const int n = candidates.size();
    for (int a = 0; a + 1 < n; ++a) {
        // Chains start from every pair; a chain that another one contains
        // starting earlier cannot be longer, so the search stays small.
        for (int b = a + 1; b < n; ++b) {
            QVector<int> chain{candidates[a], candidates[b]};
            double step = peaks[candidates[b]].apex - peaks[candidates[a]].apex;
            if (!(step > 0.0))
                continue;
            double ratio = 1.0;
            double area = peaks[candidates[a]].area + peaks[candidates[b]].area;
            int last = b;
            for (;;) {
                const double expected = peaks[candidates[last]].apex + step * ratio;
                const double slack = tolerance * step * ratio;
                int chosen = -1;
                for (int k = last + 1; k < n; ++k) {
                    const double t = peaks[candidates[k]].apex;
                    if (t > expected + slack)
                        break;
                    if (t >= expected - slack
                        && (chosen < 0 || peaks[candidates[k]].area > peaks[candidates[chosen]].area))
                        chosen = k;
                }
                if (chosen < 0)
                    break;
                const double next = peaks[candidates[chosen]].apex - peaks[candidates[last]].apex;
                // Isothermal runs space the homologues geometrically: follow
                // the growth of the steps, within bounds.
                ratio = std::clamp(next / step, 0.9, 1.6);
                step = next;
                chain.append(candidates[chosen]);
                area += peaks[candidates[chosen]].area;
                last = chosen;
            }
            if (chain.size() > best.size() || (chain.size() == best.size() && area > bestArea)) {
                best = chain;
                bestArea = area;
            }
        }
    }
    return best.size() >= 2 ? best : QVector<int>();
}

QVector<TRetentionIndexScale::Alkane> TIdentifier::assignAlkanes(const QVector<TPeak>& peaks,
                                                                 const QVector<int>& series,
                                                                 const QVector<int>& referenceCarbons,
                                                                 const AlkaneEvidence& evidence)
{
    QVector<int> carbons = referenceCarbons;
    std::sort(carbons.begin(), carbons.end());
    carbons.erase(std::unique(carbons.begin(), carbons.end()), carbons.end());
    QVector<TRetentionIndexScale::Alkane> alkanes;
    if (series.isEmpty() || carbons.isEmpty())
        return alkanes;
    const int length = series.size();
    const int lightest = carbons.first();
    const int heaviest = carbons.last();
    // Every placement that puts at least two peaks on reference alkanes.
    int bestFirst = lightest;
    double bestScore = -1.0;
    int bestOverlap = -1;
    for (int first = lightest - length + 2; first <= heaviest - 1; ++first) {
        int overlap = 0;
        double score = 0.0;
        for (int k = 0; k < length; ++k) {
            if (!std::binary_search(carbons.begin(), carbons.end(), first + k))
                continue;
            ++overlap;
            if (evidence)
                score += evidence(series[k], first + k);
        }
        if (overlap < 2)
            continue;
        // The evidence first; then the placement that names most peaks, the
        // lightest alkane first.
        const bool better = score > bestScore
            || (score == bestScore
                && (overlap > bestOverlap
                    || (overlap == bestOverlap && std::abs(first - lightest) < std::abs(bestFirst - lightest))));
        if (better) {
            bestScore = score;
            bestOverlap = overlap;
            bestFirst = first;
        }
    }
    if (bestOverlap < 2)
        return alkanes;
    for (int k = 0; k < length; ++k) {
        const int c = bestFirst + k;
        if (std::binary_search(carbons.begin(), carbons.end(), c))
            alkanes.append(TRetentionIndexScale::Alkane{c, peaks[series[k]].apex});
    }
    qCDebug(vnGeochem) << "n-alkanes C" << alkanes.first().carbons << "to C" << alkanes.last().carbons << "on" << length
                       << "peaks, evidence" << bestScore;
    return alkanes;
}

TIdentifier::AlkaneEvidence TIdentifier::markerEvidence(const QVector<TPeak>& peaks,
                                                        const QVector<double>& markerIndices, double tolerance)
{
    const QVector<int> series = homologousSeries(peaks);
    if (series.size() < 2 || markerIndices.isEmpty())
        return AlkaneEvidence();
    // The step from each homologue to the next (the last one's to its
    // predecessor): where a marker's index puts it in time.
    QHash<int, double> stepAfter;
    for (int k = 0; k < series.size(); ++k) {
        const int other = k + 1 < series.size() ? series[k + 1] : series[k - 1];
        stepAfter.insert(series[k], std::fabs(peaks[other].apex - peaks[series[k]].apex));
    }
    const QSet<int> inSeries(series.begin(), series.end());
    return [peaks, markerIndices, tolerance, stepAfter, inSeries](int peak, int carbons) {
        const double step = stepAfter.value(peak);
        double score = 0.0;
        for (double index : markerIndices) {
            const double fraction = (index - 100.0 * carbons) / 100.0;
            if (!(fraction > 0.0 && fraction < 1.0) || !(step > 0.0))
                continue;
            const double expected = peaks[peak].apex + fraction * step;
            const double slack = tolerance / 100.0 * step;
            for (int i = 0; i < peaks.size(); ++i) {
                if (!inSeries.contains(i) && std::fabs(peaks[i].apex - expected) <= slack) {
                    score += 1.0;
                    break;
                }
            }
        }
        return score;
    };
}

TRetentionIndexScale TIdentifier::calibrate(const QVector<TPeak>& peaks, const QVector<int>& referenceCarbons,
                                            const AlkaneEvidence& evidence)
{
    return TRetentionIndexScale::calibrate(assignAlkanes(peaks, homologousSeries(peaks), referenceCarbons, evidence));
}

QString TIdentifier::missingReference(const TIdentificationTarget& target)
{
    if (!std::isfinite(target.retentionIndex))
        return translate("the reference gives no retention index", "la référence ne donne pas d'indice de rétention");
    if (!(target.ion > 0.0))
        return translate("the reference gives no ion to measure it on",
                         "la référence ne donne pas d'ion sur lequel le mesurer");
    return QString();
}

TCompoundMeasure TIdentifier::notFound(const TIdentificationTarget& target, const QString& reason)
{
    TCompoundMeasure measure;
    measure.compoundId = target.compoundId;
    measure.shortName = target.shortName;
    measure.ion = target.ion;
    measure.reason = reason;
    return measure;
}

TCompoundMeasure TIdentifier::identify(const TIdentificationTarget& target, const QVector<TPeak>& ionPeaks,
                                       const TRetentionIndexScale& scale, double window)
{
    const QString missing = missingReference(target);
    if (!missing.isEmpty())
        return notFound(target, missing);
    if (!scale.isValid())
        return notFound(target, scale.reason());
    double from = 0.0, to = 0.0;
    const double low = target.retentionIndex - window;
    const double high = target.retentionIndex + window;
    const double first = 100.0 * scale.alkanes().first().carbons;
    const double last = 100.0 * scale.alkanes().last().carbons;
    // A window that reaches past the alkanes found is cut at them; one that
    // lies wholly outside cannot be placed.
    if (high < first || low > last)
        return notFound(target,
                        translate("index %1 lies outside the n-alkanes found (C%2 to C%3)",
                                  "l'indice %1 est en dehors des n-alcanes trouvés (C%2 à C%3)")
                            .arg(target.retentionIndex)
                            .arg(scale.alkanes().first().carbons)
                            .arg(scale.alkanes().last().carbons));
    scale.timeOf(std::max(low, first), &from);
    scale.timeOf(std::min(high, last), &to);
    int chosen = -1;
    for (int i = 0; i < ionPeaks.size(); ++i) {
        const TPeak& p = ionPeaks[i];
        if (p.apex < from || p.apex > to || (chosen >= 0 && p.area <= ionPeaks[chosen].area))
            continue;
        // The calibration's n-alkanes are taken: pristane beside n-C17 is
        // the smaller peak of the two, and must not become the alkane.
        bool reserved = false;
        for (const auto& alkane : scale.alkanes()) {
            if (std::fabs(p.apex - alkane.time) <= std::max(p.width / 2.0, 1e-9)
                && 100.0 * alkane.carbons != target.retentionIndex)
                reserved = true;
        }
        if (!reserved)
            chosen = i;
    }
    if (chosen < 0)
        return notFound(
            target,
            translate("no peak of m/z %1 within indices %2 to %3", "aucun pic de m/z %1 entre les indices %2 et %3")
                .arg(target.ion)
                .arg(low)
                .arg(high));
    const TPeak& p = ionPeaks[chosen];
    TCompoundMeasure measure = notFound(target, QString());
    measure.found = true;
    measure.apex = p.apex;
    measure.area = p.area;
    measure.height = p.height;
    double index = 0.0;
    if (scale.indexAt(p.apex, &index))
        measure.retentionIndex = index;
    return measure;
}
