#include "tsignalmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tpropertyobject.h"

#include <vnobject2analysis.h>
#include <vnobject2signal.h>

#include <QHash>

namespace Sedra {

namespace {
const QString IonsProperty = QStringLiteral("Ions");
}

TSignalMapper::TSignalMapper()
    : TAbstractMapper(VNObjectTypeSignal)
{ }

TSignalMapper::~TSignalMapper() = default;

QString TSignalMapper::signalKey(const QString& analysisKey, const QString& signalName)
{
    return THeaderDatabase::childKey(analysisKey, signalName);
}

unsigned int TSignalMapper::analysisHash(const QString& analysisKey)
{
    return qHash(analysisKey);
}

QString TSignalMapper::hashTag(unsigned int hash, const QString& name)
{
    return QString::number(hash) + QLatin1Char('/') + name;
}

VNObject2* TSignalMapper::newObject(const QString& name) const
{
    return new VNObject2Signal(name);
}

TPropertyObject* TSignalMapper::createSignal(const VNObject2Analysis* analysis, const QString& name, bool flush) const
{
    if (!analysis || name.isEmpty() || !database() || analysis->type() != VNObjectTypeAnalysis
        || !database()->record(analysis))
        return nullptr;
    const QString key = signalKey(analysis->key(), name);
    if (exists(key))
        return nullptr;
    auto* signal = new VNObject2Signal(name, analysis);
    signal->setKey(key);
    auto* made = new TPropertyObject(signal);
    made->setParent(VNObjectTypeAnalysis, analysis->key());
    made->setTag(hashTag(analysisHash(analysis->key()), name));
    return static_cast<TPropertyObject*>(insertRecord(made, flush));
}

TDatabaseObject* TSignalMapper::create(const QString& name, bool flush) const
{
    Q_UNUSED(name)
    Q_UNUSED(flush)
    return nullptr;
}

bool TSignalMapper::signalExists(const QString& analysisName, const QString& signalName) const
{
    return getSignal(analysisName, signalName) != nullptr;
}

const VNObject2Signal* TSignalMapper::getSignal(const QString& analysisName, const QString& signalName) const
{
    // The analysis' key is its name unless the storage chose another one.
    const TDatabaseObject* analysis = header() ? header()->findByName(VNObjectTypeAnalysis, analysisName) : nullptr;
    const QString analysisKey = analysis ? analysis->key() : analysisName;
    return dynamic_cast<const VNObject2Signal*>(get(signalKey(analysisKey, signalName)));
}

const VNObject2Signal* TSignalMapper::getSignalByHash(const QString& name, unsigned int hash) const
{
    if (!header())
        return nullptr;
    // Signals carry (hash, name) as their tag: the look-up is one bucket.
    for (const TDatabaseObject* r : header()->findByTag(type(), hashTag(hash, name))) {
        if (r->name() == name)
            return dynamic_cast<const VNObject2Signal*>(r->object());
    }
    return nullptr;
}

QList<const VNObject2Signal*> TSignalMapper::signalList(const VNObject2Analysis* analysis) const
{
    QList<const VNObject2Signal*> list;
    if (!analysis || !header())
        return list;
    for (const TDatabaseObject* r : header()->findChildren(VNObjectTypeAnalysis, analysis->key(), type()))
        list.append(static_cast<const VNObject2Signal*>(r->object()));
    return list;
}

QList<float> TSignalMapper::signalIonList(const VNObject2Signal* signal) const
{
    QList<float> ions;
    const auto* r = dynamic_cast<const TPropertyObject*>(record(signal));
    if (!r)
        return ions;
    const QStringList parts = r->property(IonsProperty).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        bool ok = false;
        const float ion = part.toFloat(&ok);
        if (ok)
            ions.append(ion);
    }
    return ions;
}

bool TSignalMapper::setSignalIonList(const VNObject2Signal* signal, const QList<float>& ions, bool flush) const
{
    if (!record(signal))
        return false;
    QStringList parts;
    for (float ion : ions)
        parts.append(QString::number(double(ion), 'g', 9));
    return database()->setObjectProperty(signal, IonsProperty, parts.join(QLatin1Char(' ')), flush);
}

TDatabaseObject* TSignalMapper::recordFromRow(const THeaderRow& row) const
{
    TDatabaseObject* made = TAbstractMapper::recordFromRow(row);
    if (!made)
        return nullptr;
    made->setTag(hashTag(analysisHash(row.parentKey), row.name));
    // Analyses are read back before signals (kinds in ascending order).
    const TDatabaseObject* analysis = header() && row.parentType == VNObjectTypeAnalysis
        ? header()->findByKey(row.parentType, row.parentKey)
        : nullptr;
    if (analysis)
        static_cast<VNObject2Signal*>(made->object())
            ->setAnalysis(static_cast<const VNObject2Analysis*>(analysis->object()));
    return made;
}

} // namespace Sedra
