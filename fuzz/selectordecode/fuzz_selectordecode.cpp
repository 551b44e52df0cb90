// Persisted selector states as a project may hold them after any damage: the
// bytes are read as the XML element of the state, as the Base64 payload of its
// selection, and as the binary stream inside that payload. Nothing may crash;
// a refused state changes no tick; an accepted one writes back and reads
// again to the same ticks.

#include <objectselectoritem.h>
#include <objectselectormodel.h>

#include <QDomCDATASection>
#include <QDomDocument>
#include <QGuiApplication>
#include <QStringList>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

using Node = ObjectSelectorModel::Node;

void check(bool condition)
{
    if (!condition)
        std::abort();
}

Node* addItem(Node* parent, const QString& id, bool checkable, bool checked)
{
    auto* node = new Node(parent);
    node->setAutoDelete(true);
    auto* item = new ObjectSelectorItem();
    item->setProperty("id", id);
    item->setProperty("ISCHECKABLE", checkable);
    item->setProperty("ISCHECKED", checked);
    node->attribute = item;
    return node;
}

// A category that cannot be ticked, holding items of the usual id kinds, two
// of them ticked before any state is read.
std::unique_ptr<ObjectSelectorModel> makeModel()
{
    auto model = std::make_unique<ObjectSelectorModel>();
    model->root().setAutoDelete(true);
    Node* category = addItem(&model->root(), QStringLiteral("compounds"), false, true);
    addItem(category, QStringLiteral("1"), true, true);
    addItem(category, QStringLiteral("10"), true, false);
    addItem(category, QStringLiteral("PAR-1"), true, true);
    addItem(category, QString(), true, false);
    Node* deeper = addItem(category, QStringLiteral("hopanes"), false, false);
    addItem(deeper, QStringLiteral("2"), true, false);
    return model;
}

// id -> ticked, for every item of the tree.
QStringList ticks(const ObjectSelectorModel& model)
{
    QStringList result;
    for (QObject* item : model.getAllItems()) {
        result.append(item->property("id").toString() + QLatin1Char('=')
                      + QString::number(item->property("ISCHECKED").toBool()));
    }
    return result;
}

QStringList selectedIds(ObjectSelectorModel& model)
{
    QStringList ids;
    for (ObjectSelectorItemInterface* item : model.getSelectedItems(nullptr))
        ids.append(dynamic_cast<QObject*>(item)->property("id").toString());
    ids.sort();
    return ids;
}

// A decoded list writes back to bytes that decode to the same list.
void checkPayloadRoundTrip(const QList<QVariant>& ids)
{
    const QByteArray encoded = ObjectSelectorModel::encodeSelectedIds(ids);
    const QList<QVariant> again = ObjectSelectorModel::decodeSelectedIds(encoded);
    check(again.size() == ids.size());
    check(ObjectSelectorModel::encodeSelectedIds(again) == encoded);
}

// After an accepted state: the category never gets a tick of its own making,
// and a state written back reads again to the same ticks.
void checkAccepted(ObjectSelectorModel& model)
{
    QDomDocument document;
    QDomElement parent = document.createElement(QStringLiteral("project"));
    document.appendChild(parent);
    check(model.encode(parent));
    std::unique_ptr<ObjectSelectorModel> other = makeModel();
    check(other->decode(parent));
    check(selectedIds(*other) == selectedIds(model));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // Items carry pixmaps, which need a GUI application.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));

    // The payload alone, as Base64 text and as the stream it decodes to.
    checkPayloadRoundTrip(ObjectSelectorModel::decodeSelectedIds(bytes));
    checkPayloadRoundTrip(ObjectSelectorModel::decodeSelectedIds(bytes.toBase64()));

    // The bytes as the XML that holds the state.
    QDomDocument document;
    if (document.setContent(bytes)) {
        QDomElement element = document.documentElement();
        std::unique_ptr<ObjectSelectorModel> model = makeModel();
        const QStringList before = ticks(*model);
        if (model->decode(element))
            checkAccepted(*model);
        else
            check(ticks(*model) == before);
    }

    // The bytes as the selection inside a well-formed state: always accepted,
    // and only ids that the payload lists end up ticked.
    QDomDocument wrapped;
    QDomElement state = wrapped.createElement(QStringLiteral("ObjectSelectorModel"));
    wrapped.appendChild(state);
    QDomElement version = wrapped.createElement(QStringLiteral("Version"));
    version.appendChild(wrapped.createTextNode(QStringLiteral("2.0")));
    state.appendChild(version);
    QDomElement selection = wrapped.createElement(QStringLiteral("SelectedItems"));
    selection.appendChild(wrapped.createCDATASection(QString::fromLatin1(bytes)));
    state.appendChild(selection);
    std::unique_ptr<ObjectSelectorModel> model = makeModel();
    check(model->decode(state));
    const QList<QVariant> ids = ObjectSelectorModel::decodeSelectedIds(bytes);
    for (const QString& id : selectedIds(*model)) {
        bool listed = false;
        for (const QVariant& value : ids)
            listed = listed || value == QVariant(id);
        check(listed);
    }
    checkAccepted(*model);
    return 0;
}
