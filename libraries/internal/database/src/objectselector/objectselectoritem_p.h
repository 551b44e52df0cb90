#pragma once

#include <QByteArray>
#include <QPixmap>
#include <QString>

#include <vector>

// The state of an ObjectSelectorItem.
class ObjectSelectorItemPrivate
{
public:
    struct FoldedValue
    {
        QByteArray name;
        QString folded;
        bool carried = false;
    };

    bool readOnly = false;
    QString title;
    bool checkable = false;
    bool checked = false;
    QPixmap pixmap;
    QString id;
    bool expanded = true;
    // A cache, not state. Searches mostly ask one name ("MasterName"): the
    // first value kept is held apart from the others.
    mutable FoldedValue foldedFirst;
    mutable std::vector<FoldedValue> foldedMore;
};
