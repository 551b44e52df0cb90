#include "objectselectoreditor.h"
#include "objectselectoreditor_p.h"

#include "objectselectoreditorobserverinterface.h"
#include "objectselectormodel.h"
#include "objectselectortreemodel.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMenu>
#include <QPainter>
#include <QSplitter>
#include <QStyle>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Values may hold the line breaks that multi-valued properties (axes) are
// joined with; everything else is shown as plain text.
QString htmlValue(const QString& value)
{
    QString html = value.toHtmlEscaped();
    html.replace(QStringLiteral("&lt;br&gt;"), QStringLiteral("<br>"), Qt::CaseInsensitive);
    html.replace(QStringLiteral("&lt;br/&gt;"), QStringLiteral("<br>"), Qt::CaseInsensitive);
    return html;
}

// A magnifying glass for the search line, drawn so that it does not depend
// on an icon theme being installed.
QIcon searchIcon(const QPalette& palette)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette.color(QPalette::Text), 1.6));
    painter.drawEllipse(QRectF(2.5, 2.5, 8, 8));
    painter.setPen(QPen(palette.color(QPalette::Text), 2.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(9.5, 9.5), QPointF(13.5, 13.5));
    return QIcon(pixmap);
}

const TTree<ObjectSelectorItemInterface*>* modelRoot(const ObjectSelectorModelInterface* model)
{
    const auto* concrete = dynamic_cast<const ObjectSelectorModel*>(model);
    return concrete ? &concrete->root() : nullptr;
}

class RefreshGuard
{
public:
    explicit RefreshGuard(int& depth)
        : m_depth(depth)
    {
        ++m_depth;
    }
    ~RefreshGuard() { --m_depth; }
    RefreshGuard(const RefreshGuard&) = delete;
    RefreshGuard& operator=(const RefreshGuard&) = delete;

private:
    int& m_depth;
};

} // namespace

