#pragma once

#include "tcompoundmeasure.h"
#include "tpeakfinder.h"
#include "tretentionindexscale.h"
#include "vngeochem_export.h"

#include <QString>
#include <QVector>

#include <functional>

/// A reference compound as identification needs it: where it elutes (its
/// retention index) and on which ion it is measured.
struct VNGEOCHEM_EXPORT TIdentificationTarget
{
    QString compoundId;
    QString shortName;
    double retentionIndex = qQNaN(); ///< NaN when the reference has none
    double ion = 0.0;                ///< m/z of its chromatogram; 0 when the reference names none
    int carbons = 0;                 ///< 0 when unknown
};

/// Tells which peaks of an analysis are which compounds, on plain peaks and
/// a retention-index scale (the project database fetches the chromatograms
/// and the reference compounds).
class VNGEOCHEM_EXPORT TIdentifier
{
public:
    /// The default half-width of the identification window, in index units.
    static constexpr double DefaultWindow = 15.0;

    /// How strongly the peak `peak` looks like the n-alkane of `carbons`
    /// carbons (e.g. its molecular ion in the spectrum at the apex); 0 when
    /// nothing tells.
    using AlkaneEvidence = std::function<double(int peak, int carbons)>;

    /// The carbon numbers of the n-alkanes among `targets`: the compounds
    /// whose retention index is 100 x their carbon number, as the index
    /// defines it.
    static QVector<int> referenceAlkanes(const QVector<TIdentificationTarget>& targets);
    /// The retention indices of the targets that mark their place in the
    /// n-alkane series on any detector: pristane ("Pr") and phytane ("Ph").
    static QVector<double> alkaneMarkers(const QVector<TIdentificationTarget>& targets);

    /// The peaks (indices into `peaks`, in time order) that form the longest
    /// series of regularly spaced, dominant peaks: the homologous series of
    /// the n-alkanes on an m/z 57 or flame-detector chromatogram. Each step
    /// may differ from the previous one by `tolerance` (a fraction); among
    /// several peaks near the expected time the largest is taken.
    static QVector<int> homologousSeries(const QVector<TPeak>& peaks, double tolerance = 0.12);

    /// Names the peaks of a homologous series after the reference n-alkanes
    /// (their carbon numbers, ascending and consecutive where the reference
    /// is): the offset that `evidence` supports best, the lightest reference
    /// alkane first when nothing tells them apart.
    static QVector<TRetentionIndexScale::Alkane> assignAlkanes(const QVector<TPeak>& peaks, const QVector<int>& series,
                                                               const QVector<int>& referenceCarbons,
                                                               const AlkaneEvidence& evidence = AlkaneEvidence());

    /// Evidence for traces whose spectra cannot name the alkanes (a flame
    /// detector): compounds that elute at known places between two n-alkanes,
    /// such as pristane just after n-C17 and phytane just after n-C18. An
    /// alkane scores one for each marker index between it and the next
    /// homologue at which a peak outside the series stands, within
    /// `tolerance` index units.
    static AlkaneEvidence markerEvidence(const QVector<TPeak>& peaks, const QVector<double>& markerIndices,
                                         double tolerance = 3.5);

    /// The scale of an analysis from the peaks of its n-alkane chromatogram.
    static TRetentionIndexScale calibrate(const QVector<TPeak>& peaks, const QVector<int>& referenceCarbons,
                                          const AlkaneEvidence& evidence = AlkaneEvidence());

    /// The measure of `target`: the largest peak (by area) of its ion's
    /// chromatogram whose apex lies within `window` index units of its
    /// retention index; otherwise not found, with the reason. A peak at one
    /// of the scale's n-alkanes (within half its width) is that alkane's and
    /// no other compound's.
    static TCompoundMeasure identify(const TIdentificationTarget& target, const QVector<TPeak>& ionPeaks,
                                     const TRetentionIndexScale& scale, double window = DefaultWindow);

    /// The measure of a target that cannot be looked for at all (no index,
    /// no ion, a chromatogram that cannot be read): not found, with `reason`.
    static TCompoundMeasure notFound(const TIdentificationTarget& target, const QString& reason);

    /// Why a target cannot be looked for from its reference data alone;
    /// empty when it can.
    static QString missingReference(const TIdentificationTarget& target);
};
