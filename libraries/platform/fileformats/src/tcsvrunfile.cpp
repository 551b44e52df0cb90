#include "tcsvrunfile.h"

#include "tacquisitionrun.h"

#include <messageloggerinterface.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

const char* const Context = "TCSVRunFile";

void refuse(const QString& source, int line, const QString& why)
{
    if (line > 0) {
        MessageLoggerInterface::Error(QCoreApplication::translate(Context, "The file <b>%1</b> is refused, line %2: %3",
                                                                  "Le fichier <b>%1</b> est refusé, ligne %2 : %3")
                                          .arg(source)
                                          .arg(line)
                                          .arg(why));
    } else {
        MessageLoggerInterface::Error(QCoreApplication::translate(Context, "The file <b>%1</b> is refused: %2",
                                                                  "Le fichier <b>%1</b> est refusé : %2")
                                          .arg(source, why));
    }
}

QString notNumber(const QByteArray& field)
{
    return QCoreApplication::translate(Context, "<b>%1</b> is not a number", "<b>%1</b> n'est pas un nombre")
        .arg(QString::fromUtf8(field.left(40)));
}

// Parses a whole field as a finite number; a decimal comma is allowed when
// the comma is not the separator.
bool number(QByteArray field, bool decimalComma, double* value)
{
    field = field.trimmed();
    if (field.size() >= 2 && field.startsWith('"') && field.endsWith('"'))
        field = field.mid(1, field.size() - 2).trimmed();
    if (decimalComma)
        field.replace(',', '.');
    if (field.isEmpty())
        return false;
    bool ok = false;
    *value = field.toDouble(&ok);
    return ok && std::isfinite(*value);
}

bool validMass(double mass)
{
    return mass >= 0 && mass < 4.0e7;
}

} // namespace

bool TCSVRunFile::read(const QString& path, TAcquisitionRun* run)
{
    if (!run)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        refuse(path, 0, QCoreApplication::translate(Context, "it cannot be opened", "il ne peut pas être ouvert"));
        return false;
    }
    const QByteArray text = file.readAll();
    if (!readText(text, run, path))
        return false;
    if (run->name.isEmpty())
        run->name = QFileInfo(path).completeBaseName();
    return true;
}

