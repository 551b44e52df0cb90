#include "tandimsfile.h"

#include "tacquisitionrun.h"

#include <messageloggerinterface.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <netcdf.h>
#include <netcdf_mem.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <vector>

namespace {

const char* const Context = "TAndiMSFile";
// Past these sizes a header is taken as damaged rather than as a real run.
constexpr size_t MaxScans = 50u * 1000 * 1000;
constexpr size_t MaxPoints = 2000u * 1000 * 1000;

void refuse(const QString& source, const QString& why)
{
    MessageLoggerInterface::Error(
        QCoreApplication::translate(
            Context, "The file <b>%1</b> is not a readable ANDI mass spectrometry file: %2",
            "Le fichier <b>%1</b> n'est pas un fichier ANDI de spectrométrie de masse lisible : %2")
            .arg(source, why));
}

QString missing(const char* name)
{
    return QCoreApplication::translate(Context, "the variable <b>%1</b> is missing or has the wrong shape",
                                       "la variable <b>%1</b> est absente ou n'a pas la bonne forme")
        .arg(QLatin1String(name));
}

class NcFile
{
public:
    ~NcFile()
    {
        if (id >= 0)
            nc_close(id);
    }
    int id = -1;

    QString textAttribute(int variable, const char* name) const
    {
        size_t length = 0;
        nc_type type = NC_NAT;
        if (nc_inq_att(id, variable, name, &type, &length) != NC_NOERR || type != NC_CHAR || length > 4096)
            return QString();
        QByteArray text(int(length), '\0');
        if (length > 0 && nc_get_att_text(id, variable, name, text.data()) != NC_NOERR)
            return QString();
        return QString::fromUtf8(text.constData(), int(qstrnlen(text.constData(), uint(text.size())))).trimmed();
    }

    double scale(int variable) const
    {
        size_t length = 0;
        nc_type type = NC_NAT;
        double factor = 1.0;
        if (nc_inq_att(id, variable, "scale_factor", &type, &length) == NC_NOERR && length == 1 && type != NC_CHAR
            && type != NC_STRING && nc_get_att_double(id, variable, "scale_factor", &factor) == NC_NOERR
            && std::isfinite(factor))
            return factor;
        return 1.0;
    }

    // Whether `value` of `variable` means "not recorded": the format's -9999,
    // the variable's own _FillValue, or the library's default fill.
    bool isFill(int variable, double value) const
    {
        if (!std::isfinite(value) || value == -9999.0 || std::fabs(value) >= 9.9e36)
            return true;
        size_t length = 0;
        nc_type type = NC_NAT;
        double fill = 0.0;
        return variable >= 0 && nc_inq_att(id, variable, "_FillValue", &type, &length) == NC_NOERR && length == 1
            && type != NC_CHAR && type != NC_STRING && nc_get_att_double(id, variable, "_FillValue", &fill) == NC_NOERR
            && value == fill;
    }

    // A scalar numeric variable; `fallback` when absent.
    double scalar(const char* name, double fallback) const
    {
        int var = -1;
        int dims = 0;
        nc_type type = NC_NAT;
        double value = fallback;
        if (nc_inq_varid(id, name, &var) != NC_NOERR
            || nc_inq_var(id, var, nullptr, &type, &dims, nullptr, nullptr) != NC_NOERR || dims != 0 || type == NC_CHAR
            || type == NC_STRING || nc_get_var_double(id, var, &value) != NC_NOERR || isFill(var, value))
            return fallback;
        return value;
    }

