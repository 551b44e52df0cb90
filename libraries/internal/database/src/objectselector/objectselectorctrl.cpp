#include "objectselectorctrl.h"

#include "objectselectoreditor.h"
#include "objectselectoritem.h"
#include "objectselectormodel.h"

#include <QStringMatcher>
#include <QVariant>

#include <functional>
#include <vector>

namespace {

const QString& masterName()
{
    static const QString name = QStringLiteral("MasterName");
    return name;
}

// One active filter, prepared once per visibility pass rather than per node.
struct PreparedFilter
{
    QByteArray property;
    bool hasValue = false;
    QStringMatcher matcher;       // on the value as given, ignoring case
    QStringMatcher foldedMatcher; // on the case-folded value, for folded text
};

} // namespace

ObjectSelectorCtrl::ObjectSelectorCtrl() = default;

ObjectSelectorCtrl::~ObjectSelectorCtrl()
{
    if (ObjectSelectorEditorInterface* view = editor())
        view->removeObserver(this);
}

ObjectSelectorEditorInterface* ObjectSelectorCtrl::editor() const
{
    return m_editorGuard ? m_editor : nullptr;
}

ObjectSelectorCtrl::Node* ObjectSelectorCtrl::modelRoot() const
{
    ObjectSelectorModel* model = dynamic_cast<ObjectSelectorModel*>(m_model);
    return model ? &model->root() : nullptr;
}

void ObjectSelectorCtrl::updateEditorView()
{
    if (ObjectSelectorEditorInterface* view = editor())
        view->updateView();
}

void ObjectSelectorCtrl::refreshVisibility()
{
    if (Node* root = modelRoot())
        startSearch(root);
}

// Observer operations -------------------------------------------------------

void ObjectSelectorCtrl::searchRequested(const QString& text)
{
    ObjectSelectorModel* model = dynamic_cast<ObjectSelectorModel*>(m_model);
    if (!model)
        return;
    model->enableFilter(masterName());
    model->updateFilterValue(masterName(), text);
    startSearch(&model->root());
    updateEditorView();
}

void ObjectSelectorCtrl::toggleCheckRequested(ObjectSelectorItemInterface* item, bool checked)
{
    ObjectSelectorModel* model = dynamic_cast<ObjectSelectorModel*>(m_model);
    if (!model)
        return;
    if (m_selectionMode == SingleSelection)
        model->uncheckAll();
    if (item)
        item->setChecked(checked);
}

void ObjectSelectorCtrl::searchWithFilterRequested()
{
    if (!m_model)
        return;
    refreshVisibility();
    updateEditorView();
}

void ObjectSelectorCtrl::stopSearchRequested()
{
    if (!m_model)
        return;
    m_model->disableFilter(masterName());
    refreshVisibility();
    updateEditorView();
}

bool ObjectSelectorCtrl::filterOfLabel(const QString& label, QString& name) const
{
    if (!m_model)
        return false;
    QStringList labels;
    m_model->visibleFilters(labels);
    if (!labels.contains(label))
        return false;
    name = m_model->visibleFilterValue(label);
    return true;
}

void ObjectSelectorCtrl::enableFilterRequested(const QString& label)
{
    QString name;
    if (!filterOfLabel(label, name))
        return;
    // A filter without a value yet hides nothing: visibility stays as it is.
    m_model->enableFilter(name);
    updateEditorView();
}

void ObjectSelectorCtrl::disableFilterRequested(const QString& label)
{
    QString name;
    if (!filterOfLabel(label, name))
        return;
    m_model->disableFilter(name);
    refreshVisibility();
    updateEditorView();
}

void ObjectSelectorCtrl::updateFilterRequested(const QString& label, const QString& value)
{
    QString name;
    if (!filterOfLabel(label, name))
        return;
    m_model->updateFilterValue(name, value);
    refreshVisibility();
    updateEditorView();
}

void ObjectSelectorCtrl::itemCollapsed(ObjectSelectorItemInterface* item)
{
    if (item)
        item->setExpanded(false);
}

void ObjectSelectorCtrl::itemExpanded(ObjectSelectorItemInterface* item)
{
    if (item)
        item->setExpanded(true);
}

// Controller operations -----------------------------------------------------

ObjectSelectorEditorInterface* ObjectSelectorCtrl::initView(QWidget* parent)
{
    // The widget shown before stays with its parent: it must not call a
    // controller that no longer drives it (nor one that is gone).
    closeView();
    auto* view = new ObjectSelectorEditor(parent, m_model);
    m_editor = view;
    m_editorGuard = view;
    view->addObserver(this);
    view->setSelectAllVisible(m_selectionMode != SingleSelection);
    return view;
}

void ObjectSelectorCtrl::setActiveDB(const QList<VNToviDatabaseInterface*>&)
{ }

