#include "tjcampfile.h"

#include "tacquisitionrun.h"
#include "vnfileformatslogging.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

namespace {

const char* const Context = "TJcampFile";

QString tr(const char* text, const char* french)
{
    return QCoreApplication::translate(Context, text, french);
}

// Labels compare without case, spaces, hyphens, slashes and underscores:
// "##RETENTION TIME=" and "##RETENTION_TIME=" are the same label.
QByteArray normalised(const QByteArray& text)
{
    QByteArray out;
    out.reserve(text.size());
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '-' || c == '/' || c == '_')
            continue;
        out.append((c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c);
    }
    return out;
}

// A label line "##NAME=value": the normalised name and the value, or false.
bool splitLabel(const QByteArray& line, QByteArray* name, QByteArray* value)
{
    if (!line.startsWith("##"))
        return false;
    const int equals = line.indexOf('=');
    if (equals < 0)
        return false;
    *name = normalised(line.mid(2, equals - 2));
    *value = line.mid(equals + 1).trimmed();
    return true;
}

bool finiteNumber(const QByteArray& text, double* value)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return false;
    *value = v;
    return true;
}

// Minutes per unit of a retention time; 0 for a unit we do not know, -1 when none is given.
double minutesPerUnit(const QByteArray& unit)
{
    const QByteArray u = normalised(unit);
    if (u.isEmpty())
        return -1.0;
    if (u == "S" || u == "SEC" || u == "SECS" || u == "SECOND" || u == "SECONDS" || u == "TIMEINSECONDS")
        return 1.0 / 60.0;
    if (u == "MIN" || u == "MINS" || u == "MINUTE" || u == "MINUTES" || u == "TIMEINMINUTES")
        return 1.0;
    if (u == "MS" || u == "MSEC" || u == "MILLISECOND" || u == "MILLISECONDS")
        return 1.0 / 60000.0;
    return 0.0;
}

// Forms of x that make a mass spectrum.
bool isMassUnit(const QByteArray& unit)
{
    const QByteArray u = normalised(unit);
    return u.isEmpty() || u == "M/Z" || u == "MZ" || u == "ME" || u == "AMU" || u == "U" || u == "DA" || u == "DALTON"
        || u == "DALTONS" || u == "MASS" || u == "MASSTOCHARGE";
}

// Optical quantities: a JCAMP-DX file of another spectroscopy.
bool isOpticalUnit(const QByteArray& unit)
{
    const QByteArray u = normalised(unit);
    return u.contains("TRANSMITTANCE") || u.contains("ABSORBANCE") || u.contains("REFLECTANCE")
        || u.contains("KUBELKA");
}

// The characters of the compressed (ASDF) forms: SQZ '@' 'A'-'I' 'a'-'i',
// DIF '%' 'J'-'R' 'j'-'r', DUP 'S'-'Z' 's'. 'E' and 'e' belong to exponents.
bool isCompressionCharacter(char c)
{
    if (c == '@' || c == '%')
        return true;
    if (c == 'E' || c == 'e')
        return false;
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 's');
}

struct Point
{
    quint32 key;
    float abundance;
};

// What the labels of the current block and of the spectrum being read say.
struct Block
{
    QByteArray dataType;
    QByteArray xUnits;
    QByteArray yUnits;
    double xFactor = 1.0;
    double yFactor = 1.0;
    // NTUPLES: one entry per variable.
    QList<QByteArray> symbols;
    QList<QByteArray> names;
    QList<QByteArray> units;
    QList<QByteArray> factors;

    int indexOf(const QByteArray& symbol) const
    {
        for (int i = 0; i < symbols.size(); ++i) {
            if (normalised(symbols.at(i)) == symbol)
                return i;
        }
        return -1;
    }
    QByteArray unitOf(const QByteArray& symbol) const
    {
        const int i = indexOf(symbol);
        return i >= 0 && i < units.size() ? units.at(i).trimmed() : QByteArray();
    }
    double factorOf(const QByteArray& symbol) const
    {
        const int i = indexOf(symbol);
        double v = 1.0;
        return i >= 0 && i < factors.size() && finiteNumber(factors.at(i), &v) && v != 0.0 ? v : 1.0;
    }
};

struct Spectrum
{
    bool hasTime = false;
    double time = 0.0; // minutes
    bool hasTic = false;
    double tic = 0.0;
    qint64 declaredPoints = -1;
    int line = 0;               // of its table
    std::vector<double> values; // x, y, x, y ...
};

