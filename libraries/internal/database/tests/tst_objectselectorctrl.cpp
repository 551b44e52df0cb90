// The selector driven end to end without its widget: search, filters,
// ticking, branches, saving and loading.
#include "tst_objectselectorsample.h"

#include <objectselectorctrl.h>
#include <objectselectoreditor.h>
#include <objectselectormodel.h>

#include <QCheckBox>
#include <QDomDocument>
#include <QLineEdit>
#include <QtTest>

namespace {

// The ids of the visible items below the categories, in tree order.
QStringList visibleIds(const ObjectSelectorModel& model)
{
    QStringList ids;
    for (const sample::Node* category = model.root().getFirstSon(); category; category = category->getBrother()) {
        for (const sample::Node* n = category->getFirstSon(); n; n = n->getBrother()) {
            if (n->isVisible())
                ids << n->attribute->id();
        }
    }
    return ids;
}

const QStringList kAllObjects{"11", "12", "13", "14", "21", "22",    "31",    "32",    "33",
                              "34", "41", "42", "43", "44", "PAR-1", "PAR-2", "PAR-3", "PAR-4"};

// A model that is not the concrete selector model.
class OtherModel : public ObjectSelectorModelInterface
{
public:
    bool encode(QDomElement&) override { return false; }
    bool decode(QDomElement&) override { return false; }
    QList<int> getCollapsedItems() override { return {7}; }
    bool loadCollapsedItems(const QList<int>&) override { return true; }
    bool enableFilter(const QString&) override { return false; }
    bool disableFilter(const QString&) override { return false; }
    void availableFilters(QList<QString>&) const override { }
    void activeFilters(QList<QString>&) const override { }
    void activeFilters(QHash<QString, QString>&) const override { }
    void activeFiltersDisplay(QHash<QString, QString>&) const override { }
    bool updateFilterValue(const QString&, const QString&) override { return false; }
    QString filterValue(const QString&) override { return QString(); }
    bool updateVisibleFilterValue(const QString&, const QString&) override { return false; }
    QString visibleFilterValue(const QString&) override { return QString(); }
    void visibleFilters(const QObject*, QMap<QString, QString>&) const override { }
    void visibleFilters(QStringList&) const override { }
    void disableAllFilters() override { }
    QList<ObjectSelectorItemInterface*> getSelectedItems(const TTree<ObjectSelectorItemInterface*>*) override
    {
        return {};
    }

private:
    void updateSelectedItems(const TTree<ObjectSelectorItemInterface*>*, const QList<QVariant>&) override { }
};

} // namespace

class TestObjectSelectorCtrl : public QObject
{
    Q_OBJECT

private:
    ObjectSelectorModel* model = nullptr;
    ObjectSelectorCtrl* ctrl = nullptr;

private slots:
    void init()
    {
        model = new ObjectSelectorModel;
        sample::fill(*model);
        ctrl = new ObjectSelectorCtrl;
        ctrl->setModel(model);
    }

    void cleanup()
    {
        delete ctrl;
        delete model;
    }

    void searchIsCaseInsensitiveSubstring()
    {
        ctrl->searchRequested("ANE");
        QCOMPARE(visibleIds(*model),
                 QStringList({"11", "12", "13", "14", "21", "22", "31", "32", "33", "34", "41", "42", "43", "44"}));
        ctrl->searchRequested("hopane");
        QCOMPARE(visibleIds(*model), QStringList({"31", "32", "33", "34"}));
        ctrl->searchRequested("norHOP"); // not "...norneohopane"
        QCOMPARE(visibleIds(*model), QStringList({"32", "33"}));
        ctrl->searchRequested(QString::fromUtf8("17\u0391(H)")); // Greek capital alpha matches the small one
        QCOMPARE(visibleIds(*model), QStringList({"32", "33", "34", "41", "42", "43", "44"}));
        ctrl->searchRequested("pr/ph");
        QCOMPARE(visibleIds(*model), QStringList({"PAR-1"}));
        ctrl->searchRequested(" pristane"); // no trimming
        QVERIFY(visibleIds(*model).isEmpty());
        for (const sample::Node* category = model->root().getFirstSon(); category; category = category->getBrother())
            QVERIFY(category->isVisible()); // top-level nodes always show
        QCOMPARE(model->filterValue("MasterName"), QStringLiteral(" pristane"));

        ctrl->stopSearchRequested();
        QCOMPARE(visibleIds(*model), kAllObjects);
        QVERIFY(model->filterValue("MasterName").isNull());
    }

