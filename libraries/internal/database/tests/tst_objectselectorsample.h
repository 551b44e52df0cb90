#pragma once

// A selector tree as the reference-database selector fills it: categories
// below an item-less root, objects below them carrying their stored
// properties as dynamic properties ("MasterName", "CAS", "formula", ...).

#include <objectselectoritem.h>
#include <objectselectormodel.h>
#include <tpixmapcache.h>

#include <QString>
#include <QVariant>

namespace sample {

using Node = TTree<ObjectSelectorItemInterface*>;

// Appends a son at the END of the parent's sons, so that the tree reads in the
// order of the code below (plain construction puts each new son first).
inline Node* appendNode(Node* parent, ObjectSelectorItem* item)
{
    auto* node = new Node();
    node->setAutoDelete(true);
    node->attribute = item;
    Node* last = nullptr;
    for (Node* son = parent->getFirstSon(); son; son = son->getBrother())
        last = son;
    if (last)
        parent->insertAfter(node, last);
    else
        node->setParent(parent);
    return node;
}

inline ObjectSelectorItem* makeItem(const QString& id, const QString& title, const QString& icon, bool checkable)
{
    auto* item = new ObjectSelectorItem();
    item->setProperty("id", id);
    item->setProperty("TITLE", title);
    item->setProperty("ISCHECKABLE", checkable);
    item->setProperty("ISCHECKED", false);
    if (!icon.isEmpty())
        item->setProperty("ICON", TPixmapCache::find(icon));
    return item;
}

inline Node* category(ObjectSelectorModel& model, const QString& id, const QString& title)
{
    return appendNode(&model.root(), makeItem(id, title, QString(), false));
}

struct Compound
{
    const char* id;
    const char* name;
    const char* formula;
    const char* cas; // null when not stored
    const char* analysis;
    const char* study;
};

inline Node* compound(Node* parent, const Compound& c, bool checkable = true)
{
    ObjectSelectorItem* item
        = makeItem(QString::fromLatin1(c.id), QString::fromUtf8(c.name), QStringLiteral("compound"), checkable);
    item->setProperty("MasterName", QString::fromUtf8(c.name));
    item->setProperty("formula", QString::fromLatin1(c.formula));
    if (c.cas)
        item->setProperty("CAS", QString::fromLatin1(c.cas));
    item->setProperty("AnalysisType", QString::fromLatin1(c.analysis));
    item->setProperty("StudyType", QString::fromLatin1(c.study));
    return appendNode(parent, item);
}

/// Fills `model` with n-alkanes, isoprenoids, hopanes, steranes and a few
/// geochemical parameters, and labels the filters as the application does.
/// Ids are whole numbers except those of the parameters ("PAR-...").
inline void fill(ObjectSelectorModel& model, bool checkable = true)
{
    model.root().setAutoDelete(true);

    Node* alkanes = category(model, QStringLiteral("1"), QStringLiteral("n-Alkanes"));
    compound(alkanes, {"11", "n-Heptadecane", "C17H36", "629-78-7", "Saturates", "Source Rock"}, checkable);
    compound(alkanes, {"12", "n-Octadecane", "C18H38", "593-45-3", "Saturates", "Source Rock"}, checkable);
    compound(alkanes, {"13", "n-Nonadecane", "C19H40", "629-92-5", "Saturates", "Source Rock"}, checkable);
    compound(alkanes, {"14", "n-Eicosane", "C20H42", "112-95-8", "Saturates", "Source Rock"}, checkable);

    Node* isoprenoids = category(model, QStringLiteral("2"), QStringLiteral("Isoprenoids"));
    compound(isoprenoids, {"21", "Pristane", "C19H40", "1921-70-6", "Saturates", "Source Rock"}, checkable);
    compound(isoprenoids, {"22", "Phytane", "C20H42", "638-36-8", "Saturates", "Source Rock"}, checkable);

    Node* hopanes = category(model, QStringLiteral("3"), QStringLiteral("Hopanes"));
    compound(hopanes, {"31", "18\u03B1(H)-22,29,30-Trisnorneohopane (Ts)", "C27H46", nullptr, "MSMS", "Source Rock"},
             checkable);
    compound(hopanes, {"32", "17\u03B1(H)-22,29,30-Trisnorhopane (Tm)", "C27H46", nullptr, "MSMS", "Source Rock"},
             checkable);
    compound(hopanes, {"33", "17\u03B1(H),21\u03B2(H)-30-Norhopane", "C29H50", nullptr, "MSMS", "Source Rock"},
             checkable);
    compound(hopanes, {"34", "17\u03B1(H),21\u03B2(H)-Hopane", "C30H52", "13849-96-9", "MSMS", "Source Rock"},
             checkable);

    Node* steranes = category(model, QStringLiteral("4"), QStringLiteral("Steranes"));
    compound(steranes,
             {"41", "5\u03B1(H),14\u03B1(H),17\u03B1(H)-Cholestane 20R", "C27H48", "481-21-0", "MS", "Source Rock"},
             checkable);
    compound(steranes,
             {"42", "5\u03B1(H),14\u03B1(H),17\u03B1(H)-Ergostane 20R", "C28H50", nullptr, "MS", "Source Rock"},
             checkable);
    compound(steranes,
             {"43", "5\u03B1(H),14\u03B1(H),17\u03B1(H)-Stigmastane 20S", "C29H52", nullptr, "MS", "Source Rock"},
             checkable);
    compound(steranes,
             {"44", "5\u03B1(H),14\u03B1(H),17\u03B1(H)-Stigmastane 20R", "C29H52", nullptr, "MS", "Source Rock"},
             checkable);

    Node* parameters = category(model, QStringLiteral("5"), QStringLiteral("Parameters"));
    const char* const ratios[][3] = {
        {"PAR-1", "Pr/Ph", "Pristane / Phytane"},
        {"PAR-2", "CPI", "Carbon preference index (C24-C34)"},
        {"PAR-3", "Ts/(Ts+Tm)", "Ts / (Ts + Tm)"},
        {"PAR-4", "C29 20S/(20S+20R)", "C29 sterane 20S / (20S + 20R)"},
    };
    for (const auto& r : ratios) {
        ObjectSelectorItem* item
            = makeItem(QString::fromLatin1(r[0]), QString::fromLatin1(r[1]), QStringLiteral("ratioIcon"), checkable);
        item->setProperty("MasterName", QString::fromLatin1(r[1]));
        item->setProperty("DisplayFormula", QString::fromLatin1(r[2]));
        item->setProperty("AnalysisType", QStringLiteral("MS"));
        appendNode(parameters, item);
    }

    model.updateVisibleFilterValue(QStringLiteral("Name"), QStringLiteral("MasterName"));
    model.updateVisibleFilterValue(QStringLiteral("CAS"), QStringLiteral("CAS"));
    model.updateVisibleFilterValue(QStringLiteral("Compound formula"), QStringLiteral("formula"));
    model.updateVisibleFilterValue(QStringLiteral("Analysis type"), QStringLiteral("AnalysisType"));
    model.updateVisibleFilterValue(QStringLiteral("Study type"), QStringLiteral("StudyType"));
    model.updateVisibleFilterValue(QStringLiteral("Parameter formula"), QStringLiteral("DisplayFormula"));
}

/// The item whose "id" is `id`, or null.
inline ObjectSelectorItemInterface* find(ObjectSelectorModel& model, const QString& id)
{
    for (QObject* object : model.getAllItems()) {
        if (object->property("id").toString() == id)
            return dynamic_cast<ObjectSelectorItemInterface*>(object);
    }
    return nullptr;
}

inline const Node* nodeOf(const ObjectSelectorModel& model, const ObjectSelectorItemInterface* item)
{
    for (const Node* n = &model.root(); n; n = n->getNextNode(const_cast<Node*>(n))) {
        if (n->attribute == item)
            return n;
    }
    return nullptr;
}

inline QStringList ids(const QList<ObjectSelectorItemInterface*>& items)
{
    QStringList list;
    for (ObjectSelectorItemInterface* item : items)
        list.append(item->id());
    return list;
}

} // namespace sample
