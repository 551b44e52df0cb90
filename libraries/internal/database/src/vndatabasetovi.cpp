#include "vndatabasetovi.h"
#include "vndatabasetovi_p.h"

#include "vndatabasetovimerged.h"
#include "vndatamodelgraph.h"
#include "vndatamodeloverlay.h"
#include "vngraphdocument.h"

#include <messageloggerinterface.h>
#include <tapplicationdata.h>
#include <tapplicationdataloader.h>
#include <tassert.h>
#include <tdataxml.h>
#include <tfile.h>
#include <theaderdatabase.h>
#include <theadertoviconnector.h>
#include <tmapperfactory.h>
#include <ttovialias.h>
#include <ttovialiasmapper.h>
#include <ttovibatch.h>
#include <ttovicompound.h>
#include <ttovicompoundmapper.h>
#include <ttovieic.h>
#include <ttovieicmapper.h>
#include <ttovigraphmapper.h>
#include <ttovijoint.h>
#include <ttovijointmapper.h>
#include <ttovioverlay.h>
#include <ttovioverlaymapper.h>
#include <ttoviratio.h>
#include <ttoviratiomapper.h>
#include <txmlmethod.h>
#include <vnobject2tovicompound.h>
#include <vnobject2tovieic.h>
#include <vnobject2tovigraph.h>
#include <vnobject2tovijoint.h>
#include <vnobject2tovioverlay.h>
#include <vnobject2toviratio.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <new>

Sedra::TMapperFactory* VNDatabaseTovi::s_mapperFactory = nullptr;

namespace {
// The text of "no value" throughout the module (the value of the placeholder
// ion, and of ions copied between databases).
const QString s_noValue = QString::number(-9999, 10);

// The reference databases' mapper factory exists as soon as the module is
// loaded, like the project databases' one.
struct ToviMapperFactoryAtLoad
{
    ToviMapperFactoryAtLoad()
    {
        if (!VNDatabaseTovi::s_mapperFactory)
            VNDatabaseTovi::s_mapperFactory = new (std::nothrow) Sedra::TMapperFactory;
    }
};
const ToviMapperFactoryAtLoad s_toviMapperFactoryAtLoad;

const char* const kSource = "vndatabasetovi";

QString shown(const QString& text)
{
    return text.toHtmlEscaped();
}

// Inside a batch the records join its single transaction; otherwise they are
// written at once.
bool writeNow(const Sedra::TDatabase* db)
{
    auto* connector = dynamic_cast<Sedra::THeaderToviConnector*>(db->getConnector());
    return !(connector && connector->inBatch());
}
} // namespace

namespace {
// SQLite's count of the changes that other connections committed to the file
// this connection reads; -1 when it cannot be read.
qint64 dataVersion(const Sedra::THeaderConnector* connector)
{
    if (!connector || !connector->isOpen())
        return -1;
    QSqlQuery query(connector->database());
    if (!query.prepare(QStringLiteral("PRAGMA data_version")) || !query.exec() || !query.next())
        return -1;
    return query.value(0).toLongLong();
}
} // namespace

void VNDatabaseTovi::s_mapperFactoryClear()
{
    delete s_mapperFactory;
    s_mapperFactory = nullptr;
}

VNDatabaseTovi::VNDatabaseTovi(const Sedra::DatabaseType& type)
    : Sedra::TDatabase(type)
    , d(std::make_unique<VNDatabaseToviPrivate>())
{
    init();
}

VNDatabaseTovi::~VNDatabaseTovi() = default;

void VNDatabaseTovi::init()
{
    setMapperFactory(s_mapperFactory);
    connect(this, &Sedra::TDatabase::aboutToDeleteObjects, this, &VNDatabaseTovi::onAboutToDeleteObjects,
            Qt::DirectConnection);
    setParentDirectory(QStringLiteral("tovi"));
    TApplicationData* data = TApplicationData::getInstance();
    if (!data)
        return;

    QString path;
    QString localPath;
    if (data->contains(QStringLiteral("TOVIDBDIR"))) {
        path = data->getString(QStringLiteral("TOVIDBDIR"));
        localPath = path;
    } else {
        TApplicationDataLoader::getInstance()->loadParameterNoPrefix(QStringLiteral("VARNELDIR"));
        const QString root = data->getString(QStringLiteral("VARNELDIR"));
        // Without a root the folder would hang from the root of the file
        // system: the database stays without a working path instead.
        if (root.isEmpty()) {
            MessageLoggerInterface::Warning(
                tr("The reference databases have no folder: neither TOVIDBDIR nor VARNELDIR is set",
                   "Les bases de référence n'ont pas de dossier : ni TOVIDBDIR ni VARNELDIR n'est défini"),
                nullptr);
            return;
        }
        const QString folder = QStringLiteral("\\Libraries\\Internal\\ToVI\\Ressources");
        path = root + folder;
        // The folder is written the Windows way in the settings' tradition;
        // every platform reads it as the same sub-folders of the root.
        localPath = root + QString(folder).replace(QLatin1Char('\\'), QLatin1Char('/'));
    }
    MessageLoggerInterface::Debug(QStringLiteral("starting ToDB with path = %1").arg(path), nullptr);

    setWorkingPath(localPath);
    TFile::mkdir(getCurrentWorkingPath(), false);
    clearDB();
    headerDb()->setCurrentProject(this);
}

template <typename Mapper>
const Mapper* VNDatabaseTovi::typedMapper(int type, int line) const
{
    const Mapper* found = dynamic_cast<const Mapper*>(getMapper(VNObjectType(type)));
    if (!found)
        t_assert("mapper != 0", kSource, line, true);
    return found;
}

// ---------------------------------------------------------------------------
// Storage base

const QString& VNDatabaseTovi::getCurrentWorkingPath() const
{
    return Sedra::TDatabase::getCurrentWorkingPath();
}

