#include "tdatabase.h"
#include "tdatabase_p.h"

#include "tabstractmapper.h"
#include "tanalysismapper.h"
#include "tdatabaseobject.h"
#include "tfileobject.h"
#include "theaderconnector.h"
#include "theaderdatabase.h"
#include "tmapperfactory.h"
#include "tpropertyobject.h"
#include "tvariablemapper.h"

#include <messageloggerinterface.h>
#include <vnobject2.h>
#include <vnobject2analysis.h>
#include <vnobject2variable.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace Sedra {

TDatabase::TDatabase(const DatabaseType& type, QObject* parent)
    : QObject(parent)
    , m_type(type)
    , m_header(new THeaderDatabase)
{ }

TDatabase::~TDatabase()
{
    delete m_header;
    m_header = nullptr;
    deleteMappers();
}

void TDatabase::setWorkingPath(const QString& path)
{
    m_workingPath = path.isEmpty() ? path : QDir::cleanPath(path);
}

void TDatabase::deleteMappers()
{
    qDeleteAll(m_mapperList);
    m_mapperList.clear();
    m_mappers.clear();
}

void TDatabase::setMapperFactory(TMapperFactory* factory)
{
    deleteMappers();
    m_factory = factory;
    if (!factory)
        return;
    const QList<TAbstractMapper*> made
        = isReferenceDatabase(m_type) ? factory->createReferenceMappers() : factory->createProjectMappers();
    for (TAbstractMapper* mapper : made) {
        if (m_mappers.contains(mapper->type())) {
            delete mapper; // the first creator of a kind wins
            continue;
        }
        mapper->setDatabase(this);
        m_mappers.insert(mapper->type(), mapper);
        m_mapperList.append(mapper);
    }
    if (m_header->isStarted())
        loadDatabase();
    if (m_syncPending) {
        m_syncPending = false;
        // The request already passed a derived database's own checks when it
        // was made; only the part that needed the mappers is left to run.
        TDatabase::synchronizeSQLRoot();
    }
}

THeaderConnector* TDatabase::getConnector() const
{
    return m_header ? m_header->connector() : nullptr;
}

THeaderConnector* TDatabase::getNewConnector()
{
    return new THeaderConnector;
}

void TDatabase::clearDB()
{
    m_header->clearObjects();
    m_sync = TSyncReport();
}

bool TDatabase::loadDatabase()
{
    if (!m_header->isOpen())
        return false;
    const QList<THeaderRow> rows = m_header->readRows();
    for (const THeaderRow& row : rows) {
        TAbstractMapper* kindMapper = mapper(row.type);
        // Rows of kinds without a mapper stay in the file untouched.
        if (!kindMapper || m_header->findByKey(row.type, row.key))
            continue;
        TDatabaseObject* record = kindMapper->recordFromRow(row);
        if (!record)
            continue;
        record->object()->setDb(this);
        record->object()->setReadOnly(m_readOnly);
        if (!m_header->addObject(record, false)) {
            delete record;
            continue;
        }
        record->setModified(false);
    }
    return true;
}

bool TDatabase::setProject(const VNObject2Project* project)
{
    m_project = project;
    if (!project)
        return false;
    return m_header->isStarted() ? loadDatabase() : true;
}

QStringList TDatabase::folderNameList()
{
    return QStringList();
}

void TDatabase::setReadOnly(bool readOnly)
{
    if (readOnly == m_readOnly)
        return;
    if (!readOnly && m_header->isOpen() && !m_workingPath.isEmpty()) {
        // A folder or header file we may not write keeps the database read-only.
        const THeaderConnector* connector = m_header->connector();
        const QFileInfo file(connector->getDbFilename());
        if (!QFileInfo(m_workingPath).isWritable() || (file.exists() && !file.isWritable()))
            return;
    }
    m_readOnly = readOnly;
    for (TDatabaseObject* record : m_header->getObjectsList())
        record->object()->setReadOnly(readOnly);
    if (m_header->isOpen() && m_header->isReadOnly() != readOnly && !m_header->reopen(readOnly) && !readOnly) {
        // Not writable after all: back to reading, nothing lost.
        setReadOnly(true);
        m_header->reopen(true);
    }
}

void TDatabase::forceDisableDatasetSave(int count, bool disable)
{
    m_datasetSaveHold = std::max(0, count);
    m_datasetSaveDisabled = disable;
}

bool TDatabase::consumeDatasetSaveHold()
{
    if (m_datasetSaveDisabled)
        return true;
    if (m_datasetSaveHold > 0) {
        --m_datasetSaveHold;
        return true;
    }
    return false;
}

bool TDatabase::setObjectGeolocalization(const VNObject2*, const TLocalization&)
{
    return false;
}

