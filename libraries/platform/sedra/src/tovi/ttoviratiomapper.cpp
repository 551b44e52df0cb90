#include "ttoviratiomapper.h"

#include "theaderdatabase.h"
#include "ttovialias.h"
#include "ttoviratio.h"

#include <vnobject2toviratio.h>

#include <QSet>

#include <algorithm>

namespace Sedra {

TToviRatioMapper::TToviRatioMapper()
    : TToviAbstractMapper(VNObjectTypeRatio)
{ }

TToviRatioMapper::~TToviRatioMapper() = default;

VNObject2* TToviRatioMapper::newObject(const QString& name) const
{
    return new VNObject2ToviRatio(name, name);
}

TDatabaseObject* TToviRatioMapper::newRecord(VNObject2* object) const
{
    auto* made = new TToviRatio(static_cast<VNObject2ToviRatio*>(object));
    made->setProperty(QLatin1String(TToviRatio::KeyId), object->key());
    made->setProperty(QLatin1String(TToviRatio::KeyMasterName), object->name());
    return made;
}

TToviRatio* TToviRatioMapper::createRatio(const QString& ratioId, const QString& masterName,
                                          const QString& displayFormula, const QString& formula, int displayOrder,
                                          const QString& studyType, const QString& analysisType,
                                          const QString& processType, const QString& familyName,
                                          const QString& expectedIons, const QString& literatureReference,
                                          bool flush) const
{
    if (!canStore() || masterName.isEmpty() || (!ratioId.isEmpty() && exists(ratioId)))
        return nullptr;
    const QString key = ratioId.isEmpty() ? newKey(QStringLiteral("R")) : ratioId;
    const int order = displayOrder < 0 ? maxDisplayOrder() + 1 : displayOrder;
    auto* object = new VNObject2ToviRatio(masterName, key);
    object->setDisplayOrder(order);
    auto* made = new TToviRatio(object);
    const auto text = [](const QString& v) { return v.isNull() ? QString(QLatin1String("")) : v; };
    made->setProperties({TProperty(QLatin1String(TToviRatio::KeyId), key),
                         TProperty(QLatin1String(TToviRatio::KeyMasterName), masterName),
                         TProperty(QLatin1String(TToviRatio::KeyDisplayFormula), text(displayFormula)),
                         TProperty(QLatin1String(TToviRatio::KeyFormula), text(formula)),
                         TProperty(QLatin1String(TToviRatio::KeyDisplayOrder), QString::number(order)),
                         TProperty(QLatin1String(TToviRatio::KeyStudyType), text(studyType)),
                         TProperty(QLatin1String(TToviRatio::KeyAnalysisType), text(analysisType)),
                         TProperty(QLatin1String(TToviRatio::KeyProcessType), text(processType)),
                         TProperty(QLatin1String(TToviRatio::KeyFamilyName), text(familyName)),
                         TProperty(QLatin1String(TToviRatio::KeyExpectedIons), text(expectedIons)),
                         TProperty(QLatin1String(TToviRatio::KeyLiteratureReference), text(literatureReference))});
    return static_cast<TToviRatio*>(store(made, flush));
}

TToviRatio* TToviRatioMapper::ratio(const QString& key) const
{
    return dynamic_cast<TToviRatio*>(record(key));
}

TToviRatio* TToviRatioMapper::ratio(const VNObject2* object) const
{
    return dynamic_cast<TToviRatio*>(record(object));
}

TToviRatio* TToviRatioMapper::getByMasterName(const QString& masterName) const
{
    return dynamic_cast<TToviRatio*>(recordByName(masterName));
}

QList<TToviRatio*> TToviRatioMapper::getAllByMasterName(const QString& masterName) const
{
    if (!header())
        return {};
    return only<TToviRatio>(header()->findAllByName(type(), masterName));
}

QList<const VNObject2*> TToviRatioMapper::getByAliasesValue(const QString& value) const
{
    QList<const VNObject2*> result;
    if (!header())
        return result;
    QSet<const TDatabaseObject*> seen;
    for (const TDatabaseObject* alias : header()->findByTag(VNObjectTypeAlias, value)) {
        if (alias->parentType() != type())
            continue;
        const TDatabaseObject* parent = header()->findByKey(type(), alias->parentKey());
        if (parent && !seen.contains(parent)) {
            seen.insert(parent);
            result.append(parent->object());
        }
    }
    return result;
}

QList<TToviRatio*> TToviRatioMapper::ratioList() const
{
    return only<TToviRatio>(records());
}

QList<TToviRatio*> TToviRatioMapper::listByDisplayOrder() const
{
    QList<TToviRatio*> result = ratioList();
    std::stable_sort(result.begin(), result.end(),
                     [](const TToviRatio* a, const TToviRatio* b) { return a->displayOrder() < b->displayOrder(); });
    return result;
}

int TToviRatioMapper::maxDisplayOrder() const
{
    int largest = 0;
    for (const TToviRatio* r : ratioList())
        largest = std::max(largest, r->displayOrder());
    return largest;
}

TDatabaseObject* TToviRatioMapper::recordFromRow(const THeaderRow& row) const
{
    if (!isMine(row))
        return nullptr;
    auto* object = new VNObject2ToviRatio(row.name, row.key);
    auto* made = new TToviRatio(object);
    fillFromRow(made, row);
    object->setDisplayOrder(made->property(QLatin1String(TToviRatio::KeyDisplayOrder)).toInt());
    return made;
}

} // namespace Sedra
