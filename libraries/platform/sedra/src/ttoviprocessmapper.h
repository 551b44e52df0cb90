#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

namespace Sedra {

/// Processing steps recorded in a reference database (kind 1029): an import,
/// a merge, a rebuild, with what it did and when, in the order they ran.
class VNSEDRA_EXPORT TToviProcessMapper : public TAbstractMapper
{
public:
    TToviProcessMapper();
    ~TToviProcessMapper() override;

    /// A new step; `name` identifies it and must be new.
    TPropertyObject* createProcess(const QString& name, const QString& description, bool flush = true) const;
    QString description(const VNObject2* process) const;
    /// The time the step was recorded (UTC, ISO 8601).
    QString date(const VNObject2* process) const;
};

} // namespace Sedra
