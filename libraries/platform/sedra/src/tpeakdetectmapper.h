#pragma once

#include "tindexationmapper.h"

namespace Sedra {

/// Peak detections (kind 264): indexations of detected peaks.
class VNSEDRA_EXPORT TPeakDetectMapper : public TIndexationMapper
{
public:
    TPeakDetectMapper();
    ~TPeakDetectMapper() override;
};

} // namespace Sedra
