#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

namespace Sedra {

/// Compounds of a project (kind 1026 in a project database): the compounds
/// its analyses were interpreted with, by name, with their CAS number and
/// formula.
class VNSEDRA_EXPORT TCompoundMapper : public TAbstractMapper
{
public:
    TCompoundMapper();
    ~TCompoundMapper() override;

    TPropertyObject* createCompound(const QString& name, const QString& cas = QString(),
                                    const QString& formula = QString(), bool flush = true) const;
    /// The compound of a CAS number, or null.
    const VNObject2* getByCas(const QString& cas) const;
    QString cas(const VNObject2* compound) const;
    QString formula(const VNObject2* compound) const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;
};

} // namespace Sedra
