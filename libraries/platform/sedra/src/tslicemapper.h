#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

class VNObject2Analysis;

namespace Sedra {

/// Slices (kind 20): a named retention-time window of an analysis. Its key
/// is "<analysis key>/<slice name>"; it goes when its analysis goes.
class VNSEDRA_EXPORT TSliceMapper : public TAbstractMapper
{
public:
    TSliceMapper();
    ~TSliceMapper() override;

    /// Refused (null) when `end` is not after `start`.
    TPropertyObject* createSlice(const VNObject2Analysis* analysis, const QString& name, double start, double end,
                                 bool flush = true) const;
    /// Slices need their analysis: always refused here.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
    QList<const VNObject2*> slices(const VNObject2Analysis* analysis) const;
    /// The window of a slice; false for an unknown slice.
    bool range(const VNObject2* slice, double* start, double* end) const;
};

} // namespace Sedra