void ObjectSelectorCtrl::closeView()
{
    if (ObjectSelectorEditorInterface* view = editor())
        view->removeObserver(this);
    m_editor = nullptr;
    m_editorGuard = nullptr;
}

bool ObjectSelectorCtrl::save(QDomElement& element)
{
    return m_model && m_model->encode(element);
}

bool ObjectSelectorCtrl::load(QDomElement& element)
{
    if (!m_model || !m_model->decode(element))
        return false;
    if (ObjectSelectorEditorInterface* view = editor()) {
        view->updateViewData();
        view->updateView();
    }
    return true;
}

void ObjectSelectorCtrl::clearSearch()
{
    if (!m_model)
        return;
    m_model->disableAllFilters();
    refreshVisibility();
    updateEditorView();
}

const ObjectSelectorModelInterface* ObjectSelectorCtrl::model()
{
    return m_model;
}

void ObjectSelectorCtrl::setModel(ObjectSelectorModelInterface* model)
{
    m_model = model;
    if (ObjectSelectorEditorInterface* view = editor()) {
        view->setModel(model);
        view->updateView();
    }
}

QList<ObjectSelectorItemInterface*> ObjectSelectorCtrl::getSelectedItems(const Node* node)
{
    return m_model ? m_model->getSelectedItems(node) : QList<ObjectSelectorItemInterface*>();
}

QList<int> ObjectSelectorCtrl::getCollapsedItems()
{
    return m_model ? m_model->getCollapsedItems() : QList<int>();
}

bool ObjectSelectorCtrl::loadCollapsedItems(const QList<int>& ids)
{
    if (!m_model)
        return false;
    const bool loaded = m_model->loadCollapsedItems(ids);
    updateEditorView();
    return loaded;
}

// Visibility ----------------------------------------------------------------

bool ObjectSelectorCtrl::isTopLevelNode(const Node* node)
{
    return !node->getParent() || !node->getParent()->attribute;
}

bool ObjectSelectorCtrl::getNodeVisibility(const Node* node, const QString& filterName)
{
    if (!m_model || !node)
        return false;
    const QObject* object = node->attribute ? dynamic_cast<const QObject*>(node->attribute) : nullptr;
    if (!object)
        return false;
    const QVariant property = object->property(filterName.toLatin1().constData());
    if (!property.isValid())
        return false;
    const QString value = m_model->filterValue(filterName);
    if (value.isNull())
        return true;
    return QStringMatcher(value, Qt::CaseInsensitive).indexIn(property.toString(), 0) >= 0;
}

void ObjectSelectorCtrl::startSearch(Node* node)
{
    if (!m_model)
        return;
    QList<QString> names;
    m_model->activeFilters(names);
    if (names.isEmpty()) {
        stopSearch(node);
        return;
    }

    // The same test as getNodeVisibility for every filter, with the property
    // name, the value and its matcher worked out once for the whole pass.
    std::vector<PreparedFilter> filters;
    filters.reserve(std::size_t(names.size()));
    for (const QString& name : names) {
        PreparedFilter filter;
        filter.property = name.toLatin1();
        const QString value = m_model->filterValue(name);
        filter.hasValue = !value.isNull();
        if (filter.hasValue) {
            filter.matcher = QStringMatcher(value, Qt::CaseInsensitive);
            filter.foldedMatcher = QStringMatcher(value.toCaseFolded(), Qt::CaseSensitive);
        }
        filters.push_back(std::move(filter));
    }

    auto matches = [&filters](const Node* n) {
        if (const ObjectSelectorItem* item = ObjectSelectorItem::fromInterface(n->attribute)) {
            // Selector items keep their values folded: a plain search in them
            // is the case-insensitive test without folding text every time.
            QString folded;
            for (const PreparedFilter& filter : filters) {
                if (!item->foldedProperty(filter.property, folded))
                    return false;
                if (filter.hasValue && filter.foldedMatcher.indexIn(folded, 0) < 0)
                    return false;
            }
            return true;
        }
        const QObject* object = n->attribute ? dynamic_cast<const QObject*>(n->attribute) : nullptr;
        if (!object)
            return false;
        for (const PreparedFilter& filter : filters) {
            const QVariant property = object->property(filter.property.constData());
            if (!property.isValid())
                return false;
            if (filter.hasValue && filter.matcher.indexIn(property.toString(), 0) < 0)
                return false;
        }
        return true;
    };

    std::function<void(Node*)> walk = [&](Node* first) {
        for (Node* n = first; n; n = n->getBrother()) {
            // Nodes and items lie all over the heap: ask for the next one early.
            __builtin_prefetch(n->getBrother());
            n->setVisible(isTopLevelNode(n) || matches(n));
            walk(n->getFirstSon());
        }
    };
    walk(node);
}

void ObjectSelectorCtrl::stopSearch(Node* node)
{
    for (Node* n = node; n; n = n->getBrother()) {
        n->setVisible(true);
        stopSearch(n->getFirstSon());
    }
}