ObjectSelectorEditor::ObjectSelectorEditor(QWidget* parent, const ObjectSelectorModelInterface* model)
    : QWidget(parent)
    , d(std::make_unique<ObjectSelectorEditorPrivate>())
{
    d->model = model;
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);

    // Search line and quick filters.
    auto* searchRow = new QHBoxLayout();
    d->search = new QLineEdit(this);
    d->search->setObjectName(QStringLiteral("searchLine"));
    d->search->setClearButtonEnabled(true);
    d->search->addAction(searchIcon(palette()), QLineEdit::LeadingPosition);
    searchRow->addWidget(d->search, 1);

    d->quickFilterMenu = new QMenu(this);
    d->quickFilterButton = new QToolButton(this);
    d->quickFilterButton->setObjectName(QStringLiteral("quickFilterButton"));
    d->quickFilterButton->setPopupMode(QToolButton::InstantPopup);
    d->quickFilterButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    d->quickFilterButton->setMenu(d->quickFilterMenu);
    searchRow->addWidget(d->quickFilterButton);

    d->addFilterButton = new QToolButton(this);
    d->addFilterButton->setObjectName(QStringLiteral("addFilterButton"));
    d->addFilterButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    searchRow->addWidget(d->addFilterButton);
    layout->addLayout(searchRow);

    // Custom filter lines, one per active filter.
    d->filterLayout = new QVBoxLayout();
    d->filterLayout->setSpacing(2);
    d->filtersTitle = new QLabel(this);
    d->filtersTitle->setVisible(false);
    d->filterLayout->addWidget(d->filtersTitle);
    layout->addLayout(d->filterLayout);

    // The tree above the details pane.
    auto* splitter = new QSplitter(Qt::Vertical, this);
    d->treeModel = new ObjectSelectorTreeModel(this);
    d->treeModel->setMutedBrush(palette().brush(QPalette::Disabled, QPalette::Text));
    d->tree = new QTreeView(splitter);
    d->tree->setObjectName(QStringLiteral("selectorTree"));
    d->tree->header()->setVisible(false);
    d->tree->setUniformRowHeights(true);
    d->tree->setIconSize(QSize(20, 20));
    d->tree->setSelectionMode(QAbstractItemView::SingleSelection);
    d->tree->setAlternatingRowColors(true);
    d->tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    d->tree->setModel(d->treeModel);
    d->details = new QTextBrowser(splitter);
    d->details->setObjectName(QStringLiteral("detailsPane"));
    d->details->setOpenLinks(false);
    splitter->addWidget(d->tree);
    splitter->addWidget(d->details);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    layout->addWidget(splitter, 1);

    auto* bottomRow = new QHBoxLayout();
    d->checkAll = new QCheckBox(this);
    d->checkAll->setObjectName(QStringLiteral("checkAllItems"));
    d->checkAll->setVisible(false);
    bottomRow->addWidget(d->checkAll);
    bottomRow->addStretch(1);
    d->count = new QLabel(this);
    d->count->setObjectName(QStringLiteral("countLabel"));
    bottomRow->addWidget(d->count);
    layout->addLayout(bottomRow);

    connect(d->search, &QLineEdit::textEdited, this, &ObjectSelectorEditor::onSearchEdited);
    connect(d->addFilterButton, &QToolButton::clicked, this, [this]() { addFilterLine(); });
    connect(d->treeModel, &ObjectSelectorTreeModel::checkRequested, this, &ObjectSelectorEditor::onCheckRequested);
    connect(d->tree, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (!d->updating)
            if (ObjectSelectorItemInterface* item = d->treeModel->itemAt(index))
                notify([item](ObjectSelectorEditorObserverInterface* o) { o->itemExpanded(item); });
    });
    connect(d->tree, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (!d->updating)
            if (ObjectSelectorItemInterface* item = d->treeModel->itemAt(index))
                notify([item](ObjectSelectorEditorObserverInterface* o) { o->itemCollapsed(item); });
    });
    connect(d->tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { onCurrentChanged(current); });
    connect(d->tree, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (ObjectSelectorItemInterface* item = d->treeModel->itemAt(index))
            notify([item](ObjectSelectorEditorObserverInterface* o) { o->itemActivated(item); });
    });
    connect(d->checkAll, &QCheckBox::clicked, this, &ObjectSelectorEditor::onCheckAllClicked);

    retranslate();
    d->treeModel->setRoot(modelRoot(d->model));
    updateView();
}

ObjectSelectorEditor::~ObjectSelectorEditor()
{
    qDeleteAll(d->filterLines);
}

template <typename Call>
void ObjectSelectorEditor::notify(Call call)
{
    // An observer may remove itself (or others) while being told.
    const QList<ObjectSelectorEditorObserverInterface*> observers = d->observers;
    for (ObjectSelectorEditorObserverInterface* observer : observers) {
        if (d->observers.contains(observer))
            call(observer);
    }
}

void ObjectSelectorEditor::retranslate()
{
    setWindowTitle(tr("Object selector", "Sélecteur d'objets"));
    d->search->setPlaceholderText(tr("Search by name...", "Rechercher par nom..."));
    d->search->setToolTip(tr("Shows the items whose name contains this text (letter case is ignored)",
                             "Affiche les éléments dont le nom contient ce texte (sans tenir compte de la casse)"));
    d->quickFilterButton->setText(tr("Quick filters", "Filtres rapides"));
    d->quickFilterButton->setToolTip(tr("Filter by a common value", "Filtrer sur une valeur courante"));
    d->addFilterButton->setText(tr("Add a filter", "Ajouter un filtre"));
    d->addFilterButton->setToolTip(
        tr("Filter the items on one of their properties", "Filtrer les éléments sur l'une de leurs propriétés"));
    d->filtersTitle->setText(tr("Filters:", "Filtres :"));
    d->checkAll->setText(tr("Check all items", "Cocher tous les éléments"));
    for (FilterLine* line : d->filterLines) {
        line->value->setPlaceholderText(tr("Value contains...", "La valeur contient..."));
        line->remove->setToolTip(tr("Remove this filter", "Supprimer ce filtre"));
    }
    rebuildQuickFilterMenu();
    updateCount();
    updateDetails();
}

