// The database over its folder: synchronisation with the analyses on disk,
// awkward names that must neither break SQL nor leave the project folder,
// mapper look-ups after a reload, and the deletion notice.

#include "sedra_testproject.h"

#include <tanalysismapper.h>
#include <tdatabaseobject.h>
#include <tdatasetmapper.h>
#include <tfileobject.h>
#include <tidentificationmapper.h>
#include <tindexationmapper.h>
#include <tmutableobject.h>
#include <tpeakdetectmapper.h>
#include <tpropertyobject.h>
#include <tsignalmapper.h>
#include <tslicemapper.h>
#include <tvariablemapper.h>
#include <twellmapper.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2signal.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

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
    void init() { TTranslator::install(QStringLiteral("en")); }

    void synchronizeRegistersAndKeepsMissing();
    void synchronizeAskedBeforeMappersWaitsForThem();
    void awkwardNames_data();
    void awkwardNames();
    void lookUpsAfterReload();
    void childKeysStayApart();
    void creationRefusals();
    void aboutToDeleteObjectsComesFirst();
};

void TestDatabase::synchronizeRegistersAndKeepsMissing()
{
    QTemporaryDir dir;
    const QDir root(dir.path());
    {
        TestProject p(dir.path());
        QVERIFY(p.analyses()->createAnalysis(QStringLiteral("Kept")));
        QVERIFY(p.analyses()->createAnalysis(QStringLiteral("Gone")));
        QVERIFY(p.db->objectFolderPath(p.analyses()->get(QStringLiteral("Kept")), true).endsWith("Analyses/Kept"));
    }
    // Found on disk: two analysis folders nobody registered, and a stray file.
    QVERIFY(root.mkpath(QStringLiteral("Analyses/Core 3")));
    QVERIFY(root.mkpath(QStringLiteral("Analyses/Huile brute é")));
    QVERIFY(writeFile(root.filePath(QStringLiteral("Analyses/notes.txt")), "not an analysis"));
    QVERIFY(writeFile(root.filePath(QStringLiteral("Analyses/Core 3/Core 3.tcm")), "data"));

    for (const QString& language : {QStringLiteral("en"), QStringLiteral("fr")}) {
        TTranslator::install(language);
        TRecordingLogger logger;
        TestProject p(dir.path());
        p.db->synchronizeSQLRoot();
        const TSyncReport& report = p.db->lastSynchronization();
        if (language == QLatin1String("en")) {
            QCOMPARE(report.registered, (QStringList{QStringLiteral("Core 3"), QStringLiteral("Huile brute é")}));
            auto* core = dynamic_cast<TFileObject*>(p.analyses()->record(QStringLiteral("Core 3")));
            QVERIFY(core);
            QCOMPARE(core->relativePath(), QStringLiteral("Analyses/Core 3/Core 3.tcm"));
            QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 4);
            QVERIFY(logger.messages(MessageLoggerInterface::LevelInformation)
                        .contains(QStringLiteral("Analysis <b>Core 3</b> found on disk was added to the project")));
        } else {
            // Registered the first time: nothing new now.
            QVERIFY(report.registered.isEmpty());
        }
        // The analysis whose folder vanished is reported, every time, and kept.
        QCOMPARE(report.missing, QStringList{QStringLiteral("Gone")});
        QVERIFY(p.analyses()->exists(QStringLiteral("Gone")));
        QCOMPARE(p.analyses()->count(), 4);
        const QString missing = language == QLatin1String("en")
            ? QStringLiteral("The folder of analysis <b>Gone</b> is missing")
            : QStringLiteral("Le dossier de l'analyse <b>Gone</b> est introuvable");
        const QStringList warnings = logger.messages(MessageLoggerInterface::LevelWarning);
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.first().startsWith(missing), qPrintable(warnings.first()));
    }

    // A folder whose name an analysis elsewhere already has is not taken over.
    {
        TestProject p(dir.path());
        QVERIFY(
            p.analyses()->createAnalysisInFolder(QStringLiteral("Twin"), QStringLiteral("Analyses/Elsewhere"), true));
        QVERIFY(root.mkpath(QStringLiteral("Analyses/Twin")));
        // Names another system reads as a drive or a separator are not stored.
        QVERIFY(root.mkpath(QStringLiteral("Analyses/C:run")));
        QVERIFY(root.mkpath(QStringLiteral("Analyses/back\\slash")));
        TRecordingLogger logger;
        p.db->synchronizeSQLRoot();
        QCOMPARE(p.db->lastSynchronization().skipped,
                 (QStringList{QStringLiteral("C:run"), QStringLiteral("Twin"), QStringLiteral("back\\slash")}));
        QVERIFY(p.db->lastSynchronization().registered.isEmpty());
        QVERIFY(!p.analyses()->exists(QStringLiteral("C:run")));
        QCOMPARE(dynamic_cast<TFileObject*>(p.analyses()->record(QStringLiteral("Twin")))->relativeFolderPath(),
                 QStringLiteral("Analyses/Elsewhere"));
    }
}

