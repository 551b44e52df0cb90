#include "tcmfile.h"

#include "tacquisitionrun.h"
#include "tcmfile_p.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

// Bulk arrays are used in place from the map, so the host must share the
// file's byte order.
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the acquisition format is read in place: little-endian hosts only");

using namespace TCMLayout;

quint32 TCMLayout::crc32(const unsigned char* data, std::size_t size)
{
    static const auto table = [] {
        std::array<quint32, 256> t{};
        for (quint32 i = 0; i < 256; ++i) {
            quint32 c = i;
            for (int k = 0; k < 8; ++k)
                c = (c & 1u) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    quint32 crc = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < size; ++i)
        crc = table[(crc ^ data[i]) & 0xFFu] ^ (crc >> 8);
    return crc ^ 0xFFFFFFFFu;
}

namespace {

template <typename T>
T readLE(const unsigned char* header, std::size_t offset)
{
    return qFromLittleEndian<T>(header + offset);
}

quint32 massKey(float mass)
{
    if (!(mass > 0.0f))
        return 0;
    const double scaled = double(mass) * 100.0;
    if (scaled >= double(std::numeric_limits<quint32>::max()))
        return std::numeric_limits<quint32>::max();
    return quint32(std::llround(scaled));
}

unsigned long toAbundance(double value)
{
    if (!(value > 0.0))
        return 0;
    if (value >= double(ULONG_MAX))
        return ULONG_MAX;
    return static_cast<unsigned long>(value + 0.5);
}

struct Section
{
    quint64 offset;
    quint64 bytes;
};

} // namespace

class TCMFilePrivate
{
public:
    QFile file;
    QString error;
    bool open = false;

    quint64 fileSize = 0;
    quint16 versionMinor = 0;
    quint32 scanCount = 0;
    quint32 system = 0;
    quint64 pointCount = 0;
    quint32 channelCount = 0;
    quint32 minKey = 0;
    quint32 maxKey = 0;
    quint64 offRtime = 0, offTic = 0, offIndex = 0, offKeys = 0, offAbund = 0, offChannels = 0;
    QStringList strings;
    QVector<QPair<float, float>> transitions;

    // Content, while mapped.
    uchar* map = nullptr;
    long first = -1;
    long last = -1;

    bool fail(const QString& text)
    {
        error = text;
        return false;
    }

    const double* rtimes() const { return reinterpret_cast<const double*>(map + offRtime); }
    const double* tics() const { return reinterpret_cast<const double*>(map + offTic); }
    const quint32* keys() const { return reinterpret_cast<const quint32*>(map + offKeys); }
    const float* abundances() const { return reinterpret_cast<const float*>(map + offAbund); }
    const unsigned char* indexEntry(quint64 scan) const { return map + offIndex + scan * IndexEntrySize; }

    quint64 scanFirst(quint64 scan) const { return qFromLittleEndian<quint64>(indexEntry(scan)); }
    quint32 scanCountAt(quint64 scan) const { return qFromLittleEndian<quint32>(indexEntry(scan) + 8); }

    bool inWindow(unsigned long scan) const
    {
        return map && first >= 0 && scan >= static_cast<unsigned long>(first)
            && scan <= static_cast<unsigned long>(last);
    }

    bool readHeader();
    bool checkWindow(quint64 from, quint64 to);
    void unmap()
    {
        if (map)
            file.unmap(map);
        map = nullptr;
        first = last = -1;
    }
};

bool TCMFilePrivate::readHeader()
{
    const qint64 size = file.size();
    if (size < qint64(HeaderSize))
        return fail(QStringLiteral("the file is shorter than the header (%1 bytes)").arg(size));
    unsigned char h[HeaderSize];
    if (file.read(reinterpret_cast<char*>(h), HeaderSize) != HeaderSize)
        return fail(QStringLiteral("the header cannot be read"));
    if (std::memcmp(h, Magic, sizeof Magic) != 0)
        return fail(QStringLiteral("not an acquisition file (bad magic number)"));
    const quint16 major = readLE<quint16>(h, FieldVersionMajor);
    if (major != VersionMajor)
        return fail(QStringLiteral("unsupported format version %1").arg(major));
    if (readLE<quint32>(h, FieldHeaderSize) != HeaderSize)
        return fail(QStringLiteral("unexpected header size"));
    if (readLE<quint32>(h, FieldHeaderCrc) != crc32(h, FieldHeaderCrc))
        return fail(QStringLiteral("the header checksum does not match"));
    fileSize = readLE<quint64>(h, FieldFileSize);
    if (fileSize != quint64(size))
        return fail(QStringLiteral("the file is %1 bytes long, its header says %2").arg(size).arg(fileSize));

    versionMinor = readLE<quint16>(h, FieldVersionMinor);
    scanCount = readLE<quint32>(h, FieldScanCount);
    system = readLE<quint32>(h, FieldSystem);
    pointCount = readLE<quint64>(h, FieldPointCount);
    channelCount = readLE<quint32>(h, FieldChannelCount);
    const quint32 transitionCount = readLE<quint32>(h, FieldTransitionCount);
    minKey = readLE<quint32>(h, FieldMinKey);
    maxKey = readLE<quint32>(h, FieldMaxKey);
    offRtime = readLE<quint64>(h, FieldOffRtime);
    offTic = readLE<quint64>(h, FieldOffTic);
    offIndex = readLE<quint64>(h, FieldOffIndex);
    offKeys = readLE<quint64>(h, FieldOffKeys);
    offAbund = readLE<quint64>(h, FieldOffAbundances);
    offChannels = readLE<quint64>(h, FieldOffChannels);
    const quint64 offTransitions = readLE<quint64>(h, FieldOffTransitions);
    const quint64 offStrings = readLE<quint64>(h, FieldOffStrings);
    const quint32 stringsSize = readLE<quint32>(h, FieldStringsSize);

    if (pointCount > 0 && minKey > maxKey)
        return fail(QStringLiteral("the mass range is reversed"));
    if (transitionCount > MaxTransitions || stringsSize > MaxStringsSize)
        return fail(QStringLiteral("the name tables are too large"));

    // Every section must lie inside the file, aligned, and apart from the others.
    auto bytesOf = [this](quint64 count, quint64 element, quint64* bytes) {
        if (__builtin_mul_overflow(count, element, bytes))
            return false;
        return *bytes <= fileSize;
    };
    quint64 channelValues = 0;
    if (__builtin_mul_overflow(quint64(channelCount), quint64(scanCount), &channelValues))
        return fail(QStringLiteral("the channel table is too large"));
    struct Wanted
    {
        quint64 offset;
        quint64 count;
        quint64 element;
        quint64 align;
        const char* name;
    };
    const Wanted wanted[] = {
        {offRtime, scanCount, 8, 8, "retention times"},
        {offTic, scanCount, 8, 8, "TIC"},
        {offIndex, scanCount, IndexEntrySize, 8, "scan index"},
        {offKeys, pointCount, 4, 4, "masses"},
        {offAbund, pointCount, 4, 4, "abundances"},
        {offChannels, channelValues, 8, 8, "channels"},
        {offTransitions, transitionCount, 8, 4, "transitions"},
        {offStrings, stringsSize, 1, 1, "names"},
    };
    std::vector<Section> sections;
    for (const Wanted& w : wanted) {
        quint64 bytes = 0;
        if (!bytesOf(w.count, w.element, &bytes))
            return fail(QStringLiteral("the %1 section is larger than the file").arg(QLatin1String(w.name)));
        if (w.offset < HeaderSize || w.offset > fileSize || bytes > fileSize - w.offset || w.offset % w.align != 0)
            return fail(QStringLiteral("the %1 section lies outside the file").arg(QLatin1String(w.name)));
        if (bytes > 0)
            sections.push_back({w.offset, bytes});
    }
    std::sort(sections.begin(), sections.end(), [](const Section& a, const Section& b) { return a.offset < b.offset; });
    for (std::size_t i = 1; i < sections.size(); ++i) {
        if (sections[i].offset < sections[i - 1].offset + sections[i - 1].bytes)
            return fail(QStringLiteral("two sections overlap"));
    }

    // The name tables are small: read them now, so the map is needed only for measurements.
    transitions.clear();
    if (transitionCount > 0) {
        QByteArray raw(int(transitionCount * 8), Qt::Uninitialized);
        if (!file.seek(qint64(offTransitions)) || file.read(raw.data(), raw.size()) != raw.size())
            return fail(QStringLiteral("the transitions cannot be read"));
        transitions.reserve(int(transitionCount));
        for (quint32 i = 0; i < transitionCount; ++i) {
            const float parent = qFromLittleEndian<float>(raw.constData() + i * 8);
            const float daughter = qFromLittleEndian<float>(raw.constData() + i * 8 + 4);
            transitions.append(qMakePair(parent, daughter));
        }
    }
    QByteArray raw(int(stringsSize), Qt::Uninitialized);
    if (!file.seek(qint64(offStrings)) || file.read(raw.data(), raw.size()) != raw.size())
        return fail(QStringLiteral("the names cannot be read"));
    strings.clear();
    quint64 pos = 0;
    auto readU32 = [&raw, &pos](quint32* value) {
        if (quint64(raw.size()) - pos < 4)
            return false;
        *value = qFromLittleEndian<quint32>(raw.constData() + pos);
        pos += 4;
        return true;
    };
    quint32 count = 0;
    if (!readU32(&count) || count != FixedStrings + channelCount)
        return fail(QStringLiteral("the name table does not match the channel count"));
    for (quint32 i = 0; i < count; ++i) {
        quint32 length = 0;
        if (!readU32(&length) || length > quint64(raw.size()) - pos)
            return fail(QStringLiteral("the name table is truncated"));
        strings.append(QString::fromUtf8(raw.constData() + pos, int(length)));
        pos += length;
    }
    if (pos != quint64(raw.size()))
        return fail(QStringLiteral("the name table has trailing bytes"));
    return true;
}

bool TCMFilePrivate::checkWindow(quint64 from, quint64 to)
{
    quint64 end = 0;
    for (quint64 scan = from; scan <= to; ++scan) {
        const unsigned char* entry = indexEntry(scan);
        const quint64 start = qFromLittleEndian<quint64>(entry);
        const quint32 count = qFromLittleEndian<quint32>(entry + 8);
        if (start > pointCount || count > pointCount - start)
            return fail(QStringLiteral("scan %1 points outside the data").arg(scan));
        if (scan > from && start < end)
            return fail(QStringLiteral("scan %1 overlaps the previous scan").arg(scan));
        end = start + count;
    }
    return true;
}

// ---------------------------------------------------------------------------

TCMFile::TCMFile()
    : d(new TCMFilePrivate)
{ }

TCMFile::TCMFile(const QString& path)
    : TCMFile()
{
    open(path);
}

TCMFile::~TCMFile()
{
    close();
}

bool TCMFile::open(const QString& path)
{
    close();
    d->file.setFileName(path);
    if (!d->file.open(QIODevice::ReadOnly))
        return d->fail(QStringLiteral("cannot open the file: %1").arg(d->file.errorString()));
    if (!d->readHeader()) {
        d->file.close();
        return false;
    }
    d->error.clear();
    d->open = true;
    return true;
}

void TCMFile::close()
{
    d->unmap();
    if (d->file.isOpen())
        d->file.close();
    d->open = false;
    d->strings.clear();
    d->transitions.clear();
    d->scanCount = 0;
    d->pointCount = 0;
    d->channelCount = 0;
}

bool TCMFile::isOpen() const
{
    return d->open;
}
QString TCMFile::fileName() const
{
    return d->file.fileName();
}
QString TCMFile::errorString() const
{
    return d->error;
}
int TCMFile::nbScans() const
{
    return d->open ? int(qMin<quint32>(d->scanCount, INT_MAX)) : -1;
}
quint64 TCMFile::pointCount() const
{
    return d->pointCount;
}
quint32 TCMFile::acquisitionSystem() const
{
    return d->system;
}
quint16 TCMFile::formatVersion() const
{
    return d->open ? VersionMajor : 0;
}
QString TCMFile::signalName() const
{
    return d->strings.value(0);
}
QString TCMFile::runName() const
{
    return d->strings.value(1);
}
QString TCMFile::runDate() const
{
    return d->strings.value(2);
}
QStringList TCMFile::channelNames() const
{
    return d->strings.mid(int(FixedStrings));
}
QVector<QPair<float, float>> TCMFile::transitions() const
{
    return d->transitions;
}
double TCMFile::lowMass() const
{
    return d->pointCount ? d->minKey / 100.0 : 0.0;
}
double TCMFile::highMass() const
{
    return d->pointCount ? d->maxKey / 100.0 : 0.0;
}

bool TCMFile::mzRangeExist(float low, float high) const
{
    if (!d->open || d->pointCount == 0 || !(low <= high))
        return false;
    return massKey(low) <= d->maxKey && massKey(high) >= d->minKey;
}

bool TCMFile::loadContent(float fromTime, float toTime, unsigned long firstScan, unsigned long lastScan)
{
    if (!d->open)
        return d->fail(QStringLiteral("no file is open"));
    if (firstScan > lastScan || lastScan >= d->scanCount)
        return d->fail(QStringLiteral("scans %1 to %2 are outside the file").arg(firstScan).arg(lastScan));
    if (!d->map) {
        d->map = d->file.map(0, qint64(d->fileSize));
        if (!d->map)
            return d->fail(QStringLiteral("the file cannot be mapped: %1").arg(d->file.errorString()));
    }
    d->first = d->last = -1;
    const double* times = d->rtimes();
    const double* from = times + firstScan;
    const double* to = times + lastScan + 1;
    if (fromTime >= 0.0f)
        from = std::lower_bound(from, to, double(fromTime));
    if (toTime >= 0.0f)
        to = std::upper_bound(from, to, double(toTime));
    if (from >= to)
        return d->fail(QStringLiteral("no scan lies in the requested times"));
    const quint64 a = quint64(from - times);
    const quint64 b = quint64(to - times) - 1;
    if (!d->checkWindow(a, b))
        return false;
    d->first = long(a);
    d->last = long(b);
    return true;
}

void TCMFile::deleteContent()
{
    d->unmap();
}
bool TCMFile::isLoaded() const
{
    return d->map && d->first >= 0;
}
long TCMFile::firstLoadedScan() const
{
    return isLoaded() ? d->first : -1;
}
long TCMFile::lastLoadedScan() const
{
    return isLoaded() ? d->last : -1;
}
const double* TCMFile::rtime() const
{
    return isLoaded() ? d->rtimes() : nullptr;
}
const double* TCMFile::tic() const
{
    return isLoaded() ? d->tics() : nullptr;
}

const double* TCMFile::channel(int index) const
{
    if (!isLoaded() || index < 0 || quint32(index) >= d->channelCount)
        return nullptr;
    return reinterpret_cast<const double*>(d->map + d->offChannels) + quint64(index) * d->scanCount;
}

int TCMFile::scanPoints(unsigned long scan, const quint32** keys, const float** abundances) const
{
    if (!d->inWindow(scan))
        return -1;
    const quint64 start = d->scanFirst(scan);
    if (keys)
        *keys = d->keys() + start;
    if (abundances)
        *abundances = d->abundances() + start;
    return int(d->scanCountAt(scan));
}

int TCMFile::allIonsAtScan(Spectrum* spectrum, unsigned long scan) const
{
    if (!spectrum)
        return -1;
    spectrum->clear();
    const quint32* keys = nullptr;
    const float* values = nullptr;
    const int count = scanPoints(scan, &keys, &values);
    if (count < 0)
        return -1;
    for (int i = 0; i < count; ++i) {
        if (keys[i] < d->minKey || keys[i] > d->maxKey || (i > 0 && keys[i] <= keys[i - 1]))
            return -1;
    }
    for (int i = 0; i < count; ++i)
        spectrum->emplace_hint(spectrum->end(), keys[i], toAbundance(values[i]));
    return count;
}

int TCMFile::averageAtScanRange(Spectrum* spectrum, unsigned long first, unsigned long last) const
{
    if (!spectrum)
        return -1;
    spectrum->clear();
    if (first > last || !d->inWindow(first) || !d->inWindow(last))
        return -1;
    const double scans = double(last - first + 1);
    const quint32 lowKey = d->minKey;
    const quint64 span = quint64(d->maxKey) - lowKey + 1;
    const quint32* allKeys = d->keys();
    const float* allValues = d->abundances();

    // A dense accumulator over the file's mass range keeps the hot loop free of
    // look-ups and allocations; a sparse merge is used for very wide ranges.
    constexpr quint64 DenseLimit = 1u << 21;
    if (span <= DenseLimit) {
        // Unvisited masses hold -0.0: any visit leaves +0.0 or more, since
        // -0.0 + +0.0 is +0.0 and every abundance is added as (v + 0.0).
        thread_local std::vector<double> sums;
        sums.assign(span, -0.0);
        double* acc = sums.data();
        for (unsigned long scan = first; scan <= last; ++scan) {
            const quint64 start = d->scanFirst(scan);
            const quint32 count = d->scanCountAt(scan);
            const quint32* keys = allKeys + start;
            const float* values = allValues + start;
            quint32 previous = 0;
            for (quint32 i = 0; i < count; ++i) {
                const quint32 offset = keys[i] - lowKey;
                if (offset >= span || (i > 0 && keys[i] <= previous))
                    return -1;
                previous = keys[i];
                acc[offset] += double(values[i]) + 0.0;
            }
        }
        for (quint64 k = 0; k < span; ++k) {
            if (!std::signbit(acc[k]) || acc[k] != 0.0)
                spectrum->emplace_hint(spectrum->end(), (unsigned long)(lowKey + k), toAbundance(acc[k] / scans));
        }
        if (span > (1u << 16))
            std::vector<double>().swap(sums); // keep only small buffers between calls
        return int(spectrum->size());
    }
    std::vector<std::pair<quint32, double>> points;
    for (unsigned long scan = first; scan <= last; ++scan) {
        const quint64 start = d->scanFirst(scan);
        const quint32 count = d->scanCountAt(scan);
        for (quint32 i = 0; i < count; ++i) {
            if (i > 0 && allKeys[start + i] <= allKeys[start + i - 1])
                return -1;
            points.emplace_back(allKeys[start + i], allValues[start + i]);
        }
    }
    std::sort(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < points.size();) {
        const quint32 key = points[i].first;
        double sum = 0.0;
        for (; i < points.size() && points[i].first == key; ++i)
            sum += points[i].second;
        spectrum->emplace_hint(spectrum->end(), key, toAbundance(sum / scans));
    }
    return int(spectrum->size());
}

int TCMFile::ionAtScanRange(float* abundances, float low, float high, unsigned long first, unsigned long last) const
{
    if (!abundances || !(low <= high) || first > last || !d->inWindow(first) || !d->inWindow(last))
        return -1;
    const quint32 lowKey = massKey(low);
    const quint32 highKey = massKey(high);
    const quint32* allKeys = d->keys();
    const float* allValues = d->abundances();
    for (unsigned long scan = first; scan <= last; ++scan) {
        const quint64 start = d->scanFirst(scan);
        const quint32* keys = allKeys + start;
        const quint32* end = keys + d->scanCountAt(scan);
        const quint32* p = std::lower_bound(keys, end, lowKey);
        float sum = 0.0f;
        for (; p != end && *p <= highKey; ++p)
            sum += allValues[start + quint64(p - keys)];
        abundances[scan - first] = sum;
    }
    return int(last - first + 1);
}

int TCMFile::ionAtFullRange(float* abundances, float low, float high) const
{
    if (!isLoaded() || d->first != 0 || quint64(d->last) + 1 != d->scanCount)
        return -1;
    return ionAtScanRange(abundances, low, high, 0, d->scanCount - 1);
}

bool TCMFile::verify()
{
    if (!d->open)
        return d->fail(QStringLiteral("no file is open"));
    const long keepFirst = d->first;
    const long keepLast = d->last;
    const bool wasMapped = d->map != nullptr;
    bool ok = d->scanCount == 0 ? true : loadContent(-1, -1, 0, d->scanCount - 1);
    if (ok && d->scanCount > 0) {
        const double* times = d->rtimes();
        const double* tics = d->tics();
        const quint32* keys = d->keys();
        const float* values = d->abundances();
        for (quint32 scan = 0; ok && scan < d->scanCount; ++scan) {
            if (!std::isfinite(times[scan]) || !std::isfinite(tics[scan])
                || (scan > 0 && times[scan] < times[scan - 1]))
                ok = d->fail(QStringLiteral("scan %1 has a bad time or TIC").arg(scan));
            const quint64 start = d->scanFirst(scan);
            const quint32 count = d->scanCountAt(scan);
            for (quint32 i = 0; ok && i < count; ++i) {
                const quint32 key = keys[start + i];
                if (key < d->minKey || key > d->maxKey || (i > 0 && key <= keys[start + i - 1])
                    || !std::isfinite(values[start + i]))
                    ok = d->fail(QStringLiteral("scan %1 has a bad point").arg(scan));
            }
        }
        const double* channels = reinterpret_cast<const double*>(d->map + d->offChannels);
        for (quint64 i = 0; ok && i < quint64(d->channelCount) * d->scanCount; ++i) {
            if (!std::isfinite(channels[i]))
                ok = d->fail(QStringLiteral("a channel holds a value that is not a number"));
        }
    }
    if (keepFirst >= 0) {
        loadContent(-1, -1, quint64(keepFirst), quint64(keepLast));
    } else if (!wasMapped) {
        d->unmap();
    }
    return ok;
}

bool TCMFile::toRun(TAcquisitionRun* run)
{
    if (!run || !verify())
        return false;
    const long keepFirst = d->first;
    const long keepLast = d->last;
    const bool wasMapped = d->map != nullptr;
    if (d->scanCount > 0 && !loadContent(-1, -1, 0, d->scanCount - 1))
        return false;
    TAcquisitionRun result;
    result.signalName = signalName();
    result.name = runName();
    result.date = QDateTime::fromString(runDate(), Qt::ISODateWithMs);
    result.acquisitionSystem = d->system;
    result.transitions = d->transitions;
    result.channelNames = channelNames();
    const int n = int(d->scanCount);
    if (n > 0) {
        result.rtimes = QVector<double>(d->rtimes(), d->rtimes() + n);
        result.tic = QVector<double>(d->tics(), d->tics() + n);
        result.scanOffsets.resize(n + 1);
        result.masses.reserve(int(d->pointCount));
        result.abundances.reserve(int(d->pointCount));
        for (int scan = 0; scan < n; ++scan) {
            const quint64 start = d->scanFirst(quint64(scan));
            const quint32 count = d->scanCountAt(quint64(scan));
            result.scanOffsets[scan] = quint64(result.masses.size());
            for (quint32 i = 0; i < count; ++i) {
                result.masses.append(d->keys()[start + i]);
                result.abundances.append(d->abundances()[start + i]);
            }
        }
        result.scanOffsets[n] = quint64(result.masses.size());
        for (quint32 c = 0; c < d->channelCount; ++c) {
            const double* values = channel(int(c));
            result.channels.append(QVector<double>(values, values + n));
        }
    }
    if (keepFirst >= 0)
        loadContent(-1, -1, quint64(keepFirst), quint64(keepLast));
    else if (!wasMapped)
        d->unmap();
    *run = result;
    return true;
}

QByteArray TCMFile::magic()
{
    return QByteArray(Magic, sizeof Magic);
}

// --- Writing ---------------------------------------------------------------

namespace {

class Writer
{
public:
    explicit Writer(QSaveFile* file)
        : m_file(file)
    { }
    bool write(const void* data, quint64 bytes)
    {
        const char* p = static_cast<const char*>(data);
        while (m_ok && bytes > 0) {
            const qint64 chunk = qint64(qMin<quint64>(bytes, 1u << 30));
            m_ok = m_file->write(p, chunk) == chunk;
            p += chunk;
            bytes -= quint64(chunk);
            m_pos += quint64(chunk);
        }
        return m_ok;
    }
    quint64 align(quint64 boundary)
    {
        static const char zeros[8] = {};
        const quint64 pad = (boundary - m_pos % boundary) % boundary;
        write(zeros, pad);
        return m_pos;
    }
    quint64 pos() const { return m_pos; }
    bool ok() const { return m_ok; }

private:
    QSaveFile* m_file;
    quint64 m_pos = 0;
    bool m_ok = true;
};

} // namespace

bool TCMFile::save(const QString& path, const TAcquisitionRun& run, QString* error)
{
    auto fail = [error](const QString& text) {
        if (error)
            *error = text;
        return false;
    };
    QString why;
    if (!run.isConsistent(&why))
        return fail(QStringLiteral("the acquisition is inconsistent: %1").arg(why));
    if (run.transitions.size() > int(MaxTransitions))
        return fail(QStringLiteral("too many transitions"));
    const quint64 n = quint64(run.scanCount());
    const quint64 points = quint64(run.pointCount());

    // Names first, so that their size is known for the header.
    QStringList names;
    names << run.signalName << run.name << run.date.toString(Qt::ISODateWithMs);
    names << run.channelNames;
    QByteArray strings;
    auto appendU32 = [&strings](quint32 value) {
        char bytes[4];
        qToLittleEndian<quint32>(value, bytes);
        strings.append(bytes, 4);
    };
    appendU32(quint32(names.size()));
    for (const QString& name : qAsConst(names)) {
        const QByteArray utf8 = name.toUtf8();
        appendU32(quint32(utf8.size()));
        strings.append(utf8);
    }
    if (quint64(strings.size()) > MaxStringsSize)
        return fail(QStringLiteral("the names are too long"));

    // Offsets are computed up front: the header is written first and once.
    auto align8 = [](quint64 v) { return (v + 7) & ~quint64(7); };
    const quint64 offRtime = HeaderSize;
    const quint64 offTic = align8(offRtime + 8 * n);
    const quint64 offChannels = align8(offTic + 8 * n);
    const quint64 offIndex = align8(offChannels + 8 * n * quint64(run.channels.size()));
    const quint64 offKeys = align8(offIndex + IndexEntrySize * n);
    const quint64 offAbund = align8(offKeys + 4 * points);
    const quint64 offTransitions = align8(offAbund + 4 * points);
    const quint64 offStrings = align8(offTransitions + 8 * quint64(run.transitions.size()));
    const quint64 fileSize = offStrings + quint64(strings.size());

    unsigned char h[HeaderSize] = {};
    std::memcpy(h, Magic, sizeof Magic);
    qToLittleEndian<quint16>(VersionMajor, h + FieldVersionMajor);
    qToLittleEndian<quint16>(VersionMinor, h + FieldVersionMinor);
    qToLittleEndian<quint32>(HeaderSize, h + FieldHeaderSize);
    qToLittleEndian<quint64>(fileSize, h + FieldFileSize);
    qToLittleEndian<quint32>(quint32(n), h + FieldScanCount);
    qToLittleEndian<quint32>(run.acquisitionSystem, h + FieldSystem);
    qToLittleEndian<quint64>(points, h + FieldPointCount);
    qToLittleEndian<quint32>(quint32(run.channels.size()), h + FieldChannelCount);
    qToLittleEndian<quint32>(quint32(run.transitions.size()), h + FieldTransitionCount);
    qToLittleEndian<quint32>(run.minKey(), h + FieldMinKey);
    qToLittleEndian<quint32>(run.maxKey(), h + FieldMaxKey);
    qToLittleEndian<quint64>(offRtime, h + FieldOffRtime);
    qToLittleEndian<quint64>(offTic, h + FieldOffTic);
    qToLittleEndian<quint64>(offIndex, h + FieldOffIndex);
    qToLittleEndian<quint64>(offKeys, h + FieldOffKeys);
    qToLittleEndian<quint64>(offAbund, h + FieldOffAbundances);
    qToLittleEndian<quint64>(offChannels, h + FieldOffChannels);
    qToLittleEndian<quint64>(offTransitions, h + FieldOffTransitions);
    qToLittleEndian<quint64>(offStrings, h + FieldOffStrings);
    qToLittleEndian<quint32>(quint32(strings.size()), h + FieldStringsSize);
    qToLittleEndian<quint32>(crc32(h, FieldHeaderCrc), h + FieldHeaderCrc);

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
    Writer out(&file);
    out.write(h, HeaderSize);
    out.write(run.rtimes.constData(), 8 * n);
    out.align(8);
    out.write(run.tic.constData(), 8 * n);
    out.align(8);
    for (const QVector<double>& values : run.channels)
        out.write(values.constData(), 8 * n);
    out.align(8);
    std::vector<unsigned char> index(std::size_t(IndexEntrySize * n), 0);
    for (quint64 scan = 0; scan < n; ++scan) {
        qToLittleEndian<quint64>(run.scanOffsets.at(int(scan)), index.data() + scan * IndexEntrySize);
        qToLittleEndian<quint32>(quint32(run.scanOffsets.at(int(scan) + 1) - run.scanOffsets.at(int(scan))),
                                 index.data() + scan * IndexEntrySize + 8);
    }
    out.write(index.data(), index.size());
    out.align(8);
    out.write(run.masses.constData(), 4 * points);
    out.align(8);
    out.write(run.abundances.constData(), 4 * points);
    out.align(8);
    for (const auto& transition : run.transitions) {
        const float pair[2] = {transition.first, transition.second};
        out.write(pair, sizeof pair);
    }
    out.align(8);
    out.write(strings.constData(), quint64(strings.size()));
    if (!out.ok() || out.pos() != fileSize) {
        file.cancelWriting();
        return fail(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
    }
    if (!file.commit())
        return fail(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
    return true;
}
