#include "trunreader.h"

#include "tandimsfile.h"
#include "tchemstationfile.h"
#include "tcmfile.h"
#include "tcsvrunfile.h"
#include "tjcampfile.h"
#include "tmzmlfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace {

const char* const Context = "TRunReaderRegistry";

QString tr(const char* text, const char* french)
{
    return QCoreApplication::translate(Context, text, french);
}

// Our own acquisition files, as another project exported them.
class AcquisitionFileReader : public TRunReader
{
public:
    QString formatName() const override { return QStringLiteral("TCM"); }
    bool recognises(const QByteArray& head, const QString&) const override { return head.startsWith(TCMFile::magic()); }
    bool read(const QString& path, QVector<TImportedRun>* runs, QString* error) const override
    {
        TCMFile file;
        TImportedRun one;
        if (!file.open(path) || !file.verify() || !file.toRun(&one.run)) {
            if (error)
                *error = file.errorString();
            return false;
        }
        *runs = {one};
        return true;
    }
    bool readBytes(const QByteArray& bytes, const QString&, QVector<TImportedRun>* runs, QString* error) const override
    {
        // The file class maps files; bytes in memory go through a private copy.
        QTemporaryFile copy;
        if (!copy.open() || copy.write(bytes) != bytes.size() || !copy.flush())
            return false;
        copy.close();
        return read(copy.fileName(), runs, error);
    }
};

class AndiReader : public TRunReader
{
public:
    QString formatName() const override { return QStringLiteral("ANDI netCDF"); }
    bool recognises(const QByteArray& head, const QString&) const override
    {
        return head.startsWith(QByteArray("CDF\x01", 4)) || head.startsWith(QByteArray("CDF\x02", 4));
    }
    bool read(const QString& path, QVector<TImportedRun>* runs, QString*) const override
    {
        TImportedRun one;
        if (!TAndiMSFile::read(path, &one.run))
            return false;
        *runs = {one};
        return true;
    }
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs, QString*) const override
    {
        TImportedRun one;
        if (!TAndiMSFile::readMemory(bytes, &one.run, source))
            return false;
        *runs = {one};
        return true;
    }
};

// Text tables: whatever holds no NUL byte in its first bytes.
class TextTableReader : public TRunReader
{
public:
    QString formatName() const override { return QStringLiteral("CSV"); }
    bool recognises(const QByteArray& head, const QString&) const override { return !head.contains('\0'); }
    bool read(const QString& path, QVector<TImportedRun>* runs, QString*) const override
    {
        TImportedRun one;
        if (!TCSVRunFile::read(path, &one.run))
            return false;
        *runs = {one};
        return true;
    }
    bool readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs, QString*) const override
    {
        TImportedRun one;
        if (!TCSVRunFile::readText(bytes, &one.run, source))
            return false;
        *runs = {one};
        return true;
    }
};

QByteArray readHead(const QString& path, bool* opened)
{
    QFile file(path);
    *opened = file.open(QIODevice::ReadOnly);
    return *opened ? file.read(TRunReader::headSize()) : QByteArray();
}

} // namespace

TRunReader::~TRunReader() = default;

bool TRunReader::recognisesFolder(const QString&) const
{
    return false;
}

bool TRunReader::read(const QString& path, QVector<TImportedRun>* runs, QString* error) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = tr("cannot open '%1'", "impossible d'ouvrir '%1'").arg(path);
        return false;
    }
    return readBytes(file.readAll(), path, runs, error);
}

const QVector<const TRunReader*>& TRunReaderRegistry::readers()
{
    // The list of formats. Content decides, so the most specific signatures come
    // first and the text reader, which takes anything without NUL bytes, last.
    static const AcquisitionFileReader acquisition;
    static const AndiReader andi;
    static const TChemStationMassSpectraReader chemStationScans;
    static const TChemStationChannelReader chemStationChannel;
    static const TChemStationFolderReader chemStationFolder;
    static const TJcampReader jcamp; // text too: its labels before the text tables
    static const TMzMLReader mzML(TMzMLFile::MzML);
    static const TMzMLReader mzXML(TMzMLFile::MzXML);
    static const TextTableReader text;
    static const QVector<const TRunReader*> list{
        &acquisition, &andi, &chemStationScans, &chemStationChannel, &chemStationFolder, &jcamp, &mzML, &mzXML, &text};
    return list;
}

const TRunReader* TRunReaderRegistry::find(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        for (const TRunReader* reader : readers()) {
            if (reader->recognisesFolder(path))
                return reader;
        }
        return nullptr;
    }
    bool opened = false;
    const QByteArray head = readHead(path, &opened);
    return opened ? findBytes(head, info.fileName()) : nullptr;
}

