#pragma once

#include "vnfileformats_export.h"

#include <QString>
#include <QVector>

struct TImportedRun;

class TAcquisitionRun;

/// The folder of one analysis in a project: `<analyses>/<name>/` holding
/// `<name>.tcm`, "acquisition.xml" and, with detector channels, "detectors.bin".
///
/// A folder is made whole or not at all: everything is written into a hidden
/// sibling folder first, checked by reading it back, and renamed into place
/// in one step. A malformed import, a full disk or a name already taken
/// leaves the analyses folder exactly as it was.
class VNFILEFORMATS_EXPORT TAnalysisFolder
{
public:
    /// The folder and the acquisition file of analysis `name` under `analysesFolder`.
    static QString folderPath(const QString& analysesFolder, const QString& name);
    static QString tcmPath(const QString& analysesFolder, const QString& name);

    /// Every run an instrument file or data folder holds, through the reader
    /// registry (TRunReaderRegistry). `error` is one line naming the file.
    static bool readImports(const QString& path, QVector<TImportedRun>* runs, QString* error = nullptr);

    /// Every run of `path`, as `readImports`, but a refused file is reported
    /// through the logger; `runs` is changed only on success.
    static bool readImportsReported(const QString& path, QVector<TImportedRun>* runs);

    /// The main run of `path` (the first `readImports` gives). A refused file is
    /// reported through the logger; `run` is changed only on success.
    static bool readImport(const QString& path, TAcquisitionRun* run);

    /// Writes `run` as the analysis `name` (the run keeps its own name inside
    /// the file). False, with `error` in English, when the name is empty or
    /// unsafe, the analysis folder already exists, the run is inconsistent or
    /// a write fails; nothing is left behind then.
    static bool write(const TAcquisitionRun& run, const QString& analysesFolder, const QString& name,
                      QString* error = nullptr);

    /// `readImports` then `write` of each run as `name` + its suffix, all or none.
    static bool importFile(const QString& source, const QString& analysesFolder, const QString& name,
                           QString* error = nullptr);
};