void TestDatabase::synchronizeAskedBeforeMappersWaitsForThem()
{
    // A database opened from its folder synchronises before it has its
    // mappers: the folders found must still be registered.
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("Analyses/Early")));
    TRecordingLogger logger;
    TestProject p(dir.path(), false, false);
    QVERIFY(p.opened);
    p.db->synchronizeSQLRoot();
    QVERIFY(p.db->lastSynchronization().registered.isEmpty());
    p.db->setMapperFactory(&TestProject::factory());
    QCOMPARE(p.db->lastSynchronization().registered, QStringList{QStringLiteral("Early")});
    QVERIFY(p.analyses()->exists(QStringLiteral("Early")));
    QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 1);
    // Once only: a new factory later does not synchronise again.
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("Analyses/Later")));
    p.db->setMapperFactory(&TestProject::factory());
    QVERIFY(!p.analyses()->exists(QStringLiteral("Later")));
}

void TestDatabase::awkwardNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << QStringLiteral("O'Brien \"deep\" `core`");
    QTest::newRow("sql") << QStringLiteral("x'); DROP TABLE objects; --");
    QTest::newRow("parent") << QStringLiteral("../../outside");
    QTest::newRow("dot dot") << QStringLiteral("..");
    QTest::newRow("dot") << QStringLiteral(".");
    QTest::newRow("separators") << QStringLiteral("a/b\\c:d");
    QTest::newRow("absolute") << QStringLiteral("/etc/passwd");
    QTest::newRow("non-ascii") << QStringLiteral("Ölprobe №3 井 — 17α(H)-hopane");
    QTest::newRow("reserved") << QStringLiteral("CON.txt");
    QTest::newRow("blanks") << QStringLiteral("  trailing dots... ");
    QTest::newRow("control") << QStringLiteral("tab\there\nline");
    QTest::newRow("long") << QString(300, QChar(0x00e9));
}

