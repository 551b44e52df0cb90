#pragma once

#include "vnfileformats_export.h"

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <map>
#include <memory>

class TAcquisitionRun;
class TCMFilePrivate;

/// The acquisition file of an analysis (".tcm"), read through a memory map.
///
/// Opening reads and checks only the header and the small name tables; the
/// measurements are mapped by `loadContent`, which also chooses the window of
/// scans that the spectrum operations may read, and released by
/// `deleteContent`. Nothing is parsed in full: every offset and count taken
/// from the file is checked against the file size before it is followed, and
/// a file that fails a check is refused (false, null, -1) rather than read.
/// The layout is described in FORMAT.md beside this library.
///
/// Spectra are `std::map`s from mass x 100 to the abundance, rounded to the
/// nearest unit. Mass windows [low, high] are in mass units and inclusive,
/// compared on the keys round(low x 100) .. round(high x 100).
class VNFILEFORMATS_EXPORT TCMFile
{
public:
    using Spectrum = std::map<unsigned long, unsigned long>;

    TCMFile();
    /// Opens `path` at once; check `isOpen()`.
    explicit TCMFile(const QString& path);
    ~TCMFile();
    TCMFile(const TCMFile&) = delete;
    TCMFile& operator=(const TCMFile&) = delete;

    /// Opens `path` and checks its header; false (with `errorString()`) for a
    /// missing, truncated, corrupt or foreign file. Closes what was open.
    bool open(const QString& path);
    void close();
    bool isOpen() const;
    QString fileName() const;
    /// Why the last open or load failed (English, for logs and tests).
    QString errorString() const;

    // --- What the header tells (valid once open) ------------------------------
    /// The number of scans, -1 when no file is open.
    int nbScans() const;
    quint64 pointCount() const;
    quint32 acquisitionSystem() const;
    quint16 formatVersion() const;
    QString signalName() const;
    QString runName() const;
    QString runDate() const;
    QStringList channelNames() const;
    QVector<QPair<float, float>> transitions() const;
    /// The lowest and highest mass of the file, in mass units (0 without points).
    double lowMass() const;
    double highMass() const;
    /// True when [low, high] meets the mass range of the file.
    bool mzRangeExist(float low, float high) const;

    // --- Loading --------------------------------------------------------------
    /// Maps the measurements and makes the scans from `firstScan` to `lastScan`
    /// whose retention time lies in [fromTime, toTime] (minutes) readable; -1
    /// for a time leaves that side unbounded. False when the file is not open,
    /// the scan range is outside the file or empty once the times are applied,
    /// or the part of the scan index it covers is inconsistent.
    bool loadContent(float fromTime, float toTime, unsigned long firstScan, unsigned long lastScan);
    void deleteContent();
    bool isLoaded() const;
    /// The loaded window of scans (-1 when nothing is loaded).
    long firstLoadedScan() const;
    long lastLoadedScan() const;

    // --- Reading (only while loaded) ------------------------------------------
    /// Retention times (minutes) and TIC of every scan of the file; null when
    /// nothing is loaded. They point into the map: no copy is made.
    const double* rtime() const;
    const double* tic() const;
    /// Values of the extra channel `index` for every scan; null when out of range.
    const double* channel(int index) const;

    /// Raw points of a loaded scan: the count, or -1 outside the loaded window.
    int scanPoints(unsigned long scan, const quint32** keys, const float** abundances) const;

    /// Clears `spectrum` and fills it with the points of `scan`. Returns the
    /// number of entries, or -1 (spectrum left empty) for a scan outside the
    /// loaded window or a scan whose masses are out of order.
    int allIonsAtScan(Spectrum* spectrum, unsigned long scan) const;

    /// Clears `spectrum` and fills it with the mean spectrum of the scans
    /// `first` to `last` (every mass summed over the range, divided by the
    /// number of scans). Returns the number of entries or -1.
    int averageAtScanRange(Spectrum* spectrum, unsigned long first, unsigned long last) const;

    /// Extracted-ion chromatogram over the whole file: `abundances[i]` = sum of
    /// the abundances of scan i whose mass lies in [low, high]. `abundances`
    /// must hold nbScans() values. Needs every scan loaded; returns the number
    /// of scans written, or -1.
    int ionAtFullRange(float* abundances, float low, float high) const;
    /// Same over the scans `first` to `last` (loaded); writes last - first + 1 values.
    int ionAtScanRange(float* abundances, float low, float high, unsigned long first, unsigned long last) const;

    /// Checks everything, point by point: scan index, ascending masses, times,
    /// finite values. Slow (reads the whole file); for tools and tests.
    bool verify();

    /// Reads the whole file into `run`. `run` is changed only on success.
    bool toRun(TAcquisitionRun* run);

    /// Writes `run` to `path` atomically; false (with `error`) when the run is
    /// inconsistent or the file cannot be written.
    static bool save(const QString& path, const TAcquisitionRun& run, QString* error = nullptr);

    /// The eight magic bytes that start every file, for quick sniffing.
    static QByteArray magic();

private:
    std::unique_ptr<TCMFilePrivate> d;
};
