#include "referenceselector.h"

#include <objectselectordatabasemodel.h>
#include <objectselectordatabaseobjectitem.h>
#include <objectselectoriteminterface.h>
#include <objectselectormodel.h>
#include <vnobject2.h>
#include <vntovidatabaseinterface.h>

namespace {
using Node = ReferenceSelector::Node;

// The library fills one kind per tree; each kind is filled in a model of its
// own and its category moved into the gathered model.
void fillKind(ObjectSelectorDatabaseModel& part, const QString& kind, bool checkable)
{
    if (kind == QLatin1String("compounds"))
        part.fillWithCompounds(checkable);
    else if (kind == QLatin1String("parameters"))
        part.fillWithParameters(checkable);
    else if (kind == QLatin1String("joints"))
        part.fillWithJoints(checkable);
    else
        part.fillWithIons(checkable);
}

QString idOf(const QString& kind, const ObjectSelectorItemInterface* item)
{
    const auto* objectItem = dynamic_cast<const ObjectSelectorDatabaseObjectItem*>(item);
    const VNObject2* object = objectItem ? objectItem->databaseObject() : nullptr;
    if (!object)
        return QString();
    // A joint's key joins its compound and its ion with a control character.
    QString key = object->key();
    key.replace(QChar(0x1f), QLatin1Char('|'));
    return kind.left(1).toUpper() + QLatin1Char(':') + key;
}
} // namespace

QStringList ReferenceSelector::kinds()
{
    return {QStringLiteral("compounds"), QStringLiteral("parameters"), QStringLiteral("joints"),
            QStringLiteral("ions")};
}

void ReferenceSelector::fill(ObjectSelectorModel& model, VNToviDatabaseInterface* database, const QStringList& kinds,
                             bool checkable)
{
    model.root().setAutoDelete(true);
    const QStringList wanted = kinds.isEmpty() ? ReferenceSelector::kinds() : kinds;
    Node* last = nullptr;
    for (const QString& kind : ReferenceSelector::kinds()) {
        if (!wanted.contains(kind))
            continue;
        ObjectSelectorDatabaseModel part;
        part.setActiveDB({database});
        fillKind(part, kind, checkable);
        for (Node* category : part.root().getSons()) {
            category->setParent(nullptr);
            if (last)
                model.root().insertAfter(category, last);
            else
                category->setParent(&model.root());
            last = category;
            if (category->attribute)
                category->attribute->setId(kind);
            for (Node* node = category->getFirstSon(); node; node = node->getBrother()) {
                if (node->attribute)
                    node->attribute->setId(idOf(kind, node->attribute));
            }
        }
        // The labels the library registered for this kind, now that the
        // gathered tree holds the items that carry them.
        QStringList labels;
        part.visibleFilters(labels);
        for (const QString& label : qAsConst(labels))
            model.updateVisibleFilterValue(label, part.visibleFilterValue(label));
    }
}

ObjectSelectorItemInterface* ReferenceSelector::find(const ObjectSelectorModel& model, const QString& id)
{
    for (QObject* object : model.getAllItems()) {
        if (object->property("id").toString() == id)
            return dynamic_cast<ObjectSelectorItemInterface*>(object);
    }
    return nullptr;
}
