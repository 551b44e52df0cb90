// Graphs and overlays of a reference database (records, drawings, copies) and
// the merged reference database: when it is current, when it is rebuilt, who
// wins a conflict, and what an interrupted rebuild leaves for the next one.
#include <databasefactoryinterface.h>
#include <messageloggerinterface.h>
#include <objectselectordatabasemodel.h>
#include <tapplicationdata.h>
#include <tassert.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <trecordinglogger.h>
#include <txmlmethod.h>
#include <ttovialias.h>
#include <ttovicompound.h>
#include <ttovigraph.h>
#include <ttovioverlay.h>
#include <ttoviratio.h>
#include <ttranslator.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>
#include <vndatabasetovimerged.h>
#include <vndatabasetovimgr.h>
#include <vndatamodelgraph.h>
#include <vndatamodeloverlay.h>
#include <vngraphdocument.h>
#include <vnobject2tovigraph.h>
#include <vnobject2tovioverlay.h>

#include "tst_vndatabasetovihelpers.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>

using ToviTest::addCompound;
using ToviTest::makeTovi;

namespace {
const Sedra::DatabaseType kDelivered = Sedra::DatabaseToviDelivered;
const Sedra::DatabaseType kUser = Sedra::DatabaseToviUser;
const Sedra::DatabaseType kMerged = Sedra::DatabaseToviMerged;

VNDatabaseTovi* registered(int type)
{
    return dynamic_cast<VNDatabaseTovi*>(VNDatabaseToviMGR::getInstance()->db(type));
}

QByteArray digest(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

QString fileOf(VNDatabaseTovi* db)
{
    return db && db->getConnector() ? db->getConnector()->getDbFilename() : QString();
}

bool addRatio(VNDatabaseTovi* db, const QString& id, const QString& name)
{
    return db->createRatio(id, name, name, name, 1, QStringLiteral("Source"), QStringLiteral("GC"),
                           QStringLiteral("Peak area ratio"), QStringLiteral("Isoprenoids"), QStringLiteral("57"),
                           QStringLiteral("Peters et al. 2005"));
}

const VNObject2Tovi* toviObject(const VNObject2* object)
{
    return dynamic_cast<const VNObject2Tovi*>(object);
}

// A cross-plot of two parameters, described as the graph editor fills it.
std::unique_ptr<VNDataModelGraph> crossPlot(const QString& name, const QString& x, const QString& y)
{
    std::unique_ptr<VNDataModelGraph> model(new VNDataModelGraph(Plavo::VIEW_ORTHOGONAL));
    model->setToVIName(name);
    model->setIsORL(false);
    model->setAxisKey(0, x);
    model->setAxisKey(1, y);
    model->setStudyType(QStringLiteral("Source rock"));
    model->setFamilyName(QStringLiteral("Isoprenoids"));
    model->setProcessType(QStringLiteral("GC"));
    model->setExpectedUnit(QStringLiteral("ratio"));
    model->setExpectedAnalysisType(QStringLiteral("Saturates"));
    model->setLiteratureReference(QStringLiteral("Connan and Cassou 1980"));
    model->setComments(QStringLiteral("Pr/n-C17 against Ph/n-C18; \"oxic\" <-> 'anoxic'"));
    return model;
}

std::unique_ptr<VNDataModelOverlay> zone(const QString& name)
{
    std::unique_ptr<VNDataModelOverlay> model(new VNDataModelOverlay);
    model->setToVIName(name);
    model->setLiteratureReference(QStringLiteral("Shanmugam 1985"));
    model->setProcessType(QStringLiteral("Kerogen type"));
    return model;
}

// A graph with one overlay in `db`; returns the graph object.
const VNObject2ToviGraph* addGraph(VNDatabaseTovi* db, const QString& name, const QString& overlayName)
{
    std::unique_ptr<VNDataModelGraph> model = crossPlot(name, QStringLiteral("R1"), QStringLiteral("R2"));
    const QDomDocument document = VNGraphDocument::create(*model);
    const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(db->createGraph(model.get(), document));
    if (graph && !overlayName.isEmpty()) {
        std::unique_ptr<VNDataModelOverlay> overlay = zone(overlayName);
        if (!db->overlayCreate(graph, overlay.get(), document))
            return nullptr;
    }
    return graph;
}
} // namespace

class TestToviMerged : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { TTranslator::install(QStringLiteral("en")); }
    void init()
    {
        ToviTest::useNewFolder(m_data, m_dir);
        DatabaseFactoryInterface::install(&m_factory);
        TAssert::clear();
    }
    void cleanup()
    {
        VNDatabaseToviMGR::clear();
        DatabaseFactoryInterface::uninstall(&m_factory);
        m_data.reset();
        m_dir.reset();
        TTranslator::install(QStringLiteral("en"));
    }

