#include "vndbrunner.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>

QStringList VndbResult::errLines() const
{
    return err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

VndbResult VndbRunner::run(const QStringList& arguments, const QString& workingDir)
{
    QProcess process;
    process.setProgram(QStringLiteral(VNDB_EXE));
    process.setArguments(arguments);
    if (!workingDir.isEmpty())
        process.setWorkingDirectory(workingDir);
    VndbResult result;
    process.start();
    if (!process.waitForStarted(10000))
        return result;
    process.closeWriteChannel();
    process.waitForFinished(120000);
    result.crashed = process.exitStatus() != QProcess::NormalExit;
    result.exitCode = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

QMap<QString, QByteArray> VndbRunner::snapshot(const QString& dir)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(dir, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    const QDir base(dir);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = base.relativeFilePath(path);
        if (it.fileInfo().isDir()) {
            files.insert(relative, QByteArrayLiteral("<dir>"));
            continue;
        }
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        files.insert(relative, QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex());
    }
    return files;
}

TAcquisitionRun VndbRunner::smallRun(TSyntheticRun::Kind kind, quint32 seed, int scans)
{
    TSyntheticRun::Options options;
    options.kind = kind;
    options.seed = seed;
    options.scanCount = scans;
    options.pointsPerScan = 40;
    options.name = QStringLiteral("Test run %1").arg(seed);
    return TSyntheticRun::generate(options);
}

bool VndbRunner::writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray VndbRunner::readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
