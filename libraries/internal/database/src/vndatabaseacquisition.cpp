// The project database's operations on measured data: acquisition files,
// multichannel data, new analyses and signals, noise and spectra.
#include "vndatabase.h"
#include "vndatabaseimport.h"
#include "vndatabaselogging.h"
#include "vnmcdatadynamic.h"

#include <messageloggerinterface.h>
#include <projectmgrinterface.h>
#include <tanalysisdata.h>
#include <tanalysisfolder.h>
#include <tanalysismapper.h>
#include <tassert.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tcolor.h>
#include <tdata.h>
#include <tdatacore.h>
#include <tdescriptionacquisition.h>
#include <tfile.h>
#include <trunreader.h>
#include <tsignalmapper.h>
#include <vnmodelise.h>
#include <vnobject2analysis.h>
#include <vnobject2signal.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QVector>

#include <memory>

namespace {

// The folder of a new analysis is removed again when the analysis could not
// be made whole, so that a refusal leaves the project as it was.
class NewFolderGuard
{
public:
    NewFolderGuard(const QString& folder, const QString& file)
        : m_folder(folder)
        , m_file(file)
    { }
    ~NewFolderGuard()
    {
        if (m_keep)
            return;
        TCMFileRegistry::forget(m_file);
        QDir(m_folder).removeRecursively();
    }
    void keep() { m_keep = true; }

private:
    QString m_folder;
    QString m_file;
    bool m_keep = false;
};

void refresh(ProjectMgrInterface* manager)
{
    if (manager)
        manager->refreshProject();
}

} // namespace

int VNDatabase::analysisTCM(const VNObject2Analysis* analysis, TCMFile** tcm)
{
    return Sedra::TDatabase::analysisTCM(analysis, tcm);
}

bool VNDatabase::analysisData(const VNObject2Analysis* analysis, Sedra::TAnalysisData** data)
{
    return Sedra::TDatabase::analysisData(analysis, data);
}

VNMCData* VNDatabase::getMCData(const VNObject2* object)
{
    const auto* analysis = dynamic_cast<const VNObject2Analysis*>(object);
    if (!analysis)
        return nullptr;
    TCMFile* tcm = nullptr;
    analysisTCM(analysis, &tcm);
    if (!tcm || tcm->nbScans() < 1)
        return nullptr;
    // Content held by other readers is already whole: it is not reloaded
    // under them.
    const bool held = TCMFileRegistry::holders(analysisTCMPath(analysis)) > 0 && tcm->isLoaded();
    if (!held && !tcm->loadContent(-1.0f, -1.0f, 0, static_cast<unsigned long>(tcm->nbScans() - 1)))
        return nullptr;
    return new VNMCDataDynamic(analysis);
}

void VNDatabase::releaseMCData(VNMCData* data)
{
    auto* dynamic = dynamic_cast<VNMCDataDynamic*>(data);
    if (!dynamic || !dynamic->object() || !dynamic->dropHold())
        return;
    TCMFileRegistry::release(analysisTCMPath(dynamic->object()));
}

bool VNDatabase::saveNewMCData(VNMCData* data, QString& name)
{
    if (isReadOnly() || name.isEmpty())
        return false;
    ProjectMgrInterface* manager = ProjectMgrInterface::returnMe();
    Sedra::TDatabase* current = manager && manager->getCurrentDatabase() ? manager->getCurrentDatabase() : this;
    VNDatabaseImport import(current);
    const QString stem = safeFileName(name);
    const QString folder = current->getCurrentWorkingPath() + QDir::separator() + VNObject2Analysis::folderName()
        + QDir::separator() + stem + QDir::separator();
    const QString file = folder + stem + QStringLiteral(".tcm");
    // An existing analysis keeps its files: nothing is overwritten.
    if (!data || current->getCurrentWorkingPath().isEmpty() || current->getAnalysis(name)
        || QFileInfo::exists(folder)) {
        refresh(manager);
        return false;
    }
    if (!TFile::mkdirs(folder, false)) {
        refresh(manager);
        return false;
    }
    NewFolderGuard guard(folder, file);
    if (!saveTCM(file, QStringLiteral("TIC"), data, nullptr)) {
        refresh(manager);
        return false;
    }
    import.analysisObjectSave(name);
    const VNObject2Analysis* analysis = current->getAnalysis(name);
    if (!analysis) {
        refresh(manager);
        return false;
    }
    guard.keep();
    TDescriptionAcquisition().save(current->objectFolderPath(analysis, false) + QDir::separator()
                                   + QLatin1String(TDescriptionAcquisition::fileName()));
    const bool pushed = import.objectPush(this, analysis);
    refresh(manager);
    return pushed;
}

