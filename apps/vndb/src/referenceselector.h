#pragma once

#include <ttree.h>

#include <QString>
#include <QStringList>

class ObjectSelectorItemInterface;
class ObjectSelectorModel;
class VNToviDatabaseInterface;

/// The contents of a reference database in one selector tree, as the
/// reference-database selector model gives them: ObjectSelectorDatabaseModel
/// fills each kind (its items carry the stored properties, its labels are the
/// translated ones it registers), and the categories are gathered into one
/// model below an item-less root, so that all kinds can be searched and
/// ticked together. Ids are the kind's letter and the object's key ("C:Pr",
/// "P:R001", "I:m/z 191", "J:nC17|m/z 57"), so that they can be typed.
class ReferenceSelector
{
public:
    using Node = TTree<ObjectSelectorItemInterface*>;

    /// The kinds, in the order of the tree.
    static QStringList kinds();

    /// Fills `model` (which must be empty) with the categories of `kinds`
    /// (every kind when empty) of `database`; items are checkable when
    /// `checkable`. The items point at the database's objects: the database
    /// must outlive the model.
    static void fill(ObjectSelectorModel& model, VNToviDatabaseInterface* database, const QStringList& kinds,
                     bool checkable);

    /// The item of `model` whose id is `id`, or null.
    static ObjectSelectorItemInterface* find(const ObjectSelectorModel& model, const QString& id);
};
