#include "tmzmlfile.h"

#include "tacquisitionrun.h"
#include "vnfileformatslogging.h"

#include <pwiz/data/msdata/MSData.hpp>
#include <pwiz/data/msdata/Serializer_mzML.hpp>
#include <pwiz/data/msdata/Serializer_mzXML.hpp>

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <fstream>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace pwiz::cv;
using namespace pwiz::msdata;

namespace {

const char* const Context = "TMzMLFile";

QString tr(const char* text, const char* french)
{
    return QCoreApplication::translate(Context, text, french);
}

// A refusal while converting: thrown inside the conversion, caught with the
// library's own exceptions at the reader's boundary.
struct Refusal
{
    QString why;
};

[[noreturn]] void refuse(const QString& why)
{
    throw Refusal{why};
}

QString flavourName(TMzMLFile::Flavour flavour)
{
    return flavour == TMzMLFile::MzML ? QStringLiteral("mzML") : QStringLiteral("mzXML");
}

// Minutes from a time parameter in whatever unit the file gives; files without a
// unit are in seconds (the mzML default, and what the library makes of mzXML).
double toMinutes(double value, CVID unit, const QString& where)
{
    switch (unit) {
    case UO_minute:
        return value;
    case UO_second:
    case CVID_Unknown:
        return value / 60.0;
    case UO_millisecond:
        return value / 60000.0;
    case UO_hour:
        return value * 60.0;
    default:
        refuse(tr("%1: the time unit is not one of minute, second, millisecond or hour",
                  "%1 : l'unité de temps n'est ni la minute, ni la seconde, ni la milliseconde, ni l'heure")
                   .arg(where));
    }
}

QString spectrumName(size_t index)
{
    return tr("spectrum %1", "spectre %1").arg(qulonglong(index) + 1);
}

struct Point
{
    quint32 key;
    float value;
};

// Points of one spectrum as the run holds them: keys round(m/z x 100), sorted,
// with points that fall on the same key added up.
void collectPoints(const Spectrum& spectrum, const QString& where, std::vector<Point>* points)
{
    points->clear();
    const BinaryDataArrayPtr mz = spectrum.getMZArray();
    const BinaryDataArrayPtr intensity = spectrum.getIntensityArray();
    const size_t mzCount = mz ? mz->data.size() : 0;
    const size_t intensityCount = intensity ? intensity->data.size() : 0;
    if (mzCount != intensityCount)
        refuse(tr("%1 has %2 m/z values for %3 intensities", "%1 a %2 valeurs m/z pour %3 intensités")
                   .arg(where)
                   .arg(qulonglong(mzCount))
                   .arg(qulonglong(intensityCount)));
    if (mzCount == 0)
        return;
    points->reserve(mzCount);
    const double* m = &mz->data[0];
    const double* v = &intensity->data[0];
    bool sorted = true;
    for (size_t i = 0; i < mzCount; ++i) {
        if (!std::isfinite(m[i]) || m[i] < 0.0 || m[i] * 100.0 + 0.5 > double(UINT32_MAX))
            refuse(tr("%1: m/z %2 is out of range", "%1 : m/z %2 hors limites").arg(where).arg(m[i]));
        if (!std::isfinite(v[i]) || std::fabs(v[i]) > double(FLT_MAX))
            refuse(tr("%1: intensity %2 is out of range", "%1 : intensité %2 hors limites").arg(where).arg(v[i]));
        const Point p{quint32(std::llround(m[i] * 100.0)), float(v[i])};
        if (!points->empty() && p.key <= points->back().key)
            sorted = false;
        points->push_back(p);
    }
    if (sorted)
        return;
    std::stable_sort(points->begin(), points->end(), [](const Point& a, const Point& b) { return a.key < b.key; });
    size_t kept = 0;
    for (size_t i = 0; i < points->size(); ++i) {
        if (kept > 0 && (*points)[kept - 1].key == (*points)[i].key)
            (*points)[kept - 1].value += (*points)[i].value;
        else
            (*points)[kept++] = (*points)[i];
    }
    points->resize(kept);
}

bool isMS1(const Spectrum& spectrum)
{
    if (spectrum.hasCVParam(MS_ms_level))
        return spectrum.cvParam(MS_ms_level).valueAs<int>() == 1;
    return !spectrum.hasCVParam(MS_MSn_spectrum) && !spectrum.hasCVParam(MS_SRM_spectrum);
}

void readSpectra(const SpectrumList& list, TAcquisitionRun* run)
{
    std::vector<Point> points;
    std::vector<quint32> keys;
    std::vector<float> values;
    bool allSelectedIons = true;
    size_t skipped = 0;
    for (size_t i = 0; i < list.size(); ++i) {
        const SpectrumPtr spectrum = list.spectrum(i, true);
        const QString where = spectrumName(i);
        if (!spectrum)
            refuse(tr("%1 cannot be read", "%1 est illisible").arg(where));
        if (!isMS1(*spectrum)) {
            ++skipped;
            continue;
        }
        if (spectrum->scanList.scans.empty() || !spectrum->scanList.scans.front().hasCVParam(MS_scan_start_time))
            refuse(tr("%1 has no start time", "%1 n'a pas de temps de début").arg(where));
        const CVParam start = spectrum->scanList.scans.front().cvParam(MS_scan_start_time);
        const double time = toMinutes(start.valueAs<double>(), start.units, where);
        if (!std::isfinite(time))
            refuse(tr("%1 has no valid start time", "%1 n'a pas de temps de début valide").arg(where));
        if (!run->rtimes.isEmpty() && time < run->rtimes.last())
            refuse(tr("%1 starts before the spectrum before it", "%1 commence avant le spectre qui le précède")
                       .arg(where));
        collectPoints(*spectrum, where, &points);
        keys.resize(points.size());
        values.resize(points.size());
        for (size_t p = 0; p < points.size(); ++p) {
            keys[p] = points[p].key;
            values[p] = points[p].value;
        }
        run->appendScan(time, keys.data(), values.data(), int(points.size()));
        // The data system's own total when the file has it, as for ANDI files.
        if (spectrum->hasCVParam(MS_total_ion_current)) {
            const double total = spectrum->cvParam(MS_total_ion_current).valueAs<double>();
            if (std::isfinite(total))
                run->tic.last() = total;
        }
        allSelectedIons = allSelectedIons && spectrum->hasCVParam(MS_SIM_spectrum);
    }
    if (skipped)
        qCDebug(vnFileFormats) << "mzML: skipped" << skipped << "spectra of higher MS levels";
    if (run->scanCount() > 0)
        run->acquisitionSystem = allSelectedIons ? TAcquisitionRun::SystemSIM : TAcquisitionRun::SystemFullScan;
}

double isolationTarget(const ParamContainer& window)
{
    if (!window.hasCVParam(MS_isolation_window_target_m_z))
        return 0.0;
    return window.cvParam(MS_isolation_window_target_m_z).valueAs<double>();
}

struct Trace
{
    float parent = 0;
    float daughter = 0;
    std::vector<double> times; // minutes
    std::vector<double> values;
};

// Value of a trace at `time`: exact on its own times, linear between them, 0
// outside (a scheduled transition was not measured there).
double valueAt(const Trace& trace, double time)
{
    const auto it = std::lower_bound(trace.times.begin(), trace.times.end(), time);
    if (it == trace.times.end())
        return 0.0;
    const size_t i = size_t(it - trace.times.begin());
    if (*it == time)
        return trace.values[i];
    if (i == 0)
        return 0.0;
    const double t0 = trace.times[i - 1];
    const double t1 = trace.times[i];
    const double f = (time - t0) / (t1 - t0);
    return trace.values[i - 1] + f * (trace.values[i] - trace.values[i - 1]);
}

void readTransitions(const ChromatogramList& list, TAcquisitionRun* run)
{
    std::vector<Trace> traces;
    for (size_t i = 0; i < list.size(); ++i) {
        const ChromatogramPtr chromatogram = list.chromatogram(i, true);
        const QString where = tr("chromatogram %1", "chromatogramme %1").arg(qulonglong(i) + 1);
        if (!chromatogram)
            refuse(tr("%1 cannot be read", "%1 est illisible").arg(where));
        if (!chromatogram->hasCVParam(MS_selected_reaction_monitoring_chromatogram))
            continue; // TIC, base peak, selected ions: the run makes its own
        Trace trace;
        double parent = isolationTarget(chromatogram->precursor.isolationWindow);
        if (parent <= 0.0 && !chromatogram->precursor.selectedIons.empty()
            && chromatogram->precursor.selectedIons.front().hasCVParam(MS_selected_ion_m_z))
            parent = chromatogram->precursor.selectedIons.front().cvParam(MS_selected_ion_m_z).valueAs<double>();
        const double daughter = isolationTarget(chromatogram->product.isolationWindow);
        if (!(parent > 0.0 && parent < 1e6 && daughter > 0.0 && daughter < 1e6))
            refuse(tr("%1 has no valid precursor and product m/z", "%1 n'a pas de m/z précurseur et produit valides")
                       .arg(where));
        trace.parent = float(parent);
        trace.daughter = float(daughter);
        const BinaryDataArrayPtr times = chromatogram->getTimeArray();
        const BinaryDataArrayPtr values = chromatogram->getIntensityArray();
        const size_t count = times ? times->data.size() : 0;
        if (count != (values ? values->data.size() : 0))
            refuse(tr("%1 has %2 times for %3 intensities", "%1 a %2 temps pour %3 intensités")
                       .arg(where)
                       .arg(qulonglong(count))
                       .arg(qulonglong(values ? values->data.size() : 0)));
        const CVID unit = times ? times->cvParam(MS_time_array).units : CVID_Unknown;
        trace.times.reserve(count);
        trace.values.reserve(count);
        for (size_t p = 0; p < count; ++p) {
            const double t = toMinutes(times->data[p], unit, where);
            const double v = values->data[p];
            if (!std::isfinite(t) || (p > 0 && t < trace.times.back()))
                refuse(tr("%1: the times go backwards", "%1 : les temps reculent").arg(where));
            if (!std::isfinite(v) || std::fabs(v) > double(FLT_MAX))
                refuse(tr("%1: intensity %2 is out of range", "%1 : intensité %2 hors limites").arg(where).arg(v));
            trace.times.push_back(t);
            trace.values.push_back(v);
        }
        traces.push_back(std::move(trace));
    }
    if (traces.empty())
        return;
    if (traces.size() > (1u << 20))
        refuse(tr("too many transitions", "trop de transitions"));
    // Transitions in key order: by daughter, then parent, as the run lists them.
    std::stable_sort(traces.begin(), traces.end(), [](const Trace& a, const Trace& b) {
        return a.daughter != b.daughter ? a.daughter < b.daughter : a.parent < b.parent;
    });
    std::vector<quint32> keys(traces.size());
    for (size_t k = 0; k < traces.size(); ++k) {
        const double base = std::llround(double(traces[k].daughter) * 100.0);
        // daughter x 100 + rank among the same daughter; kept strictly ascending
        // when fractional daughters fall a hundredth apart.
        keys[k] = quint32(k > 0 ? std::max<double>(base, double(keys[k - 1]) + 1.0) : base);
        run->transitions.append(qMakePair(traces[k].parent, traces[k].daughter));
    }
    // One time base for all: the times of the transition measured most often.
    size_t reference = 0;
    for (size_t k = 1; k < traces.size(); ++k) {
        if (traces[k].times.size() > traces[reference].times.size())
            reference = k;
    }
    const std::vector<double>& times = traces[reference].times;
    std::vector<float> values(traces.size());
    for (size_t s = 0; s < times.size(); ++s) {
        for (size_t k = 0; k < traces.size(); ++k) {
            const Trace& trace = traces[k];
            values[k] = float(trace.times.size() > s && trace.times[s] == times[s] ? trace.values[s]
                                                                                   : valueAt(trace, times[s]));
        }
        run->appendScan(times[s], keys.data(), values.data(), int(traces.size()));
    }
    run->acquisitionSystem = TAcquisitionRun::SystemMSMS;
}

void convert(const MSData& data, QVector<TImportedRun>* runs)
{
    TAcquisitionRun common;
    common.name = QString::fromStdString(!data.id.empty() ? data.id : data.run.id);
    if (!data.run.startTimeStamp.empty()) {
        const QString stamp = QString::fromStdString(data.run.startTimeStamp);
        common.date = QDateTime::fromString(stamp, Qt::ISODateWithMs);
        if (!common.date.isValid())
            common.date = QDateTime::fromString(stamp, Qt::ISODate);
    }
    TImportedRun spectra{QString(), common};
    if (data.run.spectrumListPtr)
        readSpectra(*data.run.spectrumListPtr, &spectra.run);
    TImportedRun transitions{QString(), common};
    if (data.run.chromatogramListPtr)
        readTransitions(*data.run.chromatogramListPtr, &transitions.run);
    runs->clear();
    if (spectra.run.scanCount() > 0)
        runs->append(spectra);
    if (transitions.run.scanCount() > 0) {
        transitions.suffix = runs->isEmpty() ? QString() : QStringLiteral("-MSMS");
        runs->append(transitions);
    }
    if (runs->isEmpty())
        refuse(tr("it holds no MS1 spectrum and no selected-reaction-monitoring chromatogram",
                  "il ne contient ni spectre MS1 ni chromatogramme de transitions (SRM)"));
}

// The library's messages can run over several lines: the first says what broke.
QString firstLine(const char* what)
{
    const QString text = QString::fromUtf8(what).trimmed();
    const QString line = text.section(QLatin1Char('\n'), 0, 0).trimmed();
    return line.isEmpty() ? tr("unknown error", "erreur inconnue") : line.left(300);
}

QByteArray rootElement(const QByteArray& head);

bool readStream(const boost::shared_ptr<std::istream>& stream, TMzMLFile::Flavour flavour, QVector<TImportedRun>* runs,
                QString* error)
{
    QString why;
    try {
        MSData data;
        if (flavour == TMzMLFile::MzML) {
            // The library reads either layout, but must be told which one it gets.
            std::string head(size_t(TRunReader::headSize()), '\0');
            stream->read(&head[0], std::streamsize(head.size()));
            head.resize(size_t(stream->gcount()));
            stream->clear();
            stream->seekg(0);
            Serializer_mzML::Config config;
            config.indexed = rootElement(QByteArray::fromStdString(head)) == "indexedmzML";
            Serializer_mzML(config).read(stream, data);
        } else {
            Serializer_mzXML().read(stream, data);
        }
        QVector<TImportedRun> read;
        convert(data, &read);
        *runs = read;
        return true;
    } catch (const Refusal& refusal) {
        why = refusal.why;
    } catch (const std::bad_alloc&) {
        why = tr("it does not fit in memory", "il ne tient pas en mémoire");
    } catch (const std::exception& e) {
        why = tr("damaged %1 (%2)", "%1 endommagé (%2)").arg(flavourName(flavour), firstLine(e.what()));
    } catch (...) {
        why = tr("damaged %1", "%1 endommagé").arg(flavourName(flavour));
    }
    if (error)
        *error = why;
    return false;
}

// Skips what may stand before the root element: a byte-order mark, the XML
// declaration, comments, processing instructions, a document type, white space.
QByteArray rootElement(const QByteArray& head)
{
    int i = head.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (i < head.size()) {
        const char c = head.at(i);
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            ++i;
            continue;
        }
        if (c != '<')
            return QByteArray();
        const char* end = nullptr;
        if (head.mid(i, 4) == "<!--")
            end = "-->";
        else if (head.mid(i, 2) == "<?" || head.mid(i, 2) == "<!")
            end = ">";
        if (!end) {
            int j = i + 1;
            while (j < head.size()
                   && (std::isalnum(uchar(head.at(j))) || head.at(j) == ':' || head.at(j) == '_' || head.at(j) == '-'
                       || head.at(j) == '.'))
                ++j;
            QByteArray name = head.mid(i + 1, j - i - 1);
            const int colon = name.lastIndexOf(':');
            return colon >= 0 ? name.mid(colon + 1) : name;
        }
        const int found = head.indexOf(end, i + 2);
        if (found < 0)
            return QByteArray();
        i = found + int(qstrlen(end));
    }
    return QByteArray();
}