void TDatabase::synchronizeSQLRoot()
{
    m_sync = TSyncReport();
    auto* analyses = dynamic_cast<TAnalysisMapper*>(mapper(VNObjectTypeAnalysis));
    if (m_readOnly || !m_header->isOpen() || m_header->isReadOnly() || m_workingPath.isEmpty())
        return;
    if (!analyses) {
        m_syncPending = !m_factory;
        return;
    }
    const QString folderName = VNObject2Analysis::folderName();
    QSet<QString> known;
    const QList<TDatabaseObject*> records = m_header->getObjectsList(VNObjectTypeAnalysis);
    for (const TDatabaseObject* record : records) {
        if (const auto* file = dynamic_cast<const TFileObject*>(record))
            known.insert(file->relativeFolderPath());
    }
    const QDir root(QDir(m_workingPath).filePath(folderName));
    const QStringList folders = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& folder : folders) {
        const QString relative = folderName + QLatin1Char('/') + folder;
        if (known.contains(relative))
            continue;
        if (!TAbstractMapper::isContainedRelativePath(relative)) {
            // A name that another system reads as a drive or a separator
            // could not be read back as the same folder.
            m_sync.skipped.append(folder);
            MessageLoggerInterface::Warning(
                QCoreApplication::translate("SedraTr",
                                            "The folder <b>%1</b> cannot be added: its name cannot be stored",
                                            "Le dossier <b>%1</b> ne peut pas être ajouté : son nom ne peut pas "
                                            "être enregistré")
                    .arg(root.filePath(folder)),
                nullptr);
            continue;
        }
        if (analyses->exists(folder) || !analyses->createAnalysisInFolder(folder, relative, false)) {
            m_sync.skipped.append(folder);
            MessageLoggerInterface::Warning(
                QCoreApplication::translate("SedraTr",
                                            "The folder <b>%1</b> cannot be added: an analysis of that name exists",
                                            "Le dossier <b>%1</b> ne peut pas être ajouté : une analyse de ce nom "
                                            "existe déjà")
                    .arg(root.filePath(folder)),
                nullptr);
            continue;
        }
        m_sync.registered.append(folder);
        MessageLoggerInterface::Information(
            QCoreApplication::translate("SedraTr", "Analysis <b>%1</b> found on disk was added to the project",
                                        "L'analyse <b>%1</b> trouvée sur le disque a été ajoutée au projet")
                .arg(folder),
            nullptr);
    }
    for (const TDatabaseObject* record : records) {
        const QString folder = TAbstractMapper::objectFolderPath(record->object(), this);
        if (folder.isEmpty() || QFileInfo(folder).isDir())
            continue;
        m_sync.missing.append(record->name());
        MessageLoggerInterface::Warning(
            QCoreApplication::translate("SedraTr", "The folder of analysis <b>%1</b> is missing: <b>%2</b>",
                                        "Le dossier de l'analyse <b>%1</b> est introuvable : <b>%2</b>")
                .arg(record->name(), folder),
            nullptr);
    }
    if (!m_sync.registered.isEmpty())
        m_header->flushDatabase();
}

const TAbstractMapper* TDatabase::getMapper(VNObjectType type) const
{
    return m_mappers.value(type, nullptr);
}

const VNObject2Variable* TDatabase::getReference(const QString& key1, const QString& key2) const
{
    const auto* variables = dynamic_cast<const TVariableMapper*>(getMapper(VNObjectTypeVariable));
    return variables ? variables->getReference(key1, key2) : nullptr;
}

TDatabaseObject* TDatabase::record(const VNObject2* object) const
{
    return object ? m_header->findByObject(object) : nullptr;
}

QList<const VNObject2*> TDatabase::getObjectLst(int type) const
{
    QList<const VNObject2*> objects;
    for (const TDatabaseObject* record : m_header->getObjectsList(type))
        objects.append(record->object());
    return objects;
}

TProperty TDatabase::getObjectProperties(const VNObject2* object, const QString& name, bool* found) const
{
    const auto* withProperties = dynamic_cast<const TPropertyObject*>(record(object));
    const bool has = withProperties && withProperties->hasProperty(name);
    if (found)
        *found = has;
    return has ? TProperty(name, withProperties->property(name)) : TProperty();
}

const QList<TProperty>* TDatabase::getObjectProperties(const VNObject2* object) const
{
    const auto* withProperties = dynamic_cast<const TPropertyObject*>(record(object));
    return withProperties ? &withProperties->properties() : nullptr;
}

void logReadOnly()
{
    MessageLoggerInterface::Warning(
        QCoreApplication::translate("SedraTr", "Impossible to modify a <b>read only</b> database",
                                    "Impossible de modifier une base de données en <b>lecture seule</b>"),
        nullptr);
}

