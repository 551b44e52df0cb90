#pragma once

#include "vndatabase_export.h"

#include <tcompoundmeasure.h>
#include <tparametercalculator.h>

#include <QCoreApplication>
#include <QList>
#include <QStringList>

class VNDatabase;
class VNObject2Analysis;
class VNToviDatabaseInterface;

/// The parameters (ratios) of a reference database computed for the analyses
/// of a project: definitions read from the reference database, values from
/// what identification measured in an analysis, stored in the project
/// database so that they are read back without computing again.
class VNDATABASE_EXPORT VNParameterValues
{
    Q_DECLARE_TR_FUNCTIONS(VNParameterValues)
public:
    /// Every parameter of `reference` (the merged reference database when
    /// null), in display order: key, name, formula and process type.
    static QList<TParameterDefinition> definitions(VNToviDatabaseInterface* reference = nullptr);
    /// The short names of the compounds of `reference`: what formulas may name.
    static QStringList compoundNames(VNToviDatabaseInterface* reference = nullptr);

    /// Computes every parameter of `reference` for `analysis` from its
    /// `measures` and stores the values in `project`. The values, one per
    /// parameter; an empty list with `error` (translated) when there is no
    /// reference database, the analysis is not one of the project's or the
    /// values cannot be stored.
    static QList<TParameterValue> compute(VNDatabase* project, const VNObject2Analysis* analysis,
                                          const TCompoundMeasures& measures,
                                          VNToviDatabaseInterface* reference = nullptr, QString* error = nullptr);
    /// The values stored for `analysis`, in the order computed; empty when none are.
    static QList<TParameterValue> stored(const VNDatabase* project, const VNObject2Analysis* analysis);
};
