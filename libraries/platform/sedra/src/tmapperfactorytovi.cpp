#include "tmapperfactory.h"

#include "ttovialiasmapper.h"
#include "ttovicompoundmapper.h"
#include "ttovieicmapper.h"
#include "ttovigraphmapper.h"
#include "ttovijointmapper.h"
#include "ttovioverlaymapper.h"
#include "ttoviprocessmapper.h"
#include "ttoviratiomapper.h"

// The creators of the reference kinds, asked for by reference databases only.

namespace Sedra {

TAbstractMapper* TMapperFactory::createToviGraphMapper()
{
    return new TToviGraphMapper;
}

TAbstractMapper* TMapperFactory::createToviOverlayMapper()
{
    return new TToviOverlayMapper;
}

TAbstractMapper* TMapperFactory::createToviProcessMapper()
{
    return new TToviProcessMapper;
}

TAbstractMapper* TMapperFactory::createToviEICMapper()
{
    return new TToviEICMapper;
}

TAbstractMapper* TMapperFactory::createToviRatioMapper()
{
    return new TToviRatioMapper;
}

TAbstractMapper* TMapperFactory::createToviCompoundMapper()
{
    return new TToviCompoundMapper;
}

TAbstractMapper* TMapperFactory::createToviJointMapper()
{
    return new TToviJointMapper;
}

TAbstractMapper* TMapperFactory::createToviAliasMapper()
{
    return new TToviAliasMapper;
}

} // namespace Sedra
