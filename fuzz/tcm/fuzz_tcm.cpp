// Feeds arbitrary bytes to the acquisition file reader as a file on disk (the
// reader maps files) and runs every read operation on whatever it accepts.
#include <tacquisitionrun.h>
#include <tcmfile.h>
#include <tdescriptionacquisition.h>

#include <QDir>
#include <QFile>
#include <QString>

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

QString scratchPath()
{
    const QString dir = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
    return QStringLiteral("%1/fuzz_tcm_%2.tcm").arg(dir).arg(getpid());
}

void exercise(TCMFile& file)
{
    const int n = file.nbScans();
    (void)file.signalName();
    (void)file.channelNames();
    (void)file.transitions();
    (void)TDescriptionAcquisition::fromFile(file);
    (void)file.mzRangeExist(50.0f, 60.0f);
    (void)file.mzRangeExist(float(file.lowMass()), float(file.highMass()));
    TCMFile::Spectrum spectrum;
    std::vector<float> eic(std::size_t(n > 0 ? n : 1));
    if (n <= 0) {
        (void)file.loadContent(-1, -1, 0, 0);
        return;
    }
    const unsigned long last = unsigned(n - 1);
    // A middle window first, bounded by times taken from the file itself.
    if (file.loadContent(-1, -1, last / 2, last)) {
        const double* times = file.rtime();
        const float from = float(times[last / 2]);
        const float to = float(times[last]);
        (void)file.loadContent(from, to, 0, last);
        (void)file.loadContent(to, from, 0, last);
    }
    if (file.loadContent(-1, -1, 0, last)) {
        double sink = 0;
        for (unsigned long scan = 0; scan <= last && scan < 64; ++scan) {
            sink += file.rtime()[scan] + file.tic()[scan];
            (void)file.allIonsAtScan(&spectrum, scan);
        }
        for (int c = 0; file.channel(c); ++c)
            sink += file.channel(c)[last];
        (void)file.averageAtScanRange(&spectrum, 0, last);
        (void)file.averageAtScanRange(&spectrum, last / 3, last / 2);
        (void)file.ionAtFullRange(eic.data(), 0.0f, 1e9f);
        (void)file.ionAtFullRange(eic.data(), 56.5f, 57.5f);
        (void)file.ionAtScanRange(eic.data(), 190.5f, 191.5f, 0, last);
        (void)sink;
    }
    TAcquisitionRun run;
    if (file.toRun(&run)) {
        // What the reader accepts in full, the writer must take back.
        if (!run.isConsistent())
            __builtin_trap();
    }
    (void)file.verify();
    file.deleteContent();
    (void)file.allIonsAtScan(&spectrum, 0);
}

quint32 crc32(const unsigned char* data, std::size_t size)
{
    quint32 crc = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int k = 0; k < 8; ++k)
            crc = (crc & 1u) ? 0xEDB88320u ^ (crc >> 1) : crc >> 1;
    }
    return crc ^ 0xFFFFFFFFu;
}

void run(const QByteArray& bytes)
{
    static const QString path = scratchPath();
    {
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return;
        out.write(bytes);
    }
    TCMFile file;
    if (file.open(path))
        exercise(file);
    file.close();
    QFile::remove(path);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    run(bytes);
    // Mutated headers almost never keep their checksum: try each input once
    // more with the checksum made right, so the checks behind it are reached.
    if (bytes.size() >= 128) {
        const quint32 crc = crc32(reinterpret_cast<const unsigned char*>(bytes.constData()), 124);
        for (int i = 0; i < 4; ++i)
            bytes[124 + i] = char((crc >> (8 * i)) & 0xFFu);
        run(bytes);
    }
    return 0;
}