QList<QByteArray> fields(const QByteArray& value)
{
    QList<QByteArray> out;
    for (const QByteArray& field : value.split(','))
        out.append(field.trimmed());
    return out;
}

class Parser
{
public:
    Parser(const QByteArray& bytes, const QString& source)
        : m_bytes(bytes)
        , m_source(source)
    { }

    bool parse(TAcquisitionRun* run, QString* error);

private:
    bool fail(const QString& why)
    {
        m_error = why;
        return false;
    }
    bool label(const QByteArray& name, const QByteArray& value, int line);
    bool dataLine(const QByteArray& line, int lineNumber);
    /// A character where a number starts or ends: a compressed table, or damage.
    bool badCharacter(char bad, int lineNumber);
    bool finishSpectrum();
    bool timeValue(const QByteArray& value, const QByteArray& unitFallback, int line, double* minutes);
    void startBlock() { m_block = Block(); }

    const QByteArray& m_bytes;
    QString m_source;
    QString m_error;
    Block m_block;
    Spectrum m_spectrum;
    bool m_inTable = false;
    bool m_versioned = false;
    int m_titles = 0;
    int m_ends = 0;
    QString m_title;
    QByteArray m_date, m_time, m_longDate;
    TAcquisitionRun m_run;
    std::vector<Point> m_points;
};

bool Parser::timeValue(const QByteArray& value, const QByteArray& unitFallback, int line, double* minutes)
{
    // "1.052" or "1.052 MIN": the number, then an optional unit.
    const QByteArray text = value.simplified();
    const int space = text.indexOf(' ');
    const QByteArray number = space < 0 ? text : text.left(space);
    const QByteArray unit = space < 0 ? unitFallback : text.mid(space + 1);
    double raw = 0.0;
    if (!finiteNumber(number, &raw))
        return fail(tr("'%1', line %2: the retention time '%3' is not a number",
                       "'%1', ligne %2 : le temps de rétention '%3' n'est pas un nombre")
                        .arg(m_source)
                        .arg(line)
                        .arg(QString::fromLatin1(value.left(40))));
    double factor = minutesPerUnit(unit);
    if (factor == 0.0)
        return fail(
            tr("'%1', line %2: the time unit '%3' is not known", "'%1', ligne %2 : l'unité de temps '%3' est inconnue")
                .arg(m_source)
                .arg(line)
                .arg(QString::fromLatin1(unit.left(40))));
    if (factor < 0.0)
        factor = 1.0 / 60.0; // mass-spectrometry JCAMP-DX gives retention times in seconds
    *minutes = raw * factor;
    return true;
}

