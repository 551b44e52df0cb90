#pragma once

#include "vnsedra_export.h"

#include <QString>
#include <QtGlobal>

namespace Sedra {

/// A parameter value stored for an analysis: the parameter's key and name in
/// the reference database, the value, or no value and the reason (in the
/// language of the computation).
struct VNSEDRA_EXPORT TParameterValueRow
{
    QString parameter;
    QString name;
    bool hasValue = false;
    double value = 0.0;
    QString reason;

    bool operator==(const TParameterValueRow& other) const
    {
        return parameter == other.parameter && name == other.name && hasValue == other.hasValue
            && (!hasValue || value == other.value) && reason == other.reason;
    }
};

} // namespace Sedra
