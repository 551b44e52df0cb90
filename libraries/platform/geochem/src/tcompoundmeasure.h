#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

/// What identification found for one reference compound in one analysis: the
/// measures a parameter's formula reads, or why there are none. Identification
/// produces these; parameter values and diagrams consume them, so the two
/// never need to know how the other works.
struct TCompoundMeasure
{
    QString compoundId; ///< the reference compound's uid
    QString shortName;  ///< as the parameters' formulas write it ("Pr", "n-C17", "Ts")
    double ion = 0.0;   ///< m/z of the chromatogram it was found on; 0 for the TIC or a detector channel
    bool found = false;
    double apex = 0.0; ///< minutes
    double area = 0.0;
    double height = 0.0;
    double retentionIndex = qQNaN(); ///< of the apex, when the analysis is calibrated
    QString reason;                  ///< why it was not found (translated); empty when found
};

using TCompoundMeasures = QList<TCompoundMeasure>;
