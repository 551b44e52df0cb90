#include "tchemstationfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

const char* const Context = "TChemStationFile";

QString tr(const char* text, const char* french)
{
    return QCoreApplication::translate(Context, text, french);
}

bool fail(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return false;
}

const char* const GcKind = "GC / MS Data File";
const char* const LcKind = "MSD Spectral File";

constexpr int KindOffset = 0x04;
constexpr int BodyWordOffset = 0x10A;
constexpr int LcScanCountOffset = 0x118;
constexpr int GcScanCountOffset = 0x142;
constexpr int WrittenBodyStart = 0x200;
constexpr int ScanFixedBytes = 28; // length, time, 6, count, 4, then 6 and the TIC after the points

constexpr int ChannelHeaderSize = 0x1800;
constexpr int ChannelCountOffset = 0x116;
constexpr int ChannelFirstTimeOffset = 0x11A;
constexpr int ChannelLastTimeOffset = 0x11E;
constexpr int ChannelScaleOffset = 0x127C;
constexpr int ChannelUnitOffset = 0x104C;
constexpr int ChannelSignalOffset = 0x1075;

quint16 be16(const uchar* p)
{
    return qFromBigEndian<quint16>(p);
}
quint32 be32(const uchar* p)
{
    return qFromBigEndian<quint32>(p);
}

QString pascalLatin(const QByteArray& bytes, int offset)
{
    if (offset >= bytes.size())
        return QString();
    const int length = uchar(bytes.at(offset));
    if (offset + 1 + length > bytes.size())
        return QString();
    return QString::fromLatin1(bytes.constData() + offset + 1, length).trimmed();
}

QString pascalUtf16(const QByteArray& bytes, int offset)
{
    if (offset >= bytes.size())
        return QString();
    const int length = uchar(bytes.at(offset));
    if (offset + 1 + 2 * length > bytes.size())
        return QString();
    QString text;
    const auto* p = reinterpret_cast<const uchar*>(bytes.constData()) + offset + 1;
    for (int i = 0; i < length; ++i)
        text.append(QChar(qFromLittleEndian<quint16>(p + 2 * i)));
    return text.trimmed();
}

double unpackAbundance(quint16 v)
{
    return double(v & 0x3FFF) * double(1u << (3 * (v >> 14)));
}

quint16 packAbundance(double value)
{
    if (!(value > 0.0))
        return 0;
    for (quint16 e = 0; e < 4; ++e) {
        const double step = double(1u << (3 * e));
        const double mantissa = std::round(value / step);
        if (mantissa <= 16383.0)
            return quint16((e << 14) | quint16(mantissa));
    }
    return 0xFFFF;
}

QString findEntry(const QString& folder, const QStringList& names)
{
    const QDir dir(folder);
    const QStringList entries = dir.entryList(QDir::Files);
    for (const QString& wanted : names) {
        for (const QString& entry : entries) {
            if (entry.compare(wanted, Qt::CaseInsensitive) == 0)
                return dir.filePath(entry);
        }
    }
    return QString();
}

bool loadFile(const QString& path, QByteArray* bytes, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(error, tr("cannot open '%1'", "impossible d'ouvrir '%1'").arg(path));
    *bytes = file.readAll();
    return true;
}

// A run whose scans are one detector trace: the channel-only analyses keep their
// curve where the TIC and plot commands look for it.
TAcquisitionRun channelRun(const QString& name, const QVector<TDetectorChannel>& channels)
{
    TAcquisitionRun run;
    run.name = name;
    run.acquisitionSystem = TAcquisitionRun::SystemChromatogram;
    const TDetectorChannel& first = channels.first();
    run.signalName = first.name;
    run.rtimes = first.times;
    run.tic = first.values;
    run.scanOffsets.fill(0, first.times.size() + 1);
    run.detectors = channels;
    return run;
}

} // namespace

bool TChemStationFile::isMassSpectra(const QByteArray& head)
{
    if (head.size() < KindOffset + 1 || head.at(0) != '\x01')
        return false;
    const QString kind = pascalLatin(head, KindOffset);
    return kind == QLatin1String(GcKind) || kind == QLatin1String(LcKind);
}

bool TChemStationFile::isChannel(const QByteArray& head)
{
    return head.startsWith(QByteArray("\x03"
                                      "179",
                                      4))
        || head.startsWith(QByteArray("\x03"
                                      "130",
                                      4));
}