Sedra::DatabaseType VNDatabaseTovi::getDatabaseType() const
{
    return Sedra::TDatabase::getDatabaseType();
}

bool VNDatabaseTovi::loadDatabase()
{
    // Loading adds the rows that are not in memory yet. When no other
    // connection has written to the file since the last load, there are none:
    // answering at once keeps the synchronisation of a current merged
    // database cheap.
    const Sedra::THeaderConnector* connector = getConnector();
    const qint64 version = dataVersion(connector);
    const QString connection = connector ? connector->connectionName() : QString();
    const QString file = connector ? connector->getDbFilename() : QString();
    const VNDatabaseToviPrivate::LoadStamp& stamp = d->loaded;
    if (version >= 0 && stamp.version == version && stamp.connection == connection && stamp.file == file)
        return true;
    const bool loaded = Sedra::TDatabase::loadDatabase();
    d->loaded = loaded && version >= 0 ? VNDatabaseToviPrivate::LoadStamp{connection, file, version}
                                       : VNDatabaseToviPrivate::LoadStamp();
    return loaded;
}

void VNDatabaseTovi::clearDB()
{
    d->loaded = VNDatabaseToviPrivate::LoadStamp();
    Sedra::TDatabase::clearDB();
}

void VNDatabaseTovi::synchronizeSQLRoot()
{
    Sedra::TDatabase::synchronizeSQLRoot();
}

bool VNDatabaseTovi::setProject(const VNObject2Project* project)
{
    forceDisableDatasetSave(0, false);
    clearDB();
    return Sedra::TDatabase::setProject(project);
}

QStringList VNDatabaseTovi::folderNameList()
{
    return QStringList{VNObject2ToviGraph::folderName()};
}

void VNDatabaseTovi::close()
{
    clearDB();
}

void VNDatabaseTovi::onAboutToDeleteObjects(QList<const VNObject2*>* objects)
{
    // Nothing to add yet: the connection is there so that a later version can
    // act before objects go.
    Q_UNUSED(objects)
}

// ---------------------------------------------------------------------------
// Ratios

Sedra::TToviRatio* VNDatabaseTovi::getRatio(const VNObject2* obj)
{
    const auto* tovi = dynamic_cast<const VNObject2Tovi*>(obj);
    if (!tovi)
        return nullptr;
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    return mapper ? mapper->ratio(tovi->key()) : nullptr;
}

const VNObject2* VNDatabaseTovi::getRatio(const QString& uid)
{
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviRatio* ratio = mapper->ratio(uid);
    return ratio ? ratio->object() : nullptr;
}

const VNObject2* VNDatabaseTovi::getRatioByMasterName(const QString& masterName)
{
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviRatio* ratio = mapper->getByMasterName(masterName);
    return ratio ? ratio->object() : nullptr;
}

QList<const VNObject2*> VNDatabaseTovi::getRatiosByMasterName(const QString& masterName)
{
    QList<const VNObject2*> result;
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    if (!mapper)
        return result;
    for (Sedra::TToviRatio* ratio : mapper->getAllByMasterName(masterName)) {
        if (ratio)
            result.append(ratio->object());
    }
    return result;
}

QList<const VNObject2*> VNDatabaseTovi::getRatiosByAliasesValue(const QString& value)
{
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    return mapper ? mapper->getByAliasesValue(value) : QList<const VNObject2*>();
}

QList<const VNObject2*> VNDatabaseTovi::getAllRatios()
{
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    return mapper ? mapper->list() : QList<const VNObject2*>();
}

Sedra::TToviRatio* VNDatabaseTovi::createRatio(const QString& ratioId, const QString& masterName,
                                               const QString& displayFormula, const QString& formula, int displayOrder,
                                               const QString& studyType, const QString& analysisType,
                                               const QString& processType, const QString& familyName,
                                               const QString& expectedIons, const QString& literatureReference)
{
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    if (!mapper)
        return nullptr;
    return mapper->createRatio(ratioId, masterName, displayFormula, formula, displayOrder, studyType, analysisType,
                               processType, familyName, expectedIons, literatureReference);
}

bool VNDatabaseTovi::ratioRemove(const VNObject2* obj, bool flag)
{
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    return mapper ? mapper->remove(obj, flag, true) : false;
}

bool VNDatabaseTovi::ratioRemove(Sedra::TToviRatio* ratio, bool flag)
{
    // Nothing to remove is a success here, unlike the other removals.
    if (!ratio)
        return true;
    return ratioRemove(static_cast<const VNObject2*>(ratio->object()), flag);
}

QStringList VNDatabaseTovi::getRatioUids(const QDomDocument& graphDocument)
{
    return VNGraphDocument::getRatioUids(graphDocument);
}

// ---------------------------------------------------------------------------
// Compounds

const VNObject2* VNDatabaseTovi::getCompound(const QString& key)
{
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    return mapper ? mapper->get(key) : nullptr;
}

Sedra::TToviCompound* VNDatabaseTovi::getCompound(const VNObject2* obj)
{
    // By identity: the record that holds this very object. The header keeps an
    // index by object, so this is the first (and only) such record of the kind
    // without walking the list.
    if (!obj || !headerDb())
        return nullptr;
    Sedra::TDatabaseObject* record = headerDb()->findByObject(obj);
    if (!record || record->type() != VNObjectTypeCompound)
        return nullptr;
    return dynamic_cast<Sedra::TToviCompound*>(record);
}

const VNObject2* VNDatabaseTovi::getCompoundByName(const QString& name)
{
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    return mapper ? mapper->getCompoundByName(name) : nullptr;
}

Sedra::TToviCompound* VNDatabaseTovi::getCompoundByToViKey(const QStringList& keys)
{
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    return mapper ? mapper->getByToViKey(keys) : nullptr;
}

Sedra::TToviCompound* VNDatabaseTovi::createCompound(Sedra::TToviCompound* model, const QString& name)
{
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    return mapper ? mapper->createCompound(model, name) : nullptr;
}

