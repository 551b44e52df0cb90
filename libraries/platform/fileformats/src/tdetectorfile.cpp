#include "tdetectorfile.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <cmath>

namespace {

bool fail(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return false;
}

void putU32(QByteArray& out, quint32 value)
{
    char buffer[4];
    qToLittleEndian<quint32>(value, buffer);
    out.append(buffer, 4);
}

void putText(QByteArray& out, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    putU32(out, quint32(utf8.size()));
    out.append(utf8);
}

void putDoubles(QByteArray& out, const QVector<double>& values)
{
    const int start = out.size();
    out.resize(start + 8 * values.size());
    for (int i = 0; i < values.size(); ++i)
        qToLittleEndian<double>(values.at(i), out.data() + start + 8 * i);
}

// Reads forward through the bytes, refusing anything that would pass their end.
struct Cursor
{
    const QByteArray& bytes;
    qint64 at = 0;

    bool has(qint64 count) const { return count >= 0 && at + count <= bytes.size(); }
    bool u32(quint32* value)
    {
        if (!has(4))
            return false;
        *value = qFromLittleEndian<quint32>(bytes.constData() + at);
        at += 4;
        return true;
    }
    bool text(QString* value)
    {
        quint32 length = 0;
        if (!u32(&length) || !has(length))
            return false;
        *value = QString::fromUtf8(bytes.constData() + at, int(length));
        at += length;
        return true;
    }
    bool doubles(quint32 count, QVector<double>* values)
    {
        if (!has(8 * qint64(count)))
            return false;
        values->resize(int(count));
        for (quint32 i = 0; i < count; ++i)
            (*values)[int(i)] = qFromLittleEndian<double>(bytes.constData() + at + 8 * qint64(i));
        at += 8 * qint64(count);
        return true;
    }
};

} // namespace

QByteArray TDetectorFile::encode(const QVector<TDetectorChannel>& channels)
{
    QByteArray out = magic();
    putU32(out, Version);
    putU32(out, quint32(channels.size()));
    for (const TDetectorChannel& channel : channels) {
        putU32(out, quint32(channel.values.size()));
        putText(out, channel.name);
        putText(out, channel.unit);
        putText(out, channel.signal);
        putDoubles(out, channel.times);
        putDoubles(out, channel.values);
    }
    return out;
}

bool TDetectorFile::decode(const QByteArray& bytes, QVector<TDetectorChannel>* channels, QString* error)
{
    if (!bytes.startsWith(magic()))
        return fail(error, QStringLiteral("not a detector channel file"));
    Cursor in{bytes, magic().size()};
    quint32 version = 0;
    quint32 count = 0;
    if (!in.u32(&version) || !in.u32(&count))
        return fail(error, QStringLiteral("the detector channel file is cut in its header"));
    if (version < 1 || version > Version)
        return fail(error, QStringLiteral("detector channel file version %1 is not supported").arg(version));
    // Each channel takes at least 16 bytes: a count and three string lengths.
    if (qint64(count) * 16 > bytes.size() - in.at)
        return fail(error, QStringLiteral("the detector channel file declares %1 channels it cannot hold").arg(count));
    QVector<TDetectorChannel> read;
    for (quint32 c = 0; c < count; ++c) {
        TDetectorChannel channel;
        quint32 points = 0;
        if (!in.u32(&points) || !in.text(&channel.name) || !in.text(&channel.unit) || !in.text(&channel.signal)
            || !in.doubles(points, &channel.times) || !in.doubles(points, &channel.values))
            return fail(error, QStringLiteral("detector channel %1 is cut").arg(c + 1));
        for (int i = 0; i < channel.times.size(); ++i) {
            if (!std::isfinite(channel.times.at(i)) || (i > 0 && channel.times.at(i) < channel.times.at(i - 1)))
                return fail(error,
                            QStringLiteral("the times of detector channel %1 are not ascending").arg(channel.name));
        }
        read.append(channel);
    }
    if (in.at != bytes.size())
        return fail(
            error,
            QStringLiteral("the detector channel file has %1 bytes after its last channel").arg(bytes.size() - in.at));
    if (channels)
        *channels = read;
    return true;
}

bool TDetectorFile::save(const QString& path, const QVector<TDetectorChannel>& channels, QString* error)
{
    const QByteArray bytes = encode(channels);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return fail(error, QStringLiteral("cannot write %1").arg(path));
    return true;
}

bool TDetectorFile::load(const QString& path, QVector<TDetectorChannel>* channels, QString* error)
{
    QFile file(path);
    if (!file.exists()) {
        if (channels)
            channels->clear();
        return true;
    }
    if (!file.open(QIODevice::ReadOnly))
        return fail(error, QStringLiteral("cannot open %1").arg(path));
    QString why;
    if (!decode(file.readAll(), channels, &why))
        return fail(error, QStringLiteral("%1: %2").arg(path, why));
    return true;
}