    // A 1-D numeric variable over `dimension`; false when absent or of another shape.
    bool read(const char* name, int dimension, size_t length, std::vector<double>* values,
              int* variable = nullptr) const
    {
        int var = -1;
        int dims = 0;
        int dimIds[NC_MAX_VAR_DIMS];
        nc_type type = NC_NAT;
        if (nc_inq_varid(id, name, &var) != NC_NOERR
            || nc_inq_var(id, var, nullptr, &type, &dims, dimIds, nullptr) != NC_NOERR)
            return false;
        if (dims != 1 || dimIds[0] != dimension || type == NC_CHAR || type == NC_STRING || type > NC_UINT64)
            return false;
        values->assign(length, 0.0);
        if (length > 0 && nc_get_var_double(id, var, values->data()) != NC_NOERR)
            return false;
        if (variable)
            *variable = var;
        return true;
    }
};

// The netCDF library sizes its allocations from the counts in a header before
// it has checked them against the bytes, so a damaged header can make it ask
// for gigabytes. The classic header is walked here first: every count and
// name must fit the bytes that follow, every variable its place in the file.
class ClassicHeader
{
public:
    ClassicHeader(const QByteArray& bytes)
        : m_data(reinterpret_cast<const unsigned char*>(bytes.constData()))
        , m_size(quint64(bytes.size()))
    { }

    // Empty when the header holds together, else the reason.
    QString check()
    {
        if (m_size < 8)
            return tooShort();
        m_offsetSize = m_data[3] == 2 ? 8 : 4;
        m_pos = 4;
        quint32 records = 0;
        if (!u32(&records) || records == 0xFFFFFFFFu)
            return tooShort();
        m_records = records;
        // Dimensions.
        quint32 tag = 0, count = 0;
        if (!u32(&tag) || !u32(&count))
            return tooShort();
        if (tag != 0x0A && !(tag == 0 && count == 0))
            return damaged();
        if (count > (m_size - m_pos) / 8)
            return damaged();
        int recordDims = 0;
        for (quint32 i = 0; i < count; ++i) {
            quint32 length = 0;
            if (!name() || !u32(&length))
                return damaged();
            recordDims += length == 0;
            m_dims.push_back(length);
        }
        if (recordDims > 1)
            return damaged();
        if (!attributes())
            return damaged();
        // Variables.
        if (!u32(&tag) || !u32(&count))
            return tooShort();
        if (tag != 0x0B && !(tag == 0 && count == 0))
            return damaged();
        if (count > (m_size - m_pos) / 16)
            return damaged();
        for (quint32 i = 0; i < count; ++i) {
            quint32 rank = 0;
            if (!name() || !u32(&rank) || rank > (m_size - m_pos) / 4 || rank > NC_MAX_VAR_DIMS)
                return damaged();
            quint64 elements = 1;
            bool record = false;
            for (quint32 r = 0; r < rank; ++r) {
                quint32 dim = 0;
                if (!u32(&dim) || dim >= m_dims.size())
                    return damaged();
                const quint64 length = m_dims[dim] == 0 ? m_records : m_dims[dim];
                if (m_dims[dim] == 0) {
                    if (r != 0)
                        return damaged();
                    record = true;
                }
                if (__builtin_mul_overflow(elements, length, &elements))
                    return damaged();
            }
            quint32 type = 0, vsize = 0;
            quint64 begin = 0;
            if (!attributes() || !u32(&type) || !u32(&vsize) || !offset(&begin))
                return damaged();
            const quint64 width = typeSize(type);
            quint64 bytes = 0;
            if (width == 0 || __builtin_mul_overflow(elements, width, &bytes))
                return damaged();
            // Record variables are interleaved, so only their first record
            // is placed here (none when there is no record yet: their start
            // may then lie past the end); the total is bounded below.
            if (record && m_records == 0)
                continue;
            const quint64 first = record ? bytes / m_records : bytes;
            if (begin > m_size || first > m_size - begin || bytes > 4 * m_size + 4096)
                return damaged();
        }
        return QString();
    }

private:
    const unsigned char* m_data;
    quint64 m_size;
    quint64 m_pos = 0;
    quint64 m_offsetSize = 4;
    quint64 m_records = 0;
    std::vector<quint32> m_dims;