QList<Sedra::TToviCompound*> VNDatabaseTovi::getAllToviCompounds()
{
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    return mapper ? mapper->compoundList() : QList<Sedra::TToviCompound*>();
}

QList<const VNObject2*> VNDatabaseTovi::getAllCompounds()
{
    QList<const VNObject2*> result;
    const QList<Sedra::TToviCompound*> compounds = getAllToviCompounds();
    result.reserve(compounds.size());
    for (Sedra::TToviCompound* compound : compounds)
        result.append(dynamic_cast<const VNObject2ToviCompound*>(compound->object()));
    return result;
}

bool VNDatabaseTovi::compoundRemove(const VNObject2* obj)
{
    if (!obj)
        return false;
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    return mapper ? mapper->remove(obj, true, true) : false;
}

// ---------------------------------------------------------------------------
// Ions

Sedra::TToviEIC* VNDatabaseTovi::getEIC(const VNObject2* obj)
{
    if (!obj)
        return nullptr;
    const auto* mapper = typedMapper<Sedra::TToviEICMapper>(VNObjectTypeIon, __LINE__);
    return mapper ? mapper->eic(obj->key()) : nullptr;
}

const VNObject2* VNDatabaseTovi::getEIC(const QString& key)
{
    const auto* mapper = typedMapper<Sedra::TToviEICMapper>(VNObjectTypeIon, __LINE__);
    return mapper ? mapper->get(key) : nullptr;
}

const VNObject2* VNDatabaseTovi::getEICByName(const QString& name)
{
    const auto* mapper = typedMapper<Sedra::TToviEICMapper>(VNObjectTypeIon, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviEIC* eic = mapper->getEICByName(name);
    return eic ? eic->object() : nullptr;
}

Sedra::TToviEIC* VNDatabaseTovi::createEIC(const QString& name, const QString& value)
{
    const auto* mapper = typedMapper<Sedra::TToviEICMapper>(VNObjectTypeIon, __LINE__);
    return mapper ? mapper->createEIC(name, value) : nullptr;
}

const Sedra::TToviEIC* VNDatabaseTovi::getNoneEIC()
{
    const QString none = QStringLiteral("none");
    const QString unused = QString::number(-1);
    Q_UNUSED(unused)
    if (const VNObject2* existing = getEICByName(none))
        return getEIC(existing);
    return createEIC(none, s_noValue);
}

QList<const VNObject2*> VNDatabaseTovi::getAllIons()
{
    const auto* mapper = typedMapper<Sedra::TToviEICMapper>(VNObjectTypeIon, __LINE__);
    return mapper ? mapper->list() : QList<const VNObject2*>();
}

bool VNDatabaseTovi::EICRemove(const VNObject2* obj)
{
    if (!obj)
        return false;
    const auto* mapper = typedMapper<Sedra::TToviEICMapper>(VNObjectTypeIon, __LINE__);
    return mapper ? mapper->remove(obj, true, true) : false;
}

// ---------------------------------------------------------------------------
// Joints

Sedra::TToviJoint* VNDatabaseTovi::getJoint(const VNObject2* obj)
{
    const auto* tovi = dynamic_cast<const VNObject2Tovi*>(obj);
    if (!tovi)
        return nullptr;
    const auto* mapper = typedMapper<Sedra::TToviJointMapper>(VNObjectTypeJoint, __LINE__);
    return mapper ? mapper->joint(tovi->key()) : nullptr;
}

const VNObject2* VNDatabaseTovi::getJoint(const QString& key)
{
    const auto* mapper = typedMapper<Sedra::TToviJointMapper>(VNObjectTypeJoint, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviJoint* joint = mapper->joint(key);
    return joint ? joint->object() : nullptr;
}

const VNObject2* VNDatabaseTovi::getJoint(const QString& compoundKey, const QString& second)
{
    const auto* mapper = typedMapper<Sedra::TToviJointMapper>(VNObjectTypeJoint, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviCompound* compound = getCompound(getCompound(compoundKey));
    if (!compound)
        return nullptr;
    Sedra::TToviJoint* joint = mapper->get(compound->compoundId(), second);
    return joint ? joint->object() : nullptr;
}

Sedra::TToviJoint* VNDatabaseTovi::createJoint(const QString& compoundKey, const QString& eicKey, const QString& name)
{
    const auto* mapper = typedMapper<Sedra::TToviJointMapper>(VNObjectTypeJoint, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviCompound* compound = getCompound(getCompound(compoundKey));
    Sedra::TToviEIC* eic = getEIC(getEIC(eicKey));
    if (!compound || !eic)
        return nullptr;
    return mapper->createJoint(compound, eic, name);
}

QList<const VNObject2*> VNDatabaseTovi::getAllJoints()
{
    const auto* mapper = typedMapper<Sedra::TToviJointMapper>(VNObjectTypeJoint, __LINE__);
    return mapper ? mapper->list() : QList<const VNObject2*>();
}

bool VNDatabaseTovi::jointRemove(const VNObject2* obj)
{
    if (!obj)
        return false;
    const auto* mapper = typedMapper<Sedra::TToviJointMapper>(VNObjectTypeJoint, __LINE__);
    return mapper ? mapper->remove(obj, true, true) : false;
}

// ---------------------------------------------------------------------------
// Graphs and overlays

Sedra::TToviGraph* VNDatabaseTovi::getGraph(const VNObject2* obj)
{
    const auto* tovi = dynamic_cast<const VNObject2Tovi*>(obj);
    if (!tovi)
        return nullptr;
    const auto* mapper = typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__);
    return mapper ? mapper->graph(tovi->key()) : nullptr;
}

const VNObject2* VNDatabaseTovi::getGraph(const QString& identifier)
{
    const auto* mapper = typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviGraph* graph = mapper->graph(identifier);
    return graph ? graph->object() : nullptr;
}

Sedra::TToviGraph::GraphInformation VNDatabaseTovi::getGraphInformation(const QString& identifier)
{
    const VNObject2* graph = getGraph(identifier);
    if (!graph)
        return Sedra::TToviGraph::GraphInformation();
    Sedra::TToviGraph* record = getGraph(graph);
    if (!record) {
        t_assert("toviGraphPrivate != NULL", kSource, __LINE__, true);
        return Sedra::TToviGraph::GraphInformation();
    }
    return record->getGraphInformation();
}

QList<const VNObject2*> VNDatabaseTovi::getAllGraphs()
{
    const auto* mapper = typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__);
    return mapper ? mapper->list() : QList<const VNObject2*>();
}

bool VNDatabaseTovi::graphRemove(const VNObject2ToviGraph* graph)
{
    const auto* mapper = typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__);
    return mapper ? mapper->remove(graph, true, true) : false;
}

const VNObject2* VNDatabaseTovi::createGraph(QAbstractItemModel* model, const QDomDocument& document)
{
    const auto* mapper = typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviGraph* graph = mapper->createGraph(QString());
    if (!graphWrite(graph, model, document))
        return nullptr;
    return mapper->get(graph->identifier());
}

const VNObject2* VNDatabaseTovi::graphUpdate(const VNObject2* graph, QAbstractItemModel* model,
                                             const QDomDocument& document)
{
    return graphWrite(getGraph(graph), model, document) ? graph : nullptr;
}

bool VNDatabaseTovi::graphWrite(Sedra::TToviGraph* graph, QAbstractItemModel* model, const QDomDocument& document)
{
    if (!graph)
        return false;
    if (!typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__))
        return false;
    auto* graphModel = qobject_cast<VNDataModelGraph*>(model);
    if (!graphModel) {
        t_assert("graphModel != 0", kSource, __LINE__, true);
        return false;
    }
    graph->setToVIName(graphModel->getToVIName());
    graph->setLiteratureReference(graphModel->getLiteratureReference());
    graph->setComments(graphModel->getComments());
    graph->setExpectedUnit(graphModel->getExpectedUnit());
    graph->setExpectedAnalysisType(graphModel->getExpectedAnalysisType());
    graph->setStudyType(graphModel->getStudyType());
    graph->setFamilyName(graphModel->getFamilyName());
    graph->setProcessType(graphModel->getProcessType());
    graph->setIsORL(graphModel->getIsORL());
    // The selector lists a graph's parameters by their keys.
    graph->setRatioUids(graphModel->getAxes());
    graph->setLoadingState(Sedra::ObjectLoaded);
    graph->setModified(true);

    // Relative paths are kept without a leading separator.
    const QDir working(getCurrentWorkingPath());
    const QString path = working.filePath(graph->relativePath());
    TFile::mkdirs(working.filePath(graph->relativeFolderPath()), false);
    if (TXMLMethod::save(&document, path, true, false))
        return headerDb()->saveObjectToFile(graph, true);
    MessageLoggerInterface::Error(
        tr("Impossible to save graph %1", "Impossible de sauvegarder le graphe %1").arg(shown(path)), nullptr);
    return false;
}