std::vector<double> column(const QVector<double>& values)
{
    return std::vector<double>(values.begin(), values.end());
}

// The description every document needs: vocabularies, what it holds, the
// software, one instrument configuration and one processing step.
void describe(MSData* data, const TAcquisitionRun& run, bool transitions)
{
    data->id = run.name.toStdString();
    data->cvs = defaultCVList();
    data->fileDescription.fileContent.set(transitions ? MS_SRM_chromatogram : MS_MS1_spectrum);
    data->fileDescription.fileContent.set(MS_TIC_chromatogram);
    const SoftwarePtr software(new Software("vndb"));
    software->version = "1";
    software->set(MS_custom_unreleased_software_tool, "vndb");
    data->softwarePtrs.push_back(software);
    const InstrumentConfigurationPtr instrument(new InstrumentConfiguration("IC1"));
    instrument->set(MS_instrument_model);
    instrument->softwarePtr = software;
    data->instrumentConfigurationPtrs.push_back(instrument);
    const DataProcessingPtr processing(new DataProcessing("export"));
    ProcessingMethod method;
    method.order = 0;
    method.softwarePtr = software;
    method.set(MS_Conversion_to_mzML);
    processing->processingMethods.push_back(method);
    data->dataProcessingPtrs.push_back(processing);
    data->run.id = "run1";
    data->run.defaultInstrumentConfigurationPtr = instrument;
    if (run.date.isValid())
        data->run.startTimeStamp = run.date.toUTC().toString(Qt::ISODate).toStdString();
}

