#include "objectselectordatabasemodel.h"

#include "objectselectordatabaseitem.h"
#include "objectselectordatabaseobjectitem.h"
#include "vntovidatabaseinterface.h"

#include <messageloggerinterface.h>
#include <tpixmapcache.h>
#include <tprogressbarmgr.h>
#include <txmlmethod.h>

#include <tdatabase.h>
#include <tproperty.h>
#include <ttoviratio.h>
#include <vnobject2tovigraph.h>
#include <vnobject2tovioverlay.h>
#include <vnobject2toviratio.h>
#include <vnobjecttype.h>

#include <QMap>

#include <cstddef>

namespace {
const QString kRatioUID = QStringLiteral("ratioUID");
const QString kMasterName = QStringLiteral("MasterName");

QString iconName(int type)
{
    switch (type) {
    case VNObjectTypeGraph:
        return QStringLiteral("graphIcon");
    case VNObjectTypeOverlay:
        return QStringLiteral("grapheditor_overlay");
    case VNObjectTypeRatio:
        return QStringLiteral("ratioIcon");
    case VNObjectTypeCompound:
        return QStringLiteral("compound");
    default: // joints and ions: what an analysis is made of
        return QStringLiteral("analysis");
    }
}

VNToviDatabaseInterface* toviDatabaseOf(const VNObject2* object)
{
    return object ? dynamic_cast<VNToviDatabaseInterface*>(object->db()) : nullptr;
}

// A detached node that deletes its item, linked as the son after `after`
// (or as the first son), so that sons keep the order they are added in.
ObjectSelectorModel::Node* appendNode(ObjectSelectorModel::Node* parent, ObjectSelectorModel::Node* after,
                                      ObjectSelectorItemInterface* item)
{
    auto* node = new ObjectSelectorModel::Node();
    node->setAutoDelete(true);
    node->attribute = item;
    if (after)
        parent->insertAfter(node, after);
    else
        node->setParent(parent);
    return node;
}

void numberNodes(ObjectSelectorModel::Node* root)
{
    int id = 0;
    for (ObjectSelectorModel::Node* node = root->getNextNode(root); node; node = root->getNextNode(node))
        node->setNodeId(id++);
}
// The properties each kind shows, in the order they are offered: key, English
// label, French label (translated under the model's context). A row counts
// only when some item of the tree carries its key, so each kind registers its
// rows after its tree is built.
struct Label
{
    const char* key;
    const char* english;
    const char* french;
};

const Label kParameterLabels[] = {
    {"Ratio ID", "Parameter ID", "ID du Paramètre"},
    {"MasterName", "Name", "Nom"},
    {"StudyType", "Study type", "Type d'étude"},
    {"AnalysisType", "Analysis type", "Type d'analyse"},
    {"ProcessType", "Process type", "Type de traitement"},
    {"DisplayFormula", "Parameter formula", "Formule du Paramètre"},
    {"Formula", "Raw formula", "Formule Brute"},
    {"FamilyName", "Family name", "Nom de famille"},
    {"ExpectedIons", "Expected ions", "Ions attendus"},
    {"LiteratureReference", "Literature", "Littérature"},
};

const Label kGraphLabels[] = {
    {"MasterName", "Name", "Nom"},
    {"ExpectedUnit", "Unit", "Unité"},
    {"Comments", "Comments", "Commentaires"},
    {"AnalysisType", "Analysis type", "Type d'analyse"},
    {"LiteratureReference", "Literature", "Littérature"},
    {"StudyType", "Study type", "Type d'étude"},
    {"ProcessType", "Process type", "Type de traitement"},
    {"FamilyName", "Family name", "Nom de famille"},
    {"ratioUID", "Axis", "Axes"},
};

const Label kOverlayLabels[] = {
    {"MasterName", "Name", "Nom"},
    {"LiteratureReference", "Literature", "Littérature"},
    {"AnalysisType", "Analysis type", "Type d'analyse"},
    {"StudyType", "Study type", "Type d'étude"},
};

const Label kCompoundLabels[] = {
    {"Compound ID", "Compound ID", "ID du composé"},
    {"InChI", "InChI", "InChI"},
    {"InChIKey", "InChIKey", "InChIKey"},
    {"formula", "Compound formula", "Formule du composé"},
    {"CAS", "CAS", "CAS"},
    // "Familly" is the label users know; it stays as it is.
    {"family", "Familly", "Famille"},
    {"carbons", "Carbons", "Carbones"},
    {"MasterName", "Name", "Nom"},
    {"ORL_Name", "ORL short name", "Nom court ORL"},
    {"ToVIKey", "ToVIKey", "ToVIKey"},
    {"AnalysisType", "Analysis type", "Type d'analyse"},
    {"StudyType", "Study type", "Type d'étude"},
    {"ExpectedIons", "Expected ions", "Ions attendus"},
    {"FamilyName", "Family name", "Nom de famille"},
};

const Label kJointLabels[] = {
    {"MasterName", "Name", "Nom"},
    {"Compound ID", "Compound ID", "ID du composé"},
    {"Ion ID", "Ion ID", "ID de l'Ion"},
};

const Label kIonLabels[] = {
    {"MasterName", "Name", "Nom"},
    {"Ion ID", "Ion ID", "ID de l'Ion"},
};

template <std::size_t N>
QList<QPair<QString, QString>> translated(const Label (&labels)[N])
{
    QList<QPair<QString, QString>> rows;
    for (const Label& label : labels) {
        rows << qMakePair(QCoreApplication::translate("ObjectSelectorDatabaseModel", label.english, label.french),
                          QString::fromUtf8(label.key));
    }
    return rows;
}

void registerLabels(ObjectSelectorModel& model, int type)
{
    for (const auto& row : ObjectSelectorDatabaseModel::displayableProperties(type))
        model.updateVisibleFilterValue(row.first, row.second);
}
} // namespace

