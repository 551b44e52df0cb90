#pragma once

#include "vnfileformats_export.h"

#include "tacquisitionrun.h"

#include <QPair>
#include <QString>
#include <QVector>

/// Reproducible synthetic GC-MS runs of a crude oil: the n-alkanes C10 to C40
/// with their alkyl fragment series (m/z 43, 57, 71, 85 ...) and molecular
/// ions, pristane and phytane, the hopanes (m/z 191) and the regular steranes
/// (m/z 217), on a noisy baseline. The same options and seed always give the
/// same run, bit for bit.
class VNFILEFORMATS_EXPORT TSyntheticRun
{
public:
    /// One compound as the generator places it: the truth that peak finding
    /// and identification are checked against. Each ion is a Gaussian of
    /// standard deviation `sigma` (minutes) centred on `time`.
    struct PlacedPeak
    {
        QString name; ///< the reference short name ("nC17", "Pr", "Ts")
        double retentionIndex = 0.0;
        double time = 0.0;   ///< minutes
        double sigma = 0.0;  ///< minutes
        double amount = 0.0; ///< apex abundance of the base peak
        int carbons = 0;
        int parent = 0;                      ///< nominal molecular mass (the MS/MS parent)
        QVector<QPair<double, double>> ions; ///< (m/z, % of the base peak)

        /// Area (abundance x minutes) of the peak on the chromatogram of the
        /// nominal mass `mass`, as extracted over +/- 0.5.
        double ionArea(double mass) const;
        /// Area on the run's total-ion chromatogram.
        double ticArea() const;
        /// Area on the flame detector channel of a Multichannel run.
        double flameArea() const;
        /// Area on the MS/MS transition parent -> daughter of an MSMS run (0 when it is not there).
        double transitionArea(int parentMass, int daughter) const;
    };

    enum Kind {
        FullScan,    ///< one mass spectrum per scan
        MSMS,        ///< parent -> daughter transitions (acquisition system 768)
        Multichannel ///< full scan plus detector and ion channels
    };

    struct Options
    {
        Kind kind = FullScan;
        quint32 seed = 1;
        int scanCount = 3600;
        double startTime = 5.0;  ///< minutes
        double endTime = 65.0;   ///< minutes
        int pointsPerScan = 120; ///< full scan: points per spectrum, noise included
        double noise = 50.0;     ///< mean baseline abundance
        QString name = QStringLiteral("Synthetic oil");
    };

    /// Makes the run in memory.
    static TAcquisitionRun generate(const Options& options);

    /// Writes `run` as `<folder>/<run.name>.tcm` with "acquisition.xml" beside
    /// it; false (with `error`) when either cannot be written.
    static bool write(const TAcquisitionRun& run, const QString& folder, QString* tcmPath = nullptr,
                      QString* error = nullptr);

    /// Retention time (minutes) of a compound of the given retention index
    /// under the options' temperature programme (C10 = 1000 ... C40 = 4000).
    static double retentionTime(const Options& options, double retentionIndex);

    /// Every compound `generate` places with these options, in elution order.
    static QVector<PlacedPeak> placedPeaks(const Options& options);
    /// The compound of that short name as `generate` places it; a default
    /// (nameless) peak when it places none.
    static PlacedPeak placedPeak(const Options& options, const QString& name);
};
