#include "ttovicompoundmapper.h"

#include "theaderdatabase.h"
#include "ttovicompound.h"

#include <vnobject2tovicompound.h>

namespace Sedra {

// Reference keys that are all empty identify nothing.
static bool identifies(const QString& joinedKeys)
{
    for (const QChar c : joinedKeys) {
        if (c != QLatin1Char(';'))
            return true;
    }
    return false;
}

TToviCompoundMapper::TToviCompoundMapper()
    : TToviAbstractMapper(VNObjectTypeCompound)
{ }

TToviCompoundMapper::~TToviCompoundMapper() = default;

VNObject2* TToviCompoundMapper::newObject(const QString& name) const
{
    return new VNObject2ToviCompound(name, name);
}

TDatabaseObject* TToviCompoundMapper::newRecord(VNObject2* object) const
{
    auto* made = new TToviCompound(static_cast<VNObject2ToviCompound*>(object));
    made->setProperty(QLatin1String(TToviCompound::KeyId), object->key());
    return made;
}

TToviCompound* TToviCompoundMapper::createCompound(const TToviCompound* model, const QString& name, bool flush) const
{
    if (!canStore() || (!name.isEmpty() && exists(name)))
        return nullptr;
    const QString key = name.isEmpty() ? newKey(QStringLiteral("C")) : name;
    QString masterName = model ? model->masterName() : QString();
    if (masterName.isEmpty() && model)
        masterName = model->name();
    if (masterName.isEmpty())
        masterName = key;
    const QString toviKey = model ? model->toviKey() : QString();

    auto* object = new VNObject2ToviCompound(masterName, key);
    object->setToviKey(toviKey);
    auto* made = new TToviCompound(object);
    QList<TProperty> properties;
    properties.append(TProperty(QLatin1String(TToviCompound::KeyId), key));
    properties.append(TProperty(QLatin1String(TToviCompound::KeyMasterName), masterName));
    if (model) {
        for (const TProperty& p : model->getPropertyList()) {
            if (p.name() != QLatin1String(TToviCompound::KeyId)
                && p.name() != QLatin1String(TToviCompound::KeyMasterName))
                properties.append(p);
        }
    }
    made->setProperties(properties);
    if (identifies(toviKey))
        made->setTag(toviKey);
    return static_cast<TToviCompound*>(store(made, flush));
}

TToviCompound* TToviCompoundMapper::compound(const QString& key) const
{
    return dynamic_cast<TToviCompound*>(record(key));
}

TToviCompound* TToviCompoundMapper::compound(const VNObject2* object) const
{
    return dynamic_cast<TToviCompound*>(record(object));
}

const VNObject2* TToviCompoundMapper::getCompoundByName(const QString& name) const
{
    return getByName(name);
}

TToviCompound* TToviCompoundMapper::getByToViKey(const QStringList& keys) const
{
    const QString joined = keys.join(QLatin1Char(';'));
    if (!header() || !identifies(joined))
        return nullptr;
    const QList<TDatabaseObject*> found = header()->findByTag(type(), joined);
    return found.isEmpty() ? nullptr : dynamic_cast<TToviCompound*>(found.first());
}

QList<TToviCompound*> TToviCompoundMapper::compoundList() const
{
    return only<TToviCompound>(records());
}

TDatabaseObject* TToviCompoundMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    auto* object = new VNObject2ToviCompound(row.name, row.key);
    auto* made = new TToviCompound(object);
    fillFromRow(made, row);
    object->setToviKey(made->toviKey());
    if (identifies(made->toviKey()))
        made->setTag(made->toviKey());
    return made;
}

} // namespace Sedra