QList<QPair<QString, QString>> ObjectSelectorDatabaseModel::displayableProperties(int type)
{
    switch (type) {
    case VNObjectTypeCompound:
        return translated(kCompoundLabels);
    case VNObjectTypeRatio:
        return translated(kParameterLabels);
    case VNObjectTypeJoint:
        return translated(kJointLabels);
    case VNObjectTypeIon:
        return translated(kIonLabels);
    case VNObjectTypeGraph:
        return translated(kGraphLabels);
    case VNObjectTypeOverlay:
        return translated(kOverlayLabels);
    default:
        return {};
    }
}

ObjectSelectorDatabaseModel::ObjectSelectorDatabaseModel()
{
    root().setAutoDelete(true);
    m_root = &root();
}

ObjectSelectorDatabaseModel::~ObjectSelectorDatabaseModel() = default;

void ObjectSelectorDatabaseModel::setActiveDB(const QList<VNToviDatabaseInterface*>& databases)
{
    m_activeDB = databases;
}

void ObjectSelectorDatabaseModel::setGraphicsGetter(const GraphicsGetter& getter)
{
    m_graphicsGetter = getter;
}

void ObjectSelectorDatabaseModel::fillFromDatabase(bool checkable)
{
    TProgressBarMgr progress(5, tr("Loading database...", "Chargement de la base de données..."));
    fillWithCompounds(checkable);
    progress.setProgress(1);
    fillWithParameters(checkable);
    progress.setProgress(2);
    fillWithJoints(checkable);
    progress.setProgress(3);
    fillWithIons(checkable);
    progress.setProgress(4);
    fillGraph(checkable, true);
    progress.setProgress(5);
}

