#pragma once

#include "tacquisitionrun.h"
#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// One run given by an instrument file. A file or folder may hold several (a
/// ChemStation folder with full-scan and selected-ion data): `suffix` is appended
/// to the analysis name the user chose ("" for the main run, "-SIM" ...).
struct VNFILEFORMATS_EXPORT TImportedRun
{
    QString suffix;
    TAcquisitionRun run;
};

/// One instrument format that the project imports. A reader recognises its
/// files by their content (and a folder by its layout) and reads them whole:
/// on failure it returns false with a one-line reason and leaves `runs` as it was.
///
/// To add a format: derive a class from TRunReader in the file-format library
/// and append one instance to the list in trunreaderregistry.cpp.
class VNFILEFORMATS_EXPORT TRunReader
{
public:
    virtual ~TRunReader();

    /// How people call the format, e.g. "ANDI netCDF" (shown in messages and reports).
    virtual QString formatName() const = 0;

    /// Whether a file whose first bytes are `head` (at most headSize()) is of this
    /// format; `fileName` is there to break ties, never to decide alone.
    virtual bool recognises(const QByteArray& head, const QString& fileName) const = 0;

    /// Whether `path`, a folder, is laid out as this format's data folder.
    virtual bool recognisesFolder(const QString& path) const;

    /// Reads a file or folder. The default loads the file and calls readBytes.
    virtual bool read(const QString& path, QVector<TImportedRun>* runs, QString* error) const;

    /// Reads a file's bytes; `source` names them in messages. Folder formats return false.
    virtual bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                           QString* error) const = 0;

    static constexpr int headSize() { return 4096; }
};

/// The list of formats: the only place that knows which readers exist.
class VNFILEFORMATS_EXPORT TRunReaderRegistry
{
public:
    /// Every reader, in the order they are asked (the most specific first, text last).
    static const QVector<const TRunReader*>& readers();

    /// The reader of `path` (a file or a folder), null when none recognises it.
    static const TRunReader* find(const QString& path);
    /// The reader of bytes in memory, null when none recognises them.
    static const TRunReader* findBytes(const QByteArray& bytes, const QString& fileName);

    /// What a file that no reader takes really is ("a ZIP archive", "an HDF5 file"...), empty when unknown.
    static QString describeForeign(const QByteArray& head);

    /// Finds the reader and reads. On failure `error` holds one line naming the
    /// file and what is wrong, `runs` is left untouched, and `format` is the
    /// name of the reader that refused it (empty when none recognised it).
    static bool read(const QString& path, QVector<TImportedRun>* runs, QString* format = nullptr,
                     QString* error = nullptr);
    static bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                          QString* format = nullptr, QString* error = nullptr);
};
