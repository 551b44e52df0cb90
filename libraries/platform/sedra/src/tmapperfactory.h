#pragma once

#include "vnsedra_export.h"

#include <QList>

namespace Sedra {

class TAbstractMapper;

/// Makes the mappers of a database, one creator per kind. A database asks for
/// the project creators (analysis ... well) or, when it is a reference
/// database, for the reference ones (graph ... alias). Every creator returns a
/// new mapper owned by the caller, or null when the kind is not offered.
class VNSEDRA_EXPORT TMapperFactory
{
public:
    TMapperFactory();
    virtual ~TMapperFactory();
    TMapperFactory(const TMapperFactory&) = delete;
    TMapperFactory& operator=(const TMapperFactory&) = delete;

    virtual TAbstractMapper* createAnalysisMapper();
    virtual TAbstractMapper* createCompoundMapper();
    virtual TAbstractMapper* createDatasetMapper();
    virtual TAbstractMapper* createGlobalIndexationMapper();
    virtual TAbstractMapper* createIdentificationMapper();
    virtual TAbstractMapper* createIndexationMapper();
    virtual TAbstractMapper* createPeakDetectMapper();
    virtual TAbstractMapper* createSignalMapper();
    virtual TAbstractMapper* createSliceMapper();
    virtual TAbstractMapper* createVariableMapper();
    virtual TAbstractMapper* createWellMapper();
    virtual TAbstractMapper* createToviGraphMapper();
    virtual TAbstractMapper* createToviOverlayMapper();
    virtual TAbstractMapper* createToviProcessMapper();
    virtual TAbstractMapper* createToviEICMapper();
    virtual TAbstractMapper* createToviRatioMapper();
    virtual TAbstractMapper* createToviCompoundMapper();
    virtual TAbstractMapper* createToviJointMapper();
    virtual TAbstractMapper* createToviAliasMapper();

    /// Every project mapper, in creator order (nulls left out).
    QList<TAbstractMapper*> createProjectMappers();
    /// Every reference mapper, in creator order (nulls left out).
    QList<TAbstractMapper*> createReferenceMappers();
};

} // namespace Sedra
