#include "tacquisitionrun.h"

#include <algorithm>
#include <cmath>

TAcquisitionRun::TAcquisitionRun()
{
    scanOffsets.append(0);
}

void TAcquisitionRun::clear()
{
    const QString signal = signalName;
    *this = TAcquisitionRun();
    signalName = signal;
}

void TAcquisitionRun::appendScan(double time, const quint32* keys, const float* values, int count)
{
    if (scanOffsets.isEmpty())
        scanOffsets.append(0);
    double total = 0.0;
    if (count > 0) {
        const int start = masses.size();
        masses.resize(start + count);
        abundances.resize(start + count);
        std::copy(keys, keys + count, masses.begin() + start);
        std::copy(values, values + count, abundances.begin() + start);
        for (int i = 0; i < count; ++i)
            total += values[i];
    }
    rtimes.append(time);
    tic.append(total);
    scanOffsets.append(quint64(masses.size()));
}

int TAcquisitionRun::pointsAtScan(int scan) const
{
    if (scan < 0 || scan + 1 >= scanOffsets.size())
        return 0;
    return int(scanOffsets.at(scan + 1) - scanOffsets.at(scan));
}

const quint32* TAcquisitionRun::massesAtScan(int scan) const
{
    if (scan < 0 || scan + 1 >= scanOffsets.size())
        return nullptr;
    return masses.constData() + scanOffsets.at(scan);
}

const float* TAcquisitionRun::abundancesAtScan(int scan) const
{
    if (scan < 0 || scan + 1 >= scanOffsets.size())
        return nullptr;
    return abundances.constData() + scanOffsets.at(scan);
}

quint32 TAcquisitionRun::minKey() const
{
    return masses.isEmpty() ? 0 : *std::min_element(masses.cbegin(), masses.cend());
}

quint32 TAcquisitionRun::maxKey() const
{
    return masses.isEmpty() ? 0 : *std::max_element(masses.cbegin(), masses.cend());
}

bool TAcquisitionRun::isConsistent(QString* why) const
{
    auto fail = [why](const QString& text) {
        if (why)
            *why = text;
        return false;
    };
    const int n = rtimes.size();
    if (tic.size() != n)
        return fail(QStringLiteral("the TIC has %1 values for %2 scans").arg(tic.size()).arg(n));
    if (scanOffsets.size() != n + 1 || scanOffsets.first() != 0 || scanOffsets.last() != quint64(masses.size()))
        return fail(QStringLiteral("the scan index does not cover the points"));
    if (abundances.size() != masses.size())
        return fail(QStringLiteral("masses and abundances differ in length"));
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(rtimes.at(i)) || (i > 0 && rtimes.at(i) < rtimes.at(i - 1)))
            return fail(QStringLiteral("retention time of scan %1 is not increasing").arg(i));
        if (scanOffsets.at(i + 1) < scanOffsets.at(i))
            return fail(QStringLiteral("scan %1 has a negative point count").arg(i));
        for (quint64 p = scanOffsets.at(i) + 1; p < scanOffsets.at(i + 1); ++p) {
            if (masses.at(int(p)) <= masses.at(int(p - 1)))
                return fail(QStringLiteral("masses of scan %1 are not strictly ascending").arg(i));
        }
    }
    if (channels.size() != channelNames.size())
        return fail(QStringLiteral("%1 channel names for %2 channels").arg(channelNames.size()).arg(channels.size()));
    for (int c = 0; c < channels.size(); ++c) {
        if (channels.at(c).size() != n)
            return fail(QStringLiteral("channel %1 has %2 values for %3 scans")
                            .arg(channelNames.at(c))
                            .arg(channels.at(c).size())
                            .arg(n));
    }
    QStringList seen;
    for (const TDetectorChannel& d : detectors) {
        if (d.name.trimmed().isEmpty() || seen.contains(d.name))
            return fail(QStringLiteral("detector channel names must be unique and not empty"));
        seen.append(d.name);
        if (d.times.size() != d.values.size())
            return fail(QStringLiteral("detector channel %1 has %2 times for %3 values")
                            .arg(d.name)
                            .arg(d.times.size())
                            .arg(d.values.size()));
        for (int i = 0; i < d.times.size(); ++i) {
            if (!std::isfinite(d.times.at(i)) || (i > 0 && d.times.at(i) < d.times.at(i - 1)))
                return fail(QStringLiteral("time %1 of detector channel %2 is not increasing").arg(i).arg(d.name));
        }
    }
    return true;
}

bool TAcquisitionRun::operator==(const TAcquisitionRun& other) const
{
    return name == other.name && date == other.date && acquisitionSystem == other.acquisitionSystem
        && signalName == other.signalName && rtimes == other.rtimes && tic == other.tic
        && scanOffsets == other.scanOffsets && masses == other.masses && abundances == other.abundances
        && channelNames == other.channelNames && channels == other.channels && transitions == other.transitions
        && detectors == other.detectors && files == other.files;
}
