#include "projectfolder.h"

#include "projectdatabase.h"

#include <tacquisitionrun.h>
#include <tanalysisfolder.h>
#include <tcmfileregistry.h>
#include <tdescriptionacquisition.h>
#include <tdetectorfile.h>
#include <vnobject2analysis.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

ProjectFolder::ProjectFolder(const QString& path)
    : m_path(QDir::cleanPath(QFileInfo(path).absoluteFilePath()))
{ }

bool ProjectFolder::exists(QString* error) const
{
    const QFileInfo info(m_path);
    if (info.isDir())
        return true;
    *error = info.exists()
        ? tr("'%1' is not a folder", "'%1' n'est pas un dossier").arg(m_path)
        : tr("project folder '%1' does not exist", "le dossier de projet '%1' n'existe pas").arg(m_path);
    return false;
}

bool ProjectFolder::holdsProject(QString* error) const
{
    if (!exists(error))
        return false;
    if (QFileInfo::exists(ProjectDatabase::headerFile(m_path)))
        return true;
    QStringList unused;
    for (const ProjectDatabase::Folder& folder : ProjectDatabase::checkStructure(m_path, false, &unused)) {
        if (folder.existed)
            return true;
    }
    *error = tr("'%1' holds no project (no project database, no project folders); vndb project init %1 makes one",
                "'%1' ne contient pas de projet (ni base de données de projet, ni dossiers de projet) ; "
                "vndb project init %1 en crée un")
                 .arg(m_path);
    return false;
}

bool ProjectFolder::acceptsAnalyses(QString* error) const
{
    const QFileInfo info(m_path);
    if (!info.exists())
        return true;
    if (info.isDir() && QDir(m_path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        return true;
    return holdsProject(error);
}

QString ProjectFolder::analysesPath() const
{
    return m_path + QLatin1Char('/') + VNObject2Analysis::folderName();
}

QString ProjectFolder::analysisPath(const QString& name) const
{
    return analysesPath() + QLatin1Char('/') + name;
}

QString ProjectFolder::acquisitionFile(const QString& name) const
{
    return analysisPath(name) + QLatin1Char('/') + name + QStringLiteral(".tcm");
}

QString ProjectFolder::descriptionFile(const QString& name) const
{
    return analysisPath(name) + QLatin1Char('/') + QLatin1String(TDescriptionAcquisition::fileName());
}

QStringList ProjectFolder::analyses() const
{
    return QDir(analysesPath()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

bool ProjectFolder::hasAnalysis(const QString& name) const
{
    return isValidName(name, nullptr) && QFileInfo(analysisPath(name)).isDir();
}

QString ProjectFolder::findAcquisitionFile(const QString& name, QString* error) const
{
    if (!exists(error))
        return QString();
    if (!hasAnalysis(name)) {
        *error = tr("unknown analysis '%1' in project '%2'", "analyse '%1' inconnue dans le projet '%2'")
                     .arg(name, m_path);
        return QString();
    }
    const QString file = acquisitionFile(name);
    if (!QFileInfo(file).isFile()) {
        *error
            = tr("analysis '%1' has no acquisition file (%2)", "l'analyse '%1' n'a pas de fichier d'acquisition (%2)")
                  .arg(name, file);
        return QString();
    }
    return file;
}

bool ProjectFolder::isValidName(const QString& name, QString* error)
{
    bool valid = !name.trimmed().isEmpty() && name == name.trimmed() && name.size() <= 120
        && !name.startsWith(QLatin1Char('.'));
    for (const QChar c : name) {
        if (c == QLatin1Char('/') || c == QLatin1Char('\\') || c == QLatin1Char(':')
            || c.category() == QChar::Other_Control)
            valid = false;
    }
    if (!valid && error)
        *error = QCoreApplication::translate("ProjectFolder",
                                             "'%1' is not a valid analysis name (no separators, no leading dot)",
                                             "'%1' n'est pas un nom d'analyse valide (ni séparateur, ni point initial)")
                     .arg(name);
    return valid;
}

bool ProjectFolder::addAnalysis(const QString& name, const TAcquisitionRun& run, QString* error) const
{
    if (!acceptsAnalyses(error) || !isValidName(name, error))
        return false;
    if (QFileInfo::exists(analysisPath(name))) {
        *error = tr("analysis '%1' already exists in project '%2'", "l'analyse '%1' existe déjà dans le projet '%2'")
                     .arg(name, m_path);
        return false;
    }
    QString why;
    if (!run.isConsistent(&why)) {
        *error = tr("the acquisition is inconsistent: %1", "l'acquisition est incohérente : %1").arg(why);
        return false;
    }
    // The folder is written whole or not at all (staged beside it, checked,
    // renamed into place); a refusal also removes an analyses folder made here.
    // A missing project folder is made here, and goes again with a refusal.
    const bool createdProject = !QFileInfo::exists(m_path);
    const bool createdAnalyses = !QFileInfo::exists(analysesPath());
    TAcquisitionRun named = run;
    named.name = name;
    if (QDir().mkpath(m_path) && TAnalysisFolder::write(named, analysesPath(), name, &why))
        return true;
    if (createdAnalyses)
        QDir().rmdir(analysesPath());
    if (createdProject)
        QDir().rmdir(m_path);
    *error = tr("cannot add analysis '%1': %2", "impossible d'ajouter l'analyse '%1' : %2").arg(name, why);
    return false;
}

bool ProjectFolder::removeAnalysis(const QString& name) const
{
    if (!isValidName(name, nullptr) || !QFileInfo::exists(analysisPath(name)))
        return false;
    TCMFileRegistry::forget(acquisitionFile(name));
    return QDir(analysisPath(name)).removeRecursively();
}

QString ProjectFolder::detectorFile(const QString& name) const
{
    return QDir(analysisPath(name)).filePath(QString::fromLatin1(TDetectorFile::fileName()));
}

bool ProjectFolder::channels(const QString& name, QVector<TDetectorChannel>* channels, QString* error) const
{
    QString why;
    if (TDetectorFile::load(detectorFile(name), channels, &why))
        return true;
    if (error)
        *error = tr("the detector channels of analysis '%1' cannot be read: %2",
                    "les voies de détecteur de l'analyse '%1' sont illisibles : %2")
                     .arg(name, why);
    return false;
}
