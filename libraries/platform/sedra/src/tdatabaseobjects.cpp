// The storage base's operations on a project's own objects: wells, datasets,
// variables, compounds and slices, their removal and renaming together with
// their folders, and signals extracted from an analysis' acquisition file.
#include "tdatabase.h"
#include "tdatabase_p.h"

#include "tabstractmapper.h"
#include "tcompound.h"
#include "tcompoundmapper.h"
#include "tdatabaseobject.h"
#include "tfileobject.h"
#include "theaderdatabase.h"
#include "tvariablemapper.h"

#include <messageloggerinterface.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <vnion.h>
#include <vnmcdata.h>
#include <vnobject2.h>
#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2project.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

#include <memory>
#include <vector>

namespace Sedra {

namespace {

void sayNameTaken(const QString& name)
{
    MessageLoggerInterface::Warning(QCoreApplication::translate("SedraTr", "The name <b>%1</b> is already used",
                                                                "Le nom <b>%1</b> est déjà utilisé")
                                        .arg(name),
                                    nullptr);
}

// A folder put aside while the records it belongs to are removed: renamed
// back when the removal fails, deleted when it succeeds.
class ParkedFolder
{
public:
    explicit ParkedFolder(const QString& folder)
        : m_folder(folder)
    { }
    ~ParkedFolder() { restore(); }