Sedra::TToviOverlay* VNDatabaseTovi::getOverlay(const VNObject2* obj)
{
    if (!obj || !headerDb())
        return nullptr;
    Sedra::TDatabaseObject* record = headerDb()->findByObject(obj);
    if (!record || record->type() != VNObjectTypeOverlay)
        return nullptr;
    return dynamic_cast<Sedra::TToviOverlay*>(record);
}

const VNObject2* VNDatabaseTovi::getOverlay(const VNObject2ToviGraph* graph, const QString& name)
{
    for (const VNObject2* overlay : getOverlays(graph)) {
        if (overlay && overlay->name() == name)
            return overlay;
    }
    return nullptr;
}

QList<const VNObject2*> VNDatabaseTovi::getOverlays(const VNObject2ToviGraph* graph)
{
    return Sedra::TAbstractMapper::getObjectChildLst(graph, VNObjectTypeOverlay);
}

QList<const VNObject2*> VNDatabaseTovi::getAllOverlays()
{
    const auto* mapper = typedMapper<Sedra::TToviOverlayMapper>(VNObjectTypeOverlay, __LINE__);
    return mapper ? mapper->list() : QList<const VNObject2*>();
}

bool VNDatabaseTovi::overlayRemove(const VNObject2ToviOverlay* overlay)
{
    if (!overlay)
        return false;
    const auto* mapper = typedMapper<Sedra::TToviOverlayMapper>(VNObjectTypeOverlay, __LINE__);
    return mapper ? mapper->remove(overlay, true, true) : false;
}