    void graphsAndOverlaysAreStoredWithTheirDrawings()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(kUser));
        std::unique_ptr<VNDataModelGraph> model
            = crossPlot(QStringLiteral("Pr/n-C17 vs Ph/n-C18"), QStringLiteral("R1"), QStringLiteral("R2"));
        const QDomDocument document = VNGraphDocument::create(*model);
        QCOMPARE(db->getRatioUids(document), (QStringList{QStringLiteral("R1"), QStringLiteral("R2")}));

        const VNObject2* made = db->createGraph(model.get(), document);
        const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(made);
        QVERIFY(graph);
        const QString identifier = made->key();
        Sedra::TToviGraph* record = db->getGraph(made);
        QVERIFY(record);
        QVERIFY(QFileInfo::exists(QDir(db->getCurrentWorkingPath()).filePath(record->relativePath())));
        QVERIFY(!VNDatabaseTovi::getXmlData(made).isNull());

        // Each value of the model in its own place.
        const Sedra::TToviGraph::GraphInformation info = db->getGraphInformation(identifier);
        QCOMPARE((QStringList{info.toviName, info.literatureReference, info.comments, info.expectedUnit,
                              info.expectedAnalysisType, info.studyType, info.familyName, info.processType}),
                 (QStringList{"Pr/n-C17 vs Ph/n-C18", "Connan and Cassou 1980", model->getComments(), "ratio",
                              "Saturates", "Source rock", "Isoprenoids", "GC"}));
        QVERIFY(!info.isORL);
        const Sedra::TToviGraph::GraphInformation unknown = db->getGraphInformation(QStringLiteral("no such graph"));
        QVERIFY(unknown.toviName.isEmpty() && unknown.comments.isEmpty() && unknown.processType.isEmpty());
        QCOMPARE(unknown.number, 0);
        QVERIFY(!unknown.isORL);

        // An update writes through the same record and answers the same object.
        model->setComments(QStringLiteral("revised"));
        model->setIsORL(true);
        QCOMPARE(db->graphUpdate(made, model.get(), document), made);
        QCOMPARE(db->getGraphInformation(identifier).comments, QStringLiteral("revised"));
        QVERIFY(db->getGraphInformation(identifier).isORL);

        // Only a graph model describes a graph.
        std::unique_ptr<VNDataModelOverlay> overlayModel = zone(QStringLiteral("Type II kerogen"));
        QVERIFY(!db->createGraph(overlayModel.get(), document));
        QVERIFY(TAssert::contains(QStringLiteral("graphModel != 0"), QStringLiteral("vndatabasetovi")));
        QVERIFY(!db->graphUpdate(made, overlayModel.get(), document));

        // Overlays: the equation is always the model-less one; names compare exactly.
        const VNObject2* overlay = db->overlayCreate(graph, overlayModel.get(), document);
        QVERIFY(overlay);
        Sedra::TToviOverlay* overlayRecord = db->getOverlay(overlay);
        QVERIFY(overlayRecord);
        QCOMPARE((QStringList{overlayRecord->getEquation(), overlayRecord->getToVIName(),
                              overlayRecord->getLiteratureReference(), overlayRecord->getProcessType()}),
                 (QStringList{"no equation in model", "Type II kerogen", "Shanmugam 1985", "Kerogen type"}));
        QCOMPARE(db->getOverlays(graph), QList<const VNObject2*>{overlay});
        QCOMPARE(db->getOverlay(graph, overlay->name()), overlay);
        QVERIFY(!db->getOverlay(graph, overlay->name().toUpper() + QStringLiteral("x")));
        QVERIFY(!db->overlayCreate(nullptr, overlayModel.get(), document));
        QVERIFY(!db->overlayUpdate(overlay, graph, model.get(), document)); // not an overlay model
        QCOMPARE(db->overlayUpdate(overlay, graph, overlayModel.get(), document), overlay);
        QVERIFY(!db->getOverlay(made)); // a graph is not an overlay

        // Everything reads back from the file, the record of the refused
        // creation too (its drawing was never written).
        db.reset(makeTovi(kUser));
        QCOMPARE(db->getAllGraphs().size(), 2);
        QCOMPARE(db->getAllOverlays().size(), 1);
        QCOMPARE(db->getGraphInformation(identifier).comments, QStringLiteral("revised"));
        made = db->getGraph(identifier);
        QVERIFY(made);
        graph = dynamic_cast<const VNObject2ToviGraph*>(made);
        QCOMPARE(db->getOverlays(graph).size(), 1);

        // A missing drawing reads as nothing.
        QVERIFY(QFile::remove(QDir(db->getCurrentWorkingPath()).filePath(db->getGraph(made)->relativePath())));
        QVERIFY(VNDatabaseTovi::getXmlData(made).isNull());
        QVERIFY(VNDatabaseTovi::getXmlData(nullptr).isNull());

        // Removing a graph takes its overlays.
        QVERIFY(!db->overlayRemove(nullptr));
        QVERIFY(db->removeObject(made, false));
        QCOMPARE(db->getAllGraphs().size(), 1);
        QVERIFY(!db->getGraph(identifier));
        QVERIFY(db->getAllOverlays().isEmpty());
    }

    // The drawing read back outlives the file's document it was read from:
    // the caller can make nodes through its owner document, change it, import
    // it elsewhere, and keep it after the database is gone.
    void aDrawingReadBackIsTheCallersToUse()
    {
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(kUser));
        std::unique_ptr<VNDataModelGraph> model
            = crossPlot(QStringLiteral("Pristane; \"Phytane\" é"), QStringLiteral("R1"), QStringLiteral("R2"));
        const QDomDocument document = VNGraphDocument::create(*model);
        const QDomElement sent
            = TXMLMethod::getChildElement(document.documentElement(), QStringLiteral("TDataXml")).firstChildElement();
        QVERIFY(!sent.isNull());
        const VNObject2* made = db->createGraph(model.get(), document);
        QVERIFY(made);

        QDomElement drawing = VNDatabaseTovi::getXmlData(made);
        const QDomElement again = VNDatabaseTovi::getXmlData(made);
        QVERIFY(!drawing.isNull() && !again.isNull());
        QCOMPARE(drawing.tagName(), sent.tagName());
        QCOMPARE(drawing.text(), sent.text());
        QCOMPARE(drawing.childNodes().size(), sent.childNodes().size());
        db.reset();

        QDomDocument owner = drawing.ownerDocument();
        QVERIFY(!owner.isNull());
        QDomElement note = owner.createElement(QStringLiteral("note"));
        note.appendChild(owner.createTextNode(QStringLiteral("read back")));
        drawing.appendChild(note);
        drawing.setAttribute(QStringLiteral("checked"), QStringLiteral("yes"));
        // Each call gives a copy of its own.
        QVERIFY(again.lastChildElement(QStringLiteral("note")).isNull());
        QVERIFY(!again.hasAttribute(QStringLiteral("checked")));

        QDomDocument mine;
        mine.appendChild(mine.importNode(drawing, true));
        QCOMPARE(mine.documentElement().attribute(QStringLiteral("checked")), QStringLiteral("yes"));
        QVERIFY(mine.toString().contains(QStringLiteral("<note>read back</note>")));
    }

    void aGraphThatCannotBeSavedSaysSo_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("text");
        QTest::newRow("en") << "en"
                            << "Impossible to save graph %1";
        QTest::newRow("fr") << "fr"
                            << "Impossible de sauvegarder le graphe %1";
    }

    void aGraphThatCannotBeSavedSaysSo()
    {
        QFETCH(QString, language);
        QFETCH(QString, text);
        std::unique_ptr<VNDatabaseTovi> db(makeTovi(kUser));
        // A file where the graph folder should be: no drawing can be written.
        QFile blocker(QDir(db->getCurrentWorkingPath()).filePath(VNObject2ToviGraph::folderName()));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.write("not a folder");
        blocker.close();
        TTranslator::install(language);
        TRecordingLogger log;
        std::unique_ptr<VNDataModelGraph> model
            = crossPlot(QStringLiteral("G"), QStringLiteral("R1"), QStringLiteral("R2"));
        QVERIFY(!db->createGraph(model.get(), VNGraphDocument::create(*model)));
        const QStringList errors = log.messages(MessageLoggerInterface::LevelError);
        QVERIFY2(std::any_of(errors.cbegin(), errors.cend(),
                             [&](const QString& e) {
                                 return e.startsWith(text.arg(QString()))
                                     && e.contains(VNObject2ToviGraph::folderName());
                             }),
                 qPrintable(errors.join(QLatin1Char('\n'))));
        // The record stays, as the editor may save it again.
        QCOMPARE(db->getAllGraphs().size(), 1);
    }

    void anOverlayCopyBringsItsGraphFirst()
    {
        std::unique_ptr<VNDatabaseTovi> user(makeTovi(kUser));
        std::unique_ptr<VNDatabaseTovi> merged(makeTovi(kMerged));
        const VNObject2ToviGraph* graph = addGraph(user.get(), QStringLiteral("Pr/Ph vs CPI"), QStringLiteral("Oxic"));
        QVERIFY(graph);
        const QList<const VNObject2*> overlays = user->getOverlays(graph);
        QCOMPARE(overlays.size(), 1);

        bool first = false, second = false;
        int count = 0;
        const VNObject2* overlay = merged->objectCopy(overlays.first(), first, second, count);
        QVERIFY(overlay);
        QCOMPARE(overlay->name(), overlays.first()->name());
        const VNObject2* copiedGraph = merged->getGraph(graph->key());
        QVERIFY(copiedGraph);
        QCOMPARE(merged->getGraphInformation(graph->key()).comments, user->getGraphInformation(graph->key()).comments);
        QCOMPARE(merged->getOverlay(overlay)->getLiteratureReference(), QStringLiteral("Shanmugam 1985"));
        // Again: found, not doubled.
        QCOMPARE(merged->objectCopy(overlays.first(), first, second, count), overlay);
        QCOMPARE(merged->objectCopy(graph, first, second, count), copiedGraph);
        // The copy names the same drawing.
        QVERIFY(!VNDatabaseTovi::getXmlData(copiedGraph).isNull());
        merged.reset(makeTovi(kMerged));
        QCOMPARE(merged->getAllGraphs().size(), 1);
        QCOMPARE(merged->getAllOverlays().size(), 1);
    }

    void withoutASourceNothingIsMerged()
    {
        VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
        manager->setDb(makeTovi(kDelivered));
        manager->setDb(makeTovi(kMerged));
        QVERIFY(registered(kMerged)->getConnector()->setSerialNumber(QStringLiteral("old")));
        const QByteArray before = digest(fileOf(registered(kMerged)));
        QPointer<VNDatabaseTovi> merged(registered(kMerged));
        QVERIFY(!registered(kDelivered)->updateMergedDB());
        QCOMPARE(registered(kMerged), merged.data());
        QCOMPARE(digest(fileOf(merged)), before);

        // Nor without a factory to make the new merged database.
        manager->setDb(makeTovi(kUser));
        DatabaseFactoryInterface::uninstall(&m_factory);
        QVERIFY(!registered(kDelivered)->updateMergedDB());
        QCOMPARE(registered(kMerged), merged.data());
    }

    void rebuildKeepsDeliveredObjectsAndUserAliasValues()
    {
        QVERIFY(fillSources());
        const QByteArray delivered = digest(fileOf(registered(kDelivered)));
        const QByteArray user = digest(fileOf(registered(kUser)));
        const QString mergedFile = fileOf(registered(kMerged));
        // Leftovers of an earlier crash beside the merged file must not be
        // applied to the new copy.
        for (const char* side : {"-journal", "-wal", "-shm"}) {
            QFile junk(mergedFile + QLatin1String(side));
            QVERIFY(junk.open(QIODevice::WriteOnly));
            junk.write(QByteArray(4096, 'x'));
        }
        QPointer<VNDatabaseTovi> old(registered(kMerged));

        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(!old); // replaced
        VNDatabaseTovi* merged = registered(kMerged);
        QVERIFY(merged);
        QCOMPARE(merged->getDatabaseType(), Sedra::DatabaseToviMerged);
        QCOMPARE(fileOf(merged), mergedFile);
        QCOMPARE(merged->serialNumber(), sourcesStamp());
        QCOMPARE(merged->readSerialNumber(), sourcesStamp());
        for (const char* side : {"-journal", "-wal", "-shm"})
            QVERIFY(!QFileInfo::exists(mergedFile + QLatin1String(side)));
        QCOMPARE(digest(fileOf(registered(kDelivered))), delivered);
        QCOMPARE(digest(fileOf(registered(kUser))), user);
        QCOMPARE(mergedContents(merged), expectedMerged());

        // Current: reloaded, not rebuilt. What another connection wrote to
        // the merged file is read by the reload, into the same object, and
        // the stamp stays.
        {
            std::unique_ptr<VNDatabaseTovi> elsewhere(makeTovi(kMerged));
            QVERIFY(addCompound(elsewhere.get(), "MRG-C9", "phytane", "Ph"));
        }
        QVERIFY(!merged->getCompound(QStringLiteral("MRG-C9")));
        QVERIFY(registered(kUser)->updateMergedDB());
        QCOMPARE(registered(kMerged), merged);
        QVERIFY(merged->getCompound(QStringLiteral("MRG-C9")));
        QCOMPARE(merged->serialNumber(), sourcesStamp());
    }

    void staleByEitherSerialOrByAFailedGraphSync()
    {
        QVERIFY(fillSources());
        QVERIFY(registered(kUser)->updateMergedDB());

        // The stamp is the delivered serial followed by the user's, exactly.
        const QString a = registered(kDelivered)->serialNumber();
        const QString b = registered(kUser)->serialNumber();
        for (const QString& stamp : {a, b + a, a + b + " "}) {
            QVERIFY(registered(kMerged)->getConnector()->setSerialNumber(stamp));
            QPointer<VNDatabaseTovi> before(registered(kMerged));
            QVERIFY(registered(kUser)->updateMergedDB());
            QVERIFY2(!before, qPrintable(stamp));
            QCOMPARE(registered(kMerged)->serialNumber(), a + b);
        }
        // Any committed write to a source, even one that leaves the values
        // as they were, makes the merged database stale.
        for (int type : {kDelivered, kUser}) {
            VNDatabaseTovi* source = registered(type);
            const QString serial = source->serialNumber();
            QVERIFY(source->headerDb()->saveObjectToFile(
                source->headerDb()->findByObject(source->getRatio(QStringLiteral("R1"))), true));
            QVERIFY(source->serialNumber() != serial);
            QPointer<VNDatabaseTovi> before(registered(kMerged));
            QVERIFY(registered(kUser)->updateMergedDB());
            QVERIFY(!before);
        }
        QCOMPARE(registered(kMerged)->serialNumber(), sourcesStamp());
        QVERIFY(sourcesStamp() != a + b);
        QCOMPARE(mergedContents(registered(kMerged)), expectedMerged());

        // A user graph whose drawing is gone, in a database that may not drop
        // it: the sources cannot be trusted, so the merged copy is rebuilt.
        VNDatabaseTovi* user = registered(kUser);
        const VNObject2* graph = user->getAllGraphs().value(0);
        QVERIFY(graph);
        QVERIFY(QFile::remove(QDir(user->getCurrentWorkingPath()).filePath(user->getGraph(graph)->relativePath())));
        user->setReadOnly(true);
        QVERIFY(!user->graphOverlaySync());
        QPointer<VNDatabaseTovi> before(registered(kMerged));
        QVERIFY(user->updateMergedDB());
        QVERIFY(!before);
        QCOMPARE(registered(kMerged)->serialNumber(), sourcesStamp());
    }

    // The storage changes a source's serial with its data: what the library
    // alone adds to the user database reaches the merged one.
    void whatTheUserAddsReachesTheMergedDatabase()
    {
        registerAll();
        // Three new files are three serials: the empty merged database was
        // built from nothing and is stale, not current.
        QPointer<VNDatabaseTovi> fresh(registered(kMerged));
        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(!fresh);
        QCOMPARE(registered(kMerged)->serialNumber(), sourcesStamp());

        QVERIFY(registered(kUser)->createEIC(QStringLiteral("m/z 253"), QStringLiteral("253")));
        QVERIFY(addCompound(registered(kUser), "USR-C7", "28,30-bisnorhopane", "BNH;C28"));
        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(registered(kMerged)->getEICByName(QStringLiteral("m/z 253")));
        QVERIFY(registered(kMerged)->getCompound(QStringLiteral("USR-C7")));
        QCOMPARE(registered(kMerged)->serialNumber(), sourcesStamp());
    }

    // A kind whose batch cannot be written is not imported: the merged
    // database keeps no stamp and is rebuilt by the next synchronisation.
    void aFailedImportLeavesTheMergedDatabaseStale()
    {
        QVERIFY(fillSources());
        // The delivered file refuses the user's ion; the merged copy, made
        // from it, inherits the refusal.
        const QString deliveredFile = fileOf(registered(kDelivered));
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("trigger"));
            db.setDatabaseName(deliveredFile);
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY2(query.exec("CREATE TRIGGER refuse_ion BEFORE INSERT ON objects WHEN NEW.key = 'm/z 191' "
                                "BEGIN SELECT RAISE(ABORT, 'refused'); END"),
                     qPrintable(query.lastError().text()));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("trigger"));
        TRecordingLogger log;
        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(!log.messages(MessageLoggerInterface::LevelWarning).isEmpty());
        VNDatabaseTovi* merged = registered(kMerged);
        QVERIFY(merged->serialNumber() != sourcesStamp());
        QVERIFY(!merged->importObjectsByType(registered(kUser), VNObjectTypeIon));
        // Still stale: rebuilt again, not reloaded.
        QPointer<VNDatabaseTovi> before(merged);
        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(!before);
    }

    void anInterruptedRebuildIsRebuiltNextTime_data()
    {
        QTest::addColumn<int>("cut");
        QTest::newRow("after the copy of the delivered file") << 0;
        QTest::newRow("after the removal of the merged file") << 1;
        QTest::newRow("during the import") << 2;
        QTest::newRow("leaving a damaged file") << 3;
    }

    void anInterruptedRebuildIsRebuiltNextTime()
    {
        QFETCH(int, cut);
        QVERIFY(fillSources());
        VNDatabaseToviMGR* manager = VNDatabaseToviMGR::getInstance();
        QVERIFY(registered(kUser)->updateMergedDB());
        const QString mergedFile = fileOf(registered(kMerged));
        const QString deliveredFile = fileOf(registered(kDelivered));
        manager->closeDb(kMerged);
        QVERIFY(QFile::remove(mergedFile));
        if (cut == 0) {
            QVERIFY(QFile::copy(deliveredFile, mergedFile));
        } else if (cut == 2) {
            // The copy stands and part of the user's objects are in, with no stamp.
            QVERIFY(QFile::copy(deliveredFile, mergedFile));
            std::unique_ptr<VNDatabaseTovi> partial(makeTovi(kMerged));
            QVERIFY(partial->getConnector()->setSerialNumber(QStringLiteral("rebuilding")));
            QVERIFY(partial->importObjectsByType(registered(kUser), VNObjectTypeIon));
        } else if (cut == 3) {
            QFile damaged(mergedFile);
            QVERIFY(damaged.open(QIODevice::WriteOnly));
            damaged.write(QByteArray("SQLite format 3").append(QByteArray(8192, '\xff')));
        }
        // A rebuild file left half-written is not taken for the result.
        QFile half(mergedFile + QStringLiteral(".rebuild"));
        QVERIFY(half.open(QIODevice::WriteOnly));
        half.write("half");
        half.close();

        manager->setDb(makeTovi(kMerged));
        QVERIFY(registered(kMerged)->serialNumber() != sourcesStamp());
        QVERIFY(registered(kUser)->updateMergedDB());
        QCOMPARE(registered(kMerged)->serialNumber(), sourcesStamp());
        QCOMPARE(mergedContents(registered(kMerged)), expectedMerged());
        QVERIFY(!QFileInfo::exists(half.fileName()));
    }

    void aRebuildWithoutACopyKeepsTheOldMergedDatabase_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("expected");
        QTest::newRow("en")
            << "en"
            << "The merged reference database cannot be rebuilt: <b>%1</b> cannot be copied to <b>%2</b>";
        QTest::newRow("fr") << "fr"
                            << "La base de référence fusionnée ne peut pas être reconstruite : <b>%1</b> ne peut pas "
                               "être copié vers <b>%2</b>";
    }

    // The copy of the delivered file cannot be made (something that cannot be
    // removed stands where it goes): the merged database is neither emptied
    // nor stamped, so it is still stale, and the next synchronisation that can
    // copy rebuilds it.
    void aRebuildWithoutACopyKeepsTheOldMergedDatabase()
    {
        QFETCH(QString, language);
        QFETCH(QString, expected);
        QVERIFY(fillSources());
        QVERIFY(registered(kUser)->updateMergedDB());
        const QString stamp = sourcesStamp();
        QVERIFY(addCompound(registered(kUser), "USR-C3", "gammacerane", "Ga;C30"));
        const QString mergedFile = fileOf(registered(kMerged));
        const QByteArray before = digest(mergedFile);
        const QString inTheWay = mergedFile + QStringLiteral(".rebuild");
        QVERIFY(QDir().mkpath(inTheWay + QStringLiteral("/kept")));

        TTranslator::install(language);
        TRecordingLogger log;
        QPointer<VNDatabaseTovi> merged(registered(kMerged));
        // Both sources are there: the answer is still true, the warning tells.
        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(
            log.contains(MessageLoggerInterface::LevelWarning, expected.arg(fileOf(registered(kDelivered)), inTheWay)));
        QCOMPARE(registered(kMerged), merged.data());
        QCOMPARE(merged->serialNumber(), stamp);
        QCOMPARE(digest(mergedFile), before);
        QCOMPARE(mergedContents(merged), expectedMerged());

        QVERIFY(QDir(inTheWay).removeRecursively());
        QVERIFY(registered(kUser)->updateMergedDB());
        QVERIFY(!merged);
        QCOMPARE(registered(kMerged)->serialNumber(), sourcesStamp());
        QVERIFY(registered(kMerged)->getCompound(QStringLiteral("USR-C3")));
    }

    void aGraphSavedInTheUserDatabaseReachesTheMergedOne()
    {
        QVERIFY(fillSources());
        QVERIFY(registered(kUser)->updateMergedDB());
        VNDatabaseTovi* merged = registered(kMerged);

        // The editor saves a new graph in the user database, which is
        // stamped anew, and asks the merged database to refresh its graphics.
        VNDatabaseTovi* user = registered(kUser);
        const VNObject2ToviGraph* graph
            = addGraph(user, QStringLiteral("Ts/(Ts+Tm) vs C29 20S/(20S+20R)"), QStringLiteral("Mature window"));
        QVERIFY(graph);
        const QString identifier = graph->key();
        QVERIFY(VNDatabaseToviMerged().updateMergedAfterGraphSaveORLorUSR());

        QCOMPARE(registered(kMerged), merged); // refreshed, not rebuilt
        QCOMPARE(merged->serialNumber(), sourcesStamp());
        QCOMPARE(merged->getAllOverlays().size(), 2);
        QVERIFY(!VNDatabaseTovi::getXmlData(merged->getGraph(identifier)).isNull());
        // The reference-database selector over the merged database shows it,
        // by its name, with its overlay.
        ObjectSelectorDatabaseModel selector;
        selector.setActiveDB({merged});
        selector.fillGraph(false, true);
        const ObjectSelectorModel::Node* category = selector.root().getFirstSon();
        QVERIFY(category);
        const ObjectSelectorModel::Node* shown = nullptr;
        for (const ObjectSelectorModel::Node* son : category->getSons()) {
            auto* item = dynamic_cast<QObject*>(son->attribute);
            if (item && item->property("TITLE").toString() == QStringLiteral("Ts/(Ts+Tm) vs C29 20S/(20S+20R)"))
                shown = son;
        }
        QVERIFY(shown);
        QCOMPARE(shown->getNbSons(), 1);
        auto* overlayItem = dynamic_cast<QObject*>(shown->getFirstSon()->attribute);
        QVERIFY(overlayItem);
        QCOMPARE(overlayItem->property("TITLE").toString(), QStringLiteral("Mature window"));

        // Nothing else moved: the merged database is current.
        QVERIFY(user->updateMergedDB());
        QCOMPARE(registered(kMerged), merged);
        QCOMPARE(merged->getAllGraphs().size(), 2);

        // Without a source there is nothing to refresh from.
        VNDatabaseToviMGR::getInstance()->closeDb(kDelivered);
        QVERIFY(!VNDatabaseToviMerged().updateMergedAfterGraphSaveORLorUSR());
    }

