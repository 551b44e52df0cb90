// The header database on real files: what is written, flushed or not, comes
// back after a close, damaged or foreign files are refused without a crash
// and without being touched, a read-only database leaves its folder exactly
// as it was, and a removal is one transaction.

#include "sedra_testproject.h"

#include <tanalysismapper.h>
#include <tcompoundmapper.h>
#include <tdatabaseobject.h>
#include <tdatasetmapper.h>
#include <tdbtransaction.h>
#include <tfileobject.h>
#include <tindexationmapper.h>
#include <tmutableobject.h>
#include <tpropertyobject.h>
#include <tsignalmapper.h>
#include <tvariablemapper.h>
#include <twellmapper.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2signal.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

#include "categorymessages.h"
#include <testfiles.h>

#include <QTemporaryDir>

#include <QtTest>

using namespace Sedra;

namespace {

QString runName(int i)
{
    return QString("Run %1").arg(i, 4, 10, QLatin1Char('0'));
}

// A project with one record of most kinds, written to its header; false
// when any of them could not be made.
bool fillProject(TestProject& p)
{
    TMutableObject* well = p.wells()->createWell("Well 7/11-A");
    if (!well)
        return false;
    well->setProperty("Depth", "3412.5");
    TFileObject* analysis = p.analyses()->createAnalysis("Oil 12");
    if (!analysis)
        return false;
    const auto* oil = static_cast<const VNObject2Analysis*>(analysis->object());
    if (!p.analyses()->setModulation(oil, 6.25) || !p.signalMapper()->createSignal(oil, "TIC"))
        return false;
    auto* m191 = p.signalMapper()->createSignal(oil, "m/z 191");
    if (!m191
        || !p.signalMapper()->setSignalIonList(static_cast<const VNObject2Signal*>(m191->object()), {191.0f, 217.0f}))
        return false;
    TMutableObject* dataset = p.datasets()->createDataset("Biomarkers");
    return dataset
        && p.variables()->createVariable(static_cast<const VNObject2Dataset*>(dataset->object()), "Pr/Ph", "R-PRPH",
                                         "C-PRISTANE")
        && p.mapper<TCompoundMapper>(VNObjectTypeCompound)->createCompound("Pristane", "1921-70-6", "C19H40")
        && p.mapper<TIndexationMapper>(VNObjectTypeIndexation)->createIndexation("Steranes", {"Oil 12", "Rock, 2"});
}

// Adds `count` analyses, each with a TIC, to make a header of many pages;
// false when one could not be made or written.
bool addAnalyses(TestProject& p, int count)
{
    for (int i = 0; i < count; ++i) {
        TFileObject* made = p.analyses()->createAnalysis(runName(i), false);
        if (!made)
            return false;
        made->setProperty("Comment", QString(40, QLatin1Char('x')));
        if (!p.signalMapper()->createSignal(static_cast<const VNObject2Analysis*>(made->object()), "TIC", false))
            return false;
    }
    return p.db->headerDb()->flushDatabase();
}

} // namespace

class TestHeaderDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init() { TTranslator::install("en"); }

    void writtenRecordsComeBackAfterClose()
    {
        QTemporaryDir dir;
        qint64 wellId = -1;
        {
            TestProject p(dir.path());
            QVERIFY(p.opened);
            QVERIFY(fillProject(p));
            wellId = p.wells()->record("Well 7/11-A")->id();
            QVERIFY(wellId >= 0);
            // Left unflushed: written at close.
            QVERIFY(p.wells()->createWell("W1", false));
            QVERIFY(p.db->setObjectProperty(p.wells()->get("W1"), "Field", "Troll", false));
            QVERIFY(p.db->headerDb()->hasPendingChanges());
            QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeWell), 1);
        }
        TestProject p(dir.path());
        QVERIFY(p.opened);
        QCOMPARE(p.db->headerDb()->objectCount(), 9);
        QVERIFY(!p.db->headerDb()->hasPendingChanges());
        bool found = false;
        QCOMPARE(p.db->getObjectProperties(p.wells()->get("W1"), "Field", &found).value(), "Troll");
        QVERIFY(found);

        const auto* well = dynamic_cast<TPropertyObject*>(p.wells()->record("Well 7/11-A"));
        QVERIFY(well);
        QCOMPARE(well->id(), wellId);
        QCOMPARE(well->property("Depth"), "3412.5");
        QVERIFY(dynamic_cast<const VNObject2Well*>(well->object()));
        QCOMPARE(well->object()->db(), p.db.get());

        const VNObject2Analysis* oil = p.analyses()->getAnalysis("Oil 12");
        QVERIFY(oil);
        QCOMPARE(p.analyses()->modulation(oil), 6.25);
        auto* file = dynamic_cast<TFileObject*>(p.db->record(oil));
        QVERIFY(file);
        QCOMPARE(file->relativePath(), "Analyses/Oil 12/Oil 12.tcm");

        const VNObject2Signal* m191 = p.signalMapper()->getSignal("Oil 12", "m/z 191");
        QVERIFY(m191);
        QCOMPARE(m191->analysis(), oil);
        QCOMPARE(p.signalMapper()->signalIonList(m191), (QList<float>{191.0f, 217.0f}));
        QCOMPARE(p.signalMapper()->signalList(oil).size(), 2);

        const VNObject2Variable* prph = p.db->getReference("R-PRPH", "C-PRISTANE");
        QVERIFY(prph);
        QCOMPARE(prph->name(), "Pr/Ph");
        QVERIFY(!p.db->getReference("C-PRISTANE", "R-PRPH"));

        auto* compounds = p.mapper<TCompoundMapper>(VNObjectTypeCompound);
        QCOMPARE(compounds->getByCas("1921-70-6"), compounds->get("Pristane"));
        QCOMPARE(compounds->formula(compounds->get("Pristane")), "C19H40");

        auto* indexations = p.mapper<TIndexationMapper>(VNObjectTypeIndexation);
        QCOMPARE(indexations->analyses(indexations->get("Steranes")), (QStringList{"Oil 12", "Rock, 2"}));

        // Emptying the memory keeps the file; reading back gives the same records.
        p.db->clearDB();
        QCOMPARE(p.db->headerDb()->objectCount(), 0);
        QVERIFY(p.db->loadDatabase());
        QCOMPARE(p.db->headerDb()->objectCount(), 9);
        QVERIFY(p.wells()->get("W1"));
    }

    void serialNumber()
    {
        QTemporaryDir dir;
        {
            Sedra::TDatabase db(DatabaseProjectFolder);
            db.setWorkingPath(dir.path());
            db.headerDb()->setSerialNumber("1");
            QVERIFY(db.headerDb()->setCurrentProject(&db));
            QCOMPARE(db.getConnector()->serialNumber(), "1");
            // An empty serial is a serial too.
            db.headerDb()->setSerialNumber(QString(""));
            QVERIFY(db.getConnector()->serialNumber().isEmpty());
            QVERIFY(!db.getConnector()->serialNumber().isNull());
            db.headerDb()->setSerialNumber("2026-11-23 #7");
        }
        THeaderConnector reader;
        QCOMPARE(reader.readSerialNumberFromFile(QDir(dir.path()).filePath("project.sqlite")), "2026-11-23 #7");
        QCOMPARE(reader.readSerialNumberFromFile(QDir(dir.path()).filePath("missing.sqlite")), QString());
        QVERIFY(reader.readSerialNumber(nullptr).isEmpty());
    }

    // The row's name says how the header is damaged.
    void damagedHeaderIsRefused_data()
    {
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        const QString damaged = "not an SQLite database or is damaged";
        const QString damagedFr = "pas une base SQLite ou est endommagé";
        QTest::newRow("empty") << QString("the file is empty (0 bytes)") << QString("le fichier est vide (0 octet)");
        QTest::newRow("text") << damaged << damagedFr;
        QTest::newRow("truncated") << damaged << damagedFr;
        QTest::newRow("overwritten") << damaged << damagedFr;
        QTest::newRow("foreign") << QString("an SQLite database of another application")
                                 << QString("une base SQLite d'une autre application");
        QTest::newRow("newer") << QString("written by a newer version (schema 99)")
                               << QString("écrit par une version plus récente (schéma 99)");
        QTest::newRow("folder") << QString("the path is not a file") << QString("le chemin n'est pas un fichier");
    }

    void damagedHeaderIsRefused()
    {
        const QString damage = QTest::currentDataTag();
        QFETCH(QString, english);
        QFETCH(QString, french);
        QTemporaryDir dir;
        const QString header = QDir(dir.path()).filePath("project.sqlite");
        if (damage == "empty") {
            QVERIFY(writeFile(header, QByteArray()));
        } else if (damage == "text") {
            QVERIFY(writeFile(header, QByteArray("Sample;Depth\nOil 12;3412.5\n")));
        } else if (damage == "folder") {
            QVERIFY(QDir().mkpath(header));
        } else if (damage == "foreign") {
            QVERIFY(runSql(header, {"CREATE TABLE samples (name TEXT)"}).isValid());
        } else {
            {
                TestProject p(dir.path());
                QVERIFY(fillProject(p));
                QVERIFY(addAnalyses(p, 400));
            }
            QByteArray bytes = readAll(header);
            QVERIFY(bytes.size() > 16 * 4096);
            if (damage == "truncated")
                bytes.truncate(bytes.size() / 2);
            for (int i = 3 * 4096; damage == "overwritten" && i < 9 * 4096; ++i)
                bytes[i] = char(0xA5 ^ (i * 31));
            QVERIFY(writeFile(header, bytes));
            if (damage == "newer")
                QVERIFY(runSql(header, {"UPDATE meta SET value = '99' WHERE name = 'schema_version'"}).isValid());
        }
        const QMap<QString, QString> before = folderPicture(dir.path());

        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            TRecordingLogger logger;
            for (bool readOnly : {false, true}) {
                TestProject p(dir.path(), readOnly);
                QVERIFY2(!p.opened, qPrintable(damage));
                QVERIFY(!p.db->headerDb()->isOpen());
                const QString why = p.db->headerDb()->lastError();
                QVERIFY2(why.contains(language == "en" ? english : french), qPrintable(why));
                QVERIFY(!p.db->headerDb()->start());
                QVERIFY(!p.db->loadDatabase());
                QCOMPARE(p.db->headerDb()->objectCount(), 0);
            }
            const QStringList warnings = logger.messages(MessageLoggerInterface::LevelWarning);
            QCOMPARE(warnings.size(), 2);
            const QString opening = language == "en" ? "cannot be opened" : "ne peut pas être ouvert";
            QVERIFY2(warnings.first().contains(opening) && warnings.first().contains(header),
                     qPrintable(warnings.first()));
        }
        // A refused file is left exactly as it was found, for the user to rescue.
        QCOMPARE(folderPicture(dir.path()), before);
    }

    void readOnlyChangesNothingOnDisk()
    {
        QTemporaryDir dir;
        {
            TestProject p(dir.path());
            QVERIFY(fillProject(p));
        }
        // An analysis folder nobody registered: a writable database would add it.
        QVERIFY(QDir().mkpath(QDir(dir.path()).filePath("Analyses/Unregistered")));
        const QMap<QString, QString> before = folderPicture(dir.path());
        QTest::qWait(20); // a change would now show in the modification times too

        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            TRecordingLogger logger;
            TestProject p(dir.path(), true);
            QVERIFY(p.opened);
            QVERIFY(p.db->isReadOnly());
            QVERIFY(p.db->headerDb()->isReadOnly());
            QCOMPARE(p.db->headerDb()->objectCount(), 8);

            const VNObject2* well = p.wells()->get("Well 7/11-A");
            QVERIFY(well && well->isReadOnly());
            QVERIFY(!p.wells()->createWell("W2"));
            QVERIFY(!p.analyses()->createAnalysis("A2"));
            QVERIFY(!p.db->setObjectProperty(well, "Depth", "1", true));
            QVERIFY(!p.wells()->rename(well, "Renamed"));
            QVERIFY(!p.db->removeObject(well, true));
            QVERIFY(!p.wells()->remove(well, true, false));
            QList<TDatabaseObject*> records{p.db->record(well)};
            QVERIFY(!p.db->headerDb()->removeObjects(records, false));
            QVERIFY(p.db->record(well));
            // Changes made behind the mappers' back are not written either.
            p.db->record(well)->setModified(true);
            QVERIFY(!p.db->headerDb()->flushDatabase());
            QVERIFY(!p.db->headerDb()->saveObjectToFile(p.db->record(well), true));
            p.db->headerDb()->setSerialNumber("changed");
            p.db->synchronizeSQLRoot();
            QVERIFY(p.db->lastSynchronization().registered.isEmpty());
            QVERIFY(!p.analyses()->exists("Unregistered"));
            QVERIFY(p.db->objectFolderPath(well, true).endsWith("/Wells"));

            const QString refusal = language == "en"
                ? "Impossible to modify a <b>read only</b> database"
                : "Impossible de modifier une base de données en <b>lecture seule</b>";
            QVERIFY(logger.messages(MessageLoggerInterface::LevelWarning).contains(refusal));
            p.db->record(well)->setModified(false);
        }
        QCOMPARE(folderPicture(dir.path()), before);
    }

    void readOnlyWithoutHeaderCreatesNothing()
    {
        QTemporaryDir dir;
        const QString folder = QDir(dir.path()).filePath("never made");
        TRecordingLogger logger;
        TestProject p(folder, true);
        QVERIFY(!p.opened);
        QVERIFY(p.db->headerDb()->lastError().contains("does not exist"));
        QVERIFY(folderPicture(dir.path()).isEmpty());
    }

    void unwritableFolderOpensReadOnly()
    {
        QTemporaryDir dir;
        {
            TestProject p(dir.path());
            QVERIFY(fillProject(p));
        }
        QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        const bool enforced = !QFileInfo(dir.path()).isWritable();
        if (enforced) {
            const QMap<QString, QString> before = folderPicture(dir.path());
            TestProject p(dir.path());
            QVERIFY(p.opened);
            QVERIFY(p.db->isReadOnly());
            QVERIFY(!p.wells()->createWell("W2"));
            QCOMPARE(folderPicture(dir.path()), before);
        }
        QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        if (!enforced)
            QSKIP("file permissions are not enforced for this user");
    }

    void removalIsOneTransaction()
    {
        QTemporaryDir dir;
        TestProject p(dir.path());
        const auto* run = static_cast<const VNObject2Analysis*>(p.analyses()->createAnalysis("Run")->object());
        for (int i = 0; i < 30; ++i)
            QVERIFY(p.signalMapper()->createSignal(run, QString("S%1").arg(i)));
        const QString file = p.headerFile();
        QCOMPARE(rowsOfKind(file, VNObjectTypeSignal), 30);

        // Another program refuses the deletion of the last signal: the rows
        // already deleted in the same transaction must come back.
        QVERIFY(runSql(file,
                       {QStringLiteral("CREATE TRIGGER refuse BEFORE DELETE ON objects WHEN OLD.name = 'S29' "
                                       "BEGIN SELECT RAISE(ABORT, 'kept by another program'); END")})
                    .isValid());
        {
            // Why, for whoever debugs the storage: the header and SQLite's reason.
            CategoryMessages diagnostics;
            QVERIFY(!p.db->removeObject(run, true));
            const QStringList said = diagnostics.texts("vn.sedra", QtWarningMsg);
            QCOMPARE(said.size(), 1);
            QVERIFY2(said.first().contains(file) && said.first().contains("kept by another program"),
                     qPrintable(said.first()));
        }
        QCOMPARE(rowsOfKind(file, VNObjectTypeSignal), 30);
        QCOMPARE(rowsOfKind(file, VNObjectTypeAnalysis), 1);
        QCOMPARE(p.signalMapper()->signalList(run).size(), 30);
        QCOMPARE(p.db->headerDb()->objectCount(), 31);

        QVERIFY(runSql(file, {"DROP TRIGGER refuse"}).isValid());
        QVERIFY(p.db->removeObject(run, true));
        QCOMPARE(rowsOfKind(file, VNObjectTypeSignal), 0);
        QCOMPARE(rowsOfKind(file, VNObjectTypeAnalysis), 0);
        QCOMPARE(runSql(file, {"SELECT count(*) FROM properties"}).toInt(), 0);
        QCOMPARE(p.db->headerDb()->objectCount(), 0);
        QVERIFY(!p.signalMapper()->getSignal("Run", "S0"));
        QVERIFY(!p.analyses()->exists("Run"));

        // A transaction that is not committed leaves the file as it was.
        QVERIFY(p.wells()->createWell("W"));
        {
            TDbTransaction transaction(p.db->getConnector()->database());
            QVERIFY(transaction.isActive());
            QSqlQuery(p.db->getConnector()->database()).exec("DELETE FROM objects");
        }
        QCOMPARE(rowsOfKind(file, VNObjectTypeWell), 1);
    }

    void pendingRemovalGoesAtFlush()
    {
        QTemporaryDir dir;
        TestProject p(dir.path());
        QVERIFY(addAnalyses(p, 40));
        const QString file = p.headerFile();
        QVERIFY(p.db->removeObject(p.analyses()->get("Run 0007"), false));
        QVERIFY(!p.analyses()->exists("Run 0007"));
        QCOMPARE(rowsOfKind(file, VNObjectTypeAnalysis), 40);
        QVERIFY(p.db->headerDb()->hasPendingChanges());
        QVERIFY(p.db->headerDb()->flushDatabase());
        QCOMPARE(rowsOfKind(file, VNObjectTypeAnalysis), 39);
        QCOMPARE(rowsOfKind(file, VNObjectTypeSignal), 39);

        // Removing many records at once keeps the indexes of the others whole.
        QList<TDatabaseObject*> some;
        for (int i = 10; i < 30; ++i)
            some.append(p.analyses()->record(runName(i)));
        QVERIFY(p.db->headerDb()->removeObjects(some, true));
        QCOMPARE(p.analyses()->count(), 19);
        QCOMPARE(rowsOfKind(file, VNObjectTypeAnalysis), 19);
        QVERIFY(p.analyses()->get("Run 0009"));
        QVERIFY(p.analyses()->getByName("Run 0030"));
        QVERIFY(!p.analyses()->get("Run 0010"));
        // The signals of the removed analyses are still there: this removal was
        // of the analyses' records only.
        QCOMPARE(p.db->headerDb()->objectCount(VNObjectTypeSignal), 39);
        // A list naming a record twice is refused whole.
        TRecordingLogger quiet;
        QList<TDatabaseObject*> twice{p.analyses()->record("Run 0001"), p.analyses()->record("Run 0001")};
        QVERIFY(!p.db->headerDb()->removeObjects(twice, true));
        QVERIFY(p.analyses()->exists("Run 0001"));
    }

    void swappedNamesAndRepeatedPropertiesAreWritten()
    {
        // Changes made in memory that the file's constraints (one row per key,
        // one value per property name) would refuse row by row: the flush must
        // still succeed, or every later flush would fail on the same record.
        QTemporaryDir dir;
        {
            TestProject p(dir.path());
            TMutableObject* first = p.datasets()->createDataset("Steranes");
            TMutableObject* second = p.datasets()->createDataset("Hopanes");
            QVERIFY(first && second);
            QVERIFY(p.variables()->createVariable(static_cast<const VNObject2Dataset*>(first->object()),
                                                  "C29 20S/(20S+20R)", "R-S", "C-S"));
            QVERIFY(p.variables()->createVariable(static_cast<const VNObject2Dataset*>(second->object()), "Ts/(Ts+Tm)",
                                                  "R-H", "C-H"));
            // Swapped through a third name, nothing written until the flush.
            QVERIFY(p.datasets()->rename(first->object(), "Swap", false));
            QVERIFY(p.datasets()->rename(second->object(), "Steranes", false));
            QVERIFY(p.datasets()->rename(first->object(), "Hopanes", false));
            auto* well = p.wells()->createWell("W");
            QVERIFY(well);
            well->setPropertyList({TProperty("Depth", "1"), TProperty("Field", "Brent"), TProperty("Depth", "2")});
            QCOMPARE(well->properties().size(), 2);
            QCOMPARE(well->property("Depth"), "2");
            QVERIFY2(p.db->headerDb()->flushDatabase(), qPrintable(p.db->headerDb()->lastError()));
            QVERIFY(!p.db->headerDb()->hasPendingChanges());
        }
        TestProject p(dir.path());
        QCOMPARE(p.datasets()->count(), 2);
        const QList<const VNObject2Variable*> hopanes = p.variables()->variables(p.datasets()->getDataset("Hopanes"));
        const QList<const VNObject2Variable*> steranes = p.variables()->variables(p.datasets()->getDataset("Steranes"));
        QCOMPARE(hopanes.size(), 1);
        QCOMPARE(steranes.size(), 1);
        QCOMPARE(hopanes.first()->name(), "C29 20S/(20S+20R)");
        QCOMPARE(steranes.first()->name(), "Ts/(Ts+Tm)");
        QCOMPARE(runSql(p.headerFile(), {"SELECT count(*) FROM objects WHERE key LIKE '%moving%'"}).toInt(), 0);
        const auto* well = dynamic_cast<const TPropertyObject*>(p.wells()->record("W"));
        QVERIFY(well);
        QCOMPARE(well->properties(), (QList<TProperty>{TProperty("Depth", "2"), TProperty("Field", "Brent")}));
    }
};

QTEST_GUILESS_MAIN(TestHeaderDatabase)
#include "tst_theaderdatabase.moc"