bool Parser::label(const QByteArray& name, const QByteArray& value, int line)
{
    if (name == "TITLE") {
        if (m_titles == 0)
            m_title = QString::fromUtf8(value).trimmed();
        ++m_titles;
        startBlock();
    } else if (name == "JCAMPDX") {
        m_versioned = true;
    } else if (name == "END") {
        ++m_ends;
    } else if (name == "DATATYPE") {
        m_block.dataType = value.simplified().toUpper();
    } else if (name == "XUNITS") {
        m_block.xUnits = value;
    } else if (name == "YUNITS") {
        m_block.yUnits = value;
    } else if (name == "XFACTOR" || name == "YFACTOR") {
        double factor = 0.0;
        if (!finiteNumber(value, &factor) || factor == 0.0)
            return fail(tr("'%1', line %2: the factor '%3' is not a number",
                           "'%1', ligne %2 : le facteur '%3' n'est pas un nombre")
                            .arg(m_source)
                            .arg(line)
                            .arg(QString::fromLatin1(value.left(40))));
        (name == "XFACTOR" ? m_block.xFactor : m_block.yFactor) = factor;
    } else if (name == "SYMBOL") {
        m_block.symbols = fields(value);
    } else if (name == "VARNAME") {
        m_block.names = fields(value);
    } else if (name == "UNITS") {
        m_block.units = fields(value);
    } else if (name == "FACTOR") {
        m_block.factors = fields(value);
    } else if (name == "DATE") {
        m_date = value;
    } else if (name == "TIME") {
        m_time = value;
    } else if (name == "LONGDATE") {
        m_longDate = value;
    } else if (name == "PAGE") {
        // "T=1.052": the page's variable and value; a time when that variable is one.
        const int equals = value.indexOf('=');
        if (equals > 0 && !m_spectrum.hasTime) {
            const QByteArray symbol = normalised(value.left(equals));
            const int index = m_block.indexOf(symbol);
            const bool isTime = index >= 0 && index < m_block.names.size()
                ? normalised(m_block.names.at(index)).contains("TIME")
                : symbol == "T" || symbol == "RT" || symbol == "RETENTIONTIME";
            if (isTime) {
                if (!timeValue(value.mid(equals + 1), m_block.unitOf(symbol), line, &m_spectrum.time))
                    return false;
                m_spectrum.hasTime = true;
            }
        }
    } else if (name == "RETENTIONTIME") {
        const int t = m_block.indexOf("T");
        if (!timeValue(value, t >= 0 ? m_block.unitOf("T") : QByteArray(), line, &m_spectrum.time))
            return false;
        m_spectrum.hasTime = true;
    } else if (name == "TIC") {
        if (!finiteNumber(value, &m_spectrum.tic))
            return fail(
                tr("'%1', line %2: the TIC '%3' is not a number", "'%1', ligne %2 : le TIC '%3' n'est pas un nombre")
                    .arg(m_source)
                    .arg(line)
                    .arg(QString::fromLatin1(value.left(40))));
        m_spectrum.hasTic = true;
    } else if (name == "NPOINTS") {
        bool ok = false;
        m_spectrum.declaredPoints = value.toLongLong(&ok);
        if (!ok || m_spectrum.declaredPoints < 0)
            return fail(tr("'%1', line %2: the point count '%3' is not a count",
                           "'%1', ligne %2 : le nombre de points '%3' n'est pas un nombre entier")
                            .arg(m_source)
                            .arg(line)
                            .arg(QString::fromLatin1(value.left(40))));
    } else if (name == "XYDATA" || name == "PEAKTABLE" || name == "DATATABLE") {
        const QByteArray form = normalised(value);
        if (form.startsWith("(XY..XY)") || form.startsWith("(XY.XY)")) {
            m_inTable = true;
            m_spectrum.line = line;
            m_spectrum.values.clear();
            return true;
        }
        if (form.contains("++"))
            return fail(tr("'%1', line %2: the spectrum is in the compressed form %3, which is not read; export the "
                           "run with (XY..XY) pairs",
                           "'%1', ligne %2 : le spectre est sous la forme compressée %3, qui n'est pas lue ; "
                           "exportez l'acquisition en paires (XY..XY)")
                            .arg(m_source)
                            .arg(line)
                            .arg(QString::fromLatin1(value.simplified().left(40))));
        return fail(tr("'%1', line %2: the table form '%3' is not read (only (XY..XY) pairs are)",
                       "'%1', ligne %2 : la forme de table '%3' n'est pas lue (seules les paires (XY..XY) le sont)")
                        .arg(m_source)
                        .arg(line)
                        .arg(QString::fromLatin1(value.simplified().left(40))));
    }
    return true;
}

bool Parser::badCharacter(char bad, int lineNumber)
{
    if (isCompressionCharacter(bad))
        return fail(tr("'%1', line %2: the spectrum is compressed (ASDF characters), which is not read; "
                       "export the run with plain (XY..XY) pairs",
                       "'%1', ligne %2 : le spectre est compressé (caractères ASDF), ce qui n'est pas lu ; "
                       "exportez l'acquisition en paires (XY..XY) simples")
                        .arg(m_source)
                        .arg(lineNumber));
    return fail(tr("'%1', line %2: unexpected character '%3' in the data",
                   "'%1', ligne %2 : caractère inattendu '%3' dans les données")
                    .arg(m_source)
                    .arg(lineNumber)
                    .arg(QString::fromLatin1(&bad, 1)));
}

