#pragma once

#include "vnchromatogram.h"
#include "vndatabase_export.h"

#include <databasetype.h>
#include <tcompoundmeasure.h>
#include <tdatabase.h>
#include <tidentifier.h>
#include <tpeakfinder.h>
#include <tretentionindexscale.h>
#include <tlocalization.h>
#include <vnobjecttype.h>

#include <QDomElement>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

#include <map> // acquisition data: spectra

class VNMapperFactory;
class VNObject2;
class VNObject2Dataset;
class VNObject2Project;
class VNObject2Variable;
class VNToviDatabaseInterface;
// Acquisition data (forward declarations)
class TAnalysisNoise;
class VNObject2Signal;
namespace Plavo {
class TData;
}
// end of acquisition data

/// The project database: the storage library's database bound to a project
/// folder. It keeps the folder's layout in shape, guards the synchronisation
/// of the header with the folder (read-only project, module running), and
/// gives the typed operations that reach the storage through one row mapper
/// per kind of object.
class VNDATABASE_EXPORT VNDatabase : public Sedra::TDatabase
{
    Q_OBJECT
public:
    /// The mapper factory shared by every project database. Made when the
    /// module is loaded; null after s_mapperFactoryClear().
    static VNMapperFactory* s_mapperFactory;
    /// Deletes the shared mapper factory (if any) and forgets it. Only the
    /// application calls it, once no project database remains.
    static void s_mapperFactoryClear();

    /// An empty database of `type`, in memory only: no folder is touched and
    /// no header is started.
    explicit VNDatabase(const Sedra::DatabaseType& type);
    /// Opens, or creates, the project database kept in the folder `path`.
    /// A non-null `serial` is written to the header. When the header cannot
    /// be bound (a damaged or foreign file), the object is left without
    /// mappers and every typed operation then answers its neutral result.
    VNDatabase(const QString& path, const QString& serial);
    ~VNDatabase() override;

    bool loadDatabase() override;
    void clearDB() override;
    /// Refused, with a message, for a read-only project or while a module
    /// uses the project now open; otherwise the storage's synchronisation.
    void synchronizeSQLRoot() override;
    /// Writes where `object` lies to "localization.kml" in the object's own
    /// folder: the project folder for the project, an analysis' folder, and
    /// for other kinds a sub-folder named after the object in its kind's
    /// folder. Refused (false, nothing written) for a null or foreign object,
    /// an invalid position or a read-only project; a failed write is reported.
    bool setObjectGeolocalization(const VNObject2* object, const TLocalization& localization) override;
    /// The position last written for `object`; an unset one when there is none.
    TLocalization getObjectGeolocalization(const VNObject2* object) const;

    /// Empties the database, then binds it to `project`.
    bool setProject(const VNObject2Project* project) override;
    /// The sub-folders that every project folder holds.
    QStringList folderNameList() override;
    virtual bool datasetObjectSave(const VNObject2Dataset* dataset, bool flush);
    virtual bool variableObjectSave(const VNObject2Variable* variable, bool flush);

    /// The names in the folder of the objects of `type`; empty for a kind
    /// without a folder.
    QStringList scanDir(VNObjectType type, bool withSuffix) const;
    /// The names of the non-empty files in `path`. A missing folder is part of
    /// an older project layout: it is created, and said so.
    QStringList scanDir(const QString& path, bool withSuffix) const;
    /// The non-empty files of `path` whose last suffix is `suffix` (any when
    /// empty), or, when `files` is false, its sub-folders. A missing folder is
    /// created silently.
    QStringList scanDir(const QString& path, bool withSuffix, const QString& suffix, bool files) const;

    /// Starts the external SQL browser from the application's folder.
    bool openSQLBase() const;
    /// The document element of the XML file `path` (a copy that keeps an
    /// owner document, see TXMLMethod::detachedCopy); a null element when the
    /// file cannot be read, with `*ok` telling which.
    static QDomElement getModelViewer(const QString& path, bool* ok);
    /// The name of the variable stored for the pair of reference keys, or a
    /// null string when there is none.
    QString getReferenceName(const QString& key1, const QString& key2);

