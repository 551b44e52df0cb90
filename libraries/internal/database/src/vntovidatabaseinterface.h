#pragma once

#include "vndatabase_export.h"

#include <databasetype.h>
#include <tproperty.h>
#include <ttovigraph.h>

#include <QDomDocument>
#include <QList>
#include <QString>
#include <QStringList>

class QAbstractItemModel;
class VNObject2;
class VNObject2Tovi;
class VNObject2ToviGraph;
class VNObject2ToviOverlay;

namespace Sedra {
class THeaderConnector;
class TToviAlias;
class TToviCompound;
class TToviEIC;
class TToviJoint;
class TToviOverlay;
class TToviRatio;
} // namespace Sedra

/// What the rest of the application may ask of a reference database (the
/// delivered one, the user's own, the merged one). Lists of these pointers
/// are how the merged-database logic and the selector name the databases.
///
/// The order of the operations is part of the binary interface shared with
/// the other modules: add new ones at the end only.
class VNDATABASE_EXPORT VNToviDatabaseInterface
{
public:
    virtual ~VNToviDatabaseInterface();

    virtual bool loadDatabase() = 0;

    // Ratios (shown to users as parameters).
    virtual Sedra::TToviRatio* getRatio(const VNObject2* obj) = 0;
    virtual const VNObject2* getRatio(const QString& uid) = 0;
    virtual const VNObject2* getRatioByMasterName(const QString& masterName) = 0;
    virtual QList<const VNObject2*> getRatiosByMasterName(const QString& masterName) = 0;
    virtual QList<const VNObject2*> getRatiosByAliasesValue(const QString& value) = 0;
    virtual Sedra::TToviRatio* createRatio(const QString& ratioId, const QString& masterName,
                                           const QString& displayFormula, const QString& formula, int displayOrder,
                                           const QString& studyType, const QString& analysisType,
                                           const QString& processType, const QString& familyName,
                                           const QString& expectedIons, const QString& literatureReference)
        = 0;
    virtual bool ratioRemove(const VNObject2* obj, bool flag) = 0;
    virtual bool ratioRemove(Sedra::TToviRatio* ratio, bool flag) = 0;

    // Joints.
    virtual bool jointRemove(const VNObject2* obj) = 0;
    virtual const VNObject2* getJoint(const QString& compoundKey, const QString& second) = 0;
    virtual const VNObject2* getJoint(const QString& key) = 0;
    virtual Sedra::TToviJoint* getJoint(const VNObject2* obj) = 0;
    virtual Sedra::TToviJoint* createJoint(const QString& compoundKey, const QString& eicKey, const QString& name) = 0;

    // Ions.
    virtual bool EICRemove(const VNObject2* obj) = 0;
    virtual const VNObject2* getEIC(const QString& key) = 0;
    virtual Sedra::TToviEIC* getEIC(const VNObject2* obj) = 0;
    virtual const Sedra::TToviEIC* getNoneEIC() = 0;
    virtual const VNObject2* getEICByName(const QString& name) = 0;
    virtual Sedra::TToviEIC* createEIC(const QString& name, const QString& value) = 0;

    // Compounds.
    virtual bool compoundRemove(const VNObject2* obj) = 0;
    virtual const VNObject2* getCompound(const QString& key) = 0;
    virtual Sedra::TToviCompound* getCompound(const VNObject2* obj) = 0;
    virtual const VNObject2* getCompoundByName(const QString& name) = 0;
    virtual Sedra::TToviCompound* getCompoundByToViKey(const QStringList& keys) = 0;
    virtual Sedra::TToviCompound* createCompound(Sedra::TToviCompound* model, const QString& name) = 0;

    // Graphs and overlays.
    virtual bool graphRemove(const VNObject2ToviGraph* graph) = 0;
    virtual const VNObject2* getGraph(const QString& identifier) = 0;
    virtual Sedra::TToviGraph* getGraph(const VNObject2* obj) = 0;
    virtual Sedra::TToviGraph::GraphInformation getGraphInformation(const QString& identifier) = 0;
    virtual const VNObject2* getOverlay(const VNObject2ToviGraph* graph, const QString& name) = 0;
    virtual Sedra::TToviOverlay* getOverlay(const VNObject2* obj) = 0;
    virtual QList<const VNObject2*> getOverlays(const VNObject2ToviGraph* graph) = 0;
    virtual bool overlayRemove(const VNObject2ToviOverlay* overlay) = 0;

    // Lists.
    virtual QList<Sedra::TToviAlias*> getAllAlias() = 0;
    virtual QList<const VNObject2*> getAllIons() = 0;
    virtual QList<const VNObject2*> getAllRatios() = 0;
    virtual QList<const VNObject2*> getAllJoints() = 0;
    virtual QList<Sedra::TToviCompound*> getAllToviCompounds() = 0;
    virtual QList<const VNObject2*> getAllCompounds() = 0;
    virtual QList<const VNObject2*> getAllGraphs() = 0;
    virtual QList<const VNObject2*> getAllOverlays() = 0;

    // Properties.
    virtual Sedra::TProperty getObjectProperties(const VNObject2* obj, const QString& name, bool* found) = 0;
    virtual const QList<Sedra::TProperty>* getObjectProperties(const VNObject2* obj) const = 0;

    // Graph and overlay documents.
    virtual const VNObject2* createGraph(QAbstractItemModel* model, const QDomDocument& document) = 0;
    virtual const VNObject2* overlayCreate(const VNObject2ToviGraph* graph, QAbstractItemModel* model,
                                           const QDomDocument& document)
        = 0;
    virtual const VNObject2* graphUpdate(const VNObject2* graph, QAbstractItemModel* model,
                                         const QDomDocument& document)
        = 0;
    virtual const VNObject2* overlayUpdate(const VNObject2* overlay, const VNObject2ToviGraph* graph,
                                           QAbstractItemModel* model, const QDomDocument& document)
        = 0;
    virtual bool graphOverlaySync() = 0;
    virtual QStringList getRatioUids(const QDomDocument& graphDocument) = 0;

    /// Releases what the database holds in memory; by default nothing.
    virtual void close();

    // Aliases and vendors.
    virtual QStringList getAliasVendors() = 0;
    virtual Sedra::TToviAlias* getAlias(const VNObject2Tovi* obj, const QString& field, const QString& vendor) = 0;
    virtual Sedra::TToviAlias* aliasCreate(const VNObject2Tovi* obj, const QString& field, const QString& vendor,
                                           const QString& value)
        = 0;
    virtual bool aliasDeleteByVendor(const QString& vendor) = 0;
    virtual bool aliasDeleteSingleItem(const VNObject2Tovi* obj, const QString& field, const QString& vendor) = 0;
    virtual bool aliasUpdate(const VNObject2Tovi* obj, const QString& field, const QString& vendor,
                             const QString& value)
        = 0;
    virtual bool aliasUpdate(const Sedra::TToviAlias* alias, const QString& value) = 0;

    // The database itself.
    virtual const QString& getCurrentWorkingPath() const = 0;
    virtual Sedra::THeaderConnector* getNewConnector() = 0;
    virtual Sedra::THeaderConnector* getConnector() const = 0;
    virtual Sedra::DatabaseType getDatabaseType() const = 0;
    virtual bool removeAllObjects() = 0;
    virtual bool importObjectsByType(VNToviDatabaseInterface* source, int type) = 0;
    virtual bool flush() = 0;
    virtual bool updateMergedDB() = 0;
    virtual QString serialNumber() = 0;
};
