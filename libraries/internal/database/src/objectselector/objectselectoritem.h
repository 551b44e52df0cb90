#pragma once

#include "objectselectoriteminterface.h"
#include "vndatabase_export.h"

#include <QByteArray>
#include <QObject>
#include <QPixmap>
#include <QString>

#include <memory>
#include <typeinfo>

/// The concrete selector item. Its state is also published as Qt properties,
/// which is how the model, the widget and database-backed subclasses address
/// items by name. Every property goes through the virtual accessors, so an
/// override in a subclass takes effect for property access as well.
///
/// Besides the declared properties an item may carry dynamic properties
/// (QObject::setProperty with a new name): the model offers them as filters,
/// and "MasterName" is the name that text search matches.
class VNDATABASE_EXPORT ObjectSelectorItem : public QObject, public ObjectSelectorItemInterface
{
    Q_OBJECT
    Q_PROPERTY(bool ISCHECKABLE READ isCheckable WRITE setIsCheckable)
    Q_PROPERTY(bool ISCHECKED READ isChecked WRITE setChecked)
    Q_PROPERTY(QString TITLE READ title WRITE setTitle)
    Q_PROPERTY(QPixmap ICON READ pixmap WRITE setPixmap)
    Q_PROPERTY(bool ISEXPANDED READ isExpanded WRITE setExpanded)
    Q_PROPERTY(QString id READ id WRITE setId)
    Q_PROPERTY(bool ISREADONLY READ isReadOnly WRITE setIsReadOnly)

public:
    ObjectSelectorItem();
    ~ObjectSelectorItem() override;

    /// The item behind `item` when it is an ObjectSelectorItem (or a subclass),
    /// else null. Cheaper than a dynamic_cast for the plain class, which is
    /// what walks over large trees meet most.
    static ObjectSelectorItem* fromInterface(ObjectSelectorItemInterface* item)
    {
        if (!item)
            return nullptr;
        if (typeid(*item) == typeid(ObjectSelectorItem))
            return static_cast<ObjectSelectorItem*>(item);
        return dynamic_cast<ObjectSelectorItem*>(item);
    }

    /// The dynamic property `name` as text in case-folded form
    /// (QString::toCaseFolded), for case-insensitive matching; false when the
    /// item does not carry it. Folded values are kept between calls and
    /// dropped when the property changes, so repeated searches over large
    /// trees do not convert and fold every value again. Declared properties
    /// are answered too, without being kept.
    bool foldedProperty(const QByteArray& name, QString& folded) const;

protected:
    bool event(QEvent* event) override;

protected:
    // The tree model reads the flag of every row it lays out.
    friend class ObjectSelectorTreeModel;

    void setIsReadOnly(bool readOnly);
    bool isReadOnly() const;

    void setId(const QString& id) override;
    QString id() override;
    void setIsCheckable(bool checkable) override;
    bool isCheckable() const override;
    void setChecked(bool checked) override;
    bool isChecked() const override;
    void setTitle(const QString& title) override;
    QString title() override;
    void setPixmap(const QPixmap& pixmap) override;
    QPixmap pixmap() override;
    bool isExpanded() const override;
    void setExpanded(bool expanded) override;

private:
    // Behind a private pointer: adding state does not change the layout other
    // modules were built against.
    std::unique_ptr<class ObjectSelectorItemPrivate> d;
};
