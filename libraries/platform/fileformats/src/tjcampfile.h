#pragma once

#include "trunreader.h"
#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>

class TAcquisitionRun;

/// GC-MS runs written as JCAMP-DX text: one block of labels per scan
/// (`##PAGE=`, `##RETENTION_TIME=`, `##TIC=`, `##NPOINTS=`) followed by its
/// `(XY..XY)` table of m/z and abundance pairs. Layout and the forms that are
/// refused (compressed ASDF tables, spectra without a retention time, other
/// kinds of spectroscopy) in FORMAT.md.
class VNFILEFORMATS_EXPORT TJcampFile
{
public:
    /// Whether text starts like a JCAMP-DX file (`##TITLE=` or `##JCAMP-DX=` first).
    static bool isJcamp(const QByteArray& head);

    /// Reads a whole file: times in minutes, the declared TIC of each scan (the
    /// sum of its points when none is declared). On failure `error` says, in one
    /// line naming `source`, what is wrong, and `run` is left as it was.
    static bool read(const QByteArray& bytes, const QString& source, TAcquisitionRun* run, QString* error);

    /// The same layout (retention times in seconds, the run's TIC declared), for
    /// tests, fuzz seeds and samples. Channels, detectors and transitions have no
    /// place in it and are left out.
    static QByteArray write(const TAcquisitionRun& run);
};

class VNFILEFORMATS_EXPORT TJcampReader : public TRunReader
{
public:
    QString formatName() const override;
    bool recognises(const QByteArray& head, const QString& fileName) const override;
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                   QString* error) const override;
};
