#include "ttovijointmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "ttovicompound.h"
#include "ttovieic.h"
#include "ttovijoint.h"

#include <vnobject2tovicompound.h>
#include <vnobject2tovieic.h>
#include <vnobject2tovijoint.h>

namespace Sedra {

TToviJointMapper::TToviJointMapper()
    : TToviAbstractMapper(VNObjectTypeJoint)
{ }

TToviJointMapper::~TToviJointMapper() = default;

TDatabaseObject* TToviJointMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

TToviJoint* TToviJointMapper::createJoint(TToviCompound* compound, TToviEIC* eic, const QString& name, bool flush) const
{
    if (!canStore() || !header() || !compound || !eic || header()->findByObject(compound->object()) != compound
        || header()->findByObject(eic->object()) != eic)
        return nullptr;
    const QString key = TToviJoint::makeKey(compound->key(), eic->key());
    if (exists(key))
        return nullptr;
    const QString jointName = name.isEmpty() ? compound->name() + QStringLiteral(" / ") + eic->name() : name;
    auto* object = new VNObject2ToviJoint(jointName, compound->compound(), eic->eic(), key);
    auto* made = new TToviJoint(object);
    made->setProperties({TProperty(QLatin1String(TToviJoint::KeyMasterName), jointName),
                         TProperty(QLatin1String(TToviJoint::KeyCompoundId), compound->key()),
                         TProperty(QLatin1String(TToviJoint::KeyIonId), eic->key())});
    made->setParent(VNObjectTypeCompound, compound->key());
    made->setTag(eic->key());
    return static_cast<TToviJoint*>(store(made, flush));
}

TToviJoint* TToviJointMapper::get(const QString& compoundKey, const QString& second) const
{
    if (TToviJoint* exact = joint(TToviJoint::makeKey(compoundKey, second)))
        return exact;
    // Few joints per compound: the ion may be named rather than keyed.
    for (TToviJoint* j : jointsOfCompound(compoundKey)) {
        const VNObject2ToviEIC* ion = j->joint()->eic();
        if (ion && ion->name() == second)
            return j;
    }
    return nullptr;
}

TToviJoint* TToviJointMapper::joint(const QString& key) const
{
    return dynamic_cast<TToviJoint*>(record(key));
}

TToviJoint* TToviJointMapper::joint(const VNObject2* object) const
{
    return dynamic_cast<TToviJoint*>(record(object));
}

QList<TToviJoint*> TToviJointMapper::jointsOfCompound(const QString& compoundKey) const
{
    if (!header())
        return {};
    return only<TToviJoint>(header()->findChildren(VNObjectTypeCompound, compoundKey, type()));
}

QList<TToviJoint*> TToviJointMapper::jointsOfEIC(const QString& eicKey) const
{
    if (!header())
        return {};
    return only<TToviJoint>(header()->findByTag(type(), eicKey));
}

QList<TToviJoint*> TToviJointMapper::jointList() const
{
    return only<TToviJoint>(records());
}

TDatabaseObject* TToviJointMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    auto* object = new VNObject2ToviJoint(row.name, nullptr, nullptr, row.key);
    auto* made = new TToviJoint(object);
    fillFromRow(made, row);
    made->setTag(made->eicKey());
    // Compounds are read back before joints, ions after them (the ion mapper
    // completes the joint then); a pair already in memory is linked now.
    if (header()) {
        if (auto* c = dynamic_cast<TToviCompound*>(header()->findByKey(VNObjectTypeCompound, made->compoundKey())))
            object->setCompound(c->compound());
        if (auto* e = dynamic_cast<TToviEIC*>(header()->findByKey(VNObjectTypeIon, made->eicKey())))
            object->setEic(e->eic());
    }
    return made;
}

} // namespace Sedra
