#include "vnmcdatadynamic.h"

#include "vndatabase.h"

#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tdatacore.h>
#include <vnobject2analysis.h>

#include <QVector>

#include <memory>

namespace {
const float NoValue = -9999.0f;

// The file's values of the first `count` scans as a new float array.
float* floats(const double* values, int count)
{
    if (!values || count < 1)
        return nullptr;
    auto* copy = new float[size_t(count)];
    for (int i = 0; i < count; ++i)
        copy[i] = float(values[i]);
    return copy;
}
} // namespace

VNMCDataDynamic::VNMCDataDynamic(const VNObject2Analysis* analysis)
    : VNMCData(0, nullptr)
    , m_object(analysis)
{
    TCMFile* tcm = nullptr;
    if (analysis && VNDatabase::analysisTCM(analysis, &tcm) >= 0 && tcm)
        setNbScans(tcm->nbScans());
    // Every bound copy holds the file's content: it goes with the last one.
    if (m_object) {
        TCMFileRegistry::hold(VNDatabase::analysisTCMPath(m_object));
        m_holds = true;
    }
}

bool VNMCDataDynamic::dropHold()
{
    const bool held = m_holds;
    m_holds = false;
    return held;
}

VNMCDataDynamic::~VNMCDataDynamic()
{
    if (m_object)
        VNDatabase::releaseMCData(this);
}

VNMCData* VNMCDataDynamic::copy() const
{
    auto* made = new VNMCDataDynamic(nullptr);
    copyTo(made);
    made->m_object = m_object;
    if (m_object) {
        TCMFileRegistry::hold(VNDatabase::analysisTCMPath(m_object));
        made->m_holds = true;
    }
    return made;
}

float* VNMCDataDynamic::toTic() const
{
    if (float* own = VNMCData::toTic())
        return own;
    if (!m_object)
        return nullptr;
    TCMFile* tcm = nullptr;
    VNDatabase::analysisTCM(m_object, &tcm);
    return tcm ? floats(tcm->tic(), nbScans()) : nullptr;
}

float* VNMCDataDynamic::getRets() const
{
    if (float* own = VNMCData::getRets())
        return own;
    if (!m_object)
        return nullptr;
    TCMFile* tcm = nullptr;
    VNDatabase::analysisTCM(m_object, &tcm);
    return tcm ? floats(tcm->rtime(), tcm->nbScans()) : nullptr;
}

float VNMCDataDynamic::getRetention(int i) const
{
    if (hasRetentions())
        return VNMCData::getRetention(i);
    TCMFile* tcm = nullptr;
    if (m_object)
        VNDatabase::analysisTCM(m_object, &tcm);
    const double* rtime = tcm ? tcm->rtime() : nullptr;
    if (!rtime || i < 0 || i >= tcm->nbScans())
        return NoValue;
    return float(rtime[i]);
}

float VNMCDataDynamic::getCanalAbund(int channel, int scan) const
{
    // Only the base is asked: see the class comment.
    if (canalCount() == 0)
        return NoValue;
    return VNMCData::getCanalAbund(channel, scan);
}

bool VNMCDataDynamic::isMultiChannel() const
{
    return m_object ? m_object->isMulticanal() : VNMCData::isMultiChannel();
}

TDataCore* VNMCDataDynamic::toTData() const
{
    if (TDataCore* own = VNMCData::toTData())
        return own;
    if (!m_object)
        return nullptr;
    TCMFile* tcm = nullptr;
    const int count = VNDatabase::analysisTCM(m_object, &tcm);
    if (!tcm || count < 1)
        return nullptr;
    std::unique_ptr<float[]> rets(floats(tcm->rtime(), count));
    std::unique_ptr<float[]> tic(floats(tcm->tic(), count));
    if (!rets || !tic)
        return nullptr;
    return new TDataCore(count, rets.get(), tic.get());
}

VNMCData* VNMCDataDynamic::extractCanal(const VNIon* ion) const
{
    if (nbScans() < 1 || !ion)
        return nullptr;
    if (VNMCData* own = VNMCData::extractCanal(ion))
        return own;
    if (!m_object)
        return nullptr;
    TCMFile* tcm = nullptr;
    VNDatabase::analysisTCM(m_object, &tcm);
    if (!tcm)
        return nullptr;
    const float low = ion->lowerMass() + ion->offset();
    const float high = ion->upperMass() + ion->offset();
    if (!tcm->mzRangeExist(low, high))
        return nullptr;
    const int count = nbScans();
    QVector<float> abundances(count, 0.0f);
    if (tcm->ionAtFullRange(abundances.data(), low, high) < 0)
        return nullptr;
    std::unique_ptr<float[]> rets(floats(tcm->rtime(), count));
    if (!rets)
        return nullptr;
    return new VNMCData(count, rets.get(), abundances.constData(), ion->offset(), qMakePair(low, high));
}

void VNMCDataDynamic::convertToMono()
{
    VNMCData::convertToMono();
    if (!m_object)
        return;
    TCMFile* tcm = nullptr;
    VNDatabase::analysisTCM(m_object, &tcm);
    if (tcm) {
        const int count = nbScans();
        if (!hasTic()) {
            std::unique_ptr<float[]> tic(floats(tcm->tic(), count));
            setTic(tic.get());
        }
        if (!hasRetentions()) {
            std::unique_ptr<float[]> rets(floats(tcm->rtime(), count));
            setRetentions(rets.get());
        }
        VNDatabase::releaseMCData(this);
        m_object = nullptr;
    }
}
