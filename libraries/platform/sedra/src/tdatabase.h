#pragma once

#include "databasetype.h"
#include "tproperty.h"
#include "vnsedra_export.h"

#include <vnobjecttype.h>

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class VNObject2;
class VNObject2Project;
class VNObject2Variable;
class VNObject2Well;
class VNObject2Dataset;
class VNIon;
class TLocalization;
// Acquisition data (forward declarations)
class TCMFile;
class TDataCore;
class VNHeader;
class VNMCData;
class VNObject2Analysis;
// end of acquisition data

namespace Sedra {

class TAbstractMapper;
struct TParameterValueRow;
class TCompound;
class TDatabaseObject;
class THeaderConnector;
class THeaderDatabase;
class TMapperFactory;

/// What the last synchronisation of the header with the folders found.
struct VNSEDRA_EXPORT TSyncReport
{
    /// Names of the analyses found on disk and registered.
    QStringList registered;
    /// Names of the records whose folder is missing; they are kept.
    QStringList missing;
    /// Folders that could not be registered (their name is taken by another record).
    QStringList skipped;
};

/// A database: a type, a working folder, a header database (one SQLite file
/// in that folder) holding its records, and one mapper per kind of object,
/// made by a shared mapper factory that the database never owns.
///
/// Read-only: setReadOnly(true) before the header is bound (or at any time:
/// the file is then reopened read-only). A folder or header file that cannot
/// be written makes the database read-only by itself. A read-only database
/// refuses every change and nothing in its folder changes on disk.
class VNSEDRA_EXPORT TDatabase : public QObject
{
    Q_OBJECT
public:
    explicit TDatabase(const DatabaseType& type, QObject* parent = nullptr);
    ~TDatabase() override;

    virtual DatabaseType getDatabaseType() const { return m_type; }
    DatabaseType type() const { return m_type; }

    /// The folder that holds the header file and the objects' folders.
    void setWorkingPath(const QString& path);
    virtual const QString& getCurrentWorkingPath() const { return m_workingPath; }
    /// The name of the folder that holds databases of this class ("tovi"), for
    /// callers that build working paths.
    void setParentDirectory(const QString& name) { m_parentDirectory = name; }
    const QString& parentDirectory() const { return m_parentDirectory; }

    /// Makes this database's mappers with `factory`, which stays owned by the
    /// caller. Null removes every mapper. Reads the header's records back when
    /// the header is already started.
    void setMapperFactory(TMapperFactory* factory);
    TMapperFactory* mapperFactory() const { return m_factory; }

    THeaderDatabase* headerDb() const { return m_header; }
    /// The header's connector, or null before the header is bound.
    virtual THeaderConnector* getConnector() const;
    /// A new connector for the header file, owned by the caller. Reference
    /// databases give their own kind.
    virtual THeaderConnector* getNewConnector();

    /// Forgets every record in memory (pending changes are written first when
    /// the header is writable). The file keeps them.
    virtual void clearDB();
    /// Reads the header's records back for the kinds this database has a
    /// mapper for; records already in memory stay as they are. False when the
    /// header is not bound.
    virtual bool loadDatabase();
    /// Binds the database to `project` (not owned) and reads its records back
    /// when the header is started. False for a null project. Databases that
    /// must reset their state for a new project do it in their override.
    virtual bool setProject(const VNObject2Project* project);
    /// The sub-folders a database of this kind keeps in its working folder;
    /// the storage itself keeps none.
    virtual QStringList folderNameList();
    const VNObject2Project* project() const { return m_project; }

    bool isReadOnly() const { return m_readOnly; }
    void setReadOnly(bool readOnly);

    /// Holds back dataset saves: the next `count` saves stay in memory, or
    /// every save while `disable` is true. (0, false) restores normal saving.
    void forceDisableDatasetSave(int count, bool disable);
    /// True when a dataset save is to be held back now (takes one of the
    /// counted saves).
    bool consumeDatasetSaveHold();
    bool isDatasetSaveDisabled() const { return m_datasetSaveDisabled || m_datasetSaveHold > 0; }

    /// Reconciles the header with the project folders: every analysis folder
    /// on disk without a record is registered; records whose folder vanished
    /// are reported (warning) and kept. Does nothing on a read-only database
    /// or without a bound header. Asked for before the database has its
    /// mappers, it waits for them (setMapperFactory). See lastSynchronization().
    virtual void synchronizeSQLRoot();
    const TSyncReport& lastSynchronization() const { return m_sync; }

    /// Records where an object lies. Storage alone keeps no geolocation:
    /// the base refuses (false); a project database writes it next to the
    /// object.
    virtual bool setObjectGeolocalization(const VNObject2* object, const TLocalization& localization);

    /// The mapper of a kind, or null when this database has none.
    const TAbstractMapper* getMapper(VNObjectType type) const;
    TAbstractMapper* mapper(int type) const { return m_mappers.value(type, nullptr); }
    QList<TAbstractMapper*> mappers() const { return m_mapperList; }