void ObjectSelectorEditor::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

QStringList ObjectSelectorEditor::visibleFilterLabels() const
{
    QStringList labels;
    if (d->model)
        d->model->visibleFilters(labels);
    return labels;
}

// Interface -----------------------------------------------------------------

void ObjectSelectorEditor::setModel(const ObjectSelectorModelInterface* model)
{
    if (model == d->model)
        return;
    d->model = model;
    {
        RefreshGuard guard(d->updating);
        for (FilterLine* line : d->filterLines) {
            line->row->deleteLater();
            delete line;
        }
        d->filterLines.clear();
        d->search->clear();
    }
    d->current = nullptr;
    {
        // A new model has new nodes: the old rows must go.
        RefreshGuard guard(d->updating);
        d->treeModel->setRoot(modelRoot(model));
    }
    updateView();
}

bool ObjectSelectorEditor::addObserver(ObjectSelectorEditorObserverInterface* observer)
{
    if (!observer || d->observers.contains(observer))
        return false;
    d->observers.append(observer);
    return true;
}

bool ObjectSelectorEditor::removeObserver(ObjectSelectorEditorObserverInterface* observer)
{
    return d->observers.removeAll(observer) > 0;
}

void ObjectSelectorEditor::setSelectAllVisible(bool visible)
{
    d->checkAll->setVisible(visible);
    updateCheckAllState();
}

void ObjectSelectorEditor::setSelectedItem(ObjectSelectorItemInterface* item)
{
    const QModelIndex index = d->treeModel->indexOf(item);
    if (!index.isValid())
        return;
    d->tree->setCurrentIndex(index);
    d->tree->scrollTo(index);
}

ObjectSelectorItemInterface* ObjectSelectorEditor::currentItem() const
{
    return d->current;
}

// The tree ------------------------------------------------------------------

void ObjectSelectorEditor::refreshTree(bool structureAndVisibility)
{
    RefreshGuard guard(d->updating);
    if (structureAndVisibility)
        d->treeModel->refresh();
    else
        d->treeModel->refreshData();
    // A refill leaves no current item behind.
    if (d->current && !d->treeModel->contains(d->current))
        d->current = nullptr;
    // The current line follows its item: gone while a search hides it, back
    // when it shows again.
    const QModelIndex current = d->treeModel->indexOf(d->current);
    if (current != d->tree->currentIndex()) {
        if (current.isValid())
            d->tree->setCurrentIndex(current);
        else
            d->tree->selectionModel()->clear();
    }
    syncBranches();
}

void ObjectSelectorEditor::syncBranches()
{
    // Branches open as their items say; the view forgets rows it stops showing.
    for (const QModelIndex& index : d->treeModel->shownBranches()) {
        if (ObjectSelectorItemInterface* item = d->treeModel->itemAt(index)) {
            if (d->tree->isExpanded(index) != item->isExpanded())
                d->tree->setExpanded(index, item->isExpanded());
        }
    }
}

void ObjectSelectorEditor::updateView()
{
    refreshTree(true);
    updateFilterControls();
    rebuildQuickFilterMenu();
    updateCheckAllState();
    updateCount();
    updateDetails();
}

void ObjectSelectorEditor::updateViewData()
{
    refreshTree(false);
    updateCheckAllState();
    updateDetails();
}

void ObjectSelectorEditor::updateCount()
{
    const int total = d->treeModel->objectCount();
    const int shown = d->treeModel->shownObjectCount();
    d->count->setText(shown == total ? tr("%n item(s)", "%n élément(s)", total)
                                     : tr("%1 of %2 items shown", "%1 éléments affichés sur %2").arg(shown).arg(total));
}