const VNObject2* VNDatabaseTovi::overlayCreate(const VNObject2ToviGraph* graph, QAbstractItemModel* model,
                                               const QDomDocument& document)
{
    const auto* mapper = typedMapper<Sedra::TToviOverlayMapper>(VNObjectTypeOverlay, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviOverlay* overlay = mapper->overlayCreate(graph, QString());
    if (!overlayWrite(graph, overlay, model, document))
        return nullptr;
    return getOverlay(graph, overlay->identifier());
}

const VNObject2* VNDatabaseTovi::overlayUpdate(const VNObject2* overlay, const VNObject2ToviGraph* graph,
                                               QAbstractItemModel* model, const QDomDocument& document)
{
    return overlayWrite(graph, getOverlay(overlay), model, document) ? overlay : nullptr;
}

bool VNDatabaseTovi::overlayWrite(const VNObject2ToviGraph* graph, Sedra::TToviOverlay* overlay,
                                  QAbstractItemModel* model, const QDomDocument& document)
{
    auto* overlayModel = qobject_cast<VNDataModelOverlay*>(model);
    if (!graph || !overlay || !overlayModel)
        return false;
    if (!typedMapper<Sedra::TToviOverlayMapper>(VNObjectTypeOverlay, __LINE__))
        return false;
    overlay->setLiteratureReference(overlayModel->getLiteratureReference());
    overlay->setToVIName(overlayModel->getToVIName());
    overlay->setProcessType(overlayModel->getProcessType());
    overlay->setEquation(QStringLiteral("no equation in model"));
    overlay->setLoadingState(Sedra::ObjectLoaded);
    overlay->setModified(true);

    // Relative paths are kept without a leading separator.
    const QDir working(getCurrentWorkingPath());
    const QString path = working.filePath(overlay->relativePath());
    TFile::mkdirs(working.filePath(overlay->relativeFolderPath()), false);
    if (TXMLMethod::save(&document, path, true, false))
        return headerDb()->saveObjectToFile(overlay, true);
    MessageLoggerInterface::Error(
        tr("Impossible to save overlay %1", "Impossible de sauvegarder l'overlay %1").arg(shown(path)), nullptr);
    return false;
}

QDomElement VNDatabaseTovi::getXmlData(const VNObject2* obj)
{
    if (!obj)
        return QDomElement();
    Plavo::TDataXml xml;
    if (!xml.open(Sedra::TAbstractMapper::objectFilePath(obj, nullptr)))
        return QDomElement();
    const QDomElement data = TXMLMethod::getChildElement(xml.contentElement(), QStringLiteral("TDataXml"));
    // The file's document dies with `xml`: the caller gets a copy that keeps
    // an owner document.
    return TXMLMethod::detachedCopy(data.isNull() ? QDomElement() : data.firstChildElement());
}

bool VNDatabaseTovi::graphOverlaySync()
{
    auto* connector = dynamic_cast<Sedra::THeaderToviConnector*>(getConnector());
    return connector ? connector->graphOverlaySync() : false;
}

// ---------------------------------------------------------------------------
// Aliases

QList<Sedra::TToviAlias*> VNDatabaseTovi::getAllAlias()
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    return mapper ? mapper->aliasList() : QList<Sedra::TToviAlias*>();
}

QStringList VNDatabaseTovi::getAliasVendors()
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    return mapper ? mapper->vendorList() : QStringList();
}

Sedra::TToviAlias* VNDatabaseTovi::getAlias(const VNObject2Tovi* obj, const QString& field, const QString& vendor)
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    return mapper ? mapper->getAlias(obj, field, vendor) : nullptr;
}

Sedra::TToviAlias* VNDatabaseTovi::aliasCreate(const VNObject2Tovi* obj, const QString& field, const QString& vendor,
                                               const QString& value)
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviAlias* alias = mapper->aliasCreate(obj, field, vendor, value);
    if (alias && field == QLatin1String("masterName"))
        takeMasterName(obj, value);
    return alias;
}

void VNDatabaseTovi::takeMasterName(const VNObject2Tovi* obj, const QString& value)
{
    if (Sedra::TToviCompound* compound = getCompound(obj)) {
        compound->setMasterName(value);
        headerDb()->saveObjectToFile(compound, writeNow(this));
    }
}

bool VNDatabaseTovi::aliasUpdate(const VNObject2Tovi* obj, const QString& field, const QString& vendor,
                                 const QString& value)
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    return mapper ? mapper->aliasUpdate(obj, field, vendor, value) : false;
}

bool VNDatabaseTovi::aliasUpdate(const Sedra::TToviAlias* alias, const QString& value)
{
    const auto* mapper = dynamic_cast<const Sedra::TToviAliasMapper*>(getMapper(VNObjectTypeAlias));
    if (!mapper) {
        t_assert("mapper != nullptr", kSource, __LINE__, true);
        return false;
    }
    if (!alias || !alias->getParent()) {
        t_assert("alias != nullptr && alias->getParent() != nullptr", kSource, __LINE__, true);
        return false;
    }
    // The update replaces the alias record: read what names it first.
    const auto* obj = dynamic_cast<const VNObject2Tovi*>(alias->getParent()->object());
    const QString field = alias->getField();
    const QString vendor = alias->getVendor();
    return mapper->aliasUpdate(obj, field, vendor, value);
}

bool VNDatabaseTovi::aliasDeleteByVendor(const QString& vendor)
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    return mapper ? mapper->removeVendor(vendor) : false;
}

bool VNDatabaseTovi::aliasDeleteSingleItem(const VNObject2Tovi* obj, const QString& field, const QString& vendor)
{
    const auto* mapper = typedMapper<Sedra::TToviAliasMapper>(VNObjectTypeAlias, __LINE__);
    return mapper ? mapper->removeAlias(obj, field, vendor) : false;
}

// ---------------------------------------------------------------------------
// Generic operations

Sedra::TProperty VNDatabaseTovi::getObjectProperties(const VNObject2* obj, const QString& name, bool* found)
{
    return Sedra::TDatabase::getObjectProperties(obj, name, found);
}

const QList<Sedra::TProperty>* VNDatabaseTovi::getObjectProperties(const VNObject2* obj) const
{
    return Sedra::TDatabase::getObjectProperties(obj);
}

QList<const VNObject2*> VNDatabaseTovi::getObjectChildLst(const VNObject2* obj, const VNObjectType& type)
{
    return Sedra::TAbstractMapper::getObjectChildLst(obj, type);
}

