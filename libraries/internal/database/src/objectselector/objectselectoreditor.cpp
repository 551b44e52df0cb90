#include "objectselectoreditor.h"

#include "objectselectoreditorobserverinterface.h"
#include "objectselectormodel.h"

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
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

struct ObjectSelectorEditor::FilterLine
{
    QWidget* row = nullptr;
    QComboBox* label = nullptr;
    QLineEdit* value = nullptr;
    QToolButton* remove = nullptr;
    QString enabledLabel; // the label whose filter the observers were asked to enable
};

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
    , m_model(model)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);

    // Search line and quick filters.
    auto* searchRow = new QHBoxLayout();
    m_search = new QLineEdit(this);
    m_search->setObjectName(QStringLiteral("searchLine"));
    m_search->setClearButtonEnabled(true);
    m_search->addAction(searchIcon(palette()), QLineEdit::LeadingPosition);
    searchRow->addWidget(m_search, 1);

    m_quickFilterMenu = new QMenu(this);
    m_quickFilterButton = new QToolButton(this);
    m_quickFilterButton->setObjectName(QStringLiteral("quickFilterButton"));
    m_quickFilterButton->setPopupMode(QToolButton::InstantPopup);
    m_quickFilterButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_quickFilterButton->setMenu(m_quickFilterMenu);
    searchRow->addWidget(m_quickFilterButton);

    m_addFilterButton = new QToolButton(this);
    m_addFilterButton->setObjectName(QStringLiteral("addFilterButton"));
    m_addFilterButton->setToolButtonStyle(Qt::ToolButtonTextOnly);
    searchRow->addWidget(m_addFilterButton);
    layout->addLayout(searchRow);

    // Custom filter lines, one per active filter.
    m_filterLayout = new QVBoxLayout();
    m_filterLayout->setSpacing(2);
    m_filtersTitle = new QLabel(this);
    m_filtersTitle->setVisible(false);
    m_filterLayout->addWidget(m_filtersTitle);
    layout->addLayout(m_filterLayout);

    // The tree above the details pane.
    auto* splitter = new QSplitter(Qt::Vertical, this);
    m_tree = new QTreeWidget(splitter);
    m_tree->setObjectName(QStringLiteral("selectorTree"));
    m_tree->setColumnCount(1);
    m_tree->header()->setVisible(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setIconSize(QSize(20, 20));
    m_tree->setSelectionMode(QAbstractItemView::SingleSelection);
    m_tree->setAlternatingRowColors(true);
    m_details = new QTextBrowser(splitter);
    m_details->setObjectName(QStringLiteral("detailsPane"));
    m_details->setOpenLinks(false);
    splitter->addWidget(m_tree);
    splitter->addWidget(m_details);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    layout->addWidget(splitter, 1);

    auto* bottomRow = new QHBoxLayout();
    m_checkAll = new QCheckBox(this);
    m_checkAll->setObjectName(QStringLiteral("checkAllItems"));
    m_checkAll->setVisible(false);
    bottomRow->addWidget(m_checkAll);
    bottomRow->addStretch(1);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("countLabel"));
    bottomRow->addWidget(m_count);
    layout->addLayout(bottomRow);

    connect(m_search, &QLineEdit::textEdited, this, &ObjectSelectorEditor::onSearchEdited);
    connect(m_addFilterButton, &QToolButton::clicked, this, [this]() { addFilterLine(); });
    connect(m_tree, &QTreeWidget::itemChanged, this, &ObjectSelectorEditor::onItemChanged);
    connect(m_tree, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* line) {
        if (!m_updating)
            if (ObjectSelectorItemInterface* item = itemOf(line))
                notify([item](ObjectSelectorEditorObserverInterface* o) { o->itemExpanded(item); });
    });
    connect(m_tree, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* line) {
        if (!m_updating)
            if (ObjectSelectorItemInterface* item = itemOf(line))
                notify([item](ObjectSelectorEditorObserverInterface* o) { o->itemCollapsed(item); });
    });
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* line) {
        updateDetails();
        if (m_updating)
            return;
        ObjectSelectorItemInterface* item = itemOf(line);
        notify([item](ObjectSelectorEditorObserverInterface* o) { o->currentItemChanged(item); });
    });
    connect(m_tree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* line) {
        if (ObjectSelectorItemInterface* item = itemOf(line))
            notify([item](ObjectSelectorEditorObserverInterface* o) { o->itemActivated(item); });
    });
    connect(m_checkAll, &QCheckBox::clicked, this, &ObjectSelectorEditor::onCheckAllClicked);

    retranslate();
    updateView();
}

