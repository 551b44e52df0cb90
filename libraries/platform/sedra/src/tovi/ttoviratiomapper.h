#pragma once

#include "ttoviabstractmapper.h"

namespace Sedra {

class TToviRatio;

/// Ratios, shown to users as parameters (kind 1025). The key is the
/// "Ratio ID", the name the master name; aliases of a ratio are found by
/// their value through the alias index.
class VNSEDRA_EXPORT TToviRatioMapper : public TToviAbstractMapper
{
public:
    TToviRatioMapper();
    ~TToviRatioMapper() override;

    /// A new ratio. An empty `ratioId` makes a new identifier; a negative
    /// `displayOrder` places the ratio after every other one. Null when the
    /// identifier is taken, the master name is empty or the database is
    /// read-only. Written at once when `flush` is true and no batch is open.
    TToviRatio* createRatio(const QString& ratioId, const QString& masterName, const QString& displayFormula,
                            const QString& formula, int displayOrder, const QString& studyType,
                            const QString& analysisType, const QString& processType, const QString& familyName,
                            const QString& expectedIons, const QString& literatureReference, bool flush = true) const;

    TToviRatio* ratio(const QString& key) const;
    TToviRatio* ratio(const VNObject2* object) const;
    /// The first ratio of this master name, or null.
    TToviRatio* getByMasterName(const QString& masterName) const;
    /// Every ratio of this master name, in creation order.
    QList<TToviRatio*> getAllByMasterName(const QString& masterName) const;
    /// The ratios (their objects) that have an alias of exactly this value,
    /// each once, in the order of the aliases' creation.
    QList<const VNObject2*> getByAliasesValue(const QString& value) const;
    /// Every ratio, in creation order.
    QList<TToviRatio*> ratioList() const;
    /// Every ratio by ascending display order (creation order among equals).
    QList<TToviRatio*> listByDisplayOrder() const;
    /// The largest display order in use (0 when there is no ratio).
    int maxDisplayOrder() const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;

protected:
    VNObject2* newObject(const QString& name) const override;
    TDatabaseObject* newRecord(VNObject2* object) const override;
};

} // namespace Sedra
