#include "browserwindow.h"

#include "referenceselector.h"

#include <objectselectoreditor.h>

#include <QLineEdit>
#include <QStatusBar>

BrowserWindow::BrowserWindow(VNToviDatabaseInterface* database, const QStringList& kinds, QWidget* parent)
    : QMainWindow(parent)
{
    setWindowTitle(tr("vndb-browser - reference database", "vndb-browser - base de référence"));
    ReferenceSelector::fill(m_model, database, kinds, true);
    m_ctrl.setSelectionMode(ObjectSelectorCtrl::MultipleSelection);
    m_ctrl.setModel(&m_model);
    m_editor = dynamic_cast<ObjectSelectorEditor*>(m_ctrl.initView(this));
    if (m_editor) {
        setCentralWidget(m_editor);
        m_editor->setSelectAllVisible(true);
    }
    int categories = 0;
    for (auto* node = m_model.root().getFirstSon(); node; node = node->getBrother())
        ++categories;
    statusBar()->showMessage(tr("%1 objects of the merged reference database in %2 categories",
                                "%1 objets de la base de référence fusionnée en %2 catégories")
                                 .arg(m_model.getAllItems().size() - categories)
                                 .arg(categories));
}

BrowserWindow::~BrowserWindow()
{
    // The widget observes the controller: it goes first.
    m_ctrl.closeView();
}

void BrowserWindow::search(const QString& text)
{
    // The line shows the text; the controller, as the widget's observer,
    // does the search (setText alone is not a user's edit).
    if (m_editor)
        m_editor->searchLine()->setText(text);
    m_ctrl.searchRequested(text);
}

bool BrowserWindow::tick(const QString& id)
{
    ObjectSelectorItemInterface* item = ReferenceSelector::find(m_model, id);
    if (!item || !item->isCheckable())
        return false;
    m_ctrl.toggleCheckRequested(item, true);
    if (m_editor) {
        m_editor->updateViewData();
        m_editor->setSelectedItem(item);
    }
    return true;
}

bool BrowserWindow::showDetails(const QString& id)
{
    ObjectSelectorItemInterface* item = ReferenceSelector::find(m_model, id);
    if (!item)
        return false;
    if (m_editor)
        m_editor->setSelectedItem(item);
    return true;
}