bool VNDatabase::analysisImport(const QString& fileName, QString& name)
{
    if (isReadOnly() || name.isEmpty())
        return false;
    QVector<TImportedRun> runs;
    if (!TAnalysisFolder::readImportsReported(fileName, &runs)) {
        qCInfo(vnDatabase, "%s: no run read for a new analysis", qUtf8Printable(fileName));
        return false;
    }
    // A file giving several runs (a ChemStation folder's "NAME" and "NAME-SIM")
    // becomes that many analyses, all or none: taken names refuse it before
    // anything is written, and a later failure takes the earlier ones away again.
    for (const TImportedRun& one : runs) {
        if (getAnalysis(name + one.suffix)) {
            MessageLoggerInterface::Error(
                QCoreApplication::translate("SedraTr",
                                            "<b>%1</b> cannot be imported: an analysis named <b>%2</b> exists",
                                            "<b>%1</b> ne peut pas être importé : une analyse nommée <b>%2</b> "
                                            "existe déjà")
                    .arg(fileName, name + one.suffix),
                nullptr);
            return false;
        }
    }
    QStringList made;
    for (const TImportedRun& one : runs) {
        QString runName = name + one.suffix;
        std::unique_ptr<VNMCData> data(VNDatabaseImport::fromRun(one.run));
        if (!saveNewMCData(data.get(), runName)) {
            for (const QString& done : made)
                forgetNewAnalysis(done);
            refresh(ProjectMgrInterface::returnMe());
            return false;
        }
        made.append(runName);
    }
    return true;
}

void VNDatabase::forgetNewAnalysis(const QString& name)
{
    ProjectMgrInterface* manager = ProjectMgrInterface::returnMe();
    Sedra::TDatabase* current = manager && manager->getCurrentDatabase() ? manager->getCurrentDatabase() : this;
    if (current != this) {
        // The analysis was made there and pushed here: its record there goes too.
        if (const VNObject2Analysis* there = current->getAnalysis(name)) {
            const QString folder = current->objectFolderPath(there, false);
            TCMFileRegistry::forget(analysisTCMPath(there));
            current->removeObject(there, true);
            if (!folder.isEmpty())
                QDir(folder).removeRecursively();
        }
    }
    if (const VNObject2Analysis* here = getAnalysis(name)) {
        TCMFileRegistry::forget(analysisTCMPath(here));
        objectDeleteStd(here, true);
    }
}

bool VNDatabase::signalCreateTCM(const VNMCData* data, const VNObject2Analysis* analysis, QString& signalName)
{
    if (analysis && analysis->isReadOnly()) {
        MessageLoggerInterface::Error(
            QCoreApplication::translate("SedraTr", "Impossible to save a signal in <b>read only</b> project",
                                        "Impossible de sauvegarder un signal dans un projet en <b>lecture seule</b>"),
            nullptr);
        return false;
    }
    if (analysis && analysis->type() == VNObjectTypeSignal)
        analysis = static_cast<const VNObject2Signal*>(analysis)->analysis();
    const QString destination = signalCreateDestFileName(analysis, signalName);
    if (!saveTCM(destination, signalName, data, analysis)) {
        MessageLoggerInterface::Error(QCoreApplication::translate("SedraTr",
                                                                  "Impossible to create the destination file",
                                                                  "Impossible de créer le fichier de sortie"),
                                      nullptr);
        return false;
    }
    return signalCreate(analysis ? analysis->name() : QString(), signalName);
}

bool VNDatabase::saveTCM(const QString& fileName, QList<double*> columns, int count, float* values, int valueCount,
                         VNHeader* header)
{
    return VNDatabaseImport::CSV2TCM(fileName, columns, count, values, valueCount, header);
}

bool VNDatabase::modulationChanged(const VNObject2Analysis* analysis, float modulation)
{
    const auto* analyses = dynamic_cast<const Sedra::TAnalysisMapper*>(mapper(VNObjectTypeAnalysis));
    if (!analyses || !analyses->setModulation(analysis, double(modulation)))
        return false;
    signalTICCreate(this, analysis);
    return true;
}

const TAnalysisNoise* VNDatabase::analysisNoise(const VNObject2Analysis* analysis)
{
    if (!analysis)
        return nullptr;
    const TAnalysisNoise& noise = analysis->noise();
    if (noise.valid && noise.kind == TAnalysisNoise::KindTicModel)
        return &noise;
    TDataCore* tic = nullptr;
    if (returnTIC(analysis, &tic) && tic) {
        VNModelise model(tic, analysis);
        delete tic;
    }
    return &analysis->noise();
}

bool VNDatabase::signalExists(const QString& analysisName, const QString& signalName) const
{
    const auto* signalMapper = dynamic_cast<const Sedra::TSignalMapper*>(getMapper(VNObjectTypeSignal));
    if (!signalMapper) {
        t_assert("mapper != 0", "vndatabase", __LINE__, true);
        return false;
    }
    return signalMapper->signalExists(analysisName, signalName);
}

bool VNDatabase::signalExists(const VNObject2Signal* signal) const
{
    if (!signal || !signal->analysis())
        return false;
    return signalExists(signal->analysis()->name(), signal->name());
}

