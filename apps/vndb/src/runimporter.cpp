#include "runimporter.h"

#include <tacquisitionrun.h>
#include <tandimsfile.h>
#include <tcmfile.h>
#include <tcsvrunfile.h>

#include <QFile>
#include <QFileInfo>

RunImporter::Format RunImporter::sniff(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Unknown;
    const QByteArray head = file.read(8);
    if (head.startsWith(QByteArray("CDF\x01", 4)) || head.startsWith(QByteArray("CDF\x02", 4)))
        return Andi;
    if (head.startsWith("\x89HDF"))
        return Unknown;
    if (head == TCMFile::magic())
        return Acquisition;
    return Csv;
}

QString RunImporter::formatName(Format format)
{
    switch (format) {
    case Andi:
        return QStringLiteral("ANDI netCDF");
    case Acquisition:
        return QStringLiteral("TCM");
    case Csv:
        return QStringLiteral("CSV");
    case Unknown:
        break;
    }
    return tr("unknown", "inconnu");
}

bool RunImporter::read(const QString& path, TAcquisitionRun* run, Format* format, QString* error)
{
    const QFileInfo info(path);
    if (!info.isFile()) {
        *error = info.exists() ? tr("'%1' is not a file", "'%1' n'est pas un fichier").arg(path)
                               : tr("file '%1' does not exist", "le fichier '%1' n'existe pas").arg(path);
        return false;
    }
    *format = sniff(path);
    TAcquisitionRun read;
    bool ok = false;
    switch (*format) {
    case Andi:
        ok = TAndiMSFile::read(path, &read);
        break;
    case Csv:
        ok = TCSVRunFile::read(path, &read);
        break;
    case Acquisition: {
        TCMFile file;
        ok = file.open(path) && file.verify() && file.toRun(&read);
        if (!ok)
            *error = file.errorString();
        break;
    }
    case Unknown:
        *error = tr("'%1' is neither a classic netCDF (ANDI) file nor a text table",
                    "'%1' n'est ni un fichier netCDF classique (ANDI) ni un tableau texte")
                     .arg(path);
        return false;
    }
    if (ok && read.scanCount() == 0) {
        *error = tr("'%1' holds no scan", "'%1' ne contient aucun scan").arg(path);
        return false;
    }
    if (!ok) {
        const QString what
            = tr("cannot read '%1' as %2", "impossible de lire '%1' comme %2").arg(path, formatName(*format));
        *error = error->isEmpty() ? what : tr("%1: %2", "%1 : %2").arg(what, *error);
        return false;
    }
    *run = read;
    return true;
}