bool Parser::dataLine(const QByteArray& line, int lineNumber)
{
    // Numbers separated by commas, semicolons, blanks, or by their own sign (the packed form).
    const char* p = line.constData();
    const char* const end = p + line.size();
    while (p < end) {
        const char c = *p;
        if (c == ' ' || c == '\t' || c == ',' || c == ';') {
            ++p;
            continue;
        }
        const char* start = p;
        if (c == '+' || c == '-')
            ++p;
        while (p < end
               && ((*p >= '0' && *p <= '9') || *p == '.' || ((*p == 'e' || *p == 'E') && p + 1 < end && p > start)
                   || ((*p == '+' || *p == '-') && (p[-1] == 'e' || p[-1] == 'E'))))
            ++p;
        if (p == start)
            return badCharacter(*p, lineNumber);
        double value = 0.0;
        if (!finiteNumber(QByteArray::fromRawData(start, int(p - start)), &value))
            return fail(tr("'%1', line %2: '%3' is not a number", "'%1', ligne %2 : '%3' n'est pas un nombre")
                            .arg(m_source)
                            .arg(lineNumber)
                            .arg(QString::fromLatin1(start, int(std::min<qint64>(p - start, 40)))));
        if (p < end && !(*p == ' ' || *p == '\t' || *p == ',' || *p == ';' || *p == '+' || *p == '-'))
            return badCharacter(*p, lineNumber);
        m_spectrum.values.push_back(value);
    }
    if (m_spectrum.values.size() % 2 != 0)
        return fail(tr("'%1', line %2: a mass without its abundance (the file may be cut)",
                       "'%1', ligne %2 : une masse sans son abondance (le fichier est peut-être coupé)")
                        .arg(m_source)
                        .arg(lineNumber));
    return true;
}

bool Parser::finishSpectrum()
{
    m_inTable = false;
    const int scan = m_run.scanCount() + 1;
    const QByteArray xUnits = m_block.xUnits.isEmpty() ? m_block.unitOf("X") : m_block.xUnits;
    const QByteArray yUnits = m_block.yUnits.isEmpty() ? m_block.unitOf("Y") : m_block.yUnits;
    if (!m_block.dataType.isEmpty() && !m_block.dataType.contains("MASS"))
        return fail(
            tr("'%1' holds %2 data, not mass spectra", "'%1' contient des données %2, pas des spectres de masse")
                .arg(m_source, QString::fromLatin1(m_block.dataType.left(40))));
    if (!isMassUnit(xUnits) || isOpticalUnit(yUnits))
        return fail(tr("'%1', line %2: the spectrum is in %3 against %4, not abundances against m/z",
                       "'%1', ligne %2 : le spectre est en %3 selon %4, pas en abondances selon m/z")
                        .arg(m_source)
                        .arg(m_spectrum.line)
                        .arg(QString::fromLatin1(yUnits.simplified().left(40)),
                             QString::fromLatin1(xUnits.simplified().left(40))));
    if (!m_spectrum.hasTime)
        return fail(tr("'%1', line %2: the spectrum has no retention time (a single spectrum, not a run)",
                       "'%1', ligne %2 : le spectre n'a pas de temps de rétention (un spectre seul, pas une "
                       "acquisition)")
                        .arg(m_source)
                        .arg(m_spectrum.line));
    const qint64 count = qint64(m_spectrum.values.size() / 2);
    if (m_spectrum.declaredPoints >= 0 && m_spectrum.declaredPoints != count)
        return fail(tr("'%1', line %2: the spectrum declares %3 points but holds %4 (the file may be cut)",
                       "'%1', ligne %2 : le spectre annonce %3 points mais en contient %4 (le fichier est peut-être "
                       "coupé)")
                        .arg(m_source)
                        .arg(m_spectrum.line)
                        .arg(m_spectrum.declaredPoints)
                        .arg(count));
    if (m_run.scanCount() > 0 && m_spectrum.time < m_run.rtimes.last())
        return fail(tr("'%1', line %2: the retention time of scan %3 goes back",
                       "'%1', ligne %2 : le temps de rétention du scan %3 recule")
                        .arg(m_source)
                        .arg(m_spectrum.line)
                        .arg(scan));
    const double xFactor = m_block.xFactor != 1.0 ? m_block.xFactor : m_block.factorOf("X");
    const double yFactor = m_block.yFactor != 1.0 ? m_block.yFactor : m_block.factorOf("Y");
    m_points.clear();
    m_points.reserve(size_t(count));
    for (qint64 i = 0; i < count; ++i) {
        const double mass = m_spectrum.values[size_t(2 * i)] * xFactor;
        const double abundance = m_spectrum.values[size_t(2 * i + 1)] * yFactor;
        const double key = std::round(mass * 100.0);
        if (!(key >= 0.0 && key <= double(std::numeric_limits<quint32>::max())))
            return fail(
                tr("'%1', line %2: the mass %3 is out of range", "'%1', ligne %2 : la masse %3 est hors limites")
                    .arg(m_source)
                    .arg(m_spectrum.line)
                    .arg(mass));
        if (!(std::fabs(abundance) <= double(FLT_MAX)))
            return fail(tr("'%1', line %2: the abundance %3 is out of range",
                           "'%1', ligne %2 : l'abondance %3 est hors limites")
                            .arg(m_source)
                            .arg(m_spectrum.line)
                            .arg(abundance));
        m_points.push_back({quint32(key), float(abundance)});
    }
    std::stable_sort(m_points.begin(), m_points.end(), [](const Point& a, const Point& b) { return a.key < b.key; });
    double total = 0.0;
    for (size_t i = 0; i < m_points.size(); ++i) {
        if (i > 0 && m_points[i].key == m_run.masses.last()) {
            m_run.abundances.last() += m_points[i].abundance; // two masses rounding to one key
            if (!std::isfinite(m_run.abundances.last()))
                total = std::numeric_limits<double>::infinity();
        } else {
            m_run.masses.append(m_points[i].key);
            m_run.abundances.append(m_points[i].abundance);
        }
        total += double(m_points[i].abundance);
        if (!std::isfinite(total))
            break;
    }
    if (!std::isfinite(total) || (m_spectrum.hasTic && !std::isfinite(m_spectrum.tic)))
        return fail(tr("'%1', line %2: the total of scan %3 is out of range",
                       "'%1', ligne %2 : le total du scan %3 est hors limites")
                        .arg(m_source)
                        .arg(m_spectrum.line)
                        .arg(scan));
    m_run.rtimes.append(m_spectrum.time);
    m_run.tic.append(m_spectrum.hasTic ? m_spectrum.tic : total);
    m_run.scanOffsets.append(quint64(m_run.masses.size()));
    m_spectrum = Spectrum();
    return true;
}

