#include <objectselectorctrl.h>
#include <objectselectordatabasemodel.h>
#include <objectselectoreditor.h>
#include <vndatabasetovi.h>
#include <vndatabasetovisample.h>
#include <vndatamodelgraph.h>
#include <vndatamodeloverlay.h>
#include <vngraphdocument.h>

#include "tst_models_sample.h"
#include "tst_objectselectorview.h"

#include <tapplicationdata.h>
#include <tprogressbarmgr.h>
#include <trecordinglogger.h>
#include <ttovicompound.h>
#include <ttoviratio.h>
#include <ttranslator.h>
#include <txmlmethod.h>
#include <vnobject2tovigraph.h>
#include <vnobject2toviratio.h>
#include <vnobjecttype.h>

#include <objectselectortreemodel.h>

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QtTest>

#include <memory>

#ifndef VN_SELECTOR_SCREENSHOT_DIR
#define VN_SELECTOR_SCREENSHOT_DIR "."
#endif

namespace {

using Node = ObjectSelectorModel::Node;

QObject* itemOf(const Node* node)
{
    return node ? dynamic_cast<QObject*>(node->attribute) : nullptr;
}

QStringList titles(const Node* node)
{
    QStringList result;
    for (const Node* son : node->getSons()) {
        auto* item = dynamic_cast<QObject*>(son->attribute);
        result << (item ? item->property("TITLE").toString() : QString());
    }
    return result;
}

const Node* category(const ObjectSelectorDatabaseModel& model)
{
    return model.root().getFirstSon();
}

// A user database whose ratio list also holds what has no ratio record: a
// null entry, a compound, and a ratio object that no database stores.
class RatioListWithStrays : public VNDatabaseTovi
{
public:
    RatioListWithStrays()
        : VNDatabaseTovi(Sedra::DatabaseToviUser)
    { }
    QList<const VNObject2*> strays;
    QList<const VNObject2*> getAllRatios() override { return VNDatabaseTovi::getAllRatios() + strays; }
};

const Node* nodeTitled(const Node* parent, const QString& title)
{
    for (const Node* son : parent->getSons()) {
        if (QObject* item = itemOf(son); item && item->property("TITLE").toString() == title)
            return son;
    }
    return nullptr;
}

// A selection element to write into.
QDomElement selectionRoot(QDomDocument& document)
{
    QDomElement root = document.createElement(QStringLiteral("selection"));
    document.appendChild(root);
    return root;
}

} // namespace