    static QString tooShort()
    {
        return QCoreApplication::translate(Context, "its header is truncated", "son en-tête est tronqué");
    }
    static QString damaged()
    {
        return QCoreApplication::translate(Context, "its header is damaged", "son en-tête est endommagé");
    }
    static quint64 typeSize(quint32 type)
    {
        switch (type) {
        case NC_BYTE:
        case NC_CHAR:
            return 1;
        case NC_SHORT:
            return 2;
        case NC_INT:
        case NC_FLOAT:
            return 4;
        case NC_DOUBLE:
            return 8;
        default:
            return 0;
        }
    }
    bool u32(quint32* value)
    {
        if (m_size - m_pos < 4)
            return false;
        *value = quint32(m_data[m_pos]) << 24 | quint32(m_data[m_pos + 1]) << 16 | quint32(m_data[m_pos + 2]) << 8
            | quint32(m_data[m_pos + 3]);
        m_pos += 4;
        return true;
    }
    bool offset(quint64* value)
    {
        quint32 high = 0, low = 0;
        if (m_offsetSize == 8 && !u32(&high))
            return false;
        if (!u32(&low))
            return false;
        *value = quint64(high) << 32 | low;
        return true;
    }
    bool skipPadded(quint64 bytes)
    {
        const quint64 padded = (bytes + 3) & ~quint64(3);
        if (bytes > m_size || padded > m_size - m_pos)
            return false;
        m_pos += padded;
        return true;
    }
    bool name()
    {
        quint32 length = 0;
        return u32(&length) && length > 0 && length <= NC_MAX_NAME && skipPadded(length);
    }
    bool attributes()
    {
        quint32 tag = 0, count = 0;
        if (!u32(&tag) || !u32(&count))
            return false;
        if (tag != 0x0C && !(tag == 0 && count == 0))
            return false;
        if (count > (m_size - m_pos) / 12)
            return false;
        for (quint32 i = 0; i < count; ++i) {
            quint32 type = 0, values = 0;
            if (!name() || !u32(&type) || !u32(&values))
                return false;
            const quint64 width = typeSize(type);
            if (width == 0 || !skipPadded(quint64(values) * width))
                return false;
        }
        return true;
    }
};

QString secondsOrMinutes(const QString& unit)
{
    return unit.contains(QLatin1String("min"), Qt::CaseInsensitive) ? QStringLiteral("min") : QStringLiteral("s");
}

// An AIA chromatography file: one detector trace, sampled at a fixed interval,
// and often the data system's own peak table, kept as a text file beside.
bool readChromatogram(NcFile& nc, const QString& source, qint64 byteSize, TAcquisitionRun* run)
{
    int pointDim = -1;
    size_t points = 0;
    if (nc_inq_dimid(nc.id, "point_number", &pointDim) != NC_NOERR
        || nc_inq_dimlen(nc.id, pointDim, &points) != NC_NOERR) {
        refuse(source, missing("point_number"));
        return false;
    }
    if (points == 0 || double(points) > 64.0 * double(byteSize) + 1e6) {
        refuse(source,
               QCoreApplication::translate(Context, "its trace holds %1 points", "sa trace contient %1 points")
                   .arg(points));
        return false;
    }
    std::vector<double> values;
    int valueVar = -1;
    if (!nc.read("ordinate_values", pointDim, points, &values, &valueVar)) {
        refuse(source, missing("ordinate_values"));
        return false;
    }
    QString retention = nc.textAttribute(NC_GLOBAL, "retention_unit");
    if (retention.isEmpty())
        retention = nc.textAttribute(NC_GLOBAL, "retention_units");
    const double toMinutes = secondsOrMinutes(retention) == QLatin1String("min") ? 1.0 : 1.0 / 60.0;
    const double interval = nc.scalar("actual_sampling_interval", -1.0);
    const double delay = nc.scalar("actual_delay_time", 0.0);
    std::vector<double> stamps;
    const bool explicitTimes = nc.read("raw_data_retention", pointDim, points, &stamps);
    if (!explicitTimes && !(interval > 0.0)) {
        refuse(source,
               QCoreApplication::translate(Context, "it gives no sampling interval for its trace",
                                           "il ne donne pas d'intervalle d'échantillonnage pour sa trace"));
        return false;
    }
    const double scale = nc.scale(valueVar);
    TDetectorChannel channel;
    channel.name = nc.textAttribute(NC_GLOBAL, "detector_name");
    if (channel.name.isEmpty())
        channel.name = QStringLiteral("Detector");
    channel.unit = nc.textAttribute(NC_GLOBAL, "detector_unit");
    if (channel.unit.isEmpty())
        channel.unit = nc.textAttribute(NC_GLOBAL, "detector_units");
    for (size_t i = 0; i < points; ++i) {
        const double time = (explicitTimes ? stamps[i] : delay + interval * double(i)) * toMinutes;
        if (!std::isfinite(time) || (!channel.times.isEmpty() && time < channel.times.last())) {
            refuse(
                source,
                QCoreApplication::translate(Context, "point %1: its time goes backwards", "point %1 : son temps recule")
                    .arg(i + 1));
            return false;
        }
        // An unrecorded point keeps the trace continuous at zero.
        channel.times.append(time);
        channel.values.append(nc.isFill(valueVar, values[i]) ? 0.0 : values[i] * scale);
    }

    TAcquisitionRun result;
    result.acquisitionSystem = TAcquisitionRun::SystemChromatogram;
    result.name = nc.textAttribute(NC_GLOBAL, "sample_name");
    if (result.name.isEmpty())
        result.name = QFileInfo(source).completeBaseName();
    const QString stamp = nc.textAttribute(NC_GLOBAL, "injection_date_time_stamp");
    result.date = QDateTime::fromString(stamp.left(14), QStringLiteral("yyyyMMddHHmmss"));
    if (result.date.isValid())
        result.date.setTimeSpec(Qt::UTC);
    result.signalName = channel.name;
    result.rtimes = channel.times;
    result.tic = channel.values;
    result.scanOffsets.fill(0, channel.times.size() + 1);

    // The vendor's peak table, column by column as the file has them.
    int peakDim = -1;
    size_t peaks = 0;
    if (nc_inq_dimid(nc.id, "peak_number", &peakDim) == NC_NOERR && nc_inq_dimlen(nc.id, peakDim, &peaks) == NC_NOERR
        && peaks > 0 && peaks < 1000000) {
        static const char* const columns[] = {
            "peak_retention_time",  "peak_start_time",    "peak_end_time",       "peak_width",  "peak_area",
            "peak_area_percent",    "peak_height",        "peak_height_percent", "peak_amount", "baseline_start_time",
            "baseline_start_value", "baseline_stop_time", "baseline_stop_value"};
        QStringList header;
        std::vector<std::vector<double>> table;
        for (const char* column : columns) {
            std::vector<double> read;
            int var = -1;
            if (!nc.read(column, peakDim, peaks, &read, &var))
                continue;
            for (double& v : read)
                v = nc.isFill(var, v) ? std::nan("") : v * nc.scale(var);
            header.append(QString::fromLatin1(column));
            table.push_back(read);
        }
        if (!table.empty()) {
            QByteArray text = "# peak table of the data system; times in " + secondsOrMinutes(retention).toUtf8() + "\n"
                + header.join(QLatin1Char(',')).toUtf8() + "\n";
            for (size_t p = 0; p < peaks; ++p) {
                QStringList row;
                for (const auto& column : table)
                    row.append(std::isnan(column[p]) ? QString() : QString::number(column[p], 'g', 10));
                text += row.join(QLatin1Char(',')).toUtf8() + "\n";
            }
            result.files.append(qMakePair(QStringLiteral("vendor-peaks.csv"), text));
        }
    }
    result.detectors.append(channel);
    *run = result;
    return true;
}

bool readOpen(NcFile& nc, const QString& source, qint64 byteSize, TAcquisitionRun* run)
{
    int scanDim = -1, pointDim = -1;
    int ordinate = -1;
    if (nc_inq_dimid(nc.id, "scan_number", &scanDim) != NC_NOERR
        && nc_inq_varid(nc.id, "ordinate_values", &ordinate) == NC_NOERR)
        return readChromatogram(nc, source, byteSize, run);
    size_t scans = 0, points = 0;
    if (nc_inq_dimid(nc.id, "scan_number", &scanDim) != NC_NOERR || nc_inq_dimlen(nc.id, scanDim, &scans) != NC_NOERR) {
        refuse(source, missing("scan_number"));
        return false;
    }
    if (nc_inq_dimid(nc.id, "point_number", &pointDim) != NC_NOERR
        || nc_inq_dimlen(nc.id, pointDim, &points) != NC_NOERR) {
        refuse(source, missing("point_number"));
        return false;
    }
    // Dimensions are only numbers in a header: check them against the bytes
    // before allocating (compressed files may hold more than their size).
    const double budget = 64.0 * double(byteSize) + 1e6;
    if (scans > MaxScans || points > MaxPoints || double(points) > budget || double(scans) > budget) {
        refuse(source,
               QCoreApplication::translate(Context, "its dimensions (%1 scans, %2 points) do not fit its size",
                                           "ses dimensions (%1 scans, %2 points) ne correspondent pas à sa taille")
                   .arg(scans)
                   .arg(points));
        return false;
    }
    std::vector<double> times, totals, index, counts, masses, intensities;
    int timeVar = -1, massVar = -1, intensityVar = -1;
    const struct
    {
        const char* name;
        int dim;
        size_t length;
        std::vector<double>* values;
        int* var;
    } wanted[] = {{"scan_acquisition_time", scanDim, scans, &times, &timeVar},
                  {"scan_index", scanDim, scans, &index, nullptr},
                  {"point_count", scanDim, scans, &counts, nullptr},
                  {"mass_values", pointDim, points, &masses, &massVar},
                  {"intensity_values", pointDim, points, &intensities, &intensityVar}};
    for (const auto& w : wanted) {
        if (!nc.read(w.name, w.dim, w.length, w.values, w.var)) {
            refuse(source, missing(w.name));
            return false;
        }
    }
    int totalVar = -1;
    const bool hasTotals = nc.read("total_intensity", scanDim, scans, &totals, &totalVar);
    // Library files keep reference spectra, with fill values for times: not a run.
    size_t recorded = 0;
    for (double t : times)
        recorded += !nc.isFill(timeVar, t);
    if (scans > 0 && recorded == 0) {
        const bool library
            = nc.textAttribute(NC_GLOBAL, "experiment_type").contains(QLatin1String("Library"), Qt::CaseInsensitive);
        refuse(source,
               library ? QCoreApplication::translate(
                   Context, "it is a library of reference spectra, not a run (no acquisition time)",
                   "c'est une bibliothèque de spectres de référence, pas une acquisition (aucun temps d'acquisition)")
                       : QCoreApplication::translate(
                           Context, "it holds no acquisition time (every scan_acquisition_time is a fill value)",
                           "il ne contient aucun temps d'acquisition (toutes les valeurs de scan_acquisition_time sont "
                           "des valeurs de remplissage)"));
        return false;
    }
    const double timeScale
        = nc.textAttribute(timeVar, "units").contains(QLatin1String("min"), Qt::CaseInsensitive) ? 1.0 : 1.0 / 60.0;
    const double massScale = nc.scale(massVar);
    const double intensityScale = nc.scale(intensityVar);

    TAcquisitionRun result;
    result.acquisitionSystem = TAcquisitionRun::SystemFullScan;
    result.name = nc.textAttribute(NC_GLOBAL, "experiment_title");
    if (result.name.isEmpty())
        result.name = QFileInfo(source).completeBaseName();
    const QString stamp = nc.textAttribute(NC_GLOBAL, "experiment_date_time_stamp");
    result.date = QDateTime::fromString(stamp.left(14), QStringLiteral("yyyyMMddHHmmss"));
    if (result.date.isValid())
        result.date.setTimeSpec(Qt::UTC);
    result.rtimes.reserve(int(scans));
    std::vector<std::pair<quint32, float>> spectrum;
    std::vector<quint32> keys;
    std::vector<float> values;
    for (size_t scan = 0; scan < scans; ++scan) {
        const double time = times[scan] * timeScale;
        const double first = index[scan];
        const double count = counts[scan];
        auto bad = [&](const QString& what) {
            refuse(source, QCoreApplication::translate(Context, "scan %1: %2", "scan %1 : %2").arg(scan + 1).arg(what));
            return false;
        };
        if (nc.isFill(timeVar, times[scan]) || (scan > 0 && time < result.rtimes.last()))
            return bad(QCoreApplication::translate(Context, "its time goes backwards", "son temps recule"));
        if (!(first >= 0) || !(count >= 0) || first + count > double(points))
            return bad(QCoreApplication::translate(Context, "its points lie outside the data",
                                                   "ses points sont hors des données"));
        spectrum.clear();
        const size_t begin = size_t(first);
        for (size_t p = begin; p < begin + size_t(count); ++p) {
            if (nc.isFill(massVar, masses[p]) || nc.isFill(intensityVar, intensities[p]))
                continue; // a point not recorded
            const double mass = masses[p] * massScale;
            const double abundance = intensities[p] * intensityScale;
            if (!(mass >= 0) || mass >= 4.0e7 || !std::isfinite(abundance) || std::fabs(abundance) > 3.0e38)
                return bad(QCoreApplication::translate(Context, "it holds a mass or an intensity that is not valid",
                                                       "il contient une masse ou une intensité non valide"));
            spectrum.emplace_back(quint32(std::lround(mass * 100.0)), float(abundance));
        }
        // Data systems write their spectra in mass order, but a hand-made file
        // may not; equal keys (after rounding to 0.01) are one point.
        std::stable_sort(spectrum.begin(), spectrum.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        keys.clear();
        values.clear();
        for (const auto& point : spectrum) {
            if (!keys.empty() && keys.back() == point.first) {
                values.back() += point.second;
            } else {
                keys.push_back(point.first);
                values.push_back(point.second);
            }
        }
        result.appendScan(time, keys.data(), values.data(), int(keys.size()));
        // A TIC not recorded is the sum of the scan's points (appendScan's).
        if (hasTotals && !nc.isFill(totalVar, totals[scan]))
            result.tic.last() = totals[scan];
    }
    *run = result;
    return true;
}

} // namespace

bool TAndiMSFile::read(const QString& path, TAcquisitionRun* run)
{
    if (!run)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        refuse(path, QCoreApplication::translate(Context, "it cannot be opened", "il ne peut pas être ouvert"));
        return false;
    }
    const QByteArray bytes = file.readAll();
    return readMemory(bytes, run, path);
}

