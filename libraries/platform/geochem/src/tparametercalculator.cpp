#include "tparametercalculator.h"

#include <QCoreApplication>
#include <QHash>

#include <cmath>

namespace {

QString translate(const char* english, const char* french)
{
    return QCoreApplication::translate("TParameterCalculator", english, french);
}

} // namespace

TParameterCalculator::TParameterCalculator(const QList<TParameterDefinition>& parameters,
                                           const QStringList& compoundNames)
    : m_parameters(parameters)
{
    m_formulas.reserve(parameters.size());
    for (const TParameterDefinition& parameter : parameters)
        m_formulas.append(TFormula::parse(parameter.formula, compoundNames));
}

TParameterCalculator::Measure TParameterCalculator::measureFor(const QString& processType)
{
    // Process types are free text in the reference content; a type that
    // speaks of heights is the only one that changes what is read.
    const QString type = processType.toLower();
    return type.contains(QLatin1String("height")) || type.contains(QLatin1String("hauteur")) ? Measure::Height
                                                                                             : Measure::Area;
}

QList<TParameterValue> TParameterCalculator::compute(const TCompoundMeasures& measures) const
{
    QHash<QString, double> areas;
    QHash<QString, double> heights;
    QHash<QString, QString> notFound;
    for (const TCompoundMeasure& measure : measures) {
        if (measure.shortName.isEmpty())
            continue;
        if (!measure.found) {
            if (!notFound.contains(measure.shortName))
                notFound.insert(measure.shortName, measure.reason);
            continue;
        }
        // A compound measured twice (on two ions) counts once: the first
        // measure is the one identification ranks best.
        if (!areas.contains(measure.shortName)) {
            areas.insert(measure.shortName, measure.area);
            heights.insert(measure.shortName, measure.height);
        }
    }

    QList<TParameterValue> values;
    values.reserve(m_parameters.size());
    for (int i = 0; i < m_parameters.size(); ++i) {
        const TParameterDefinition& parameter = m_parameters.at(i);
        const TFormula& formula = m_formulas.at(i);
        TParameterValue value;
        value.key = parameter.key;
        value.name = parameter.name;
        if (!formula.isValid()) {
            value.reason = formula.error().isEmpty()
                ? translate("the parameter has no formula", "le paramètre n'a pas de formule")
                : formula.error();
            values.append(value);
            continue;
        }
        const bool height = measureFor(parameter.processType) == Measure::Height;
        const TFormula::Result result = formula.evaluate(height ? heights : areas);
        if (result.ok) {
            value.ok = true;
            value.value = result.value;
        } else {
            value.reason = result.reason;
            // Say why the missing compounds are missing, when identification said.
            QStringList why;
            for (const QString& name : formula.names()) {
                if (!areas.contains(name) && !notFound.value(name).isEmpty())
                    why << QStringLiteral("%1: %2").arg(name, notFound.value(name));
            }
            if (!why.isEmpty())
                value.reason += QStringLiteral(" (") + why.join(QStringLiteral("; ")) + QLatin1Char(')');
        }
        values.append(value);
    }
    return values;
}
