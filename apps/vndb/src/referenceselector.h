#pragma once

#include <ttree.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QString>
#include <QStringList>

class ObjectSelectorItemInterface;
class ObjectSelectorModel;

/// The reference content (compounds, parameters, joints, ions) put into a
/// selector model the way the reference-database selector shows it: one
/// category per kind below an item-less root, one item per object carrying
/// the object's stored properties ("MasterName", "CAS", "Ratio ID", ...) as
/// dynamic properties, and the shown properties registered under their
/// translated labels. The content is read from the sample reference file.
class ReferenceSelector
{
    Q_DECLARE_TR_FUNCTIONS(ReferenceSelector)
public:
    using Node = TTree<ObjectSelectorItemInterface*>;

    /// The kinds, in the order of the tree.
    static QStringList kinds();
    /// The translated title of a kind's category ("Compounds", "Composés").
    static QString kindTitle(const QString& kind);

    /// The sample reference file: VNDB_REFERENCE_DATA when set, else the one
    /// beside the installed program, else the one of the source tree.
    static QString defaultDataFile();

    /// Reads `file`; false with a translated one-line `error` for a missing,
    /// unreadable or malformed file (nothing is kept then).
    bool load(const QString& file, QString* error);

    /// Fills `model` (which must be empty) with the categories of `kinds`
    /// (every kind when empty); items are checkable when `checkable`.
    void fill(ObjectSelectorModel& model, const QStringList& kinds, bool checkable) const;

    /// The item of `model` whose id is `id`, or null.
    static ObjectSelectorItemInterface* find(const ObjectSelectorModel& model, const QString& id);

private:
    Node* fillCompounds(Node* root, bool checkable) const;
    Node* fillParameters(Node* root, bool checkable) const;
    Node* fillJoints(Node* root, bool checkable) const;
    Node* fillIons(Node* root, bool checkable) const;
    QString compoundName(const QString& key) const;

    QJsonArray m_compounds;
    QJsonArray m_parameters;
    QJsonArray m_joints;
    QJsonArray m_ions;
};
