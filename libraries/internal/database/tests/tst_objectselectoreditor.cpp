// The selector widget offscreen: typing into the search line, clicking check
// boxes, filter lines, the quick-filter menu, branches, the details pane, and
// a screenshot of the whole widget for a look by eye.
#include "tst_objectselectorsample.h"
#include "tst_objectselectorview.h"

#include <objectselectorctrl.h>
#include <objectselectoreditor.h>
#include <objectselectoreditorobserverinterface.h>
#include <objectselectormodel.h>
#include <ttranslator.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

#ifndef VN_SELECTOR_SCREENSHOT_DIR
#define VN_SELECTOR_SCREENSHOT_DIR "."
#endif

using namespace view;

namespace {

// Records what the widget tells its observers.
class Recorder : public ObjectSelectorEditorObserverInterface
{
public:
    QStringList calls;
    void searchRequested(const QString& text) override { calls << "search:" + text; }
    void stopSearchRequested() override { calls << "stop"; }
    void toggleCheckRequested(ObjectSelectorItemInterface* item, bool checked) override
    {
        calls << QStringLiteral("tick:%1:%2").arg(item->id()).arg(checked);
    }
    void enableFilterRequested(const QString& label) override { calls << "enable:" + label; }
    void disableFilterRequested(const QString& label) override { calls << "disable:" + label; }
    void updateFilterRequested(const QString& label, const QString& value) override
    {
        calls << "update:" + label + "=" + value;
    }
    void quickFilterRequested(const QString& label, const QString& value) override
    {
        calls << "quick:" + label + "=" + value;
    }
    void checkAllRequested(bool checked) override { calls << QStringLiteral("all:%1").arg(checked); }
    void itemCollapsed(ObjectSelectorItemInterface* item) override { calls << "collapsed:" + item->id(); }
    void itemExpanded(ObjectSelectorItemInterface* item) override { calls << "expanded:" + item->id(); }
};

} // namespace

class TestObjectSelectorEditor : public QObject
{
    Q_OBJECT

private:
    ObjectSelectorModel* model = nullptr;
    ObjectSelectorCtrl* ctrl = nullptr;
    ObjectSelectorEditor* editor = nullptr;

    void makeEditor(ObjectSelectorCtrl::SelectionMode mode)
    {
        ctrl->setSelectionMode(mode);
        editor = dynamic_cast<ObjectSelectorEditor*>(ctrl->initView(nullptr));
        QVERIFY(editor);
        editor->resize(440, 620);
        editor->show();
        QVERIFY(QTest::qWaitForWindowExposed(editor));
    }

private slots:
    void init()
    {
        TTranslator::install("en");
        model = new ObjectSelectorModel;
        sample::fill(*model);
        ctrl = new ObjectSelectorCtrl;
        ctrl->setModel(model);
    }

    void cleanupTestCase()
    {
        // Typing into a line with a clear button starts a fade of that button:
        // an animation without parent that deletes itself when it stops, at
        // its next tick after 160 ms or once its button is gone. Let it tick
        // before the application ends, or the last test's fades are still
        // running at exit and show up as leaks.
        QTest::qWait(250);
    }

    void cleanup()
    {
        delete editor;
        editor = nullptr;
        delete ctrl;
        delete model;
        TTranslator::install("en");
    }

    void mirrorsTheModelTree()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        QTreeWidget* tree = editor->treeWidget();
        QCOMPARE(tree->topLevelItemCount(), 5);
        QCOMPARE(tree->topLevelItem(4)->text(0), QStringLiteral("Parameters"));
        QCOMPARE(tree->topLevelItem(1)->child(1)->text(0), QStringLiteral("Phytane"));
        QVERIFY(!tree->topLevelItem(1)->child(1)->icon(0).isNull());
        QVERIFY(!tree->topLevelItem(0)->data(0, Qt::CheckStateRole).isValid()); // categories have no box
        QCOMPARE(tree->topLevelItem(1)->child(1)->checkState(0), Qt::Unchecked);
        QCOMPARE(shownObjects(tree).size(), 18);
        QVERIFY(editor->itemOf(tree->topLevelItem(1)->child(0)) == sample::find(*model, "21"));
        QCOMPARE(editor->countLabel()->text(), QStringLiteral("18 item(s)"));

