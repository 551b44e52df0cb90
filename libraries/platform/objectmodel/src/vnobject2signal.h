#pragma once

#include "vnobject2analysis.h"

/// A signal of an analysis (a chromatogram). Its files live in the folder of
/// its analysis, so the kind has no folder of its own.
class VNOBJECTMODEL_EXPORT VNObject2Signal : public VNObject2Analysis
{
public:
    explicit VNObject2Signal(const QString& name = QString(), const VNObject2Analysis* analysis = nullptr);
    ~VNObject2Signal() override;
    int type() const override { return VNObjectTypeSignal; }

    /// The analysis the signal was measured in; not owned.
    const VNObject2Analysis* analysis() const { return m_analysis; }
    void setAnalysis(const VNObject2Analysis* analysis) { m_analysis = analysis; }

private:
    const VNObject2Analysis* m_analysis;
};