void TestDatabase::awkwardNames()
{
    QFETCH(QString, name);
    QTemporaryDir parent;
    const QString root = QDir(parent.path()).filePath(QStringLiteral("project"));
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
        QVERIFY(p.analyses()->createAnalysis(name + QStringLiteral(" ")));
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
    QVERIFY2(isInside(folder, root + QStringLiteral("/Analyses")), qPrintable(folder));
    QVERIFY(QFileInfo(folder).isDir());
    const QString other = p.db->objectFolderPath(p.analyses()->get(name + QStringLiteral(" ")), false);
    QVERIFY(isInside(other, root + QStringLiteral("/Analyses")));
    QVERIFY(other != folder);
    const QString well = TAbstractMapper::objectFilePath(p.wells()->get(name), p.db.get());
    QVERIFY2(isInside(well, root + QStringLiteral("/Wells")), qPrintable(well));
    // Nothing was made outside the project folder.
    QCOMPARE(QDir(parent.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList{QStringLiteral("project")});
}

void TestDatabase::lookUpsAfterReload()
{
    QTemporaryDir dir;
    const int count = 300;
    {
        TestProject p(dir.path());
        for (int i = 0; i < count; ++i) {
            const auto* a = asAnalysis(p.analyses()->createAnalysis(QStringLiteral("A%1").arg(i), false));
            QVERIFY(p.signalMapper()->createSignal(a, QStringLiteral("TIC"), false));
            QVERIFY(p.signalMapper()->createSignal(a, QStringLiteral("m/z 217"), false));
            QVERIFY(p.variables()->createVariable(nullptr, QStringLiteral("V%1").arg(i), QStringLiteral("R%1").arg(i),
                                                  QStringLiteral("C%1").arg(i % 7), false));
        }
        // Pairs that would collide if the two keys were simply glued together.
        QVERIFY(p.variables()->createVariable(nullptr, QStringLiteral("ab|c"), QStringLiteral("ab"),
                                              QStringLiteral("c"), false));
        QVERIFY(p.variables()->createVariable(nullptr, QStringLiteral("a|bc"), QStringLiteral("a"),
                                              QStringLiteral("bc"), false));
        auto* peaks = p.mapper<TPeakDetectMapper>(VNObjectTypePeakDetection);
        TPropertyObject* detection = peaks->createIndexation(QStringLiteral("Peaks"), {QStringLiteral("A1")}, false);
        QVERIFY(detection);
        QVERIFY(p.mapper<TIdentificationMapper>(VNObjectTypeIdentification)
                    ->createIdentification(detection->object(), QStringLiteral("Pristane"), 17.25, false));
        QVERIFY(p.mapper<TSliceMapper>(VNObjectTypeSlice)
                    ->createSlice(p.analyses()->getAnalysis(QStringLiteral("A2")), QStringLiteral("Steranes"), 40.0,
                                  55.5, false));
        QVERIFY(p.db->headerDb()->flushDatabase());
    }
    TestProject p(dir.path());
    QCOMPARE(p.analyses()->count(), count);
    QCOMPARE(p.signalMapper()->count(), 2 * count);
    // Creation order is kept across the reload.
    QCOMPARE(p.analyses()->list().first()->name(), QStringLiteral("A0"));
    QCOMPARE(p.analyses()->list().last()->name(), QStringLiteral("A299"));

    const VNObject2Analysis* a123 = p.analyses()->getAnalysis(QStringLiteral("A123"));
    QVERIFY(a123);
    const VNObject2Signal* tic = p.signalMapper()->getSignal(QStringLiteral("A123"), QStringLiteral("TIC"));
    QVERIFY(tic);
    QCOMPARE(tic->analysis(), a123);
    QCOMPARE(tic->key(), QStringLiteral("A123/TIC"));
    QCOMPARE(p.signalMapper()->get(QStringLiteral("A123/TIC")), tic);
    QCOMPARE(
        p.signalMapper()->getSignalByHash(QStringLiteral("TIC"), TSignalMapper::analysisHash(QStringLiteral("A123"))),
        tic);
    QVERIFY(!p.signalMapper()->getSignalByHash(QStringLiteral("TIC"),
                                               TSignalMapper::analysisHash(QStringLiteral("A9999"))));
    QVERIFY(!p.signalMapper()->getSignal(QStringLiteral("A123"), QStringLiteral("tic")));
    QCOMPARE(TAbstractMapper::getObjectChildLst(a123, VNObjectTypeSignal).size(), 2);

    QCOMPARE(p.db->getReference(QStringLiteral("R42"), QStringLiteral("C0"))->name(), QStringLiteral("V42"));
    QVERIFY(!p.db->getReference(QStringLiteral("R42"), QStringLiteral("C1")));
    QCOMPARE(p.db->getReference(QStringLiteral("ab"), QStringLiteral("c"))->name(), QStringLiteral("ab|c"));
    QCOMPARE(p.db->getReference(QStringLiteral("a"), QStringLiteral("bc"))->name(), QStringLiteral("a|bc"));

    auto* identifications = p.mapper<TIdentificationMapper>(VNObjectTypeIdentification);
    const QList<const VNObject2*> found = identifications->identifications(
        p.mapper<TPeakDetectMapper>(VNObjectTypePeakDetection)->get(QStringLiteral("Peaks")));
    QCOMPARE(found.size(), 1);
    QCOMPARE(identifications->retentionTime(found.first()), 17.25);
    double start = 0;
    double end = 0;
    auto* slices = p.mapper<TSliceMapper>(VNObjectTypeSlice);
    QVERIFY(slices->range(slices->slices(p.analyses()->getAnalysis(QStringLiteral("A2"))).value(0), &start, &end));
    QCOMPARE(end, 55.5);

    // Removing an analysis takes its signals and slices from every look-up,
    // and only those.
    QVERIFY(p.db->removeObject(p.analyses()->getAnalysis(QStringLiteral("A2")), true));
    QVERIFY(!p.signalMapper()->getSignal(QStringLiteral("A2"), QStringLiteral("TIC")));
    QVERIFY(
        !p.signalMapper()->getSignalByHash(QStringLiteral("TIC"), TSignalMapper::analysisHash(QStringLiteral("A2"))));
    QVERIFY(p.signalMapper()->getSignal(QStringLiteral("A3"), QStringLiteral("TIC")));
    QCOMPARE(slices->count(), 0);
    QCOMPARE(p.signalMapper()->count(), 2 * count - 2);
    QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeSignal), 2 * count - 2);
}