        // Read-only items show their tick but do not take clicks.
        sample::find(*model, "22")->setChecked(true);
        dynamic_cast<QObject*>(sample::find(*model, "22"))->setProperty("ISREADONLY", true);
        editor->updateViewData();
        QTreeWidgetItem* phytane = lineTitled(tree, "Phytane");
        QCOMPARE(phytane->checkState(0), Qt::Checked);
        QVERIFY(!(phytane->flags() & Qt::ItemIsUserCheckable));
        clickCheckBox(tree, phytane);
        QVERIFY(sample::find(*model, "22")->isChecked());
    }

    void typingSearches()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        Recorder recorder;
        editor->addObserver(&recorder);
        QTreeWidget* tree = editor->treeWidget();
        QLineEdit* search = editor->searchLine();

        QTest::keyClicks(search, "PHY");
        QCOMPARE(recorder.calls, QStringList({"search:P", "search:PH", "search:PHY"}));
        QCOMPARE(shownObjects(tree), QStringList({"Phytane"}));
        QCOMPARE(editor->countLabel()->text(), QStringLiteral("1 of 18 items shown"));
        for (int i = 0; i < tree->topLevelItemCount(); ++i)
            QVERIFY(!tree->topLevelItem(i)->isHidden()); // categories stay

        QTest::keyClick(search, Qt::Key_Backspace);
        QCOMPARE(shownObjects(tree), QStringList({"Phytane", "Pr/Ph"}));
        QTest::keyClick(search, Qt::Key_Backspace);
        QTest::keyClick(search, Qt::Key_Backspace); // empty: the search stops
        QCOMPARE(recorder.calls.last(), QStringLiteral("stop"));
        QCOMPARE(shownObjects(tree).size(), 18);

        QTest::keyClicks(search, "sterane");
        QCOMPARE(shownObjects(tree), QStringList());
        QTest::keyClick(search, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(search, "stane 20");
        QCOMPARE(shownObjects(tree).size(), 4);
        editor->removeObserver(&recorder);
    }

    void clickingCheckBoxes()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        QTreeWidget* tree = editor->treeWidget();
        clickCheckBox(tree, lineTitled(tree, "Pristane"));
        QCOMPARE(sample::ids(model->getSelectedItems(nullptr)), QStringList({"21"}));
        clickCheckBox(tree, lineTitled(tree, "Pr/Ph"));
        QCOMPARE(sample::ids(model->getSelectedItems(nullptr)), QStringList({"PAR-1"}));
        QCOMPARE(checkedTitles(tree), QStringList({"Pr/Ph"})); // the earlier tick is gone from the view too
        clickCheckBox(tree, lineTitled(tree, "Pr/Ph"));
        QVERIFY(model->getSelectedItems(nullptr).isEmpty());
        QVERIFY(checkedTitles(tree).isEmpty());
    }

    void multipleSelectionAndCheckAll()
    {
        makeEditor(ObjectSelectorCtrl::MultipleSelection);
        QTreeWidget* tree = editor->treeWidget();
        QCheckBox* all = editor->checkAllBox();
        QVERIFY(all->isVisible());

        clickCheckBox(tree, lineTitled(tree, "Pristane"));
        clickCheckBox(tree, lineTitled(tree, "CPI"));
        QCOMPARE(sample::ids(model->getSelectedItems(nullptr)), QStringList({"21", "PAR-2"}));

        // "Check all items" ticks what the search leaves visible, nothing else.
        QTest::keyClicks(editor->searchLine(), "hopane");
        QVERIFY(!all->isChecked());
        QTest::mouseClick(all, Qt::LeftButton);
        QCOMPARE(sample::ids(model->getSelectedItems(nullptr)), QStringList({"21", "31", "32", "33", "34", "PAR-2"}));
        QTest::mouseClick(all, Qt::LeftButton);
        QCOMPARE(sample::ids(model->getSelectedItems(nullptr)), QStringList({"21", "PAR-2"}));
        QCOMPARE(checkedTitles(tree), QStringList({"Pristane", "CPI"}));

        editor->setSelectAllVisible(false);
        QVERIFY(!all->isVisible());
    }

    void filterLines()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        QTreeWidget* tree = editor->treeWidget();
        QTest::mouseClick(editor->addFilterButton(), Qt::LeftButton);
        QCOMPARE(editor->filterLineCount(), 1);
        QComboBox* labels = editor->filterLabelBox(0);
        QStringList offered;
        for (int i = 0; i < labels->count(); ++i)
            offered << labels->itemText(i);
        QCOMPARE(offered,
                 QStringList({"Analysis type", "CAS", "Compound formula", "Name", "Parameter formula", "Study type"}));

        labels->setCurrentIndex(labels->findText("CAS"));
        QTest::keyClicks(editor->filterValueLine(0), "629-");
        QCOMPARE(shownObjects(tree), QStringList({"n-Heptadecane", "n-Nonadecane"}));
        QCOMPARE(model->filterValue("CAS"), QStringLiteral("629-"));

        // A second line on another filter narrows further; the search combines too.
        QTest::mouseClick(editor->addFilterButton(), Qt::LeftButton);
        QComboBox* second = editor->filterLabelBox(1);
        second->setCurrentIndex(second->findText("Compound formula"));
        QTest::keyClicks(editor->filterValueLine(1), "c17");
        QCOMPARE(shownObjects(tree), QStringList({"n-Heptadecane"}));

        // Switching a line to another label moves its value there.
        labels->setCurrentIndex(labels->findText("Name"));
        QVERIFY(model->filterValue("CAS").isNull());
        QCOMPARE(model->filterValue("MasterName"), QStringLiteral("629-"));
        QVERIFY(shownObjects(tree).isEmpty());

        QTest::mouseClick(editor->removeFilterButton(0), Qt::LeftButton);
        QCOMPARE(editor->filterLineCount(), 1);
        QCOMPARE(shownObjects(tree), QStringList({"n-Heptadecane"}));
        QTest::mouseClick(editor->removeFilterButton(0), Qt::LeftButton);
        QCOMPARE(editor->filterLineCount(), 0);
        QCOMPARE(shownObjects(tree).size(), 18);
        QList<QString> active;
        model->activeFilters(active);
        QVERIFY(active.isEmpty());
    }

    void quickFilterMenu()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        Recorder recorder;
        editor->addObserver(&recorder);
        QMenu* menu = editor->quickFilterMenu();
        QList<QAction*> entries = menu->actions();
        QCOMPARE(entries.at(1)->text(), QStringLiteral("Study type"));
        QStringList values;
        for (QAction* action : entries.at(0)->menu()->actions())
            values << action->text();
        QCOMPARE(values, QStringList({"MS", "THC", "Saturates", "MSMS", "Aromatics", "FID"}));

        entries.at(0)->menu()->actions().at(3)->trigger(); // MSMS
        QCOMPARE(shownObjects(editor->treeWidget()),
                 QStringList({QString::fromUtf8("18\u03B1(H)-22,29,30-Trisnorneohopane (Ts)"),
                              QString::fromUtf8("17\u03B1(H)-22,29,30-Trisnorhopane (Tm)"),
                              QString::fromUtf8("17\u03B1(H),21\u03B2(H)-30-Norhopane"),
                              QString::fromUtf8("17\u03B1(H),21\u03B2(H)-Hopane")}));
        QCOMPARE(editor->filterLineCount(), 1);
        QCOMPARE(editor->filterValueLine(0)->text(), QStringLiteral("MSMS"));
        QCOMPARE(recorder.calls.last(), QStringLiteral("quick:Analysis type=MSMS"));

        // Another value of the same filter reuses its line.
        editor->quickFilterMenu()->actions().at(0)->menu()->actions().at(0)->trigger(); // MS
        QCOMPARE(editor->filterLineCount(), 1);
        QCOMPARE(shownObjects(editor->treeWidget()).size(), 12); // "MS" is also found in "MSMS"

        // "Clear all filters" empties the lines and the search.
        QTest::keyClicks(editor->searchLine(), "cholest");
        QAction* clear = editor->quickFilterMenu()->actions().last();
        QVERIFY(clear->isEnabled());
        clear->trigger();
        QCOMPARE(editor->filterLineCount(), 0);
        QVERIFY(editor->searchLine()->text().isEmpty());
        QCOMPARE(shownObjects(editor->treeWidget()).size(), 18);
        editor->removeObserver(&recorder);
    }

    void branches()
    {
        sample::find(*model, "4")->setExpanded(false);
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        QTreeWidget* tree = editor->treeWidget();
        QVERIFY(!lineTitled(tree, "Steranes")->isExpanded());
        QVERIFY(lineTitled(tree, "Hopanes")->isExpanded());
        QCOMPARE(shownObjects(tree).size(), 14);

        tree->collapseItem(lineTitled(tree, "Hopanes"));
        tree->expandItem(lineTitled(tree, "Steranes"));
        QCOMPARE(ctrl->getCollapsedItems(), QList<int>({3}));

        QVERIFY(ctrl->loadCollapsedItems({1}));
        QVERIFY(!lineTitled(tree, "n-Alkanes")->isExpanded());
    }

    void detailsPane()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        QTreeWidget* tree = editor->treeWidget();
        QVERIFY(editor->detailsPane()->toPlainText().contains("Select an item"));

        tree->setCurrentItem(lineTitled(tree, QString::fromUtf8("17\u03B1(H),21\u03B2(H)-Hopane")));
        const QString html = editor->detailsHtml(sample::find(*model, "34"));
        QVERIFY(html.contains(QStringLiteral("<h3>17\u03B1(H),21\u03B2(H)-Hopane</h3>")));
        QVERIFY(html.contains("<b>CAS</b></td><td>13849-96-9</td>"));
        QVERIFY(html.contains("<b>Compound formula</b></td><td>C30H52</td>"));
        QVERIFY(!html.contains("Parameter formula"));
        QVERIFY(editor->detailsPane()->toPlainText().contains("13849-96-9")); // the current line's details

        // Values are text, except the line breaks of multi-line values.
        dynamic_cast<QObject*>(sample::find(*model, "PAR-3"))
            ->setProperty("DisplayFormula", "Ts<br>(Ts + Tm) & <i>x</i>");
        const QString ratio = editor->detailsHtml(sample::find(*model, "PAR-3"));
        QVERIFY(ratio.contains("Ts<br>(Ts + Tm) &amp; &lt;i&gt;x&lt;/i&gt;"));
        QVERIFY(editor->detailsHtml(sample::find(*model, "1")).contains("No details"));
    }

    void frenchTexts()
    {
        TTranslator::install("fr");
        makeEditor(ObjectSelectorCtrl::MultipleSelection);
        QCOMPARE(editor->checkAllBox()->text(), QString::fromUtf8("Cocher tous les éléments"));
        QCOMPARE(editor->searchLine()->placeholderText(), QStringLiteral("Rechercher par nom..."));
        QCOMPARE(editor->quickFilterButton()->text(), QStringLiteral("Filtres rapides"));
        QCOMPARE(editor->quickFilterMenu()->actions().at(0)->text(), QStringLiteral("Type d'analyse"));
        QCOMPARE(editor->countLabel()->text(), QString::fromUtf8("%n élément(s)").replace("%n", "18"));

        TTranslator::install("en"); // switching language retranslates the open widget
        QCoreApplication::processEvents();
        QCOMPARE(editor->checkAllBox()->text(), QStringLiteral("Check all items"));
        QCOMPARE(editor->addFilterButton()->text(), QStringLiteral("Add a filter"));
    }

    void modelReplacedAndNoModel()
    {
        makeEditor(ObjectSelectorCtrl::SingleSelection);
        ObjectSelectorModel other;
        other.root().setAutoDelete(true);
        sample::appendNode(&other.root(), sample::makeItem("1", "Only", QString(), true));
        ctrl->setModel(&other);
        QCOMPARE(editor->treeWidget()->topLevelItemCount(), 1);
        ctrl->setModel(nullptr);
        QCOMPARE(editor->treeWidget()->topLevelItemCount(), 0);
        QTest::keyClicks(editor->searchLine(), "x"); // nothing to search: no harm
        QVERIFY(!editor->addFilterButton()->isEnabled());
    }

    void screenshot()
    {
        makeEditor(ObjectSelectorCtrl::MultipleSelection);
        for (const char* id : {"21", "22", "34", "PAR-1"})
            sample::find(*model, id)->setChecked(true);
        editor->updateViewData();
        editor->setSelectedItem(sample::find(*model, "34"));
        QCoreApplication::processEvents();
        const QString dir = QStringLiteral(VN_SELECTOR_SCREENSHOT_DIR);
        QVERIFY(editor->grab().save(dir + "/selector-screenshot.png"));

        QTest::keyClicks(editor->searchLine(), "ane 20");
        QTest::mouseClick(editor->addFilterButton(), Qt::LeftButton);
        QComboBox* labels = editor->filterLabelBox(0);
        labels->setCurrentIndex(labels->findText("Compound formula"));
        QTest::keyClicks(editor->filterValueLine(0), "C29");
        editor->setSelectedItem(sample::find(*model, "43"));
        QCoreApplication::processEvents();
        QCOMPARE(shownObjects(editor->treeWidget()).size(), 2);
        QVERIFY(editor->grab().save(dir + "/selector-screenshot-search.png"));
    }
};

QTEST_MAIN(TestObjectSelectorEditor)
#include "tst_objectselectoreditor.moc"