void addSpectra(MSData* data, const TAcquisitionRun& run)
{
    const boost::shared_ptr<SpectrumListSimple> list(new SpectrumListSimple);
    list->dp = data->dataProcessingPtrs.front();
    list->spectra.reserve(size_t(run.scanCount()));
    const bool selectedIons = run.acquisitionSystem == TAcquisitionRun::SystemSIM;
    std::vector<double> mz, intensity;
    for (int s = 0; s < run.scanCount(); ++s) {
        const SpectrumPtr spectrum(new Spectrum);
        spectrum->index = size_t(s);
        spectrum->id = "scan=" + std::to_string(s + 1);
        spectrum->set(MS_ms_level, 1);
        spectrum->set(selectedIons ? MS_SIM_spectrum : MS_MS1_spectrum);
        spectrum->set(MS_centroid_spectrum);
        spectrum->set(MS_total_ion_current, run.tic.at(s));
        spectrum->scanList.set(MS_no_combination);
        Scan scan;
        scan.set(MS_scan_start_time, run.rtimes.at(s), UO_minute);
        spectrum->scanList.scans.push_back(scan);
        const int count = run.pointsAtScan(s);
        const quint32* keys = run.massesAtScan(s);
        const float* values = run.abundancesAtScan(s);
        mz.resize(size_t(count));
        intensity.resize(size_t(count));
        for (int p = 0; p < count; ++p) {
            mz[size_t(p)] = keys[p] / 100.0;
            intensity[size_t(p)] = values[p];
        }
        spectrum->setMZIntensityArrays(mz, intensity, MS_number_of_detector_counts);
        list->spectra.push_back(spectrum);
    }
    data->run.spectrumListPtr = list;
}

