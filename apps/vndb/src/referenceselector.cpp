#include "referenceselector.h"

#include <objectselectoritem.h>
#include <objectselectormodel.h>
#include <tpixmapcache.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {
using Node = ReferenceSelector::Node;

// Appends a son after the last one, so the tree reads in the file's order
// (a plain son is put first).
Node* appendNode(Node* parent, ObjectSelectorItem* item)
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

ObjectSelectorItem* makeItem(const QString& id, const QString& title, const QString& icon, bool checkable)
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

// A stored property: only values that exist become properties, so that a
// filter on a key lists the objects that have it.
void store(ObjectSelectorItem* item, const char* key, const QJsonValue& value)
{
    QString text;
    if (value.isString())
        text = value.toString();
    else if (value.isDouble())
        text = QString::number(value.toDouble());
    if (!text.isEmpty())
        item->setProperty(key, text);
}

struct Label
{
    const char* key;
    const char* english;
    const char* french;
};

// The shown properties of each kind, under the labels the reference selector
// gives them.
const Label kCompoundLabels[] = {
    {"Compound ID", "Compound ID", "ID du composé"},
    {"InChI", "InChI", "InChI"},
    {"InChIKey", "InChIKey", "InChIKey"},
    {"formula", "Compound formula", "Formule du composé"},
    {"CAS", "CAS", "CAS"},
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
const Label kIonLabels[] = {
    {"MasterName", "Name", "Nom"},
    {"Ion ID", "Ion ID", "ID de l'Ion"},
};

template <size_t N>
void registerLabels(ObjectSelectorModel& model, const Label (&labels)[N])
{
    for (const Label& label : labels)
        model.updateVisibleFilterValue(QCoreApplication::translate("ReferenceSelector", label.english, label.french),
                                       QLatin1String(label.key));
}
} // namespace

QStringList ReferenceSelector::kinds()
{
    return {QStringLiteral("compounds"), QStringLiteral("parameters"), QStringLiteral("joints"), QStringLiteral("ions")};
}

QString ReferenceSelector::kindTitle(const QString& kind)
{
    if (kind == QLatin1String("compounds"))
        return tr("Compounds", "Composés");
    if (kind == QLatin1String("parameters"))
        return tr("Parameters", "Paramètres");
    if (kind == QLatin1String("joints"))
        return tr("Joints", "Jointures");
    if (kind == QLatin1String("ions"))
        return tr("Ions", "Ions");
    return QString();
}

QString ReferenceSelector::defaultDataFile()
{
    const QString fromEnvironment = qEnvironmentVariable("VNDB_REFERENCE_DATA");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QString installed =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/vndatabase/tovi-sample.json");
    if (QFileInfo::exists(installed))
        return QFileInfo(installed).canonicalFilePath();
#ifdef VNDB_REFERENCE_SAMPLE
    return QStringLiteral(VNDB_REFERENCE_SAMPLE);
#else
    return installed;
#endif
}

bool ReferenceSelector::load(const QString& file, QString* error)
{
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly)) {
        *error = tr("cannot read the reference content '%1'", "impossible de lire le contenu de référence '%1'").arg(file);
        return false;
    }
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(input.readAll(), &parse);
    const QJsonObject root = document.object();
    if (parse.error != QJsonParseError::NoError || !root.value(QStringLiteral("compounds")).isArray()) {
        *error = tr("'%1' is not reference content (JSON with compounds, parameters, joints and ions): %2",
                    "'%1' n'est pas un contenu de référence (JSON avec composés, paramètres, jointures et ions) : %2")
                     .arg(file, parse.error != QJsonParseError::NoError ? parse.errorString()
                                                                        : tr("no compound list", "pas de liste de composés"));
        return false;
    }
    m_compounds = root.value(QStringLiteral("compounds")).toArray();
    m_parameters = root.value(QStringLiteral("parameters")).toArray();
    m_joints = root.value(QStringLiteral("joints")).toArray();
    m_ions = root.value(QStringLiteral("ions")).toArray();
    // Parameters are shown in their display order.
    QList<QJsonObject> parameters;
    for (const QJsonValue& value : qAsConst(m_parameters))
        parameters << value.toObject();
    std::stable_sort(parameters.begin(), parameters.end(), [](const QJsonObject& a, const QJsonObject& b) {
        return a.value(QStringLiteral("displayOrder")).toInt() < b.value(QStringLiteral("displayOrder")).toInt();
    });
    m_parameters = QJsonArray();
    for (const QJsonObject& parameter : qAsConst(parameters))
        m_parameters.append(parameter);
    return true;
}

void ReferenceSelector::fill(ObjectSelectorModel& model, const QStringList& kinds, bool checkable) const
{
    model.root().setAutoDelete(true);
    const QStringList wanted = kinds.isEmpty() ? ReferenceSelector::kinds() : kinds;
    for (const QString& kind : ReferenceSelector::kinds()) {
        if (!wanted.contains(kind))
            continue;
        Node* category = appendNode(&model.root(), makeItem(kind, kindTitle(kind), QString(), checkable));
        if (kind == QLatin1String("compounds")) {
            fillCompounds(category, checkable);
            registerLabels(model, kCompoundLabels);
        } else if (kind == QLatin1String("parameters")) {
            fillParameters(category, checkable);
            registerLabels(model, kParameterLabels);
        } else if (kind == QLatin1String("joints")) {
            fillJoints(category, checkable);
        } else {
            fillIons(category, checkable);
            registerLabels(model, kIonLabels);
        }
    }
}

