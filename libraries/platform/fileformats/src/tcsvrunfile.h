#pragma once

#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>

class TAcquisitionRun;

/// Runs as plain text tables, as people export them from spreadsheets and data
/// systems. Two layouts are read (see FORMAT.md):
///
///   one row per scan:   time, mass:abundance mass:abundance ...
///                       (the pairs separated by spaces or by the field separator)
///   one row per point:  time, mass, abundance   (consecutive rows of one time are one scan)
///
/// Fields are separated by commas, semicolons or tabs; with semicolons or tabs a
/// decimal comma is accepted. Lines starting with '#' and blank lines are skipped;
/// a first line that is not numeric is a header, and a time column whose header
/// says seconds ("s", "sec") is converted to minutes. A malformed file is refused
/// with a message naming the line, and the run is left untouched.
class VNFILEFORMATS_EXPORT TCSVRunFile
{
public:
    static bool read(const QString& path, TAcquisitionRun* run);
    static bool readText(const QByteArray& text, TAcquisitionRun* run, const QString& source);
    /// Writes the one-row-per-scan layout, times in minutes, atomically.
    static bool write(const QString& path, const TAcquisitionRun& run);
};