void ObjectSelectorEditor::updateCheckAllState()
{
    if (d->checkAll->isHidden())
        return;
    bool any = false;
    bool all = true;
    d->treeModel->forEachShownItem([&](ObjectSelectorItemInterface* item) {
        if (!item->isCheckable())
            return true;
        any = true;
        all = item->isChecked();
        return all; // one unticked line decides
    });
    const QSignalBlocker blocker(d->checkAll);
    d->checkAll->setEnabled(any);
    d->checkAll->setChecked(any && all);
}

// The details pane ------------------------------------------------------------

QString ObjectSelectorEditor::detailsHtml(ObjectSelectorItemInterface* item) const
{
    if (!item)
        return QStringLiteral("<p style=\"color:gray\">%1</p>")
            .arg(tr("Select an item to see its details.", "Sélectionnez un élément pour voir ses détails.")
                     .toHtmlEscaped());
    QString html = QStringLiteral("<h3>%1</h3>").arg(item->title().toHtmlEscaped());
    QMap<QString, QString> values;
    const QObject* object = dynamic_cast<const QObject*>(item);
    if (d->model && object)
        d->model->visibleFilters(object, values);
    if (values.isEmpty())
        return html
            + QStringLiteral("<p style=\"color:gray\">%1</p>")
                  .arg(tr("No details for this item.", "Aucun détail pour cet élément.").toHtmlEscaped());
    html += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\">");
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        html += QStringLiteral("<tr><td valign=\"top\"><b>%1</b></td><td>%2</td></tr>")
                    .arg(it.key().toHtmlEscaped(), htmlValue(it.value()));
    }
    html += QStringLiteral("</table>");
    return html;
}

void ObjectSelectorEditor::updateDetails()
{
    const QString html = detailsHtml(d->current);
    if (html == d->detailsShown)
        return;
    d->detailsShown = html;
    d->details->setHtml(html);
}

// Quick filters and filter lines ---------------------------------------------

void ObjectSelectorEditor::rebuildQuickFilterMenu()
{
    d->quickFilterMenu->clear();
    const auto* model = dynamic_cast<const ObjectSelectorModel*>(d->model);
    const QStringList offered = visibleFilterLabels();
    bool any = false;
    if (model) {
        const QHash<const QString, QStringList> table = model->getFilters();
        QStringList labels;
        for (auto it = table.cbegin(); it != table.cend(); ++it)
            labels.append(it.key());
        labels.sort(Qt::CaseInsensitive);
        for (const QString& label : qAsConst(labels)) {
            QMenu* sub = d->quickFilterMenu->addMenu(label);
            sub->setEnabled(offered.contains(label));
            any = any || offered.contains(label);
            for (const QString& value : table.value(label)) {
                QAction* action = sub->addAction(value);
                connect(action, &QAction::triggered, this, [this, label, value]() { onQuickFilter(label, value); });
            }
        }
    }
    d->quickFilterMenu->addSeparator();
    QAction* clear = d->quickFilterMenu->addAction(tr("Clear all filters", "Effacer tous les filtres"));
    clear->setEnabled(!d->filterLines.isEmpty() || !d->search->text().isEmpty());
    connect(clear, &QAction::triggered, this, &ObjectSelectorEditor::clearFilters);
    d->quickFilterButton->setEnabled(any || clear->isEnabled());
}

void ObjectSelectorEditor::updateFilterControls()
{
    const QStringList offered = visibleFilterLabels();
    d->addFilterButton->setEnabled(d->filterLines.size() < offered.size());
    d->filtersTitle->setVisible(!d->filterLines.isEmpty());
    for (FilterLine* line : qAsConst(d->filterLines)) {
        const QSignalBlocker blocker(line->label);
        const QString current = line->label->currentText();
        QStringList items;
        for (int i = 0; i < line->label->count(); ++i)
            items.append(line->label->itemText(i));
        if (items != offered) {
            line->label->clear();
            line->label->addItems(offered);
            line->label->setCurrentIndex(offered.indexOf(current));
        }
    }
}

