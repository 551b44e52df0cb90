// Feeds arbitrary bytes to the instrument readers (ANDI netCDF and CSV). A
// refusal must leave the run untouched; an acceptance must give a run that
// holds together.
#include <tacquisitionrun.h>
#include <tandimsfile.h>
#include <tcsvrunfile.h>
#include <trecordinglogger.h>

#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace {

void check(bool accepted, const TAcquisitionRun& run, const TAcquisitionRun& before)
{
    if (accepted ? !run.isConsistent() : run != before)
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static TRecordingLogger logger; // keeps the refusals off the terminal
    logger.clear();
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    TAcquisitionRun before;
    before.name = QStringLiteral("before");
    TAcquisitionRun run = before;
    check(TAndiMSFile::readMemory(bytes, &run, QStringLiteral("fuzz.cdf")), run, before);
    run = before;
    check(TCSVRunFile::readText(bytes, &run, QStringLiteral("fuzz.csv")), run, before);
    return 0;
}
