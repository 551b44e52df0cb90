#pragma once

#include "vnion.h"
#include "vnobjectmodel_export.h"

#include <QPair>
#include <QStringList>
#include <QVector>

#include <memory>

class TAcquisitionRun;
class TDataCore;

/// Multichannel (chromatogram) data held in memory: `count` scans, their
/// retention times (minutes), their total ion current, and any number of
/// channels, each an abundance per scan with the ion (mass window) or the
/// detector name it was measured on.
///
/// Arrays handed out (`getRets`, `toTic`, ...) are new copies owned by the
/// caller (delete[]). Values that do not exist are answered with null or
/// -9999.0, never with an error.
///
/// Data made from an instrument run may carry that run (`sourceRun`): the
/// object model never reads it (it only knows the class by name), but the
/// storage writes its spectra when the data are saved, so nothing measured is
/// lost on the way into a project.
class VNOBJECTMODEL_EXPORT VNMCData
{
public:
    /// `count` scans with the given retention times (copied; null for none).
    VNMCData(int count, const float* retentions);
    /// Single-channel data, as an extracted ion gives them: the abundances of
    /// the mass window `window` (the offset `offset` already applied to it).
    /// Arrays are copied.
    VNMCData(int count, const float* retentions, const float* abundances, float offset,
             const QPair<float, float>& window);
    virtual ~VNMCData();
    VNMCData(const VNMCData&) = delete;
    VNMCData& operator=(const VNMCData&) = delete;

    /// A new object holding the same data, owned by the caller.
    virtual VNMCData* copy() const;
    /// The channels whose mass window lies inside the ion's shifted window,
    /// summed into new single-channel data; null when none does.
    virtual VNMCData* extractCanal(const VNIon* ion) const;
    /// Retention times and TIC as one curve, owned by the caller; null
    /// without both.
    virtual TDataCore* toTData() const;
    /// The TIC (or, without one, the sum of the channels), owned by the caller.
    virtual float* toTic() const;
    /// More than one channel.
    virtual bool isMultiChannel() const;
    /// Becomes mono-channel: the TIC is kept (made from the channels when
    /// missing) and the channels go.
    virtual void convertToMono();
    /// The retention times, owned by the caller; null when there are none.
    virtual float* getRets() const;
    /// Retention time of scan i; -9999.0 outside or without times.
    virtual float getRetention(int i) const;
    /// Abundance of `channel` at `scan`; -9999.0 outside or without channels.
    virtual float getCanalAbund(int channel, int scan) const;

    /// Copies this object's own content (arrays, channels, carried run) into
    /// `target`, replacing its own.
    void copyTo(VNMCData* target) const;

    int nbScans() const { return m_count; }
    int canalCount() const { return m_canals.size(); }
    /// Adds a channel of `nbScans()` values (copied); false when `values` is null.
    bool addCanal(const float* values, const VNIon& ion, const QString& name = QString());
    VNIon canalIon(int channel) const;
    QString canalName(int channel) const;
    /// The offset and mass window given to the single-channel constructor.
    float offset() const { return m_offset; }
    QPair<float, float> window() const { return m_window; }

    /// Installs `nbScans()` retention times or TIC values (copied); null removes them.
    void setRetentions(const float* values);
    void setTic(const float* values);
    bool hasRetentions() const { return !m_retentions.isEmpty(); }
    bool hasTic() const { return !m_tic.isEmpty(); }

    /// The instrument run these data were made from, if any (see above).
    const std::shared_ptr<const TAcquisitionRun>& sourceRun() const { return m_run; }
    void setSourceRun(const std::shared_ptr<const TAcquisitionRun>& run) { m_run = run; }

protected:
    /// Changes the scan count; arrays of another length are dropped.
    void setNbScans(int count);

private:
    int m_count = 0;
    QVector<float> m_retentions;
    QVector<float> m_tic;
    QVector<QVector<float>> m_canals;
    QVector<VNIon> m_ions;
    QStringList m_names;
    float m_offset = 0.0f;
    QPair<float, float> m_window{0.0f, 0.0f};
    std::shared_ptr<const TAcquisitionRun> m_run;
};
