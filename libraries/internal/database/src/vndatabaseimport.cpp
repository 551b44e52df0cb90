#include "vndatabaseimport.h"

#include "vndatabaselogging.h"

#include <projectmgrinterface.h>
#include <tacquisitionrun.h>
#include <tanalysisfolder.h>
#include <tanalysismapper.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tdatabase.h>
#include <vnheader.h>
#include <vnmcdata.h>
#include <vnobject2analysis.h>

#include <QRegularExpression>

#include <cmath>
#include <map>
#include <memory>

VNDatabaseImport::VNDatabaseImport(Sedra::TDatabase* database)
    : m_db(database)
{ }

VNDatabaseImport VNDatabaseImport::current()
{
    ProjectMgrInterface* manager = ProjectMgrInterface::returnMe();
    return VNDatabaseImport(manager ? manager->getCurrentDatabase() : nullptr);
}

bool VNDatabaseImport::analysisObjectSave(const QString& name)
{
    const auto* analyses
        = m_db ? dynamic_cast<const Sedra::TAnalysisMapper*>(m_db->getMapper(VNObjectTypeAnalysis)) : nullptr;
    if (!analyses || name.isEmpty())
        return false;
    if (analyses->getAnalysis(name))
        return true;
    const QString folder = VNObject2Analysis::folderName() + QLatin1Char('/') + Sedra::TDatabase::safeFileName(name);
    return analyses->createAnalysisInFolder(name, folder, true) != nullptr;
}

bool VNDatabaseImport::objectPush(Sedra::TDatabase* target, const VNObject2* object)
{
    if (!target || !object)
        return false;
    if (target->record(object))
        return true;
    bool first = false;
    bool second = false;
    int count = 0;
    return target->objectCopy(object, first, second, count) != nullptr;
}

bool VNDatabaseImport::CSV2TCM(const QString& fileName, QList<double*> columns, int count, float* values,
                               int valueCount, VNHeader* header)
{
    if (fileName.isEmpty() || count < 1 || columns.isEmpty() || valueCount < 0 || (valueCount > 0 && !values))
        return false;
    for (const double* column : columns) {
        if (!column)
            return false;
        for (int i = 0; i < count; ++i) {
            if (!std::isfinite(column[i]))
                return false;
        }
    }
    const double timeScale = header && header->timeInSeconds ? 1.0 / 60.0 : 1.0;
    const double* times = columns.first();
    // Mass columns by key (columns of one mass add up); the others are detectors.
    std::map<quint32, QList<int>> keys;
    QList<int> detectors;
    for (int c = 1; c < columns.size(); ++c) {
        const float mass = c - 1 < valueCount ? values[c - 1] : 0.0f;
        if (std::isfinite(mass) && mass > 0.0f && double(mass) * 100.0 < 4.0e9)
            keys[quint32(std::lround(double(mass) * 100.0))].append(c);
        else if (std::isfinite(mass) && mass == 0.0f)
            detectors.append(c);
        else
            return false;
    }

    TAcquisitionRun run;
    if (header) {
        run.name = header->name;
        run.date = header->date;
    }
    run.acquisitionSystem = header && header->acquisitionSystem ? header->acquisitionSystem
        : keys.empty()                                          ? quint32(TAcquisitionRun::SystemChromatogram)
                                                                : quint32(TAcquisitionRun::SystemSIM);
    QVector<quint32> scanKeys;
    for (const auto& entry : keys)
        scanKeys.append(entry.first);
    QVector<float> scanValues(scanKeys.size());
    for (int i = 0; i < count; ++i) {
        int k = 0;
        for (const auto& entry : keys) {
            double sum = 0.0;
            for (int c : entry.second)
                sum += columns[c][i];
            scanValues[k++] = float(sum);
        }
        run.appendScan(times[i] * timeScale, scanKeys.constData(), scanValues.constData(), scanKeys.size());
        if (keys.empty())
            run.tic[i] = detectors.isEmpty() ? 0.0 : columns[detectors.first()][i];
    }
    const QStringList names = header ? header->columnNames : QStringList();
    for (int c : detectors) {
        QString name = names.value(c - 1);
        if (name.isEmpty())
            name = QStringLiteral("Channel %1").arg(c);
        run.channelNames.append(name);
        run.channels.append(QVector<double>(columns[c], columns[c] + count));
    }
    if (!run.isConsistent())
        return false;
    TCMFileRegistry::forget(fileName);
    return TCMFile::save(fileName, run);
}

VNMCData* VNDatabaseImport::readFile(const QString& path)
{
    TAcquisitionRun run;
    if (!TAnalysisFolder::readImport(path, &run)) {
        qCInfo(vnDatabase, "%s: no run read for a new analysis", qUtf8Printable(path));
        return nullptr;
    }
    return fromRun(run);
}

VNMCData* VNDatabaseImport::fromRun(const TAcquisitionRun& run)
{
    const int n = run.scanCount();
    QVector<float> values(n);
    for (int i = 0; i < n; ++i)
        values[i] = float(run.rtimes[i]);
    auto* data = new VNMCData(n, values.constData());
    for (int i = 0; i < n; ++i)
        values[i] = float(run.tic.value(i));
    data->setTic(values.constData());
    static const QRegularExpression ionName(QStringLiteral("^m/z\\s*([0-9]+(?:\\.[0-9]+)?)$"));
    for (int c = 0; c < run.channels.size() && c < run.channelNames.size(); ++c) {
        const QVector<double>& channel = run.channels[c];
        if (channel.size() != n)
            continue;
        for (int i = 0; i < n; ++i)
            values[i] = float(channel[i]);
        const QRegularExpressionMatch match = ionName.match(run.channelNames[c]);
        const VNIon ion = match.hasMatch() ? VNIon::around(match.captured(1).toFloat()) : VNIon();
        data->addCanal(values.constData(), ion, run.channelNames[c]);
    }
    data->setSourceRun(std::make_shared<const TAcquisitionRun>(run));
    return data;
}
