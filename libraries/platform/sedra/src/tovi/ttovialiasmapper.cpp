#include "ttovialiasmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tplainobject.h"
#include "ttovialias.h"

#include <vnobject2.h>

#include <QSet>

namespace Sedra {

TToviAliasMapper::TToviAliasMapper()
    : TToviAbstractMapper(VNObjectTypeAlias)
{ }

TToviAliasMapper::~TToviAliasMapper() = default;

TDatabaseObject* TToviAliasMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

static QString text(const QString& v)
{
    return v.isNull() ? QString(QLatin1String("")) : v;
}

TToviAlias* TToviAliasMapper::makeAlias(const TDatabaseObject* parent, const QString& field, const QString& vendor,
                                        const QString& value) const
{
    auto* object = new TPlainObject(type(), text(vendor));
    object->setKey(TToviAlias::makeKey(parent->type(), parent->key(), field, vendor));
    auto* made = new TToviAlias(object);
    made->setProperties({TProperty(QLatin1String(TToviAlias::KeyField), field),
                         TProperty(QLatin1String(TToviAlias::KeyVendor), text(vendor)),
                         TProperty(QLatin1String(TToviAlias::KeyValue), text(value))});
    made->setParent(parent->type(), parent->key());
    made->setTag(text(value));
    return made;
}

QList<TToviAlias*> TToviAliasMapper::aliasList() const
{
    return only<TToviAlias>(records());
}

QStringList TToviAliasMapper::vendorList() const
{
    QStringList vendors;
    QSet<QString> seen;
    for (const TDatabaseObject* r : records()) {
        if (!seen.contains(r->name())) {
            seen.insert(r->name());
            vendors.append(r->name());
        }
    }
    return vendors;
}

TToviAlias* TToviAliasMapper::getAlias(const VNObject2* object, const QString& field, const QString& vendor) const
{
    if (!object)
        return nullptr;
    return dynamic_cast<TToviAlias*>(record(TToviAlias::makeKey(object->type(), object->key(), field, vendor)));
}

TToviAlias* TToviAliasMapper::aliasCreate(const VNObject2* object, const QString& field, const QString& vendor,
                                          const QString& value, bool flush) const
{
    const TDatabaseObject* parent = database() ? database()->record(object) : nullptr;
    if (!canStore() || !parent || field.isEmpty() || getAlias(object, field, vendor))
        return nullptr;
    return static_cast<TToviAlias*>(store(makeAlias(parent, field, vendor, value), flush));
}

bool TToviAliasMapper::aliasUpdate(const VNObject2* object, const QString& field, const QString& vendor,
                                   const QString& value) const
{
    // The arguments may be references into the alias replaced below.
    const QString fieldCopy = field;
    const QString vendorCopy = vendor;
    const QString valueCopy = text(value);
    TToviAlias* current = getAlias(object, fieldCopy, vendorCopy);
    if (!current)
        return false;
    if (current->getValue() == valueCopy)
        return true;
    if (!checkWritable())
        return false;
    const TDatabaseObject* parent = current->getParent();
    if (!parent)
        return false;
    // The index of values is built when a record is added: a new value means
    // a new record under the same key, written with the removal of the old
    // one in one transaction.
    TToviAlias* replacement = makeAlias(parent, fieldCopy, vendorCopy, valueCopy);
    QList<TDatabaseObject*> old{current};
    if (!header()->removeObjects(old, false)) {
        delete replacement;
        return false;
    }
    if (!header()->addObject(replacement, false)) {
        delete replacement;
        return false;
    }
    return !writeNow(true) || header()->flushDatabase();
}

bool TToviAliasMapper::removeAlias(const VNObject2* object, const QString& field, const QString& vendor) const
{
    TToviAlias* current = getAlias(object, field, vendor);
    if (!current || !checkWritable())
        return false;
    QList<TDatabaseObject*> one{current};
    return header()->removeObjects(one, writeNow(true));
}

bool TToviAliasMapper::removeVendor(const QString& vendor) const
{
    if (!header())
        return false;
    QList<TDatabaseObject*> all = header()->findAllByName(type(), vendor);
    if (all.isEmpty())
        return true;
    if (!checkWritable())
        return false;
    return header()->removeObjects(all, writeNow(true));
}

QList<TToviAlias*> TToviAliasMapper::aliasesOf(const VNObject2* object) const
{
    if (!object || !header())
        return {};
    return only<TToviAlias>(header()->findChildren(object->type(), object->key(), type()));
}

QList<TToviAlias*> TToviAliasMapper::getByValue(const QString& value) const
{
    if (!header())
        return {};
    return only<TToviAlias>(header()->findByTag(type(), value));
}

TDatabaseObject* TToviAliasMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    auto* object = new TPlainObject(type(), row.name);
    object->setKey(row.key);
    auto* made = new TToviAlias(object);
    fillFromRow(made, row);
    made->setTag(made->getValue());
    return made;
}

} // namespace Sedra
