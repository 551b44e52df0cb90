// The selector widget offscreen: typing into the search line, clicking check
// boxes, filter lines, the quick-filter menu, branches, the details pane, and
// a screenshot of the whole widget for a look by eye.
#include "tst_objectselectorsample.h"
#include "tst_objectselectorview.h"

#include <objectselectorctrl.h>
#include <objectselectoreditor.h>
#include <objectselectoreditorobserverinterface.h>
#include <objectselectormodel.h>
#include <objectselectortreemodel.h>
#include <ttranslator.h>

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeView>
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

    // Shows the widget with a model tester on its rows; false when it cannot.
    bool makeEditor(ObjectSelectorCtrl::SelectionMode mode)
    {
        ctrl->setSelectionMode(mode);
        editor = dynamic_cast<ObjectSelectorEditor*>(ctrl->initView(nullptr));
        if (!editor)
            return false;
        new QAbstractItemModelTester(editor->treeModel(), QAbstractItemModelTester::FailureReportingMode::Fatal,
                                     editor);
        editor->resize(440, 620);
        editor->show();
        return QTest::qWaitForWindowExposed(editor);
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
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        QTreeView* tree = editor->treeView();
        const QAbstractItemModel* rows = tree->model();
        QCOMPARE(rows->rowCount(), 5);
        QCOMPARE(rows->index(4, 0).data().toString(), QStringLiteral("Parameters"));
        const QModelIndex phytaneRow = rows->index(1, 0, rows->index(1, 0));
        QCOMPARE(phytaneRow.data().toString(), QStringLiteral("Phytane"));
        QCOMPARE(phytaneRow.data(Qt::ToolTipRole).toString(), QStringLiteral("Phytane"));
        QVERIFY(!phytaneRow.data(Qt::DecorationRole).value<QIcon>().isNull());
        QCOMPARE(phytaneRow.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
        QCOMPARE(shownObjects(tree).size(), 18);
        QVERIFY(editor->treeModel()->itemAt(rows->index(0, 0, rows->index(1, 0))) == sample::find(*model, "21"));
        QCOMPARE(editor->countLabel()->text(), QStringLiteral("18 item(s)"));

        // Read-only items show their tick but do not take clicks.
        sample::find(*model, "22")->setChecked(true);
        dynamic_cast<QObject*>(sample::find(*model, "22"))->setProperty("ISREADONLY", true);
        editor->updateViewData();
        const QModelIndex phytane = lineTitled(tree, "Phytane");
        QCOMPARE(phytane.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        clickCheckBox(tree, phytane);
        QVERIFY(sample::find(*model, "22")->isChecked());
        QCOMPARE(checkedTitles(tree), QStringList({"Phytane"}));
    }

    void typingSearches()
    {
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        Recorder recorder;
        editor->addObserver(&recorder);
        QTreeView* tree = editor->treeView();
        QLineEdit* search = editor->searchLine();

        QTest::keyClicks(search, "PHY");
        QCOMPARE(recorder.calls, QStringList({"search:P", "search:PH", "search:PHY"}));
        QCOMPARE(shownObjects(tree), QStringList({"Phytane"}));
        QCOMPARE(editor->countLabel()->text(), QStringLiteral("1 of 18 items shown"));
        QCOMPARE(tree->model()->rowCount(), 5); // categories stay
        // ... greyed when nothing shows below them.
        QCOMPARE(lineTitled(tree, "n-Alkanes").data(Qt::ForegroundRole).value<QBrush>(),
                 editor->palette().brush(QPalette::Disabled, QPalette::Text));
        QVERIFY(!lineTitled(tree, "Isoprenoids").data(Qt::ForegroundRole).isValid());

        QTest::keyClick(search, Qt::Key_Backspace);
        QCOMPARE(shownObjects(tree), QStringList({"Phytane", "Pr/Ph"}));
        QTest::keyClick(search, Qt::Key_Backspace);
        QTest::keyClick(search, Qt::Key_Backspace); // empty: the search stops
        QCOMPARE(recorder.calls.last(), QStringLiteral("stop"));
        QCOMPARE(shownObjects(tree).size(), 18);
        editor->removeObserver(&recorder);
    }

    void clickingCheckBoxes()
    {
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        QTreeView* tree = editor->treeView();
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
        QVERIFY(makeEditor(ObjectSelectorCtrl::MultipleSelection));
        QTreeView* tree = editor->treeView();
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
        QVERIFY(checkedTitles(tree).isEmpty()); // the search hides the two ticked lines
        QTest::keyClick(editor->searchLine(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(editor->searchLine(), Qt::Key_Delete);
        QCOMPARE(checkedTitles(tree), QStringList({"Pristane", "CPI"}));

        editor->setSelectAllVisible(false);
        QVERIFY(!all->isVisible());
    }

    void filterLines()
    {
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        QTreeView* tree = editor->treeView();
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
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
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
        QCOMPARE(shownObjects(editor->treeView()),
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
        QCOMPARE(shownObjects(editor->treeView()).size(), 12); // "MS" is also found in "MSMS"

        // "Clear all filters" empties the lines and the search.
        QTest::keyClicks(editor->searchLine(), "cholest");
        QAction* clear = editor->quickFilterMenu()->actions().last();
        QVERIFY(clear->isEnabled());
        clear->trigger();
        QCOMPARE(editor->filterLineCount(), 0);
        QVERIFY(editor->searchLine()->text().isEmpty());
        QCOMPARE(shownObjects(editor->treeView()).size(), 18);
        editor->removeObserver(&recorder);
    }

    void branches()
    {
        sample::find(*model, "4")->setExpanded(false);
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        QTreeView* tree = editor->treeView();
        Recorder recorder;
        editor->addObserver(&recorder);
        QVERIFY(!tree->isExpanded(lineTitled(tree, "Steranes")));
        QVERIFY(tree->isExpanded(lineTitled(tree, "Hopanes")));
        QCOMPARE(shownObjects(tree).size(), 14);

        // A click on a branch's arrow closes it; the arrow key opens the current one.
        const QRect hopanes = tree->visualRect(lineTitled(tree, "Hopanes"));
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(hopanes.left() - tree->indentation() / 2, hopanes.center().y()));
        QVERIFY(!tree->isExpanded(lineTitled(tree, "Hopanes")));
        clickLine(tree, lineTitled(tree, "Steranes"));
        QTest::keyClick(tree, Qt::Key_Right);
        QVERIFY(tree->isExpanded(lineTitled(tree, "Steranes")));
        QCOMPARE(recorder.calls, QStringList({"collapsed:3", "expanded:4"}));
        QCOMPARE(ctrl->getCollapsedItems(), QList<int>({3}));
        QCOMPARE(shownObjects(tree).size(), 14);

        // A search hides no branch's state: it opens as its item says when it shows again.
        QTest::keyClicks(editor->searchLine(), "zzz");
        QTest::keyClick(editor->searchLine(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(editor->searchLine(), Qt::Key_Delete);
        QVERIFY(!tree->isExpanded(lineTitled(tree, "Hopanes")));
        QVERIFY(tree->isExpanded(lineTitled(tree, "Steranes")));

        QVERIFY(ctrl->loadCollapsedItems({1}));
        QVERIFY(!tree->isExpanded(lineTitled(tree, "n-Alkanes")));
        editor->removeObserver(&recorder);
    }

    void detailsPane()
    {
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        QTreeView* tree = editor->treeView();
        QVERIFY(editor->detailsPane()->toPlainText().contains("Select an item"));

        clickLine(tree, lineTitled(tree, QString::fromUtf8("17\u03B1(H),21\u03B2(H)-Hopane")));
        QVERIFY(editor->currentItem() == sample::find(*model, "34"));
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
        QVERIFY(makeEditor(ObjectSelectorCtrl::MultipleSelection));
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
        QVERIFY(makeEditor(ObjectSelectorCtrl::SingleSelection));
        ObjectSelectorModel other;
        other.root().setAutoDelete(true);
        sample::appendNode(&other.root(), sample::makeItem("1", "Only", QString(), true));
        ctrl->setModel(&other);
        QCOMPARE(editor->treeView()->model()->rowCount(), 1);
        ctrl->setModel(nullptr);
        QCOMPARE(editor->treeView()->model()->rowCount(), 0);
        QTest::keyClicks(editor->searchLine(), "x"); // nothing to search: no harm
        QVERIFY(!editor->addFilterButton()->isEnabled());
    }

    void screenshot()
    {
        QVERIFY(makeEditor(ObjectSelectorCtrl::MultipleSelection));
        for (const char* id : {"21", "22", "34", "PAR-1"})
            sample::find(*model, id)->setChecked(true);
        editor->updateViewData();
        editor->setSelectedItem(sample::find(*model, "34"));
        QCoreApplication::processEvents();
        QVERIFY(editor->grab().save(QStringLiteral(VN_SELECTOR_SCREENSHOT_DIR "/selector-screenshot.png")));
    }
};

QTEST_MAIN(TestObjectSelectorEditor)
#include "tst_objectselectoreditor.moc"
