#pragma once

#include "tindexationmapper.h"

namespace Sedra {

/// Global indexations (kind 528): indexations over a whole project.
class VNSEDRA_EXPORT TGlobalIndexationMapper : public TIndexationMapper
{
public:
    TGlobalIndexationMapper();
    ~TGlobalIndexationMapper() override;
};

} // namespace Sedra
