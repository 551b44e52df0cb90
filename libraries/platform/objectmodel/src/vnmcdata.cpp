#include "vnmcdata.h"

#include "tdatacore.h"

#include <algorithm>

namespace {
const float NoValue = -9999.0f;

float* newCopy(const QVector<float>& values)
{
    if (values.isEmpty())
        return nullptr;
    auto* copy = new float[size_t(values.size())];
    std::copy(values.cbegin(), values.cend(), copy);
    return copy;
}
} // namespace

VNMCData::VNMCData(int count, const float* retentions)
    : m_count(count > 0 ? count : 0)
{
    setRetentions(retentions);
}

VNMCData::VNMCData(int count, const float* retentions, const float* abundances, float offset,
                   const QPair<float, float>& window)
    : VNMCData(count, retentions)
{
    m_offset = offset;
    m_window = window;
    addCanal(abundances, VNIon(window.first, window.second));
}

VNMCData::~VNMCData() = default;

VNMCData* VNMCData::copy() const
{
    auto* made = new VNMCData(0, nullptr);
    copyTo(made);
    return made;
}

void VNMCData::copyTo(VNMCData* target) const
{
    if (!target || target == this)
        return;
    target->m_count = m_count;
    target->m_retentions = m_retentions;
    target->m_tic = m_tic;
    target->m_canals = m_canals;
    target->m_ions = m_ions;
    target->m_names = m_names;
    target->m_offset = m_offset;
    target->m_window = m_window;
    target->m_run = m_run;
}

VNMCData* VNMCData::extractCanal(const VNIon* ion) const
{
    if (!ion || !ion->isValid() || m_count < 1 || m_retentions.isEmpty())
        return nullptr;
    const float low = ion->lowerMass() + ion->offset();
    const float high = ion->upperMass() + ion->offset();
    QVector<float> sum(m_count, 0.0f);
    bool found = false;
    for (int c = 0; c < m_canals.size(); ++c) {
        const VNIon& own = m_ions[c];
        if (!own.isValid() || own.lowerMass() + own.offset() < low || own.upperMass() + own.offset() > high)
            continue;
        found = true;
        for (int i = 0; i < m_count; ++i)
            sum[i] += m_canals[c][i];
    }
    if (!found)
        return nullptr;
    return new VNMCData(m_count, m_retentions.constData(), sum.constData(), ion->offset(), qMakePair(low, high));
}

TDataCore* VNMCData::toTData() const
{
    if (m_retentions.isEmpty())
        return nullptr;
    float* tic = toTic();
    if (!tic)
        return nullptr;
    auto* curve = new TDataCore(m_count, m_retentions.constData(), tic);
    delete[] tic;
    return curve;
}

float* VNMCData::toTic() const
{
    if (!m_tic.isEmpty())
        return newCopy(m_tic);
    if (m_canals.isEmpty() || m_count < 1)
        return nullptr;
    QVector<float> sum(m_count, 0.0f);
    for (const QVector<float>& canal : m_canals) {
        for (int i = 0; i < m_count; ++i)
            sum[i] += canal[i];
    }
    return newCopy(sum);
}

bool VNMCData::isMultiChannel() const
{
    return m_canals.size() > 1;
}

void VNMCData::convertToMono()
{
    if (m_tic.isEmpty() && !m_canals.isEmpty()) {
        float* tic = toTic();
        setTic(tic);
        delete[] tic;
    }
    m_canals.clear();
    m_ions.clear();
    m_names.clear();
}

float* VNMCData::getRets() const
{
    return newCopy(m_retentions);
}

float VNMCData::getRetention(int i) const
{
    return i >= 0 && i < m_retentions.size() ? m_retentions[i] : NoValue;
}

float VNMCData::getCanalAbund(int channel, int scan) const
{
    if (channel < 0 || channel >= m_canals.size() || scan < 0 || scan >= m_canals[channel].size())
        return NoValue;
    return m_canals[channel][scan];
}

bool VNMCData::addCanal(const float* values, const VNIon& ion, const QString& name)
{
    if (!values || m_count < 1)
        return false;
    m_canals.append(QVector<float>(values, values + m_count));
    m_ions.append(ion);
    m_names.append(name.isEmpty() ? ion.label() : name);
    return true;
}

VNIon VNMCData::canalIon(int channel) const
{
    return m_ions.value(channel);
}

QString VNMCData::canalName(int channel) const
{
    return m_names.value(channel);
}

void VNMCData::setRetentions(const float* values)
{
    m_retentions = values && m_count > 0 ? QVector<float>(values, values + m_count) : QVector<float>();
}

void VNMCData::setTic(const float* values)
{
    m_tic = values && m_count > 0 ? QVector<float>(values, values + m_count) : QVector<float>();
}

void VNMCData::setNbScans(int count)
{
    m_count = count > 0 ? count : 0;
    if (m_retentions.size() != m_count)
        m_retentions.clear();
    if (m_tic.size() != m_count)
        m_tic.clear();
    for (int c = m_canals.size() - 1; c >= 0; --c) {
        if (m_canals[c].size() != m_count) {
            m_canals.removeAt(c);
            m_ions.removeAt(c);
            m_names.removeAt(c);
        }
    }
}