QString TChemStationFile::scanFile(const QString& folder)
{
    return findEntry(folder, {QStringLiteral("data.ms"), QStringLiteral("MSD1.MS")});
}

QString TChemStationFile::selectedIonFile(const QString& folder)
{
    return findEntry(folder, {QStringLiteral("dataSim.ms")});
}

QStringList TChemStationFile::channelFiles(const QString& folder)
{
    const QDir dir(folder);
    QStringList files;
    for (const QString& entry : dir.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase)) {
        if (entry.endsWith(QLatin1String(".ch"), Qt::CaseInsensitive))
            files.append(dir.filePath(entry));
    }
    return files;
}

bool TChemStationFile::readMassSpectra(const QByteArray& bytes, const QString& source, TAcquisitionRun* run,
                                       QString* error)
{
    if (!run)
        return false;
    const qint64 size = bytes.size();
    if (!isMassSpectra(bytes) || size < GcScanCountOffset + 2)
        return fail(error,
                    tr("'%1' is not a ChemStation MSD file (header missing or cut)",
                       "'%1' n'est pas un fichier MSD ChemStation (en-tête absent ou coupé)")
                        .arg(source));
    const auto* data = reinterpret_cast<const uchar*>(bytes.constData());
    const bool gc = pascalLatin(bytes, KindOffset) == QLatin1String(GcKind);
    const int declared = gc ? qFromLittleEndian<quint16>(data + GcScanCountOffset) : be16(data + LcScanCountOffset);
    const qint64 body = 2 * qint64(be16(data + BodyWordOffset)) - 2;
    if (body < GcScanCountOffset + 2 || body > size)
        return fail(error,
                    tr("'%1': the data offset %2 lies outside the file (%3 bytes)",
                       "'%1' : la position des données %2 est hors du fichier (%3 octets)")
                        .arg(source)
                        .arg(body)
                        .arg(size));

    TAcquisitionRun read;
    read.name = QFileInfo(source).completeBaseName();
    read.acquisitionSystem = QFileInfo(source).fileName().contains(QLatin1String("sim"), Qt::CaseInsensitive)
        ? TAcquisitionRun::SystemSIM
        : TAcquisitionRun::SystemFullScan;
    read.scanOffsets = {0};
    read.scanOffsets.reserve(declared + 1);
    read.rtimes.reserve(declared);
    read.tic.reserve(declared);
    QVector<QPair<quint32, float>> points;
    qint64 p = body;
    for (int i = 0; i < declared; ++i) {
        if (p + ScanFixedBytes > size)
            return fail(
                error,
                tr("'%1' declares %2 scans but holds only %3", "'%1' annonce %2 scans mais n'en contient que %3")
                    .arg(source)
                    .arg(declared)
                    .arg(i));
        const int words = be16(data + p);
        const int count = be16(data + p + 12);
        const qint64 length = ScanFixedBytes + 4 * qint64(count);
        if (2 * qint64(words) != length || p + length > size)
            return fail(error,
                        tr("'%1': scan %2 is damaged (its length does not match its %3 points)",
                           "'%1' : le scan %2 est endommagé (sa longueur ne correspond pas à ses %3 points)")
                            .arg(source)
                            .arg(i + 1)
                            .arg(count));
        const double time = be32(data + p + 2) / 60000.0;
        if (!read.rtimes.isEmpty() && time < read.rtimes.last())
            return fail(
                error,
                tr("'%1': the time of scan %2 goes back", "'%1' : le temps du scan %2 recule").arg(source).arg(i + 1));
        points.resize(count);
        const uchar* q = data + p + 18;
        for (int k = 0; k < count; ++k)
            points[k] = qMakePair(quint32(be16(q + 4 * k)) * 5u, float(unpackAbundance(be16(q + 4 * k + 2))));
        // Instruments write the highest m/z first: a reversal is then enough.
        const auto byMass
            = [](const QPair<quint32, float>& a, const QPair<quint32, float>& b) { return a.first < b.first; };
        if (std::is_sorted(points.rbegin(), points.rend(), byMass))
            std::reverse(points.begin(), points.end());
        else
            std::sort(points.begin(), points.end(), byMass);
        for (int k = 0; k < count; ++k) {
            if (k > 0 && points[k].first == read.masses.last()) {
                read.abundances.last() += points[k].second; // one m/z recorded twice
                continue;
            }
            read.masses.append(points[k].first);
            read.abundances.append(points[k].second);
        }
        read.scanOffsets.append(quint64(read.masses.size()));
        read.rtimes.append(time);
        read.tic.append(double(be32(q + 4 * count + 6)));
        p += length;
    }
    if (declared == 0)
        return fail(error, tr("'%1' holds no scan", "'%1' ne contient aucun scan").arg(source));
    *run = read;
    return true;
}

