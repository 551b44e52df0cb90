// The project database on real folders and real header files: made from
// nothing, bound, checked and repaired, synchronised, closed and reopened;
// its refusals (read-only project, module running) in both languages; damaged
// headers, missing mappers and hostile names.
#include <messageloggerinterface.h>
#include <projectmgrinterface.h>
#include <tanalysismapper.h>
#include <tapplicationdata.h>
#include <tassert.h>
#include <tdatabaseobject.h>
#include <tdatasetmapper.h>
#include <tfileobject.h>
#include <tlocalization.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <tmodulelauncher.h>
#include <tmutableobject.h>
#include <tprojectmgr.h>
#include <tpropertyobject.h>
#include <trecordinglogger.h>
#include <ttranslator.h>
#include <tvariablemapper.h>
#include <twellmapper.h>
#include <vndatabase.h>
#include <vndatabasefactory.h>
#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2project.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include "categorymessages.h"

#include <QtTest>

#include <memory>

namespace {
// Everything under `root`: relative path -> hash of the bytes ("dir" for folders).
QMap<QString, QByteArray> snapshot(const QString& root)
{
    QMap<QString, QByteArray> tree;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    const QDir base(root);
    while (it.hasNext()) {
        const QString path = it.next();
        const QFileInfo info = it.fileInfo();
        QByteArray content = "dir";
        if (info.isFile()) {
            QFile file(path);
            content = file.open(QIODevice::ReadOnly) ? QByteArray::number(info.size()) + ' '
                    + QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex()
                                                     : QByteArray("unreadable");
        }
        tree.insert(base.relativeFilePath(path), content);
    }
    return tree;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::unique_ptr<VNDatabase> openProject(const QString& path)
{
    VNDatabaseFactory factory;
    return std::unique_ptr<VNDatabase>(qobject_cast<VNDatabase*>(factory.getDatabaseFromPath(path)));
}

// The database of the folder `path`, bound to `project`; null when either fails.
std::unique_ptr<VNDatabase> boundTo(const QString& path, VNObject2Project* project)
{
    auto db = openProject(path);
    if (db && !db->setProject(project))
        db.reset();
    return db;
}

// `statement` with `values` run on the SQLite file `file` by another program:
// the rows it changed, -1 when it failed.
int runOutside(const QString& file, const QString& statement, const QVariantList& values = {})
{
    int changed = -1;
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("outside"));
        other.setDatabaseName(file);
        if (other.open()) {
            QSqlQuery query(other);
            query.prepare(statement);
            for (const QVariant& value : values)
                query.addBindValue(value);
            if (query.exec())
                changed = query.numRowsAffected();
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("outside"));
    return changed;
}

// Read-only from the start: the header is opened read-only and never created.
std::unique_ptr<VNDatabase> openReadOnly(const QString& path)
{
    VNDatabaseFactory factory;
    std::unique_ptr<VNDatabase> db(qobject_cast<VNDatabase*>(factory.createDatabase(Sedra::DatabaseProjectFolder)));
    if (!db)
        return db;
    db->setReadOnly(true);
    db->setWorkingPath(path);
    if (db->headerDb()->setCurrentProject(db.get()))
        db->headerDb()->start();
    return db;
}

QString headerFile(const QString& project)
{
    return QDir(project).filePath(Sedra::THeaderConnector::fileNameForType(Sedra::DatabaseProjectFolder));
}

const Sedra::TAnalysisMapper* analysesOf(const VNDatabase& db)
{
    return dynamic_cast<const Sedra::TAnalysisMapper*>(db.getMapper(VNObjectTypeAnalysis));
}
const Sedra::TWellMapper* wellsOf(const VNDatabase& db)
{
    return dynamic_cast<const Sedra::TWellMapper*>(db.getMapper(VNObjectTypeWell));
}
const Sedra::TDatasetMapper* datasetsOf(const VNDatabase& db)
{
    return dynamic_cast<const Sedra::TDatasetMapper*>(db.getMapper(VNObjectTypeDataset));
}
const Sedra::TVariableMapper* variablesOf(const VNDatabase& db)
{
    return dynamic_cast<const Sedra::TVariableMapper*>(db.getMapper(VNObjectTypeVariable));
}

// What a project holds, in a form that survives closing: kind, key, name,
// parent and stored path of every record, sorted.
QStringList contents(const VNDatabase& db)
{
    QStringList lines;
    for (const Sedra::THeaderRow& row : db.headerDb()->readRows()) {
        QStringList properties;
        for (const Sedra::TProperty& property : row.properties)
            properties << property.name() + QLatin1Char('=') + property.value();
        lines << QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
                     .arg(row.type)
                     .arg(row.key, row.name)
                     .arg(row.parentType)
                     .arg(row.parentKey, row.path, properties.join(QLatin1Char(';')));
    }
    lines.sort();
    return lines;
}

QStringList inMemory(const VNDatabase& db, int type)
{
    QStringList names;
    for (const VNObject2* object : db.getObjectLst(type))
        names << object->name();
    names.sort();
    return names;
}

const QString ObsoleteEn = QStringLiteral("Project structure is obsolete - Adding directory <b>%1</b>");
const QString CannotOpenEn = QStringLiteral("The database file <b>%1</b> cannot be opened: ");
const QString CannotOpenFr = QStringLiteral("Le fichier de base de données <b>%1</b> ne peut pas être ouvert : ");

// An analysis folder that appeared on disk, unknown to the header.
bool addAnalysisFolder(const QString& project, const QString& name)
{
    return QDir().mkpath(project + QLatin1Char('/') + VNObject2Analysis::folderName() + QLatin1Char('/') + name);
}

// A project with its layout, one analysis with an acquisition file, a well, a
// dataset and one of its variables; closed again.
void makeProject(const QString& path, const QString& projectName)
{
    VNObject2Project project(projectName);
    auto db = boundTo(path, &project);
    QVERIFY(db && db->headerDb()->isOpen());
    for (const QString& folder : db->folderNameList())
        db->scanDir(db->getCurrentWorkingPath() + QDir::separator() + folder, true);
    const Sedra::TFileObject* run = analysesOf(*db)->createAnalysis(QStringLiteral("Run 1"));
    QVERIFY(run);
    QVERIFY(writeFile(db->objectFolderPath(run->object(), true) + QStringLiteral("/Run 1.tcm"), "acquisition"));
    QVERIFY(wellsOf(*db)->createWell(QStringLiteral("Puits-1")));
    const Sedra::TMutableObject* dataset = datasetsOf(*db)->createDataset(QStringLiteral("Biomarqueurs"));
    QVERIFY(dataset);
    QVERIFY(variablesOf(*db)->createVariable(static_cast<const VNObject2Dataset*>(dataset->object()),
                                             QStringLiteral("Pr/Ph"), QStringLiteral("C17"), QStringLiteral("Pr")));
}

// What an unbound database does that it should not: it should have no header
// and no mappers, and answer neutrally what is asked of it later (typed saves
// assert). Empty when it behaves.
QStringList unboundFaults(VNDatabase& db, VNObject2Project* project)
{
    QStringList faults;
    const auto expect = [&faults](bool ok, const char* fault) {
        if (!ok)
            faults << QLatin1String(fault);
    };
    expect(!db.headerDb()->isOpen(), "header open");
    expect(!db.getMapper(VNObjectTypeAnalysis), "has mappers");
    db.setProject(project);
    db.synchronizeSQLRoot();
    expect(db.lastSynchronization().registered.isEmpty(), "registers folders");
    expect(!db.loadDatabase(), "loads");
    VNObject2Dataset dataset(QStringLiteral("d"));
    TAssert::clear();
    expect(!db.datasetObjectSave(&dataset, true), "saves a dataset");
    expect(TAssert::contains(QStringLiteral("mapper != 0"), QStringLiteral("vndatabase")), "does not assert");
    expect(db.getReferenceName(QStringLiteral("a"), QStringLiteral("b")).isNull(), "finds a reference");
    return faults;
}

// A fresh temporary folder holding a made project.
struct MadeProject
{
    explicit MadeProject(const QString& name = QStringLiteral("Projet")) { makeProject(path, name); }
    bool ok() const { return !QTest::currentTestFailed(); }
    QTemporaryDir tmp;
    const QString path = tmp.filePath(QStringLiteral("Projet"));
};
} // namespace