bool VNDatabaseTovi::removeObject(const VNObject2* obj, bool flag)
{
    if (!obj)
        return false;
    if (isReadOnly()) {
        MessageLoggerInterface::Warning(
            QCoreApplication::translate("SedraTr", "Impossible to remove <b>%1</b>, in a <b>Read only</b> project",
                                        "Impossible de supprimer <b>%1</b>, le projet est en <b>Lecture Seule</b>")
                .arg(shown(obj->name())),
            nullptr);
        return false;
    }
    switch (obj->type()) {
    case VNObjectTypeRatio:
        // Parameters always go at once, whatever the caller asked.
        return ratioRemove(obj, true);
    case VNObjectTypeCompound:
        return compoundRemove(obj);
    case VNObjectTypeGraph:
        return graphRemove(dynamic_cast<const VNObject2ToviGraph*>(obj));
    case VNObjectTypeOverlay:
        return overlayRemove(dynamic_cast<const VNObject2ToviOverlay*>(obj));
    case VNObjectTypeJoint:
        return jointRemove(obj);
    case VNObjectTypeIon:
        return EICRemove(obj);
    default:
        return Sedra::TDatabase::removeObject(obj, flag);
    }
}

bool VNDatabaseTovi::objectRename(const VNObject2* obj, const QString& newName)
{
    if (!obj)
        return false;
    if (isReadOnly()) {
        MessageLoggerInterface::Warning(
            QCoreApplication::translate("SedraTr", "Impossible to rename <b>%1</b>, project is <b>Read only</b>",
                                        "Impossible de renommer <b>%1</b>, le projet est en <b>Lecture Seule</b>")
                .arg(shown(obj->name())),
            nullptr);
        return false;
    }
    // Reference objects are known by their names in graphs, aliases and other
    // databases: they are never renamed, whatever the new name.
    const bool empty = newName.simplified().isEmpty();
    Q_UNUSED(empty)
    return false;
}

const VNObject2* VNDatabaseTovi::objectCopy(const VNObject2* obj, bool& first, bool& second, int& count)
{
    if (!obj)
        return nullptr;
    switch (obj->type()) {
    case VNObjectTypeRatio:
        return copyRatio(obj);
    case VNObjectTypeCompound:
        return copyCompound(obj);
    case VNObjectTypeGraph:
        return copyGraph(obj);
    case VNObjectTypeOverlay:
        return copyOverlay(obj, first, second, count);
    case VNObjectTypeJoint:
        return copyJoint(obj, first, second, count);
    case VNObjectTypeIon:
        return copyEIC(obj);
    default:
        MessageLoggerInterface::Debug(QStringLiteral("copie non implementée"), nullptr);
        return nullptr;
    }
}

const VNObject2* VNDatabaseTovi::copyRatio(const VNObject2* obj)
{
    if (Sedra::TToviRatio* existing = getRatio(obj))
        return existing->object();
    auto* source = qobject_cast<VNDatabaseTovi*>(obj->db());
    const auto* mapper = typedMapper<Sedra::TToviRatioMapper>(VNObjectTypeRatio, __LINE__);
    if (!source || !mapper)
        return nullptr;
    const Sedra::TToviRatio* ratio = source->getRatio(obj);
    if (!ratio)
        return nullptr;
    Sedra::TToviRatio* created
        = mapper->createRatio(ratio->ratioId(), ratio->masterName(), ratio->displayFormula(), ratio->formula(),
                              ratio->displayOrder(), ratio->studyType(), ratio->analysisType(), ratio->processType(),
                              ratio->familyName(), ratio->expectedIons(), ratio->literatureReference());
    return created ? created->object() : nullptr;
}

const VNObject2* VNDatabaseTovi::copyCompound(const VNObject2* obj)
{
    auto* source = qobject_cast<VNDatabaseTovi*>(obj->db());
    const auto* mapper = typedMapper<Sedra::TToviCompoundMapper>(VNObjectTypeCompound, __LINE__);
    if (!source || !mapper)
        return nullptr;
    Sedra::TToviCompound* compound = source->getCompound(obj);
    if (!compound)
        return nullptr;
    const QList<Sedra::TDatabaseObject*> dependants = compound->getDependantObjects();

    Sedra::TToviCompound* target = mapper->getByToViKey(compound->toviKeys());
    if (!target) {
        target = createCompound(compound, compound->compoundId());
        if (!target)
            return nullptr;
    }
    // Said whether the compound was found or just made; the words are read as
    // Latin-1 on purpose, as the log readers expect them.
    MessageLoggerInterface::Debug(QString::fromLatin1("Le composé %1 existe déjà").arg(target->description()), nullptr);

    const auto* targetObject = dynamic_cast<const VNObject2Tovi*>(target->object());
    for (Sedra::TDatabaseObject* dependant : dependants) {
        const auto* alias = dynamic_cast<const Sedra::TToviAlias*>(dependant);
        if (!alias)
            continue;
        const QString field = alias->getField();
        const QString vendor = alias->getVendor();
        const QString value = alias->getValue();
        if (const Sedra::TToviAlias* existing = getAlias(targetObject, field, vendor)) {
            if (existing->getValue() == value)
                continue;
            // The source's value replaces ours, as a deletion and a new
            // creation would (master name included). Replaced in place, the
            // old record's removal stays ahead of the new one inside the
            // import's single transaction, where a new record of the same
            // identity would otherwise be written before the old one went.
            if (aliasUpdate(targetObject, field, vendor, value) && field == QLatin1String("masterName"))
                takeMasterName(targetObject, value);
            continue;
        }
        aliasCreate(targetObject, field, vendor, value);
    }
    return target->object();
}