void TestDatabase::childKeysStayApart()
{
    // Parents whose names hold '/' or '%' next to children whose names hold
    // '/': every pair (parent, child) is its own record, before and after a
    // reload; a renamed parent takes its children along and frees its old
    // name for a new one.
    const QStringList analysisNames{QStringLiteral("Oil"), QStringLiteral("Oil/m"), QStringLiteral("a/b"),
                                    QStringLiteral("a%2Fb")};
    const QStringList signalNames{QStringLiteral("m/z 191"), QStringLiteral("z 191"), QStringLiteral("TIC"),
                                  QStringLiteral("TIC")};
    QTemporaryDir dir;
    {
        TestProject p(dir.path());
        for (int i = 0; i < analysisNames.size(); ++i) {
            const auto* analysis = asAnalysis(p.analyses()->createAnalysis(analysisNames.at(i)));
            QVERIFY(analysis);
            QVERIFY2(p.signalMapper()->createSignal(analysis, signalNames.at(i)), qPrintable(analysisNames.at(i)));
        }
        // "Oil" / "m/z 191" and "Oil/m" / "z 191" would both read "Oil/m/z 191".
        QVERIFY(p.signalMapper()->signalExists(QStringLiteral("Oil"), QStringLiteral("m/z 191")));
        QVERIFY(!p.signalMapper()->signalExists(QStringLiteral("Oil"), QStringLiteral("z 191")));
        QCOMPARE(p.signalMapper()->get(QStringLiteral("Oil/TIC")), nullptr);

        const auto* steranes
            = static_cast<const VNObject2Dataset*>(p.datasets()->createDataset(QStringLiteral("Steranes"))->object());
        QVERIFY(p.variables()->createVariable(steranes, QStringLiteral("20S/(20S+20R)"), QStringLiteral("R1"),
                                              QStringLiteral("C1")));
        QVERIFY(p.datasets()->createDataset(QStringLiteral("Taken")));
        QVERIFY(!p.datasets()->rename(steranes, QStringLiteral("Taken")));
        QVERIFY(p.datasets()->rename(steranes, QStringLiteral("C29 steranes")));
        QVERIFY(p.wells()->createWell(QStringLiteral("W")));
        QVERIFY(p.wells()->rename(p.wells()->get(QStringLiteral("W")), QStringLiteral("W-2")));
        // The old name is free again, for the dataset and for its variables.
        const auto* again
            = static_cast<const VNObject2Dataset*>(p.datasets()->createDataset(QStringLiteral("Steranes"))->object());
        QVERIFY(again);
        QVERIFY(p.variables()->createVariable(again, QStringLiteral("20S/(20S+20R)"), QStringLiteral("R2"),
                                              QStringLiteral("C2")));
        QVERIFY(p.db->headerDb()->flushDatabase());
    }
    TestProject p(dir.path());
    QCOMPARE(p.signalMapper()->count(), analysisNames.size());
    for (int i = 0; i < analysisNames.size(); ++i) {
        const VNObject2Signal* signal = p.signalMapper()->getSignal(analysisNames.at(i), signalNames.at(i));
        QVERIFY2(signal, qPrintable(analysisNames.at(i)));
        QCOMPARE(signal->name(), signalNames.at(i));
        const VNObject2Analysis* analysis = p.analyses()->getAnalysis(analysisNames.at(i));
        QCOMPARE(p.signalMapper()->signalList(analysis).size(), 1);
        QCOMPARE(p.signalMapper()->signalList(analysis).first(), signal);
        QCOMPARE(p.signalMapper()->getSignalByHash(signalNames.at(i), TSignalMapper::analysisHash(analysis->key())),
                 signal);
    }
    const QList<const VNObject2Variable*> moved
        = p.variables()->variables(p.datasets()->getDataset(QStringLiteral("C29 steranes")));
    const QList<const VNObject2Variable*> fresh
        = p.variables()->variables(p.datasets()->getDataset(QStringLiteral("Steranes")));
    QCOMPARE(moved.size(), 1);
    QCOMPARE(fresh.size(), 1);
    QVERIFY(moved.first() != fresh.first());
    QCOMPARE(p.db->getReference(QStringLiteral("R1"), QStringLiteral("C1")), moved.first());
    QCOMPARE(p.db->getReference(QStringLiteral("R2"), QStringLiteral("C2")), fresh.first());
    QVERIFY(!p.wells()->getWell(QStringLiteral("W")));
    QVERIFY(p.wells()->getWell(QStringLiteral("W-2")));
    // Removing the renamed dataset leaves the new one whole.
    QVERIFY(p.db->removeObject(p.datasets()->getDataset(QStringLiteral("C29 steranes")), true));
    QVERIFY(!p.db->getReference(QStringLiteral("R1"), QStringLiteral("C1")));
    QCOMPARE(p.variables()->count(), 1);
    QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeVariable), 1);
}

