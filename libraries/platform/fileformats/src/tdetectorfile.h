#pragma once

#include "tacquisitionrun.h"
#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// The detector channels of an analysis, kept as "detectors.bin" beside its
/// ".tcm" (layout in FORMAT.md). An analysis without the file has no channel;
/// the file is versioned so that later layouts can still read this one.
class VNFILEFORMATS_EXPORT TDetectorFile
{
public:
    static const char* fileName() { return "detectors.bin"; }
    static QByteArray magic() { return QByteArrayLiteral("VNDETECT"); }
    static constexpr quint32 Version = 1;

    static QByteArray encode(const QVector<TDetectorChannel>& channels);
    /// False, with `error` in English, for a damaged or foreign file; `channels` is changed only on success.
    static bool decode(const QByteArray& bytes, QVector<TDetectorChannel>* channels, QString* error = nullptr);

    /// Writes atomically.
    static bool save(const QString& path, const QVector<TDetectorChannel>& channels, QString* error = nullptr);
    /// Reads `path`; a missing file gives no channel and succeeds.
    static bool load(const QString& path, QVector<TDetectorChannel>* channels, QString* error = nullptr);
};