bool TAndiMSFile::readMemory(const QByteArray& bytes, TAcquisitionRun* run, const QString& source)
{
    if (!run)
        return false;
    // ANDI files are classic netCDF (or its 64-bit-offset variant); nothing
    // else is handed to the library, which keeps its HDF5 parser away from
    // files that are not ours.
    const bool classic = bytes.size() >= 4 && bytes.startsWith("CDF") && (bytes.at(3) == 1 || bytes.at(3) == 2);
    if (!classic) {
        refuse(source,
               QCoreApplication::translate(Context, "it is not a netCDF file", "ce n'est pas un fichier netCDF"));
        return false;
    }
    const QString damage = ClassicHeader(bytes).check();
    if (!damage.isEmpty()) {
        refuse(source, damage);
        return false;
    }
    QByteArray copy = bytes; // the library wants writable memory
    NcFile nc;
    const int status = nc_open_mem(source.toUtf8().constData(), NC_NOWRITE, size_t(copy.size()), copy.data(), &nc.id);
    if (status != NC_NOERR) {
        nc.id = -1;
        refuse(source, QString::fromUtf8(nc_strerror(status)));
        return false;
    }
    return readOpen(nc, source, bytes.size(), run);
}

bool TAndiMSFile::write(const QString& path, const TAcquisitionRun& run, QString* error)
{
    auto fail = [&path, error](const QString& why) {
        if (error) {
            *error = why;
            return false;
        }
        MessageLoggerInterface::Error(QCoreApplication::translate(Context,
                                                                  "Unable to write the ANDI file <b>%1</b>: %2",
                                                                  "Impossible d'écrire le fichier ANDI <b>%1</b> : %2")
                                          .arg(path, why));
        return false;
    };
    QString why;
    if (!run.isConsistent(&why))
        return fail(why);
    if (run.pointCount() > INT_MAX)
        return fail(
            QCoreApplication::translate(Context, "too many points for the format", "trop de points pour le format"));
    // netCDF writes through its own file handle: write beside the target and
    // rename, so that the target is complete or untouched.
    const QString temporary = QFileInfo(path).absolutePath() + QStringLiteral("/.") + QFileInfo(path).fileName()
        + QLatin1Char('.') + QUuid::createUuid().toString(QUuid::Id128);
    int id = -1;
    int status = nc_create(QFile::encodeName(temporary).constData(), NC_CLOBBER | NC_64BIT_OFFSET, &id);
    auto check = [&status](int s) {
        if (status == NC_NOERR)
            status = s;
    };
    if (status != NC_NOERR)
        return fail(QString::fromUtf8(nc_strerror(status)));
    const size_t scans = size_t(run.scanCount());
    const size_t points = size_t(run.pointCount());
    int scanDim = -1, pointDim = -1;
    check(nc_def_dim(id, "scan_number", scans ? scans : NC_UNLIMITED, &scanDim));
    // Classic netCDF has one unlimited dimension and no empty fixed one: an
    // empty run keeps one unused point.
    check(nc_def_dim(id, "point_number", points ? points : (scans ? NC_UNLIMITED : 1), &pointDim));
    int timeVar = -1, totalVar = -1, indexVar = -1, countVar = -1, massVar = -1, intensityVar = -1;
    check(nc_def_var(id, "scan_acquisition_time", NC_DOUBLE, 1, &scanDim, &timeVar));
    check(nc_def_var(id, "total_intensity", NC_DOUBLE, 1, &scanDim, &totalVar));
    check(nc_def_var(id, "scan_index", NC_INT, 1, &scanDim, &indexVar));
    check(nc_def_var(id, "point_count", NC_INT, 1, &scanDim, &countVar));
    check(nc_def_var(id, "mass_values", NC_DOUBLE, 1, &pointDim, &massVar));
    check(nc_def_var(id, "intensity_values", NC_FLOAT, 1, &pointDim, &intensityVar));
    auto text = [&](int var, const char* name, const QString& value) {
        const QByteArray utf8 = value.toUtf8();
        check(nc_put_att_text(id, var, name, size_t(utf8.size()), utf8.constData()));
    };
    text(timeVar, "units", QStringLiteral("seconds"));
    text(massVar, "units", QStringLiteral("M/Z"));
    text(intensityVar, "units", QStringLiteral("Arbitrary Intensity Units"));
    text(NC_GLOBAL, "dataset_completeness", QStringLiteral("C1+C2"));
    text(NC_GLOBAL, "ms_template_revision", QStringLiteral("1.0.1"));
    text(NC_GLOBAL, "experiment_title", run.name);
    if (run.date.isValid())
        text(NC_GLOBAL, "experiment_date_time_stamp",
             run.date.toUTC().toString(QStringLiteral("yyyyMMddHHmmss")) + QStringLiteral("+0000"));
    check(nc_enddef(id));

    std::vector<double> seconds(scans);
    std::vector<int> index(scans), counts(scans);
    for (size_t i = 0; i < scans; ++i) {
        seconds[i] = run.rtimes.at(int(i)) * 60.0;
        index[i] = int(run.scanOffsets.at(int(i)));
        counts[i] = run.pointsAtScan(int(i));
    }
    std::vector<double> masses(points);
    for (size_t i = 0; i < points; ++i)
        masses[i] = run.masses.at(int(i)) / 100.0;
    const size_t start = 0;
    if (scans) {
        check(nc_put_vara_double(id, timeVar, &start, &scans, seconds.data()));
        check(nc_put_vara_double(id, totalVar, &start, &scans, run.tic.constData()));
        check(nc_put_vara_int(id, indexVar, &start, &scans, index.data()));
        check(nc_put_vara_int(id, countVar, &start, &scans, counts.data()));
    }
    if (points) {
        check(nc_put_vara_double(id, massVar, &start, &points, masses.data()));
        check(nc_put_vara_float(id, intensityVar, &start, &points, run.abundances.constData()));
    }
    const int closed = nc_close(id);
    check(closed);
    if (status != NC_NOERR) {
        QFile::remove(temporary);
        return fail(QString::fromUtf8(nc_strerror(status)));
    }
    QFile::remove(path);
    if (!QFile::rename(temporary, path)) {
        QFile::remove(temporary);
        return fail(
            QCoreApplication::translate(Context, "the file cannot be renamed", "le fichier ne peut pas être renommé"));
    }
    return true;
}