Node* ReferenceSelector::fillCompounds(Node* category, bool checkable) const
{
    int number = 0;
    for (const QJsonValue& value : m_compounds) {
        const QJsonObject c = value.toObject();
        const QString key = c.value(QStringLiteral("toviKey")).toString();
        ObjectSelectorItem* item = makeItem(QStringLiteral("C:") + key, c.value(QStringLiteral("name")).toString(),
                                            QStringLiteral("compound"), checkable);
        item->setProperty("Compound ID", QString::number(++number));
        store(item, "MasterName", c.value(QStringLiteral("name")));
        store(item, "ToVIKey", c.value(QStringLiteral("toviKey")));
        store(item, "ORL_Name", c.value(QStringLiteral("shortName")));
        store(item, "formula", c.value(QStringLiteral("formula")));
        store(item, "CAS", c.value(QStringLiteral("cas")));
        store(item, "InChI", c.value(QStringLiteral("inchi")));
        store(item, "InChIKey", c.value(QStringLiteral("inchiKey")));
        store(item, "family", c.value(QStringLiteral("family")));
        store(item, "carbons", c.value(QStringLiteral("carbons")));
        store(item, "AnalysisType", c.value(QStringLiteral("analysisType")));
        store(item, "StudyType", c.value(QStringLiteral("studyType")));
        store(item, "FamilyName", c.value(QStringLiteral("familyName")));
        store(item, "ExpectedIons", c.value(QStringLiteral("expectedIons")));
        appendNode(category, item);
    }
    return category;
}

Node* ReferenceSelector::fillParameters(Node* category, bool checkable) const
{
    for (const QJsonValue& value : m_parameters) {
        const QJsonObject p = value.toObject();
        ObjectSelectorItem* item = makeItem(QStringLiteral("P:") + p.value(QStringLiteral("ratioId")).toString(),
                                            p.value(QStringLiteral("name")).toString(), QStringLiteral("ratioIcon"), checkable);
        store(item, "Ratio ID", p.value(QStringLiteral("ratioId")));
        store(item, "MasterName", p.value(QStringLiteral("name")));
        store(item, "StudyType", p.value(QStringLiteral("studyType")));
        store(item, "AnalysisType", p.value(QStringLiteral("analysisType")));
        store(item, "ProcessType", p.value(QStringLiteral("processType")));
        store(item, "DisplayFormula", p.value(QStringLiteral("displayFormula")));
        store(item, "Formula", p.value(QStringLiteral("formula")));
        store(item, "FamilyName", p.value(QStringLiteral("familyName")));
        store(item, "ExpectedIons", p.value(QStringLiteral("expectedIons")));
        store(item, "LiteratureReference", p.value(QStringLiteral("literature")));
        appendNode(category, item);
    }
    return category;
}

QString ReferenceSelector::compoundName(const QString& key) const
{
    for (const QJsonValue& value : m_compounds) {
        const QJsonObject c = value.toObject();
        if (c.value(QStringLiteral("toviKey")).toString() == key)
            return c.value(QStringLiteral("name")).toString();
    }
    return key;
}

Node* ReferenceSelector::fillJoints(Node* category, bool checkable) const
{
    for (const QJsonValue& value : m_joints) {
        const QJsonObject j = value.toObject();
        const QString compound = j.value(QStringLiteral("compound")).toString();
        const QString ion = j.value(QStringLiteral("ion")).toString();
        const QString title = QStringLiteral("%1 @ %2").arg(compoundName(compound), ion);
        ObjectSelectorItem* item = makeItem(QStringLiteral("J:%1|%2").arg(compound, ion), title,
                                            QStringLiteral("analysis"), checkable);
        item->setProperty("MasterName", title);
        store(item, "ToVIKey", j.value(QStringLiteral("compound")));
        store(item, "Ion", j.value(QStringLiteral("ion")));
        appendNode(category, item);
    }
    return category;
}

Node* ReferenceSelector::fillIons(Node* category, bool checkable) const
{
    for (const QJsonValue& value : m_ions) {
        const QJsonObject i = value.toObject();
        ObjectSelectorItem* item = makeItem(QStringLiteral("I:") + i.value(QStringLiteral("value")).toString(),
                                            i.value(QStringLiteral("name")).toString(), QStringLiteral("analysis"), checkable);
        store(item, "MasterName", i.value(QStringLiteral("name")));
        store(item, "Ion ID", i.value(QStringLiteral("value")));
        appendNode(category, item);
    }
    return category;
}

ObjectSelectorItemInterface* ReferenceSelector::find(const ObjectSelectorModel& model, const QString& id)
{
    for (QObject* object : model.getAllItems()) {
        if (object->property("id").toString() == id)
            return dynamic_cast<ObjectSelectorItemInterface*>(object);
    }
    return nullptr;
}
