#pragma once

#include "tabstractmapper.h"
#include "tmutableobject.h"

class VNObject2Dataset;

namespace Sedra {

/// Datasets (kind 18): renameable records whose saves the database may hold
/// back (TDatabase::forceDisableDatasetSave); held-back saves stay marked
/// modified and go with the next flush.
class VNSEDRA_EXPORT TDatasetMapper : public TAbstractMapper
{
public:
    TDatasetMapper();
    ~TDatasetMapper() override;

    TMutableObject* createDataset(const QString& name, bool flush = true) const;
    const VNObject2Dataset* getDataset(const QString& name) const;
    /// Writes the dataset's record (when `flush` is true and saves are not
    /// held back). False for an unknown dataset or a refused write.
    bool save(const VNObject2Dataset* dataset, bool flush) const;

protected:
    VNObject2* newObject(const QString& name) const override;
    TDatabaseObject* newRecord(VNObject2* object) const override;
};

} // namespace Sedra