ChromatogramPtr ticChromatogram(const TAcquisitionRun& run)
{
    const ChromatogramPtr tic(new Chromatogram);
    tic->index = 0;
    tic->id = "TIC";
    tic->set(MS_TIC_chromatogram);
    tic->setTimeIntensityArrays(column(run.rtimes), column(run.tic), UO_minute, MS_number_of_detector_counts);
    return tic;
}

void addChromatograms(MSData* data, const TAcquisitionRun& run, bool transitions)
{
    const boost::shared_ptr<ChromatogramListSimple> list(new ChromatogramListSimple);
    list->dp = data->dataProcessingPtrs.front();
    list->chromatograms.push_back(ticChromatogram(run));
    if (transitions) {
        const std::vector<double> times = column(run.rtimes);
        std::vector<double> values(times.size());
        for (int k = 0; k < run.transitions.size(); ++k) {
            const ChromatogramPtr srm(new Chromatogram);
            const auto& [parent, daughter] = run.transitions.at(k);
            srm->index = size_t(k) + 1;
            srm->id = QStringLiteral("SRM SIC Q1=%1 Q3=%2 index=%3").arg(parent).arg(daughter).arg(k).toStdString();
            srm->set(MS_selected_reaction_monitoring_chromatogram);
            srm->precursor.isolationWindow.set(MS_isolation_window_target_m_z, double(parent), MS_m_z);
            srm->precursor.activation.set(MS_collision_induced_dissociation);
            srm->product.isolationWindow.set(MS_isolation_window_target_m_z, double(daughter), MS_m_z);
            for (int s = 0; s < run.scanCount(); ++s)
                values[size_t(s)] = run.abundancesAtScan(s)[k];
            srm->setTimeIntensityArrays(times, values, UO_minute, MS_number_of_detector_counts);
            list->chromatograms.push_back(srm);
        }
    }
    data->run.chromatogramListPtr = list;
}

} // namespace

