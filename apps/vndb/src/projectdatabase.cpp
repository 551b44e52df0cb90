#include "projectdatabase.h"

#include "clicontext.h"

#include <messageloggerinterface.h>
#include <tabstractmapper.h>
#include <tanalysismapper.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <tmodulelauncher.h>
#include <tprojectmgr.h>
#include <trecordinglogger.h>
#include <vndatabase.h>
#include <vndatabasefactory.h>
#include <vnobject2analysis.h>
#include <vnobject2project.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {
// The last warning the libraries gave while `recorder` listened, as one line.
QString lastWarning(const TRecordingLogger& recorder)
{
    QString last;
    for (const TRecordingLogger::Entry& entry : recorder.entries()) {
        if (entry.first >= MessageLoggerInterface::LevelWarning)
            last = entry.second;
    }
    return last;
}

// What the libraries said (not their debug chatter) as terminal lines.
QStringList said(const TRecordingLogger& recorder)
{
    QStringList lines;
    for (const TRecordingLogger::Entry& entry : recorder.entries()) {
        if (entry.first >= MessageLoggerInterface::LevelInformation)
            lines << CliContext::oneLine(entry.second);
    }
    return lines;
}
} // namespace

ProjectDatabase::ProjectDatabase() = default;

ProjectDatabase::~ProjectDatabase()
{
    // The manager forgets the database before it goes; the database goes
    // before the project it is bound to.
    if (m_manager)
        m_manager->setCurrentDatabase(nullptr);
    m_database.reset();
}

QString ProjectDatabase::headerFile(const QString& folder)
{
    return QDir(folder).filePath(Sedra::THeaderConnector::fileNameForType(Sedra::DatabaseProjectFolder));
}

bool ProjectDatabase::open(const QString& folder, bool readOnly, QString* error)
{
    m_folder = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    const QFileInfo info(m_folder);
    if (!info.isDir()) {
        *error = info.exists()
            ? tr("'%1' is not a folder", "'%1' n'est pas un dossier").arg(m_folder)
            : tr("project folder '%1' does not exist", "le dossier de projet '%1' n'existe pas").arg(m_folder);
        return false;
    }
    const QString header = headerFile(m_folder);
    if (readOnly && !QFileInfo(header).isFile()) {
        *error = tr("project '%1' has no project database yet (%2); a first 'vndb project sync' without "
                    "--read-only makes it",
                    "le projet '%1' n'a pas encore de base de données de projet (%2) ; un premier "
                    "'vndb project sync' sans --read-only la crée")
                     .arg(m_folder, QFileInfo(header).fileName());
        return false;
    }

    // The database is made by the factory and bound to its folder in two
    // steps, so that the project manager knows it before its header is read:
    // its first synchronisation is then the one asked for, with the refusals
    // of a project in use. Read-only is set before the header is bound, so
    // the file is opened read-only and never created.
    TRecordingLogger recorder;
    VNDatabaseFactory factory;
    m_database.reset(qobject_cast<VNDatabase*>(factory.createDatabase(Sedra::DatabaseProjectFolder)));
    if (!m_database) {
        *error = tr("the project database of '%1' cannot be made",
                    "la base de données du projet '%1' ne peut pas être créée")
                     .arg(m_folder);
        return false;
    }
    if (readOnly)
        m_database->setReadOnly(true);
    else if (!QFileInfo::exists(header))
        m_database->headerDb()->setSerialNumber(QStringLiteral("1"));
    m_database->setWorkingPath(m_folder);
    m_project = std::make_unique<VNObject2Project>(info.fileName());
    m_manager = std::make_unique<TProjectMgr>(true);
    m_launcher = std::make_unique<TModuleLauncher>(true);
    m_manager->setCurrentDatabase(m_database.get(), false);
    if (m_database->headerDb()->setCurrentProject(m_database.get()))
        m_database->headerDb()->start();
    if (!m_database->headerDb()->isOpen()) {
        const QString why = lastWarning(recorder);
        *error = tr("the project database of '%1' cannot be opened",
                    "la base de données du projet '%1' ne peut pas être ouverte")
                     .arg(m_folder);
        if (!why.isEmpty())
            *error += QStringLiteral(": ") + why;
        m_manager->setCurrentDatabase(nullptr);
        m_database.reset();
        return false;
    }
    m_database->setProject(m_project.get());
    return true;
}

QList<ProjectDatabase::Folder> ProjectDatabase::checkStructure(const QString& folder, bool repair,
                                                               QStringList* messages)
{
    TRecordingLogger recorder;
    // The list of folders and the repair are the project database's own; an
    // in-memory one is enough, so a check never makes a header file.
    VNDatabaseFactory factory;
    std::unique_ptr<Sedra::TDatabase> made(factory.createDatabase(Sedra::DatabaseProjectFolder));
    auto* database = qobject_cast<VNDatabase*>(made.get());
    QList<Folder> folders;
    if (!database)
        return folders;
    database->setWorkingPath(folder);
    for (const QString& name : database->folderNameList()) {
        Folder entry;
        entry.name = name;
        const QString path = QDir(folder).filePath(name);
        entry.existed = QFileInfo(path).isDir();
        if (repair) {
            entry.files = database->scanDir(path, true).size();
            entry.folders = database->scanDir(path, true, QString(), false).size();
        } else if (entry.existed) {
            entry.files = int(QDir(path).entryList(QDir::Files | QDir::NoDotAndDotDot).size());
            entry.folders = int(QDir(path).entryList(QDir::AllDirs | QDir::NoDotAndDotDot).size());
        }
        entry.exists = QFileInfo(path).isDir();
        folders << entry;
    }
    *messages << said(recorder);
    return folders;
}

QStringList ProjectDatabase::registeredAnalyses() const
{
    QStringList names;
    if (!m_database)
        return names;
    const auto* analyses = dynamic_cast<const Sedra::TAnalysisMapper*>(m_database->getMapper(VNObjectTypeAnalysis));
    if (!analyses)
        return names;
    for (const VNObject2Analysis* analysis : analyses->analyses())
        names << analysis->name();
    std::sort(names.begin(), names.end());
    return names;
}

ProjectDatabase::SyncOutcome ProjectDatabase::synchronize()
{
    SyncOutcome outcome;
    if (!m_database)
        return outcome;
    {
        TRecordingLogger recorder;
        m_database->synchronizeSQLRoot();
        outcome.messages = said(recorder);
    }
    // The project database refuses a read-only project and a project in use
    // by a module, and says why.
    outcome.refused = m_database->isReadOnly() || (m_launcher && m_launcher->isModuleInUse());
    if (outcome.refused && outcome.messages.isEmpty())
        outcome.messages << tr("the synchronisation of project '%1' was refused",
                               "la synchronisation du projet '%1' a été refusée")
                                .arg(m_folder);
    outcome.report = m_database->lastSynchronization();
    outcome.analyses = registeredAnalyses();
    return outcome;
}
