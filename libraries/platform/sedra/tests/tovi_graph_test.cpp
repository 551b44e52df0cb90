#include "tovi_testdatabase.h"

#include <tabstractmapper.h>
#include <ttovibatch.h>
#include <ttovigraph.h>
#include <ttovioverlay.h>

#include <vnobject2tovigraph.h>
#include <vnobject2tovioverlay.h>

#include <testfiles.h>

#include <QTemporaryDir>
#include <QtTest>

using namespace Sedra;

namespace {

// Every stored field of a graph's information, `number` included, in one list.
QStringList fieldsOf(const TToviGraph::GraphInformation& i)
{
    return {i.toviName,     QString::number(i.number), i.literatureReference, i.comments,
            i.expectedUnit, i.expectedAnalysisType,    i.studyType,           i.familyName,
            i.processType,  QString::number(i.isORL)};
}

QString drawingOf(const TDatabaseObject* record)
{
    return TAbstractMapper::objectFilePath(record->object(), nullptr);
}

} // namespace

class TestToviGraph : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void graphsAreNumberedFileRecordsUnderTheWorkingPath()
    {
        const QString path = folder();
        ToviKinds db(DatabaseToviUser, path, &m_factory);
        QVERIFY(db.graphs && db.overlays);
        TToviGraph* first = db.graphs->createGraph(QString());
        TToviGraph* second = db.graphs->createGraph(QString());
        TToviGraph* named = db.graphs->createGraph("../../escape me");
        QVERIFY(first && second && named);
        QVERIFY(first->identifier() != second->identifier());
        QCOMPARE(first->name(), first->identifier());
        QCOMPARE((QList<int>{first->number(), second->number(), named->number()}), (QList<int>{1, 2, 3}));
        QVERIFY(!db.graphs->createGraph("../../escape me"));
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeGraph), 3);
        // Every drawing lies in the graph folder under the working path, even for
        // an identifier that tries to climb out of it.
        const QString root = QDir(path).filePath(VNObject2ToviGraph::folderName()) + QLatin1Char('/');
        for (const TToviGraph* g : db.graphs->graphList()) {
            QVERIFY2(g->relativePath().startsWith(VNObject2ToviGraph::folderName() + QLatin1Char('/')),
                     qPrintable(g->relativePath()));
            QCOMPARE(g->relativeFolderPath(), VNObject2ToviGraph::folderName());
            // Clean and under the folder: no ".." left to climb with.
            QVERIFY2(drawingOf(g).startsWith(root), qPrintable(drawingOf(g)));
            QCOMPARE(QDir::cleanPath(drawingOf(g)), drawingOf(g));
        }
        // The file depends on the identifier only: two databases of one working
        // folder name one file for one graph.
        ToviKinds merged(DatabaseToviMerged, path, &m_factory);
        TToviGraph* copy = merged.graphs->createGraph(first->identifier());
        QVERIFY(copy);
        QCOMPARE(drawingOf(copy), drawingOf(first));
        QCOMPARE(copy->number(), 1);
        // Numbers go on after the largest one, also after a removal.
        QVERIFY(db.graphs->remove(first->object(), true, true));
        QCOMPARE(db.graphs->createGraph(QString())->number(), 4);
        // The generic creation of the storage makes the same records.
        QVERIFY(dynamic_cast<TToviGraph*>(db.graphs->create(QString())));
    }

    void graphInformationKeepsItsFieldsAcrossReload()
    {
        const QString path = folder();
        QString id;
        TToviGraph::GraphInformation info;
        {
            ToviKinds db(DatabaseToviUser, path, &m_factory);
            TToviGraph* g = db.graphs->createGraph(QString());
            info.toviName = "Pr/n-C17 vs Ph/n-C18";
            info.number = 77; // kept by the storage, not taken from here
            info.literatureReference = "Shanmugam 1985; \"AAPG Bulletin\"";
            info.comments = "Kerogen types I–III, zone « mixte »";
            info.expectedUnit = "ratio";
            info.expectedAnalysisType = "GC";
            info.studyType = "Source";
            info.familyName = "Isoprenoids";
            info.processType = "Cross-plot";
            info.isORL = true;
            g->setGraphInformation(info);
            g->setRatioUids({"R002", QString(), "R003"});
            QVERIFY(db.headerDb()->saveObjectToFile(g, true));
            id = g->identifier();
        }
        ToviKinds db(DatabaseToviUser, path, &m_factory);
        TToviGraph* g = db.graphs->graph(id);
        QVERIFY(g);
        info.number = 1;
        QCOMPARE(fieldsOf(g->getGraphInformation()), fieldsOf(info));
        // One axis per entry, the empty axis kept.
        QCOMPARE(g->ratioUids(), QStringList({"R002", QString(), "R003"}));
        QCOMPARE(g->property("ratioUID"), "R002;;R003");
        QCOMPARE(g->graph()->getTitle(), info.toviName);
    }

    void overlaysBelongToTheirGraph()
    {
        const QString path = folder();
        QString graphId;
        {
            ToviKinds db(DatabaseToviUser, path, &m_factory);
            TToviGraph* g = db.graphs->createGraph(QString());
            TToviGraph* other = db.graphs->createGraph(QString());
            graphId = g->identifier();
            TToviOverlay* o1 = db.overlays->overlayCreate(g->graph(), QString());
            TToviOverlay* o2 = db.overlays->overlayCreate(g->graph(), "immature zone");
            QVERIFY(o1 && o2);
            QVERIFY(db.overlays->overlayCreate(other->graph(), QString()));
            QVERIFY(!db.overlays->overlayCreate(g->graph(), "immature zone"));
            QVERIFY(!db.overlays->overlayCreate(nullptr, QString()));
            QVERIFY(!db.overlays->create("x"));
            // A graph of another database is not ours.
            ToviKinds foreign(DatabaseToviMerged, path, &m_factory);
            TToviGraph* theirs = foreign.graphs->createGraph(QString());
            QVERIFY(!db.overlays->overlayCreate(theirs->graph(), QString()));
            QCOMPARE(o1->getParent(), g);
            QCOMPARE(o2->relativeFolderPath(), VNObject2ToviGraph::folderName() + QLatin1Char('/') + g->identifier());
            o2->setEquation("y = 2x + 1");
            o2->setToVIName("Immature");
            QVERIFY(db.headerDb()->saveObjectToFile(o2, true));
            QCOMPARE(db.overlays->overlaysOf(g->graph()), QList<const VNObject2*>({o1->object(), o2->object()}));
            QCOMPARE(TAbstractMapper::getObjectChildLst(g->graph(), VNObjectTypeOverlay).size(), 2);
            QCOMPARE(db.overlays->overlayList().size(), 3);
        }
        ToviKinds db(DatabaseToviUser, path, &m_factory);
        TToviGraph* g = db.graphs->graph(graphId);
        QVERIFY(g);
        QCOMPARE(db.overlays->overlaysOf(g->graph()).size(), 2);
        TToviOverlay* o2 = db.overlays->overlay("immature zone");
        QVERIFY(o2);
        QCOMPARE(o2->graph(), g->graph());
        QCOMPARE(o2->getEquation(), "y = 2x + 1");
        QCOMPARE(o2->getToVIName(), "Immature");
        // Removing the graph removes its overlays, in memory and in the file.
        QVERIFY(db.graphs->remove(g->graph(), true, true));
        QCOMPARE(db.overlays->overlayList().size(), 1);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeOverlay), 1);
    }

    void syncDropsRecordsWithoutDrawing()
    {
        const QString path = folder();
        QString keptId, lostId, keptOverlay, lostOverlay, orphanOverlay;
        {
            ToviKinds db(DatabaseToviUser, path, &m_factory);
            TToviGraph* kept = db.graphs->createGraph(QString());
            TToviGraph* lost = db.graphs->createGraph(QString());
            TToviOverlay* ok = db.overlays->overlayCreate(kept->graph(), QString());
            TToviOverlay* noFile = db.overlays->overlayCreate(kept->graph(), QString());
            TToviOverlay* ofLost = db.overlays->overlayCreate(lost->graph(), QString());
            QVERIFY(db.aliases->aliasCreate(lost->graph(), "masterName", "V", "lost graph"));
            QVERIFY(writeFile(drawingOf(kept), "<graph/>"));
            QVERIFY(writeFile(drawingOf(ok), "<graph/>"));
            // The overlay of the lost graph has its file; the graph has none.
            QVERIFY(writeFile(drawingOf(ofLost), "<graph/>"));
            keptId = kept->identifier();
            lostId = lost->identifier();
            keptOverlay = ok->identifier();
            lostOverlay = noFile->identifier();
            orphanOverlay = ofLost->identifier();

            THeaderToviConnector* connector = db.tovi();
            QVERIFY(connector->graphOverlaySync());
            QCOMPARE(
                QSet<QString>(connector->lastSyncReport().removed.begin(), connector->lastSyncReport().removed.end()),
                QSet<QString>({lostId, lostOverlay, orphanOverlay}));
            QVERIFY(db.graphs->graph(keptId));
            QVERIFY(!db.graphs->graph(lostId));
            QCOMPARE(db.overlays->overlayList().size(), 1);
            QVERIFY(db.aliases->aliasList().isEmpty());
            // The files are left as they were (another database may name them).
            QVERIFY(QFileInfo(drawingOf(ok)).isFile());
            // Agreeing records and files: nothing more to do.
            QVERIFY(connector->graphOverlaySync());
            QVERIFY(connector->lastSyncReport().removed.isEmpty());
        }
        ToviKinds db(DatabaseToviUser, path, &m_factory);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeGraph), 1);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeOverlay), 1);
        QCOMPARE(rowsOfKind(db.fileName(), VNObjectTypeAlias), 0);
        QVERIFY(db.overlays->overlay(keptOverlay));
    }

    void syncOnTheFileAloneOnTamperedPathsAndReadOnly()
    {
        const QString path = folder();
        QString good, bad, climbing;
        {
            ToviKinds db(DatabaseToviUser, path, &m_factory);
            TToviGraph* a = db.graphs->createGraph(QString());
            TToviGraph* b = db.graphs->createGraph(QString());
            TToviGraph* c = db.graphs->createGraph(QString());
            QVERIFY(writeFile(drawingOf(a), "<graph/>"));
            QVERIFY(writeFile(drawingOf(c), "<graph/>"));
            good = a->identifier();
            bad = b->identifier();
            climbing = c->identifier();
        }
        {
            // A read-only database keeps its records without drawing.
            ToviKinds readOnly(DatabaseToviUser, path, &m_factory, true);
            QVERIFY(readOnly.opened);
            QVERIFY(!readOnly.tovi()->graphOverlaySync());
            QVERIFY(!readOnly.tovi()->lastSyncReport().error.isEmpty());
            QCOMPARE(readOnly.graphs->count(), 3);
            QCOMPARE(rowsOfKind(readOnly.fileName(), VNObjectTypeGraph), 3);
        }
        // A path edited to leave the working folder is never followed, even when
        // a file exists there.
        const QString outside = m_dir.filePath("outside.xml");
        QVERIFY(writeFile(outside, "<graph/>"));
        ToviTestDatabase probe(DatabaseToviUser, path, nullptr);
        QVERIFY(probe.opened);
        const QString file = probe.fileName();
        QCOMPARE(runSql(file,
                        {QString("UPDATE objects SET path = '../outside.xml' WHERE key = '%1'").arg(climbing),
                         "SELECT changes()"}),
                 QVariant(1));
        // A database without mappers holds no records: the sync works on the
        // rows of the file.
        QVERIFY(probe.tovi()->graphOverlaySync());
        QCOMPARE(
            QSet<QString>(probe.tovi()->lastSyncReport().removed.begin(), probe.tovi()->lastSyncReport().removed.end()),
            QSet<QString>({bad, climbing}));
        QCOMPARE(rowsOfKind(file, VNObjectTypeGraph), 1);
        QVERIFY(QFileInfo(outside).isFile());
        ToviKinds db(DatabaseToviUser, path, &m_factory);
        QVERIFY(db.graphs->graph(good));
        QCOMPARE(db.graphs->count(), 1);
        // Without a header file there is nothing to agree with.
        THeaderToviConnector closed;
        QVERIFY(!closed.graphOverlaySync());
    }

    void copyContentBringsTheDrawing()
    {
        const QString sourcePath = folder();
        const QString targetPath = folder();
        ToviKinds source(DatabaseToviUser, sourcePath, &m_factory);
        ToviKinds target(DatabaseToviMerged, targetPath, &m_factory);
        auto* from = source.graphs;
        auto* to = target.graphs;
        QVERIFY(to->createGraph(QString()));
        TToviGraph* g = from->createGraph(QString());
        TToviGraph::GraphInformation info;
        info.toviName = "Sterane ternary C27-C28-C29";
        info.isORL = false;
        info.comments = "Huang & Meinschein 1979";
        g->setGraphInformation(info);
        const QByteArray drawing("<graph><axis>C27</axis><axis>C28</axis><axis>C29</axis></graph>");
        QVERIFY(writeFile(drawingOf(g), drawing));
        TToviOverlay* o = source.overlays->overlayCreate(g->graph(), QString());
        o->setEquation("no equation in model");
        QVERIFY(writeFile(drawingOf(o), "<overlay/>"));

        TToviGraph* copy = to->createGraph(g->identifier());
        QVERIFY(copy);
        QVERIFY(copy->copyContent(g));
        QCOMPARE(copy->getToVIName(), info.toviName);
        QCOMPARE(copy->getComments(), info.comments);
        QCOMPARE(copy->number(), 2);
        QCOMPARE(copy->graph()->getTitle(), info.toviName);
        QCOMPARE(readAll(drawingOf(copy)), drawing);
        QVERIFY(drawingOf(copy).startsWith(targetPath));
        TToviOverlay* overlayCopy = target.overlays->overlayCreate(copy->graph(), o->identifier());
        QVERIFY(overlayCopy->copyContent(o));
        QCOMPARE(overlayCopy->getEquation(), "no equation in model");
        QVERIFY(QFileInfo(drawingOf(overlayCopy)).isFile());
        // A source without a drawing copies its fields and says the drawing failed.
        TToviGraph* bare = from->createGraph(QString());
        TToviGraph* bareCopy = to->createGraph(bare->identifier());
        QVERIFY(!bareCopy->copyContent(bare));
        QVERIFY(!bareCopy->copyContent(nullptr));
        QVERIFY(!QFileInfo(drawingOf(bareCopy)).exists());
    }

private:
    TMapperFactory m_factory;
    QTemporaryDir m_dir;
    int m_case = 0;
    QString folder() { return m_dir.filePath(QString("graphs%1").arg(++m_case)); }
};

QTEST_GUILESS_MAIN(TestToviGraph)
#include "tovi_graph_test.moc"
