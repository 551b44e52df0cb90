#pragma once

#include "trunreader.h"
#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// Agilent ChemStation data: mass scans (".ms", "GC / MS Data File" and
/// "MSD Spectral File" headers), detector channels (".ch" versions 179 and 130)
/// and the "NAME.D" folders holding them. Layouts in FORMAT.md. Every count and
/// offset is checked against the file size; a damaged file is refused whole.
class VNFILEFORMATS_EXPORT TChemStationFile
{
public:
    /// Whether bytes start like an MSD file / a channel file.
    static bool isMassSpectra(const QByteArray& head);
    static bool isChannel(const QByteArray& head);
    /// The mass-scan files of a data folder: data.ms (or MSD1.MS) and dataSim.ms, empty when absent.
    static QString scanFile(const QString& folder);
    static QString selectedIonFile(const QString& folder);
    static QStringList channelFiles(const QString& folder);

    /// Mass scans: times in minutes, m/z = stored / 20, the file's own per-scan TIC.
    static bool readMassSpectra(const QByteArray& bytes, const QString& source, TAcquisitionRun* run, QString* error);
    /// A detector channel named `name`.
    static bool readChannel(const QByteArray& bytes, const QString& source, const QString& name,
                            TDetectorChannel* channel, QString* error);
    /// A whole data folder: the scans with every channel, and "-SIM" for dataSim.ms.
    static bool readFolder(const QString& path, QVector<TImportedRun>* runs, QString* error);

    /// Writers of the same layouts (GC / MS header; channel version 179), for
    /// tests, samples and benchmarks. Abundances are packed with the format's
    /// 14-bit mantissa, so values above 16383 lose their low bits.
    static QByteArray writeMassSpectra(const TAcquisitionRun& run);
    static QByteArray writeChannel(const TDetectorChannel& channel);
    /// A folder "NAME.D" with data.ms (when `scans` has scans), dataSim.ms (when
    /// `selectedIons` has scans) and one "<name>.ch" per channel.
    static bool writeFolder(const QString& path, const TAcquisitionRun& scans, const TAcquisitionRun& selectedIons,
                            const QVector<TDetectorChannel>& channels, QString* error = nullptr);
};

class VNFILEFORMATS_EXPORT TChemStationMassSpectraReader : public TRunReader
{
public:
    QString formatName() const override;
    bool recognises(const QByteArray& head, const QString& fileName) const override;
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                   QString* error) const override;
};

class VNFILEFORMATS_EXPORT TChemStationChannelReader : public TRunReader
{
public:
    QString formatName() const override;
    bool recognises(const QByteArray& head, const QString& fileName) const override;
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                   QString* error) const override;
};

class VNFILEFORMATS_EXPORT TChemStationFolderReader : public TRunReader
{
public:
    QString formatName() const override;
    bool recognises(const QByteArray& head, const QString& fileName) const override;
    bool recognisesFolder(const QString& path) const override;
    bool read(const QString& path, QVector<TImportedRun>* runs, QString* error) const override;
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                   QString* error) const override;
};
