#include "vnmapperfactory.h"

#include "tanalysismapper.h"

VNMapperFactory::VNMapperFactory() = default;

VNMapperFactory::~VNMapperFactory() = default;

Sedra::TAbstractMapper* VNMapperFactory::createAnalysisMapper()
{
    return new Sedra::TAnalysisMapper(QStringLiteral("tcm"));
}
