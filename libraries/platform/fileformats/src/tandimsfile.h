#pragma once

#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>

class TAcquisitionRun;

/// ANDI/AIA mass spectrometry files (classic netCDF), the interchange format that GC-MS
/// data systems export: scan_acquisition_time (seconds), total_intensity,
/// scan_index, point_count, mass_values and intensity_values, with their
/// scale_factor attributes when present.
///
/// A file that cannot be read completely is refused with a message through the
/// application's logger, and the run is left untouched: there is no partial result.
class VNFILEFORMATS_EXPORT TAndiMSFile
{
public:
    /// Reads `path` into `run`.
    static bool read(const QString& path, TAcquisitionRun* run);
    /// Same from bytes in memory; `source` names them in messages.
    static bool readMemory(const QByteArray& bytes, TAcquisitionRun* run, const QString& source);
    /// Writes `run` as an ANDI file (classic netCDF, 64-bit offsets); the file
    /// is complete or absent. Extra channels and transitions are not part of the format.
    /// A failure goes to the application's logger, or to `error` (one line, without
    /// the file name) when the caller reports it itself.
    static bool write(const QString& path, const TAcquisitionRun& run, QString* error = nullptr);
};
