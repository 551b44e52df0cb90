#pragma once

#include "tcompoundmeasure.h"
#include "tformula.h"
#include "vngeochem_export.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

/// A parameter as the reference database defines it: its key, its name, the
/// formula over compound short names and the process type that says what the
/// formula reads ("Peak area ratio", "Peak height ratio").
struct TParameterDefinition
{
    QString key;
    QString name;
    QString formula;
    QString processType;
};

/// The value of one parameter for one analysis, or why there is none.
struct TParameterValue
{
    QString key;
    QString name;
    bool ok = false;
    double value = 0.0;
    /// Why there is no value (translated); empty when there is one.
    QString reason;
};

/// Computes a reference database's parameters for the compounds identified in
/// an analysis. Formulas are read once, over the reference compounds' short
/// names, and evaluated for each analysis on the areas of the compounds found,
/// or on their heights when the parameter's process type speaks of heights.
/// A compound that was not found, a division by zero or a formula that cannot
/// be read give the parameter no value and a reason, never a number.
class VNGEOCHEM_EXPORT TParameterCalculator
{
public:
    enum class Measure { Area, Height };

    TParameterCalculator() = default;
    /// `compoundNames`: every short name a formula may use (the reference
    /// compounds'), so that the longest name wins where names overlap.
    TParameterCalculator(const QList<TParameterDefinition>& parameters, const QStringList& compoundNames);

    /// What a parameter of that process type reads: heights when it names
    /// them ("Peak height ratio", "Rapport de hauteurs"), areas otherwise.
    static Measure measureFor(const QString& processType);

    const QList<TParameterDefinition>& parameters() const { return m_parameters; }

    /// One value per parameter, in the parameters' order.
    QList<TParameterValue> compute(const TCompoundMeasures& measures) const;

private:
    QList<TParameterDefinition> m_parameters;
    QVector<TFormula> m_formulas;
};
