#include "objectselectoritem.h"

#include <QCoreApplication>
#include <QDynamicPropertyChangeEvent>
#include <QMetaType>
#include <QVariant>

#include <algorithm>

ObjectSelectorItem::ObjectSelectorItem()
{
    // Item pointers travel in QVariants and queued signals.
    static const int registered = qRegisterMetaType<ObjectSelectorItem*>("ObjectSelectorItem *");
    Q_UNUSED(registered);
}

ObjectSelectorItem::~ObjectSelectorItem() = default;

void ObjectSelectorItem::setIsReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
}
bool ObjectSelectorItem::isReadOnly() const
{
    return m_readOnly;
}
void ObjectSelectorItem::setId(const QString& id)
{
    m_id = id;
}
QString ObjectSelectorItem::id()
{
    return m_id;
}
void ObjectSelectorItem::setIsCheckable(bool checkable)
{
    m_checkable = checkable;
}
bool ObjectSelectorItem::isCheckable() const
{
    return m_checkable;
}
void ObjectSelectorItem::setChecked(bool checked)
{
    m_checked = checked;
}
bool ObjectSelectorItem::isChecked() const
{
    return m_checked;
}
void ObjectSelectorItem::setTitle(const QString& title)
{
    m_title = title;
}
QString ObjectSelectorItem::title()
{
    return m_title;
}
void ObjectSelectorItem::setPixmap(const QPixmap& pixmap)
{
    m_pixmap = pixmap;
}
QPixmap ObjectSelectorItem::pixmap()
{
    return m_pixmap;
}
bool ObjectSelectorItem::isExpanded() const
{
    return m_expanded;
}
void ObjectSelectorItem::setExpanded(bool expanded)
{
    m_expanded = expanded;
}

bool ObjectSelectorItem::foldedProperty(const QByteArray& name, QString& folded) const
{
    if (!m_foldedFirst.name.isNull() && m_foldedFirst.name == name) {
        folded = m_foldedFirst.folded;
        return m_foldedFirst.carried;
    }
    for (const FoldedValue& entry : m_foldedMore) {
        if (entry.name == name) {
            folded = entry.folded;
            return entry.carried;
        }
    }
    const QVariant value = property(name.constData());
    folded = value.isValid() ? value.toString().toCaseFolded() : QString();
    // Only dynamic properties announce their changes (through event()), and
    // only with an application object to deliver the announcement.
    if (QCoreApplication::instance() && metaObject()->indexOfProperty(name.constData()) < 0) {
        if (m_foldedFirst.name.isNull())
            m_foldedFirst = {name, folded, value.isValid()};
        else
            m_foldedMore.push_back({name, folded, value.isValid()});
    }
    return value.isValid();
}

bool ObjectSelectorItem::event(QEvent* event)
{
    if (event->type() == QEvent::DynamicPropertyChange) {
        const QByteArray name = static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName();
        if (m_foldedFirst.name == name)
            m_foldedFirst = FoldedValue();
        m_foldedMore.erase(std::remove_if(m_foldedMore.begin(), m_foldedMore.end(),
                                          [&name](const FoldedValue& entry) { return entry.name == name; }),
                           m_foldedMore.end());
    }
    return QObject::event(event);
}