ObjectSelectorEditor::~ObjectSelectorEditor()
{
    qDeleteAll(m_filterLines);
}

template <typename Call>
void ObjectSelectorEditor::notify(Call call)
{
    // An observer may remove itself (or others) while being told.
    const QList<ObjectSelectorEditorObserverInterface*> observers = m_observers;
    for (ObjectSelectorEditorObserverInterface* observer : observers) {
        if (m_observers.contains(observer))
            call(observer);
    }
}

void ObjectSelectorEditor::retranslate()
{
    setWindowTitle(tr("Object selector", "Sélecteur d'objets"));
    m_search->setPlaceholderText(tr("Search by name...", "Rechercher par nom..."));
    m_search->setToolTip(tr("Shows the items whose name contains this text (letter case is ignored)",
                            "Affiche les éléments dont le nom contient ce texte (sans tenir compte de la casse)"));
    m_quickFilterButton->setText(tr("Quick filters", "Filtres rapides"));
    m_quickFilterButton->setToolTip(tr("Filter by a common value", "Filtrer sur une valeur courante"));
    m_addFilterButton->setText(tr("Add a filter", "Ajouter un filtre"));
    m_addFilterButton->setToolTip(
        tr("Filter the items on one of their properties", "Filtrer les éléments sur l'une de leurs propriétés"));
    m_filtersTitle->setText(tr("Filters:", "Filtres :"));
    m_checkAll->setText(tr("Check all items", "Cocher tous les éléments"));
    for (FilterLine* line : m_filterLines) {
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

const ObjectSelectorEditor::Node* ObjectSelectorEditor::modelRoot() const
{
    const auto* model = dynamic_cast<const ObjectSelectorModel*>(m_model);
    return model ? &model->root() : nullptr;
}

QStringList ObjectSelectorEditor::visibleFilterLabels() const
{
    QStringList labels;
    if (m_model)
        m_model->visibleFilters(labels);
    return labels;
}

// Interface -----------------------------------------------------------------

void ObjectSelectorEditor::setModel(const ObjectSelectorModelInterface* model)
{
    if (model == m_model)
        return;
    m_model = model;
    {
        RefreshGuard guard(m_updating);
        for (FilterLine* line : m_filterLines) {
            line->row->deleteLater();
            delete line;
        }
        m_filterLines.clear();
        m_search->clear();
    }
    m_tree->clear(); // a new model has new nodes: the old lines must go
    m_rows.clear();
    m_lineOfItem.clear();
    m_nodeOfLine.clear();
    updateView();
}

bool ObjectSelectorEditor::addObserver(ObjectSelectorEditorObserverInterface* observer)
{
    if (!observer || m_observers.contains(observer))
        return false;
    m_observers.append(observer);
    return true;
}

bool ObjectSelectorEditor::removeObserver(ObjectSelectorEditorObserverInterface* observer)
{
    return m_observers.removeAll(observer) > 0;
}

void ObjectSelectorEditor::setSelectAllVisible(bool visible)
{
    m_checkAll->setVisible(visible);
    updateCheckAllState();
}

void ObjectSelectorEditor::setSelectedItem(ObjectSelectorItemInterface* item)
{
    QTreeWidgetItem* line = treeItem(item);
    if (!line)
        return;
    m_tree->setCurrentItem(line);
    m_tree->scrollToItem(line);
}

QTreeWidgetItem* ObjectSelectorEditor::treeItem(ObjectSelectorItemInterface* item) const
{
    return item ? m_lineOfItem.value(item) : nullptr;
}

ObjectSelectorItemInterface* ObjectSelectorEditor::itemOf(QTreeWidgetItem* line) const
{
    const Node* node = line ? m_nodeOfLine.value(line) : nullptr;
    return node ? node->attribute : nullptr;
}

// The tree ------------------------------------------------------------------

bool ObjectSelectorEditor::treeMatchesModel() const
{
    const Node* root = modelRoot();
    int index = 0;
    bool same = true;
    std::function<void(const Node*)> walk = [&](const Node* first) {
        for (const Node* n = first; n && same; n = n->getBrother()) {
            if (index >= m_rows.size() || m_rows[index].node != n
                || m_rows[index].line->data(0, Qt::UserRole + 1).value<quintptr>() != quintptr(n->attribute)) {
                same = false;
                return;
            }
            ++index;
            walk(n->getFirstSon());
        }
    };
    if (root)
        walk(root->getFirstSon());
    return same && index == m_rows.size();
}

void ObjectSelectorEditor::rebuildTree()
{
    RefreshGuard guard(m_updating);
    const QSignalBlocker blocker(m_tree);
    // The current line's item as the line recorded it: when the model was
    // refilled, the node behind the line is gone, so it is not read.
    const QTreeWidgetItem* currentLine = m_tree->currentItem();
    const quintptr current = currentLine ? currentLine->data(0, Qt::UserRole + 1).value<quintptr>() : 0;
    m_tree->clear();
    m_rows.clear();
    m_lineOfItem.clear();
    m_nodeOfLine.clear();
    const Node* root = modelRoot();
    if (!root)
        return;

    QList<QTreeWidgetItem*> topLevel;
    std::function<void(const Node*, QTreeWidgetItem*)> walk = [&](const Node* first, QTreeWidgetItem* parent) {
        for (const Node* n = first; n; n = n->getBrother()) {
            auto* line = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem();
            if (!parent)
                topLevel.append(line);
            line->setData(0, Qt::UserRole + 1, QVariant::fromValue(quintptr(n->attribute)));
            m_rows.append({n, line});
            m_nodeOfLine.insert(line, n);
            if (n->attribute)
                m_lineOfItem.insert(n->attribute, line);
            walk(n->getFirstSon(), line);
        }
    };
    walk(root->getFirstSon(), nullptr);
    m_tree->addTopLevelItems(topLevel);
    if (QTreeWidgetItem* line
        = current ? m_lineOfItem.value(reinterpret_cast<ObjectSelectorItemInterface*>(current)) : nullptr)
        m_tree->setCurrentItem(line);
}

void ObjectSelectorEditor::applyData(const Row& row)
{
    QTreeWidgetItem* line = row.line;
    ObjectSelectorItemInterface* item = row.node->attribute;
    const QObject* object = item ? dynamic_cast<const QObject*>(item) : nullptr;
    if (!item) {
        line->setText(0, QString());
        line->setFlags(Qt::ItemIsEnabled);
        return;
    }
    const QString title = item->title();
    if (line->text(0) != title) {
        line->setText(0, title);
        line->setToolTip(0, title);
    }
    const QPixmap pixmap = item->pixmap();
    if (pixmap.cacheKey() != line->data(0, Qt::UserRole + 2).toLongLong()) {
        line->setIcon(0, pixmap.isNull() ? QIcon() : QIcon(pixmap));
        line->setData(0, Qt::UserRole + 2, pixmap.cacheKey());
    }
    const bool readOnly = object && object->property("ISREADONLY").toBool();
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (item->isCheckable()) {
        if (!readOnly)
            flags |= Qt::ItemIsUserCheckable;
        const Qt::CheckState state = item->isChecked() ? Qt::Checked : Qt::Unchecked;
        if (line->data(0, Qt::CheckStateRole) != QVariant(int(state)))
            line->setCheckState(0, state);
    } else if (line->data(0, Qt::CheckStateRole).isValid()) {
        line->setData(0, Qt::CheckStateRole, QVariant());
    }
    if (line->flags() != flags)
        line->setFlags(flags);
}

void ObjectSelectorEditor::applyState(const Row& row)
{
    const bool hidden = !row.node->isVisible();
    if (row.line->isHidden() != hidden)
        row.line->setHidden(hidden);
    if (row.line->childCount() == 0)
        return;
    if (row.node->attribute) {
        const bool expanded = row.node->attribute->isExpanded();
        if (row.line->isExpanded() != expanded)
            row.line->setExpanded(expanded);
    }
    // Branches read as headings, greyed when a search leaves nothing below them.
    QFont font = row.line->font(0);
    if (!font.bold()) {
        font.setBold(true);
        row.line->setFont(0, font);
    }
    bool anySonShown = false;
    for (int i = 0; i < row.line->childCount() && !anySonShown; ++i)
        anySonShown = !row.line->child(i)->isHidden();
    const QBrush brush = anySonShown ? QBrush() : m_tree->palette().brush(QPalette::Disabled, QPalette::Text);
    if (row.line->foreground(0) != brush)
        row.line->setForeground(0, brush);
}

void ObjectSelectorEditor::updateView()
{
    {
        RefreshGuard guard(m_updating);
        const QSignalBlocker blocker(m_tree);
        if (!treeMatchesModel())
            rebuildTree();
        for (const Row& row : qAsConst(m_rows))
            applyData(row);
        // Sons before their branch, which looks at what shows below it.
        for (auto it = m_rows.crbegin(); it != m_rows.crend(); ++it)
            applyState(*it);
    }
    m_tree->viewport()->update();
    updateFilterControls();
    rebuildQuickFilterMenu();
    updateCheckAllState();
    updateCount();
    updateDetails();
}

void ObjectSelectorEditor::updateViewData()
{
    {
        RefreshGuard guard(m_updating);
        const QSignalBlocker blocker(m_tree);
        if (!treeMatchesModel()) {
            rebuildTree();
            for (auto it = m_rows.crbegin(); it != m_rows.crend(); ++it)
                applyState(*it);
        }
        for (const Row& row : qAsConst(m_rows))
            applyData(row);
    }
    m_tree->viewport()->update();
    updateCheckAllState();
    updateDetails();
}

void ObjectSelectorEditor::updateCount()
{
    int shown = 0;
    int total = 0;
    for (const Row& row : qAsConst(m_rows)) {
        if (!row.node->attribute || row.line->childCount() > 0)
            continue; // count objects, not categories
        ++total;
        bool visible = true;
        for (const QTreeWidgetItem* l = row.line; l && visible; l = l->parent())
            visible = !l->isHidden();
        if (visible)
            ++shown;
    }
    m_count->setText(shown == total ? tr("%n item(s)", "%n élément(s)", total)
                                    : tr("%1 of %2 items shown", "%1 éléments affichés sur %2").arg(shown).arg(total));
}

void ObjectSelectorEditor::updateCheckAllState()
{
    if (m_checkAll->isHidden())
        return;
    bool any = false;
    bool all = true;
    for (const Row& row : qAsConst(m_rows)) {
        ObjectSelectorItemInterface* item = row.node->attribute;
        if (!item || !item->isCheckable() || row.line->isHidden())
            continue;
        any = true;
        all = all && item->isChecked();
    }
    const QSignalBlocker blocker(m_checkAll);
    m_checkAll->setEnabled(any);
    m_checkAll->setChecked(any && all);
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
    if (m_model && object)
        m_model->visibleFilters(object, values);
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
    m_details->setHtml(detailsHtml(itemOf(m_tree->currentItem())));
}

// Quick filters and filter lines ---------------------------------------------

void ObjectSelectorEditor::rebuildQuickFilterMenu()
{
    m_quickFilterMenu->clear();
    const auto* model = dynamic_cast<const ObjectSelectorModel*>(m_model);
    const QStringList offered = visibleFilterLabels();
    bool any = false;
    if (model) {
        const QHash<const QString, QStringList> table = model->getFilters();
        QStringList labels;
        for (auto it = table.cbegin(); it != table.cend(); ++it)
            labels.append(it.key());
        labels.sort(Qt::CaseInsensitive);
        for (const QString& label : qAsConst(labels)) {
            QMenu* sub = m_quickFilterMenu->addMenu(label);
            sub->setEnabled(offered.contains(label));
            any = any || offered.contains(label);
            for (const QString& value : table.value(label)) {
                QAction* action = sub->addAction(value);
                connect(action, &QAction::triggered, this, [this, label, value]() { onQuickFilter(label, value); });
            }
        }
    }
    m_quickFilterMenu->addSeparator();
    QAction* clear = m_quickFilterMenu->addAction(tr("Clear all filters", "Effacer tous les filtres"));
    clear->setEnabled(!m_filterLines.isEmpty() || !m_search->text().isEmpty());
    connect(clear, &QAction::triggered, this, &ObjectSelectorEditor::clearFilters);
    m_quickFilterButton->setEnabled(any || clear->isEnabled());
}

void ObjectSelectorEditor::updateFilterControls()
{
    const QStringList offered = visibleFilterLabels();
    m_addFilterButton->setEnabled(m_filterLines.size() < offered.size());
    m_filtersTitle->setVisible(!m_filterLines.isEmpty());
    for (FilterLine* line : qAsConst(m_filterLines)) {
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
            const bool used = std::any_of(m_filterLines.cbegin(), m_filterLines.cend(),
                                          [&](const FilterLine* l) { return l->enabledLabel == candidate; });
            if (!used) {
                chosen = candidate;
                break;
            }
        }
    }
    if (chosen.isEmpty() || !offered.contains(chosen))
        return false;
    for (FilterLine* existing : qAsConst(m_filterLines)) {
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
    m_filterLayout->addWidget(line->row);
    m_filterLines.append(line);

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
    if (m_updating)
        return;
    const QString label = line->label->currentText();
    if (label == line->enabledLabel)
        return;
    // Another line on the same filter gives way to this one.
    for (FilterLine* other : m_filterLines) {
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
    if (m_updating || line->enabledLabel.isEmpty())
        return;
    const QString label = line->enabledLabel;
    const QString value = line->value->text();
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->updateFilterRequested(label, value); });
}

void ObjectSelectorEditor::removeFilterLine(int index)
{
    if (index >= 0 && index < m_filterLines.size())
        removeFilterLine(m_filterLines.at(index));
}

void ObjectSelectorEditor::removeFilterLine(FilterLine* line)
{
    if (!m_filterLines.removeOne(line))
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
    while (!m_filterLines.isEmpty())
        removeFilterLine(m_filterLines.last());
    if (!m_search->text().isEmpty()) {
        m_search->clear();
        notify([](ObjectSelectorEditorObserverInterface* o) { o->stopSearchRequested(); });
    }
    rebuildQuickFilterMenu();
}

int ObjectSelectorEditor::filterLineCount() const
{
    return m_filterLines.size();
}

QComboBox* ObjectSelectorEditor::filterLabelBox(int index) const
{
    return index >= 0 && index < m_filterLines.size() ? m_filterLines.at(index)->label : nullptr;
}

QLineEdit* ObjectSelectorEditor::filterValueLine(int index) const
{
    return index >= 0 && index < m_filterLines.size() ? m_filterLines.at(index)->value : nullptr;
}

QToolButton* ObjectSelectorEditor::removeFilterButton(int index) const
{
    return index >= 0 && index < m_filterLines.size() ? m_filterLines.at(index)->remove : nullptr;
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

void ObjectSelectorEditor::onItemChanged(QTreeWidgetItem* line, int column)
{
    if (m_updating || column != 0)
        return;
    ObjectSelectorItemInterface* item = itemOf(line);
    if (!item || !item->isCheckable())
        return;
    const bool checked = line->checkState(0) == Qt::Checked;
    if (checked == item->isChecked())
        return;
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->toggleCheckRequested(item, checked); });
    // The observers may have changed other ticks (single selection): show them all.
    updateViewData();
}

void ObjectSelectorEditor::onCheckAllClicked(bool checked)
{
    for (const Row& row : qAsConst(m_rows)) {
        ObjectSelectorItemInterface* item = row.node->attribute;
        const QObject* object = dynamic_cast<const QObject*>(item);
        if (!item || !item->isCheckable() || item->isChecked() == checked)
            continue;
        if (object && object->property("ISREADONLY").toBool())
            continue;
        bool shown = true;
        for (const QTreeWidgetItem* l = row.line; l && shown; l = l->parent())
            shown = !l->isHidden();
        if (shown)
            notify([&](ObjectSelectorEditorObserverInterface* o) { o->toggleCheckRequested(item, checked); });
    }
    notify([&](ObjectSelectorEditorObserverInterface* o) { o->checkAllRequested(checked); });
    updateViewData();
}
