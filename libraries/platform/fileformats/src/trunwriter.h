#pragma once

#include "vnfileformats_export.h"

#include <QString>
#include <QStringList>
#include <QVector>

class TAcquisitionRun;

/// One format that the project exports a run to. The output format is told by
/// the file's extension; a writer leaves the target complete or as it was.
///
/// To add a format: derive a class from TRunWriter in the file-format library
/// and append one instance to the list in trunwriterregistry.cpp.
class VNFILEFORMATS_EXPORT TRunWriter
{
public:
    virtual ~TRunWriter();

    /// How people call the format, e.g. "ANDI netCDF".
    virtual QString formatName() const = 0;
    /// The extensions that choose this writer, without the dot, as they are usually
    /// written ("cdf", "mzML"); compared without regard to case.
    virtual QStringList extensions() const = 0;
    /// Writes `run` to `path`; false with a one-line reason (without the file name).
    virtual bool write(const QString& path, const TAcquisitionRun& run, QString* error) const = 0;
};

/// The list of export formats, beside the reader registry.
class VNFILEFORMATS_EXPORT TRunWriterRegistry
{
public:
    static const QVector<const TRunWriter*>& writers();
    /// The writer that the extension of `path` chooses, null when none.
    static const TRunWriter* find(const QString& path);
    /// Every extension, with its dot, for messages: ".cdf, .mzML, .mzXML".
    static QString extensionList();
    /// Finds the writer and writes. On failure `error` holds one line naming the
    /// file and what is wrong, and the file is as it was; `format` is the
    /// writer's name (empty when the extension chose none).
    static bool write(const QString& path, const TAcquisitionRun& run, QString* format = nullptr,
                      QString* error = nullptr);
};
