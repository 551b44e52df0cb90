#pragma once

#include "vndatabase_export.h"

#include <QList>
#include <QString>

class TAcquisitionRun;
class VNHeader;
class VNMCData;
class VNObject2;

namespace Sedra {
class TDatabase;
}

/// The import face of a project database: what is needed to bring measured
/// data in as new analyses. The project manager hands its current database out
/// as a plain storage database, so the import layer is made over one (any
/// Sedra::TDatabase, not owned) rather than being a database class of its
/// own: no platform library has to know this module.
class VNDATABASE_EXPORT VNDatabaseImport
{
public:
    explicit VNDatabaseImport(Sedra::TDatabase* database);
    /// Over the project manager's current database (null when no project is open).
    static VNDatabaseImport current();

    Sedra::TDatabase* database() const { return m_db; }

    /// Records the analysis `name`, whose folder is "<analyses>/<name>"
    /// under the working path (the name made safe for a folder). True when the
    /// analysis is recorded afterwards, also when it already was.
    bool analysisObjectSave(const QString& name);
    /// Makes `object` part of `target`: true at once when it already is,
    /// otherwise through a copy made by `target`.
    bool objectPush(Sedra::TDatabase* target, const VNObject2* object);

    /// Writes measured columns as an acquisition file, atomically.
    /// `columns[0]` holds `count` retention times (minutes, or seconds when
    /// the header says so), each further column `count` abundances. `values`
    /// gives the mass of each abundance column in order (`valueCount` of
    /// them; a mass of 0, or a column beyond `valueCount`, is a detector
    /// channel). Mass columns become the points of the spectra; the TIC is the
    /// sum of the mass columns, or the first column when there are none.
    /// False for missing, short or non-finite columns, times that go
    /// backwards, or a failed write.
    static bool CSV2TCM(const QString& fileName, QList<double*> columns, int count, float* values, int valueCount,
                        VNHeader* header);

    /// New multichannel data, owned by the caller, made from an instrument
    /// export (ANDI netCDF or a text table) or an acquisition file; they carry
    /// the whole run, spectra included. Null when the file is refused (the
    /// reader says why through the logger).
    static VNMCData* readFile(const QString& path);
    /// The same from a run in memory: times, TIC, channels (a channel named
    /// "m/z <mass>" gets that ion) and the run itself.
    static VNMCData* fromRun(const TAcquisitionRun& run);

private:
    Sedra::TDatabase* m_db;
};
