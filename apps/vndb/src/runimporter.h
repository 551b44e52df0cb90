#pragma once

#include <QObject>
#include <QString>

class TAcquisitionRun;

/// Reads an instrument export into an acquisition in memory. The format is
/// told by the content, not the name: classic netCDF (ANDI/AIA), an
/// acquisition file of our own, or else a text table (CSV).
class RunImporter : public QObject
{
    Q_OBJECT
public:
    enum Format { Unknown, Andi, Acquisition, Csv };

    /// The format of the file at `path` from its first bytes; Unknown when it
    /// cannot be read or is a netCDF-4 (HDF5) file, which ANDI never is.
    static Format sniff(const QString& path);
    static QString formatName(Format format);

    /// Reads `path` into `run`; false with a translated reason, `run` untouched.
    /// The readers' own message (line number, variable) is left in the logger.
    static bool read(const QString& path, TAcquisitionRun* run, Format* format, QString* error);
};
