#include "objectselectoritem.h"
#include "objectselectoritem_p.h"

#include <QCoreApplication>
#include <QDynamicPropertyChangeEvent>
#include <QMetaType>
#include <QVariant>

#include <algorithm>

ObjectSelectorItem::ObjectSelectorItem()
    : d(std::make_unique<ObjectSelectorItemPrivate>())
{
    // Item pointers travel in QVariants and queued signals.
    static const int registered = qRegisterMetaType<ObjectSelectorItem*>("ObjectSelectorItem *");
    Q_UNUSED(registered);
}

ObjectSelectorItem::~ObjectSelectorItem() = default;

void ObjectSelectorItem::setIsReadOnly(bool readOnly)
{
    d->readOnly = readOnly;
}
bool ObjectSelectorItem::isReadOnly() const
{
    return d->readOnly;
}
void ObjectSelectorItem::setId(const QString& id)
{
    d->id = id;
}
QString ObjectSelectorItem::id()
{
    return d->id;
}
void ObjectSelectorItem::setIsCheckable(bool checkable)
{
    d->checkable = checkable;
}
bool ObjectSelectorItem::isCheckable() const
{
    return d->checkable;
}
void ObjectSelectorItem::setChecked(bool checked)
{
    d->checked = checked;
}
bool ObjectSelectorItem::isChecked() const
{
    return d->checked;
}
void ObjectSelectorItem::setTitle(const QString& title)
{
    d->title = title;
}
QString ObjectSelectorItem::title()
{
    return d->title;
}
void ObjectSelectorItem::setPixmap(const QPixmap& pixmap)
{
    d->pixmap = pixmap;
}
QPixmap ObjectSelectorItem::pixmap()
{
    return d->pixmap;
}
bool ObjectSelectorItem::isExpanded() const
{
    return d->expanded;
}
void ObjectSelectorItem::setExpanded(bool expanded)
{
    d->expanded = expanded;
}

bool ObjectSelectorItem::foldedProperty(const QByteArray& name, QString& folded) const
{
    if (!d->foldedFirst.name.isNull() && d->foldedFirst.name == name) {
        folded = d->foldedFirst.folded;
        return d->foldedFirst.carried;
    }
    for (const ObjectSelectorItemPrivate::FoldedValue& entry : d->foldedMore) {
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
        if (d->foldedFirst.name.isNull())
            d->foldedFirst = {name, folded, value.isValid()};
        else
            d->foldedMore.push_back({name, folded, value.isValid()});
    }
    return value.isValid();
}

bool ObjectSelectorItem::event(QEvent* event)
{
    if (event->type() == QEvent::DynamicPropertyChange) {
        const QByteArray name = static_cast<QDynamicPropertyChangeEvent*>(event)->propertyName();
        if (d->foldedFirst.name == name)
            d->foldedFirst = ObjectSelectorItemPrivate::FoldedValue();
        d->foldedMore.erase(
            std::remove_if(d->foldedMore.begin(), d->foldedMore.end(),
                           [&name](const ObjectSelectorItemPrivate::FoldedValue& entry) { return entry.name == name; }),
            d->foldedMore.end());
    }
    return QObject::event(event);
}
