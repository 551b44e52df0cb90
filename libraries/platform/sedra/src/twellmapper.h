#pragma once

#include "tabstractmapper.h"
#include "tmutableobject.h"

class VNObject2Well;

namespace Sedra {

/// Wells (kind 3): renameable records.
class VNSEDRA_EXPORT TWellMapper : public TAbstractMapper
{
public:
    TWellMapper();
    ~TWellMapper() override;

    TMutableObject* createWell(const QString& name, bool flush = true) const;
    const VNObject2Well* getWell(const QString& name) const;

protected:
    VNObject2* newObject(const QString& name) const override;
    TDatabaseObject* newRecord(VNObject2* object) const override;
};

} // namespace Sedra
