#pragma once

#include "tabstractmapper.h"
#include "tpropertyobject.h"

class VNObject2Dataset;
class VNObject2Variable;

namespace Sedra {

/// Variables (kind 19) of datasets. A variable stands for a pair of
/// reference keys and is found by that pair; its key is
/// "<dataset key>/<variable name>".
class VNSEDRA_EXPORT TVariableMapper : public TAbstractMapper
{
public:
    TVariableMapper();
    ~TVariableMapper() override;

    /// A new variable; `dataset` may be null for a variable of no dataset.
    TPropertyObject* createVariable(const VNObject2Dataset* dataset, const QString& name, const QString& reference1,
                                    const QString& reference2, bool flush = true) const;
    /// Variables need their reference keys: always refused here.
    TDatabaseObject* create(const QString& name, bool flush = true) const override;
    /// The first variable stored for the pair, or null.
    const VNObject2Variable* getReference(const QString& reference1, const QString& reference2) const;
    QList<const VNObject2Variable*> variables(const VNObject2Dataset* dataset) const;
    bool save(const VNObject2Variable* variable, bool flush) const;

    TDatabaseObject* recordFromRow(const THeaderRow& row) const override;

private:
    static QString pairTag(const QString& reference1, const QString& reference2);
};

} // namespace Sedra
