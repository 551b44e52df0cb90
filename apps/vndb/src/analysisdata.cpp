#include "analysisdata.h"

#include "projectfolder.h"

#include <tacquisitionrun.h>

#include <QHash>
#include <QJsonArray>

#include <cmath>

int AnalysisSeries::apex() const
{
    int best = -1;
    for (int i = 0; i < y.size(); ++i) {
        if (best < 0 || y.at(i) > y.at(best))
            best = i;
    }
    return best;
}

bool AnalysisSeries::cropTime(double from, double to)
{
    int first = -1, last = -1;
    for (int i = 0; i < x.size(); ++i) {
        if (x.at(i) < from || x.at(i) > to)
            continue;
        if (first < 0)
            first = i;
        last = i;
    }
    if (first < 0)
        return false;
    x = x.mid(first, last - first + 1);
    y = y.mid(first, last - first + 1);
    firstScan += first;
    return true;
}

QJsonObject AnalysisSeries::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("analysis"), analysis);
    object.insert(QStringLiteral("title"), title);
    if (kind == Chromatogram) {
        object.insert(QStringLiteral("firstScan"), firstScan);
        object.insert(QStringLiteral("time"), QJsonArray::fromVariantList([this] {
                          QVariantList list;
                          for (double v : x)
                              list << v;
                          return list;
                      }()));
        object.insert(QStringLiteral("abundance"), QJsonArray::fromVariantList([this] {
                          QVariantList list;
                          for (double v : y)
                              list << v;
                          return list;
                      }()));
    } else {
        QJsonArray points;
        for (int i = 0; i < x.size(); ++i) {
            QJsonObject point;
            point.insert(QStringLiteral("mz"), x.at(i));
            point.insert(QStringLiteral("abundance"), y.at(i));
            point.insert(QStringLiteral("label"), labels.value(i));
            points.append(point);
        }
        object.insert(QStringLiteral("msms"), msms);
        object.insert(QStringLiteral("points"), points);
    }
    return object;
}

QStringList AnalysisSeries::toText() const
{
    QStringList lines;
    lines << QStringLiteral("# %1: %2").arg(analysis, title);
    if (kind == Chromatogram) {
        lines << QStringLiteral("scan\ttime_min\tabundance");
        for (int i = 0; i < x.size(); ++i)
            lines << QStringLiteral("%1\t%2\t%3").arg(firstScan + i).arg(x.at(i), 0, 'f', 4).arg(y.at(i), 0, 'g', 10);
    } else {
        lines << QStringLiteral("mz\tabundance\tlabel");
        for (int i = 0; i < x.size(); ++i)
            lines << QStringLiteral("%1\t%2\t%3").arg(x.at(i), 0, 'f', 2).arg(y.at(i), 0, 'g', 10).arg(labels.value(i));
    }
    return lines;
}

AnalysisData::AnalysisData() = default;

bool AnalysisData::open(const ProjectFolder& project, const QString& analysis, QString* error)
{
    const QString file = project.findAcquisitionFile(analysis, error);
    return !file.isNull() && openFile(file, analysis, error);
}

QString AnalysisData::damaged(const QString& analysis, const QString& reason)
{
    return tr("the acquisition file of analysis '%1' is damaged (%2)",
              "le fichier d'acquisition de l'analyse '%1' est endommagé (%2)")
        .arg(analysis, reason);
}

bool AnalysisData::openFile(const QString& path, const QString& analysis, QString* error)
{
    m_analysis = analysis;
    if (!m_file.open(path)) {
        *error = damaged(analysis, m_file.errorString());
        return false;
    }
    if (m_file.nbScans() <= 0) {
        *error = tr("analysis '%1' holds no scan", "l'analyse '%1' ne contient aucun scan").arg(analysis);
        return false;
    }
    return true;
}

bool AnalysisData::loadAll(QString* error)
{
    if (m_file.isLoaded() && m_file.firstLoadedScan() == 0 && m_file.lastLoadedScan() == m_file.nbScans() - 1)
        return true;
    if (m_file.loadContent(-1, -1, 0, static_cast<unsigned long>(m_file.nbScans() - 1)))
        return true;
    *error = damaged(m_analysis, m_file.errorString());
    return false;
}

bool AnalysisData::tic(AnalysisSeries* series, QString* error)
{
    if (!loadAll(error))
        return false;
    AnalysisSeries result;
    result.analysis = m_analysis;
    result.title = m_file.signalName().isEmpty() ? QStringLiteral("TIC") : m_file.signalName();
    const int n = m_file.nbScans();
    result.x = QVector<double>(m_file.rtime(), m_file.rtime() + n);
    result.y = QVector<double>(m_file.tic(), m_file.tic() + n);
    *series = result;
    return true;
}

