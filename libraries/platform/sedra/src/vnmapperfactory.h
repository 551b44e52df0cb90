#pragma once

#include "tmapperfactory.h"

/// The mapper factory of the application's project databases: its analyses
/// keep their acquisition file ("<name>.tcm") in their own folder.
class VNSEDRA_EXPORT VNMapperFactory : public Sedra::TMapperFactory
{
public:
    VNMapperFactory();
    ~VNMapperFactory() override;
    Sedra::TAbstractMapper* createAnalysisMapper() override;
};
