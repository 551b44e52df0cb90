#pragma once

#include "vndatabase_export.h"

#include <vnmcdata.h>

class VNObject2Analysis;

/// The multichannel data of one analysis, read lazily from its acquisition
/// file. While bound to the analysis it owns no copy of the measurements:
/// each query asks the in-memory base first and, when the base holds nothing,
/// reads the analysis' loaded file. `convertToMono` detaches it into plain
/// in-memory data.
///
/// Kept on purpose: a bound object answers -9999.0 from `getCanalAbund` for
/// every channel (the file is never read there), while `getRetention` reads
/// the file.
class VNDATABASE_EXPORT VNMCDataDynamic : public VNMCData
{
public:
    /// Bound to `analysis` (not owned); the scan count is the file's, 0
    /// without a file or analysis.
    explicit VNMCDataDynamic(const VNObject2Analysis* analysis);
    /// Releases the file content when still bound.
    ~VNMCDataDynamic() override;

    VNMCData* copy() const override;
    VNMCData* extractCanal(const VNIon* ion) const override;
    TDataCore* toTData() const override;
    float* toTic() const override;
    bool isMultiChannel() const override;
    void convertToMono() override;
    float* getRets() const override;
    float getRetention(int i) const override;
    float getCanalAbund(int channel, int scan) const override;

    /// The analysis whose file holds the data; null once detached.
    const VNObject2Analysis* object() const { return m_object; }
    /// Gives back this data's hold on the file content, once: true when it
    /// held it. The content goes with the last holder of the analysis' file.
    bool dropHold();

private:
    const VNObject2Analysis* m_object;
    bool m_holds = false;
};
