// Reference databases on real files: where they live, how the factory makes
// them, how the manager owns them, and what survives a close and a reopening.
#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <tapplicationdata.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <theadertoviconnector.h>
#include <trecordinglogger.h>
#include <ttovialias.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <ttoviratio.h>
#include <ttranslator.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vndatabasetovimgr.h>
#include <vnobject2tovicompound.h>

#include "tst_vndatabasetovihelpers.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using ToviTest::addCompound;
using ToviTest::makeTovi;

namespace {
bool writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class TestToviLifecycle : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { TTranslator::install(QStringLiteral("en")); }
    void init() { ToviTest::useNewFolder(m_data, m_dir); }
    void cleanup()
    {
        VNDatabaseToviMGR::clear();
        m_data.reset();
        m_dir.reset();
        qunsetenv("VARNELDIR");
        TTranslator::install(QStringLiteral("en"));
    }

    void locatedByEitherNamedValue()
    {
        // "TOVIDBDIR" is taken as it stands.
        {
            TRecordingLogger log;
            std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviDelivered, false));
            QVERIFY(db);
            QCOMPARE(db->getCurrentWorkingPath(), QDir::cleanPath(m_dir->path()));
            QVERIFY(log.contains(MessageLoggerInterface::LevelDebug,
                                 QStringLiteral("starting ToDB with path = ") + m_dir->path()));
            QVERIFY(QFileInfo::exists(db->getConnector()->getDbFilename()));
        }
        // Without it, the application root "VARNELDIR" (from the settings or
        // the environment) and the resource folder below it.
        m_data->removeValue(QStringLiteral("TOVIDBDIR"));
        const QString root = m_dir->filePath(QStringLiteral("Varnel root"));
        QDir().mkpath(root);
        qputenv("VARNELDIR", root.toUtf8());
        TRecordingLogger log;
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser, false));
        QVERIFY(db);
        QCOMPARE(m_data->getString(QStringLiteral("VARNELDIR")), root);
        QVERIFY(log.contains(MessageLoggerInterface::LevelDebug,
                             QStringLiteral("starting ToDB with path = ") + root
                                 + QStringLiteral("\\Libraries\\Internal\\ToVI\\Ressources")));
        const QString expected = root + QStringLiteral("/Libraries/Internal/ToVI/Ressources");
        QCOMPARE(db->getCurrentWorkingPath(), expected);
        QVERIFY(QFileInfo(expected).isDir());
        QCOMPARE(QFileInfo(db->getConnector()->getDbFilename()).absolutePath(), expected);
    }

    void withoutAFolderNothingIsCreated_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("settings");
        QTest::addColumn<QStringList>("warnings");
        QTest::newRow("en") << "en" << true
                            << QStringList{"The reference databases have no folder: neither TOVIDBDIR nor VARNELDIR "
                                           "is set"};
        QTest::newRow("fr") << "fr" << true
                            << QStringList{"Les bases de référence n'ont pas de dossier : ni TOVIDBDIR ni VARNELDIR "
                                           "n'est défini"};
        QTest::newRow("no application settings, silently") << "en" << false << QStringList();
    }

    // An unset root must not turn into folders hanging from "/".
    void withoutAFolderNothingIsCreated()
    {
        QFETCH(QString, language);
        QFETCH(bool, settings);
        QFETCH(QStringList, warnings);
        m_data->removeValue(QStringLiteral("TOVIDBDIR"));
        if (!settings)
            m_data.reset();
        qunsetenv("VARNELDIR");
        const bool rootHadIt = QFileInfo::exists(QStringLiteral("/Libraries"));
        TTranslator::install(language);
        TRecordingLogger log;
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser, false));
        QVERIFY(db);
        QVERIFY(db->getCurrentWorkingPath().isEmpty());
        QVERIFY(!db->getConnector());
        QCOMPARE(log.messages(MessageLoggerInterface::LevelWarning), warnings);
        QCOMPARE(QFileInfo::exists(QStringLiteral("/Libraries")), rootHadIt);
        // Its operations answer neutrally, without saying it again.
        QVERIFY(db->serialNumber().isNull());
        QVERIFY(db->readSerialNumber().isNull());
        QVERIFY(!db->createEIC(QStringLiteral("m/z 191"), QStringLiteral("191")));
        QVERIFY(db->getAllIons().isEmpty());
        QCOMPARE(log.messages(MessageLoggerInterface::LevelWarning), warnings);
    }

    // The factory makes three databases, each with a file of its own in the
    // one folder; what one of them stores survives closing and reopening.
    void registeredLoadedFlushedClosedAndReopened()
    {
        VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
        QSet<QString> files;
        for (Sedra::DatabaseType type :
             {Sedra::DatabaseToviDelivered, Sedra::DatabaseToviUser, Sedra::DatabaseToviMerged}) {
            VNDatabaseTovi* db = makeTovi(type, false);
            QVERIFY(db);
            QCOMPARE(int(db->getDatabaseType()), type);
            QVERIFY(dynamic_cast<Sedra::THeaderToviConnector*>(db->getConnector()));
            files << db->getConnector()->getDbFilename();
            QCOMPARE(QFileInfo(db->getConnector()->getDbFilename()).absolutePath(), QDir::cleanPath(m_dir->path()));
            // A fresh connector belongs to the caller and opens nothing.
            std::unique_ptr<Sedra::THeaderConnector> fresh(db->getNewConnector());
            QVERIFY(dynamic_cast<Sedra::THeaderToviConnector*>(fresh.get()));
            QVERIFY(!fresh->isOpen());
            QVERIFY(db->loadDatabase());
            manager->setDb(db);
            QCOMPARE(manager->db(type), static_cast<VNToviDatabaseInterface*>(db));
        }
        QCOMPARE(files.size(), 3);
        auto* user = dynamic_cast<VNDatabaseTovi*>(manager->db(Sedra::DatabaseToviUser));
        QVERIFY(user);
        const QString awkward = QStringLiteral("17\u03b1(H),21\u03b2(H)-hopane \"C30\"; it's 'x'");
        Sedra::TToviCompound* compound = addCompound(user, "USR-1", awkward, "H30;C30");
        QVERIFY(compound);
        QVERIFY(user->createEIC("m/z 191", "191"));
        QVERIFY(user->createJoint("USR-1", "m/z 191", "hopane 191"));
        QVERIFY(user->createRatio("R-1", "Ts/(Ts+Tm)", "Ts/(Ts+Tm)", "Ts/(Ts+Tm)", 3, "Maturity", "GC-MS",
                                  "Peak height ratio", "Hopanes", "191", "Seifert and Moldowan 1978"));
        const QString longValue(20000, QChar(0x00e9));
        QVERIFY(user->aliasCreate(compound->compound(), "CAS", "Vendor; \"B\"", longValue));
        QVERIFY(user->getConnector()->setSerialNumber(QStringLiteral("USR-42")));
        QVERIFY(user->flush());

        manager->closeDb(Sedra::DatabaseToviUser);
        QVERIFY(!manager->db(Sedra::DatabaseToviUser));
        VNDatabaseTovi* reopened = makeTovi(Sedra::DatabaseToviUser, false);
        QVERIFY(reopened->loadDatabase());
        manager->setDb(reopened);
        QCOMPARE(reopened->serialNumber(), QStringLiteral("USR-42"));
        // Read through a connection of its own, gone afterwards.
        QCOMPARE(reopened->readSerialNumber(), QStringLiteral("USR-42"));
        QVERIFY(!QSqlDatabase::contains(reopened->getConnector()->getDbFilename()));
        const VNObject2* found = reopened->getCompound(QStringLiteral("USR-1"));
        QVERIFY(found);
        QCOMPARE(found->name(), awkward);
        QCOMPARE(reopened->getCompoundByToViKey({QStringLiteral("H30"), QStringLiteral("C30")})->object(), found);
        QCOMPARE(reopened->getAllIons().size(), 1);
        QCOMPARE(reopened->getAllJoints().size(), 1);
        QCOMPARE(reopened->getAllRatios().size(), 1);
        QCOMPARE(reopened->getRatio(QStringLiteral("R-1"))->name(), QStringLiteral("Ts/(Ts+Tm)"));
        Sedra::TToviAlias* alias
            = reopened->getAlias(dynamic_cast<const VNObject2Tovi*>(found), "CAS", "Vendor; \"B\"");
        QVERIFY(alias);
        QCOMPARE(alias->getValue(), longValue);
        // The other databases of the folder saw none of it.
        QVERIFY(dynamic_cast<VNDatabaseTovi*>(manager->db(Sedra::DatabaseToviDelivered))->getAllCompounds().isEmpty());
        QVERIFY(dynamic_cast<VNDatabaseTovi*>(manager->db(Sedra::DatabaseToviMerged))->getAllCompounds().isEmpty());

        // close() forgets the memory only; loading brings everything back.
        reopened->close();
        QVERIFY(reopened->getAllCompounds().isEmpty());
        QVERIFY(reopened->loadDatabase());
        QCOMPARE(reopened->getAllCompounds().size(), 1);
        // So does binding a project: the database is emptied and read again.
        QVERIFY(!reopened->setProject(nullptr));
        QVERIFY(reopened->getAllCompounds().isEmpty());
        QVERIFY(reopened->loadDatabase());
        QCOMPARE(reopened->getAllCompounds().size(), 1);

        // A file gone under the database has an empty serial, not a null one.
        QVERIFY(QFile::remove(reopened->getConnector()->getDbFilename()));
        const QString missing = reopened->readSerialNumber();
        QVERIFY(!missing.isNull() && missing.isEmpty());
    }

    void managerOwnsWhatItKeeps()
    {
        VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
        QVERIFY(!manager->db(Sedra::DatabaseToviUser));
        manager->closeDb(Sedra::DatabaseToviUser); // nothing registered: nothing happens
        manager->setDb(nullptr);
        QPointer<VNDatabaseTovi> first(makeTovi(Sedra::DatabaseToviUser, false));
        QPointer<VNDatabaseTovi> second(makeTovi(Sedra::DatabaseToviUser, false));
        manager->setDb(first);
        manager->setDb(second);
        QCOMPARE(manager->db(Sedra::DatabaseToviUser), static_cast<VNToviDatabaseInterface*>(first.data()));
        QVERIFY(second); // refused, not deleted: still the caller's
        delete second.data();
        QPointer<VNDatabaseTovi> merged(makeTovi(Sedra::DatabaseToviMerged, false));
        manager->setDb(merged);
        manager->closeDb(Sedra::DatabaseToviUser);
        QVERIFY(!first);
        QVERIFY(!manager->db(Sedra::DatabaseToviUser));
        QVERIFY(merged);
        VNDatabaseToviMGR::clear();
        QVERIFY(!merged);
        QVERIFY(!VNDatabaseToviMGR::isInstanciated());
        VNDatabaseToviMGR::clear(); // twice is harmless
    }

    void damagedFileIsRefusedWithAMessage()
    {
        const QString file = m_dir->filePath(Sedra::THeaderConnector::fileNameForType(Sedra::DatabaseToviUser));
        QVERIFY(writeFile(file, QByteArray("this is not a database at all").repeated(100)));
        const QByteArray before = readFile(file);
        TRecordingLogger log;
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser, false));
        QVERIFY(db);
        QVERIFY(log.messages(MessageLoggerInterface::LevelWarning).join('\n').contains(QFileInfo(file).fileName()));
        QVERIFY(!db->createEIC(QStringLiteral("m/z 57"), QStringLiteral("57")));
        QVERIFY(!addCompound(db.get(), QStringLiteral("C1"), QStringLiteral("pristane"), QStringLiteral("Pr")));
        QVERIFY(db->getAllCompounds().isEmpty());
        QVERIFY(db->readSerialNumber().isEmpty());
        db.reset();
        QCOMPARE(readFile(file), before); // the damaged file is left as it was
    }

    void loadingAgainSeesWhatAnotherConnectionWrote()
    {
        std::unique_ptr<VNDatabaseTovi> first(makeTovi(Sedra::DatabaseToviUser, false));
        QVERIFY(first->loadDatabase());
        QVERIFY(addCompound(first.get(), QStringLiteral("C1"), QStringLiteral("pristane"), QStringLiteral("Pr")));
        // Nothing new on file but our own writing: nothing doubled.
        QVERIFY(first->loadDatabase());
        QCOMPARE(first->getAllCompounds().size(), 1);

        // Another database of the same file writes through its own connection.
        std::unique_ptr<VNDatabaseTovi> second(makeTovi(Sedra::DatabaseToviUser, false));
        QVERIFY(second->loadDatabase());
        QCOMPARE(second->getAllCompounds().size(), 1);
        QVERIFY(addCompound(second.get(), QStringLiteral("C2"), QStringLiteral("phytane"), QStringLiteral("Ph")));
        QVERIFY(first->loadDatabase());
        QCOMPARE(first->getAllCompounds().size(), 2);
        QVERIFY(first->getCompound(QStringLiteral("C2")));
    }

    void removeAllObjectsEmptiesTheFile()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser, false));
        Sedra::TToviCompound* compound = addCompound(db.get(), "C1", "phytane", "Ph");
        QVERIFY(compound);
        QVERIFY(db->createEIC("m/z 183", "183"));
        QVERIFY(db->createJoint("C1", "m/z 183", QString()));
        QVERIFY(db->aliasCreate(compound->compound(), "CAS", "V", "638-36-8"));
        QVERIFY(db->removeAllObjects());
        QVERIFY(db->getAllCompounds().isEmpty() && db->getAllAlias().isEmpty());
        db.reset(makeTovi(Sedra::DatabaseToviUser));
        QVERIFY(db->getAllCompounds().isEmpty() && db->getAllIons().isEmpty());
        QVERIFY(db->getAllJoints().isEmpty() && db->getAllAlias().isEmpty());
    }

    void pathsOfObjectsAndTemp()
    {
        std::unique_ptr<VNDatabaseTovi> user(makeTovi(Sedra::DatabaseToviUser, false));
        QCOMPARE(user->getCurrentTempPath(), user->getCurrentWorkingPath() + QDir::separator() + "Temp");
        QVERIFY(!QFileInfo::exists(user->getCurrentTempPath()));

        QTemporaryDir other;
        m_data->setValue(QStringLiteral("TOVIDBDIR"), other.path());
        std::unique_ptr<VNDatabaseTovi> merged(makeTovi(Sedra::DatabaseToviMerged, false));
        Sedra::TToviCompound* compound = addCompound(user.get(), "C1", "pristane", "Pr");
        QVERIFY(compound);
        const VNObject2* obj = compound->object();
        const QString userPath = QDir::cleanPath(m_dir->path());
        const QString otherPath = QDir::cleanPath(other.path());
        // Asked through the other database: the file under that database, the
        // folder under the object's own one.
        QVERIFY(merged->objectFilePath(obj, true).startsWith(otherPath));
        QVERIFY(merged->objectFolderPath(obj, true).startsWith(userPath));
        QVERIFY(merged->objectFilePath(obj, false).startsWith(userPath));
        QVERIFY(VNDatabaseTovi::objectFilePath(obj).startsWith(userPath));
        QVERIFY(VNDatabaseTovi::objectFolderPath(obj).startsWith(userPath));
        QVERIFY(VNDatabaseTovi::objectFilePath(nullptr).isEmpty());
        QVERIFY(merged->objectFolderPath(nullptr, true).isEmpty());
    }

    void scanningFolders()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(Sedra::DatabaseToviUser, false));
        // Reference kinds have no folder of their own.
        QVERIFY(db->scanDir(VNObjectTypeCompound, true).isEmpty());
        const QString folder = m_dir->filePath(QStringLiteral("scan/deep"));
        for (const QString& language : {QStringLiteral("en"), QStringLiteral("fr")}) {
            TTranslator::install(language);
            const QString path = folder + language;
            TRecordingLogger log;
            QVERIFY(db->scanDir(path, true).isEmpty());
            QVERIFY(QFileInfo(path).isDir());
            const bool en = language == QLatin1String("en");
            QVERIFY(
                log.contains(MessageLoggerInterface::LevelInformation,
                             (en ? QStringLiteral("Project structure is obsolete - Adding directory <b>%1</b>")
                                 : QStringLiteral("La structure du projet est obsolète - Ajout du dossier <b>%1</b>"))
                                 .arg(path)));

            // A folder that cannot be made (a file stands in its way) says so
            // twice, and lists nothing.
            const QString blocker = m_dir->filePath(QStringLiteral("blocker-") + language);
            QVERIFY(writeFile(blocker, "not a folder"));
            const QString blocked = blocker + QStringLiteral("/graphs");
            log.clear();
            QVERIFY(db->scanDir(blocked, true).isEmpty());
            QVERIFY(log.contains(MessageLoggerInterface::LevelInformation,
                                 (en ? QStringLiteral("Error while creating directory <b>%1</b>")
                                     : QStringLiteral("Echec de création du répertoire <b>%1</b>"))
                                     .arg(blocked)));
            QVERIFY(log.contains(MessageLoggerInterface::LevelWarning,
                                 (en ? QStringLiteral("The directory <b>%1</b> is unreadable or does not exist")
                                     : QStringLiteral("Le répertoire <b>%1</b> n'est pas accessible"))
                                     .arg(blocked)));
            QVERIFY(db->scanDir(blocked, true, QString(), true).isEmpty());
            QVERIFY(QFileInfo(blocker).isFile());
        }

        const QString path = m_dir->filePath(QStringLiteral("graphs"));
        for (const char* name : {"/sterane.xml", "/hopane.XML", "/.hidden", "/sub.d/inside.xml"})
            QVERIFY(writeFile(path + name, "<g/>"));
        QVERIFY(writeFile(path + "/empty.xml", ""));
        const auto sorted = [](QStringList names) {
            names.sort();
            return names;
        };
        // Folders count when they report a size, as they do here.
        QCOMPARE(sorted(db->scanDir(path, true)), (QStringList{"hopane.XML", "sterane.xml", "sub.d"}));
        QCOMPARE(sorted(db->scanDir(path, true, QString(), true)), (QStringList{"hopane.XML", "sterane.xml", "sub.d"}));
        QCOMPARE(sorted(db->scanDir(path, false)), (QStringList{"hopane", "sterane", "sub"}));
        // Suffixes compare case-sensitively.
        QCOMPARE(db->scanDir(path, false, QStringLiteral("xml"), false), QStringList{"sterane"});
        // A missing folder is made silently.
        TRecordingLogger log;
        QVERIFY(db->scanDir(path + "/new", true, QString(), true).isEmpty());
        QVERIFY(QFileInfo(path + "/new").isDir());
        QCOMPARE(log.count(), 0);
    }

    void copyingFolders()
    {
        const QString source = m_dir->filePath(QStringLiteral("source"));
        const QString target = m_dir->filePath(QStringLiteral("target"));
        QVERIFY(!VNDatabaseTovi::copyDirectory(m_dir->filePath("missing"), target, true, {}, true));
        QVERIFY(!QFileInfo::exists(target));

        for (const char* name : {"/a.xml", "/b.txt", "/README", "/sub/c.xml"})
            QVERIFY(writeFile(source + name, "x"));
        QVERIFY(writeFile(source + "/empty.xml", ""));
        QVERIFY(VNDatabaseTovi::copyDirectory(source + "/", target + "/", false, {QStringLiteral("xml")}, false));
        QVERIFY(QFileInfo::exists(target + "/a.xml"));
        QVERIFY(!QFileInfo::exists(target + "/b.txt"));
        QVERIFY(!QFileInfo::exists(target + "/empty.xml")); // empty, even with the right suffix
        QVERIFY(!QFileInfo::exists(target + "/sub"));

        // An existing target is left alone unless overwriting is asked for.
        QVERIFY(writeFile(source + "/a.xml", "changed"));
        QVERIFY(!VNDatabaseTovi::copyDirectory(source, target, false, {}, true));
        QVERIFY(!QFileInfo::exists(target + "/b.txt"));
        QVERIFY(VNDatabaseTovi::copyDirectory(source, target, true, {}, true));
        QCOMPARE(readFile(target + "/a.xml"), QByteArray("changed"));
        QVERIFY(QFileInfo::exists(target + "/b.txt"));
        QVERIFY(QFileInfo::exists(target + "/README"));
        QVERIFY(QFileInfo::exists(target + "/sub/c.xml"));
    }

private:
    std::unique_ptr<TApplicationData> m_data;
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(TestToviLifecycle)
#include "tst_vndatabasetovi.moc"