bool TChemStationFile::readChannel(const QByteArray& bytes, const QString& source, const QString& name,
                                   TDetectorChannel* channel, QString* error)
{
    if (!channel)
        return false;
    const qint64 size = bytes.size();
    if (!isChannel(bytes) || size < ChannelHeaderSize)
        return fail(error,
                    tr("'%1' is not a ChemStation channel file (header missing or cut)",
                       "'%1' n'est pas un fichier de voie ChemStation (en-tête absent ou coupé)")
                        .arg(source));
    const auto* data = reinterpret_cast<const uchar*>(bytes.constData());
    const bool floats = bytes.mid(1, 3) == "179";
    double scale = qFromBigEndian<double>(data + ChannelScaleOffset);
    if (!std::isfinite(scale) || scale == 0.0)
        scale = 1.0;
    QVector<double> values;
    double first = 0.0;
    double last = 0.0;
    if (floats) {
        const quint32 count = be32(data + ChannelCountOffset);
        if (qint64(count) * 8 > size - ChannelHeaderSize)
            return fail(
                error,
                tr("'%1' declares %2 points but holds only %3", "'%1' annonce %2 points mais n'en contient que %3")
                    .arg(source)
                    .arg(count)
                    .arg((size - ChannelHeaderSize) / 8));
        first = qFromBigEndian<float>(data + ChannelFirstTimeOffset);
        last = qFromBigEndian<float>(data + ChannelLastTimeOffset);
        values.resize(int(count));
        for (quint32 i = 0; i < count; ++i)
            values[int(i)] = qFromLittleEndian<double>(data + ChannelHeaderSize + 8 * qint64(i)) * scale;
    } else {
        first = be32(data + ChannelFirstTimeOffset);
        last = be32(data + ChannelLastTimeOffset);
        qint64 p = ChannelHeaderSize;
        qint64 raw = 0;
        while (true) {
            if (p + 2 > size)
                return fail(error, tr("'%1' is cut inside its data", "'%1' est coupé dans ses données").arg(source));
            const int marker = uchar(bytes.at(int(p)));
            const int count = uchar(bytes.at(int(p + 1)));
            p += 2;
            if (marker == 0 && count == 0)
                break;
            if (marker != 16)
                return fail(error,
                            tr("'%1': unexpected segment mark %2 at byte %3",
                               "'%1' : marque de segment %2 inattendue à l'octet %3")
                                .arg(source)
                                .arg(marker)
                                .arg(p - 2));
            for (int k = 0; k < count; ++k) {
                if (p + 2 > size)
                    return fail(error,
                                tr("'%1' is cut inside its data", "'%1' est coupé dans ses données").arg(source));
                const qint16 step = qFromBigEndian<qint16>(data + p);
                p += 2;
                if (step == -0x8000) {
                    if (p + 4 > size)
                        return fail(error,
                                    tr("'%1' is cut inside its data", "'%1' est coupé dans ses données").arg(source));
                    raw = qFromBigEndian<qint32>(data + p);
                    p += 4;
                } else {
                    raw += step;
                }
                values.append(double(raw) * scale);
            }
        }
    }
    if (values.isEmpty())
        return fail(error, tr("'%1' holds no point", "'%1' ne contient aucun point").arg(source));
    if (!std::isfinite(first) || !std::isfinite(last) || last < first)
        return fail(
            error,
            tr("'%1': the time range %2 to %3 ms is not valid", "'%1' : l'intervalle de temps %2 à %3 ms est invalide")
                .arg(source)
                .arg(first)
                .arg(last));
    TDetectorChannel read;
    read.name = name;
    read.unit = pascalUtf16(bytes, ChannelUnitOffset);
    read.signal = pascalUtf16(bytes, ChannelSignalOffset);
    const int n = values.size();
    read.times.resize(n);
    const double step = n > 1 ? (last - first) / (n - 1) : 0.0;
    for (int i = 0; i < n; ++i)
        read.times[i] = (first + step * i) / 60000.0;
    read.values = values;
    *channel = read;
    return true;
}

