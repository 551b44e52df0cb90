#include "tidentificationmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tplainobject.h"
#include "tpropertyobject.h"

namespace Sedra {

namespace {
const QString RetentionProperty = QStringLiteral("RetentionTime");

bool isIndexationKind(int type)
{
    return type == VNObjectTypeIndexation || type == VNObjectTypePeakDetection || type == VNObjectTypeGlobalIndexation;
}
} // namespace

TIdentificationMapper::TIdentificationMapper()
    : TAbstractMapper(VNObjectTypeIdentification)
{ }

TIdentificationMapper::~TIdentificationMapper() = default;

TPropertyObject* TIdentificationMapper::createIdentification(const VNObject2* indexation, const QString& compound,
                                                             double retentionTime, bool flush) const
{
    if (!indexation || compound.isEmpty() || !database() || !isIndexationKind(indexation->type())
        || !database()->record(indexation))
        return nullptr;
    const QString key = THeaderDatabase::childKey(indexation->key(), compound);
    if (exists(key))
        return nullptr;
    auto* object = new TPlainObject(type(), compound);
    object->setKey(key);
    auto* made = new TPropertyObject(object);
    made->setParent(indexation->type(), indexation->key());
    made->setProperty(RetentionProperty, QString::number(retentionTime, 'g', 17));
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

TDatabaseObject* TIdentificationMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

QList<const VNObject2*> TIdentificationMapper::identifications(const VNObject2* indexation) const
{
    QList<const VNObject2*> list;
    if (!indexation || !header())
        return list;
    for (const TDatabaseObject* r : header()->findChildren(indexation->type(), indexation->key(), type()))
        list.append(r->object());
    return list;
}

double TIdentificationMapper::retentionTime(const VNObject2* identification) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(identification));
    bool ok = false;
    const double value = r ? r->property(RetentionProperty).toDouble(&ok) : 0.0;
    return ok ? value : -9999.0;
}

} // namespace Sedra