private:
    // What the merged database is stamped with when it was built from the
    // sources as they are now.
    QString sourcesStamp() { return registered(kDelivered)->serialNumber() + registered(kUser)->serialNumber(); }

    static void registerAll()
    {
        for (Sedra::DatabaseType type : {kDelivered, kUser, kMerged})
            VNDatabaseToviMGR::getInstance()->setDb(makeTovi(type));
    }

    // Delivered and user databases, registered with an empty merged one.
    // They share a parameter key and a compound identity; the user changes
    // one alias value of the shared compound. False when any step failed.
    static bool fillSources()
    {
        registerAll();
        VNDatabaseTovi* delivered = registered(kDelivered);
        VNDatabaseTovi* user = registered(kUser);
        const Sedra::TToviCompound* theirs = addCompound(delivered, "ORL-C1", "pristane", "Pr;iC19");
        const Sedra::TToviCompound* mine = addCompound(user, "USR-C1", "pristane (mine)", "Pr;iC19");
        return theirs && mine && delivered->aliasCreate(toviObject(theirs->object()), "CAS", "A", "1921-70-6")
            && delivered->aliasCreate(toviObject(theirs->object()), "masterName", "A", "pristane")
            && delivered->createEIC("m/z 57", "57") && addRatio(delivered, "R1", "Pr/Ph")
            && user->aliasCreate(toviObject(mine->object()), "CAS", "A", "1921-70-6 (checked)")
            && user->aliasCreate(toviObject(mine->object()), "name", "B", "iC19")
            && user->aliasCreate(toviObject(mine->object()), "masterName", "A", "2,6,10,14-tetramethylpentadecane")
            && addCompound(user, "USR-C2", "18\u03b1(H)-oleanane", "Ol;C30") && user->createEIC("m/z 191", "191")
            && user->createJoint("USR-C2", "m/z 191", "oleanane 191") && addRatio(user, "R1", "Pr/Ph (mine)")
            && addRatio(user, "USR-R2", "Oleanane index") && addGraph(user, "Pr/n-C17 vs Ph/n-C18", "Type II");
    }

    // What a merged database holds, in the terms of the merge rules.
    static QStringList mergedContents(VNDatabaseTovi* merged)
    {
        if (!merged)
            return {QStringLiteral("no merged database")};
        const VNObject2* pristane = merged->getCompound(QStringLiteral("ORL-C1"));
        const auto alias = [&](const char* field, const char* vendor) {
            const Sedra::TToviAlias* found = pristane ? merged->getAlias(toviObject(pristane), field, vendor) : nullptr;
            return found ? found->getValue() : QStringLiteral("-");
        };
        const auto keys = [](const QList<const VNObject2*>& objects) {
            QStringList found;
            for (const VNObject2* object : objects)
                found << object->key();
            found.sort();
            return found.join(QLatin1Char(','));
        };
        const VNObject2* r1 = merged->getRatio(QStringLiteral("R1"));
        return {QStringLiteral("compounds ") + keys(merged->getAllCompounds()),
                QStringLiteral("pristane named ") + (pristane ? pristane->name() : QStringLiteral("-")),
                QStringLiteral("CAS/A ") + alias("CAS", "A"),
                QStringLiteral("name/B ") + alias("name", "B"),
                QStringLiteral("masterName/A ") + alias("masterName", "A"),
                QStringLiteral("aliases %1 by ").arg(merged->getAllAlias().size())
                    + merged->getAliasVendors().join(','),
                QStringLiteral("parameters ") + keys(merged->getAllRatios()),
                QStringLiteral("R1 named ") + (r1 ? r1->name() : QStringLiteral("-")),
                QStringLiteral("ions %1 joints %2, oleanane joined %3")
                    .arg(merged->getAllIons().size())
                    .arg(merged->getAllJoints().size())
                    .arg(merged->getJoint(QStringLiteral("USR-C2"), QStringLiteral("m/z 191")) != nullptr),
                QStringLiteral("graphs %1 overlays %2")
                    .arg(merged->getAllGraphs().size())
                    .arg(merged->getAllOverlays().size())};
    }

    // Delivered identity wins; the user's alias values replace the delivered
    // ones (a replaced master name renames the compound, as a new one does)
    // and add their own; what only the user has comes in.
    static QStringList expectedMerged()
    {
        return QStringLiteral("compounds ORL-C1,USR-C2|pristane named 2,6,10,14-tetramethylpentadecane|"
                              "CAS/A 1921-70-6 (checked)|name/B iC19|masterName/A 2,6,10,14-tetramethylpentadecane|"
                              "aliases 3 by A,B|parameters R1,USR-R2|R1 named Pr/Ph|"
                              "ions 2 joints 1, oleanane joined 1|graphs 1 overlays 1")
            .split(QLatin1Char('|'));
    }

    VNDatabaseFactory m_factory;
    std::unique_ptr<TApplicationData> m_data;
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_MAIN(TestToviMerged)
#include "tst_vndatabasetovimerged.moc"