    void parentVisibilityIgnoresSons()
    {
        // A named group inside a category: the group does not match, its son does.
        sample::Node* hopanes = const_cast<sample::Node*>(sample::nodeOf(*model, sample::find(*model, "3")));
        ObjectSelectorItem* group = sample::makeItem("35", "Homohopanes", "compound", false);
        group->setProperty("MasterName", "Homohopanes C31-C35");
        sample::Node* groupNode = sample::appendNode(hopanes, group);
        ObjectSelectorItem* son = sample::makeItem("351", "C31 22S", "compound", true);
        son->setProperty("MasterName", "17a,21b(H)-Homohopane 22S");
        sample::Node* sonNode = sample::appendNode(groupNode, son);
        sample::Node* bareNode
            = sample::appendNode(groupNode, sample::makeItem("352", "no name", "compound", true)); // no MasterName

        ctrl->searchRequested("22S");
        QCOMPARE(QList<bool>({groupNode->isVisible(), sonNode->isVisible(), bareNode->isVisible()}),
                 QList<bool>({false, true, false}));
        ctrl->searchRequested("homohopanes");
        QCOMPARE(QList<bool>({groupNode->isVisible(), sonNode->isVisible()}), QList<bool>({true, false}));

        // An item at the top level without any name still shows.
        sample::Node* loose = sample::appendNode(&model->root(), sample::makeItem("9", "Loose", QString(), true));
        ctrl->searchRequested("hopane");
        QVERIFY(loose->isVisible());
    }

    void filtersByLabel()
    {
        // Unknown labels (and filter names) are ignored.
        ctrl->enableFilterRequested("formula");
        ctrl->enableFilterRequested("Familly");
        QList<QString> active;
        model->activeFilters(active);
        QVERIFY(active.isEmpty());

        // A filter without value keeps the items that carry the property.
        ctrl->enableFilterRequested("CAS");
        QCOMPARE(visibleIds(*model), kAllObjects); // visibility not recomputed yet
        ctrl->searchWithFilterRequested();
        QCOMPARE(visibleIds(*model), QStringList({"11", "12", "13", "14", "21", "22", "34", "41"}));

        ctrl->updateFilterRequested("CAS", "629-");
        QCOMPARE(visibleIds(*model), QStringList({"11", "13"}));

        // Two filters: both must match.
        ctrl->enableFilterRequested("Compound formula");
        ctrl->updateFilterRequested("Compound formula", "c19");
        QCOMPARE(visibleIds(*model), QStringList({"13"}));
        ctrl->searchRequested("nonadec");
        QCOMPARE(visibleIds(*model), QStringList({"13"}));
        ctrl->searchRequested("eicos");
        QVERIFY(visibleIds(*model).isEmpty());

        ctrl->disableFilterRequested("CAS");
        ctrl->stopSearchRequested();
        QCOMPARE(visibleIds(*model), QStringList({"13", "21"}));
        ctrl->updateFilterRequested("Compound formula", "");
        QCOMPARE(visibleIds(*model).size(), 14); // every compound carries a formula

        ctrl->clearSearch();
        model->activeFilters(active);
        QVERIFY(active.isEmpty());
        QCOMPARE(visibleIds(*model), kAllObjects);
    }

    void singleAndMultipleSelection()
    {
        ctrl->toggleCheckRequested(sample::find(*model, "21"), true);
        ctrl->toggleCheckRequested(sample::find(*model, "22"), true);
        QCOMPARE(sample::ids(ctrl->getSelectedItems(nullptr)), QStringList({"22"}));
        ctrl->toggleCheckRequested(nullptr, true); // clears, ticks nothing
        QVERIFY(ctrl->getSelectedItems(nullptr).isEmpty());

        ctrl->setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
        ctrl->toggleCheckRequested(sample::find(*model, "21"), true);
        ctrl->toggleCheckRequested(sample::find(*model, "22"), true);
        ctrl->toggleCheckRequested(sample::find(*model, "PAR-1"), true);
        QCOMPARE(sample::ids(ctrl->getSelectedItems(nullptr)), QStringList({"21", "22", "PAR-1"}));
        ctrl->toggleCheckRequested(sample::find(*model, "21"), false);
        QCOMPARE(sample::ids(ctrl->getSelectedItems(nullptr)), QStringList({"22", "PAR-1"}));
        const sample::Node* isoprenoids = sample::nodeOf(*model, sample::find(*model, "2"));
        QCOMPARE(sample::ids(ctrl->getSelectedItems(isoprenoids)), QStringList({"22"}));
    }

