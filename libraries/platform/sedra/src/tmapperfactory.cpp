#include "tmapperfactory.h"

#include "tanalysismapper.h"
#include "tcompoundmapper.h"
#include "tdatasetmapper.h"
#include "tglobalindexationmapper.h"
#include "tidentificationmapper.h"
#include "tindexationmapper.h"
#include "tpeakdetectmapper.h"
#include "tsignalmapper.h"
#include "tslicemapper.h"
#include "tvariablemapper.h"
#include "twellmapper.h"

namespace Sedra {

TMapperFactory::TMapperFactory() = default;

TMapperFactory::~TMapperFactory() = default;

TAbstractMapper* TMapperFactory::createAnalysisMapper()
{
    return new TAnalysisMapper;
}

TAbstractMapper* TMapperFactory::createCompoundMapper()
{
    return new TCompoundMapper;
}

TAbstractMapper* TMapperFactory::createDatasetMapper()
{
    return new TDatasetMapper;
}

TAbstractMapper* TMapperFactory::createGlobalIndexationMapper()
{
    return new TGlobalIndexationMapper;
}

TAbstractMapper* TMapperFactory::createIdentificationMapper()
{
    return new TIdentificationMapper;
}

TAbstractMapper* TMapperFactory::createIndexationMapper()
{
    return new TIndexationMapper;
}

TAbstractMapper* TMapperFactory::createPeakDetectMapper()
{
    return new TPeakDetectMapper;
}

TAbstractMapper* TMapperFactory::createSignalMapper()
{
    return new TSignalMapper;
}

TAbstractMapper* TMapperFactory::createSliceMapper()
{
    return new TSliceMapper;
}

TAbstractMapper* TMapperFactory::createVariableMapper()
{
    return new TVariableMapper;
}

TAbstractMapper* TMapperFactory::createWellMapper()
{
    return new TWellMapper;
}

static void appendMade(QList<TAbstractMapper*>& list, TAbstractMapper* mapper)
{
    if (mapper)
        list.append(mapper);
}

QList<TAbstractMapper*> TMapperFactory::createProjectMappers()
{
    QList<TAbstractMapper*> made;
    appendMade(made, createAnalysisMapper());
    appendMade(made, createCompoundMapper());
    appendMade(made, createDatasetMapper());
    appendMade(made, createGlobalIndexationMapper());
    appendMade(made, createIdentificationMapper());
    appendMade(made, createIndexationMapper());
    appendMade(made, createPeakDetectMapper());
    appendMade(made, createSignalMapper());
    appendMade(made, createSliceMapper());
    appendMade(made, createVariableMapper());
    appendMade(made, createWellMapper());
    return made;
}

QList<TAbstractMapper*> TMapperFactory::createReferenceMappers()
{
    QList<TAbstractMapper*> made;
    appendMade(made, createToviGraphMapper());
    appendMade(made, createToviOverlayMapper());
    appendMade(made, createToviProcessMapper());
    appendMade(made, createToviEICMapper());
    appendMade(made, createToviRatioMapper());
    appendMade(made, createToviCompoundMapper());
    appendMade(made, createToviJointMapper());
    appendMade(made, createToviAliasMapper());
    return made;
}

} // namespace Sedra
