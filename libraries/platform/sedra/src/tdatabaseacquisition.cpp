// The acquisition operations of the storage database: the acquisition file of
// an analysis, new acquisition files and signals, and the TIC.
#include "tanalysisdata.h"
#include "tanalysismapper.h"
#include "tdatabase.h"
#include "tdatabaseobject.h"
#include "tpropertyobject.h"
#include "tsignalmapper.h"

#include <tacquisitionrun.h>
#include <tassert.h>
#include <tdetectorfile.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tdatacore.h>
#include <tdescriptionacquisition.h>
#include <vnmcdata.h>
#include <vnobject2analysis.h>
#include <vnobject2signal.h>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <cmath>
#include <map>
#include <memory>

namespace Sedra {

namespace {

const QString TicSignal = QStringLiteral("TIC");
const QString ModulationProperty = QStringLiteral("Modulation");

// A signal's measurements are those of its analysis.
const VNObject2Analysis* fileOwner(const VNObject2Analysis* analysis)
{
    if (analysis && analysis->type() == VNObjectTypeSignal)
        return static_cast<const VNObject2Signal*>(analysis)->analysis();
    return analysis;
}

// The analysis as its record holds it, so that what the file tells can be
// written into the object the storage owns.
VNObject2Analysis* ownedAnalysis(const VNObject2Analysis* analysis)
{
    TDatabase* db = analysis ? analysis->db() : nullptr;
    TDatabaseObject* found = db ? db->record(analysis) : nullptr;
    return found ? dynamic_cast<VNObject2Analysis*>(found->object()) : nullptr;
}

// The run made of data without spectra of their own: retention times, TIC,
// every channel as a channel, and the channels measured on an ion as the
// points of a selected-ion spectrum.
bool runFromChannels(const VNMCData& data, TAcquisitionRun* run)
{
    const int n = data.nbScans();
    std::unique_ptr<float[]> rets(data.getRets());
    std::unique_ptr<float[]> tic(data.toTic());
    if (n < 1 || !rets || !tic)
        return false;
    // One key per ion mass; channels of the same mass are added up.
    std::map<quint32, QList<int>> keys;
    for (int c = 0; c < data.canalCount(); ++c) {
        const VNIon ion = data.canalIon(c);
        const double mass = double(ion.mass());
        if (ion.isValid() && mass > 0.0 && mass * 100.0 < 4.0e9)
            keys[quint32(std::lround(mass * 100.0))].append(c);
    }
    run->acquisitionSystem = keys.empty() ? TAcquisitionRun::SystemChromatogram : TAcquisitionRun::SystemSIM;
    QVector<quint32> scanKeys;
    QVector<float> scanValues;
    for (const auto& entry : keys)
        scanKeys.append(entry.first);
    for (int i = 0; i < n; ++i) {
        scanValues.clear();
        for (const auto& entry : keys) {
            float sum = 0.0f;
            for (int c : entry.second)
                sum += data.getCanalAbund(c, i);
            scanValues.append(sum);
        }
        run->appendScan(double(rets[size_t(i)]), scanKeys.constData(), scanValues.constData(), scanKeys.size());
        run->tic[i] = double(tic[size_t(i)]);
    }
    for (int c = 0; c < data.canalCount(); ++c) {
        QVector<double> values(n);
        for (int i = 0; i < n; ++i)
            values[i] = double(data.getCanalAbund(c, i));
        QString name = data.canalName(c);
        if (name.isEmpty())
            name = QStringLiteral("Channel %1").arg(c + 1);
        run->channelNames.append(name);
        run->channels.append(values);
    }
    return true;
}

} // namespace

QString TDatabase::analysisTCMPath(const VNObject2Analysis* analysis)
{
    analysis = fileOwner(analysis);
    if (!analysis || !analysis->db())
        return QString();
    return TAbstractMapper::objectFilePath(analysis, analysis->db());
}

int TDatabase::analysisTCM(const VNObject2Analysis* analysis, TCMFile** tcm)
{
    if (tcm)
        *tcm = nullptr;
    const QString path = analysisTCMPath(analysis);
    analysis = fileOwner(analysis);
    if (!tcm || path.isEmpty())
        return -1;
    TCMFile* file = TCMFileRegistry::file(path);
    if (!file)
        return -1;
    if (VNObject2Analysis* owned = ownedAnalysis(analysis)) {
        owned->setAcquisitionSystem(file->acquisitionSystem());
        const QVector<QPair<float, float>> transitions = file->transitions();
        owned->setParentDaughter(QList<QPair<float, float>>(transitions.cbegin(), transitions.cend()));
        owned->setMulticanal(file->pointCount() > 0 || !file->channelNames().isEmpty());
    }
    *tcm = file;
    return file->nbScans();
}

bool TDatabase::analysisData(const VNObject2Analysis* analysis, TAnalysisData** data)
{
    if (!data)
        return false;
    *data = nullptr;
    analysis = fileOwner(analysis);
    if (!analysis || !analysis->db())
        return false;
    auto made = std::make_unique<TAnalysisData>();
    TCMFile* file = nullptr;
    made->scanCount = analysisTCM(analysis, &file);
    if (file)
        made->tcmPath = file->fileName();
    const QString folder = analysis->db()->objectFolderPath(analysis, false);
    if (!folder.isEmpty())
        made->descriptionPath = folder + QLatin1Char('/') + QLatin1String(TDescriptionAcquisition::fileName());
    if (QFileInfo::exists(made->descriptionPath) && made->description.load(made->descriptionPath))
        made->descriptionFromFile = true;
    else if (file)
        made->description = TDescriptionAcquisition::fromFile(*file);
    else
        return false;
    if (const auto* analyses = dynamic_cast<const TAnalysisMapper*>(analysis->db()->getMapper(VNObjectTypeAnalysis)))
        made->modulation = analyses->modulation(analysis);
    *data = made.release();
    return true;
}

bool TDatabase::saveTCM(const QString& fileName, const QString& signalName, const VNMCData* data,
                        const VNObject2Analysis* analysis)
{
    if (!data || fileName.isEmpty() || m_readOnly)
        return false;
    TAcquisitionRun run;
    const std::shared_ptr<const TAcquisitionRun>& source = data->sourceRun();
    if (source && source->scanCount() == data->nbScans() && data->nbScans() > 0)
        run = *source;
    else if (!runFromChannels(*data, &run))
        return false;
    run.signalName = signalName.isEmpty() ? TicSignal : signalName;
    if (analysis)
        run.name = fileOwner(analysis) ? fileOwner(analysis)->name() : analysis->name();
    else if (run.name.isEmpty())
        run.name = QFileInfo(fileName).completeBaseName();
    // Readers hold the old file through the registry: they must not keep its map.
    TCMFileRegistry::forget(fileName);
    if (!TCMFile::save(fileName, run))
        return false;
    // Detector channels and the files an import carries go beside the acquisition
    // file, once: a signal saved later from the same run finds them there.
    const QDir folder = QFileInfo(fileName).absoluteDir();
    const QString detectors = folder.filePath(QString::fromLatin1(TDetectorFile::fileName()));
    if (!run.detectors.isEmpty() && !QFileInfo::exists(detectors) && !TDetectorFile::save(detectors, run.detectors))
        return false;
    for (const auto& file : run.files) {
        if (file.first.contains(QLatin1Char('/')) || file.first.startsWith(QLatin1Char('.'))
            || QFileInfo::exists(folder.filePath(file.first)))
            continue;
        QSaveFile out(folder.filePath(file.first));
        if (!out.open(QIODevice::WriteOnly) || out.write(file.second) != file.second.size() || !out.commit())
            return false;
    }
    return true;
}

bool TDatabase::saveTCM(const QString& fileName, QList<double*> columns, int count, float* values, int valueCount,
                        VNHeader* header)
{
    Q_UNUSED(fileName)
    Q_UNUSED(columns)
    Q_UNUSED(count)
    Q_UNUSED(values)
    Q_UNUSED(valueCount)
    Q_UNUSED(header)
    return false;
}

bool TDatabase::signalCreate(const QString& analysisName, const QString& signalName)
{
    const auto* signalMapper = dynamic_cast<const TSignalMapper*>(getMapper(VNObjectTypeSignal));
    if (!signalMapper) {
        t_assert("mapper != 0", "tdatabase", __LINE__, true);
        return false;
    }
    const VNObject2Analysis* analysis = getAnalysis(analysisName);
    return analysis && signalMapper->createSignal(analysis, signalName) != nullptr;
}

QString TDatabase::signalCreateDestFileName(const VNObject2Analysis* analysis, QString& signalName)
{
    analysis = fileOwner(analysis);
    const QString folder = analysis ? objectFolderPath(analysis, false) : QString();
    if (folder.isEmpty())
        return QString();
    const auto* signalMapper = dynamic_cast<const TSignalMapper*>(getMapper(VNObjectTypeSignal));
    const QString own = QFileInfo(TAbstractMapper::objectFilePath(analysis, this)).fileName().toLower();
    const QString base = signalName.isEmpty() ? QStringLiteral("Signal") : signalName;
    QString candidate = base;
    auto fileOf = [&folder](const QString& name) {
        return folder + QLatin1Char('/') + safeFileName(name) + QStringLiteral(".tcm");
    };
    for (int n = 2;; ++n) {
        const QString file = fileOf(candidate);
        const bool taken = (signalMapper && signalMapper->signalExists(analysis->name(), candidate))
            || QFileInfo::exists(file) || QFileInfo(file).fileName().toLower() == own;
        if (!taken)
            break;
        candidate = QStringLiteral("%1 %2").arg(base).arg(n);
    }
    signalName = candidate;
    return fileOf(candidate);
}

const VNObject2Analysis* TDatabase::getAnalysis(const QString& name) const
{
    const auto* analyses = dynamic_cast<const TAnalysisMapper*>(getMapper(VNObjectTypeAnalysis));
    const VNObject2Analysis* analysis = analyses ? analyses->getAnalysis(name) : nullptr;
    TCMFile* file = nullptr;
    analysisTCM(analysis, &file);
    return analysis;
}

bool TDatabase::returnTIC(const VNObject2Analysis* analysis, TDataCore** tic)
{
    if (!tic)
        return false;
    *tic = nullptr;
    TCMFile* file = nullptr;
    const int count = analysisTCM(analysis, &file);
    if (!file || count < 1)
        return false;
    const bool wasLoaded = file->isLoaded();
    if (!wasLoaded && !file->loadContent(-1.0f, -1.0f, 0, static_cast<unsigned long>(count - 1)))
        return false;
    const double* rtime = file->rtime();
    const double* values = file->tic();
    if (rtime && values) {
        QVector<float> x(count);
        QVector<float> y(count);
        for (int i = 0; i < count; ++i) {
            x[i] = float(rtime[i]);
            y[i] = float(values[i]);
        }
        *tic = new TDataCore(count, x.constData(), y.constData());
    }
    if (!wasLoaded)
        file->deleteContent();
    return *tic != nullptr;
}

bool TDatabase::signalTICCreate(TDatabase* db, const VNObject2Analysis* analysis)
{
    analysis = fileOwner(analysis);
    if (!db || !analysis || db->isReadOnly() || !db->record(analysis))
        return false;
    const auto* signalMapper = dynamic_cast<const TSignalMapper*>(db->getMapper(VNObjectTypeSignal));
    if (!signalMapper) {
        t_assert("mapper != 0", "tdatabase", __LINE__, true);
        return false;
    }
    const VNObject2Signal* tic = signalMapper->getSignal(analysis->name(), TicSignal);
    if (!tic) {
        TDatabaseObject* made = signalMapper->createSignal(analysis, TicSignal);
        tic = made ? static_cast<const VNObject2Signal*>(made->object()) : nullptr;
    }
    if (!tic)
        return false;
    const auto* analyses = dynamic_cast<const TAnalysisMapper*>(db->getMapper(VNObjectTypeAnalysis));
    const double modulation = analyses ? analyses->modulation(analysis) : -9999.0;
    if (modulation == -9999.0)
        return true;
    return db->setObjectProperty(tic, ModulationProperty, QString::number(modulation, 'g', 17), true);
}

} // namespace Sedra
