#pragma once

#include <memory>

#include "vndatabase_export.h"
#include "vntovidatabaseinterface.h"

#include <tdatabase.h>
#include <vnobjecttype.h>

#include <QDomElement>

namespace Sedra {
class TMapperFactory;
class TToviAliasMapper;
class TToviCompoundMapper;
class TToviEICMapper;
class TToviGraphMapper;
class TToviJointMapper;
class TToviOverlayMapper;
class TToviRatioMapper;
} // namespace Sedra

/// A reference database: the delivered one (Sedra::DatabaseToviDelivered),
/// the user's own (DatabaseToviUser) or the merged one (DatabaseToviMerged). All three live in one working folder, each in its own
/// header file, and are reached through VNToviDatabaseInterface. Every typed
/// operation goes through the storage mapper of its kind; a missing mapper is
/// an assertion and a neutral result, never a crash.
class VNDATABASE_EXPORT VNDatabaseTovi : public Sedra::TDatabase, public VNToviDatabaseInterface
{
    Q_OBJECT
public:
    /// The mapper factory of every reference database, made when the module
    /// is loaded; null after s_mapperFactoryClear().
    static Sedra::TMapperFactory* s_mapperFactory;
    static void s_mapperFactoryClear();

    /// Opens (or creates) the reference database of `type` in the folder named
    /// by "TOVIDBDIR", else under "VARNELDIR". Without application data the
    /// database has no folder and stays empty.
    explicit VNDatabaseTovi(const Sedra::DatabaseType& type);
    ~VNDatabaseTovi() override;

    // Storage base.
    const QString& getCurrentWorkingPath() const override;
    Sedra::DatabaseType getDatabaseType() const override;
    bool loadDatabase() override;
    void clearDB() override;
    void synchronizeSQLRoot() override;
    /// Refused with a warning in a read-only database; otherwise dispatched to
    /// the removal of the object's kind.
    bool removeObject(const VNObject2* obj, bool flag) override;
    /// A copy in this database of `obj`, an object of another reference
    /// database; an object already here (by its identity) is returned as it is.
    const VNObject2* objectCopy(const VNObject2* obj, bool& first, bool& second, int& count) override;
    bool setProject(const VNObject2Project* project) override;
    QStringList folderNameList() override;

    // Ratios.
    Sedra::TToviRatio* getRatio(const VNObject2* obj) override;
    const VNObject2* getRatio(const QString& uid) override;
    const VNObject2* getRatioByMasterName(const QString& masterName) override;
    QList<const VNObject2*> getRatiosByMasterName(const QString& masterName) override;
    QList<const VNObject2*> getRatiosByAliasesValue(const QString& value) override;
    Sedra::TToviRatio* createRatio(const QString& ratioId, const QString& masterName, const QString& displayFormula,
                                   const QString& formula, int displayOrder, const QString& studyType,
                                   const QString& analysisType, const QString& processType, const QString& familyName,
                                   const QString& expectedIons, const QString& literatureReference) override;
    bool ratioRemove(const VNObject2* obj, bool flag) override;
    /// A null ratio counts as removed.
    bool ratioRemove(Sedra::TToviRatio* ratio, bool flag) override;
    /// The ratio keys named by the axes of a graph document, one per axis.
    QStringList getRatioUids(const QDomDocument& graphDocument) override;

    // Joints.
    bool jointRemove(const VNObject2* obj) override;
    const VNObject2* getJoint(const QString& compoundKey, const QString& second) override;
    const VNObject2* getJoint(const QString& key) override;
    Sedra::TToviJoint* getJoint(const VNObject2* obj) override;
    Sedra::TToviJoint* createJoint(const QString& compoundKey, const QString& eicKey, const QString& name) override;

    // Ions.
    bool EICRemove(const VNObject2* obj) override;
    const VNObject2* getEIC(const QString& key) override;
    Sedra::TToviEIC* getEIC(const VNObject2* obj) override;
    /// The placeholder ion "none" (value: the text of -9999), made on first use.
    const Sedra::TToviEIC* getNoneEIC() override;
    const VNObject2* getEICByName(const QString& name) override;
    Sedra::TToviEIC* createEIC(const QString& name, const QString& value) override;

    // Compounds. The storage's project-compound look-ups stay reachable
    // beside the reference ones.
    using Sedra::TDatabase::getCompound;
    bool compoundRemove(const VNObject2* obj) override;
    const VNObject2* getCompound(const QString& key) override;
    /// The record holding this very object (not a look-up by key).
    Sedra::TToviCompound* getCompound(const VNObject2* obj) override;
    const VNObject2* getCompoundByName(const QString& name) override;
    Sedra::TToviCompound* getCompoundByToViKey(const QStringList& keys) override;
    Sedra::TToviCompound* createCompound(Sedra::TToviCompound* model, const QString& name) override;