QDateTime parseDate(const QByteArray& longDate, const QByteArray& date, const QByteArray& time)
{
    const QString whole = QString::fromLatin1(longDate.simplified());
    for (const char* format : {"yyyy/MM/dd HH:mm:ss", "yyyy/MM/dd HH:mm", "yyyy-MM-dd HH:mm:ss", "yyyy/MM/dd"}) {
        QDateTime when = QDateTime::fromString(whole, QLatin1String(format));
        if (when.isValid()) {
            when.setTimeSpec(Qt::UTC);
            return when;
        }
    }
    const QString day = QString::fromLatin1(date.simplified());
    QDate d;
    for (const char* format : {"yyyy-MM-dd", "yyyy/MM/dd", "dd-MMM-yyyy"}) {
        d = QLocale::c().toDate(day, QLatin1String(format));
        if (d.isValid())
            break;
    }
    if (!d.isValid())
        return QDateTime();
    QTime t = QTime::fromString(QString::fromLatin1(time.simplified()), QStringLiteral("HH:mm:ss"));
    if (!t.isValid())
        t = QTime::fromString(QString::fromLatin1(time.simplified()), QStringLiteral("HH:mm"));
    return QDateTime(d, t.isValid() ? t : QTime(0, 0), Qt::UTC);
}

