// Importing a long Agilent ChemStation run (36,000 scans, made by our writer,
// with an FID channel) into an analysis folder: read, checked, written as
// .tcm and read back. The baseline, timed in the same run, is one plain pass
// that reads the file and decodes every scan into flat arrays. Target: the
// import takes at most twice the baseline.
#include <tacquisitionrun.h>
#include <tanalysisfolder.h>
#include <tchemstationfile.h>
#include <tcmfileregistry.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

constexpr int Scans = 36000;
constexpr int PointsPerScan = 120;
constexpr double Target = 2.0;

volatile double sink = 0;

TAcquisitionRun longRun()
{
    TAcquisitionRun run;
    std::vector<quint32> keys(PointsPerScan);
    std::vector<float> values(PointsPerScan);
    quint32 state = 12345;
    for (int s = 0; s < Scans; ++s) {
        for (int k = 0; k < PointsPerScan; ++k) {
            keys[size_t(k)] = quint32(5000 + 400 * k + (s % 7) * 20);
            state = state * 1664525u + 1013904223u;
            values[size_t(k)] = float((state >> 8) % 16000);
        }
        run.appendScan(0.02 + s * (60.0 / Scans), keys.data(), values.data(), PointsPerScan);
    }
    return run;
}

// What any program must do at least: read the bytes, walk the scans, unpack
// masses, abundances, times and TICs.
double plainDecode(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1.0;
    const QByteArray bytes = file.readAll();
    const auto* d = reinterpret_cast<const uchar*>(bytes.constData());
    const int scans = qFromLittleEndian<quint16>(d + 0x142);
    qint64 p = 2 * qint64(qFromBigEndian<quint16>(d + 0x10A)) - 2;
    std::vector<double> times, tic, masses, abundances;
    times.reserve(size_t(scans));
    tic.reserve(size_t(scans));
    for (int s = 0; s < scans && p + 28 <= bytes.size(); ++s) {
        const int count = qFromBigEndian<quint16>(d + p + 12);
        times.push_back(qFromBigEndian<quint32>(d + p + 2) / 60000.0);
        const uchar* q = d + p + 18;
        for (int k = 0; k < count; ++k) {
            const quint16 v = qFromBigEndian<quint16>(q + 4 * k + 2);
            masses.push_back(qFromBigEndian<quint16>(q + 4 * k) / 20.0);
            abundances.push_back(double(v & 0x3FFF) * double(1u << (3 * (v >> 14))));
        }
        tic.push_back(qFromBigEndian<quint32>(q + 4 * count + 6));
        p += 28 + 4 * qint64(count);
    }
    return double(masses.size()) + abundances.back() + times.back() + tic.back();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir tmp;
    if (!tmp.isValid())
        return 2;
    const QString folder = tmp.filePath(QStringLiteral("LONG.D"));
    TDetectorChannel fid{QStringLiteral("FID1A"), QStringLiteral("pA"), QStringLiteral("Front Signal"), {}, {}};
    for (int i = 0; i < 360000; ++i) {
        fid.times.append(i / 6000.0);
        fid.values.append(10.0 + std::sin(i / 500.0));
    }
    if (!TChemStationFile::writeFolder(folder, longRun(), TAcquisitionRun(), {fid})) {
        std::fprintf(stderr, "cannot write the run\n");
        return 2;
    }
    const QString ms = QDir(folder).filePath(QStringLiteral("data.ms"));
    std::printf("data.ms: %.1f MB, %d scans of %d points; FID1A.ch: %d points\n", QFile(ms).size() / 1e6, Scans,
                PointsPerScan, int(fid.values.size()));

    double baseline = 1e30;
    double import = 1e30;
    for (int round = 0; round < 3; ++round) {
        QElapsedTimer timer;
        timer.start();
        sink = sink + plainDecode(ms);
        baseline = std::min(baseline, timer.nsecsElapsed() / 1e6);

        const QString analyses = tmp.filePath(QStringLiteral("Analyses%1").arg(round));
        QString error;
        timer.restart();
        if (!TAnalysisFolder::importFile(folder, analyses, QStringLiteral("LONG"), &error)) {
            std::fprintf(stderr, "import refused: %s\n", qPrintable(error));
            return 2;
        }
        import = std::min(import, timer.nsecsElapsed() / 1e6);
        TCMFileRegistry::forget(TAnalysisFolder::tcmPath(analyses, QStringLiteral("LONG")));
    }
    const double ratio = import / baseline;
    std::printf("plain read and decode: %.1f ms\nimport (read, check, write .tcm, read back): %.1f ms\n", baseline,
                import);
    std::printf("ratio: %.2f (target at most %.1f) %s\n", ratio, Target, ratio <= Target ? "PASS" : "FAIL");
    return ratio <= Target ? 0 : 1;
}