    bool park()
    {
        if (m_folder.isEmpty() || !QFileInfo(m_folder).isDir())
            return true;
        const QFileInfo info(m_folder);
        m_parked = info.absolutePath() + QStringLiteral("/.deleting-")
            + QUuid::createUuid().toString(QUuid::WithoutBraces) + QLatin1Char('-') + info.fileName();
        if (QDir().rename(m_folder, m_parked))
            return true;
        m_parked.clear();
        return false;
    }
    void discard()
    {
        if (!m_parked.isEmpty())
            QDir(m_parked).removeRecursively();
        m_parked.clear();
    }
    void restore()
    {
        if (!m_parked.isEmpty())
            QDir().rename(m_parked, m_folder);
        m_parked.clear();
    }

private:
    QString m_folder;
    QString m_parked;
};

} // namespace

QString TDatabase::objectOwnFolder(const VNObject2* object) const
{
    if (!object || m_workingPath.isEmpty())
        return QString();
    if (object == m_project)
        return m_workingPath;
    const TDatabaseObject* found = record(object);
    if (!found)
        return QString();
    const QString folder = objectFolderPath(object, false);
    if (folder.isEmpty())
        return QString();
    const auto* file = dynamic_cast<const TFileObject*>(found);
    if (file && !file->relativePath().isEmpty())
        return folder;
    const QString own = safeFileName(object->name());
    return own.isEmpty() ? QString() : QDir(folder).filePath(own);
}

QString TDatabase::getVariousDir() const
{
    return m_workingPath.isEmpty() ? QString() : QDir(m_workingPath).filePath(QStringLiteral("Various"));
}

bool TDatabase::objectDeleteStd(const VNObject2* object, bool flush)
{
    if (!record(object))
        return false;
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    // A file record's folder (an analysis) holds its files; a kind that shares
    // its kind's folder owns only the sub-folder named after it.
    ParkedFolder folder(object == m_project ? QString() : objectOwnFolder(object));
    if (!folder.park()) {
        MessageLoggerInterface::Warning(QCoreApplication::translate("SedraTr",
                                                                    "Impossible to remove the folder of <b>%1</b>",
                                                                    "Impossible de supprimer le dossier de <b>%1</b>")
                                            .arg(object->name()),
                                        nullptr);
        return false;
    }
    if (!removeObject(object, flush))
        return false; // the folder goes back into place
    folder.discard();
    return true;
}

bool TDatabase::wellDelete(const VNObject2Well* well, bool flush)
{
    return well && well->type() == VNObjectTypeWell && objectDeleteStd(well, flush);
}

bool TDatabase::datasetDelete(const VNObject2Dataset* dataset)
{
    return dataset && dataset->type() == VNObjectTypeDataset && objectDeleteStd(dataset, true);
}

bool TDatabase::variableDelete(const VNObject2Variable* variable, bool flush)
{
    return variable && variable->type() == VNObjectTypeVariable && objectDeleteStd(variable, flush);
}

bool TDatabase::variableDelete(const QString& dataset, const QString& reference1, const QString& reference2)
{
    const auto* variables = dynamic_cast<const TVariableMapper*>(getMapper(VNObjectTypeVariable));
    const TAbstractMapper* datasets = getMapper(VNObjectTypeDataset);
    if (!variables || !datasets)
        return false;
    const auto* owner = dynamic_cast<const VNObject2Dataset*>(datasets->get(dataset));
    if (!owner)
        return false;
    for (const VNObject2Variable* variable : variables->variables(owner)) {
        if (variable->reference1() == reference1 && variable->reference2() == reference2)
            return variableDelete(variable, true);
    }
    return false;
}

bool TDatabase::wellRename(const VNObject2Well* well, const QString& name)
{
    const TAbstractMapper* wells = getMapper(VNObjectTypeWell);
    if (!wells || !well || !wells->record(well) || name.isEmpty())
        return false;
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    if (name == well->name())
        return true;
    const QString oldFolder = objectOwnFolder(well);
    const QString newFolder = QFileInfo(oldFolder).absolutePath() + QLatin1Char('/') + safeFileName(name);
    if (wells->exists(name) || (QFileInfo(oldFolder).isDir() && QFileInfo::exists(newFolder))) {
        sayNameTaken(name);
        return false;
    }
    const bool moveFolder = QFileInfo(oldFolder).isDir() && oldFolder != newFolder;
    if (moveFolder && !QDir().rename(oldFolder, newFolder))
        return false;
    if (wells->rename(well, name, true))
        return true;
    if (moveFolder)
        QDir().rename(newFolder, oldFolder);
    return false;
}

bool TDatabase::wellRename(const QString& oldName, const QString& newName)
{
    const TAbstractMapper* wells = getMapper(VNObjectTypeWell);
    const auto* well = wells ? dynamic_cast<const VNObject2Well*>(wells->get(oldName)) : nullptr;
    return well && wellRename(well, newName);
}

bool TDatabase::datasetRename(const QString& project, const QString& oldName, const QString& newName)
{
    const TAbstractMapper* datasets = getMapper(VNObjectTypeDataset);
    if (!datasets || newName.isEmpty())
        return false;
    if (!project.isEmpty() && (!m_project || m_project->name() != project))
        return false;
    const VNObject2* dataset = datasets->get(oldName);
    if (!dataset)
        return false;
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    if (oldName == newName)
        return true;
    if (datasets->exists(newName)) {
        sayNameTaken(newName);
        return false;
    }
    return datasets->rename(dataset, newName, true);
}

const VNObject2* TDatabase::getCompound(const TCompound* compound)
{
    const auto* compounds = dynamic_cast<const TCompoundMapper*>(getMapper(VNObjectTypeCompound));
    if (!compound || !compounds)
        return nullptr;
    if (!compound->cas().isEmpty())
        return compounds->getByCas(compound->cas());
    return compounds->get(compound->name());
}

const VNObject2* TDatabase::getCompound(int type, const QString& name)
{
    if (type != VNObjectTypeCompound)
        return nullptr;
    const TAbstractMapper* compounds = getMapper(VNObjectTypeCompound);
    return compounds ? compounds->get(name) : nullptr;
}

const VNObject2* TDatabase::compoundCreate(const TCompound* compound)
{
    const auto* compounds = dynamic_cast<const TCompoundMapper*>(getMapper(VNObjectTypeCompound));
    if (!compound || !compounds || compound->name().isEmpty())
        return nullptr;
    if (m_readOnly) {
        logReadOnly();
        return nullptr;
    }
    if (getCompound(compound) || compounds->exists(compound->name())) {
        sayNameTaken(compound->name());
        return nullptr;
    }
    TPropertyObject* made = compounds->createCompound(compound->name(), compound->cas(), compound->formula(), true);
    return made ? made->object() : nullptr;
}

const VNObject2* TDatabase::compoundCreate(const QString& name)
{
    const TCompound compound(name);
    return compoundCreate(&compound);
}

const VNObject2* TDatabase::getSlice(int type, const QString& key)
{
    if (type != VNObjectTypeSlice)
        return nullptr;
    const TAbstractMapper* slices = getMapper(VNObjectTypeSlice);
    return slices ? slices->get(key) : nullptr;
}

bool TDatabase::checkIfExistsAndRemove(const VNObject2* object, bool& existed, bool& removed, int& count)
{
    existed = false;
    removed = false;
    if (!object)
        return false;
    const TAbstractMapper* kind = getMapper(VNObjectType(object->type()));
    const TDatabaseObject* mine = kind ? kind->recordByName(object->name()) : nullptr;
    if (!mine)
        return kind != nullptr;
    existed = true;
    QList<const VNObject2*> going{mine->object()};
    addDependants(going);
    removed = objectDeleteStd(mine->object(), true);
    if (removed)
        count += going.size();
    return removed;
}

bool TDatabase::saveTCM(const QString& fileName, const QList<float*>& columns, int count, float* masses, int massCount,
                        const QString& signalName, const VNObject2Analysis* analysis)
{
    if (count < 1 || massCount < 1 || !masses || columns.size() != massCount + 1)
        return false;
    for (const float* column : columns) {
        if (!column)
            return false;
    }
    VNMCData data(count, columns.first());
    std::vector<float> tic(static_cast<size_t>(count), 0.0f);
    for (int c = 0; c < massCount; ++c) {
        if (!data.addCanal(columns.at(c + 1), VNIon::around(masses[c])))
            return false;
        for (int i = 0; i < count; ++i)
            tic[size_t(i)] += columns.at(c + 1)[i];
    }
    data.setTic(tic.data());
    return saveTCM(fileName, signalName, &data, analysis);
}

bool TDatabase::analysisAutoExtract(const VNObject2Analysis* analysis)
{
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    return signalTICCreate(this, analysis);
}

bool TDatabase::analysisExtractIonList(const VNObject2Analysis* analysis, const QList<VNIon*>& ions)
{
    if (!analysis || !record(analysis) || ions.isEmpty())
        return false;
    if (m_readOnly) {
        logReadOnly();
        return false;
    }
    TCMFile* file = nullptr;
    const int scans = analysisTCM(analysis, &file);
    if (!file || scans < 1) {
        MessageLoggerInterface::Warning(QCoreApplication::translate("SedraTr",
                                                                    "The acquisition of <b>%1</b> cannot be read",
                                                                    "L'acquisition de <b>%1</b> ne peut pas être lue")
                                            .arg(analysis->name()),
                                        nullptr);
        return false;
    }
    // Whole content is read as it is when another reader holds it, and
    // unloaded afterwards only when it was loaded here.
    const bool wasLoaded = file->isLoaded() && file->firstLoadedScan() == 0 && file->lastLoadedScan() == scans - 1;
    if (!wasLoaded && !file->loadContent(-1.0f, -1.0f, 0, static_cast<unsigned long>(scans - 1)))
        return false;
    std::vector<float> times(static_cast<size_t>(scans));
    for (int i = 0; i < scans; ++i)
        times[size_t(i)] = float(file->rtime()[i]);
    bool all = true;
    std::vector<float> values(static_cast<size_t>(scans));
    for (const VNIon* ion : ions) {
        if (!ion || !ion->isValid()) {
            all = false;
            continue;
        }
        std::fill(values.begin(), values.end(), 0.0f);
        file->ionAtFullRange(values.data(), ion->lowerMass() + ion->offset(), ion->upperMass() + ion->offset());
        VNMCData data(scans, times.data());
        data.setTic(values.data());
        data.addCanal(values.data(), *ion);
        QString name = ion->label();
        const QString destination = signalCreateDestFileName(analysis, name);
        all = !destination.isEmpty() && saveTCM(destination, name, &data, analysis)
            && signalCreate(analysis->name(), name) && all;
    }
    if (!wasLoaded && TCMFileRegistry::holders(analysisTCMPath(analysis)) == 0)
        file->deleteContent();
    return all;
}

} // namespace Sedra