bool ObjectSelectorEditor::addFilterLine(const QString& label, const QString& value)
{
    const QStringList offered = visibleFilterLabels();
    QString chosen = label;
    if (chosen.isEmpty()) {
        for (const QString& candidate : offered) {
            const bool used = std::any_of(d->filterLines.cbegin(), d->filterLines.cend(),
                                          [&](const FilterLine* l) { return l->enabledLabel == candidate; });
            if (!used) {
                chosen = candidate;
                break;
            }
        }
    }
    if (chosen.isEmpty() || !offered.contains(chosen))
        return false;
    for (FilterLine* existing : qAsConst(d->filterLines)) {
        if (existing->enabledLabel == chosen) {
            // One line per filter: reuse it.
            existing->value->setText(value);
            onFilterValueEdited(existing);
            return true;
        }
    }

    auto* line = new FilterLine;
    line->row = new QWidget(this);
    auto* rowLayout = new QHBoxLayout(line->row);
    rowLayout->setContentsMargins(0, 0, 0, 0);
    line->label = new QComboBox(line->row);
    line->label->addItems(offered);
    line->label->setCurrentIndex(offered.indexOf(chosen));
    line->label->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    line->value = new QLineEdit(line->row);
    line->value->setClearButtonEnabled(true);
    line->value->setPlaceholderText(tr("Value contains...", "La valeur contient..."));
    line->remove = new QToolButton(line->row);
    line->remove->setIcon(style()->standardIcon(QStyle::SP_DialogCloseButton));
    line->remove->setAutoRaise(true);
    line->remove->setToolTip(tr("Remove this filter", "Supprimer ce filtre"));
    rowLayout->addWidget(line->label);
    rowLayout->addWidget(line->value, 1);
    rowLayout->addWidget(line->remove);
    d->filterLayout->addWidget(line->row);
    d->filterLines.append(line);

    connect(line->label, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this, line]() { onFilterLabelChanged(line); });
    connect(line->value, &QLineEdit::textChanged, this, [this, line]() { onFilterValueEdited(line); });
    connect(line->remove, &QToolButton::clicked, this, [this, line]() { removeFilterLine(line); });

    line->enabledLabel = chosen;
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->enableFilterRequested(chosen); });
    if (!value.isEmpty())
        line->value->setText(value); // tells the observers through onFilterValueEdited
    updateFilterControls();
    rebuildQuickFilterMenu();
    line->value->setFocus();
    return true;
}

void ObjectSelectorEditor::onFilterLabelChanged(FilterLine* line)
{
    if (d->updating)
        return;
    const QString label = line->label->currentText();
    if (label == line->enabledLabel)
        return;
    // Another line on the same filter gives way to this one.
    for (FilterLine* other : d->filterLines) {
        if (other != line && other->enabledLabel == label) {
            removeFilterLine(other);
            break;
        }
    }
    const QString previous = line->enabledLabel;
    line->enabledLabel = label;
    if (!previous.isEmpty())
        notify([&](ObjectSelectorEditorObserverInterface* o) { o->disableFilterRequested(previous); });
    if (label.isEmpty())
        return;
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->enableFilterRequested(label); });
    if (!line->value->text().isEmpty()) {
        const QString value = line->value->text();
        notify([&](ObjectSelectorEditorObserverInterface* o) { o->updateFilterRequested(label, value); });
    }
}

void ObjectSelectorEditor::onFilterValueEdited(FilterLine* line)
{
    if (d->updating || line->enabledLabel.isEmpty())
        return;
    const QString label = line->enabledLabel;
    const QString value = line->value->text();
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->updateFilterRequested(label, value); });
}

void ObjectSelectorEditor::removeFilterLine(int index)
{
    if (index >= 0 && index < d->filterLines.size())
        removeFilterLine(d->filterLines.at(index));
}

void ObjectSelectorEditor::removeFilterLine(FilterLine* line)
{
    if (!d->filterLines.removeOne(line))
        return;
    const QString label = line->enabledLabel;
    line->row->hide();
    line->row->deleteLater(); // the click that asked for it may still be running in it
    delete line;
    if (!label.isEmpty())
        notify([&](ObjectSelectorEditorObserverInterface* o) { o->disableFilterRequested(label); });
    updateFilterControls();
    rebuildQuickFilterMenu();
}