QList<const VNObject2*> ObjectSelectorDatabaseModel::collect(
    const std::function<QList<const VNObject2*>(VNToviDatabaseInterface*)>& list) const
{
    // Whole lists in database order; an object found in two databases is
    // listed twice, once per database.
    QList<const VNObject2*> objects;
    for (VNToviDatabaseInterface* database : m_activeDB) {
        if (database)
            objects += list(database);
    }
    return objects;
}

void ObjectSelectorDatabaseModel::fillWithCompounds(bool checkable)
{
    const auto objects = collect([](VNToviDatabaseInterface* db) { return db->getAllCompounds(); });
    adopt(fillFromList({TitledList(tr("Compounds", "Composés"), objects)}, checkable));
    initCompoundsDisplayableProperties();
}

void ObjectSelectorDatabaseModel::fillWithParameters(bool checkable)
{
    auto objects = collect([](VNToviDatabaseInterface* db) { return db->getAllRatios(); });
    sortRatioByDisplayID(objects);
    adopt(fillFromList({TitledList(tr("Parameters", "Paramètres"), objects)}, checkable));
    initParametersDisplayableProperties();
}

void ObjectSelectorDatabaseModel::fillWithJoints(bool checkable)
{
    const auto objects = collect([](VNToviDatabaseInterface* db) { return db->getAllJoints(); });
    adopt(fillFromList({TitledList(tr("Joints", "Jointures"), objects)}, checkable));
    initJointsDisplayableProperties();
}

void ObjectSelectorDatabaseModel::fillWithIons(bool checkable)
{
    const auto objects = collect([](VNToviDatabaseInterface* db) { return db->getAllIons(); });
    adopt(fillFromList({TitledList(tr("Ions", "Ions"), objects)}, checkable));
    initIonsDisplayableProperties();
}

void ObjectSelectorDatabaseModel::fillWithOverlays(bool checkable)
{
    const auto objects = collect([](VNToviDatabaseInterface* db) { return db->getAllOverlays(); });
    adopt(fillFromList({TitledList(tr("Overlays", "Overlays"), objects)}, checkable));
    initOverlaysDisplayableProperties();
}

void ObjectSelectorDatabaseModel::fillGraph(bool checkable, bool withOverlays)
{
    const GraphicsGetter getter = m_graphicsGetter;
    const auto graphs
        = collect([&getter](VNToviDatabaseInterface* db) { return getter ? getter(db) : db->getAllGraphs(); });
    const QString title = withOverlays ? tr("Graphs & Overlays", "Graphes & Overlays") : tr("Graphs", "Graphes");
    Node* tree = fillFromList({TitledList(title, graphs)}, checkable);

    Node* category = tree->getFirstSon();
    for (Node* graphNode = category ? category->getFirstSon() : nullptr; graphNode && withOverlays;
         graphNode = graphNode->getBrother()) {
        auto* item = dynamic_cast<ObjectSelectorDatabaseObjectItem*>(graphNode->attribute);
        const auto* graph = item ? dynamic_cast<const VNObject2ToviGraph*>(item->databaseObject()) : nullptr;
        VNToviDatabaseInterface* database = toviDatabaseOf(graph);
        if (!database)
            continue;
        Node* last = nullptr;
        for (const VNObject2* overlay : database->getOverlays(graph))
            last = addObjectNode(graphNode, last, overlay, checkable);
    }
    numberNodes(tree);
    adopt(tree);
    initGraphDisplayableProperties();
    if (withOverlays)
        initOverlaysDisplayableProperties();
}

ObjectSelectorModel::Node* ObjectSelectorDatabaseModel::fillFromList(QList<TitledList> lists, bool checkable)
{
    auto* tree = new Node();
    tree->setAutoDelete(true);
    Node* lastCategory = nullptr;
    for (const TitledList& list : lists) {
        auto* category = new ObjectSelectorDatabaseItem();
        category->setProperty("TITLE", list.first);
        category->setProperty("ISCHECKABLE", checkable);
        lastCategory = appendNode(tree, lastCategory, category);
        Node* last = nullptr;
        for (const VNObject2* object : list.second)
            last = addObjectNode(lastCategory, last, object, checkable);
    }
    numberNodes(tree);
    return tree;
}