bool AnalysisData::eic(double mass, double window, AnalysisSeries* series, QString* error)
{
    if (!(mass > 0.0) || !(window >= 0.0) || window > 1000.0) {
        *error = tr("the mass must be positive and the window between 0 and 1000",
                    "la masse doit être positive et la fenêtre comprise entre 0 et 1000");
        return false;
    }
    if (!m_file.mzRangeExist(float(mass - window), float(mass + window))) {
        *error = tr("m/z %1 is outside the masses of analysis '%2' (%3 to %4)",
                    "m/z %1 est hors des masses de l'analyse '%2' (%3 à %4)")
                     .arg(mass)
                     .arg(m_analysis)
                     .arg(m_file.lowMass())
                     .arg(m_file.highMass());
        return false;
    }
    if (!loadAll(error))
        return false;
    const int n = m_file.nbScans();
    QVector<float> values(n);
    if (m_file.ionAtFullRange(values.data(), float(mass - window), float(mass + window)) != n) {
        *error = damaged(m_analysis, m_file.errorString());
        return false;
    }
    AnalysisSeries result;
    result.analysis = m_analysis;
    result.title = QStringLiteral("EIC m/z %1 \u00b1 %2").arg(mass).arg(window);
    result.x = QVector<double>(m_file.rtime(), m_file.rtime() + n);
    result.y.reserve(n);
    for (float v : qAsConst(values))
        result.y << double(v);
    *series = result;
    return true;
}

QStringList AnalysisData::transitionLabels(const TCMFile::Spectrum& spectrum) const
{
    // The key of a transition is its daughter mass x 100 plus the number of
    // earlier transitions with the same daughter: rebuild that map so that a
    // bar is named by its key, whatever points a scan leaves out.
    QHash<unsigned long, QString> names;
    QHash<unsigned long, int> seen;
    for (const auto& transition : m_file.transitions()) {
        const unsigned long base = static_cast<unsigned long>(std::lround(double(transition.second) * 100.0));
        const unsigned long key = base + static_cast<unsigned long>(seen[base]++);
        names.insert(key,
                     QStringLiteral("%1->%2")
                         .arg(double(transition.first), 0, 'g', -1)
                         .arg(double(transition.second), 0, 'g', -1));
    }
    QStringList labels;
    for (const auto& point : spectrum)
        labels << names.value(point.first, QString::number(point.first / 100.0, 'f', 1));
    return labels;
}

bool AnalysisData::spectrum(int first, int last, AnalysisSeries* series, QString* error)
{
    const int n = m_file.nbScans();
    if (first < 0 || last < first || last >= n) {
        *error = tr("scans %1 to %2 are not in analysis '%3' (scans 0 to %4)",
                    "les scans %1 à %2 ne sont pas dans l'analyse '%3' (scans 0 à %4)")
                     .arg(first)
                     .arg(last)
                     .arg(m_analysis)
                     .arg(n - 1);
        return false;
    }
    if (!m_file.loadContent(-1, -1, static_cast<unsigned long>(first), static_cast<unsigned long>(last))) {
        *error = damaged(m_analysis, m_file.errorString());
        return false;
    }
    TCMFile::Spectrum points;
    const unsigned long a = static_cast<unsigned long>(first);
    const unsigned long b = static_cast<unsigned long>(last);
    const int count = first == last ? m_file.allIonsAtScan(&points, a) : m_file.averageAtScanRange(&points, a, b);
    AnalysisSeries result;
    result.kind = AnalysisSeries::Spectrum;
    result.analysis = m_analysis;
    result.msms = m_file.acquisitionSystem() == TAcquisitionRun::SystemMSMS;
    const double* times = m_file.rtime();
    if (first == last)
        result.title = tr("scan %1 (%2 min)", "scan %1 (%2 min)").arg(first).arg(times[first], 0, 'f', 2);
    else
        result.title = tr("mean of scans %1 to %2 (%3 - %4 min)", "moyenne des scans %1 à %2 (%3 - %4 min)")
                           .arg(first)
                           .arg(last)
                           .arg(times[first], 0, 'f', 2)
                           .arg(times[last], 0, 'f', 2);
    m_file.deleteContent();
    if (count < 0) {
        *error = tr("the spectra of analysis '%1' are damaged", "les spectres de l'analyse '%1' sont endommagés")
                     .arg(m_analysis);
        return false;
    }
    for (const auto& point : points) {
        result.x << point.first / 100.0;
        result.y << double(point.second);
    }
    if (result.msms) {
        result.labels = transitionLabels(points);
    } else {
        for (double mz : qAsConst(result.x))
            result.labels << QString::number(mz, 'f', 1);
    }
    *series = result;
    return true;
}
