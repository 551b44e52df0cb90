#include "ttovieicmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "ttovieic.h"
#include "ttovijoint.h"

#include <vnobject2tovieic.h>
#include <vnobject2tovijoint.h>

namespace Sedra {

TToviEICMapper::TToviEICMapper()
    : TToviAbstractMapper(VNObjectTypeIon)
{ }

TToviEICMapper::~TToviEICMapper()
{
    QObject::disconnect(m_removals);
}

void TToviEICMapper::watchRemovals() const
{
    TDatabase* db = database();
    if (!db || m_watched == db)
        return;
    QObject::disconnect(m_removals);
    m_watched = db;
    // Joints are indexed by their ion's key (their tag): the removal of an
    // ion adds its joints to the objects that go, before anything is deleted.
    m_removals = QObject::connect(
        db, &TDatabase::aboutToDeleteObjects, db,
        [db](QList<const VNObject2*>* objects) {
            if (!objects || !db->headerDb())
                return;
            const int initial = objects->size();
            for (int i = 0; i < initial; ++i) {
                const VNObject2* object = objects->at(i);
                if (!object || object->type() != VNObjectTypeIon || db->record(object) == nullptr)
                    continue;
                for (const TDatabaseObject* joint : db->headerDb()->findByTag(VNObjectTypeJoint, object->key())) {
                    if (!objects->contains(joint->object()))
                        objects->append(joint->object());
                }
            }
        },
        Qt::DirectConnection);
}

VNObject2* TToviEICMapper::newObject(const QString& name) const
{
    return new VNObject2ToviEIC(name, QString(), name);
}

TDatabaseObject* TToviEICMapper::newRecord(VNObject2* object) const
{
    auto* made = new TToviEIC(static_cast<VNObject2ToviEIC*>(object));
    made->setProperties({TProperty(QLatin1String(TToviEIC::KeyId), object->key()),
                         TProperty(QLatin1String(TToviEIC::KeyMasterName), object->name()),
                         TProperty(QLatin1String(TToviEIC::KeyValue), made->eic()->value())});
    return made;
}

TDatabaseObject* TToviEICMapper::create(const QString& name, bool flush) const
{
    return createEIC(name, QString(), QString(), flush);
}

TToviEIC* TToviEICMapper::createEIC(const QString& name, const QString& value, const QString& key, bool flush) const
{
    const QString id = key.isEmpty() ? name : key;
    if (!canStore() || name.isEmpty() || exists(id))
        return nullptr;
    auto* object = new VNObject2ToviEIC(name, value.isNull() ? QString(QLatin1String("")) : value, id);
    watchRemovals();
    return static_cast<TToviEIC*>(store(newRecord(object), flush));
}

TToviEIC* TToviEICMapper::eic(const QString& key) const
{
    return dynamic_cast<TToviEIC*>(record(key));
}

TToviEIC* TToviEICMapper::eic(const VNObject2* object) const
{
    return dynamic_cast<TToviEIC*>(record(object));
}

TToviEIC* TToviEICMapper::getEICByName(const QString& name) const
{
    return dynamic_cast<TToviEIC*>(recordByName(name));
}

QList<TToviEIC*> TToviEICMapper::eicList() const
{
    return only<TToviEIC>(records());
}

TDatabaseObject* TToviEICMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    auto* object = new VNObject2ToviEIC(row.name, QString(), row.key);
    auto* made = new TToviEIC(object);
    fillFromRow(made, row);
    object->setValue(made->property(QLatin1String(TToviEIC::KeyValue)));
    watchRemovals();
    // Joints are read back before ions (rows come kind by kind): they learn
    // their ion here.
    if (header()) {
        for (TDatabaseObject* joint : header()->findByTag(VNObjectTypeJoint, row.key)) {
            if (auto* j = dynamic_cast<TToviJoint*>(joint))
                j->joint()->setEic(object);
        }
    }
    return made;
}

} // namespace Sedra