ObjectSelectorModel::Node* ObjectSelectorDatabaseModel::addObjectNode(Node* parent, Node* after,
                                                                      const VNObject2* object, bool checkable)
{
    auto* item = new ObjectSelectorDatabaseObjectItem();
    item->setDatabaseObject(object);
    item->setProperty("ISCHECKABLE", checkable);
    item->setProperty("ISCHECKED", false);
    if (object) {
        item->setProperty("ICON", TPixmapCache::find(iconName(object->type())));
        if (object->type() == VNObjectTypeGraph || object->type() == VNObjectTypeOverlay)
            item->setProperty("ISREADONLY", object->isReadOnly());
        // Graphs and overlays are named by their identifier: the title users
        // know is the graph's title, or the master name of the others.
        QString title = object->name();
        VNToviDatabaseInterface* database = toviDatabaseOf(object);
        const QList<Sedra::TProperty>* properties = database ? database->getObjectProperties(object) : nullptr;
        if (properties) {
            for (const Sedra::TProperty& property : *properties) {
                const QByteArray name = property.name().toUtf8();
                if (property.name() == kMasterName && !property.value().isEmpty())
                    title = property.value();
                // Declared properties (TITLE, id, ...) are the item's own state.
                if (!name.isEmpty() && item->metaObject()->indexOfProperty(name.constData()) < 0)
                    item->setProperty(name.constData(), propertyValueStr(property));
            }
        }
        const auto* graph = dynamic_cast<const VNObject2ToviGraph*>(object);
        item->setProperty("TITLE", graph ? graph->getTitle() : title);
    }
    return appendNode(parent, after, item);
}

void ObjectSelectorDatabaseModel::adopt(Node* tree)
{
    while (Node* son = root().getFirstSon())
        delete son;
    Node* last = nullptr;
    for (Node* son : tree->getSons()) {
        son->setParent(nullptr);
        if (last)
            root().insertAfter(son, last);
        else
            son->setParent(&root());
        last = son;
    }
    delete tree;
    m_root = &root();
}

QString ObjectSelectorDatabaseModel::propertyValueStr(const Sedra::TProperty& property) const
{
    if (property.name() != kRatioUID)
        return property.value();
    // A graph's axes: one ratio key per axis, shown one per line.
    QStringList lines;
    for (const QString& key : property.value().split(QLatin1Char(';'), Qt::KeepEmptyParts)) {
        QString text = key;
        for (VNToviDatabaseInterface* database : m_activeDB) {
            const VNObject2* ratio = database && !key.isEmpty() ? database->getRatio(key) : nullptr;
            if (ratio) {
                text = ratio->name();
                break;
            }
        }
        lines << text;
    }
    return lines.join(QStringLiteral("<br>"));
}

void ObjectSelectorDatabaseModel::sortRatioByDisplayID(QList<const VNObject2*>& list)
{
    QMap<int, const VNObject2*> ordered;
    for (int i = 0; i < list.size(); ++i) {
        const VNObject2* object = list.at(i);
        VNToviDatabaseInterface* database = toviDatabaseOf(object);
        Sedra::TToviRatio* record = database ? database->getRatio(object) : nullptr;
        if (!record)
            continue; // a ratio without its record is left out on purpose
        int key = record->displayOrder();
        if (ordered.contains(key)) {
            MessageLoggerInterface::Debug(
                tr("Duplicated order in database, ratio will be added at the end",
                   "Ordre dupliqué dans la base de données, le paramètre sera ajouté à la fin"));
            // Past every real order in practice; a clash here replaces.
            key = list.size() + i;
        }
        ordered.insert(key, object);
    }
    list = ordered.values();
}

