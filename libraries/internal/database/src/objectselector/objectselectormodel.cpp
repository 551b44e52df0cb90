#include "objectselectormodel.h"

#include "objectselectoritem.h"
#include "txmlmethod.h"

#include <QBuffer>
#include <QtEndian>
#include <QDataStream>
#include <QDomCDATASection>
#include <QDomDocument>
#include <QDomNodeList>
#include <QObject>
#include <QSet>

#include <algorithm>
#include <functional>

namespace {

const char* const kModelTag = "ObjectSelectorModel";
const char* const kVersionKey = "Version";
const char* const kVersion = "2.0";
const char* const kSelectedKey = "SelectedItems";
// The selection has always been written in the Qt 4.6 stream format.
const int kStreamVersion = QDataStream::Qt_4_6;

QObject* itemObject(const ObjectSelectorModel::Node* node)
{
    return node && node->attribute ? dynamic_cast<QObject*>(node->attribute) : nullptr;
}

// Ids are plain values. A stored selection holding anything else (images,
// nested containers, user types) is corrupt, and reading such variants from
// untrusted bytes could allocate without bound, so they are refused unread.
bool isIdType(quint32 type)
{
    switch (type) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return true;
    default:
        return false;
    }
}

} // namespace

ObjectSelectorModel::ObjectSelectorModel() = default;

ObjectSelectorModel::~ObjectSelectorModel() = default;

// Persisted selection -------------------------------------------------------

QByteArray ObjectSelectorModel::encodeSelectedIds(const QList<QVariant>& ids)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(kStreamVersion);
    stream << quint32(ids.size());
    for (const QVariant& id : ids)
        stream << id;
    return bytes.toBase64();
}

QList<QVariant> ObjectSelectorModel::decodeSelectedIds(const QByteArray& base64)
{
    QByteArray bytes = QByteArray::fromBase64(base64);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QDataStream stream(&buffer);
    stream.setVersion(kStreamVersion);

    QList<QVariant> ids;
    quint32 count = 0;
    stream >> count;
    if (stream.status() != QDataStream::Ok)
        return ids;
    // Each variant takes at least five bytes: never trust the count for memory.
    ids.reserve(int(std::min<qint64>(count, bytes.size() / 5)));
    for (quint32 i = 0; i < count; ++i) {
        // Peek at the variant's type in place: seeking back in the stream
        // would refill the device's read buffer at every id.
        const qint64 start = buffer.pos();
        if (start + 4 > bytes.size())
            return {};
        const quint32 type = qFromBigEndian<quint32>(bytes.constData() + start);
        // A value of another type cannot be skipped without reading it: the
        // ids before it are kept, the rest of the list is lost with it.
        if (type != QMetaType::UnknownType && !isIdType(type))
            return ids;
        QVariant id;
        stream >> id;
        if (stream.status() != QDataStream::Ok)
            return {};
        // An entry without a value (an item that had no id) names nothing.
        if (id.isValid())
            ids.append(id);
    }
    return ids;
}

bool ObjectSelectorModel::encode(QDomElement& parent)
{
    QDomElement element = TXMLMethod::createChildElement(parent, QString::fromLatin1(kModelTag));
    if (element.isNull())
        return false;

    QList<QVariant> ids;
    const QList<ObjectSelectorItemInterface*> selected = getSelectedItems(nullptr);
    ids.reserve(selected.size());
    for (ObjectSelectorItemInterface* item : selected) {
        QVariant id;
        if (ObjectSelectorItem::fromInterface(item))
            id = item->id();
        else if (QObject* object = dynamic_cast<QObject*>(item))
            id = object->property("id");
        // Only what decode reads back is written: an item without an id, or
        // with an id of another kind of value, is left out.
        if (id.isValid() && isIdType(quint32(id.userType())))
            ids.append(id);
    }

    TXMLMethod::addToElement(element, QString::fromLatin1(kVersionKey), QString::fromLatin1(kVersion));

    QDomDocument document = element.ownerDocument();
    QDomElement selection = document.createElement(QString::fromLatin1(kSelectedKey));
    selection.appendChild(document.createCDATASection(QString::fromLatin1(encodeSelectedIds(ids))));
    element.appendChild(selection);
    return true;
}

bool ObjectSelectorModel::decode(QDomElement& element)
{
    const QString tag = QString::fromLatin1(kModelTag);
    QDomElement model = element;
    if (model.tagName() != tag) {
        const QDomNodeList found = element.elementsByTagName(tag);
        model = found.isEmpty() ? QDomElement() : found.at(0).toElement();
    }
    if (model.isNull())
        return false;
    if (TXMLMethod::getInfoString(model, QString::fromLatin1(kVersionKey)) != QLatin1String(kVersion))
        return false;

    const QString payload = TXMLMethod::getInfoString(model, QString::fromLatin1(kSelectedKey));
    updateSelectedItems(&m_tree, decodeSelectedIds(payload.toLatin1()));
    return true;
}

