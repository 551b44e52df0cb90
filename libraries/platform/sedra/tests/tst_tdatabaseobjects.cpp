// The storage base's operations on wells, datasets, variables, compounds and
// slices: removals and renames that take the objects' folders with them or
// change nothing, and the refusals a person reads, in both languages.
#include "sedra_testproject.h"

#include <tcompound.h>
#include <tslicemapper.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vnobject2analysis.h>
#include <vnobject2dataset.h>
#include <vnobject2project.h>
#include <vnobject2variable.h>
#include <vnobject2well.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace Sedra;

namespace {

// A project database whose protected operations the tests may call, as a
// derived database of the application does.
class ProjectDatabase : public TDatabase
{
public:
    using TDatabase::objectDeleteStd;
    using TDatabase::wellRename;

    ProjectDatabase(const QString& folder, bool readOnly = false)
        : TDatabase(DatabaseProjectFolder)
    {
        setWorkingPath(folder);
        setReadOnly(readOnly);
        setMapperFactory(&TestProject::factory());
        opened = headerDb()->setCurrentProject(this);
        if (opened)
            headerDb()->start();
    }

    template <typename Mapper>
    Mapper* kind(int type) const
    {
        return dynamic_cast<Mapper*>(mapper(type));
    }
    const VNObject2Well* well(const QString& name) const { return kind<TWellMapper>(VNObjectTypeWell)->getWell(name); }
    const VNObject2Dataset* dataset(const QString& name) const
    {
        return kind<TDatasetMapper>(VNObjectTypeDataset)->getDataset(name);
    }
    int countOf(int type) const { return mapper(type)->count(); }

    bool opened = false;
};

// Two wells (one with a folder of its own holding a file), a dataset with two
// variables, a compound and an analysis with a slice.
bool fill(ProjectDatabase& db)
{
    auto* wells = db.kind<TWellMapper>(VNObjectTypeWell);
    auto* datasets = db.kind<TDatasetMapper>(VNObjectTypeDataset);
    auto* variables = db.kind<TVariableMapper>(VNObjectTypeVariable);
    if (!wells->createWell("Puits-1") || !wells->createWell("Puits-2") || !datasets->createDataset("Maturity"))
        return false;
    if (!writeFile(db.objectOwnFolder(db.well("Puits-1")) + "/localization.kml", "<kml/>")
        || !variables->createVariable(db.dataset("Maturity"), "Ts/(Ts+Tm)", "R1", "Hopanes")
        || !variables->createVariable(db.dataset("Maturity"), "C29 20S", "R2", "Steranes"))
        return false;
    const TCompound pristane("pristane", "1921-70-6", "C19H40");
    TFileObject* analysis = db.kind<TAnalysisMapper>(VNObjectTypeAnalysis)->createAnalysis("oil-a");
    return db.compoundCreate(&pristane) && analysis
        && db.kind<TSliceMapper>(VNObjectTypeSlice)
               ->createSlice(static_cast<const VNObject2Analysis*>(analysis->object()), "biomarkers", 40.0, 56.0);
}

} // namespace

