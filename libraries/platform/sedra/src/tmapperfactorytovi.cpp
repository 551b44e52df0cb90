#include "tmapperfactory.h"

#include "ttoviprocessmapper.h"

// The reference mappers are added here, one creator per reference kind.

namespace Sedra {

TAbstractMapper* TMapperFactory::createToviGraphMapper()
{
    return nullptr;
}

TAbstractMapper* TMapperFactory::createToviOverlayMapper()
{
    return nullptr;
}

TAbstractMapper* TMapperFactory::createToviProcessMapper()
{
    return new TToviProcessMapper;
}

TAbstractMapper* TMapperFactory::createToviEICMapper()
{
    return nullptr;
}

TAbstractMapper* TMapperFactory::createToviRatioMapper()
{
    return nullptr;
}

TAbstractMapper* TMapperFactory::createToviCompoundMapper()
{
    return nullptr;
}

TAbstractMapper* TMapperFactory::createToviJointMapper()
{
    return nullptr;
}

TAbstractMapper* TMapperFactory::createToviAliasMapper()
{
    return nullptr;
}

} // namespace Sedra