class TestVNDatabase : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { TTranslator::install(QStringLiteral("en")); }
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void lifecycleFromNothing()
    {
        QTemporaryDir tmp;
        const QString path = tmp.filePath(QStringLiteral("Bassin d'Aquitaine/Projet Hédé"));
        TRecordingLogger log;

        // Made from nothing: folder and header file, serial "1", nothing said.
        auto db = openProject(path);
        QVERIFY(db);
        QVERIFY(db->headerDb()->isOpen());
        QCOMPARE(int(db->getDatabaseType()), int(Sedra::DatabaseProjectFolder));
        QVERIFY(QFileInfo(headerFile(path)).isFile());
        QCOMPARE(db->headerDb()->serialNumber(), QStringLiteral("1"));
        QCOMPARE(log.count(), 0);
        VNObject2Project project(QStringLiteral("Projet Hédé"));
        QVERIFY(db->setProject(&project));

        // Scanned: the missing layout is added, folder by folder, each said.
        QStringList said;
        for (const QString& folder : db->folderNameList()) {
            const QString sub = db->getCurrentWorkingPath() + QDir::separator() + folder;
            QCOMPARE(db->scanDir(sub, true), QStringList());
            QVERIFY(QFileInfo(sub).isDir());
            said << ObsoleteEn.arg(sub);
        }
        QCOMPARE(log.messages(MessageLoggerInterface::LevelInformation), said);

        // Content of every kind the facade stores.
        const Sedra::TFileObject* run = analysesOf(*db)->createAnalysis(QStringLiteral("Run 1"));
        QVERIFY(run);
        const QString runFolder = db->objectFolderPath(run->object(), true);
        QVERIFY(writeFile(runFolder + QStringLiteral("/Run 1.tcm"), "acquisition"));
        QVERIFY(analysesOf(*db)->createAnalysis(QStringLiteral("Run 3"))); // its folder is never made
        QVERIFY(wellsOf(*db)->createWell(QStringLiteral("Puits-1")));
        const Sedra::TMutableObject* datasetRecord = datasetsOf(*db)->createDataset(QStringLiteral("Biomarqueurs"));
        QVERIFY(datasetRecord);
        const auto* dataset = static_cast<const VNObject2Dataset*>(datasetRecord->object());
        const Sedra::TPropertyObject* variableRecord = variablesOf(*db)->createVariable(
            dataset, QStringLiteral("Pr/Ph"), QStringLiteral("C17"), QStringLiteral("Pr"));
        QVERIFY(variableRecord);
        QVERIFY(db->datasetObjectSave(dataset, true));
        QVERIFY(db->variableObjectSave(static_cast<const VNObject2Variable*>(variableRecord->object()), true));
        QCOMPARE(db->getReferenceName(QStringLiteral("C17"), QStringLiteral("Pr")), QStringLiteral("Pr/Ph"));
        QVERIFY(db->getReferenceName(QStringLiteral("Pr"), QStringLiteral("C17")).isNull());
        const QString analysesFolder = path + QLatin1Char('/') + VNObject2Analysis::folderName();
        QCOMPARE(db->scanDir(analysesFolder, true, QString(), false), QStringList("Run 1"));
        QCOMPARE(db->scanDir(runFolder, false, QStringLiteral("tcm"), true), QStringList("Run 1"));

        // Repaired: a deleted folder comes back, with the message; no record goes.
        const QString wells = path + QLatin1Char('/') + VNObject2Well::folderName();
        QVERIFY(QDir(wells).removeRecursively());
        log.clear();
        QCOMPARE(db->scanDir(VNObjectTypeWell, false), QStringList());
        QVERIFY(QFileInfo(wells).isDir());
        QCOMPARE(log.messages(MessageLoggerInterface::LevelInformation), QStringList(ObsoleteEn.arg(wells)));
        QCOMPARE(inMemory(*db, VNObjectTypeWell), QStringList("Puits-1"));

        // Synchronised: a folder found on disk is registered, a vanished one is reported and kept.
        QVERIFY(QDir().mkpath(analysesFolder + QStringLiteral("/Run 2 (trouvé)")));
        db->synchronizeSQLRoot();
        QCOMPARE(db->lastSynchronization().registered, QStringList(QStringLiteral("Run 2 (trouvé)")));
        QCOMPARE(db->lastSynchronization().missing, QStringList(QStringLiteral("Run 3")));
        QCOMPARE(inMemory(*db, VNObjectTypeAnalysis),
                 QStringList({QStringLiteral("Run 1"), QStringLiteral("Run 2 (trouvé)"), QStringLiteral("Run 3")}));

        // Cleared: memory only; the file keeps everything and gives it back.
        const QStringList stored = contents(*db);
        QCOMPARE(stored.size(), 6);
        db->clearDB();
        for (int type : {VNObjectTypeAnalysis, VNObjectTypeWell, VNObjectTypeDataset, VNObjectTypeVariable})
            QVERIFY(db->getObjectLst(type).isEmpty());
        QCOMPARE(contents(*db), stored);
        QVERIFY(db->loadDatabase());
        QCOMPARE(inMemory(*db, VNObjectTypeAnalysis).size(), 3);

        // Closed and reopened: nothing lost, nothing new to register.
        db.reset();
        log.clear();
        db = boundTo(path, &project);
        QVERIFY(db);
        QCOMPARE(contents(*db), stored);
        QCOMPARE(inMemory(*db, VNObjectTypeWell), QStringList("Puits-1"));
        QCOMPARE(db->getReferenceName(QStringLiteral("C17"), QStringLiteral("Pr")), QStringLiteral("Pr/Ph"));
        QCOMPARE(db->headerDb()->serialNumber(), QStringLiteral("1"));
        QCOMPARE(readFile(runFolder + QStringLiteral("/Run 1.tcm")), QByteArray("acquisition"));
        db->synchronizeSQLRoot();
        QVERIFY(db->lastSynchronization().registered.isEmpty());
        QCOMPARE(contents(*db), stored);
    }

    // The folder constructor writes any serial it is given, an empty one too;
    // only a null serial leaves the stored one alone.
    void serialIsWrittenUnlessNull()
    {
        QTemporaryDir tmp;
        const QString path = tmp.filePath(QStringLiteral("Projet"));
        const struct
        {
            QString given;
            QString stored;
        } openings[] = {{QStringLiteral("7"), QStringLiteral("7")},
                        {QString(), QStringLiteral("7")},
                        {QLatin1String(""), QString()},
                        {QString(), QString()},
                        {QStringLiteral("2026-11-23 série β"), QStringLiteral("2026-11-23 série β")}};
        for (const auto& opening : openings) {
            {
                VNDatabase db(path, opening.given);
                QVERIFY(db.headerDb()->isOpen());
                QCOMPARE(db.headerDb()->serialNumber(), opening.stored);
            }
            // What the file holds, read by a database that writes no serial.
            VNDatabase reread(path, QString());
            QCOMPARE(reread.headerDb()->serialNumber(), opening.stored);
        }
    }

    void setProjectEmptiesFirst()
    {
        QTemporaryDir tmp;
        VNObject2Project project(QStringLiteral("p"));
        auto db = boundTo(tmp.filePath(QStringLiteral("p")), &project);
        QVERIFY(db);

        // A record still in memory only, and dataset saves held back.
        QVERIFY(wellsOf(*db)->createWell(QStringLiteral("Puits A"), false));
        QCOMPARE(wellsOf(*db)->record(QStringLiteral("Puits A"))->id(), qint64(-1));
        db->forceDisableDatasetSave(3, true);

        // Binding again, to the same project, empties first: the record is
        // written, forgotten and read back; the hold is released.
        QVERIFY(db->setProject(&project));
        QVERIFY(!db->isDatasetSaveDisabled());
        const Sedra::TDatabaseObject* again = wellsOf(*db)->record(QStringLiteral("Puits A"));
        QVERIFY(again);
        QVERIFY(again->id() >= 0);

        // No project: emptied and refused; the file keeps the records.
        QVERIFY(!db->setProject(nullptr));
        QVERIFY(db->getObjectLst(VNObjectTypeWell).isEmpty());
        QVERIFY(db->setProject(&project));
        QCOMPARE(inMemory(*db, VNObjectTypeWell), QStringList("Puits A"));
    }

    void readOnlyRefusesAndChangesNothing_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("geolocation");
        QTest::newRow("en") << "en"
                            << "Impossible to synchronize project <b>%1</b> because it is <b>Read Only</b> opened"
                            << "Impossible to save the geolocation of <b>%1</b> because the project is <b>Read "
                               "Only</b> opened";
        QTest::newRow("fr")
            << "fr"
            << "Impossible de synchroniser le projet <b>%1</b> car il est ouvert en <b>Lecture Seule</b>"
            << "Impossible d'enregistrer la géolocalisation de <b>%1</b> car le projet est ouvert en "
               "<b>Lecture Seule</b>";
    }

    void readOnlyRefusesAndChangesNothing()
    {
        QFETCH(QString, language);
        QFETCH(QString, message);
        QFETCH(QString, geolocation);
        const MadeProject made;
        QVERIFY(made.ok());
        const QString& path = made.path;
        // A folder that a synchronisation would register.
        QVERIFY(addAnalysisFolder(path, QStringLiteral("Run 9")));
        const QMap<QString, QByteArray> before = snapshot(path);

        TTranslator::install(language);
        TRecordingLogger log;
        {
            auto db = openReadOnly(path);
            QVERIFY(db && db->headerDb()->isOpen());

            // Without a project the refusal is silent.
            db->synchronizeSQLRoot();
            QCOMPARE(log.count(), 0);

            const QString name = QStringLiteral("Projet \"Hédé\" d'<essai>");
            VNObject2Project project(name);
            QVERIFY(db->setProject(&project));
            QCOMPARE(inMemory(*db, VNObjectTypeAnalysis), QStringList("Run 1"));
            db->synchronizeSQLRoot();
            QCOMPARE(log.entries(),
                     QList<TRecordingLogger::Entry>({{MessageLoggerInterface::LevelInformation, message.arg(name)}}));
            QVERIFY(db->lastSynchronization().registered.isEmpty());
            QVERIFY(!analysesOf(*db)->getAnalysis(QStringLiteral("Run 9")));
            log.clear();
            const VNObject2* well = wellsOf(*db)->getWell(QStringLiteral("Puits-1"));
            QVERIFY(well);
            QVERIFY(!db->setObjectGeolocalization(well, TLocalization(47.2184, -1.5536)));
            QCOMPARE(log.entries(),
                     QList<TRecordingLogger::Entry>(
                         {{MessageLoggerInterface::LevelInformation, geolocation.arg(QStringLiteral("Puits-1"))}}));

            // Nothing else writes either.
            QVERIFY(!wellsOf(*db)->createWell(QStringLiteral("Puits-2")));
            const VNObject2Dataset* dataset = datasetsOf(*db)->getDataset(QStringLiteral("Biomarqueurs"));
            QVERIFY(dataset);
            QVERIFY(!db->datasetObjectSave(dataset, true));
            QVERIFY(!db->removeObject(wellsOf(*db)->getWell(QStringLiteral("Puits-1")), true));
            db->clearDB();
            QVERIFY(db->loadDatabase());
            QCOMPARE(db->scanDir(VNObjectTypeAnalysis, true), QStringList());
        }
        QCOMPARE(snapshot(path), before);

        // Opened writable from its folder, the project is synchronised at once;
        // made read-only afterwards, it refuses from then on and writes nothing.
        {
            auto db = openProject(path);
            QVERIFY(db);
            QCOMPARE(db->lastSynchronization().registered, QStringList("Run 9"));
            QVERIFY(addAnalysisFolder(path, QStringLiteral("Run 10")));
            const QMap<QString, QByteArray> opened = snapshot(path);
            db->setReadOnly(true);
            log.clear();
            VNObject2Project project(QStringLiteral("Projet"));
            QVERIFY(db->setProject(&project));
            db->synchronizeSQLRoot();
            QCOMPARE(log.entries(),
                     QList<TRecordingLogger::Entry>(
                         {{MessageLoggerInterface::LevelInformation, message.arg(QStringLiteral("Projet"))}}));
            QVERIFY(db->lastSynchronization().registered.isEmpty());
            QVERIFY(!analysesOf(*db)->getAnalysis(QStringLiteral("Run 10")));
            db.reset();
            QCOMPARE(snapshot(path), opened);
        }
    }

    void moduleInUseRefuses_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("message");
        QTest::newRow("en") << "en"
                            << "Impossible to synchronize a project while a module is being used";
        QTest::newRow("fr") << "fr"
                            << "Impossible de synchroniser un projet lorsqu'un module est en cours d'utilisation";
    }

    void moduleInUseRefuses()
    {
        QFETCH(QString, language);
        QFETCH(QString, message);
        const MadeProject made;
        QVERIFY(made.ok());
        const QString& path = made.path;
        TTranslator::install(language);
        VNObject2Project project(QStringLiteral("Projet"));
        auto db = boundTo(path, &project);
        QVERIFY(db);
        TProjectMgr manager(true);
        manager.setCurrentDatabase(db.get(), false);
        TModuleLauncher launcher(true);
        launcher.moduleStarted(QStringLiteral("Integration"));

        // While the module runs, a folder appears in the open project.
        QVERIFY(addAnalysisFolder(path, QStringLiteral("Run 9")));
        const QMap<QString, QByteArray> before = snapshot(path);
        TRecordingLogger log;
        db->synchronizeSQLRoot();
        QCOMPARE(log.entries(), QList<TRecordingLogger::Entry>({{MessageLoggerInterface::LevelWarning, message}}));
        QVERIFY(db->lastSynchronization().registered.isEmpty());
        QVERIFY(!analysesOf(*db)->getAnalysis(QStringLiteral("Run 9")));
        QCOMPARE(snapshot(path), before);

        // Read-only says so first: the module is not the reason then.
        log.clear();
        db->setReadOnly(true);
        db->synchronizeSQLRoot();
        QCOMPARE(log.count(), 1);
        QCOMPARE(log.entries().first().first, MessageLoggerInterface::LevelInformation);
        db->setReadOnly(false);

        // Another project than the open one is not guarded by the module.
        const MadeProject other(QStringLiteral("Autre"));
        VNObject2Project otherProject(QStringLiteral("Autre"));
        auto second = boundTo(other.path, &otherProject);
        QVERIFY(second);
        QVERIFY(addAnalysisFolder(other.path, QStringLiteral("Run 5")));
        log.clear();
        second->synchronizeSQLRoot();
        QCOMPARE(second->lastSynchronization().registered, QStringList("Run 5"));
        QVERIFY(log.messages(MessageLoggerInterface::LevelWarning).isEmpty());

        // Once the module is done, the open project synchronises.
        QVERIFY(launcher.moduleFinished(QStringLiteral("Integration")));
        log.clear();
        db->synchronizeSQLRoot();
        QCOMPARE(db->lastSynchronization().registered, QStringList("Run 9"));
        QVERIFY(!log.messages(MessageLoggerInterface::LevelWarning).contains(message));
        manager.setCurrentDatabase(nullptr);
    }

    void missingMapperAssertsAndAnswersNeutrally()
    {
        VNDatabase db(Sedra::DatabaseProject);
        db.setMapperFactory(nullptr);
        TAssert::clear();
        TRecordingLogger log;
        CategoryMessages diagnostics;

        VNObject2Dataset dataset(QStringLiteral("Pr/Ph"));
        VNObject2Variable variable(QStringLiteral("v"), QStringLiteral("C17"), QStringLiteral("Pr"));
        QVERIFY(!db.datasetObjectSave(&dataset, true));
        QVERIFY(!db.variableObjectSave(&variable, true));
        // One assertion each, from lines of their own, each expression as written there.
        const QList<TAssert::Failure> failures = TAssert::failures();
        QCOMPARE(failures.size(), 2);
        QCOMPARE((QStringList{failures[0].expression, failures[0].file, failures[1].expression, failures[1].file}),
                 (QStringList{"mapper != 0", "vndatabase", "mapper!= 0", "vndatabase"}));
        QVERIFY(failures[0].line > 0 && failures[1].line != failures[0].line);
        QCOMPARE(diagnostics.texts("vn.core", QtWarningMsg).size(), 2);
        QCOMPARE(log.messages(MessageLoggerInterface::LevelError).size(), 0);

        // With mappers: an object of another database or none is refused without an assertion.
        VNDatabase withMappers(Sedra::DatabaseProject);
        TAssert::clear();
        QVERIFY(!withMappers.datasetObjectSave(&dataset, true));
        QVERIFY(!withMappers.datasetObjectSave(nullptr, true));
        QVERIFY(!withMappers.variableObjectSave(nullptr, false));
        QCOMPARE(TAssert::count(), 0);
    }

    void unusableHeaderIsRefused_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("text") << "text";
        QTest::newRow("zeros") << "zeros";
        QTest::newRow("truncated") << "truncated";
        QTest::newRow("another application's database") << "foreign";
        QTest::newRow("a folder") << "folder";
        QTest::newRow("a file where the project folder goes") << "file";
        QTest::newRow("no folder, silently") << "none";
    }

    // The object exists, unbound; the header file or folder is said to be
    // unusable, with the reason, and nothing is written anywhere.
    void unusableHeaderIsRefused()
    {
        QFETCH(QString, kind);
        QTemporaryDir tmp;
        const QString current = QDir::currentPath();
        QVERIFY(QDir::setCurrent(tmp.path())); // where a project without a folder would write
        const QString path = kind == QLatin1String("none") ? QString() : tmp.filePath(QStringLiteral("Projet"));
        const QString header = headerFile(path);
        if (kind == QLatin1String("truncated")) {
            {
                // Enough records for several pages; the second half is cut off.
                auto db = openProject(path);
                QVERIFY(db);
                for (int i = 0; i < 400; ++i)
                    wellsOf(*db)->createWell(QStringLiteral("Puits %1 avec un nom assez long").arg(i), false);
                QVERIFY(db->headerDb()->flushDatabase());
            }
            QFile file(header);
            QVERIFY(file.size() > 16384);
            QVERIFY(file.resize(file.size() / 2));
        } else if (kind == QLatin1String("file")) {
            QVERIFY(writeFile(path, "not a folder"));
        } else if (kind != QLatin1String("none")) {
            QVERIFY(QDir().mkpath(path));
            if (kind == QLatin1String("text")) {
                QVERIFY(writeFile(header, QByteArray("wells: Puits-1, Puits-2\n").repeated(50)));
            } else if (kind == QLatin1String("zeros")) {
                QVERIFY(writeFile(header, QByteArray(8192, '\0')));
            } else if (kind == QLatin1String("folder")) {
                QVERIFY(QDir().mkpath(header));
            } else {
                QVERIFY(runOutside(header, QStringLiteral("CREATE TABLE samples (id INTEGER PRIMARY KEY, name TEXT)"))
                        >= 0);
                QCOMPARE(runOutside(header, QStringLiteral("INSERT INTO samples (name) VALUES (?)"), {"Puits-1"}), 1);
            }
        }
        const QMap<QString, QByteArray> before = snapshot(tmp.path());

        for (const QString& language : {QStringLiteral("en"), QStringLiteral("fr")}) {
            TTranslator::install(language);
            TRecordingLogger log;
            auto db = openProject(path);
            QVERIFY(db);
            const QStringList warnings = log.messages(MessageLoggerInterface::LevelWarning);
            QCOMPARE(warnings.size(), kind == QLatin1String("none") ? 0 : 1);
            if (!warnings.isEmpty()) {
                const QString expected = (language == QLatin1String("fr") ? CannotOpenFr : CannotOpenEn).arg(header);
                QVERIFY2(warnings.first().startsWith(expected), qPrintable(warnings.first()));
                QVERIFY2(warnings.first().size() > expected.size(), "the reason is given");
            }
            VNObject2Project project(QStringLiteral("Projet"));
            QCOMPARE(unboundFaults(*db, &project), QStringList());
            // Without a folder there is no structure to repair either.
            if (kind == QLatin1String("file") || kind == QLatin1String("none"))
                QCOMPARE(db->scanDir(VNObjectTypeWell, true), QStringList());
            QCOMPARE(snapshot(tmp.path()), before);
        }
        QDir::setCurrent(current);
    }

    void hostileNamesStayInsideAndIntact()
    {
        QTemporaryDir tmp;
        const QString path = tmp.filePath(QStringLiteral("Projet"));
        const QString outside = tmp.filePath(QStringLiteral("outside"));
        QVERIFY(QDir().mkpath(outside));
        const QStringList names{
            "../../évasion",   "a/b\\c", "..", ".", "/etc/passwd", "O'Brien \"best\"", "x'); DROP TABLE objects;--",
            "Puits Hédé Ω 井", "CON"};
        const QString analysesRoot = path + QLatin1Char('/') + VNObject2Analysis::folderName();
        QStringList stored;
        VNObject2Project project(QStringLiteral("Projet"));
        {
            auto db = boundTo(path, &project);
            QVERIFY(db);
            const Sedra::TMutableObject* datasetRecord = datasetsOf(*db)->createDataset(QStringLiteral("d'un \"jeu\""));
            QVERIFY(datasetRecord);
            const auto* dataset = static_cast<const VNObject2Dataset*>(datasetRecord->object());
            for (const QString& name : names) {
                const Sedra::TFileObject* analysis = analysesOf(*db)->createAnalysis(name);
                QVERIFY2(analysis, qPrintable(name));
                const QString folder = db->objectFolderPath(analysis->object(), true);
                QVERIFY2(QFileInfo(folder).isDir(), qPrintable(folder));
                QCOMPARE(QFileInfo(folder).dir().absolutePath(), analysesRoot);
                QVERIFY2(wellsOf(*db)->createWell(name), qPrintable(name));
                QVERIFY2(variablesOf(*db)->createVariable(dataset, name, name, QStringLiteral("réf")),
                         qPrintable(name));
            }
            // Folders found on disk with such names are registered as they are.
            QVERIFY(QDir().mkpath(analysesRoot + QStringLiteral("/Robert'); DROP TABLE objects;--")));
            QVERIFY(QDir().mkpath(analysesRoot + QStringLiteral("/Échantillon 井")));
            db->synchronizeSQLRoot();
            QCOMPARE(db->lastSynchronization().registered.size(), 2);
            stored = contents(*db);
            QCOMPARE(stored.size(), 1 + 3 * names.size() + 2);
        }
        // Nothing was made beside the project folder.
        QCOMPARE(QDir(tmp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
                 QStringList({QStringLiteral("Projet"), QStringLiteral("outside")}));
        QVERIFY(QDir(outside).isEmpty());

        auto db = boundTo(path, &project);
        QVERIFY(db);
        QCOMPARE(contents(*db), stored);
        for (const QString& name : names) {
            QVERIFY2(analysesOf(*db)->getAnalysis(name), qPrintable(name));
            QVERIFY2(wellsOf(*db)->getWell(name), qPrintable(name));
            QCOMPARE(db->getReferenceName(name, QStringLiteral("réf")), name);
        }
        QVERIFY(analysesOf(*db)->getAnalysis(QStringLiteral("Robert'); DROP TABLE objects;--")));
    }

    void storedPathsCannotLeadOutside()
    {
        const MadeProject made;
        QVERIFY(made.ok());
        const QString& path = made.path;
        // Another program rewrote the stored folder of the analysis.
        QCOMPARE(runOutside(headerFile(path), QStringLiteral("UPDATE objects SET path = ? WHERE type = ?"),
                            {QStringLiteral("../../outside/Run 1/Run 1.tcm"), int(VNObjectTypeAnalysis)}),
                 1);

        VNObject2Project project(QStringLiteral("Projet"));
        auto db = boundTo(path, &project);
        QVERIFY(db);
        const VNObject2Analysis* run = analysesOf(*db)->getAnalysis(QStringLiteral("Run 1"));
        QVERIFY(run);
        const QString folder = db->objectFolderPath(run, true);
        QVERIFY2(folder.isEmpty() || folder.startsWith(path + QLatin1Char('/')), qPrintable(folder));
        db->synchronizeSQLRoot();
        QCOMPARE(QDir(made.tmp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("Projet"));
    }

    void geolocalizationNextToEachObject()
    {
        const MadeProject made;
        QVERIFY(made.ok());
        const QString& path = made.path;
        VNObject2Project project(QStringLiteral("Projet"));
        auto db = boundTo(path, &project);
        QVERIFY(db);
        const VNObject2* run = analysesOf(*db)->getAnalysis(QStringLiteral("Run 1"));
        const VNObject2* well = wellsOf(*db)->getWell(QStringLiteral("Puits-1"));
        QVERIFY(run && well);
        const VNObject2* hostile = wellsOf(*db)->createWell(QStringLiteral("../Évasion"))->object();

        const TLocalization nantes(47.2184, -1.5536, 12.5);
        const TLocalization sydney(-33.8688, 151.2093);
        TRecordingLogger log;
        QVERIFY(db->setObjectGeolocalization(run, nantes));
        QVERIFY(db->setObjectGeolocalization(well, sydney));
        QVERIFY(db->setObjectGeolocalization(hostile, sydney));
        QVERIFY(db->setObjectGeolocalization(&project, TLocalization(0.0, 0.0)));
        QCOMPARE(log.count(), 0);

        // Each object has a file of its own: two wells never share one.
        const QString runFile = db->objectFolderPath(run, false) + QStringLiteral("/localization.kml");
        const QString wellFile
            = path + QLatin1Char('/') + VNObject2Well::folderName() + QStringLiteral("/Puits-1/localization.kml");
        QVERIFY(QFileInfo::exists(runFile));
        QVERIFY(QFileInfo::exists(wellFile));
        QVERIFY(QFileInfo::exists(path + QStringLiteral("/localization.kml")));
        for (const QString& file : snapshot(made.tmp.path()).keys())
            QVERIFY2(file.startsWith(QStringLiteral("Projet")), qPrintable(file));

        QString placeName;
        const TLocalization read = TLocalization::fromKml(readFile(runFile), &placeName);
        QCOMPARE(placeName, QStringLiteral("Run 1"));
        QCOMPARE(QList<double>({read.latitude(), read.longitude(), read.altitude()}),
                 QList<double>({47.2184, -1.5536, 12.5}));
        QCOMPARE(db->getObjectGeolocalization(well).latitude(), -33.8688);
        QCOMPARE(db->getObjectGeolocalization(hostile).longitude(), 151.2093);
        QCOMPARE(db->getObjectGeolocalization(&project).latitude(), 0.0);

        // Rewritten in place, and still there once the project is reopened.
        QVERIFY(db->setObjectGeolocalization(run, sydney));
        db.reset();
        db = boundTo(path, &project);
        QVERIFY(db);
        run = analysesOf(*db)->getAnalysis(QStringLiteral("Run 1"));
        QCOMPARE(db->getObjectGeolocalization(run).latitude(), -33.8688);

        // Refusals write nothing: no object, a position off the globe, an
        // object of another database.
        const QMap<QString, QByteArray> before = snapshot(path);
        VNObject2Well stranger(QStringLiteral("Puits-9"));
        QVERIFY(!db->setObjectGeolocalization(nullptr, nantes));
        QVERIFY(!db->setObjectGeolocalization(&stranger, nantes));
        for (const TLocalization& off :
             {TLocalization(), TLocalization(90.5, 0.0), TLocalization(0.0, -181.0), TLocalization(qQNaN(), 0.0)})
            QVERIFY(!db->setObjectGeolocalization(run, off));
        QVERIFY(!db->getObjectGeolocalization(&stranger).isValid());
        QVERIFY(!db->getObjectGeolocalization(nullptr).isValid());
        QCOMPARE(snapshot(path), before);

        // A damaged file reads as no position.
        QVERIFY(
            writeFile(runFile, "<kml><Placemark><Point><coordinates>abc,def</coordinates></Point></Placemark></kml>"));
        QVERIFY(!db->getObjectGeolocalization(run).isValid());
    }

    void viewerDocumentsAndBrowser()
    {
        QTemporaryDir tmp;
        TRecordingLogger log;
        const QString good = tmp.filePath(QStringLiteral("vue.xml"));
        QVERIFY(writeFile(good, "<viewer version=\"2\"><axis name=\"Pr/Ph\"/></viewer>"));
        bool ok = false;
        const QDomElement element = VNDatabase::getModelViewer(good, &ok);
        QVERIFY(ok);
        QCOMPARE(element.tagName(), QStringLiteral("viewer"));
        QCOMPARE(element.firstChildElement().attribute(QStringLiteral("name")), QStringLiteral("Pr/Ph"));
        // The file's document is gone; the element can still grow.
        QVERIFY(!element.ownerDocument().isNull());

        const QString broken = tmp.filePath(QStringLiteral("cassé.xml"));
        QVERIFY(writeFile(broken, "<viewer><axis></viewer>"));
        for (const QString& bad : {broken, tmp.filePath(QStringLiteral("absent.xml")), tmp.path()}) {
            ok = true;
            QVERIFY(VNDatabase::getModelViewer(bad, &ok).isNull());
            QVERIFY(!ok);
        }
        QVERIFY(VNDatabase::getModelViewer(good, nullptr).isElement());
        QCOMPARE(log.count(), 0);

        // The browser is started from the application's folder, told nothing.
        VNDatabase db(Sedra::DatabaseProject);
        if (!TApplicationData::getInstance())
            QVERIFY(!db.openSQLBase());
        TApplicationData data;
        data.setApplicationRootPath(tmp.path());
        QVERIFY(!db.openSQLBase());
        const QString program = tmp.path() + QDir::separator() + QStringLiteral("bin\\sqlbrowser.exe");
        QVERIFY(writeFile(program,
                          "#!/bin/sh\necho \"$#\" > \"$(dirname \"$0\")/started.tmp\"\n"
                          "mv \"$(dirname \"$0\")/started.tmp\" \"$(dirname \"$0\")/started\"\n"));
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(db.openSQLBase());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(tmp.filePath(QStringLiteral("started"))), 10000);
        QCOMPARE(readFile(tmp.filePath(QStringLiteral("started"))), QByteArray("0\n"));
    }
};

QTEST_GUILESS_MAIN(TestVNDatabase)
#include "tst_vndatabase.moc"
