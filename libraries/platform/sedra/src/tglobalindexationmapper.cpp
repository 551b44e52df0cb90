#include "tglobalindexationmapper.h"

namespace Sedra {

TGlobalIndexationMapper::TGlobalIndexationMapper()
    : TIndexationMapper(VNObjectTypeGlobalIndexation)
{ }

TGlobalIndexationMapper::~TGlobalIndexationMapper() = default;

} // namespace Sedra
