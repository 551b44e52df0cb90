#include "tanalysisfolder.h"

#include "tacquisitionrun.h"
#include "tcmfile.h"
#include "tcmfileregistry.h"
#include "tdescriptionacquisition.h"
#include "tdetectorfile.h"
#include "trunreader.h"

#include <messageloggerinterface.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {

const char* const Context = "TAnalysisFolder";

bool fail(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return false;
}

// A name becomes a folder and a file name: it must stay one path component.
bool isSafeName(const QString& name)
{
    if (name.trimmed().isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return false;
    for (const QChar c : name) {
        if (c == QLatin1Char('/') || c == QLatin1Char('\\') || c == QLatin1Char(':') || c.unicode() < 0x20)
            return false;
    }
    return !name.startsWith(QLatin1Char('.'));
}

} // namespace

QString TAnalysisFolder::folderPath(const QString& analysesFolder, const QString& name)
{
    return QDir(analysesFolder).filePath(name);
}

QString TAnalysisFolder::tcmPath(const QString& analysesFolder, const QString& name)
{
    return QDir(folderPath(analysesFolder, name)).filePath(name + QStringLiteral(".tcm"));
}

bool TAnalysisFolder::readImports(const QString& path, QVector<TImportedRun>* runs, QString* error)
{
    return TRunReaderRegistry::read(path, runs, nullptr, error);
}

bool TAnalysisFolder::readImportsReported(const QString& path, QVector<TImportedRun>* runs)
{
    if (!runs)
        return false;
    const auto report = [&path](const QString& why) {
        MessageLoggerInterface::Error(QCoreApplication::translate(Context, "The file <b>%1</b> is refused: %2",
                                                                  "Le fichier <b>%1</b> est refusé : %2")
                                          .arg(QDir::toNativeSeparators(path), why));
        return false;
    };
    QVector<TImportedRun> read;
    QString error;
    const TRunReader* reader = QFileInfo(path).exists() ? TRunReaderRegistry::find(path) : nullptr;
    if (!reader) // missing, foreign or unknown: the registry says which
        return TRunReaderRegistry::read(path, &read, nullptr, &error) ? false : report(error);
    // Readers that log their refusal give no reason of their own: one message, not two.
    if (!reader->read(path, &read, &error) || read.isEmpty())
        return error.isEmpty() ? false : report(error);
    for (const TImportedRun& one : read) {
        QString why;
        if (!one.run.isConsistent(&why))
            return report(why);
    }
    *runs = read;
    return true;
}

bool TAnalysisFolder::readImport(const QString& path, TAcquisitionRun* run)
{
    QVector<TImportedRun> runs;
    if (!run || !readImportsReported(path, &runs))
        return false;
    *run = runs.first().run;
    return true;
}

bool TAnalysisFolder::write(const TAcquisitionRun& run, const QString& analysesFolder, const QString& name,
                            QString* error)
{
    if (!isSafeName(name))
        return fail(error, QStringLiteral("the analysis name \"%1\" cannot name a folder").arg(name));
    QString why;
    if (!run.isConsistent(&why))
        return fail(error, QStringLiteral("the acquisition is inconsistent: %1").arg(why));
    const QString target = folderPath(analysesFolder, name);
    if (QFileInfo::exists(target))
        return fail(error, QStringLiteral("the folder %1 already exists").arg(target));
    if (!QDir().mkpath(analysesFolder))
        return fail(error, QStringLiteral("cannot create the folder %1").arg(analysesFolder));

    // The hidden sibling lives on the same file system, so the final rename is one step.
    const QString staging
        = QDir(analysesFolder)
              .filePath(
                  QStringLiteral(".%1.%2.partial").arg(name, QUuid::createUuid().toString(QUuid::Id128).left(12)));
    if (!QDir().mkdir(staging))
        return fail(error, QStringLiteral("cannot create the folder %1").arg(staging));
    const auto abandon = [&](const QString& reason) {
        QDir(staging).removeRecursively();
        return fail(error, reason);
    };

    const QString tcm = QDir(staging).filePath(name + QStringLiteral(".tcm"));
    if (!TCMFile::save(tcm, run, &why))
        return abandon(why);
    TCMFile check;
    if (!check.open(tcm) || check.nbScans() != run.scanCount() || !check.verify())
        return abandon(QStringLiteral("the acquisition file does not read back: %1").arg(check.errorString()));
    check.close();
    if (!run.detectors.isEmpty()) {
        const QString detectors = QDir(staging).filePath(QString::fromLatin1(TDetectorFile::fileName()));
        QVector<TDetectorChannel> back;
        if (!TDetectorFile::save(detectors, run.detectors, &why) || !TDetectorFile::load(detectors, &back, &why)
            || back != run.detectors)
            return abandon(QStringLiteral("the detector channels do not read back: %1").arg(why));
    }
    for (const auto& file : run.files) {
        if (!isSafeName(file.first) || file.first.endsWith(QLatin1String(".tcm"))
            || file.first == QLatin1String(TDescriptionAcquisition::fileName())
            || file.first == QLatin1String(TDetectorFile::fileName()))
            return abandon(QStringLiteral("the file name \"%1\" cannot be kept in an analysis").arg(file.first));
        QFile out(QDir(staging).filePath(file.first));
        if (!out.open(QIODevice::WriteOnly) || out.write(file.second) != file.second.size())
            return abandon(QStringLiteral("cannot write %1").arg(out.fileName()));
    }
    TDescriptionAcquisition description = TDescriptionAcquisition::fromRun(run);
    if (!description.save(QDir(staging).filePath(QString::fromLatin1(TDescriptionAcquisition::fileName()))))
        return abandon(QStringLiteral("cannot write the acquisition description in %1").arg(staging));
    // A description the project cannot read back would leave an analysis nobody can list.
    TDescriptionAcquisition reread;
    if (!reread.load(QDir(staging).filePath(QString::fromLatin1(TDescriptionAcquisition::fileName()))))
        return abandon(QStringLiteral("the acquisition description does not read back in %1").arg(staging));
    // A file that was open under the final path belongs to an analysis removed since.
    TCMFileRegistry::forget(tcmPath(analysesFolder, name));
    if (!QDir().rename(staging, target))
        return abandon(QStringLiteral("cannot rename %1 to %2").arg(staging, target));
    return true;
}

bool TAnalysisFolder::importFile(const QString& source, const QString& analysesFolder, const QString& name,
                                 QString* error)
{
    QVector<TImportedRun> runs;
    if (!readImports(source, &runs, error))
        return false;
    // A source giving several runs is imported whole or not at all.
    for (const TImportedRun& one : runs) {
        if (QFileInfo::exists(folderPath(analysesFolder, name + one.suffix)))
            return fail(
                error,
                QStringLiteral("the folder %1 already exists").arg(folderPath(analysesFolder, name + one.suffix)));
    }
    QStringList written;
    for (const TImportedRun& one : runs) {
        if (!write(one.run, analysesFolder, name + one.suffix, error)) {
            for (const QString& done : written) {
                TCMFileRegistry::forget(tcmPath(analysesFolder, done));
                QDir(folderPath(analysesFolder, done)).removeRecursively();
            }
            return false;
        }
        written.append(name + one.suffix);
    }
    return true;
}
