#pragma once

#include "vnfileformats_export.h"

#include <QByteArray>
#include <QDateTime>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/// A detector trace recorded beside (or instead of) the mass scans, on its own
/// time base: an FID, a UV or an analog channel. Times in minutes, ascending.
struct VNFILEFORMATS_EXPORT TDetectorChannel
{
    QString name;   ///< e.g. "FID1A", unique within a run
    QString unit;   ///< e.g. "pA", may be empty
    QString signal; ///< the instrument's own label, e.g. "Front Signal"
    QVector<double> times;
    QVector<double> values;

    bool operator==(const TDetectorChannel& other) const
    {
        return name == other.name && unit == other.unit && signal == other.signal && times == other.times
            && values == other.values;
    }
};

/// One acquisition held in memory: what the synthetic generator makes, what the
/// instrument readers (netCDF, CSV) give, and what TCMFile writes and reads.
///
/// Spectra are stored column-wise for the whole run: scan i owns the points
/// [scanOffsets[i], scanOffsets[i + 1]) of `masses` (mass x 100, strictly
/// ascending inside a scan) and `abundances`. Times are in minutes.
class VNFILEFORMATS_EXPORT TAcquisitionRun
{
public:
    /// Known acquisition systems. MS/MS runs hold one point per transition.
    enum AcquisitionSystem : quint32 {
        SystemUnknown = 0,
        SystemChromatogram = 1, ///< detector channels only, no spectra
        SystemFullScan = 256,
        SystemSIM = 512,
        SystemMSMS = 768
    };

    QString name;
    QDateTime date;
    quint32 acquisitionSystem = SystemUnknown;
    QString signalName = QStringLiteral("TIC");

    QVector<double> rtimes;       ///< minutes, one per scan, non-decreasing
    QVector<double> tic;          ///< total ion current, one per scan
    QVector<quint64> scanOffsets; ///< scanCount() + 1 entries, first is 0
    QVector<quint32> masses;      ///< mass x 100
    QVector<float> abundances;

    QStringList channelNames;          ///< extra signals (detectors, ion channels)
    QVector<QVector<double>> channels; ///< one array of scanCount() values per name

    /// MS/MS transitions (parent, daughter), in the order of their keys in every scan.
    QVector<QPair<float, float>> transitions;

    /// Detector channels with their own times (kept in the analysis folder beside the .tcm).
    QVector<TDetectorChannel> detectors;

    /// Files an instrument export carries beside its data (e.g. the data
    /// system's peak table), kept as they are in the analysis folder: (name, content).
    QVector<QPair<QString, QByteArray>> files;

    TAcquisitionRun();

    int scanCount() const { return rtimes.size(); }
    qint64 pointCount() const { return masses.size(); }

    /// Empties everything but keeps the signal name.
    void clear();

    /// Appends a scan. `keys` must be strictly ascending; the TIC is the sum
    /// of the abundances. Channel values must be added separately.
    void appendScan(double time, const quint32* keys, const float* values, int count);

    int pointsAtScan(int scan) const;
    const quint32* massesAtScan(int scan) const;
    const float* abundancesAtScan(int scan) const;

    /// Lowest and highest mass key over the run (0, 0 when there is no point).
    quint32 minKey() const;
    quint32 maxKey() const;

    /// Checks the invariants above; on failure `why` says which one (English).
    bool isConsistent(QString* why = nullptr) const;

    bool operator==(const TAcquisitionRun& other) const;
    bool operator!=(const TAcquisitionRun& other) const { return !(*this == other); }
};
