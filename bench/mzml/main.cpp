// Importing an mzML file (a full-scan run of realistic size, written by our
// writer) through the reader registry into a TAcquisitionRun. The baseline,
// timed in the same run, is the library's own bare read of the same file:
// parse, then decode every spectrum's m/z and intensity arrays. Target: the
// import takes at most 1.5 times the baseline.
#include <tacquisitionrun.h>
#include <trunreader.h>
#include <trunwriter.h>
#include <tsyntheticrun.h>

#include <pwiz/data/msdata/MSData.hpp>
#include <pwiz/data/msdata/Serializer_mzML.hpp>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace {

constexpr double Target = 1.5;

volatile double sink = 0;

double bareRead(const QString& path)
{
    using namespace pwiz::msdata;
    const boost::shared_ptr<std::istream> stream(
        new std::ifstream(QFile::encodeName(path).toStdString(), std::ios::binary));
    MSData data;
    Serializer_mzML().read(stream, data);
    const SpectrumList& list = *data.run.spectrumListPtr;
    double sum = 0;
    for (size_t i = 0; i < list.size(); ++i) {
        const SpectrumPtr spectrum = list.spectrum(i, true);
        const BinaryDataArrayPtr mz = spectrum->getMZArray();
        const BinaryDataArrayPtr intensity = spectrum->getIntensityArray();
        sum += spectrum->scanList.scans.front().cvParam(pwiz::cv::MS_scan_start_time).valueAs<double>();
        if (mz && !mz->data.empty())
            sum += mz->data.back() + intensity->data.back() + double(mz->data.size());
    }
    return sum;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir tmp;
    if (!tmp.isValid())
        return 2;
    TSyntheticRun::Options options;
    options.scanCount = 4000;
    options.pointsPerScan = 300;
    const TAcquisitionRun run = TSyntheticRun::generate(options);
    const QString path = tmp.filePath(QStringLiteral("run.mzML"));
    QString error;
    if (!TRunWriterRegistry::write(path, run, nullptr, &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 2;
    }
    std::printf("run.mzML: %.1f MB, %d scans, %lld points\n", QFile(path).size() / 1e6, run.scanCount(),
                static_cast<long long>(run.pointCount()));

    double baseline = 1e30;
    double import = 1e30;
    for (int round = 0; round < 3; ++round) {
        QElapsedTimer timer;
        timer.start();
        sink = sink + bareRead(path);
        baseline = std::min(baseline, timer.nsecsElapsed() / 1e6);

        QVector<TImportedRun> runs;
        timer.restart();
        if (!TRunReaderRegistry::read(path, &runs, nullptr, &error)) {
            std::fprintf(stderr, "import refused: %s\n", qPrintable(error));
            return 2;
        }
        import = std::min(import, timer.nsecsElapsed() / 1e6);
        if (runs.size() != 1 || runs.first().run.scanCount() != run.scanCount()) {
            std::fprintf(stderr, "import gave another run\n");
            return 2;
        }
    }
    const double ratio = import / baseline;
    std::printf("library's bare read (parse, decode every spectrum): %.1f ms\n"
                "import through the reader registry into a run: %.1f ms\n",
                baseline, import);
    std::printf("ratio: %.2f (target at most %.1f) %s\n", ratio, Target, ratio <= Target ? "PASS" : "FAIL");
    return ratio <= Target ? 0 : 1;
}