    // Graphs and overlays.
    bool graphRemove(const VNObject2ToviGraph* graph) override;
    const VNObject2* getGraph(const QString& identifier) override;
    Sedra::TToviGraph* getGraph(const VNObject2* obj) override;
    Sedra::TToviGraph::GraphInformation getGraphInformation(const QString& identifier) override;
    const VNObject2* getOverlay(const VNObject2ToviGraph* graph, const QString& name) override;
    Sedra::TToviOverlay* getOverlay(const VNObject2* obj) override;
    QList<const VNObject2*> getOverlays(const VNObject2ToviGraph* graph) override;
    bool overlayRemove(const VNObject2ToviOverlay* overlay) override;
    const VNObject2* createGraph(QAbstractItemModel* model, const QDomDocument& document) override;
    const VNObject2* overlayCreate(const VNObject2ToviGraph* graph, QAbstractItemModel* model,
                                   const QDomDocument& document) override;
    const VNObject2* graphUpdate(const VNObject2* graph, QAbstractItemModel* model,
                                 const QDomDocument& document) override;
    const VNObject2* overlayUpdate(const VNObject2* overlay, const VNObject2ToviGraph* graph, QAbstractItemModel* model,
                                   const QDomDocument& document) override;
    bool graphOverlaySync() override;
    /// The drawing stored for a graph or an overlay: the first element inside
    /// its "TDataXml" element; null when the file or the element is missing.
    /// Each call reads the file again and returns a fresh copy that the caller
    /// may change, append to or import elsewhere. The copy belongs to a
    /// document that the module keeps for the calling thread until that
    /// thread ends (for the main thread, the end of the process), so the
    /// element and its ownerDocument() stay valid on that thread (to make
    /// nodes for it; a tree to keep goes into a document of the caller's, not
    /// into that one); its memory goes with its last handle. Like any DOM
    /// tree, use it on the thread that asked for it.
    static QDomElement getXmlData(const VNObject2* obj);

    // Lists.
    QList<Sedra::TToviAlias*> getAllAlias() override;
    QList<const VNObject2*> getAllIons() override;
    QList<const VNObject2*> getAllRatios() override;
    QList<const VNObject2*> getAllJoints() override;
    QList<Sedra::TToviCompound*> getAllToviCompounds() override;
    QList<const VNObject2*> getAllCompounds() override;
    QList<const VNObject2*> getAllGraphs() override;
    QList<const VNObject2*> getAllOverlays() override;

    // Properties.
    Sedra::TProperty getObjectProperties(const VNObject2* obj, const QString& name, bool* found) override;
    const QList<Sedra::TProperty>* getObjectProperties(const VNObject2* obj) const override;
    static QList<const VNObject2*> getObjectChildLst(const VNObject2* obj, const VNObjectType& type);
    /// Reference objects keep their names: always false.
    bool objectRename(const VNObject2* obj, const QString& newName);

    void close() override;

    // Aliases and vendors.
    QStringList getAliasVendors() override;
    Sedra::TToviAlias* getAlias(const VNObject2Tovi* obj, const QString& field, const QString& vendor) override;
    /// A new alias; the field "masterName" also renames the compound it names.
    Sedra::TToviAlias* aliasCreate(const VNObject2Tovi* obj, const QString& field, const QString& vendor,
                                   const QString& value) override;
    bool aliasDeleteByVendor(const QString& vendor) override;
    bool aliasDeleteSingleItem(const VNObject2Tovi* obj, const QString& field, const QString& vendor) override;
    /// Changes an alias's value only (no master-name change, unlike aliasCreate).
    bool aliasUpdate(const VNObject2Tovi* obj, const QString& field, const QString& vendor,
                     const QString& value) override;
    bool aliasUpdate(const Sedra::TToviAlias* alias, const QString& value) override;

    // The database itself.
    Sedra::THeaderConnector* getNewConnector() override;
    Sedra::THeaderConnector* getConnector() const override;
    bool removeAllObjects() override;
    bool importObjectsByType(VNToviDatabaseInterface* source, int type) override;
    /// Writes the header to its file.
    bool flush() override;
    /// Brings the merged database up to date with the delivered and user ones.
    bool updateMergedDB() override;
    /// The serial number of the open header; null without a connector.
    QString serialNumber() override;
    /// The serial number read from the header file through a connection of
    /// its own; null without a connector, empty when the file is missing or
    /// cannot be opened.
    QString readSerialNumber();
    QString getCurrentTempPath();

    static QString objectFolderPath(const VNObject2* obj);
    static QString objectFilePath(const VNObject2* obj);
    /// With `withDb`, the folder under the object's own database.
    QString objectFolderPath(const VNObject2* obj, bool withDb);
    /// With `withDb`, the file under this database.
    QString objectFilePath(const VNObject2* obj, bool withDb);

    QStringList scanDir(VNObjectType type, bool withExtension);
    QStringList scanDir(const QString& path, bool withExtension);
    QStringList scanDir(const QString& path, bool withExtension, const QString& suffix, bool withDirs);
    /// Copies the files of `source` (those of `suffixes` when not empty) into
    /// `target`. False when the source is missing, or when the target exists
    /// and `overwrite` is false.
    static bool copyDirectory(const QString& source, const QString& target, bool overwrite, const QStringList& suffixes,
                              bool recursive);

protected slots:
    void onAboutToDeleteObjects(QList<const VNObject2*>* objects) override;

private:
    void init();
    template <typename Mapper>
    const Mapper* typedMapper(int type, int line) const;
    bool graphWrite(Sedra::TToviGraph* graph, QAbstractItemModel* model, const QDomDocument& document);
    bool overlayWrite(const VNObject2ToviGraph* graph, Sedra::TToviOverlay* overlay, QAbstractItemModel* model,
                      const QDomDocument& document);
    const VNObject2* copyRatio(const VNObject2* obj);
    const VNObject2* copyCompound(const VNObject2* obj);
    const VNObject2* copyGraph(const VNObject2* obj);
    const VNObject2* copyOverlay(const VNObject2* obj, bool& first, bool& second, int& count);
    const VNObject2* copyJoint(const VNObject2* obj, bool& first, bool& second, int& count);
    const VNObject2* copyEIC(const VNObject2* obj);
    /// The compound named by `obj` (if it is one) takes `value` as its master name.
    void takeMasterName(const VNObject2Tovi* obj, const QString& value);

    std::unique_ptr<class VNDatabaseToviPrivate> d;
};
