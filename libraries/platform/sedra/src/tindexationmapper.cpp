#include "tindexationmapper.h"

#include "tdatabase.h"
#include "tpropertyobject.h"

#include <vnobject2indexation.h>

namespace Sedra {

namespace {
const QString AnalysesProperty = QStringLiteral("Analyses");
// Analysis names may hold blanks and commas but no line feed.
const QChar Separator = QLatin1Char('\n');
} // namespace

TIndexationMapper::TIndexationMapper()
    : TAbstractMapper(VNObjectTypeIndexation)
{ }

TIndexationMapper::TIndexationMapper(int type)
    : TAbstractMapper(type)
{ }

TIndexationMapper::~TIndexationMapper() = default;

VNObject2* TIndexationMapper::newObject(const QString& name) const
{
    return new VNObject2Indexation(name, type());
}

TPropertyObject* TIndexationMapper::createIndexation(const QString& name, const QStringList& analyses, bool flush) const
{
    if (name.isEmpty() || !database() || exists(name))
        return nullptr;
    auto* made = new TPropertyObject(newObject(name));
    if (!analyses.isEmpty())
        made->setProperty(AnalysesProperty, analyses.join(Separator));
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

const VNObject2Indexation* TIndexationMapper::getIndexation(const QString& name) const
{
    return dynamic_cast<const VNObject2Indexation*>(get(name));
}

QStringList TIndexationMapper::analyses(const VNObject2* indexation) const
{
    const auto* r = dynamic_cast<const TPropertyObject*>(record(indexation));
    return r ? r->property(AnalysesProperty).split(Separator, Qt::SkipEmptyParts) : QStringList();
}

bool TIndexationMapper::setAnalyses(const VNObject2* indexation, const QStringList& analyses, bool flush) const
{
    if (!record(indexation))
        return false;
    return database()->setObjectProperty(indexation, AnalysesProperty, analyses.join(Separator), flush);
}

} // namespace Sedra
