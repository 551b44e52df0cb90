#include "tfile.h"

#include "messageloggerinterface.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {
bool report(bool logErrors, const QString& message)
{
    if (logErrors)
        MessageLoggerInterface::Warning(message);
    return false;
}
} // namespace

bool TFile::mkdir(const QString& path, bool logErrors)
{
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).isDir() || QDir().mkdir(path))
        return true;
    return report(logErrors,
                  QCoreApplication::translate("TFile", "Error while creating directory <b>%1</b>",
                                              "Echec de création du répertoire <b>%1</b>")
                      .arg(path));
}

bool TFile::mkdirs(const QString& path, bool logErrors)
{
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).isDir() || QDir().mkpath(path))
        return true;
    return report(logErrors,
                  QCoreApplication::translate("TFile", "Error while creating directory <b>%1</b>",
                                              "Echec de création du répertoire <b>%1</b>")
                      .arg(path));
}

bool TFile::copyFile(const QString& source, const QString& target, bool failIfExists, bool logErrors)
{
    const QString failed = QCoreApplication::translate("TFile", "Unable to copy <b>%1</b> to <b>%2</b>",
                                                       "Impossible de copier <b>%1</b> vers <b>%2</b>")
                               .arg(source, target);
    if (failIfExists && QFileInfo::exists(target))
        return report(logErrors, failed);
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return report(logErrors, failed);
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly))
        return report(logErrors, failed);
    // A short write is a failure even when the whole source was read: the
    // target would otherwise be committed truncated.
    bool copied = true;
    QByteArray buffer;
    while (copied && !in.atEnd()) {
        buffer = in.read(1 << 20);
        copied = in.error() == QFileDevice::NoError && out.write(buffer) == buffer.size();
    }
    if (!copied) {
        out.cancelWriting();
        return report(logErrors, failed);
    }
    if (!out.commit())
        return report(logErrors, failed);
    return true;
}
