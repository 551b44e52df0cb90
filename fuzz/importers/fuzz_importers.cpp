// Feeds arbitrary bytes to the instrument readers: each reader of the registry
// in turn, then the registry's own choice. A refusal must leave the run
// untouched; an acceptance must give runs that hold together.
#include <tacquisitionrun.h>
#include <tandimsfile.h>
#include <tcsvrunfile.h>
#include <trunreader.h>
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
    for (const TRunReader* reader : TRunReaderRegistry::readers()) {
        if (reader->formatName() == QLatin1String("TCM"))
            continue; // has its own target
        QVector<TImportedRun> runs;
        const bool accepted = reader->readBytes(bytes, QStringLiteral("fuzz.bin"), &runs, nullptr);
        if (accepted == runs.isEmpty())
            __builtin_trap();
        for (const TImportedRun& one : runs)
            check(true, one.run, before);
    }
    QVector<TImportedRun> runs;
    if (TRunReaderRegistry::readBytes(bytes, QStringLiteral("fuzz.bin"), &runs) == runs.isEmpty())
        __builtin_trap();
    return 0;
}