    void saveAndLoad()
    {
        ctrl->setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
        for (const char* id : {"11", "34", "PAR-3"})
            ctrl->toggleCheckRequested(sample::find(*model, id), true);
        QDomDocument doc;
        QDomElement state = doc.createElement("selector");
        doc.appendChild(state);
        QVERIFY(ctrl->save(state));

        ObjectSelectorModel restored;
        sample::fill(restored);
        ObjectSelectorCtrl other;
        QVERIFY(!other.load(state)); // no model yet
        QVERIFY(!other.save(state));
        other.setModel(&restored);
        QVERIFY(other.load(state));
        QCOMPARE(sample::ids(other.getSelectedItems(nullptr)), QStringList({"11", "34", "PAR-3"}));

        // A refused state changes nothing.
        QDomDocument old;
        old.setContent(QStringLiteral("<ObjectSelectorModel><Version>1.0</Version></ObjectSelectorModel>"));
        QDomElement oldState = old.documentElement();
        QVERIFY(!other.load(oldState));
        QCOMPARE(sample::ids(other.getSelectedItems(nullptr)), QStringList({"11", "34", "PAR-3"}));
    }

    // The widget test drives the branches; here, null items and no model.
    void collapseStateAndNoConcreteModel()
    {
        ctrl->itemCollapsed(sample::find(*model, "3"));
        ctrl->itemCollapsed(nullptr);
        ctrl->itemExpanded(nullptr);
        QCOMPARE(ctrl->getCollapsedItems(), QList<int>({3}));

        ObjectSelectorCtrl none;
        QVERIFY(none.getCollapsedItems().isEmpty());
        QVERIFY(!none.loadCollapsedItems({1}));
        none.searchRequested("pristane");
        none.stopSearchRequested();
        none.searchWithFilterRequested();
        none.enableFilterRequested("Name");
        none.disableFilterRequested("Name");
        none.updateFilterRequested("Name", "x");
        none.clearSearch();
        none.toggleCheckRequested(sample::find(*model, "21"), true);
        QVERIFY(!sample::find(*model, "21")->isChecked());

        OtherModel other;
        none.setModel(&other);
        none.searchRequested("pristane");
        none.toggleCheckRequested(sample::find(*model, "21"), true);
        QVERIFY(!sample::find(*model, "21")->isChecked()); // ticking needs the concrete model
        QCOMPARE(none.getCollapsedItems(), QList<int>({7}));
    }

    void viewLifecycle()
    {
        QWidget parent;
        ObjectSelectorEditorInterface* view = ctrl->initView(&parent);
        QCOMPARE(ctrl->editor(), view);
        auto* editor = dynamic_cast<ObjectSelectorEditor*>(view);
        QVERIFY(editor && editor->parent() == &parent);
        QVERIFY(editor->checkAllBox()->isHidden()); // single selection
        QVERIFY(!view->addObserver(ctrl));          // registered once already

        ctrl->closeView();
        QVERIFY(ctrl->editor() == nullptr);

        ctrl->setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
        view = ctrl->initView(&parent);
        QVERIFY(!dynamic_cast<ObjectSelectorEditor*>(view)->checkAllBox()->isHidden());
        delete dynamic_cast<ObjectSelectorEditor*>(view); // the widget dies first
        QVERIFY(ctrl->editor() == nullptr);
        ctrl->searchRequested("pristane"); // and the controller goes on without it
        QCOMPARE(visibleIds(*model), QStringList({"21"}));
    }

    // A widget the controller stops using (a second initView, closeView) stays
    // with its parent and may outlive the controller: it never calls it again.
    void aWidgetItStopsUsingNeverCallsIt()
    {
        QWidget parent;
        const QStringList all = visibleIds(*model);
        auto* first = dynamic_cast<ObjectSelectorEditor*>(ctrl->initView(&parent));
        auto* second = dynamic_cast<ObjectSelectorEditor*>(ctrl->initView(&parent));
        QVERIFY(first && second && first != second);
        QTest::keyClicks(first->searchLine(), "pristane");
        QCOMPARE(visibleIds(*model), all);
        QTest::keyClicks(second->searchLine(), "pristane");
        QCOMPARE(visibleIds(*model), QStringList({"21"}));

        ctrl->closeView();
        second->searchLine()->clear();
        QCOMPARE(visibleIds(*model), QStringList({"21"}));
        // Both widgets outlive their controller and are still used.
        delete ctrl;
        ctrl = nullptr;
        QTest::keyClicks(first->searchLine(), "x");
        QTest::keyClicks(second->searchLine(), "y");
        QCOMPARE(visibleIds(*model), QStringList({"21"}));
        // The line edits' clear buttons fade in with animations that delete
        // themselves when they end: let them end before the widgets go.
        QTest::qWait(400);
    }
};

QTEST_MAIN(TestObjectSelectorCtrl)
#include "tst_objectselectorctrl.moc"
