// Feeds arbitrary bytes to the mzML and mzXML readers. Whatever the library
// throws must be caught at the reader's boundary: a refusal leaves the runs
// untouched, an acceptance gives runs that hold together.
#include <tacquisitionrun.h>
#include <tmzmlfile.h>
#include <trecordinglogger.h>

#include <QByteArray>

#include <cstddef>
#include <cstdint>

// The library builds its vocabulary tables on first use, seconds under the
// sanitizers: done here, so that the first input is not timed for it.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    QVector<TImportedRun> runs;
    TMzMLFile::readBytes(QByteArray("<mzML/>"), TMzMLFile::MzML, &runs, nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static TRecordingLogger logger; // keeps diagnostics off the terminal
    logger.clear();
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    for (const TMzMLFile::Flavour flavour : {TMzMLFile::MzML, TMzMLFile::MzXML}) {
        QVector<TImportedRun> runs(1);
        runs[0].suffix = QStringLiteral("before");
        QString error;
        const bool accepted = TMzMLFile::readBytes(bytes, flavour, &runs, &error);
        if (!accepted && (runs.size() != 1 || runs[0].suffix != QLatin1String("before") || error.isEmpty()))
            __builtin_trap();
        if (accepted) {
            if (runs.isEmpty())
                __builtin_trap();
            for (const TImportedRun& one : runs) {
                if (!one.run.isConsistent() || one.run.scanCount() == 0)
                    __builtin_trap();
            }
        }
    }
    return 0;
}