QList<float> VNDatabase::signalIonList(const VNObject2Signal* signal)
{
    const auto* signalMapper = dynamic_cast<const Sedra::TSignalMapper*>(getMapper(VNObjectTypeSignal));
    if (!signalMapper) {
        t_assert("mapper != 0", "vndatabase", __LINE__, true);
        return QList<float>();
    }
    return signalMapper->signalIonList(signal);
}

const VNObject2Signal* VNDatabase::getSignalByHash(const QString& name, unsigned int hash) const
{
    const auto* signalMapper = dynamic_cast<const Sedra::TSignalMapper*>(getMapper(VNObjectTypeSignal));
    if (!signalMapper) {
        t_assert("mapper != 0", "vndatabase", __LINE__, true);
        return nullptr;
    }
    return signalMapper->getSignalByHash(name, hash);
}

bool VNDatabase::isMulticanal(const VNObject2* object)
{
    if (!object || object->type() != VNObjectTypeAnalysis)
        return false;
    const auto* analysis = static_cast<const VNObject2Analysis*>(object);
    // Opening the file (shared, header only) keeps what the analysis knows of its run current.
    TCMFile* tcm = nullptr;
    analysisTCM(analysis, &tcm);
    return analysis->isMulticanal();
}

int VNDatabase::returnSpectrumExtraction(const VNObject2* object, int firstScan, int lastScan, QString& label,
                                         std::map<unsigned long, unsigned long>*& spectrum)
{
    const auto* analysis = dynamic_cast<const VNObject2Analysis*>(object);
    if (!analysis)
        return -1;
    label = QString();
    spectrum = nullptr;
    TCMFile* tcm = nullptr;
    analysisTCM(analysis, &tcm);
    if (!tcm)
        return -1;
    if (!(tcm->nbScans() > lastScan - firstScan))
        return -1;
    if (firstScan < 0 || lastScan < 0 || lastScan >= tcm->nbScans())
        return -1;
    // While multichannel data hold the whole content, it is read as it is and
    // left loaded; otherwise only the scans asked for are loaded, and unloaded after.
    const bool held = TCMFileRegistry::holders(analysisTCMPath(analysis)) > 0 && tcm->isLoaded();
    if (!held
        && !tcm->loadContent(-1.0f, -1.0f, static_cast<unsigned long>(firstScan), static_cast<unsigned long>(lastScan)))
        return -1;
    spectrum = new std::map<unsigned long, unsigned long>;
    if (firstScan == lastScan) {
        tcm->allIonsAtScan(spectrum, static_cast<unsigned long>(firstScan));
        label = QString::number(firstScan);
    } else {
        tcm->averageAtScanRange(spectrum, static_cast<unsigned long>(firstScan), static_cast<unsigned long>(lastScan));
        const double* rtime = tcm->rtime();
        label = QStringLiteral("%1 - %2")
                    .arg(rtime[firstScan], 0, 'g', -1, QLatin1Char(' '))
                    .arg(rtime[lastScan], 0, 'g', -1, QLatin1Char(' '));
    }
    if (!held)
        tcm->deleteContent();
    return int(spectrum->size());
}

int VNDatabase::returnSpectrumExtraction(const VNObject2* object, Plavo::TData** data, bool withLabels, int firstScan,
                                         int lastScan)
{
    if (!data)
        return -1;
    *data = nullptr;
    QString label;
    std::map<unsigned long, unsigned long>* spectrum = nullptr;
    const int count = returnSpectrumExtraction(object, firstScan, lastScan, label, spectrum);
    std::unique_ptr<std::map<unsigned long, unsigned long>> owned(spectrum);
    if (count < 0)
        return -1;
    if (count == 0)
        return 0;
    const auto* analysis = dynamic_cast<const VNObject2Analysis*>(object);
    const bool msms = analysis && analysis->acquisitionSystem() == 768;
    const QList<QPair<float, float>> transitions = msms ? analysis->parentDaughter() : QList<QPair<float, float>>();
    QVector<float> x(count);
    QVector<float> y(count);
    QVector<float> colors;
    QVector<QString> labels;
    if (withLabels) {
        colors.resize(count);
        labels.resize(count);
    }
    int i = 0;
    for (const auto& entry : *owned) {
        x[i] = float(double(entry.first) / 100.0);
        y[i] = float(entry.second);
        if (withLabels) {
            labels[i] = msms && i < transitions.size() ? QStringLiteral("%1->%2")
                                                             .arg(double(transitions[i].first), 0, 'g', -1)
                                                             .arg(double(transitions[i].second), 0, 'g', -1)
                                                       : QString::number(double(x[i]), 'f', 1);
            colors[i] = float(Plavo::TColor::colorGet(int(x[i]), count).rgb());
        }
        ++i;
    }
    *data = new Plavo::TData(count, x.constData(), y.constData());
    if (withLabels) {
        (*data)->setColor(colors.constData());
        (*data)->setLabels(labels.constData());
    }
    return count;
}
