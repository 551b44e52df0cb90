#include "ttoviprocessmapper.h"

#include "tdatabase.h"
#include "tpropertyobject.h"

#include <vnobject2.h>

#include <QDateTime>

namespace Sedra {

namespace {
const QString DescriptionProperty = QStringLiteral("Description");
const QString DateProperty = QStringLiteral("Date");
} // namespace

TToviProcessMapper::TToviProcessMapper()
    : TAbstractMapper(VNObjectTypeToviProcess)
{ }

TToviProcessMapper::~TToviProcessMapper() = default;

TPropertyObject* TToviProcessMapper::createProcess(const QString& name, const QString& description, bool flush) const
{
    if (name.isEmpty() || !database() || exists(name))
        return nullptr;
    auto* made = static_cast<TPropertyObject*>(newRecord(newObject(name)));
    made->setProperty(DescriptionProperty, description);
    made->setProperty(DateProperty, QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

QString TToviProcessMapper::description(const VNObject2* process) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(process));
    return r ? r->property(DescriptionProperty) : QString();
}

QString TToviProcessMapper::date(const VNObject2* process) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(process));
    return r ? r->property(DateProperty) : QString();
}

} // namespace Sedra