void TestDatabase::creationRefusals()
{
    QTemporaryDir dir;
    QTemporaryDir otherDir;
    TestProject p(dir.path());
    TestProject other(otherDir.path());
    QVERIFY(p.analyses()->createAnalysis(QStringLiteral("A")));
    QVERIFY(!p.analyses()->createAnalysis(QStringLiteral("A")));
    QVERIFY(!p.analyses()->createAnalysis(QString()));
    QVERIFY(!p.signalMapper()->create(QStringLiteral("TIC")));
    const auto* foreign = asAnalysis(other.analyses()->createAnalysis("B"));
    QVERIFY(!p.signalMapper()->createSignal(foreign, QStringLiteral("TIC")));
    QVERIFY(!p.signalMapper()->createSignal(nullptr, QStringLiteral("TIC")));
    QVERIFY(p.signalMapper()->createSignal(p.analyses()->getAnalysis(QStringLiteral("A")), QStringLiteral("TIC")));
    QVERIFY(!p.signalMapper()->createSignal(p.analyses()->getAnalysis(QStringLiteral("A")), QStringLiteral("TIC")));
    QVERIFY(!p.mapper<TSliceMapper>(VNObjectTypeSlice)
                 ->createSlice(p.analyses()->getAnalysis(QStringLiteral("A")), QStringLiteral("S"), 5.0, 5.0));
    QVERIFY(!p.db->removeObject(foreign, true));
    QVERIFY(!p.db->removeObject(nullptr, true));
    QVERIFY(other.analyses()->exists(QStringLiteral("B")));
    QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeAnalysis), 1);
    QCOMPARE(rowsOfKind(p.headerFile(), VNObjectTypeSignal), 1);
}

void TestDatabase::aboutToDeleteObjectsComesFirst()
{
    QTemporaryDir dir;
    TestProject p(dir.path());
    auto* peaks = p.mapper<TPeakDetectMapper>(VNObjectTypePeakDetection);
    const auto* run = asAnalysis(p.analyses()->createAnalysis(QStringLiteral("Run")));
    QVERIFY(p.signalMapper()->createSignal(run, QStringLiteral("TIC")));
    QVERIFY(p.signalMapper()->createSignal(run, QStringLiteral("m/z 191")));
    const VNObject2* detection = peaks->createIndexation(QStringLiteral("Peaks of Run"))->object();
    QVERIFY(p.mapper<TIdentificationMapper>(VNObjectTypeIdentification)
                ->createIdentification(detection, QStringLiteral("Hopane"), 61.0));
    const VNObject2* kept = p.wells()->createWell(QStringLiteral("Kept"))->object();

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
    QCOMPARE(heard, (QStringList{QStringLiteral("Run"), QStringLiteral("Run/TIC"), QStringLiteral("Run/m/z 191")}));
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

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_tdatabase.moc"
