// Memory of multichannel data bound to a long analysis (36,000 scans of 300
// points, about 11 million points): opening it through the project database
// and reading it lazily must not copy the measurements. Resident memory is
// read from /proc/self/statm before and after; the baseline, measured in the
// same run, is the growth of a full in-memory read of the same file.
#include <tacquisitionrun.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tprojectmgr.h>
#include <tsyntheticrun.h>
#include <vndatabase.h>
#include <vndatabaseimport.h>
#include <vnmcdata.h>
#include <vnobject2analysis.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

// Resident bytes of this process.
double residentBytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1.0;
    const QList<QByteArray> fields = statm.readAll().simplified().split(' ');
    return fields.size() > 1 ? fields[1].toDouble() * double(sysconf(_SC_PAGESIZE)) : -1.0;
}

volatile double sink = 0;

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir tmp;
    if (!tmp.isValid())
        return 2;
    const QString project = tmp.filePath(QStringLiteral("project"));
    const QString name = QStringLiteral("Long run");
    {
        TSyntheticRun::Options options;
        options.scanCount = 36000;
        options.pointsPerScan = 300;
        options.name = name;
        const TAcquisitionRun run = TSyntheticRun::generate(options);
        QString error;
        const QString folder = project + QLatin1Char('/') + VNObject2Analysis::folderName() + QLatin1Char('/') + name;
        if (!QDir().mkpath(folder) || !TSyntheticRun::write(run, folder, nullptr, &error)) {
            std::fprintf(stderr, "cannot write the run: %s\n", qPrintable(error));
            return 2;
        }
    }

    TProjectMgr manager(true);
    auto* db = new VNDatabase(project, QString());
    manager.setCurrentDatabase(db, true);
    VNDatabaseImport(db).analysisObjectSave(name);
    const VNObject2Analysis* analysis = db->getAnalysis(name);
    TCMFile* tcm = nullptr;
    if (!analysis || VNDatabase::analysisTCM(analysis, &tcm) != 36000) {
        std::fprintf(stderr, "the analysis cannot be read\n");
        return 2;
    }
    const double fileSize = double(QFileInfo(tcm->fileName()).size());
    std::printf("file: %.1f MB, %llu points\n", fileSize / 1e6, static_cast<unsigned long long>(tcm->pointCount()));

    // Bound data: open, then lazy queries that the application makes first.
    const double before = residentBytes();
    std::unique_ptr<VNMCData> data(VNDatabase::getMCData(analysis));
    if (!data)
        return 2;
    for (int i = 0; i < data->nbScans(); i += 97)
        sink = sink + double(data->getRetention(i)) + double(data->getCanalAbund(0, i));
    sink = sink + double(data->isMultiChannel());
    const double bound = residentBytes() - before;
    data.reset();

    // Baseline: the same file read whole into memory.
    const double beforeFull = residentBytes();
    TAcquisitionRun full;
    TCMFile reader(tcm->fileName());
    if (!reader.toRun(&full))
        return 2;
    const double copied = residentBytes() - beforeFull;
    sink = sink + double(full.pointCount());

    const double ratio = bound / fileSize;
    const bool pass = ratio < 0.10;
    std::printf("%-40s growth %9.2f MB  file %8.2f MB  ratio %6.4f  target < 0.10  %s\n",
                "bound VNMCDataDynamic, opened + lazy reads", bound / 1e6, fileSize / 1e6, ratio,
                pass ? "PASS" : "FAIL");
    std::printf("%-40s growth %9.2f MB  file %8.2f MB  ratio %6.4f  (baseline)\n", "full in-memory read of the file",
                copied / 1e6, fileSize / 1e6, copied / fileSize);
    std::printf("bound / full read: %.4f\n", copied > 0 ? bound / copied : 0.0);
    TCMFileRegistry::clear();
    return pass ? 0 : 1;
}