void ObjectSelectorModel::updateSelectedItems(const Node* node, const QList<QVariant>& ids)
{
    // Item ids are strings: string ids are looked up in a set, and only ids of
    // other types (rare) go through QVariant's own comparison.
    QSet<QString> stringIds;
    QList<QVariant> otherIds;
    for (const QVariant& id : ids) {
        if (id.userType() == QMetaType::QString)
            stringIds.insert(id.toString());
        else
            otherIds.append(id);
    }

    std::function<void(const Node*)> walk = [&](const Node* first) {
        for (const Node* n = first; n; n = n->getBrother()) {
            if (ObjectSelectorItem::fromInterface(n->attribute)) {
                // The same test through the accessors that the properties use.
                ObjectSelectorItemInterface* item = n->attribute;
                if (item->isCheckable()) {
                    const QString id = item->id();
                    item->setChecked(stringIds.contains(id)
                                     || (!otherIds.isEmpty() && otherIds.contains(QVariant(id))));
                }
            } else if (QObject* object = itemObject(n)) {
                const QVariant checkable = object->property("ISCHECKABLE");
                if (checkable.isValid() && checkable.toBool()) {
                    const QVariant id = object->property("id");
                    bool listed
                        = id.userType() == QMetaType::QString ? stringIds.contains(id.toString()) : ids.contains(id);
                    if (!listed && id.userType() == QMetaType::QString)
                        listed = otherIds.contains(id);
                    object->setProperty("ISCHECKED", listed);
                }
            }
            walk(n->getFirstSon());
        }
    };
    walk(node);
}

// Item lists ---------------------------------------------------------------

void ObjectSelectorModel::getSelectedItemsRecursive(const Node* node, QList<ObjectSelectorItemInterface*>& items)
{
    for (const Node* n = node; n; n = n->getBrother()) {
        if (ObjectSelectorItem::fromInterface(n->attribute)) {
            // The properties read through these same accessors.
            if (n->attribute->isCheckable() && n->attribute->isChecked())
                items.append(n->attribute);
        } else if (QObject* object = itemObject(n)) {
            if (object->property("ISCHECKABLE").toBool() && object->property("ISCHECKED").toBool())
                items.append(n->attribute);
        }
        getSelectedItemsRecursive(n->getFirstSon(), items);
    }
}

QList<ObjectSelectorItemInterface*> ObjectSelectorModel::getSelectedItems(const Node* node)
{
    QList<ObjectSelectorItemInterface*> items;
    getSelectedItemsRecursive(node ? node->getFirstSon() : &m_tree, items);
    return items;
}

void ObjectSelectorModel::getAllItemsRecursive(const Node* node, QList<QObject*>& items)
{
    for (const Node* n = node; n; n = n->getBrother()) {
        if (QObject* object = itemObject(n))
            items.append(object);
        getAllItemsRecursive(n->getFirstSon(), items);
    }
}

QList<QObject*> ObjectSelectorModel::getAllItems() const
{
    QList<QObject*> items;
    getAllItemsRecursive(&m_tree, items);
    return items;
}

void ObjectSelectorModel::setChecked(const Node* node, bool checked)
{
    for (const Node* n = node; n; n = n->getBrother()) {
        if (ObjectSelectorItem::fromInterface(n->attribute))
            n->attribute->setChecked(checked);
        else if (QObject* object = itemObject(n))
            object->setProperty("ISCHECKED", checked);
        setChecked(n->getFirstSon(), checked);
    }
}

void ObjectSelectorModel::uncheckAll()
{
    setChecked(&m_tree, false);
}

// Collapsed branches --------------------------------------------------------

QList<int> ObjectSelectorModel::getCollapsedItems()
{
    QList<int> ids;
    for (QObject* object : getAllItems()) {
        if (object->property("ISEXPANDED").toBool())
            continue;
        bool ok = false;
        const int id = object->property("id").toInt(&ok);
        if (ok)
            ids.append(id);
    }
    return ids;
}

bool ObjectSelectorModel::loadCollapsedItems(const QList<int>& ids)
{
    const QSet<int> collapsed(ids.begin(), ids.end());
    std::function<void(const Node*)> walk = [&](const Node* first) {
        for (const Node* n = first; n; n = n->getBrother()) {
            if (QObject* object = itemObject(n)) {
                bool ok = false;
                const int id = object->property("id").toInt(&ok);
                if (ok && collapsed.contains(id))
                    n->attribute->setExpanded(false);
            }
            walk(n->getFirstSon());
        }
    };
    walk(&m_tree);
    return true;
}