bool TMzMLFile::isFlavour(const QByteArray& head, Flavour flavour)
{
    const QByteArray root = rootElement(head);
    return flavour == MzML ? (root == "mzML" || root == "indexedmzML") : root == "mzXML";
}

bool TMzMLFile::read(const QString& path, Flavour flavour, QVector<TImportedRun>* runs, QString* error)
{
    // The library reads from the file itself: it seeks through the index
    // rather than holding the whole text.
    const boost::shared_ptr<std::ifstream> stream(
        new std::ifstream(QFile::encodeName(path).toStdString(), std::ios::binary));
    if (!*stream) {
        if (error)
            *error = tr("it cannot be opened", "il ne peut pas être ouvert");
        return false;
    }
    return readStream(stream, flavour, runs, error);
}

bool TMzMLFile::readBytes(const QByteArray& bytes, Flavour flavour, QVector<TImportedRun>* runs, QString* error)
{
    const boost::shared_ptr<std::istringstream> stream(
        new std::istringstream(std::string(bytes.constData(), size_t(bytes.size())), std::ios::binary));
    return readStream(stream, flavour, runs, error);
}

bool TMzMLFile::write(const QString& path, const TAcquisitionRun& run, Flavour flavour, QString* error)
{
    auto fail = [error](const QString& why) {
        if (error)
            *error = why;
        return false;
    };
    QString why;
    if (!run.isConsistent(&why))
        return fail(why);
    const bool transitions = run.acquisitionSystem == TAcquisitionRun::SystemMSMS && !run.transitions.isEmpty();
    if (transitions) {
        if (flavour == MzXML)
            return fail(tr("mzXML has no place for MS/MS transitions: export the run as mzML",
                           "le mzXML n'a pas de place pour les transitions MS/MS : exportez l'acquisition en mzML"));
        for (int s = 0; s < run.scanCount(); ++s) {
            if (run.pointsAtScan(s) != run.transitions.size())
                return fail(tr("scan %1 does not hold one point per transition",
                               "le scan %1 ne contient pas un point par transition")
                                .arg(s + 1));
        }
    }
    std::ostringstream text;
    try {
        MSData data;
        describe(&data, run, transitions);
        if (!transitions)
            addSpectra(&data, run);
        if (flavour == MzML) {
            addChromatograms(&data, run, transitions);
            Serializer_mzML::Config config;
            config.binaryDataEncoderConfig.precision = BinaryDataEncoder::Precision_64;
            config.binaryDataEncoderConfig.precisionOverrides[MS_intensity_array] = BinaryDataEncoder::Precision_32;
            config.binaryDataEncoderConfig.compression = BinaryDataEncoder::Compression_Zlib;
            Serializer_mzML(config).write(text, data, nullptr, false);
        } else {
            Serializer_mzXML::Config config;
            config.binaryDataEncoderConfig.precision = BinaryDataEncoder::Precision_64;
            config.binaryDataEncoderConfig.compression = BinaryDataEncoder::Compression_Zlib;
            Serializer_mzXML(config).write(text, data, nullptr, false);
        }
    } catch (const std::exception& e) {
        return fail(firstLine(e.what()));
    }
    const std::string bytes = text.str();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), qint64(bytes.size())) != qint64(bytes.size())
        || !file.commit())
        return fail(file.errorString());
    return true;
}

QString TMzMLReader::formatName() const
{
    return flavourName(m_flavour);
}

bool TMzMLReader::recognises(const QByteArray& head, const QString&) const
{
    return TMzMLFile::isFlavour(head, m_flavour);
}

bool TMzMLReader::read(const QString& path, QVector<TImportedRun>* runs, QString* error) const
{
    return TMzMLFile::read(path, m_flavour, runs, error);
}

bool TMzMLReader::readBytes(const QByteArray& bytes, const QString&, QVector<TImportedRun>* runs, QString* error) const
{
    return TMzMLFile::readBytes(bytes, m_flavour, runs, error);
}
