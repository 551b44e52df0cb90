#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

namespace Sedra {

/// Identifications (kind 260): a compound recognised at a retention time by
/// an indexation. Its key is "<indexation key>/<compound>"; it goes when its
/// indexation goes.
class VNSEDRA_EXPORT TIdentificationMapper : public TAbstractMapper
{
public:
    TIdentificationMapper();
    ~TIdentificationMapper() override;

    /// `indexation` is an indexation, peak detection or global indexation of
    /// this database.
    TPropertyObject* createIdentification(const VNObject2* indexation, const QString& compound, double retentionTime,
                                          bool flush = true) const;
    /// Identifications need their indexation: always refused here.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
    QList<const VNObject2*> identifications(const VNObject2* indexation) const;
    /// The retention time, or -9999.0 for an unknown identification.
    double retentionTime(const VNObject2* identification) const;
};

} // namespace Sedra
