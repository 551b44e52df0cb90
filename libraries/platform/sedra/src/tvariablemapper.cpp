#include "tvariablemapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tpropertyobject.h"

#include <vnobject2dataset.h>
#include <vnobject2variable.h>

namespace Sedra {

namespace {
const QString Reference1Property = QStringLiteral("Reference1");
const QString Reference2Property = QStringLiteral("Reference2");
} // namespace

TVariableMapper::TVariableMapper()
    : TAbstractMapper(VNObjectTypeVariable)
{ }

TVariableMapper::~TVariableMapper() = default;

QString TVariableMapper::pairTag(const QString& reference1, const QString& reference2)
{
    // A separator no key contains, so that ("a b", "c") and ("a", "b c") differ.
    return reference1 + QChar(0x1f) + reference2;
}

TPropertyObject* TVariableMapper::createVariable(const VNObject2Dataset* dataset, const QString& name,
                                                 const QString& reference1, const QString& reference2, bool flush) const
{
    if (name.isEmpty() || !database() || (dataset && !database()->record(dataset)))
        return nullptr;
    const QString key = dataset ? THeaderDatabase::childKey(dataset->key(), name) : name;
    if (exists(key))
        return nullptr;
    auto* variable = new VNObject2Variable(name, reference1, reference2);
    if (key != name)
        variable->setKey(key);
    auto* made = new TPropertyObject(variable);
    made->setProperty(Reference1Property, reference1);
    made->setProperty(Reference2Property, reference2);
    made->setTag(pairTag(reference1, reference2));
    if (dataset)
        made->setParent(VNObjectTypeDataset, dataset->key());
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

TDatabaseObject* TVariableMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

const VNObject2Variable* TVariableMapper::getReference(const QString& reference1, const QString& reference2) const
{
    if (!header())
        return nullptr;
    const QList<TDatabaseObject*> found = header()->findByTag(type(), pairTag(reference1, reference2));
    return found.isEmpty() ? nullptr : static_cast<const VNObject2Variable*>(found.first()->object());
}

QList<const VNObject2Variable*> TVariableMapper::variables(const VNObject2Dataset* dataset) const
{
    QList<const VNObject2Variable*> list;
    if (!dataset || !header())
        return list;
    for (const TDatabaseObject* r : header()->findChildren(VNObjectTypeDataset, dataset->key(), type()))
        list.append(static_cast<const VNObject2Variable*>(r->object()));
    return list;
}

bool TVariableMapper::save(const VNObject2Variable* variable, bool flush) const
{
    TDatabaseObject* found = record(variable);
    if (!found || !checkWritable())
        return false;
    return header()->saveObjectToFile(found, flush && header()->isOpen());
}

TDatabaseObject* TVariableMapper::recordFromRow(const THeaderRow& row) const
{
    if (row.key.isEmpty() || row.type != type())
        return nullptr;
    QString reference1;
    QString reference2;
    for (const TProperty& property : row.properties) {
        if (property.name() == Reference1Property)
            reference1 = property.value();
        else if (property.name() == Reference2Property)
            reference2 = property.value();
    }
    auto* variable = new VNObject2Variable(row.name, reference1, reference2);
    if (row.key != row.name)
        variable->setKey(row.key);
    auto* made = new TPropertyObject(variable);
    made->setTag(pairTag(reference1, reference2));
    fillFromRow(made, row);
    return made;
}

} // namespace Sedra
