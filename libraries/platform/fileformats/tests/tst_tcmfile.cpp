#include <testfiles.h>

#include <tacquisitionrun.h>
#include <tcmfile.h>
#include <tdescriptionacquisition.h>
#include <tsyntheticrun.h>

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <cmath>
#include <cstring>

namespace {

quint32 crc32(const unsigned char* data, int size)
{
    quint32 crc = 0xFFFFFFFFu;
    for (int i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int k = 0; k < 8; ++k)
            crc = (crc & 1u) ? 0xEDB88320u ^ (crc >> 1) : crc >> 1;
    }
    return crc ^ 0xFFFFFFFFu;
}

// Patches a header field and keeps the header checksum right, so that the
// checks behind the checksum are reached.
// The host is little-endian like the format (the library refuses to build otherwise).
template <typename T>
void put(QByteArray& bytes, quint64 offset, T value)
{
    if (offset + sizeof value <= quint64(bytes.size()))
        std::memcpy(bytes.data() + offset, &value, sizeof value);
}

template <typename T>
QByteArray patched(QByteArray bytes, int offset, T value)
{
    put<T>(bytes, quint64(offset), value);
    put<quint32>(bytes, 124, crc32(reinterpret_cast<const unsigned char*>(bytes.constData()), 124));
    return bytes;
}

template <typename T>
T field(const QByteArray& bytes, int offset)
{
    return qFromLittleEndian<T>(bytes.constData() + offset);
}

unsigned long expectedAbundance(double v)
{
    return v > 0 ? static_cast<unsigned long>(v + 0.5) : 0;
}

// The reference answers, computed naively from the run in memory.
std::vector<float> referenceEic(const TAcquisitionRun& run, float low, float high)
{
    const quint32 a = quint32(std::llround(double(low) * 100.0));
    const quint32 b = quint32(std::llround(double(high) * 100.0));
    std::vector<float> out;
    for (int s = 0; s < run.scanCount(); ++s) {
        float sum = 0;
        for (int p = 0; p < run.pointsAtScan(s); ++p) {
            if (run.massesAtScan(s)[p] >= a && run.massesAtScan(s)[p] <= b)
                sum += run.abundancesAtScan(s)[p];
        }
        out.push_back(sum);
    }
    return out;
}

TCMFile::Spectrum referenceAverage(const TAcquisitionRun& run, int first, int last)
{
    std::map<unsigned long, double> sums;
    for (int s = first; s <= last; ++s) {
        for (int p = 0; p < run.pointsAtScan(s); ++p)
            sums[run.massesAtScan(s)[p]] += run.abundancesAtScan(s)[p];
    }
    TCMFile::Spectrum out;
    for (const auto& e : sums)
        out[e.first] = expectedAbundance(e.second / (last - first + 1));
    return out;
}

TSyntheticRun::Options small(TSyntheticRun::Kind kind, quint32 seed = 7)
{
    TSyntheticRun::Options o;
    o.kind = kind;
    o.seed = seed;
    o.scanCount = 400;
    o.pointsPerScan = 60;
    return o;
}

} // namespace

class TestTCMFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_full;
    TAcquisitionRun m_run;

    QString path(const QString& name) const { return m_dir.filePath(name); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_run = TSyntheticRun::generate(small(TSyntheticRun::FullScan));
        m_full = path("full.tcm");
        QString error;
        QVERIFY2(TCMFile::save(m_full, m_run, &error), qPrintable(error));
    }

    void generatorIsReproducibleAndRealistic()
    {
        TSyntheticRun::Options o = small(TSyntheticRun::FullScan);
        QVERIFY(TSyntheticRun::generate(o) == m_run);
        o.seed = 8;
        QVERIFY(TSyntheticRun::generate(o) != m_run);
        QString why;
        QVERIFY2(m_run.isConsistent(&why), qPrintable(why));
        QCOMPARE(m_run.scanCount(), 400);
        QCOMPARE(m_run.pointsAtScan(0), 60);
        // Pristane follows n-C17 and phytane n-C18 on a non-polar column.
        const double c17 = TSyntheticRun::retentionTime(o, 1700);
        const double pristane = TSyntheticRun::retentionTime(o, 1707);
        const double c18 = TSyntheticRun::retentionTime(o, 1800);
        const double phytane = TSyntheticRun::retentionTime(o, 1811);
        QVERIFY(c17 < pristane && pristane < c18 && c18 < phytane);

        // At the apex of n-C20 the base peak of the spectrum is the butyl ion
        // (m/z 57.07) and the molecular ion (282.33) is there.
        TSyntheticRun::Options dense = o;
        dense.scanCount = 6000;
        dense.pointsPerScan = 200;
        const TAcquisitionRun run = TSyntheticRun::generate(dense);
        const double apex = TSyntheticRun::retentionTime(dense, 2000);
        int scan = 0;
        while (scan + 1 < run.scanCount() && run.rtimes.at(scan + 1) <= apex)
            ++scan;
        const quint32* keys = run.massesAtScan(scan);
        const float* values = run.abundancesAtScan(scan);
        int base = 0;
        bool molecular = false;
        for (int p = 0; p < run.pointsAtScan(scan); ++p) {
            if (values[p] > values[base])
                base = p;
            molecular |= keys[p] / 100 == 282;
        }
        QCOMPARE(int(std::lround(keys[base] / 100.0)), 57);
        QVERIFY(molecular);

        // Any scan count, down to none.
        for (int count : {0, 1, 2}) {
            dense.scanCount = count;
            const TAcquisitionRun tiny = TSyntheticRun::generate(dense);
            QCOMPARE(tiny.scanCount(), count);
            QVERIFY(tiny.isConsistent());
        }
    }

    void roundTrip_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("full scan") << int(TSyntheticRun::FullScan);
        QTest::newRow("MS/MS") << int(TSyntheticRun::MSMS);
        QTest::newRow("multichannel") << int(TSyntheticRun::Multichannel);
    }

    void roundTrip()
    {
        QFETCH(int, kind);
        const TAcquisitionRun run = TSyntheticRun::generate(small(TSyntheticRun::Kind(kind), 11));
        QString tcm;
        QString error;
        QVERIFY2(TSyntheticRun::write(run, path(QString("rt%1").arg(kind)), &tcm, &error), qPrintable(error));

        TCMFile file(tcm);
        QVERIFY2(file.isOpen(), qPrintable(file.errorString()));
        QCOMPARE(file.nbScans(), run.scanCount());
        QCOMPARE(file.acquisitionSystem(), run.acquisitionSystem);
        QCOMPARE(file.signalName(), QString("TIC"));
        QCOMPARE(file.channelNames(), run.channelNames);
        QCOMPARE(file.transitions(), run.transitions);
        QVERIFY(!file.isLoaded());
        QVERIFY(file.rtime() == nullptr);
        QVERIFY(file.loadContent(-1, -1, 0, file.nbScans() - 1));
        QVERIFY(file.verify());
        for (int s = 0; s < run.scanCount(); ++s) {
            QCOMPARE(file.rtime()[s], run.rtimes.at(s));
            QCOMPARE(file.tic()[s], run.tic.at(s));
        }
        for (int c = 0; c < run.channels.size(); ++c)
            QVERIFY(std::equal(run.channels.at(c).cbegin(), run.channels.at(c).cend(), file.channel(c)));
        QVERIFY(file.channel(run.channels.size()) == nullptr);

        TCMFile::Spectrum spectrum;
        for (int s : {0, 1, run.scanCount() / 2, run.scanCount() - 1}) {
            QCOMPARE(file.allIonsAtScan(&spectrum, s), run.pointsAtScan(s));
            QVERIFY(spectrum == referenceAverage(run, s, s)); // one scan: its own rounded points
        }
        const int first = run.scanCount() / 3;
        const int last = first + 57;
        QCOMPARE(file.averageAtScanRange(&spectrum, first, last), int(referenceAverage(run, first, last).size()));
        QVERIFY(spectrum == referenceAverage(run, first, last));

        const float low = kind == TSyntheticRun::MSMS ? 190.5f : 56.5f;
        const float high = kind == TSyntheticRun::MSMS ? 191.5f : 57.5f;
        QVERIFY(file.mzRangeExist(low, high));
        std::vector<float> eic(std::size_t(run.scanCount()), -1.0f);
        QCOMPARE(file.ionAtFullRange(eic.data(), low, high), run.scanCount());
        QVERIFY(eic == referenceEic(run, low, high));

        TAcquisitionRun back;
        QVERIFY(file.toRun(&back));
        QVERIFY(back == run);

        TDescriptionAcquisition description;
        QVERIFY(description.load(QFileInfo(tcm).dir().filePath("acquisition.xml")));
        QVERIFY(description == TDescriptionAcquisition::fromRun(run));
        if (kind == TSyntheticRun::MSMS) {
            QCOMPARE(run.acquisitionSystem, quint32(768));
            QVERIFY(run.transitions.contains(qMakePair(412.0f, 191.0f)));
            QVERIFY(run.transitions.contains(qMakePair(372.0f, 217.0f)));
            QCOMPARE(run.pointsAtScan(0), run.transitions.size());
        }
    }

    // Masses, scans and times outside the file or outside what is loaded are refused.
    void windowsAndPartialLoading()
    {
        TCMFile file(m_full);
        QVERIFY(file.isOpen());
        const int n = file.nbScans();
        QVERIFY(file.mzRangeExist(float(file.lowMass()), float(file.lowMass())));
        QVERIFY(!file.mzRangeExist(float(file.highMass()) + 1, float(file.highMass()) + 5));
        QVERIFY(!file.mzRangeExist(100, 50));
        QVERIFY(!file.mzRangeExist(NAN, 50));
        std::vector<float> eic(static_cast<std::size_t>(n));
        QCOMPARE(file.ionAtFullRange(eic.data(), 56, 58), -1); // nothing loaded
        TCMFile::Spectrum spectrum;
        QCOMPARE(file.allIonsAtScan(&spectrum, 0), -1);
        QVERIFY(file.loadContent(-1, -1, 0, 10));
        QCOMPARE(file.ionAtFullRange(eic.data(), 56, 58), -1); // only a part loaded
        QCOMPARE(file.ionAtScanRange(eic.data(), 56, 58, 0, 10), 11);
        QCOMPARE(file.ionAtScanRange(eic.data(), 56, 58, 0, 11), -1);
        QCOMPARE(file.ionAtScanRange(eic.data(), 58, 56, 0, 10), -1);
        QCOMPARE(file.ionAtScanRange(nullptr, 56, 58, 0, 10), -1);
        // An empty window gives zeros, a window past every mass too.
        QCOMPARE(file.ionAtScanRange(eic.data(), 1000, 2000, 0, 10), 11);
        QCOMPARE(eic[5], 0.0f);

        QVERIFY(file.loadContent(-1, -1, 100, 150));
        QCOMPARE(file.firstLoadedScan(), 100L);
        QCOMPARE(file.lastLoadedScan(), 150L);
        QCOMPARE(file.allIonsAtScan(&spectrum, 99), -1);
        QVERIFY(spectrum.empty());
        QCOMPARE(file.allIonsAtScan(&spectrum, 151), -1);
        QCOMPARE(file.allIonsAtScan(&spectrum, 100), m_run.pointsAtScan(100));
        QCOMPARE(file.averageAtScanRange(&spectrum, 99, 120), -1);
        QCOMPARE(file.averageAtScanRange(&spectrum, 120, 110), -1);
        QCOMPARE(file.averageAtScanRange(&spectrum, 110, 110), m_run.pointsAtScan(110));

        // Times narrow the scan range from both sides.
        const float from = float(m_run.rtimes.at(120));
        const float to = float(m_run.rtimes.at(130));
        QVERIFY(file.loadContent(from, to, 0, n - 1));
        QVERIFY(file.firstLoadedScan() >= 119 && file.firstLoadedScan() <= 121);
        QVERIFY(file.lastLoadedScan() >= 129 && file.lastLoadedScan() <= 131);
        for (long s = file.firstLoadedScan(); s <= file.lastLoadedScan(); ++s)
            QVERIFY(file.rtime()[s] >= double(from) && file.rtime()[s] <= double(to));
        QVERIFY(file.loadContent(from, -1, 0, n - 1));
        QCOMPARE(file.lastLoadedScan(), long(n - 1));
        QVERIFY(file.loadContent(-1, to, 0, n - 1));
        QCOMPARE(file.firstLoadedScan(), 0L);

        QVERIFY(!file.loadContent(1000, 2000, 0, n - 1)); // no scan in those times
        QVERIFY(!file.isLoaded());
        QVERIFY(!file.loadContent(-1, -1, 5, 4));
        QVERIFY(!file.loadContent(-1, -1, 0, n));
        QVERIFY(!file.loadContent(-1, -1, 0, (unsigned long)-1));

        QVERIFY(file.loadContent(-1, -1, 0, n - 1));
        file.deleteContent();
        QVERIFY(!file.isLoaded());
        QVERIFY(file.rtime() == nullptr && file.tic() == nullptr);
        QCOMPARE(file.nbScans(), n); // the header stays
        QVERIFY(file.loadContent(-1, -1, 0, 0));
        QCOMPARE(file.allIonsAtScan(&spectrum, 0), m_run.pointsAtScan(0));
        QCOMPARE(file.allIonsAtScan(nullptr, 0), -1);
    }

    void emptyAndEdgeRuns()
    {
        TAcquisitionRun empty;
        QVERIFY(TCMFile::save(path("empty.tcm"), empty));
        TCMFile file(path("empty.tcm"));
        QVERIFY(file.isOpen());
        QCOMPARE(file.nbScans(), 0);
        QVERIFY(!file.loadContent(-1, -1, 0, (unsigned long)-1));
        QVERIFY(!file.mzRangeExist(0, 1000));
        QVERIFY(file.verify());

        // Scans without points are legal (a detector dropout).
        TAcquisitionRun gaps;
        const quint32 k[] = {5700, 7100};
        const float a[] = {10, 20};
        gaps.appendScan(1.0, k, a, 2);
        gaps.appendScan(1.1, nullptr, nullptr, 0);
        gaps.appendScan(1.2, k, a, 1);
        QVERIFY(TCMFile::save(path("gaps.tcm"), gaps));
        TCMFile g(path("gaps.tcm"));
        QVERIFY(g.loadContent(-1, -1, 0, 2));
        TCMFile::Spectrum s;
        QCOMPARE(g.allIonsAtScan(&s, 1), 0);
        QCOMPARE(g.averageAtScanRange(&s, 0, 2), 2);
        QCOMPARE(s[5700], 7ul); // (10 + 0 + 10) / 3 rounded
        QCOMPARE(s[7100], 7ul); // 20 / 3 rounded

        // Inconsistent runs are not written, and nothing is left behind.
        TAcquisitionRun bad = gaps;
        bad.masses[1] = 100;
        QString error;
        QVERIFY(!TCMFile::save(path("bad.tcm"), bad, &error));
        QVERIFY(error.contains("ascending"));
        QVERIFY(!QFile::exists(path("bad.tcm")));
    }

    void refusesTruncatedFiles()
    {
        const QByteArray bytes = readAll(m_full);
        QVERIFY(bytes.size() > 1000);
        const QString cut = path("cut.tcm");
        // Every cut of the header and then a cut every 997 bytes.
        for (int size = 0; size < bytes.size(); size += size < 160 ? 1 : 997) {
            QVERIFY(writeAll(cut, bytes.left(size)));
            TCMFile file(cut);
            QVERIFY2(!file.isOpen(), qPrintable(QString("opened a file cut at %1").arg(size)));
            QVERIFY(!file.loadContent(-1, -1, 0, 0));
            QCOMPARE(file.nbScans(), -1);
        }
        // Bytes added at the end are refused too: the size is part of the header.
        QVERIFY(writeAll(cut, bytes + QByteArray(8, '\0')));
        QVERIFY(!TCMFile(cut).isOpen());
        QVERIFY(!TCMFile(path("missing.tcm")).isOpen());
    }

    void refusesForeignAndDamagedHeaders()
    {
        const QByteArray bytes = readAll(m_full);
        const QString bad = path("bad.tcm");
        auto refused = [&](const QByteArray& content, const char* expected) {
            TCMFile file;
            if (!writeAll(bad, content) || file.open(bad))
                return false;
            return QString(expected).isEmpty() || file.errorString().contains(QLatin1String(expected));
        };
        QVERIFY(refused(QByteArray("time,mass\n1,57:100\n").repeated(20), "magic"));
        QVERIFY(refused(QByteArray(bytes.size(), '\0'), "magic"));
        // Any single flipped bit of the header is caught.
        for (int i = 0; i < 128; ++i) {
            QByteArray flipped = bytes;
            flipped[i] = char(flipped[i] ^ 0x10);
            QVERIFY2(refused(flipped, ""), qPrintable(QString("flip at %1").arg(i)));
        }
        // Behind a correct checksum: versions, huge counts, sections out of the file or overlapping.
        QVERIFY(refused(patched<quint16>(bytes, 8, 2), "version"));
        QVERIFY(refused(patched<quint32>(bytes, 12, 64), "header size"));
        QVERIFY(refused(patched<quint32>(bytes, 24, 0xFFFFFFFFu), ""));
        QVERIFY(refused(patched<quint64>(bytes, 32, ~quint64(0)), "larger"));
        QVERIFY(refused(patched<quint64>(bytes, 32, quint64(1) << 62), "larger"));
        QVERIFY(refused(patched<quint32>(bytes, 40, 0xFFFFFFFFu), ""));
        QVERIFY(refused(patched<quint32>(bytes, 44, 0x7FFFFFFFu), "too large"));
        QVERIFY(refused(patched<quint64>(bytes, 56, ~quint64(0) - 7), "outside"));
        QVERIFY(refused(patched<quint64>(bytes, 56, 129), "outside")); // misaligned
        QVERIFY(refused(patched<quint64>(bytes, 64, field<quint64>(bytes, 56)), "overlap"));
        QVERIFY(refused(patched<quint64>(bytes, 88, field<quint64>(bytes, 80) + 8), "overlap"));
        QVERIFY(refused(patched<quint32>(bytes, 48, 100000), "reversed"));
        QVERIFY(refused(patched<quint32>(bytes, 120, 3), ""));
    }

    void refusesDamagedIndexAndPoints()
    {
        QByteArray bytes = readAll(m_full);
        const quint64 index = field<quint64>(bytes, 72);
        const quint64 keys = field<quint64>(bytes, 80);
        const QString bad = path("index.tcm");

        // Scan 10 points past the data: the header is fine, loading refuses.
        QByteArray past = bytes;
        put<quint64>(past, index + 10 * 16, field<quint64>(bytes, 32));
        QVERIFY(writeAll(bad, past));
        TCMFile file(bad);
        QVERIFY(file.isOpen());
        QVERIFY(file.loadContent(-1, -1, 0, 9)); // scans before it are usable
        QVERIFY(!file.loadContent(-1, -1, 0, 20));
        QVERIFY(file.errorString().contains("outside"));
        QVERIFY(!file.verify());

        // A huge count.
        QByteArray huge = bytes;
        put<quint32>(huge, index + 3 * 16 + 8, 0xFFFFFFF0u);
        QVERIFY(writeAll(bad, huge));
        QVERIFY(file.open(bad));
        QVERIFY(!file.loadContent(-1, -1, 3, 3));

        // Scan 5 overlapping scan 4.
        QByteArray overlap = bytes;
        put<quint64>(overlap, index + 5 * 16, field<quint64>(bytes, int(index + 4 * 16)) + 1);
        QVERIFY(writeAll(bad, overlap));
        QVERIFY(file.open(bad));
        QVERIFY(!file.loadContent(-1, -1, 0, 10));
        QVERIFY(file.errorString().contains("overlaps"));
        QVERIFY(file.loadContent(-1, -1, 5, 10)); // on its own scan 5 is readable

        // Masses out of order inside scan 2: the spectrum operations refuse it,
        // the extracted-ion chromatogram stays within the scan.
        QByteArray disorder = bytes;
        const quint64 firstPoint = field<quint64>(bytes, int(index + 2 * 16));
        put<quint32>(disorder, keys + firstPoint * 4, 0xFFFFFFFFu);
        QVERIFY(writeAll(bad, disorder));
        QVERIFY(file.open(bad));
        QVERIFY(file.loadContent(-1, -1, 0, file.nbScans() - 1));
        TCMFile::Spectrum spectrum;
        QCOMPARE(file.allIonsAtScan(&spectrum, 2), -1);
        QVERIFY(spectrum.empty());
        QCOMPARE(file.averageAtScanRange(&spectrum, 0, 5), -1);
        QCOMPARE(file.allIonsAtScan(&spectrum, 3), m_run.pointsAtScan(3));
        std::vector<float> eic(std::size_t(file.nbScans()));
        QCOMPARE(file.ionAtFullRange(eic.data(), 0, 1e9f), file.nbScans());
        QVERIFY(!file.verify());
        QVERIFY(file.isLoaded()); // verify keeps what was loaded
        TAcquisitionRun untouched = m_run;
        QVERIFY(!file.toRun(&untouched));
        QVERIFY(untouched == m_run);
    }
};

QTEST_GUILESS_MAIN(TestTCMFile)
#include "tst_tcmfile.moc"