void ObjectSelectorDatabaseModel::deleteItemWithRatio(const Node* tree, Sedra::TToviRatio* ratio)
{
    const VNObject2* object = ratio ? ratio->ratio() : nullptr;
    if (!tree || !object)
        return;
    // Every line of the ratio goes, wherever it is: a database listed twice
    // shows its ratios twice, and a line left behind would point to an object
    // its database is about to remove.
    for (Node* son : tree->getSons()) {
        auto* item = dynamic_cast<ObjectSelectorDatabaseObjectItem*>(son->attribute);
        if (item && item->databaseObject() == object)
            delete son; // unlinks itself and deletes its sons
        else
            deleteItemWithRatio(son, ratio);
    }
}

bool ObjectSelectorDatabaseModel::encodeDatabaseItem(const QList<ObjectSelectorItemInterface*>& items,
                                                     QDomElement& element)
{
    if (element.isNull())
        return false;
    for (ObjectSelectorItemInterface* entry : items) {
        auto* item = dynamic_cast<ObjectSelectorDatabaseObjectItem*>(entry);
        if (!item || !item->databaseObject())
            continue;
        QDomElement object = TXMLMethod::createChildElement(element, QStringLiteral("object"));
        TXMLMethod::addToElement(object, QStringLiteral("key"), item->databaseObject()->key());
        TXMLMethod::addToElement(object, QStringLiteral("name"), item->databaseObject()->name());
        TXMLMethod::addToElement(object, QStringLiteral("type"), QString::number(item->databaseObject()->type()));
    }
    return true;
}

bool ObjectSelectorDatabaseModel::encodeSelectedOfType(int type, const QString& tag, QDomElement& element)
{
    if (element.isNull())
        return false;
    QList<ObjectSelectorItemInterface*> items;
    for (ObjectSelectorItemInterface* entry : getSelectedItems(&root())) {
        auto* item = dynamic_cast<ObjectSelectorDatabaseObjectItem*>(entry);
        if (item && item->databaseObject() && item->databaseObject()->type() == type)
            items << entry;
    }
    QDomElement list = TXMLMethod::createChildElement(element, tag);
    return encodeDatabaseItem(items, list);
}

bool ObjectSelectorDatabaseModel::encodeSelectedCompounds(QDomElement& element)
{
    return encodeSelectedOfType(VNObjectTypeCompound, QStringLiteral("SelectedCompounds"), element);
}

bool ObjectSelectorDatabaseModel::encodeSelectedRatios(QDomElement& element)
{
    return encodeSelectedOfType(VNObjectTypeRatio, QStringLiteral("SelectedRatios"), element);
}

bool ObjectSelectorDatabaseModel::encodeSelectedIons(QDomElement& element)
{
    return encodeSelectedOfType(VNObjectTypeIon, QStringLiteral("SelectedIons"), element);
}

bool ObjectSelectorDatabaseModel::encodeSelectedJoints(QDomElement& element)
{
    return encodeSelectedOfType(VNObjectTypeJoint, QStringLiteral("SelectedJoints"), element);
}

void ObjectSelectorDatabaseModel::initParametersDisplayableProperties()
{
    registerLabels(*this, VNObjectTypeRatio);
}

void ObjectSelectorDatabaseModel::initGraphDisplayableProperties()
{
    registerLabels(*this, VNObjectTypeGraph);
}

void ObjectSelectorDatabaseModel::initOverlaysDisplayableProperties()
{
    registerLabels(*this, VNObjectTypeOverlay);
}

void ObjectSelectorDatabaseModel::initCompoundsDisplayableProperties()
{
    registerLabels(*this, VNObjectTypeCompound);
}

void ObjectSelectorDatabaseModel::initJointsDisplayableProperties()
{
    registerLabels(*this, VNObjectTypeJoint);
}

void ObjectSelectorDatabaseModel::initIonsDisplayableProperties()
{
    registerLabels(*this, VNObjectTypeIon);
}
