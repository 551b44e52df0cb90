#include "tabstractmapper.h"

#include "tdatabase.h"
#include "tdatabaseobject.h"
#include "tfileobject.h"
#include "theaderdatabase.h"
#include "tmutableobject.h"
#include "tplainobject.h"
#include "tpropertyobject.h"

#include <messageloggerinterface.h>
#include <vnobject2.h>

#include <QCoreApplication>
#include <QDir>

namespace Sedra {

TAbstractMapper::TAbstractMapper(int type)
    : m_type(type)
{ }

TAbstractMapper::~TAbstractMapper() = default;

THeaderDatabase* TAbstractMapper::header() const
{
    return m_db ? m_db->headerDb() : nullptr;
}

TDatabaseObject* TAbstractMapper::record(const QString& key) const
{
    return header() ? header()->findByKey(m_type, key) : nullptr;
}

TDatabaseObject* TAbstractMapper::recordByName(const QString& name) const
{
    return header() ? header()->findByName(m_type, name) : nullptr;
}

TDatabaseObject* TAbstractMapper::record(const VNObject2* object) const
{
    TDatabaseObject* found = header() && object ? header()->findByObject(object) : nullptr;
    return found && found->type() == m_type ? found : nullptr;
}

const VNObject2* TAbstractMapper::get(const QString& key) const
{
    const TDatabaseObject* found = record(key);
    return found ? found->object() : nullptr;
}

const VNObject2* TAbstractMapper::getByName(const QString& name) const
{
    const TDatabaseObject* found = recordByName(name);
    return found ? found->object() : nullptr;
}

QList<TDatabaseObject*> TAbstractMapper::records() const
{
    return header() ? header()->getObjectsList(m_type) : QList<TDatabaseObject*>();
}

QList<const VNObject2*> TAbstractMapper::list() const
{
    QList<const VNObject2*> objects;
    for (const TDatabaseObject* r : records())
        objects.append(r->object());
    return objects;
}

int TAbstractMapper::count() const
{
    return header() ? header()->objectCount(m_type) : 0;
}

bool TAbstractMapper::checkWritable() const
{
    if (!m_db)
        return false;
    if (!m_db->isReadOnly())
        return true;
    MessageLoggerInterface::Warning(
        QCoreApplication::translate("SedraTr", "Impossible to modify a <b>read only</b> database",
                                    "Impossible de modifier une base de données en <b>lecture seule</b>"),
        nullptr);
    return false;
}

VNObject2* TAbstractMapper::newObject(const QString& name) const
{
    return new TPlainObject(m_type, name);
}

TDatabaseObject* TAbstractMapper::newRecord(VNObject2* object) const
{
    return new TPropertyObject(object);
}

TDatabaseObject* TAbstractMapper::insertRecord(TDatabaseObject* record, bool flush) const
{
    if (!record)
        return nullptr;
    if (!checkWritable() || record->key().isEmpty()) {
        delete record;
        return nullptr;
    }
    record->object()->setDb(m_db);
    record->object()->setReadOnly(false);
    if (!header()->addObject(record, flush)) {
        delete record;
        return nullptr;
    }
    return record;
}

TDatabaseObject* TAbstractMapper::create(const QString& name, bool flush) const
{
    if (name.isEmpty() || !m_db || exists(name))
        return nullptr;
    VNObject2* object = newObject(name);
    return insertRecord(newRecord(object), flush);
}

bool TAbstractMapper::rename(const VNObject2* object, const QString& name, bool flush) const
{
    auto* mutableRecord = dynamic_cast<TMutableObject*>(record(object));
    if (!mutableRecord || name.isEmpty() || !checkWritable())
        return false;
    if (name == object->name())
        return true;
    return header()->renameRecord(mutableRecord, name, name, flush);
}

bool TAbstractMapper::remove(const VNObject2* object, bool flush, bool withDependants) const
{
    TDatabaseObject* found = record(object);
    if (!found || !checkWritable())
        return false;
    // The base's removal itself, not the virtual: a database that dispatches
    // its removeObject to the mappers would otherwise call itself for ever.
    if (withDependants)
        return m_db->TDatabase::removeObject(object, flush);
    QList<TDatabaseObject*> one{found};
    return header()->removeObjects(one, flush);
}

bool TAbstractMapper::isContainedRelativePath(const QString& path)
{
    if (path.isEmpty() || QDir::isAbsolutePath(path) || path.startsWith(QLatin1Char('/'))
        || path.contains(QLatin1Char('\\')) || path.contains(QLatin1Char(':')))
        return false;
    const QStringList parts = path.split(QLatin1Char('/'));
    for (const QString& part : parts) {
        if (part.isEmpty() || part == QLatin1String(".") || part == QLatin1String(".."))
            return false;
    }
    return true;
}

void TAbstractMapper::fillFromRow(TDatabaseObject* record, const THeaderRow& row) const
{
    record->setLoadingState(ObjectLoading);
    record->setId(row.id);
    record->setParent(row.parentType, row.parentKey);
    if (auto* file = dynamic_cast<TFileObject*>(record)) {
        if (isContainedRelativePath(row.path))
            file->setRelativePath(row.path);
    }
    if (auto* withProperties = dynamic_cast<TPropertyObject*>(record))
        withProperties->setProperties(row.properties);
    record->setLoadingState(ObjectLoaded);
    record->setModified(false);
}

TDatabaseObject* TAbstractMapper::recordFromRow(const THeaderRow& row) const
{
    if (row.key.isEmpty() || row.type != m_type)
        return nullptr;
    VNObject2* object = newObject(row.name);
    if (row.key != row.name)
        object->setKey(row.key);
    TDatabaseObject* made = newRecord(object);
    fillFromRow(made, row);
    return made;
}

static TDatabaseObject* findRecord(const VNObject2* object, TDatabase* db)
{
    TDatabaseObject* found = object->db() ? object->db()->record(object) : nullptr;
    if (!found && db)
        found = db->record(object);
    return found;
}

// The folder of a record relative to the working folder.
static QString relativeFolder(const VNObject2* object, const TDatabaseObject* found)
{
    if (const auto* file = dynamic_cast<const TFileObject*>(found)) {
        if (!file->relativePath().isEmpty())
            return file->relativeFolderPath();
    }
    if (found) {
        if (const TDatabaseObject* parent = found->getParent())
            return relativeFolder(parent->object(), parent);
    }
    const QString kindFolder = VNObject2::folderName(object->type());
    return kindFolder.isNull() ? QString(QLatin1String("")) : kindFolder;
}

static QString inside(const QString& working, const QString& relative)
{
    const QString root = QDir::cleanPath(working);
    const QString path = QDir::cleanPath(relative.isEmpty() ? root : root + QLatin1Char('/') + relative);
    if (path != root && !path.startsWith(root + QLatin1Char('/')))
        return QString();
    return path;
}

QString TAbstractMapper::objectFolderPath(const VNObject2* object, TDatabase* db)
{
    if (!object)
        return QString();
    if (!db)
        db = object->db();
    if (!db || db->getCurrentWorkingPath().isEmpty())
        return QString();
    return inside(db->getCurrentWorkingPath(), relativeFolder(object, findRecord(object, db)));
}

QString TAbstractMapper::objectFilePath(const VNObject2* object, TDatabase* db)
{
    if (!object)
        return QString();
    if (!db)
        db = object->db();
    if (!db || db->getCurrentWorkingPath().isEmpty())
        return QString();
    const TDatabaseObject* found = findRecord(object, db);
    if (const auto* file = dynamic_cast<const TFileObject*>(found)) {
        if (!file->relativePath().isEmpty())
            return inside(db->getCurrentWorkingPath(), file->relativePath());
    }
    const QString folder = relativeFolder(object, found);
    const QString name = TDatabase::safeFileName(object->name());
    return inside(db->getCurrentWorkingPath(), folder.isEmpty() ? name : folder + QLatin1Char('/') + name);
}

QList<const VNObject2*> TAbstractMapper::getObjectChildLst(const VNObject2* object, const VNObjectType& type)
{
    QList<const VNObject2*> children;
    if (!object || !object->db())
        return children;
    for (const TDatabaseObject* child : object->db()->headerDb()->findChildren(object->type(), object->key(), type))
        children.append(child->object());
    return children;
}

} // namespace Sedra