bool TCSVRunFile::readText(const QByteArray& text, TAcquisitionRun* run, const QString& source)
{
    if (!run)
        return false;
    TAcquisitionRun result;
    result.acquisitionSystem = TAcquisitionRun::SystemFullScan;
    char separator = 0;
    bool decimalComma = false;
    bool headerSeen = false;
    bool dataSeen = false;
    int layout = 0; // 1 one row per scan, 2 one row per point
    double timeScale = 1.0;
    std::vector<std::pair<quint32, float>> points;
    std::vector<quint32> keys;
    std::vector<float> values;
    double scanTime = 0.0;
    bool scanOpen = false;

    auto flush = [&]() {
        if (!scanOpen)
            return;
        std::stable_sort(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        keys.clear();
        values.clear();
        for (const auto& p : points) {
            if (!keys.empty() && keys.back() == p.first) {
                values.back() += p.second;
            } else {
                keys.push_back(p.first);
                values.push_back(p.second);
            }
        }
        result.appendScan(scanTime, keys.data(), values.data(), int(keys.size()));
        points.clear();
        scanOpen = false;
    };

    int lineNumber = 0;
    int position = 0;
    while (position < text.size()) {
        int end = text.indexOf('\n', position);
        if (end < 0)
            end = text.size();
        QByteArray line = text.mid(position, end - position);
        position = end + 1;
        ++lineNumber;
        if (lineNumber == 1 && line.startsWith("\xEF\xBB\xBF"))
            line.remove(0, 3);
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.contains('\0')) {
            refuse(source, lineNumber,
                   QCoreApplication::translate(Context, "this is not text", "ce n'est pas du texte"));
            return false;
        }
        if (!separator) {
            separator = line.contains('\t') ? '\t' : line.contains(';') ? ';' : ',';
            decimalComma = separator != ',';
        }
        QList<QByteArray> fields = line.split(separator);
        double time = 0.0;
        if (!number(fields.first(), decimalComma, &time)) {
            if (!headerSeen && !dataSeen) {
                headerSeen = true;
                const QByteArray head = fields.first().toLower();
                if (head.contains("(s)") || head.contains("sec") || head.contains("[s]"))
                    timeScale = 1.0 / 60.0;
                continue;
            }
            refuse(source, lineNumber, notNumber(fields.first()));
            return false;
        }
        time *= timeScale;
        dataSeen = true;
        const int kind = (fields.size() == 3 && !line.contains(':')) ? 2 : 1;
        if (layout == 0)
            layout = kind;
        if (kind != layout) {
            refuse(source, lineNumber,
                   QCoreApplication::translate(Context, "the layout of the rows changes here",
                                               "la disposition des lignes change ici"));
            return false;
        }
        const double previous = result.rtimes.isEmpty() ? -INFINITY : result.rtimes.last();
        if (layout == 2) {
            double mass = 0.0, abundance = 0.0;
            if (!number(fields.at(1), decimalComma, &mass) || !validMass(mass)) {
                refuse(source, lineNumber, notNumber(fields.at(1)));
                return false;
            }
            if (!number(fields.at(2), decimalComma, &abundance) || std::fabs(abundance) > 3.0e38) {
                refuse(source, lineNumber, notNumber(fields.at(2)));
                return false;
            }
            if (!scanOpen || time != scanTime) {
                flush();
                if (time < (result.rtimes.isEmpty() ? -INFINITY : result.rtimes.last())) {
                    refuse(source, lineNumber,
                           QCoreApplication::translate(Context, "the time goes backwards", "le temps recule"));
                    return false;
                }
                scanTime = time;
                scanOpen = true;
            }
            points.emplace_back(quint32(std::lround(mass * 100.0)), float(abundance));
            continue;
        }
        if (time < previous) {
            refuse(source, lineNumber,
                   QCoreApplication::translate(Context, "the time goes backwards", "le temps recule"));
            return false;
        }
        scanTime = time;
        scanOpen = true;
        for (int f = 1; f < fields.size(); ++f) {
            const QList<QByteArray> pairs = fields.at(f).simplified().split(' ');
            for (const QByteArray& pair : pairs) {
                if (pair.isEmpty())
                    continue;
                const int colon = pair.indexOf(':');
                double mass = 0.0, abundance = 0.0;
                if (colon < 0 || !number(pair.left(colon), decimalComma, &mass) || !validMass(mass)
                    || !number(pair.mid(colon + 1), decimalComma, &abundance) || std::fabs(abundance) > 3.0e38) {
                    refuse(source, lineNumber,
                           QCoreApplication::translate(Context, "<b>%1</b> is not a mass:abundance pair",
                                                       "<b>%1</b> n'est pas une paire masse:abondance")
                               .arg(QString::fromUtf8(pair.left(40))));
                    return false;
                }
                points.emplace_back(quint32(std::lround(mass * 100.0)), float(abundance));
            }
        }
        flush();
    }
    flush();
    if (result.scanCount() == 0) {
        refuse(source, 0, QCoreApplication::translate(Context, "it holds no scan", "il ne contient aucun scan"));
        return false;
    }
    *run = result;
    return true;
}

bool TCSVRunFile::write(const QString& path, const TAcquisitionRun& run)
{
    QString why;
    QSaveFile file(path);
    bool ok = run.isConsistent(&why) && file.open(QIODevice::WriteOnly);
    if (ok) {
        QByteArray out;
        out.reserve(1 << 20);
        out += "time (min),spectrum\n";
        for (int scan = 0; ok && scan < run.scanCount(); ++scan) {
            out += QByteArray::number(run.rtimes.at(scan), 'g', 17);
            out += ',';
            const quint32* keys = run.massesAtScan(scan);
            const float* values = run.abundancesAtScan(scan);
            for (int i = 0; i < run.pointsAtScan(scan); ++i) {
                if (i)
                    out += ' ';
                out += QByteArray::number(keys[i] / 100.0, 'f', 2);
                out += ':';
                out += QByteArray::number(double(values[i]), 'g', 9);
            }
            out += '\n';
            if (out.size() > (1 << 20)) {
                ok = file.write(out) == out.size();
                out.clear();
            }
        }
        ok = ok && file.write(out) == out.size() && file.commit();
        if (!ok)
            why = file.errorString();
    }
    if (!ok) {
        MessageLoggerInterface::Error(QCoreApplication::translate(Context, "Unable to write the file <b>%1</b>: %2",
                                                                  "Impossible d'écrire le fichier <b>%1</b> : %2")
                                          .arg(path, why));
    }
    return ok;
}
