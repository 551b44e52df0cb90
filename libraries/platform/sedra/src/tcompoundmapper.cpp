#include "tcompoundmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tpropertyobject.h"

#include <vnobject2.h>

namespace Sedra {

namespace {
const QString CasProperty = QStringLiteral("CAS");
const QString FormulaProperty = QStringLiteral("Formula");
} // namespace

TCompoundMapper::TCompoundMapper()
    : TAbstractMapper(VNObjectTypeCompound)
{ }

TCompoundMapper::~TCompoundMapper() = default;

TPropertyObject* TCompoundMapper::createCompound(const QString& name, const QString& cas, const QString& formula,
                                                 bool flush) const
{
    if (name.isEmpty() || !database() || exists(name))
        return nullptr;
    auto* made = static_cast<TPropertyObject*>(newRecord(newObject(name)));
    if (!cas.isEmpty()) {
        made->setProperty(CasProperty, cas);
        made->setTag(cas);
    }
    if (!formula.isEmpty())
        made->setProperty(FormulaProperty, formula);
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

const VNObject2* TCompoundMapper::getByCas(const QString& cas) const
{
    if (cas.isEmpty() || !header())
        return nullptr;
    const QList<TDatabaseObject*> found = header()->findByTag(type(), cas);
    return found.isEmpty() ? nullptr : found.first()->object();
}

QString TCompoundMapper::cas(const VNObject2* compound) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(compound));
    return r ? r->property(CasProperty) : QString();
}

QString TCompoundMapper::formula(const VNObject2* compound) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(compound));
    return r ? r->property(FormulaProperty) : QString();
}

TDatabaseObject* TCompoundMapper::recordFromRow(const THeaderRow& row) const
{
    TDatabaseObject* made = TAbstractMapper::recordFromRow(row);
    if (auto* withProperties = dynamic_cast<TPropertyObject*>(made))
        made->setTag(withProperties->property(CasProperty));
    return made;
}

} // namespace Sedra