    /// The variable stored for a pair of reference keys, or null.
    const VNObject2Variable* getReference(const QString& key1, const QString& key2) const;
    /// The record holding `object`, or null when it is not one of ours.
    TDatabaseObject* record(const VNObject2* object) const;
    /// The objects of one kind, in creation order.
    QList<const VNObject2*> getObjectLst(int type) const;
    /// One property of an object; `*found` tells whether it exists.
    TProperty getObjectProperties(const VNObject2* object, const QString& name, bool* found) const;
    /// All properties of an object, or null when it has no record with properties.
    const QList<TProperty>* getObjectProperties(const VNObject2* object) const;
    /// Sets one property and writes it when `flush` is true.
    bool setObjectProperty(const VNObject2* object, const QString& name, const QString& value, bool flush);
    /// Removes an object, the records that depend on it, and their rows
    /// (at once when `flush` is true). Listeners of aboutToDeleteObjects hear
    /// of it first and may add objects to the list.
    virtual bool removeObject(const VNObject2* object, bool flush);
    /// A copy of `object` made in this database through the mapper of its
    /// kind; the counters are handed through to nested copies. Null when the
    /// kind has no mapper here or the copy is refused.
    virtual const VNObject2* objectCopy(const VNObject2* object, bool& first, bool& second, int& count);

    /// The folder of an object under the working path (created when `create`
    /// is true and the database is writable); empty for an unknown object.
    QString objectFolderPath(const VNObject2* object, bool create) const;
    /// The folder that is an object's alone: the one its record names, the
    /// working folder for the bound project, else a folder named after it
    /// inside its kind's folder (wells, datasets... share their kind's folder).
    /// Empty for an object this database does not hold. Not created here.
    QString objectOwnFolder(const VNObject2* object) const;

    // Project objects
    /// The folder for a project's miscellaneous files ("Various" in the
    /// working folder; made by whoever writes there); empty without one.
    virtual QString getVariousDir() const;
    /// Removes a well, what depends on it and its own folder, together: false,
    /// with nothing changed, for a read-only database, a well it does not
    /// hold or a folder that cannot be removed.
    virtual bool wellDelete(const VNObject2Well* well, bool flush);
    /// The stored compound that `compound` describes (same CAS number, or
    /// same name without one), or null.
    virtual const VNObject2* getCompound(const TCompound* compound);
    /// The compound of kind `type` (the project compounds' kind) called `name`, or null.
    virtual const VNObject2* getCompound(int type, const QString& name);
    /// A new compound from its description: null (and said) when the
    /// database is read-only or already holds that compound.
    virtual const VNObject2* compoundCreate(const TCompound* compound);
    virtual const VNObject2* compoundCreate(const QString& name);
    /// The slice of kind `type` whose key is `key` ("<analysis>/<slice>"), or null.
    virtual const VNObject2* getSlice(int type, const QString& key);
    /// Looks for what this database holds under `object`'s identity (same
    /// kind and name) and removes it with what depends on it: `existed` tells
    /// whether there was one, `removed` whether it went, and `count` grows by
    /// the number of objects removed. True when nothing of that identity is
    /// left.
    virtual bool checkIfExistsAndRemove(const VNObject2* object, bool& existed, bool& removed, int& count);
    /// Removes a dataset with its variables; false, nothing changed, when refused.
    virtual bool datasetDelete(const VNObject2Dataset* dataset);
    /// Removes a variable; false, nothing changed, when refused.
    virtual bool variableDelete(const VNObject2Variable* variable, bool flush);
    /// Removes the variable of dataset `dataset` standing for the pair of
    /// reference keys; false when there is none or the removal is refused.
    virtual bool variableDelete(const QString& dataset, const QString& reference1, const QString& reference2);
    /// Renames dataset `oldName` of project `project` (the bound project;
    /// an empty name means it too) to `newName`; its variables follow. False,
    /// and said, for a taken name, another project or a read-only database.
    virtual bool datasetRename(const QString& project, const QString& oldName, const QString& newName);
    /// A file or folder name made from an object name that stays inside its
    /// folder: separators, "..", quotes, control characters and names that
    /// some systems reserve are replaced. Never empty.
    static QString safeFileName(const QString& name);

    // Parameter values of analyses (tdatabaseparameters.cpp)
    /// Replaces the parameter values stored for `analysis` by `values`, in one
    /// transaction, in their order. False, with nothing changed, for a
    /// read-only database (said), an analysis it does not hold or a failed write.
    bool parameterValuesSave(const VNObject2Analysis* analysis, const QList<TParameterValueRow>& values);
    /// The parameter values stored for `analysis`, in the order they were
    /// saved; empty when none are, or for an analysis it does not hold.
    QList<TParameterValueRow> parameterValues(const VNObject2Analysis* analysis) const;
    // end of parameter values