    // Acquisition data
    using Sedra::TDatabase::saveTCM;
    /// The acquisition file of an analysis (a signal's analysis), shared;
    /// the scan count or -1.
    static int analysisTCM(const VNObject2Analysis* analysis, TCMFile** tcm);
    static bool analysisData(const VNObject2Analysis* analysis, Sedra::TAnalysisData** data);
    /// The multichannel data of an analysis (its whole file loaded, read
    /// lazily), owned by the caller; null for anything else or without a
    /// readable file.
    static VNMCData* getMCData(const VNObject2* object);
    /// Releases the file content behind data made by getMCData; the data
    /// object itself stays the caller's.
    static void releaseMCData(VNMCData* data);
    /// Makes the analysis `name` holding `data`: its folder, its acquisition
    /// file (signal "TIC") and "acquisition.xml". Refused silently on a
    /// read-only project or an empty name; refused when the analysis or its
    /// folder already exists. A refusal leaves nothing behind.
    bool saveNewMCData(VNMCData* data, QString& name);
    /// Makes the analysis `name` from an instrument export (ANDI netCDF,
    /// ChemStation, JCAMP-DX, a text table) or an acquisition file, through
    /// saveNewMCData: one analysis per run the file gives, `name` followed by
    /// the run's suffix ("NAME" and "NAME-SIM" for a ChemStation folder), all
    /// of them or none. A refused file is reported and leaves the project as it was.
    bool analysisImport(const QString& fileName, QString& name);
    /// A new signal of `analysis` made from `data` (in a file of its own);
    /// `signalName` may be changed to a free name.
    bool signalCreateTCM(const VNMCData* data, const VNObject2Analysis* analysis, QString& signalName);
    /// Stores the modulation period of an analysis and rebuilds its TIC signal.
    bool modulationChanged(const VNObject2Analysis* analysis, float modulation);
    /// The analysis' noise record, estimated from its TIC unless it already
    /// holds a valid estimate of that kind.
    static const TAnalysisNoise* analysisNoise(const VNObject2Analysis* analysis);
    bool signalExists(const QString& analysisName, const QString& signalName) const;
    bool signalExists(const VNObject2Signal* signal) const;
    QList<float> signalIonList(const VNObject2Signal* signal);
    const VNObject2Signal* getSignalByHash(const QString& name, unsigned int hash) const;
    /// True only for an analysis (not a signal) whose run is multichannel.
    bool isMulticanal(const VNObject2* object);
    /// The spectrum of one scan (labelled with its number) or the average of
    /// a range of scans (labelled "first time - last time"), owned by the
    /// caller; the number of masses, or -1.
    static int returnSpectrumExtraction(const VNObject2* object, int firstScan, int lastScan, QString& label,
                                        std::map<unsigned long, unsigned long>*& spectrum);
    /// The same as a plotted series, with mass labels (parent->daughter for
    /// MS/MS runs) and colours when `withLabels`; owned by the caller.
    static int returnSpectrumExtraction(const VNObject2* object, Plavo::TData** data, bool withLabels, int firstScan,
                                        int lastScan);

protected:
    QString geolocalizationFolder(const VNObject2* object) const;

    /// Columns of numbers written as an acquisition file by the import layer.
    bool saveTCM(const QString& fileName, QList<double*> columns, int count, float* values, int valueCount,
                 VNHeader* header) override;

public:
    // end of acquisition data

    // Peaks and identification
    /// The times (minutes) and values of one chromatogram of `analysis`;
    /// false with a translated reason when the analysis has no such
    /// chromatogram or its file cannot be read.
    static bool analysisChromatogram(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram,
                                     QVector<double>* times, QVector<double>* values, QString* error = nullptr);
    /// Finds and integrates the peaks of one chromatogram of `analysis` and
    /// stores them as the analysis' peak detection of that chromatogram,
    /// replacing what an earlier detection stored. Signal-to-noise is taken
    /// against the analysis' noise record for its TIC (it is measured there),
    /// against the chromatogram's own noise otherwise. Empty with `error`
    /// when the chromatogram cannot be read; the peaks with `error` when they
    /// cannot be stored (a read-only project). Without `flush` the peaks are
    /// written with the header's next flush (several detections, one write).
    QList<TPeak> analysisDetectPeaks(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram,
                                     QString* error = nullptr, bool flush = true);
    /// The peaks stored for that chromatogram of `analysis` (empty when none
    /// were detected).
    QList<TPeak> analysisPeaks(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram) const;
    /// Whether peaks were ever stored for that chromatogram (a detection may find none).
    bool analysisHasPeaks(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram) const;
    /// The chromatogram an analysis is calibrated on: its flame detector
    /// channel when it has one and no scans, else m/z 57.
    static VNChromatogram alkaneChromatogram(const VNObject2Analysis* analysis);
    /// The retention-index scale of `analysis`, from the n-alkanes (carbon
    /// numbers) that the reference knows; the peaks it is drawn from are
    /// stored. Where no spectrum names the alkanes (a flame detector, MS/MS),
    /// the compounds at `markerIndices` (TIdentifier::alkaneMarkers) do. An invalid
    /// scale says why.
    TRetentionIndexScale analysisRetentionIndexScale(const VNObject2Analysis* analysis,
                                                     const QVector<int>& alkaneCarbons,
                                                     const QVector<double>& markerIndices = QVector<double>());
    /// The compounds of a reference database as identification needs them,
    /// in the reference's order.
    static QList<TIdentificationTarget> identificationTargets(VNToviDatabaseInterface* reference);
    /// One measure per target: calibrates `analysis` on the targets' n-alkanes,
    /// detects (and stores) the peaks of every ion the targets are measured
    /// on, and takes each target's largest peak within `window` index units.
    TCompoundMeasures analysisIdentify(const VNObject2Analysis* analysis, const QList<TIdentificationTarget>& targets,
                                       double window = TIdentifier::DefaultWindow);

private:
    void connectDeletion();
    /// Takes an analysis just made by an import away again, with its folder.
    void forgetNewAnalysis(const QString& name);

    std::unique_ptr<class VNDatabasePrivate> d;
};