const VNObject2* VNDatabaseTovi::copyGraph(const VNObject2* obj)
{
    auto* source = qobject_cast<VNDatabaseTovi*>(obj->db());
    if (!source)
        return nullptr;
    const Sedra::TToviGraph* graph = source->getGraph(obj);
    if (!graph)
        return nullptr;
    const QString identifier = graph->identifier();
    if (const VNObject2* existing = getGraph(identifier))
        return existing;
    const auto* mapper = typedMapper<Sedra::TToviGraphMapper>(VNObjectTypeGraph, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviGraph* created = mapper->createGraph(identifier);
    if (!created)
        return nullptr;
    created->copyContent(graph);
    created->setPropertyList(graph->getPropertyList());
    created->setLoadingState(Sedra::ObjectLoaded);
    created->setModified(true);
    headerDb()->saveObjectToFile(created, writeNow(this));
    return created->object();
}

const VNObject2* VNDatabaseTovi::copyOverlay(const VNObject2* obj, bool& first, bool& second, int& count)
{
    auto* source = qobject_cast<VNDatabaseTovi*>(obj->db());
    if (!source)
        return nullptr;
    const Sedra::TToviOverlay* overlay = source->getOverlay(obj);
    if (!overlay)
        return nullptr;
    const VNObject2ToviGraph* sourceGraph = overlay->graph();
    if (!sourceGraph)
        return nullptr;
    const VNObject2* graph = getGraph(sourceGraph->key());
    if (!graph)
        graph = objectCopy(sourceGraph, first, second, count);
    const auto* targetGraph = dynamic_cast<const VNObject2ToviGraph*>(graph);
    if (!targetGraph)
        return nullptr;
    const QString identifier = overlay->identifier();
    if (const VNObject2* existing = getOverlay(targetGraph, identifier))
        return existing;
    const auto* mapper = typedMapper<Sedra::TToviOverlayMapper>(VNObjectTypeOverlay, __LINE__);
    if (!mapper)
        return nullptr;
    Sedra::TToviOverlay* created = mapper->overlayCreate(targetGraph, identifier);
    if (!created)
        return nullptr;
    // Unlike a graph, an overlay takes its descriptive fields only.
    created->copyContent(overlay);
    created->setLoadingState(Sedra::ObjectLoaded);
    created->setModified(true);
    headerDb()->saveObjectToFile(created, writeNow(this));
    return created->object();
}

const VNObject2* VNDatabaseTovi::copyJoint(const VNObject2* obj, bool& first, bool& second, int& count)
{
    if (Sedra::TToviJoint* existing = getJoint(obj))
        return existing->object();
    const auto* joint = dynamic_cast<const VNObject2ToviJoint*>(obj);
    if (!joint || !joint->eic() || !joint->compound())
        return nullptr;
    const auto* eic = dynamic_cast<const VNObject2ToviEIC*>(objectCopy(joint->eic(), first, second, count));

    QString compoundKey;
    if (Sedra::TToviCompound* found = getCompoundByToViKey(joint->compound()->toviKey().split(QLatin1Char(';'))))
        compoundKey = found->compoundId();
    else if (const VNObject2* copied = objectCopy(joint->compound(), first, second, count))
        compoundKey = copied->key(); // the identifier by which this database knows the copy

    if (eic && !compoundKey.isEmpty()) {
        // The pair may be here already under this database's compound key,
        // which is not the source's when the compound was found by its
        // reference keys: a joint is joined once.
        if (const VNObject2* existing = getJoint(compoundKey, eic->key()))
            return existing;
        if (Sedra::TToviJoint* created = createJoint(compoundKey, eic->key(), joint->name()))
            return created->object();
        return nullptr;
    }
    MessageLoggerInterface::Error(
        tr("Impossible to copy Joint %1", "Impossible de copier la jointure %1").arg(shown(joint->name())), nullptr);
    return nullptr;
}

const VNObject2* VNDatabaseTovi::copyEIC(const VNObject2* obj)
{
    if (Sedra::TToviEIC* existing = getEIC(obj))
        return existing->object();
    const auto* eic = dynamic_cast<const VNObject2ToviEIC*>(obj);
    if (!eic)
        return nullptr;
    Sedra::TToviEIC* created = createEIC(eic->EICName(), s_noValue);
    return created ? created->object() : nullptr;
}

bool VNDatabaseTovi::importObjectsByType(VNToviDatabaseInterface* source, int type)
{
    auto* database = dynamic_cast<Sedra::TDatabase*>(source);
    if (!database)
        return false;
    bool first = false;
    bool second = false;
    int count = 0;
    // One transaction for the whole kind: the copies are held back and
    // written together at the end.
    Sedra::TToviBatch batch(this);
    const QList<const VNObject2*> objects = database->getObjectLst(type);
    for (const VNObject2* obj : objects)
        objectCopy(obj, first, second, count);
    // Single copies that fail are passed over, but a batch that could not be
    // written leaves the kind unimported: the merge must not stamp it current.
    if (!batch.commit()) {
        MessageLoggerInterface::Warning(
            tr("The objects imported into <b>%1</b> could not all be written",
               "Les objets importés dans <b>%1</b> n'ont pas tous pu être écrits")
                .arg(shown(getConnector() ? getConnector()->getDbFilename() : getCurrentWorkingPath())),
            nullptr);
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------
// The database itself

Sedra::THeaderConnector* VNDatabaseTovi::getNewConnector()
{
    return new Sedra::THeaderToviConnector(this);
}

Sedra::THeaderConnector* VNDatabaseTovi::getConnector() const
{
    return headerDb() ? headerDb()->connector() : nullptr;
}

bool VNDatabaseTovi::flush()
{
    return headerDb()->saveObjectToFile(nullptr, true);
}

bool VNDatabaseTovi::removeAllObjects()
{
    QList<Sedra::TDatabaseObject*> all = headerDb()->getObjectsList();
    const bool removed = headerDb()->removeObjects(all, false);
    headerDb()->flushDatabase();
    return removed;
}

bool VNDatabaseTovi::updateMergedDB()
{
    VNDatabaseToviMerged merged;
    return merged.synchronize();
}

QString VNDatabaseTovi::serialNumber()
{
    Sedra::THeaderConnector* connector = getConnector();
    return connector ? connector->serialNumber() : QString();
}

QString VNDatabaseTovi::readSerialNumber()
{
    Sedra::THeaderConnector* connector = getConnector();
    if (!connector)
        return QString();
    const QString path = connector->getDbFilename();
    if (!QFileInfo::exists(path))
        return QStringLiteral("");
    QString serial = QStringLiteral("");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), path);
        db.setDatabaseName(path);
        if (db.open()) {
            serial = connector->readSerialNumber(&db);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(path);
    return serial;
}

QString VNDatabaseTovi::getCurrentTempPath()
{
    return getCurrentWorkingPath() + QDir::separator() + QStringLiteral("Temp");
}

QString VNDatabaseTovi::objectFolderPath(const VNObject2* obj)
{
    return Sedra::TAbstractMapper::objectFolderPath(obj, nullptr);
}

QString VNDatabaseTovi::objectFilePath(const VNObject2* obj)
{
    return Sedra::TAbstractMapper::objectFilePath(obj, nullptr);
}

QString VNDatabaseTovi::objectFolderPath(const VNObject2* obj, bool withDb)
{
    // The folder is the object's own database's; the file (below) this one's.
    return Sedra::TAbstractMapper::objectFolderPath(obj, withDb && obj ? obj->db() : nullptr);
}

QString VNDatabaseTovi::objectFilePath(const VNObject2* obj, bool withDb)
{
    return Sedra::TAbstractMapper::objectFilePath(obj, withDb ? this : nullptr);
}

// ---------------------------------------------------------------------------
// Folders

QStringList VNDatabaseTovi::scanDir(VNObjectType type, bool withExtension)
{
    const QString folder = VNObject2::folderName(type);
    if (folder.isNull())
        return QStringList();
    return scanDir(getCurrentWorkingPath() + QDir::separator() + folder, withExtension);
}

QStringList VNDatabaseTovi::scanDir(const QString& path, bool withExtension)
{
    QDir dir(path);
    if (!dir.exists()) {
        MessageLoggerInterface::Information(
            QCoreApplication::translate("SedraTr", "Project structure is obsolete - Adding directory <b>%1</b>",
                                        "La structure du projet est obsolète - Ajout du dossier <b>%1</b>")
                .arg(shown(path)),
            nullptr);
        if (!TFile::mkdirs(path, false)) {
            MessageLoggerInterface::Information(QCoreApplication::translate("SedraTr",
                                                                            "Error while creating directory <b>%1</b>",
                                                                            "Echec de création du répertoire <b>%1</b>")
                                                    .arg(shown(path)),
                                                nullptr);
        }
        dir.refresh();
    }
    const QFileInfoList entries = dir.entryInfoList(QDir::NoFilter, QDir::Unsorted);
    if (entries.isEmpty()) {
        MessageLoggerInterface::Warning(
            QCoreApplication::translate("SedraTr", "The directory <b>%1</b> is unreadable or does not exist",
                                        "Le répertoire <b>%1</b> n'est pas accessible")
                .arg(shown(path)),
            nullptr);
        return QStringList();
    }
    QStringList names;
    for (const QFileInfo& info : entries) {
        if (info.baseName().isEmpty() || info.size() <= 0)
            continue;
        names.append(withExtension ? info.completeBaseName() + QLatin1Char('.') + info.completeSuffix()
                                   : info.completeBaseName());
    }
    return names;
}

QStringList VNDatabaseTovi::scanDir(const QString& path, bool withExtension, const QString& suffix, bool withDirs)
{
    QDir dir(path);
    if (!dir.exists()) {
        if (!TFile::mkdirs(path, false))
            return QStringList();
        dir.refresh();
    }
    QStringList names;
    if (withDirs) {
        for (const QFileInfo& info : dir.entryInfoList(QDir::AllDirs | QDir::NoDotAndDotDot)) {
            names.append(info.completeSuffix().isEmpty()
                             ? info.completeBaseName()
                             : info.completeBaseName() + QLatin1Char('.') + info.completeSuffix());
        }
    }
    for (const QFileInfo& info : dir.entryInfoList(QDir::Files | QDir::NoDotAndDotDot)) {
        if (info.baseName().isEmpty() || info.size() <= 0)
            continue;
        if (!suffix.isEmpty() && info.suffix() != suffix)
            continue;
        names.append(withExtension ? info.completeBaseName() + QLatin1Char('.') + info.completeSuffix()
                                   : info.completeBaseName());
    }
    return names;
}

namespace {
QString withoutTrailingSeparator(const QString& path)
{
    if (path.endsWith(QLatin1Char('/')) || path.endsWith(QDir::separator()))
        return path.left(path.size() - 1);
    return path;
}
} // namespace

bool VNDatabaseTovi::copyDirectory(const QString& sourcePath, const QString& targetPath, bool overwrite,
                                   const QStringList& suffixes, bool recursive)
{
    const QString source = withoutTrailingSeparator(sourcePath);
    const QString target = withoutTrailingSeparator(targetPath);
    QDir sourceDir(source);
    if (!sourceDir.exists())
        return false;
    if (!QFileInfo(target).isDir())
        TFile::mkdir(target, false);
    else if (!overwrite)
        return false;

    const QFileInfoList entries = sourceDir.entryInfoList(
        QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Unsorted);
    for (const QFileInfo& info : entries) {
        if (info.isDir()) {
            if (recursive && !info.fileName().isEmpty()) {
                copyDirectory(source + QDir::separator() + info.fileName(),
                              target + QDir::separator() + info.fileName(), overwrite, suffixes, recursive);
            }
            continue;
        }
        if (!suffixes.isEmpty() && !suffixes.contains(info.suffix()))
            continue;
        if (info.size() == 0)
            continue;
        // A file without a suffix keeps its bare name (no trailing dot).
        const QString name = info.suffix().isEmpty() ? info.completeBaseName()
                                                     : info.completeBaseName() + QLatin1Char('.') + info.suffix();
        TFile::copyFile(QDir::toNativeSeparators(info.filePath()),
                        QDir::toNativeSeparators(target) + QDir::separator() + name, !overwrite, true);
    }
    return true;
}