    // Acquisition data
    /// The acquisition file of an analysis (for a signal, of its analysis),
    /// shared by every reader of that file: the scan count, or -1 with `*tcm`
    /// null when the analysis has no readable file. Opening it also tells the
    /// analysis its acquisition system, transitions and channel kind.
    static int analysisTCM(const VNObject2Analysis* analysis, TCMFile** tcm);
    /// The path of the acquisition file `analysis` reads (a signal reads its
    /// analysis' file); empty without a database.
    static QString analysisTCMPath(const VNObject2Analysis* analysis);
    /// A new description of the analysis' measurements, owned by the caller;
    /// false (and null) when it has neither a readable file nor a description.
    static bool analysisData(const VNObject2Analysis* analysis, struct TAnalysisData** data);
    /// Writes `data` as the acquisition file `fileName` holding the signal
    /// `signalName` (of `analysis`, or of a new analysis when null). Spectra
    /// of the instrument run the data carry are written whole; otherwise every
    /// channel with an ion becomes a point of the spectra. Atomic; false when
    /// the database is read-only, the data have no retention times or TIC,
    /// or the file cannot be written.
    bool saveTCM(const QString& fileName, const QString& signalName, const VNMCData* data,
                 const VNObject2Analysis* analysis);
    /// Writes measured columns (`columns[0]` the times, then `count` values
    /// per column; `values` the mass of each value column) as an acquisition
    /// file. Writing columns belongs to an import layer: the storage alone
    /// refuses (false).
    virtual bool saveTCM(const QString& fileName, QList<double*> columns, int count, float* values, int valueCount,
                         VNHeader* header);
    /// Writes measured columns as the acquisition file `fileName` holding the
    /// signal `signalName` of `analysis`: `columns[0]` the retention times
    /// (minutes), then one column of `count` abundances per mass of `masses`
    /// (`massCount` of them, read as unit-wide ion windows); the TIC is their
    /// sum. False for inconsistent columns or when saveTCM refuses.
    virtual bool saveTCM(const QString& fileName, const QList<float*>& columns, int count, float* masses, int massCount,
                         const QString& signalName, const VNObject2Analysis* analysis);
    /// The signals every analysis gets: its TIC signal (see signalTICCreate).
    virtual bool analysisAutoExtract(const VNObject2Analysis* analysis);
    /// One new signal per ion: the analysis' extracted-ion chromatogram of
    /// that window, named after the ion ("m/z 191"). False, and said, when
    /// the database is read-only, the analysis is not one of its own or has no
    /// readable file; true when every ion got its signal.
    virtual bool analysisExtractIonList(const VNObject2Analysis* analysis, const QList<VNIon*>& ions);
    /// Records a new signal of the analysis called `analysisName`; false when
    /// the analysis is unknown, the name is taken or the database is read-only.
    bool signalCreate(const QString& analysisName, const QString& signalName);
    /// The file of a new signal in the analysis' folder. `signalName` is
    /// changed to a free name ("name 2", ...) when the analysis already has a
    /// signal or a file of that name, or when it would be the analysis' own file.
    virtual QString signalCreateDestFileName(const VNObject2Analysis* analysis, QString& signalName);
    /// The analysis called `name`, or null.
    const VNObject2Analysis* getAnalysis(const QString& name) const;
    /// A new curve of the analysis' retention times and TIC, owned by the
    /// caller; false (and null) without a readable file. The file's loaded
    /// content is left as it was found.
    static bool returnTIC(const VNObject2Analysis* analysis, TDataCore** tic);
    /// Makes sure the analysis has its "TIC" signal and gives the signal the
    /// analysis' stored modulation; false when `db` may not change or the
    /// analysis is not one of its own.
    static bool signalTICCreate(TDatabase* db, const VNObject2Analysis* analysis);
    // end of acquisition data

protected:
    /// Renames a well (and its own folder, when it has one) together: false,
    /// and said, for a taken name or a read-only database.
    virtual bool wellRename(const VNObject2Well* well, const QString& name);
    virtual bool wellRename(const QString& oldName, const QString& newName);
    /// The usual removal of an object: its records, those that depend on it,
    /// and its own folder, all or nothing.
    virtual bool objectDeleteStd(const VNObject2* object, bool flush);

signals:
    /// Emitted before objects go; slots may add objects to the list.
    void aboutToDeleteObjects(QList<const VNObject2*>* objects);

protected slots:
    virtual void onAboutToDeleteObjects(QList<const VNObject2*>* objects);

private:
    void deleteMappers();
    /// Adds to `objects` every record that belongs to one of them, at any
    /// depth, and drops repeats and nulls.
    void addDependants(QList<const VNObject2*>& objects) const;

    DatabaseType m_type;
    QString m_workingPath;
    QString m_parentDirectory;
    TMapperFactory* m_factory = nullptr;
    THeaderDatabase* m_header;
    QHash<int, TAbstractMapper*> m_mappers;
    QList<TAbstractMapper*> m_mapperList;
    const VNObject2Project* m_project = nullptr;
    bool m_readOnly = false;
    bool m_datasetSaveDisabled = false;
    int m_datasetSaveHold = 0;
    TSyncReport m_sync;
    /// A synchronisation asked for before the mappers were made (a database
    /// opened from its folder synchronises before it gets its factory); it
    /// runs as soon as they are.
    bool m_syncPending = false;
};

} // namespace Sedra