const TRunReader* TRunReaderRegistry::findBytes(const QByteArray& bytes, const QString& fileName)
{
    const QByteArray head = bytes.left(TRunReader::headSize());
    if (!describeForeign(head).isEmpty())
        return nullptr;
    for (const TRunReader* reader : readers()) {
        if (reader->recognises(head, fileName))
            return reader;
    }
    return nullptr;
}

QString TRunReaderRegistry::describeForeign(const QByteArray& head)
{
    if (head.startsWith("PK\x03\x04") || head.startsWith("PK\x05\x06"))
        return tr("a ZIP archive", "une archive ZIP");
    if (head.startsWith("\x89HDF"))
        return tr("an HDF5 file (netCDF-4), not a classic netCDF (ANDI) file",
                  "un fichier HDF5 (netCDF-4), pas un fichier netCDF classique (ANDI)");
    if (head.startsWith("\x1f\x8b"))
        return tr("a gzip-compressed file", "un fichier compressé gzip");
    if (head.startsWith("%PDF"))
        return tr("a PDF document", "un document PDF");
    if (head.startsWith("\x89PNG"))
        return tr("a PNG image", "une image PNG");
    if (head.startsWith("SQLite format 3"))
        return tr("an SQLite database", "une base SQLite");
    return QString();
}

bool TRunReaderRegistry::read(const QString& path, QVector<TImportedRun>* runs, QString* format, QString* error)
{
    QString why;
    const auto refuse = [&](const QString& text) {
        if (error)
            *error = text;
        return false;
    };
    if (format)
        format->clear();
    const QFileInfo info(path);
    if (!info.exists())
        return refuse(tr("file '%1' does not exist", "le fichier '%1' n'existe pas").arg(path));
    const TRunReader* reader = nullptr;
    if (info.isDir()) {
        reader = find(path);
        if (!reader)
            return refuse(tr("'%1' is a folder that holds no instrument data this program reads",
                             "'%1' est un dossier sans données d'instrument lisibles par ce programme")
                              .arg(path));
    } else {
        bool opened = false;
        const QByteArray head = readHead(path, &opened);
        if (!opened)
            return refuse(tr("cannot open '%1'", "impossible d'ouvrir '%1'").arg(path));
        const QString foreign = describeForeign(head);
        if (!foreign.isEmpty())
            return refuse(tr("'%1' is %2, not an instrument run", "'%1' est %2, pas une acquisition d'instrument")
                              .arg(path, foreign));
        reader = findBytes(head, info.fileName());
        if (!reader)
            return refuse(
                tr("'%1' is neither a classic netCDF (ANDI) file, an Agilent ChemStation file, an mzML or mzXML "
                   "file nor a text table",
                   "'%1' n'est ni un fichier netCDF classique (ANDI), ni un fichier Agilent ChemStation, ni un fichier "
                   "mzML ou mzXML, ni un tableau texte")
                    .arg(path));
    }
    if (format)
        *format = reader->formatName();
    QVector<TImportedRun> read;
    if (!reader->read(path, &read, &why) || read.isEmpty()) {
        const QString what
            = tr("cannot read '%1' as %2", "impossible de lire '%1' comme %2").arg(path, reader->formatName());
        return refuse(why.isEmpty() ? what : tr("%1: %2", "%1 : %2").arg(what, why));
    }
    for (const TImportedRun& one : read) {
        QString inconsistent;
        if (!one.run.isConsistent(&inconsistent))
            return refuse(tr("cannot read '%1' as %2: %3", "impossible de lire '%1' comme %2 : %3")
                              .arg(path, reader->formatName(), inconsistent));
    }
    if (runs)
        *runs = read;
    return true;
}

bool TRunReaderRegistry::readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                                   QString* format, QString* error)
{
    const TRunReader* reader = findBytes(bytes, QFileInfo(source).fileName());
    if (format)
        *format = reader ? reader->formatName() : QString();
    if (!reader) {
        if (error)
            *error = tr("'%1' is in no format this program reads", "'%1' n'est dans aucun format lisible").arg(source);
        return false;
    }
    QVector<TImportedRun> read;
    if (!reader->readBytes(bytes, source, &read, error) || read.isEmpty())
        return false;
    for (const TImportedRun& one : read) {
        if (!one.run.isConsistent(error))
            return false;
    }
    if (runs)
        *runs = read;
    return true;
}