bool Parser::parse(TAcquisitionRun* run, QString* error)
{
    const auto refuse = [&]() {
        qCDebug(vnFileFormats, "%s", qUtf8Printable(m_error));
        if (error)
            *error = m_error;
        return false;
    };
    m_run.clear();
    m_run.acquisitionSystem = TAcquisitionRun::SystemFullScan;
    int lineNumber = 0;
    int pos = 0;
    if (m_bytes.startsWith("\xEF\xBB\xBF"))
        pos = 3;
    while (pos < m_bytes.size()) {
        int next = m_bytes.indexOf('\n', pos);
        if (next < 0)
            next = m_bytes.size();
        QByteArray line = QByteArray::fromRawData(m_bytes.constData() + pos, next - pos);
        pos = next + 1;
        ++lineNumber;
        const int comment = line.indexOf("$$");
        if (comment >= 0)
            line.truncate(comment);
        line = line.trimmed();
        if (line.isEmpty())
            continue;
        if (line.contains('\0')) {
            m_error = tr("'%1', line %2: binary content in a text file",
                         "'%1', ligne %2 : contenu binaire dans un "
                         "fichier texte")
                          .arg(m_source)
                          .arg(lineNumber);
            return refuse();
        }
        QByteArray name, value;
        if (splitLabel(line, &name, &value)) {
            if (m_inTable && !finishSpectrum())
                return refuse();
            if (!label(name, value, lineNumber))
                return refuse();
        } else if (m_inTable && !dataLine(line, lineNumber)) {
            return refuse();
        }
    }
    if (m_inTable && !finishSpectrum())
        return refuse();
    if (m_run.scanCount() == 0) {
        m_error = tr("'%1' holds no spectrum", "'%1' ne contient aucun spectre").arg(m_source);
        return refuse();
    }
    // A file that says its version follows the standard, which closes every block.
    if (m_versioned && m_ends < m_titles) {
        m_error
            = tr("'%1' is cut: a block is not closed by ##END=", "'%1' est coupé : un bloc n'est pas fermé par ##END=")
                  .arg(m_source);
        return refuse();
    }
    m_run.name = m_title.isEmpty() ? QFileInfo(m_source).completeBaseName() : m_title;
    m_run.date = parseDate(m_longDate, m_date, m_time);
    *run = m_run;
    return true;
}

QByteArray number(double value)
{
    return QByteArray::number(value, 'g', 17);
}

} // namespace

bool TJcampFile::isJcamp(const QByteArray& head)
{
    int pos = head.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (pos < head.size()
           && (head.at(pos) == ' ' || head.at(pos) == '\t' || head.at(pos) == '\r' || head.at(pos) == '\n'))
        ++pos;
    int end = head.indexOf('\n', pos);
    if (end < 0)
        end = head.size();
    QByteArray name, value;
    if (!splitLabel(head.mid(pos, end - pos), &name, &value))
        return false;
    return name == "TITLE" || name == "JCAMPDX";
}

bool TJcampFile::read(const QByteArray& bytes, const QString& source, TAcquisitionRun* run, QString* error)
{
    if (!run)
        return false;
    Parser parser(bytes, source);
    return parser.parse(run, error);
}

QByteArray TJcampFile::write(const TAcquisitionRun& run)
{
    QByteArray out;
    out += "##TITLE=" + run.name.simplified().toUtf8() + "\n";
    out += "##JCAMP-DX=5.01\n";
    out += "##DATA TYPE=MASS SPECTRUM\n";
    out += "##DATA CLASS=PEAK TABLE\n";
    out += "##ORIGIN=\n##OWNER=\n";
    if (run.date.isValid())
        out += "##LONG DATE=" + run.date.toUTC().toString(QStringLiteral("yyyy/MM/dd HH:mm:ss")).toLatin1() + "\n";
    out += "##XUNITS=M/Z\n##YUNITS=RELATIVE ABUNDANCE\n";
    for (int s = 0; s < run.scanCount(); ++s) {
        const QByteArray seconds = number(run.rtimes.at(s) * 60.0);
        const int count = run.pointsAtScan(s);
        out += "##SCAN_NUMBER=" + QByteArray::number(s + 1) + "\n";
        out += "##PAGE=T=" + seconds + "\n";
        out += "##RETENTION_TIME=" + seconds + "\n";
        out += "##TIC=" + number(run.tic.value(s)) + "\n";
        out += "##NPOINTS=" + QByteArray::number(count) + "\n";
        out += "##XYDATA=(XY..XY)\n";
        const quint32* keys = run.massesAtScan(s);
        const float* values = run.abundancesAtScan(s);
        for (int i = 0; i < count; ++i)
            out += QByteArray::number(double(keys[i]) / 100.0, 'f', 2) + ", "
                + QByteArray::number(double(values[i]), 'g', 9) + "\n";
    }
    out += "##END=\n";
    return out;
}

QString TJcampReader::formatName() const
{
    return QStringLiteral("JCAMP-DX");
}

bool TJcampReader::recognises(const QByteArray& head, const QString&) const
{
    return TJcampFile::isJcamp(head);
}

bool TJcampReader::readBytes(const QByteArray& bytes, const QString& source, QVector<TImportedRun>* runs,
                             QString* error) const
{
    TImportedRun one;
    if (!runs || !TJcampFile::read(bytes, source, &one.run, error))
        return false;
    *runs = {one};
    return true;
}
