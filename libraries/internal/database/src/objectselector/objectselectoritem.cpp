#include "objectselectoritem.h"

#include <QMetaType>

ObjectSelectorItem::ObjectSelectorItem()
{
    // Item pointers travel in QVariants and queued signals.
    static const int registered = qRegisterMetaType<ObjectSelectorItem*>("ObjectSelectorItem *");
    Q_UNUSED(registered);
}

ObjectSelectorItem::~ObjectSelectorItem() = default;

void ObjectSelectorItem::setIsReadOnly(bool readOnly) { m_readOnly = readOnly; }
bool ObjectSelectorItem::isReadOnly() const { return m_readOnly; }
void ObjectSelectorItem::setId(const QString& id) { m_id = id; }
QString ObjectSelectorItem::id() { return m_id; }
void ObjectSelectorItem::setIsCheckable(bool checkable) { m_checkable = checkable; }
bool ObjectSelectorItem::isCheckable() const { return m_checkable; }
void ObjectSelectorItem::setChecked(bool checked) { m_checked = checked; }
bool ObjectSelectorItem::isChecked() const { return m_checked; }
void ObjectSelectorItem::setTitle(const QString& title) { m_title = title; }
QString ObjectSelectorItem::title() { return m_title; }
void ObjectSelectorItem::setPixmap(const QPixmap& pixmap) { m_pixmap = pixmap; }
QPixmap ObjectSelectorItem::pixmap() { return m_pixmap; }
bool ObjectSelectorItem::isExpanded() const { return m_expanded; }
void ObjectSelectorItem::setExpanded(bool expanded) { m_expanded = expanded; }
