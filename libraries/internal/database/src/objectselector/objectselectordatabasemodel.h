#pragma once

#include "objectselectormodel.h"
#include "vndatabase_export.h"

#include <QCoreApplication>
#include <QDomElement>
#include <QList>
#include <QPair>
#include <QString>

#include <functional>

class VNObject2;
class VNToviDatabaseInterface;

namespace Sedra {
class TProperty;
class TToviRatio;
} // namespace Sedra

/// The selector model that lists the contents of the active reference
/// databases: compounds, parameters (in display order), joints, ions, graphs
/// and their overlays, one category line per kind. Every object line carries
/// the object's stored properties as dynamic properties, which the selector
/// offers as filters ("MasterName" is what the search matches), and each kind
/// registers the properties it shows under translated labels.
///
/// Each fill builds a new tree and makes it the model's tree; the registered
/// labels accumulate over fills. Databases and objects are not owned.
class VNDATABASE_EXPORT ObjectSelectorDatabaseModel : public ObjectSelectorModel
{
    Q_DECLARE_TR_FUNCTIONS(ObjectSelectorDatabaseModel)
public:
    using GraphicsGetter = std::function<QList<const VNObject2*>(VNToviDatabaseInterface*)>;

    ObjectSelectorDatabaseModel();
    ObjectSelectorDatabaseModel(const ObjectSelectorDatabaseModel&) = delete;
    ObjectSelectorDatabaseModel& operator=(const ObjectSelectorDatabaseModel&) = delete;
    ~ObjectSelectorDatabaseModel() override;

    void setActiveDB(const QList<VNToviDatabaseInterface*>& databases);
    /// The graph objects of one database for the graph tree; without a getter
    /// every graph of the database is listed.
    void setGraphicsGetter(const GraphicsGetter& getter);

    /// Fills the five kinds in turn under a progress bar ("Loading
    /// database..."); the graph tree, built last, is the one that remains.
    void fillFromDatabase(bool checkable);
    void fillWithCompounds(bool checkable);
    /// Parameters in display order; those without a record are left out.
    void fillWithParameters(bool checkable);
    void fillWithJoints(bool checkable);
    void fillWithIons(bool checkable);
    void fillWithOverlays(bool checkable);
    /// The graphs ("Graphs"), with their overlays below them when asked
    /// ("Graphs & Overlays").
    void fillGraph(bool checkable, bool withOverlays);

    /// Write the ticked objects of one kind under `element`; false for a null
    /// element.
    bool encodeSelectedCompounds(QDomElement& element);
    bool encodeSelectedRatios(QDomElement& element);
    bool encodeSelectedIons(QDomElement& element);
    bool encodeSelectedJoints(QDomElement& element);

    /// The properties a kind of object (VNObjectType: compound, ratio, joint,
    /// ion, graph, overlay) shows, in the order they are offered: pairs of the
    /// label in the current language and the stored property's key. Empty for
    /// other kinds.
    static QList<QPair<QString, QString>> displayableProperties(int type);

private:
    friend class TestObjectSelectorDatabaseModel;

    using TitledList = QPair<QString, QList<const VNObject2*>>;

    Node* fillFromList(QList<TitledList> lists, bool checkable);
    void adopt(Node* tree);
    Node* addObjectNode(Node* parent, Node* after, const VNObject2* object, bool checkable);
    QString propertyValueStr(const Sedra::TProperty& property) const;
    void sortRatioByDisplayID(QList<const VNObject2*>& list);
    /// Removes every line below `tree` bound to the ratio's object.
    void deleteItemWithRatio(const Node* tree, Sedra::TToviRatio* ratio);
    bool encodeDatabaseItem(const QList<ObjectSelectorItemInterface*>& items, QDomElement& element);
    bool encodeSelectedOfType(int type, const QString& tag, QDomElement& element);
    QList<const VNObject2*> collect(const std::function<QList<const VNObject2*>(VNToviDatabaseInterface*)>& list) const;

    void initCompoundsDisplayableProperties();
    void initParametersDisplayableProperties();
    void initJointsDisplayableProperties();
    void initIonsDisplayableProperties();
    void initGraphDisplayableProperties();
    void initOverlaysDisplayableProperties();

    QList<VNToviDatabaseInterface*> m_activeDB;
    GraphicsGetter m_graphicsGetter;
    Node* m_root = nullptr;
};
