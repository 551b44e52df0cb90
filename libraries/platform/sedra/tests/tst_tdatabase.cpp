// The database over its folder: synchronisation with the analyses on disk,
// awkward names that must neither break SQL nor leave the project folder,
// mapper look-ups after a reload, and the deletion notice.

#include "sedra_testproject.h"

#include <tdatabaseobject.h>
#include <tfileobject.h>
#include <tidentificationmapper.h>
#include <tpeakdetectmapper.h>
#include <tpropertyobject.h>
#include <tslicemapper.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2signal.h>
#include <vnobject2variable.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace Sedra;

Q_DECLARE_METATYPE(QList<const VNObject2*>*)

namespace {

const VNObject2Analysis* asAnalysis(TDatabaseObject* record)
{
    return record ? static_cast<const VNObject2Analysis*>(record->object()) : nullptr;
}

bool isInside(const QString& path, const QString& root)
{
    const QString clean = QDir::cleanPath(path);
    return !path.isEmpty() && clean.startsWith(QDir::cleanPath(root) + QLatin1Char('/'));
}

} // namespace

class TestDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init() { TTranslator::install("en"); }

    void synchronizeRegistersAndKeepsMissing()
    {
        QTemporaryDir dir;
        const QDir root(dir.path());
        {
            TestProject p(dir.path());
            QVERIFY(p.analyses()->createAnalysis("Kept"));
            QVERIFY(p.analyses()->createAnalysis("Gone"));
            QVERIFY(p.db->objectFolderPath(p.analyses()->get("Kept"), true).endsWith("Analyses/Kept"));
        }
        // Found on disk: two analysis folders nobody registered, and a stray file.
        QVERIFY(root.mkpath("Analyses/Core 3"));
        QVERIFY(root.mkpath("Analyses/Huile brute é"));
        QVERIFY(writeFile(root.filePath("Analyses/notes.txt"), "not an analysis"));
        QVERIFY(writeFile(root.filePath("Analyses/Core 3/Core 3.tcm"), "data"));

        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            TRecordingLogger logger;
            TestProject p(dir.path());
            p.db->synchronizeSQLRoot();
            const TSyncReport& report = p.db->lastSynchronization();
            if (language == "en") {
                QCOMPARE(report.registered, (QStringList{"Core 3", "Huile brute é"}));
                auto* core = dynamic_cast<TFileObject*>(p.analyses()->record("Core 3"));
                QVERIFY(core);
                QCOMPARE(core->relativePath(), "Analyses/Core 3/Core 3.tcm");
                QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 4);
                QVERIFY(logger.messages(MessageLoggerInterface::LevelInformation)
                            .contains("Analysis <b>Core 3</b> found on disk was added to the project"));
            } else {
                // Registered the first time: nothing new now.
                QVERIFY(report.registered.isEmpty());
            }
            // The analysis whose folder vanished is reported, every time, and kept.
            QCOMPARE(report.missing, QStringList{"Gone"});
            QVERIFY(p.analyses()->exists("Gone"));
            QCOMPARE(p.analyses()->count(), 4);
            const QString missing = language == "en" ? "The folder of analysis <b>Gone</b> is missing"
                                                     : "Le dossier de l'analyse <b>Gone</b> est introuvable";
            const QStringList warnings = logger.messages(MessageLoggerInterface::LevelWarning);
            QCOMPARE(warnings.size(), 1);
            QVERIFY2(warnings.first().startsWith(missing), qPrintable(warnings.first()));
        }

        // A folder whose name an analysis elsewhere already has is not taken over.
        {
            TestProject p(dir.path());
            QVERIFY(p.analyses()->createAnalysisInFolder("Twin", "Analyses/Elsewhere", true));
            QVERIFY(root.mkpath("Analyses/Twin"));
            // Names another system reads as a drive or a separator are not stored.
            QVERIFY(root.mkpath("Analyses/C:run"));
            QVERIFY(root.mkpath("Analyses/back\\slash"));
            TRecordingLogger logger;
            p.db->synchronizeSQLRoot();
            QCOMPARE(p.db->lastSynchronization().skipped, (QStringList{"C:run", "Twin", "back\\slash"}));
            QVERIFY(p.db->lastSynchronization().registered.isEmpty());
            QVERIFY(!p.analyses()->exists("C:run"));
            QCOMPARE(dynamic_cast<TFileObject*>(p.analyses()->record("Twin"))->relativeFolderPath(),
                     "Analyses/Elsewhere");
        }
    }

    void synchronizeAskedBeforeMappersWaitsForThem()
    {
        // A database opened from its folder synchronises before it has its
        // mappers: the folders found must still be registered.
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath("Analyses/Early"));
        TRecordingLogger logger;
        TestProject p(dir.path(), false, false);
        QVERIFY(p.opened);
        p.db->synchronizeSQLRoot();
        QVERIFY(p.db->lastSynchronization().registered.isEmpty());
        p.db->setMapperFactory(&TestProject::factory());
        QCOMPARE(p.db->lastSynchronization().registered, QStringList{"Early"});
        QVERIFY(p.analyses()->exists("Early"));
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 1);
        // Once only: a new factory later does not synchronise again.
        QVERIFY(QDir(dir.path()).mkpath("Analyses/Later"));
        p.db->setMapperFactory(&TestProject::factory());
        QVERIFY(!p.analyses()->exists("Later"));
    }

    void awkwardNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("quotes") << "O'Brien \"deep\" `core`";
        QTest::newRow("sql") << "x'); DROP TABLE objects; --";
        QTest::newRow("parent") << "../../outside";
        QTest::newRow("dot dot") << "..";
        QTest::newRow("dot") << ".";
        QTest::newRow("separators") << "a/b\\c:d";
        QTest::newRow("absolute") << "/etc/passwd";
        QTest::newRow("non-ascii") << "Ölprobe №3 井 — 17α(H)-hopane";
        QTest::newRow("reserved") << "CON.txt";
        QTest::newRow("blanks") << "  trailing dots... ";
        QTest::newRow("control") << "tab\there\nline";
        QTest::newRow("long") << QString(300, QChar(0x00e9));
    }

    void awkwardNames()
    {
        QFETCH(QString, name);
        QTemporaryDir parent;
        const QString root = QDir(parent.path()).filePath("project");
        {
            TestProject p(root);
            QVERIFY(p.opened);
            TFileObject* analysis = p.analyses()->createAnalysis(name);
            QVERIFY(analysis);
            analysis->setProperty(name, name);
            QVERIFY(p.db->headerDb()->saveObjectToFile(analysis, true));
            QVERIFY(p.signalMapper()->createSignal(asAnalysis(analysis), name));
            QVERIFY(p.wells()->createWell(name));
            // Two names that make the same folder get two folders.
            QVERIFY(p.analyses()->createAnalysis(name + " "));
        }
        TestProject p(root);
        const VNObject2Analysis* analysis = p.analyses()->getAnalysis(name);
        QVERIFY(analysis);
        QCOMPARE(p.analyses()->getByName(name), analysis);
        bool found = false;
        QCOMPARE(p.db->getObjectProperties(analysis, name, &found).value(), name);
        QVERIFY(found);
        const VNObject2Signal* signal = p.signalMapper()->getSignal(name, name);
        QVERIFY(signal);
        QCOMPARE(signal->analysis(), analysis);
        QVERIFY(p.wells()->getWell(name));
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 2);

        // Every path made from the name stays inside the project folder.
        const QString folder = p.db->objectFolderPath(analysis, true);
        QVERIFY2(isInside(folder, root + "/Analyses"), qPrintable(folder));
        QVERIFY(QFileInfo(folder).isDir());
        const QString other = p.db->objectFolderPath(p.analyses()->get(name + " "), false);
        QVERIFY(isInside(other, root + "/Analyses"));
        QVERIFY(other != folder);
        const QString well = TAbstractMapper::objectFilePath(p.wells()->get(name), p.db.get());
        QVERIFY2(isInside(well, root + "/Wells"), qPrintable(well));
        // Nothing was made outside the project folder.
        QCOMPARE(QDir(parent.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{"project"});
    }

    void lookUpsAfterReload()
    {
        QTemporaryDir dir;
        const int count = 300;
        {
            TestProject p(dir.path());
            for (int i = 0; i < count; ++i) {
                const auto* a = asAnalysis(p.analyses()->createAnalysis(QString("A%1").arg(i), false));
                QVERIFY(p.signalMapper()->createSignal(a, "TIC", false));
                QVERIFY(p.signalMapper()->createSignal(a, "m/z 217", false));
                QVERIFY(p.variables()->createVariable(nullptr, QString("V%1").arg(i), QString("R%1").arg(i),
                                                      QString("C%1").arg(i % 7), false));
            }
            // Pairs that would collide if the two keys were simply glued together.
            QVERIFY(p.variables()->createVariable(nullptr, "ab|c", "ab", "c", false));
            QVERIFY(p.variables()->createVariable(nullptr, "a|bc", "a", "bc", false));
            auto* peaks = p.mapper<TPeakDetectMapper>(VNObjectTypePeakDetection);
            TPropertyObject* detection = peaks->createIndexation("Peaks", {"A1"}, false);
            QVERIFY(detection);
            QVERIFY(p.mapper<TIdentificationMapper>(VNObjectTypeIdentification)
                        ->createIdentification(detection->object(), "Pristane", 17.25, false));
            QVERIFY(p.mapper<TSliceMapper>(VNObjectTypeSlice)
                        ->createSlice(p.analyses()->getAnalysis("A2"), "Steranes", 40.0, 55.5, false));
            QVERIFY(p.db->headerDb()->flushDatabase());
        }
        TestProject p(dir.path());
        QCOMPARE(p.analyses()->count(), count);
        QCOMPARE(p.signalMapper()->count(), 2 * count);
        // Creation order is kept across the reload.
        QCOMPARE(p.analyses()->list().first()->name(), "A0");
        QCOMPARE(p.analyses()->list().last()->name(), "A299");

        const VNObject2Analysis* a123 = p.analyses()->getAnalysis("A123");
        QVERIFY(a123);
        const VNObject2Signal* tic = p.signalMapper()->getSignal("A123", "TIC");
        QVERIFY(tic);
        QCOMPARE(tic->analysis(), a123);
        QCOMPARE(tic->key(), "A123/TIC");
        QCOMPARE(p.signalMapper()->get("A123/TIC"), tic);
        QCOMPARE(p.signalMapper()->getSignalByHash("TIC", TSignalMapper::analysisHash("A123")), tic);
        QVERIFY(!p.signalMapper()->getSignalByHash("TIC", TSignalMapper::analysisHash("A9999")));
        QVERIFY(!p.signalMapper()->getSignal("A123", "tic"));
        QCOMPARE(TAbstractMapper::getObjectChildLst(a123, VNObjectTypeSignal).size(), 2);

        QCOMPARE(p.db->getReference("R42", "C0")->name(), "V42");
        QVERIFY(!p.db->getReference("R42", "C1"));
        QCOMPARE(p.db->getReference("ab", "c")->name(), "ab|c");
        QCOMPARE(p.db->getReference("a", "bc")->name(), "a|bc");

        auto* identifications = p.mapper<TIdentificationMapper>(VNObjectTypeIdentification);
        const QList<const VNObject2*> found
            = identifications->identifications(p.mapper<TPeakDetectMapper>(VNObjectTypePeakDetection)->get("Peaks"));
        QCOMPARE(found.size(), 1);
        QCOMPARE(identifications->retentionTime(found.first()), 17.25);
        double start = 0;
        double end = 0;
        auto* slices = p.mapper<TSliceMapper>(VNObjectTypeSlice);
        QVERIFY(slices->range(slices->slices(p.analyses()->getAnalysis("A2")).value(0), &start, &end));
        QCOMPARE(start, 40.0);
        QCOMPARE(end, 55.5);

        // Removing an analysis takes its signals and slices from every look-up,
        // and only those.
        QVERIFY(p.db->removeObject(p.analyses()->getAnalysis("A2"), true));
        QVERIFY(!p.signalMapper()->getSignal("A2", "TIC"));
        QVERIFY(!p.signalMapper()->getSignalByHash("TIC", TSignalMapper::analysisHash("A2")));
        QVERIFY(p.signalMapper()->getSignal("A3", "TIC"));
        QCOMPARE(slices->count(), 0);
        QCOMPARE(p.signalMapper()->count(), 2 * count - 2);
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeSignal), 2 * count - 2);
    }

    void childKeysStayApart()
    {
        // Parents whose names hold '/' or '%' next to children whose names hold
        // '/': every pair (parent, child) is its own record, before and after a
        // reload; a renamed parent takes its children along and frees its old
        // name for a new one.
        const QStringList analysisNames{"Oil", "Oil/m", "a/b", "a%2Fb"};
        const QStringList signalNames{"m/z 191", "z 191", "TIC", "TIC"};
        QTemporaryDir dir;
        {
            TestProject p(dir.path());
            for (int i = 0; i < analysisNames.size(); ++i) {
                const auto* analysis = asAnalysis(p.analyses()->createAnalysis(analysisNames.at(i)));
                QVERIFY(analysis);
                QVERIFY2(p.signalMapper()->createSignal(analysis, signalNames.at(i)), qPrintable(analysisNames.at(i)));
            }
            // "Oil" / "m/z 191" and "Oil/m" / "z 191" would both read "Oil/m/z 191".
            QVERIFY(p.signalMapper()->signalExists("Oil", "m/z 191"));
            QVERIFY(!p.signalMapper()->signalExists("Oil", "z 191"));
            QCOMPARE(p.signalMapper()->get("Oil/TIC"), nullptr);

            const auto* steranes
                = static_cast<const VNObject2Dataset*>(p.datasets()->createDataset("Steranes")->object());
            QVERIFY(p.variables()->createVariable(steranes, "20S/(20S+20R)", "R1", "C1"));
            QVERIFY(p.datasets()->createDataset("Taken"));
            QVERIFY(!p.datasets()->rename(steranes, "Taken"));
            QVERIFY(p.datasets()->rename(steranes, "C29 steranes"));
            QVERIFY(p.wells()->createWell("W"));
            QVERIFY(p.wells()->rename(p.wells()->get("W"), "W-2"));
            // The old name is free again, for the dataset and for its variables.
            const auto* again = static_cast<const VNObject2Dataset*>(p.datasets()->createDataset("Steranes")->object());
            QVERIFY(again);
            QVERIFY(p.variables()->createVariable(again, "20S/(20S+20R)", "R2", "C2"));
            QVERIFY(p.db->headerDb()->flushDatabase());
        }
        TestProject p(dir.path());
        QCOMPARE(p.signalMapper()->count(), analysisNames.size());
        for (int i = 0; i < analysisNames.size(); ++i) {
            const VNObject2Signal* signal = p.signalMapper()->getSignal(analysisNames.at(i), signalNames.at(i));
            QVERIFY2(signal, qPrintable(analysisNames.at(i)));
            QCOMPARE(signal->name(), signalNames.at(i));
            const VNObject2Analysis* analysis = p.analyses()->getAnalysis(analysisNames.at(i));
            QCOMPARE(p.signalMapper()->signalList(analysis), QList<const VNObject2Signal*>{signal});
            QCOMPARE(p.signalMapper()->getSignalByHash(signalNames.at(i), TSignalMapper::analysisHash(analysis->key())),
                     signal);
        }
        const QList<const VNObject2Variable*> moved
            = p.variables()->variables(p.datasets()->getDataset("C29 steranes"));
        const QList<const VNObject2Variable*> fresh = p.variables()->variables(p.datasets()->getDataset("Steranes"));
        QCOMPARE(moved.size(), 1);
        QCOMPARE(fresh.size(), 1);
        QVERIFY(moved.first() != fresh.first());
        QCOMPARE(p.db->getReference("R1", "C1"), moved.first());
        QCOMPARE(p.db->getReference("R2", "C2"), fresh.first());
        QVERIFY(!p.wells()->getWell("W"));
        QVERIFY(p.wells()->getWell("W-2"));
        // Removing the renamed dataset leaves the new one whole.
        QVERIFY(p.db->removeObject(p.datasets()->getDataset("C29 steranes"), true));
        QVERIFY(!p.db->getReference("R1", "C1"));
        QCOMPARE(p.variables()->count(), 1);
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeVariable), 1);
    }

    void creationRefusals()
    {
        QTemporaryDir dir;
        QTemporaryDir otherDir;
        TestProject p(dir.path());
        TestProject other(otherDir.path());
        QVERIFY(p.analyses()->createAnalysis("A"));
        QVERIFY(!p.analyses()->createAnalysis("A"));
        QVERIFY(!p.analyses()->createAnalysis(QString()));
        QVERIFY(!p.signalMapper()->create("TIC"));
        const auto* foreign = asAnalysis(other.analyses()->createAnalysis("B"));
        QVERIFY(!p.signalMapper()->createSignal(foreign, "TIC"));
        QVERIFY(!p.signalMapper()->createSignal(nullptr, "TIC"));
        QVERIFY(p.signalMapper()->createSignal(p.analyses()->getAnalysis("A"), "TIC"));
        QVERIFY(!p.signalMapper()->createSignal(p.analyses()->getAnalysis("A"), "TIC"));
        QVERIFY(!p.mapper<TSliceMapper>(VNObjectTypeSlice)->createSlice(p.analyses()->getAnalysis("A"), "S", 5.0, 5.0));
        QVERIFY(!p.db->removeObject(foreign, true));
        QVERIFY(!p.db->removeObject(nullptr, true));
        QVERIFY(other.analyses()->exists("B"));
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 1);
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeSignal), 1);
    }

    void aboutToDeleteObjectsComesFirst()
    {
        QTemporaryDir dir;
        TestProject p(dir.path());
        auto* peaks = p.mapper<TPeakDetectMapper>(VNObjectTypePeakDetection);
        const auto* run = asAnalysis(p.analyses()->createAnalysis("Run"));
        QVERIFY(p.signalMapper()->createSignal(run, "TIC"));
        QVERIFY(p.signalMapper()->createSignal(run, "m/z 191"));
        const VNObject2* detection = peaks->createIndexation("Peaks of Run")->object();
        QVERIFY(p.mapper<TIdentificationMapper>(VNObjectTypeIdentification)
                    ->createIdentification(detection, "Hopane", 61.0));
        const VNObject2* kept = p.wells()->createWell("Kept")->object();

        qRegisterMetaType<QList<const VNObject2*>*>();
        QSignalSpy spy(p.db.get(), &Sedra::TDatabase::aboutToDeleteObjects);
        QStringList heard;
        bool allPresent = true;
        // A listener that drops what depends on the analysis: the peak detection.
        QObject::connect(
            p.db.get(), &Sedra::TDatabase::aboutToDeleteObjects, p.db.get(),
            [&](QList<const VNObject2*>* objects) {
                for (const VNObject2* o : *objects) {
                    heard << o->key();
                    allPresent = allPresent && p.db->record(o) != nullptr;
                }
                objects->append(detection);
                objects->append(run); // named twice: removed once
            },
            Qt::DirectConnection);
        QVERIFY(p.db->removeObject(run, true));
        QCOMPARE(spy.count(), 1);
        QVERIFY(allPresent);
        QCOMPARE(heard, (QStringList{"Run", "Run/TIC", "Run/m/z 191"}));
        QCOMPARE(p.db->headerDb()->objectCount(), 1);
        QCOMPARE(p.db->headerDb()->getObjectsList().first()->object(), kept);
        // The identification that belonged to the added detection went too.
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeIdentification), 0);
        QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypePeakDetection), 0);

        // No notice for a removal that is refused.
        p.db->setReadOnly(true);
        TRecordingLogger quiet;
        QVERIFY(!p.db->removeObject(kept, true));
        QCOMPARE(spy.count(), 1);
        QVERIFY(p.db->record(kept));
    }
};

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_tdatabase.moc"