class TestDatabaseObjects : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_case = 0;
    QString folder() { return m_dir.filePath(QString("case%1").arg(++m_case)); }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void cleanup() { TTranslator::install("en"); }

    void deletionsTakeRecordsAndFoldersTogether_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QList<int>>("counts"); // wells, datasets, variables left
        QTest::newRow("well") << "well" << QList<int>{1, 1, 2};
        QTest::newRow("well, standard removal") << "standard" << QList<int>{1, 1, 2};
        QTest::newRow("dataset and its variables") << "dataset" << QList<int>{2, 0, 0};
        QTest::newRow("variable") << "variable" << QList<int>{2, 1, 1};
        QTest::newRow("variable by its reference keys") << "variable by keys" << QList<int>{2, 1, 1};
    }

    void deletionsTakeRecordsAndFoldersTogether()
    {
        QFETCH(QString, what);
        QFETCH(QList<int>, counts);
        const QString path = folder();
        QString wellFolder;
        {
            ProjectDatabase db(path);
            QVERIFY(db.opened && fill(db));
            wellFolder = db.objectOwnFolder(db.well("Puits-1"));
            const VNObject2Variable* variable
                = db.kind<TVariableMapper>(VNObjectTypeVariable)->getReference("R2", "Steranes");
            bool done = false;
            if (what == "well")
                done = db.wellDelete(db.well("Puits-1"), true);
            else if (what == "standard")
                done = db.objectDeleteStd(db.well("Puits-1"), true);
            else if (what == "dataset")
                done = db.datasetDelete(db.dataset("Maturity"));
            else if (what == "variable")
                done = db.variableDelete(variable, true);
            else
                done = db.variableDelete("Maturity", "R2", "Steranes");
            QVERIFY(done);
        }
        // What the file says after the database is gone.
        ProjectDatabase reopened(path);
        const QList<int> left{reopened.countOf(VNObjectTypeWell), reopened.countOf(VNObjectTypeDataset),
                              reopened.countOf(VNObjectTypeVariable)};
        QCOMPARE(left, counts);
        const bool wellGone = what == "well" || what == "standard";
        QCOMPARE(QFileInfo::exists(wellFolder), !wellGone);
        // The kind's shared folder stays, and nothing is left aside.
        QVERIFY(QFileInfo(path + "/Wells").isDir());
        QCOMPARE(QDir(path + "/Wells").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 wellGone ? QStringList() : QStringList{"Puits-1"});
    }

    void refusalsChangeNothing_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("readOnly");
        QTest::addColumn<QString>("taken");
        QTest::newRow("en") << QString("en") << QString("Impossible to modify a <b>read only</b> database")
                            << QString("The name <b>%1</b> is already used");
        QTest::newRow("fr") << QString("fr")
                            << QString("Impossible de modifier une base de données en <b>lecture seule</b>")
                            << QString("Le nom <b>%1</b> est déjà utilisé");
    }

    // A read-only project refuses every change and says so; objects it does
    // not hold, or names already taken, are refused too.
    void refusalsChangeNothing()
    {
        QFETCH(QString, language);
        QFETCH(QString, readOnly);
        QFETCH(QString, taken);
        const QString path = folder();
        {
            ProjectDatabase db(path);
            QVERIFY(db.opened && fill(db));
        }
        const auto before = folderPicture(path);
        TTranslator::install(language);
        {
            ProjectDatabase db(path, true);
            TRecordingLogger log;
            QVERIFY(!db.wellDelete(db.well("Puits-1"), true));
            QVERIFY(!db.datasetDelete(db.dataset("Maturity")));
            QVERIFY(!db.variableDelete("Maturity", "R1", "Hopanes"));
            QVERIFY(!db.wellRename(db.well("Puits-1"), "Puits-9"));
            QVERIFY(!db.datasetRename(QString(), "Maturity", "Maturité"));
            QVERIFY(!db.compoundCreate("phytane"));
            QCOMPARE(log.messages(MessageLoggerInterface::LevelWarning).size(), 6);
            QVERIFY(log.contains(MessageLoggerInterface::LevelWarning, readOnly));
        }
        {
            ProjectDatabase db(path);
            ProjectDatabase other(folder());
            QVERIFY(fill(other));
            TRecordingLogger log;
            QVERIFY(!db.wellDelete(other.well("Puits-1"), true)); // not one of ours
            QVERIFY(!db.wellDelete(nullptr, true));
            QVERIFY(!db.variableDelete("Maturity", "R1", "Steranes")); // no such pair
            QVERIFY(!db.wellRename("Puits-1", "Puits-2"));
            QVERIFY(!db.datasetRename("another project", "Maturity", "Maturité"));
            const TCompound again("Pristane (again)", "1921-70-6");
            QVERIFY(!db.compoundCreate(&again)); // same CAS number
            QVERIFY(!db.compoundCreate("pristane"));
            QVERIFY(log.contains(MessageLoggerInterface::LevelWarning, taken.arg("Puits-2")));
        }
        QCOMPARE(folderPicture(path), before);
    }

    void renamesTakeTheirFolders()
    {
        const QString path = folder();
        {
            ProjectDatabase db(path);
            QVERIFY(db.opened && fill(db));
            QVERIFY(db.wellRename(db.well("Puits-1"), "Puits 1/bis"));
            QVERIFY(db.wellRename("Puits-2", "Puits-3"));
            VNObject2Project project("Bassin");
            QVERIFY(db.setProject(&project));
            QVERIFY(db.datasetRename("Bassin", "Maturity", "Maturité"));
            QVERIFY(db.datasetRename(QString(), "Maturité", "Maturité")); // no change, no refusal
        }
        ProjectDatabase reopened(path);
        QVERIFY(!reopened.well("Puits-1") && reopened.well("Puits 1/bis") && reopened.well("Puits-3"));
        const QString moved = reopened.objectOwnFolder(reopened.well("Puits 1/bis"));
        QCOMPARE(QFileInfo(moved).fileName(), "Puits 1_bis");
        QVERIFY(QFileInfo::exists(moved + "/localization.kml"));
        QVERIFY(!QFileInfo::exists(path + "/Wells/Puits-1"));
        const VNObject2Dataset* renamed = reopened.dataset("Maturité");
        QVERIFY(renamed && !reopened.dataset("Maturity"));
        QCOMPARE(reopened.kind<TVariableMapper>(VNObjectTypeVariable)->variables(renamed).size(), 2);
    }

    void compoundsAndSlicesAreFound()
    {
        ProjectDatabase db(folder());
        QVERIFY(db.opened && fill(db));
        const TCompound byCas("2,6,10,14-tetramethylpentadecane", "1921-70-6");
        const TCompound byName("pristane");
        const VNObject2* pristane = db.getCompound(VNObjectTypeCompound, "pristane");
        QVERIFY(pristane);
        QCOMPARE(db.getCompound(&byCas), pristane);
        QCOMPARE(db.getCompound(&byName), pristane);
        QVERIFY(!db.getCompound(VNObjectTypeWell, "pristane"));
        const VNObject2* phytane = db.compoundCreate("phytane");
        QVERIFY(phytane && phytane != pristane);
        QCOMPARE(db.getCompound(VNObjectTypeCompound, "phytane"), phytane);
        const QList<TDatabaseObject*> slices = db.kind<TSliceMapper>(VNObjectTypeSlice)->records();
        QCOMPARE(slices.size(), 1);
        const QString sliceKey = slices.first()->key();
        QVERIFY(db.getSlice(VNObjectTypeSlice, sliceKey));
        QVERIFY(!db.getSlice(VNObjectTypeCompound, sliceKey));
        QVERIFY(!db.getSlice(VNObjectTypeSlice, "oil-a/nothing"));
        QVERIFY(TDatabase(DatabaseProject).getVariousDir().isEmpty());
    }

    // The identity of an object of another database: found here by kind and
    // name, removed with what depends on it, and counted.
    void checkIfExistsAndRemoveCountsWhatWent()
    {
        ProjectDatabase db(folder());
        ProjectDatabase other(folder());
        QVERIFY(fill(db) && fill(other));
        bool existed = false;
        bool removed = false;
        int count = 1;
        QVERIFY(db.checkIfExistsAndRemove(other.dataset("Maturity"), existed, removed, count));
        QVERIFY(existed && removed);
        QCOMPARE(count, 1 + 3); // the dataset and its two variables
        QVERIFY(!db.dataset("Maturity"));
        QVERIFY(other.dataset("Maturity"));
        // Nothing of that identity any more: nothing removed, nothing counted.
        QVERIFY(db.checkIfExistsAndRemove(other.dataset("Maturity"), existed, removed, count));
        QVERIFY(!existed && !removed);
        QCOMPARE(count, 4);
    }
};

QTEST_GUILESS_MAIN(TestDatabaseObjects)
#include "tst_tdatabaseobjects.moc"