bool TChemStationFile::readFolder(const QString& path, QVector<TImportedRun>* runs, QString* error)
{
    if (!runs)
        return false;
    const QString base = QFileInfo(path).completeBaseName();
    QVector<TDetectorChannel> channels;
    for (const QString& file : channelFiles(path)) {
        QByteArray bytes;
        TDetectorChannel channel;
        if (!loadFile(file, &bytes, error)
            || !readChannel(bytes, file, QFileInfo(file).completeBaseName(), &channel, error))
            return false;
        channels.append(channel);
    }
    QVector<TImportedRun> read;
    const QString scans = scanFile(path);
    if (!scans.isEmpty()) {
        QByteArray bytes;
        TImportedRun main;
        if (!loadFile(scans, &bytes, error) || !readMassSpectra(bytes, scans, &main.run, error))
            return false;
        main.run.name = base;
        main.run.acquisitionSystem = TAcquisitionRun::SystemFullScan;
        main.run.detectors = channels;
        read.append(main);
    } else if (!channels.isEmpty()) {
        read.append(TImportedRun{QString(), channelRun(base, channels)});
    }
    const QString selected = selectedIonFile(path);
    if (!selected.isEmpty()) {
        QByteArray bytes;
        TImportedRun sim;
        if (!loadFile(selected, &bytes, error) || !readMassSpectra(bytes, selected, &sim.run, error))
            return false;
        sim.suffix = read.isEmpty() ? QString() : QStringLiteral("-SIM");
        sim.run.name = base + sim.suffix;
        sim.run.acquisitionSystem = TAcquisitionRun::SystemSIM;
        read.append(sim);
    }
    if (read.isEmpty())
        return fail(error,
                    tr("'%1' holds no ChemStation data file (data.ms, dataSim.ms or .ch)",
                       "'%1' ne contient aucun fichier de données ChemStation (data.ms, dataSim.ms ou .ch)")
                        .arg(path));
    *runs = read;
    return true;
}

QByteArray TChemStationFile::writeMassSpectra(const TAcquisitionRun& run)
{
    const int n = std::min(run.scanCount(), 65535);
    std::vector<uchar> header(WrittenBodyStart, 0);
    uchar* h = header.data();
    h[0] = 0x01;
    h[1] = '2';
    const QByteArray kind(GcKind);
    h[KindOffset] = uchar(kind.size());
    std::memcpy(h + KindOffset + 1, kind.constData(), size_t(kind.size()));
    qToBigEndian<quint16>(quint16(WrittenBodyStart / 2 + 1), h + BodyWordOffset);
    qToBigEndian<quint16>(quint16(n), h + LcScanCountOffset);
    qToLittleEndian<quint16>(quint16(n), h + GcScanCountOffset);
    qint64 total = 0;
    for (int i = 0; i < n; ++i)
        total += ScanFixedBytes + 4 * run.pointsAtScan(i);
    QByteArray bytes;
    bytes.reserve(int(WrittenBodyStart + total + 16));
    bytes.append(reinterpret_cast<const char*>(h), WrittenBodyStart);
    std::vector<uchar> scan;
    for (int i = 0; i < n; ++i) {
        const int count = run.pointsAtScan(i);
        scan.assign(size_t(ScanFixedBytes + 4 * count), 0);
        uchar* s = scan.data();
        qToBigEndian<quint16>(quint16(scan.size() / 2), s);
        qToBigEndian<quint32>(quint32(std::llround(run.rtimes.at(i) * 60000.0)), s + 2);
        qToBigEndian<quint16>(quint16(count), s + 12);
        const quint32* keys = run.massesAtScan(i);
        const float* values = run.abundancesAtScan(i);
        // Highest m/z first, as the instrument writes them.
        for (int k = 0; k < count; ++k) {
            const int from = count - 1 - k;
            qToBigEndian<quint16>(quint16(keys[from] / 5u), s + 18 + 4 * k);
            qToBigEndian<quint16>(packAbundance(values[from]), s + 20 + 4 * k);
        }
        qToBigEndian<quint32>(quint32(std::llround(std::max(0.0, run.tic.value(i)))), s + 18 + 4 * count + 6);
        bytes.append(reinterpret_cast<const char*>(s), int(scan.size()));
    }
    bytes.append(QByteArray(16, '\0')); // footer
    return bytes;
}