bool TDatabase::setObjectProperty(const VNObject2* object, const QString& name, const QString& value, bool flush)
{
    auto* withProperties = dynamic_cast<TPropertyObject*>(record(object));
    if (!withProperties || name.isEmpty())
        return false;
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    withProperties->setProperty(name, value);
    return !flush || !m_header->isOpen() || m_header->saveObjectToFile(withProperties, true);
}

bool TDatabase::removeObject(const VNObject2* object, bool flush)
{
    TDatabaseObject* first = record(object);
    if (!first)
        return false;
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    QList<const VNObject2*> objects{object};
    addDependants(objects);
    emit aboutToDeleteObjects(&objects);
    // What the listeners added goes with everything that belongs to it too:
    // no record is left behind naming a parent that is gone.
    addDependants(objects);
    QList<TDatabaseObject*> records;
    for (const VNObject2* o : objects) {
        if (TDatabaseObject* r = record(o))
            records.append(r);
    }
    return m_header->removeObjects(records, flush);
}

void TDatabase::addDependants(QList<const VNObject2*>& objects) const
{
    // Breadth first from the objects given; each object once, even when a
    // listener named it twice.
    QSet<const VNObject2*> seen;
    QList<const VNObject2*> unique;
    for (const VNObject2* o : objects) {
        if (o && !seen.contains(o)) {
            seen.insert(o);
            unique.append(o);
        }
    }
    for (int i = 0; i < unique.size(); ++i) {
        if (const TDatabaseObject* r = record(unique.at(i))) {
            for (const TDatabaseObject* child : r->getDependantObjects()) {
                if (!seen.contains(child->object())) {
                    seen.insert(child->object());
                    unique.append(child->object());
                }
            }
        }
    }
    objects = unique;
}

void TDatabase::onAboutToDeleteObjects(QList<const VNObject2*>* objects)
{
    Q_UNUSED(objects)
}

const VNObject2* TDatabase::objectCopy(const VNObject2* object, bool& first, bool& second, int& count)
{
    Q_UNUSED(first)
    Q_UNUSED(second)
    Q_UNUSED(count)
    TAbstractMapper* kindMapper = object ? mapper(object->type()) : nullptr;
    if (!kindMapper)
        return nullptr;
    if (const VNObject2* existing = kindMapper->get(object->key()))
        return existing;
    TDatabaseObject* copy = kindMapper->create(object->name(), false);
    if (!copy)
        return nullptr;
    const TDatabase* source = object->db();
    const auto* from = dynamic_cast<const TPropertyObject*>(source ? source->record(object) : nullptr);
    auto* to = dynamic_cast<TPropertyObject*>(copy);
    if (from && to)
        to->setPropertyList(from->properties());
    if (m_header->isOpen())
        m_header->saveObjectToFile(copy, true);
    return copy->object();
}

QString TDatabase::objectFolderPath(const VNObject2* object, bool create) const
{
    const QString path = TAbstractMapper::objectFolderPath(object, const_cast<TDatabase*>(this));
    if (create && !path.isEmpty() && !m_readOnly)
        QDir().mkpath(path);
    return path;
}

QString TDatabase::safeFileName(const QString& name)
{
    QString safe;
    safe.reserve(name.size());
    for (const QChar c : name) {
        const bool forbidden = c.unicode() < 0x20 || c == QLatin1Char('/') || c == QLatin1Char('\\')
            || c == QLatin1Char(':') || c == QLatin1Char('*') || c == QLatin1Char('?') || c == QLatin1Char('"')
            || c == QLatin1Char('\'') || c == QLatin1Char('<') || c == QLatin1Char('>') || c == QLatin1Char('|')
            || c.category() == QChar::Other_Format || c.isSurrogate() || c.unicode() == 0x7f;
        safe.append(forbidden ? QLatin1Char('_') : c);
    }
    // Leading dots would make "..", hidden files or relative tricks; trailing
    // dots and blanks are dropped by some file systems.
    while (safe.startsWith(QLatin1Char('.')) || safe.startsWith(QLatin1Char(' ')))
        safe.replace(0, 1, QLatin1Char('_'));
    if (safe.size() > 120)
        safe.truncate(120);
    while (safe.endsWith(QLatin1Char('.')) || safe.endsWith(QLatin1Char(' ')))
        safe.chop(1);
    static const QStringList reserved{QStringLiteral("CON"),  QStringLiteral("PRN"),  QStringLiteral("AUX"),
                                      QStringLiteral("NUL"),  QStringLiteral("COM1"), QStringLiteral("COM2"),
                                      QStringLiteral("COM3"), QStringLiteral("COM4"), QStringLiteral("LPT1"),
                                      QStringLiteral("LPT2"), QStringLiteral("LPT3")};
    const QString stem = safe.section(QLatin1Char('.'), 0, 0).toUpper();
    if (reserved.contains(stem))
        safe.prepend(QLatin1Char('_'));
    return safe.isEmpty() ? QStringLiteral("_") : safe;
}

} // namespace Sedra
