#pragma once

#include "vnfileformats_export.h"

#include <QString>

class TAcquisitionRun;

/// The folder of one analysis in a project: `<analyses>/<name>/` holding
/// `<name>.tcm` and "acquisition.xml".
///
/// A folder is made whole or not at all: everything is written into a hidden
/// sibling folder first, checked by reading it back, and renamed into place
/// in one step. A malformed import, a full disk or a name already taken
/// leaves the analyses folder exactly as it was.
class VNFILEFORMATS_EXPORT TAnalysisFolder
{
public:
    /// The kinds of files that `readImport` recognises.
    enum ImportFormat { UnknownFormat, AndiFormat, TextFormat, AcquisitionFormat };

    /// The folder and the acquisition file of analysis `name` under `analysesFolder`.
    static QString folderPath(const QString& analysesFolder, const QString& name);
    static QString tcmPath(const QString& analysesFolder, const QString& name);

    /// The format of `path`, from its first bytes (netCDF, our own acquisition
    /// file) or else text.
    static ImportFormat sniff(const QString& path);

    /// Reads an instrument export (ANDI netCDF or a text table) or another
    /// acquisition file into `run`. A refused file is reported through the
    /// logger by its reader; `run` is changed only on success.
    static bool readImport(const QString& path, TAcquisitionRun* run);

    /// Writes `run` as the analysis `name` (the run keeps its own name inside
    /// the file). False, with `error` in English, when the name is empty or
    /// unsafe, the analysis folder already exists, the run is inconsistent or
    /// a write fails; nothing is left behind then.
    static bool write(const TAcquisitionRun& run, const QString& analysesFolder, const QString& name,
                      QString* error = nullptr);

    /// `readImport` then `write`.
    static bool importFile(const QString& source, const QString& analysesFolder, const QString& name,
                           QString* error = nullptr);
};
