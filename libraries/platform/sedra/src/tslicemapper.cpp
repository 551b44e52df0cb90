#include "tslicemapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tplainobject.h"
#include "tpropertyobject.h"

#include <vnobject2analysis.h>

namespace Sedra {

namespace {
const QString StartProperty = QStringLiteral("Start");
const QString EndProperty = QStringLiteral("End");
} // namespace

TSliceMapper::TSliceMapper()
    : TAbstractMapper(VNObjectTypeSlice)
{ }

TSliceMapper::~TSliceMapper() = default;

TPropertyObject* TSliceMapper::createSlice(const VNObject2Analysis* analysis, const QString& name, double start,
                                           double end, bool flush) const
{
    if (!analysis || name.isEmpty() || !database() || !(end > start) || !database()->record(analysis))
        return nullptr;
    const QString key = THeaderDatabase::childKey(analysis->key(), name);
    if (exists(key))
        return nullptr;
    auto* object = new TPlainObject(type(), name);
    object->setKey(key);
    auto* made = new TPropertyObject(object);
    made->setParent(analysis->type(), analysis->key());
    made->setProperty(StartProperty, QString::number(start, 'g', 17));
    made->setProperty(EndProperty, QString::number(end, 'g', 17));
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

TDatabaseObject* TSliceMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

QList<const VNObject2*> TSliceMapper::slices(const VNObject2Analysis* analysis) const
{
    QList<const VNObject2*> list;
    if (!analysis || !header())
        return list;
    for (const TDatabaseObject* r : header()->findChildren(analysis->type(), analysis->key(), type()))
        list.append(r->object());
    return list;
}

bool TSliceMapper::range(const VNObject2* slice, double* start, double* end) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(slice));
    if (!r)
        return false;
    bool okStart = false;
    bool okEnd = false;
    const double s = r->property(StartProperty).toDouble(&okStart);
    const double e = r->property(EndProperty).toDouble(&okEnd);
    if (!okStart || !okEnd)
        return false;
    if (start)
        *start = s;
    if (end)
        *end = e;
    return true;
}

} // namespace Sedra
