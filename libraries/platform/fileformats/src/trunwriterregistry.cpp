#include "trunwriter.h"

#include "tacquisitionrun.h"
#include "tandimsfile.h"
#include "tmzmlfile.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

const char* const Context = "TRunWriterRegistry";

QString tr(const char* text, const char* french)
{
    return QCoreApplication::translate(Context, text, french);
}

class AndiWriter : public TRunWriter
{
public:
    QString formatName() const override { return QStringLiteral("ANDI netCDF"); }
    QStringList extensions() const override { return {QStringLiteral("cdf"), QStringLiteral("nc")}; }
    bool write(const QString& path, const TAcquisitionRun& run, QString* error) const override
    {
        QString why;
        const bool written = TAndiMSFile::write(path, run, &why);
        if (!written && error)
            *error = why;
        return written;
    }
};

class MzMLWriter : public TRunWriter
{
public:
    explicit MzMLWriter(TMzMLFile::Flavour flavour)
        : m_flavour(flavour)
    { }
    QString formatName() const override
    {
        return m_flavour == TMzMLFile::MzML ? QStringLiteral("mzML") : QStringLiteral("mzXML");
    }
    QStringList extensions() const override { return {formatName()}; }
    bool write(const QString& path, const TAcquisitionRun& run, QString* error) const override
    {
        return TMzMLFile::write(path, run, m_flavour, error);
    }

private:
    TMzMLFile::Flavour m_flavour;
};

} // namespace

TRunWriter::~TRunWriter() = default;

const QVector<const TRunWriter*>& TRunWriterRegistry::writers()
{
    static const AndiWriter andi;
    static const MzMLWriter mzML(TMzMLFile::MzML);
    static const MzMLWriter mzXML(TMzMLFile::MzXML);
    static const QVector<const TRunWriter*> list{&andi, &mzML, &mzXML};
    return list;
}

const TRunWriter* TRunWriterRegistry::find(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    for (const TRunWriter* writer : writers()) {
        for (const QString& extension : writer->extensions()) {
            if (suffix.compare(extension, Qt::CaseInsensitive) == 0)
                return writer;
        }
    }
    return nullptr;
}

QString TRunWriterRegistry::extensionList()
{
    QStringList all;
    for (const TRunWriter* writer : writers()) {
        for (const QString& extension : writer->extensions())
            all.append(QLatin1Char('.') + extension);
    }
    return all.join(QStringLiteral(", "));
}

bool TRunWriterRegistry::write(const QString& path, const TAcquisitionRun& run, QString* format, QString* error)
{
    const auto refuse = [error](const QString& text) {
        if (error)
            *error = text;
        return false;
    };
    if (format)
        format->clear();
    const TRunWriter* writer = find(path);
    if (!writer)
        return refuse(tr("cannot tell the format of '%1' from its extension (known: %2)",
                         "impossible de déduire le format de '%1' de son extension (connues : %2)")
                          .arg(path, extensionList()));
    if (format)
        *format = writer->formatName();
    if (QFileInfo(path).isDir())
        return refuse(tr("'%1' is a folder", "'%1' est un dossier").arg(path));
    if (run.scanCount() == 0)
        return refuse(tr("cannot write '%1' as %2: the run holds no scan",
                         "impossible d'écrire '%1' en %2 : l'acquisition ne contient aucun scan")
                          .arg(path, writer->formatName()));
    QString why;
    if (!writer->write(path, run, &why))
        return refuse(tr("cannot write '%1' as %2: %3", "impossible d'écrire '%1' en %2 : %3")
                          .arg(path, writer->formatName(), why));
    return true;
}
