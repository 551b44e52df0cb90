#include "tdatasetmapper.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "tmutableobject.h"

#include <vnobject2dataset.h>

namespace Sedra {

TDatasetMapper::TDatasetMapper()
    : TAbstractMapper(VNObjectTypeDataset)
{ }

TDatasetMapper::~TDatasetMapper() = default;

VNObject2* TDatasetMapper::newObject(const QString& name) const
{
    return new VNObject2Dataset(name);
}

TDatabaseObject* TDatasetMapper::newRecord(VNObject2* object) const
{
    return new TMutableObject(object);
}

TMutableObject* TDatasetMapper::createDataset(const QString& name, bool flush) const
{
    return static_cast<TMutableObject*>(create(name, flush));
}

const VNObject2Dataset* TDatasetMapper::getDataset(const QString& name) const
{
    return dynamic_cast<const VNObject2Dataset*>(get(name));
}

bool TDatasetMapper::save(const VNObject2Dataset* dataset, bool flush) const
{
    TDatabaseObject* found = record(dataset);
    if (!found || !checkWritable())
        return false;
    const bool write = flush && !database()->consumeDatasetSaveHold() && header()->isOpen();
    return header()->saveObjectToFile(found, write);
}

} // namespace Sedra