// Filters -----------------------------------------------------------------

void ObjectSelectorModel::availableFilters(const Node* node, QList<QString>& list)
{
    QSet<QString> seen(list.begin(), list.end());
    std::function<void(const Node*)> walk = [&](const Node* first) {
        for (const Node* n = first; n; n = n->getBrother()) {
            if (QObject* object = itemObject(n)) {
                for (const QByteArray& raw : object->dynamicPropertyNames()) {
                    const QString name = QString::fromLatin1(raw);
                    if (!seen.contains(name)) {
                        seen.insert(name);
                        list.append(name);
                    }
                }
            }
            walk(n->getFirstSon());
        }
    };
    walk(node);
}

void ObjectSelectorModel::availableFilters(QList<QString>& list) const
{
    availableFilters(&m_tree, list);
}

bool ObjectSelectorModel::hasAvailableFilter(const QString& name) const
{
    // Same answer as availableFilters(list).contains(name), without listing
    // the whole tree: most trees give the answer at their first item.
    const QByteArray raw = name.toLatin1();
    if (QString::fromLatin1(raw) != name)
        return false; // property names are Latin-1; this one cannot be among them
    std::function<bool(const Node*)> walk = [&](const Node* first) {
        for (const Node* n = first; n; n = n->getBrother()) {
            if (QObject* object = itemObject(n)) {
                if (object->dynamicPropertyNames().contains(raw))
                    return true;
            }
            if (walk(n->getFirstSon()))
                return true;
        }
        return false;
    };
    return walk(&m_tree);
}

bool ObjectSelectorModel::enableFilter(const QString& name)
{
    if (m_activeFilters.contains(name) || !hasAvailableFilter(name))
        return false;
    m_activeFilters.insert(name, QString());
    return true;
}

bool ObjectSelectorModel::disableFilter(const QString& name)
{
    return m_activeFilters.remove(name) > 0;
}

void ObjectSelectorModel::disableAllFilters()
{
    m_activeFilters.clear();
}

void ObjectSelectorModel::activeFilters(QList<QString>& names) const
{
    names = m_activeFilters.keys();
}

void ObjectSelectorModel::activeFilters(QHash<QString, QString>& filters) const
{
    filters = m_activeFilters;
}

void ObjectSelectorModel::activeFiltersDisplay(QHash<QString, QString>& filters) const
{
    filters.clear();
    for (auto it = m_activeFilters.cbegin(); it != m_activeFilters.cend(); ++it) {
        const QString label = m_visibleFilters.key(it.key());
        filters.insert(label.isNull() ? it.key() : label, it.value());
    }
}

bool ObjectSelectorModel::updateFilterValue(const QString& name, const QString& value)
{
    auto it = m_activeFilters.find(name);
    if (it == m_activeFilters.end())
        return false;
    it.value() = value;
    return true;
}

QString ObjectSelectorModel::filterValue(const QString& name)
{
    return m_activeFilters.value(name);
}

bool ObjectSelectorModel::updateVisibleFilterValue(const QString& label, const QString& name)
{
    if (!hasAvailableFilter(name))
        return false;
    m_visibleFilters.insert(label, name);
    return true;
}

QString ObjectSelectorModel::visibleFilterValue(const QString& label)
{
    return m_visibleFilters.value(label);
}

QString ObjectSelectorModel::visibleFilterKey(const QString& name)
{
    return m_visibleFilters.key(name);
}

void ObjectSelectorModel::visibleFilters(const QObject* item, QMap<QString, QString>& values) const
{
    values.clear();
    if (!item)
        return;
    for (auto it = m_visibleFilters.cbegin(); it != m_visibleFilters.cend(); ++it) {
        const QVariant value = item->property(it.value().toLatin1().constData());
        if (value.isValid() && item->dynamicPropertyNames().contains(it.value().toLatin1()))
            values.insert(it.key(), value.toString());
    }
}

void ObjectSelectorModel::visibleFilters(QStringList& labels) const
{
    labels = m_visibleFilters.keys();
    labels.sort(Qt::CaseInsensitive);
}

QHash<const QString, QStringList> ObjectSelectorModel::getFilters() const
{
    QHash<const QString, QStringList> filters;
    filters.insert(tr("Analysis type", "Type d'analyse"),
                   {QStringLiteral("MS"), QStringLiteral("THC"), QStringLiteral("Saturates"), QStringLiteral("MSMS"),
                    QStringLiteral("Aromatics"), QStringLiteral("FID")});
    filters.insert(tr("Study type", "Type d'étude"), {QStringLiteral("Source Rock"), QStringLiteral("Gas data")});
    return filters;
}
