#pragma once

#include "trunreader.h"
#include "vnfileformats_export.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// mzML and mzXML, the open XML formats of mass spectrometry, read and written
/// through the ProteoWizard library (Debian's libpwizlite); layouts in FORMAT.md.
///
/// Read: MS1 spectra (profile or centroid) become the scans of a full-scan run
/// (selected-ion spectra: acquisition system 512), selected-reaction-monitoring
/// chromatograms the transitions of an MS/MS run (768) on the times of the
/// longest one. A file holding both gives both, the MS/MS run with the suffix
/// "-MSMS". Anything the library throws is caught here: a damaged file is
/// refused whole with one line, never half read.
class VNFILEFORMATS_EXPORT TMzMLFile
{
public:
    enum Flavour { MzML, MzXML };

    /// Whether the first element of the XML text `head` is <mzML> or <indexedmzML>
    /// (MzML), <mzXML> (MzXML).
    static bool isFlavour(const QByteArray& head, Flavour flavour);

    static bool read(const QString& path, Flavour flavour, QVector<TImportedRun>* runs, QString* error);
    static bool readBytes(const QByteArray& bytes, Flavour flavour, QVector<TImportedRun>* runs, QString* error);

    /// Writes `run`: full-scan and selected-ion runs as MS1 spectra (m/z in 64-bit,
    /// intensities in 32-bit floats, zlib), MS/MS runs as one SRM chromatogram per
    /// transition; both with a TIC chromatogram (mzML only). Times in minutes.
    /// The file is complete or as it was. mzXML has no chromatograms: an MS/MS run
    /// is refused there.
    static bool write(const QString& path, const TAcquisitionRun& run, Flavour flavour, QString* error);
};

class VNFILEFORMATS_EXPORT TMzMLReader : public TRunReader
{
public:
    explicit TMzMLReader(TMzMLFile::Flavour flavour)
        : m_flavour(flavour)
    { }
    QString formatName() const override;
    bool recognises(const QByteArray& head, const QString& fileName) const override;
    bool read(const QString& path, QVector<TImportedRun>* runs, QString* error) const override;
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                   QString* error) const override;

private:
    TMzMLFile::Flavour m_flavour;
};