QByteArray TChemStationFile::writeChannel(const TDetectorChannel& channel)
{
    const int n = channel.values.size();
    std::vector<uchar> buffer(size_t(ChannelHeaderSize + 8 * n), 0);
    uchar* h = buffer.data();
    std::memcpy(h,
                "\x03"
                "179",
                4);
    qToBigEndian<quint32>(quint32(n), h + ChannelCountOffset);
    const float first = channel.times.isEmpty() ? 0.0f : float(channel.times.first() * 60000.0);
    const float last = channel.times.isEmpty() ? 0.0f : float(channel.times.last() * 60000.0);
    qToBigEndian<float>(first, h + ChannelFirstTimeOffset);
    qToBigEndian<float>(last, h + ChannelLastTimeOffset);
    qToBigEndian<double>(1.0, h + ChannelScaleOffset);
    const auto putText = [h](int offset, const QString& text) {
        const int length = std::min(text.size(), 36);
        h[offset] = uchar(length);
        for (int i = 0; i < length; ++i)
            qToLittleEndian<quint16>(text.at(i).unicode(), h + offset + 1 + 2 * i);
    };
    putText(ChannelUnitOffset, channel.unit);
    putText(ChannelSignalOffset, channel.signal);
    uchar* body = h + ChannelHeaderSize;
    for (int i = 0; i < n; ++i)
        qToLittleEndian<double>(channel.values.at(i), body + 8 * i);
    return QByteArray(reinterpret_cast<const char*>(h), int(buffer.size()));
}

bool TChemStationFile::writeFolder(const QString& path, const TAcquisitionRun& scans,
                                   const TAcquisitionRun& selectedIons, const QVector<TDetectorChannel>& channels,
                                   QString* error)
{
    if (!QDir().mkpath(path))
        return fail(error, QStringLiteral("cannot create the folder %1").arg(path));
    const auto put = [path](const QString& name, const QByteArray& bytes) {
        QSaveFile file(QDir(path).filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    };
    if (scans.scanCount() > 0 && !put(QStringLiteral("data.ms"), writeMassSpectra(scans)))
        return fail(error, QStringLiteral("cannot write data.ms in %1").arg(path));
    if (selectedIons.scanCount() > 0 && !put(QStringLiteral("dataSim.ms"), writeMassSpectra(selectedIons)))
        return fail(error, QStringLiteral("cannot write dataSim.ms in %1").arg(path));
    for (const TDetectorChannel& channel : channels) {
        if (!put(channel.name + QStringLiteral(".ch"), writeChannel(channel)))
            return fail(error, QStringLiteral("cannot write %1.ch in %2").arg(channel.name, path));
    }
    return true;
}

QString TChemStationMassSpectraReader::formatName() const
{
    return QStringLiteral("Agilent ChemStation MS");
}

bool TChemStationMassSpectraReader::recognises(const QByteArray& head, const QString&) const
{
    return TChemStationFile::isMassSpectra(head);
}

bool TChemStationMassSpectraReader::readBytes(const QByteArray& bytes, const QString& source,
                                              QVector<TImportedRun>* runs, QString* error) const
{
    TImportedRun one;
    if (!runs || !TChemStationFile::readMassSpectra(bytes, source, &one.run, error))
        return false;
    *runs = {one};
    return true;
}

QString TChemStationChannelReader::formatName() const
{
    return QStringLiteral("Agilent ChemStation channel");
}

bool TChemStationChannelReader::recognises(const QByteArray& head, const QString&) const
{
    return TChemStationFile::isChannel(head);
}

bool TChemStationChannelReader::readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                                          QString* error) const
{
    TDetectorChannel channel;
    const QString name = QFileInfo(source).completeBaseName();
    if (!runs || !TChemStationFile::readChannel(bytes, source, name, &channel, error))
        return false;
    *runs = {TImportedRun{QString(), channelRun(name, {channel})}};
    return true;
}

QString TChemStationFolderReader::formatName() const
{
    return QStringLiteral("Agilent ChemStation folder");
}

bool TChemStationFolderReader::recognises(const QByteArray&, const QString&) const
{
    return false;
}

bool TChemStationFolderReader::recognisesFolder(const QString& path) const
{
    return !TChemStationFile::scanFile(path).isEmpty() || !TChemStationFile::selectedIonFile(path).isEmpty()
        || !TChemStationFile::channelFiles(path).isEmpty();
}

bool TChemStationFolderReader::read(const QString& path, QVector<TImportedRun>* runs, QString* error) const
{
    return TChemStationFile::readFolder(path, runs, error);
}

bool TChemStationFolderReader::readBytes(const QByteArray&, const QString& source, QVector<TImportedRun>*,
                                         QString* error) const
{
    return fail(error,
                tr("'%1' is a file, not a data folder", "'%1' est un fichier, pas un dossier de données").arg(source));
}