void ObjectSelectorEditor::clearFilters()
{
    while (!d->filterLines.isEmpty())
        removeFilterLine(d->filterLines.last());
    if (!d->search->text().isEmpty()) {
        d->search->clear();
        notify([](ObjectSelectorEditorObserverInterface* o) { o->stopSearchRequested(); });
    }
    rebuildQuickFilterMenu();
}

int ObjectSelectorEditor::filterLineCount() const
{
    return d->filterLines.size();
}

QComboBox* ObjectSelectorEditor::filterLabelBox(int index) const
{
    return index >= 0 && index < d->filterLines.size() ? d->filterLines.at(index)->label : nullptr;
}

QLineEdit* ObjectSelectorEditor::filterValueLine(int index) const
{
    return index >= 0 && index < d->filterLines.size() ? d->filterLines.at(index)->value : nullptr;
}

QToolButton* ObjectSelectorEditor::removeFilterButton(int index) const
{
    return index >= 0 && index < d->filterLines.size() ? d->filterLines.at(index)->remove : nullptr;
}

void ObjectSelectorEditor::onQuickFilter(const QString& label, const QString& value)
{
    if (!addFilterLine(label, value))
        return;
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->quickFilterRequested(label, value); });
}

// User actions ------------------------------------------------------------------

void ObjectSelectorEditor::onSearchEdited(const QString& text)
{
    if (text.isEmpty())
        notify([](ObjectSelectorEditorObserverInterface* o) { o->stopSearchRequested(); });
    else
        notify([&](ObjectSelectorEditorObserverInterface* o) { o->searchRequested(text); });
    rebuildQuickFilterMenu();
}

void ObjectSelectorEditor::onCheckRequested(ObjectSelectorItemInterface* item, bool checked)
{
    if (d->updating || !item || !item->isCheckable() || checked == item->isChecked())
        return;
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->toggleCheckRequested(item, checked); });
    // The observers may have changed other ticks (single selection): show them all.
    updateViewData();
}

void ObjectSelectorEditor::onCurrentChanged(const QModelIndex& current)
{
    if (d->updating)
        return;
    ObjectSelectorItemInterface* item = d->treeModel->itemAt(current);
    d->current = item;
    updateDetails();
    notify([item](ObjectSelectorEditorObserverInterface* o) { o->currentItemChanged(item); });
}

void ObjectSelectorEditor::onCheckAllClicked(bool checked)
{
    for (ObjectSelectorItemInterface* item : d->treeModel->shownItems()) {
        if (!item->isCheckable() || item->isChecked() == checked)
            continue;
        const QObject* object = dynamic_cast<const QObject*>(item);
        if (object && object->property("ISREADONLY").toBool())
            continue;
        notify([&](ObjectSelectorEditorObserverInterface* o) { o->toggleCheckRequested(item, checked); });
    }
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->checkAllRequested(checked); });
    updateViewData();
}

// The parts of the widget ----------------------------------------------------------

QLineEdit* ObjectSelectorEditor::searchLine() const
{
    return d->search;
}
QToolButton* ObjectSelectorEditor::quickFilterButton() const
{
    return d->quickFilterButton;
}
QMenu* ObjectSelectorEditor::quickFilterMenu() const
{
    return d->quickFilterMenu;
}
QToolButton* ObjectSelectorEditor::addFilterButton() const
{
    return d->addFilterButton;
}
QTreeView* ObjectSelectorEditor::treeView() const
{
    return d->tree;
}
ObjectSelectorTreeModel* ObjectSelectorEditor::treeModel() const
{
    return d->treeModel;
}
QCheckBox* ObjectSelectorEditor::checkAllBox() const
{
    return d->checkAll;
}
QTextBrowser* ObjectSelectorEditor::detailsPane() const
{
    return d->details;
}
QLabel* ObjectSelectorEditor::countLabel() const
{
    return d->count;
}