class TestObjectSelectorDatabaseModel : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<TApplicationData> m_app;
    std::unique_ptr<RatioListWithStrays> m_user;

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_app = std::make_unique<TApplicationData>();
        m_app->setValue(QStringLiteral("TOVIDBDIR"), m_dir.path());
        m_user = std::make_unique<RatioListWithStrays>();
        QVERIFY(m_user->loadDatabase());

        // Real compounds of petroleum geochemistry: key, name, formula, CAS, family, carbons.
        const char* const compounds[][6] = {
            {"C19_PRISTANE", "Pristane", "C19H40", "1921-70-6", "Isoprenoid", "19"},
            {"C20_PHYTANE", "Phytane", "C20H42", "638-36-8", "Isoprenoid", "20"},
            {"C30_HOPANE", "17a(H),21b(H)-Hopane", "C30H52", "13849-96-9", "Hopane", "30"},
        };
        for (const auto& c : compounds) {
            Sedra::TToviCompound model;
            model.setMasterName(QString::fromLatin1(c[1]));
            QVERIFY(model.setToviKey(QString::fromLatin1(c[3])));
            model.setFormula(QString::fromLatin1(c[2]));
            model.setCas(QString::fromLatin1(c[3]));
            model.setFamily(QString::fromLatin1(c[4]));
            model.setCarbons(QString::fromLatin1(c[5]));
            model.setStudyType(QStringLiteral("Source rock"));
            QVERIFY(m_user->createCompound(&model, QString::fromLatin1(c[0])));
        }
        QVERIFY(m_user->createEIC(QStringLiteral("m/z 191"), QStringLiteral("191")));
        QVERIFY(m_user->createEIC(QStringLiteral("m/z 217"), QStringLiteral("217")));
        const VNObject2* hopane = m_user->getCompoundByName(QStringLiteral("17a(H),21b(H)-Hopane"));
        const VNObject2* ion191 = m_user->getEICByName(QStringLiteral("m/z 191"));
        QVERIFY(hopane && ion191);
        QVERIFY(m_user->createJoint(hopane->key(), ion191->key(), QStringLiteral("Hopane on m/z 191")));

        // Display orders 3, 1, 3, 2: the second 3 goes after all others.
        const struct
        {
            const char* id;
            const char* name;
            int order;
        } ratios[] = {
            {"PR_PH", "Pr/Ph", 3}, {"TS_TSTM", "Ts/(Ts+Tm)", 1}, {"CPI", "CPI", 3}, {"STER_20S", "20S/(20S+20R)", 2}};
        for (const auto& r : ratios) {
            QVERIFY(m_user->createRatio(QString::fromLatin1(r.id), QString::fromLatin1(r.name), QString(), QString(),
                                        r.order, QStringLiteral("Maturity"), QStringLiteral("GC"), QString(), QString(),
                                        QString(), QString()));
        }

        VNDataModelGraph graph(Plavo::VIEW_ORTHOGONAL);
        graph.setToVIName(QStringLiteral("Pr/Ph against Ts/(Ts+Tm)"));
        graph.setAxisKey(0, QStringLiteral("PR_PH"));
        graph.setAxisKey(1, QStringLiteral("TS_TSTM"));
        const VNObject2* crossPlot = m_user->createGraph(&graph, VNGraphDocument::create(graph, {"191"}));
        QVERIFY(crossPlot);

        // Axes: a known key, none, and a key no database knows.
        VNDataModelGraph ternary(Plavo::VIEW_TERNARY);
        ternary.setToVIName(QStringLiteral("Sterane C27-C28-C29"));
        ternary.setAxisKey(0, QStringLiteral("STER_20S"));
        ternary.setAxisKey(2, QStringLiteral("REMOVED_KEY"));
        QVERIFY(m_user->createGraph(&ternary, VNGraphDocument::create(ternary, {"217"})));

        VNDataModelOverlay overlay;
        overlay.setHeadersData({"Pr/Ph", "Ts/(Ts+Tm)"}, {"Marine shale", "Lacustrine"});
        overlay.setToVIName(QStringLiteral("Source facies"));
        overlay.setLiteratureReference(QStringLiteral("Peters et al. (2005)"));
        QVERIFY(m_user->overlayCreate(dynamic_cast<const VNObject2ToviGraph*>(crossPlot), &overlay,
                                      overlayDocumentOf(overlay)));
    }

    void cleanupTestCase()
    {
        // Editing the search line fades its clear button in and out: a
        // parentless animation that deletes itself at its next tick. Let it
        // tick before the application ends, or it shows up as a leak.
        QTest::qWait(250);
        m_user.reset();
        m_app.reset();
    }

    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void compoundsCarryTheirPropertiesAsFilters_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("familyLabel");
        QTest::addColumn<QString>("nameLabel");
        QTest::newRow("en") << "en"
                            << "Compounds"
                            << "Familly"
                            << "Name";
        QTest::newRow("fr") << "fr"
                            << "Composés"
                            << "Famille"
                            << "Nom";
    }

    void compoundsCarryTheirPropertiesAsFilters()
    {
        QFETCH(QString, language);
        QFETCH(QString, title);
        QFETCH(QString, familyLabel);
        QFETCH(QString, nameLabel);
        TTranslator::install(language);

        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get()});
        model.fillWithCompounds(true);
        QCOMPARE(titles(&model.root()), QStringList{title});
        QCOMPARE(titles(category(model)), QStringList({"Pristane", "Phytane", "17a(H),21b(H)-Hopane"}));

        QObject* pristane = itemOf(category(model)->getFirstSon());
        QVERIFY(pristane);
        QCOMPARE(QStringList({pristane->property("id").toString(), pristane->property("CAS").toString(),
                              pristane->property("formula").toString()}),
                 QStringList({"C19_PRISTANE", "1921-70-6", "C19H40"}));
        QVERIFY(pristane->property("ISCHECKABLE").toBool());
        QVERIFY(!pristane->property("ICON").value<QPixmap>().isNull());

        QCOMPARE(model.visibleFilterValue(familyLabel), QStringLiteral("family"));
        QCOMPARE(model.visibleFilterValue(nameLabel), QStringLiteral("MasterName"));
        // Keys no compound carries are not offered ("ORL_Name" was never set).
        QVERIFY(model.visibleFilterValue(language == "fr" ? "Nom court ORL" : "ORL short name").isEmpty());
        QMap<QString, QString> shown;
        model.visibleFilters(pristane, shown);
        QCOMPARE(shown.value(familyLabel), QStringLiteral("Isoprenoid"));

        // The table that other selectors of reference content register too.
        const auto rows = ObjectSelectorDatabaseModel::displayableProperties(VNObjectTypeCompound);
        QCOMPARE(rows.size(), 14);
        QCOMPARE(rows.at(5), qMakePair(familyLabel, QStringLiteral("family")));
        QCOMPARE(rows.at(7), qMakePair(nameLabel, QStringLiteral("MasterName")));
        QVERIFY(ObjectSelectorDatabaseModel::displayableProperties(VNObjectTypeAnalysis).isEmpty());
    }

    void parametersInDisplayOrder()
    {
        TRecordingLogger logger;
        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get()});
        model.fillWithParameters(false);
        QCOMPARE(titles(&model.root()), QStringList{"Parameters"});
        QCOMPARE(titles(category(model)), QStringList({"Ts/(Ts+Tm)", "20S/(20S+20R)", "Pr/Ph", "CPI"}));
        QVERIFY(logger.contains(MessageLoggerInterface::LevelDebug,
                                QStringLiteral("Duplicated order in database, ratio will be added at the end")));
        QCOMPARE(model.visibleFilterValue(QStringLiteral("Parameter ID")), QStringLiteral("Ratio ID"));
        QCOMPARE(itemOf(category(model)->getFirstSon())->property("ISCHECKABLE").toBool(), false);

        // Entries without a ratio record of their own database are left out.
        VNObject2ToviRatio unstored(QStringLiteral("Unstored"), QStringLiteral("UNSTORED"));
        m_user->strays = {nullptr, m_user->getCompound(QStringLiteral("C30_HOPANE")), &unstored};
        model.fillWithParameters(false);
        m_user->strays.clear();
        QCOMPARE(titles(category(model)), QStringList({"Ts/(Ts+Tm)", "20S/(20S+20R)", "Pr/Ph", "CPI"}));

        // A database listed twice lists its objects twice.
        model.setActiveDB({m_user.get(), nullptr, m_user.get()});
        model.fillWithIons(true);
        QCOMPARE(titles(category(model)), QStringList({"m/z 191", "m/z 217", "m/z 191", "m/z 217"}));
        model.setActiveDB({});
        model.fillWithIons(true);
        QCOMPARE(titles(category(model)), QStringList());
    }

    void jointsAndIonsWithFrenchLabels()
    {
        TTranslator::install(QStringLiteral("fr"));
        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get()});
        model.fillWithJoints(true);
        QCOMPARE(titles(&model.root()), QStringList{"Jointures"});
        QCOMPARE(titles(category(model)), QStringList{"Hopane on m/z 191"});
        model.fillWithIons(true);
        QCOMPARE(titles(&model.root()), QStringList{"Ions"});
        QCOMPARE(model.visibleFilterValue(QStringLiteral("ID de l'Ion")), QStringLiteral("Ion ID"));
        // Labels registered by earlier fills stay.
        QCOMPARE(model.visibleFilterValue(QStringLiteral("Nom")), QStringLiteral("MasterName"));
    }

    void graphsShowTheirAxesOneALine()
    {
        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get()});
        model.fillGraph(true, false);
        QCOMPARE(titles(&model.root()), QStringList{"Graphs"});
        QCOMPARE(category(model)->getNbSons(), 2);
        const Node* crossPlot = nodeTitled(category(model), QStringLiteral("Pr/Ph against Ts/(Ts+Tm)"));
        const Node* ternary = nodeTitled(category(model), QStringLiteral("Sterane C27-C28-C29"));
        QVERIFY(crossPlot && ternary);
        QCOMPARE(itemOf(crossPlot)->property("ratioUID").toString(), QStringLiteral("Pr/Ph<br>Ts/(Ts+Tm)"));
        // An axis naming nothing stays an empty line; an unknown key shows as itself.
        QCOMPARE(itemOf(ternary)->property("ratioUID").toString(), QStringLiteral("20S/(20S+20R)<br><br>REMOVED_KEY"));
        QCOMPARE(model.visibleFilterValue(QStringLiteral("Axis")), QStringLiteral("ratioUID"));
        QCOMPARE(crossPlot->getNbSons(), 0); // without overlays, graphs have no sons

        model.fillGraph(true, true);
        QCOMPARE(titles(&model.root()), QStringList{"Graphs & Overlays"});
        const Node* graphNode = nodeTitled(category(model), QStringLiteral("Pr/Ph against Ts/(Ts+Tm)"));
        QVERIFY(graphNode);
        QCOMPARE(titles(graphNode), QStringList{"Source facies"});
        QObject* overlay = itemOf(graphNode->getFirstSon());
        QCOMPARE(overlay->property("LiteratureReference").toString(), QStringLiteral("Peters et al. (2005)"));
        QVERIFY(!overlay->property("ICON").value<QPixmap>().isNull());
        QCOMPARE(nodeTitled(category(model), QStringLiteral("Sterane C27-C28-C29"))->getNbSons(), 0);
        QCOMPARE(model.visibleFilterValue(QStringLiteral("Literature")), QStringLiteral("LiteratureReference"));

        // Overlays on their own, searchable by name like everything else.
        model.fillWithOverlays(true);
        QCOMPARE(titles(&model.root()), QStringList{"Overlays"});
        QCOMPARE(titles(category(model)), QStringList{"Source facies"});

        // A getter chooses the graphs; it gives none here.
        int asked = 0;
        model.setGraphicsGetter([&asked](VNToviDatabaseInterface*) {
            ++asked;
            return QList<const VNObject2*>();
        });
        model.fillGraph(true, true);
        QCOMPARE(asked, 1);
        QCOMPARE(titles(&model.root()), QStringList{"Graphs & Overlays"});
        QCOMPARE(category(model)->getNbSons(), 0);
    }

    void fillFromDatabaseEndsWithTheGraphTree_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("text");
        QTest::newRow("en") << "en"
                            << "Loading database...";
        QTest::newRow("fr") << "fr"
                            << "Chargement de la base de données...";
    }

    void fillFromDatabaseEndsWithTheGraphTree()
    {
        QFETCH(QString, language);
        QFETCH(QString, text);
        TTranslator::install(language);
        QList<int> steps;
        QSet<int> counts;
        QStringList texts;
        TProgressBarMgr::setListener([&](int step, int count, const QString& title) {
            counts << count;
            steps << step;
            texts << title;
        });
        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get()});
        model.fillFromDatabase(true);
        TProgressBarMgr::setListener({});
        QCOMPARE(counts, QSet<int>{5});
        QList<int> moves;
        for (int step : steps) {
            if (step > 0 && (moves.isEmpty() || moves.last() != step))
                moves << step;
        }
        QCOMPARE(moves, QList<int>({1, 2, 3, 4, 5}));
        QVERIFY(texts.contains(text));
        QCOMPARE(titles(&model.root()), QStringList{language == "fr" ? "Graphes & Overlays" : "Graphs & Overlays"});
        QCOMPARE(category(model)->getNbSons(), 2);
        // Labels of every kind filled on the way stay registered.
        QVERIFY(!model.visibleFilterValue(language == "fr" ? "Famille" : "Familly").isEmpty());
        QVERIFY(!model.visibleFilterValue(language == "fr" ? "Axes" : "Axis").isEmpty());
    }

    void deletingARatioRemovesEveryLineOfIt()
    {
        // The database listed twice: every parameter has two lines.
        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get(), m_user.get()});
        model.fillWithParameters(true);
        QCOMPARE(category(model)->getNbSons(), 8);
        const VNObject2* prPh = m_user->getRatio(QStringLiteral("PR_PH"));
        Sedra::TToviRatio* record = m_user->getRatio(prPh);
        QVERIFY(record);
        for (Node* son : category(model)->getSons()) {
            if (itemOf(son)->property("TITLE").toString() != QStringLiteral("Pr/Ph"))
                itemOf(son)->setProperty("ISCHECKED", true);
        }

        // Null arguments and a tree without the ratio change nothing.
        model.deleteItemWithRatio(nullptr, record);
        model.deleteItemWithRatio(&model.root(), nullptr);
        ObjectSelectorDatabaseModel compounds;
        compounds.setActiveDB({m_user.get()});
        compounds.fillWithCompounds(true);
        compounds.deleteItemWithRatio(&compounds.root(), record);
        QCOMPARE(category(compounds)->getNbSons(), 3);
        QCOMPARE(category(model)->getNbSons(), 8);

        // No line is left pointing to the ratio, and the tree stays whole:
        // the other lines, their ticks and the search go on as before.
        model.deleteItemWithRatio(&model.root(), record);
        QStringList left = titles(category(model));
        left.sort();
        QCOMPARE(left, QStringList({"20S/(20S+20R)", "20S/(20S+20R)", "CPI", "CPI", "Ts/(Ts+Tm)", "Ts/(Ts+Tm)"}));
        QCOMPARE(model.getAllItems().size(), 7);
        QCOMPARE(model.getSelectedItems(nullptr).size(), 6);
        ObjectSelectorCtrl ctrl;
        ctrl.setModel(&model);
        ctrl.searchRequested(QStringLiteral("cpi"));
        int shown = 0;
        for (const Node* son : category(model)->getSons())
            shown += son->isVisible() ? 1 : 0;
        QCOMPARE(shown, 2);
    }

    // The widget over the sample reference content, as a user drives it; the
    // screenshot lands at the top of the build folder, for a look by eye.
    void editorOverTheSampleReferenceContent()
    {
        VNDatabaseTovi delivered(Sedra::DatabaseToviDelivered);
        QVERIFY(delivered.loadDatabase());
        QString error;
        QVERIFY2(VNDatabaseToviSample::load(&delivered, QStringLiteral(VN_TOVI_SAMPLE_FILE), &error),
                 qPrintable(error));
        const int compoundCount = delivered.getAllCompounds().size();
        QVERIFY(compoundCount > 50);

        ObjectSelectorDatabaseModel model;
        model.setActiveDB({&delivered});
        model.fillWithCompounds(true);
        ObjectSelectorCtrl ctrl;
        ctrl.setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
        ctrl.setModel(&model);
        std::unique_ptr<ObjectSelectorEditor> editor(dynamic_cast<ObjectSelectorEditor*>(ctrl.initView(nullptr)));
        QVERIFY(editor);
        QAbstractItemModelTester tester(editor->treeModel(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        editor->resize(900, 640);
        editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(editor.get()));
        QTreeView* tree = editor->treeView();
        QCOMPARE(tree->model()->rowCount(), 1);
        QCOMPARE(tree->model()->index(0, 0).data().toString(), QStringLiteral("Compounds"));
        QCOMPARE(view::shownObjects(tree).size(), compoundCount);

        // Typing searches the names in any letter case.
        QTest::keyClicks(editor->searchLine(), "HOMOHOPANE (22s");
        const QStringList found = view::shownObjects(tree);
        QCOMPARE(found.size(), 5);
        for (const QString& title : found)
            QVERIFY2(title.contains(QStringLiteral("homohopane (22S)"), Qt::CaseInsensitive), qPrintable(title));

        // Clicking check boxes ticks the objects; the ticked ones are what the
        // selection writes.
        view::clickCheckBox(tree, view::lineTitled(tree, QStringLiteral("17alpha(H),21beta(H)-Homohopane (22S)")));
        view::clickCheckBox(tree, view::lineTitled(tree, QStringLiteral("17alpha(H),21beta(H)-Bishomohopane (22S)")));
        QCOMPARE(view::checkedTitles(tree).size(), 2);
        QDomDocument document;
        QDomElement root = selectionRoot(document);
        QVERIFY(model.encodeSelectedCompounds(root));
        QStringList names;
        for (QDomElement e = root.firstChildElement().firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
            names << TXMLMethod::getInfoString(e, QStringLiteral("name"));
        names.sort();
        QCOMPARE(names,
                 QStringList({"17alpha(H),21beta(H)-Bishomohopane (22S)", "17alpha(H),21beta(H)-Homohopane (22S)"}));

        // The details pane shows the stored properties under their labels.
        view::clickLine(tree, view::lineTitled(tree, QStringLiteral("17alpha(H),21beta(H)-Homohopane (22S)")));
        const QString pane = editor->detailsPane()->toPlainText();
        for (const char* text : {"Familly", "hopanes", "Compound formula", "C31H54", "Carbons"})
            QVERIFY2(pane.contains(QLatin1String(text)), text);
        QCoreApplication::processEvents(); // lay out the texts that changed
        QVERIFY(editor->grab().save(QStringLiteral(VN_SELECTOR_SCREENSHOT_DIR "/selector-reference-compounds.png")));

        // A refill replaces every line, the current one too; the widget shows
        // the new tree once told, through either update.
        QVERIFY(tree->currentIndex().isValid());
        model.fillWithIons(true);
        editor->updateViewData();
        QCOMPARE(tree->model()->index(0, 0).data().toString(), QStringLiteral("Ions"));
        QCOMPARE(view::shownObjects(tree).size(), delivered.getAllIons().size());
        model.fillWithParameters(true);
        ctrl.setModel(&model);
        QCOMPARE(tree->model()->index(0, 0).data().toString(), QStringLiteral("Parameters"));
        QCOMPARE(view::shownObjects(tree).first(), QStringLiteral("Pr/Ph")); // display order 10, the first
        ctrl.closeView();
    }

    void selectedObjectsAreWrittenPerKind()
    {
        ObjectSelectorDatabaseModel model;
        model.setActiveDB({m_user.get()});
        model.fillWithCompounds(true);
        QList<Node*> sons = category(model)->getSons();
        itemOf(sons.at(1))->setProperty("ISCHECKED", true);
        itemOf(sons.at(2))->setProperty("ISCHECKED", true);

        QDomDocument document;
        QDomElement root = selectionRoot(document);
        QVERIFY(model.encodeSelectedCompounds(root));
        QVERIFY(model.encodeSelectedRatios(root));
        const QDomElement compounds = root.firstChildElement(QStringLiteral("SelectedCompounds"));
        QStringList keys;
        for (QDomElement e = compounds.firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
            keys << TXMLMethod::getInfoString(e, QStringLiteral("key"));
        QCOMPARE(keys, QStringList({"C20_PHYTANE", "C30_HOPANE"}));
        QVERIFY(root.firstChildElement(QStringLiteral("SelectedRatios")).firstChildElement().isNull());

        QDomElement none;
        QVERIFY(!model.encodeSelectedIons(none));
        QVERIFY(!model.encodeSelectedJoints(none));
    }
};

QTEST_MAIN(TestObjectSelectorDatabaseModel)
#include "tst_objectselectordatabasemodel.moc"
