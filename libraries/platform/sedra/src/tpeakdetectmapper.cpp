#include "tpeakdetectmapper.h"

namespace Sedra {

TPeakDetectMapper::TPeakDetectMapper()
    : TIndexationMapper(VNObjectTypePeakDetection)
{ }

TPeakDetectMapper::~TPeakDetectMapper() = default;

} // namespace Sedra
