#pragma once

#include "tanalysisnoise.h"
#include "vnobject2.h"

#include <QList>
#include <QPair>

/// An analysis: one measured run, kept in its own folder under the project's
/// analysis folder.
class VNOBJECTMODEL_EXPORT VNObject2Analysis : public VNObject2
{
public:
    explicit VNObject2Analysis(const QString& name = QString());
    ~VNObject2Analysis() override;
    int type() const override { return VNObjectTypeAnalysis; }
    /// The sub-folder of the project folder that holds the analyses.
    static QString folderName();

    // What the acquisition file tells of the run. The storage fills these
    // when it opens the file; a free analysis answers the defaults.
    /// The acquisition system (768: parent/daughter transitions).
    unsigned int acquisitionSystem() const { return m_acquisitionSystem; }
    void setAcquisitionSystem(unsigned int system) { m_acquisitionSystem = system; }
    /// The (parent, daughter) masses of the transitions, in the order of the spectra's points.
    QList<QPair<float, float>> parentDaughter() const { return m_parentDaughter; }
    void setParentDaughter(const QList<QPair<float, float>>& transitions) { m_parentDaughter = transitions; }
    /// True when the run holds mass spectra or several channels.
    bool isMulticanal() const { return m_multicanal; }
    void setMulticanal(bool multicanal) { m_multicanal = multicanal; }

    /// The noise record: computed from the measurements on demand (by
    /// VNModelise), so it may change on an analysis handed out as const.
    TAnalysisNoise& noise() const { return m_noise; }

private:
    unsigned int m_acquisitionSystem = 0;
    QList<QPair<float, float>> m_parentDaughter;
    bool m_multicanal = false;
    mutable TAnalysisNoise m_noise;
};
