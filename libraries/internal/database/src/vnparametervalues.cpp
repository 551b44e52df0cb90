#include "vnparametervalues.h"

#include "vndatabase.h"
#include "vndatabasetovimgr.h"
#include "vntovidatabaseinterface.h"

#include <databasetype.h>
#include <tparametervalue.h>
#include <ttovicompound.h>
#include <ttoviratio.h>
#include <vnobject2analysis.h>

#include <algorithm>

namespace {

VNToviDatabaseInterface* orMerged(VNToviDatabaseInterface* reference)
{
    if (reference)
        return reference;
    VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
    return manager ? manager->db(Sedra::DatabaseToviMerged) : nullptr;
}

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

} // namespace

QList<TParameterDefinition> VNParameterValues::definitions(VNToviDatabaseInterface* reference)
{
    QList<TParameterDefinition> list;
    reference = orMerged(reference);
    if (!reference)
        return list;
    QList<QPair<int, TParameterDefinition>> ordered;
    for (const VNObject2* object : reference->getAllRatios()) {
        const Sedra::TToviRatio* ratio = object ? reference->getRatio(object) : nullptr;
        if (!ratio)
            continue;
        ordered.append(qMakePair(
            ratio->displayOrder(),
            TParameterDefinition{ratio->ratioId(), ratio->masterName(), ratio->formula(), ratio->processType()}));
    }
    std::stable_sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& entry : qAsConst(ordered))
        list.append(entry.second);
    return list;
}

QStringList VNParameterValues::compoundNames(VNToviDatabaseInterface* reference)
{
    QStringList names;
    reference = orMerged(reference);
    if (!reference)
        return names;
    for (const Sedra::TToviCompound* compound : reference->getAllToviCompounds()) {
        if (compound && !compound->orlName().isEmpty())
            names.append(compound->orlName());
    }
    return names;
}

QList<TParameterValue> VNParameterValues::compute(VNDatabase* project, const VNObject2Analysis* analysis,
                                                  const TCompoundMeasures& measures, VNToviDatabaseInterface* reference,
                                                  QString* error)
{
    reference = orMerged(reference);
    if (!reference) {
        setError(error,
                 tr("No reference database: the parameters are unknown",
                    "Aucune base de référence : les paramètres sont inconnus"));
        return {};
    }
    if (!project || !analysis || !project->record(analysis)) {
        setError(error, tr("The analysis is not one of the project's", "L'analyse n'est pas une analyse du projet"));
        return {};
    }
    const TParameterCalculator calculator(definitions(reference), compoundNames(reference));
    const QList<TParameterValue> values = calculator.compute(measures);
    QList<Sedra::TParameterValueRow> rows;
    rows.reserve(values.size());
    for (const TParameterValue& value : values) {
        Sedra::TParameterValueRow row;
        row.parameter = value.key;
        row.name = value.name;
        row.hasValue = value.ok;
        row.value = value.value;
        row.reason = value.reason;
        rows.append(row);
    }
    if (!project->parameterValuesSave(analysis, rows)) {
        setError(error,
                 tr("The parameter values of %1 cannot be stored",
                    "Les valeurs des paramètres de %1 "
                    "ne peuvent pas être enregistrées")
                     .arg(analysis->name()));
        return {};
    }
    return values;
}

QList<TParameterValue> VNParameterValues::stored(const VNDatabase* project, const VNObject2Analysis* analysis)
{
    QList<TParameterValue> values;
    if (!project)
        return values;
    for (const Sedra::TParameterValueRow& row : project->parameterValues(analysis)) {
        TParameterValue value;
        value.key = row.parameter;
        value.name = row.name;
        value.ok = row.hasValue;
        value.value = row.value;
        value.reason = row.reason;
        values.append(value);
    }
    return values;
}
