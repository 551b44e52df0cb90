// Selector items and the selector model: item properties, ticks, filters,
// collapsed branches and the persisted selection, garbage included.
#include "tst_objectselectorsample.h"

#include <objectselectoritem.h>
#include <objectselectormodel.h>
#include <ttranslator.h>

#include <QDataStream>
#include <QDomDocument>
#include <QtTest>

namespace {

// A subclass that refuses ticks while locked: property writes must reach it.
class LockedItem : public ObjectSelectorItem
{
public:
    bool locked = true;
    int setCheckedCalls = 0;

protected:
    void setChecked(bool checked) override
    {
        ++setCheckedCalls;
        if (!locked)
            ObjectSelectorItem::setChecked(checked);
    }
};

// An item the framework cannot see through the property system.
class PlainItem : public ObjectSelectorItemInterface
{
public:
    void setId(const QString& id) override { m_id = id; }
    QString id() override { return m_id; }
    void setIsCheckable(bool) override { }
    bool isCheckable() const override { return true; }
    void setChecked(bool checked) override { m_checked = checked; }
    bool isChecked() const override { return m_checked; }
    void setTitle(const QString&) override { }
    QString title() override { return QString(); }
    void setPixmap(const QPixmap&) override { }
    QPixmap pixmap() override { return QPixmap(); }
    bool isExpanded() const override { return false; }
    void setExpanded(bool) override { }

private:
    QString m_id;
    bool m_checked = true;
};

// An item of another library: a QObject whose state is in its properties,
// with or without an "id".
class PropertyItem : public QObject, public PlainItem
{
    Q_OBJECT
public:
    explicit PropertyItem(const QVariant& id)
    {
        setProperty("ISCHECKABLE", true);
        setProperty("ISCHECKED", true);
        if (id.isValid())
            setProperty("id", id);
    }
};

QStringList checkedIds(ObjectSelectorModel& model)
{
    return sample::ids(model.getSelectedItems(nullptr));
}

void tick(ObjectSelectorModel& model, const QStringList& ids)
{
    for (const QString& id : ids)
        sample::find(model, id)->setChecked(true);
}

// Whether the model takes the fragment, given inside a parent element.
bool decodeXml(ObjectSelectorModel& model, const QString& xml)
{
    QDomDocument doc;
    doc.setContent(QStringLiteral("<state>%1</state>").arg(xml));
    QDomElement state = doc.documentElement();
    return model.decode(state);
}

QString payload(const QList<QVariant>& ids, int truncateTo = -1)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_6);
    stream << quint32(ids.size());
    for (const QVariant& id : ids)
        stream << id;
    if (truncateTo >= 0)
        bytes.truncate(truncateTo);
    return QString::fromLatin1(bytes.toBase64());
}

QString fragment(const QString& version, const QString& selected)
{
    return QStringLiteral("<ObjectSelectorModel><Version>%1</Version><SelectedItems><![CDATA[%2]]></SelectedItems>"
                          "</ObjectSelectorModel>")
        .arg(version, selected);
}

} // namespace

class TestObjectSelectorModel : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void itemPropertiesAndDefaults()
    {
        ObjectSelectorItem item;
        ObjectSelectorItemInterface& face = item;
        QVERIFY(face.isExpanded() && !face.isCheckable() && !face.isChecked());

        // The property names are what views and saved states read.
        const QMetaObject* meta = item.metaObject();
        const QStringList expected{"ISCHECKABLE", "ISCHECKED", "TITLE", "ICON", "ISEXPANDED", "id", "ISREADONLY"};
        QStringList declared;
        for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
            declared << QString::fromLatin1(meta->property(i).name());
        QCOMPARE(declared, expected);

        QVERIFY(QMetaType::type("ObjectSelectorItem*") != QMetaType::UnknownType);
    }

    void propertyWritesRunOverrides()
    {
        LockedItem item;
        item.setProperty("ISCHECKABLE", true);
        item.setProperty("ISCHECKED", true);
        QCOMPARE(item.setCheckedCalls, 1);
        QCOMPARE(item.property("ISCHECKED").toBool(), false);
        item.locked = false;
        item.setProperty("ISCHECKED", true);
        QCOMPARE(item.property("ISCHECKED").toBool(), true);
    }

    void selectedItemsAndUncheck()
    {
        ObjectSelectorModel model;
        sample::fill(model);
        QVERIFY(checkedIds(model).isEmpty());
        tick(model, {"14", "21", "PAR-3"});
        QCOMPARE(checkedIds(model), QStringList({"14", "21", "PAR-3"}));

        // Below a category: the category's own item is never part of the answer.
        const sample::Node* isoprenoids = sample::nodeOf(model, sample::find(model, "2"));
        sample::find(model, "2")->setIsCheckable(true);
        sample::find(model, "2")->setChecked(true);
        QCOMPARE(sample::ids(model.getSelectedItems(isoprenoids)), QStringList({"21"}));

        // A ticked item that is not checkable is not selected.
        sample::find(model, "14")->setIsCheckable(false);
        QCOMPARE(checkedIds(model), QStringList({"2", "21", "PAR-3"}));

        model.uncheckAll();
        QVERIFY(checkedIds(model).isEmpty());
        QVERIFY(!sample::find(model, "14")->isChecked()); // even the non-checkable one
    }

    // What encode writes, decode reads back whole: items without an id, or
    // with an id decode would not read, are left out, the others kept.
    void encodeDecodeRoundTrip()
    {
        ObjectSelectorModel model;
        sample::fill(model);
        tick(model, {"12", "22", "34", "PAR-1"});
        for (const QVariant& id : {QVariant(), QVariant(QDate(2026, 11, 24))})
            sample::appendNode(&model.root(), nullptr)->attribute = new PropertyItem(id);

        QDomDocument doc;
        QDomElement state = doc.createElement("state");
        doc.appendChild(state);
        QVERIFY(model.encode(state));

        const QDomElement saved = state.firstChildElement("ObjectSelectorModel");
        QVERIFY(!saved.isNull());
        QCOMPARE(saved.firstChildElement("Version").text(), QStringLiteral("2.0"));
        const QDomNode cdata = saved.firstChildElement("SelectedItems").firstChild();
        QVERIFY(cdata.isCDATASection());
        QCOMPARE(ObjectSelectorModel::decodeSelectedIds(cdata.nodeValue().toLatin1()),
                 QList<QVariant>({"12", "22", "34", "PAR-1"}));

        // Restoring from the element itself (the data-driven rows give its parent).
        model.uncheckAll();
        QDomElement element = saved;
        QVERIFY(model.decode(element));
        QCOMPARE(checkedIds(model), QStringList({"12", "22", "34", "PAR-1"}));

        // Text round trip through a file-like string.
        QDomDocument reread;
        QVERIFY(reread.setContent(doc.toString()));
        QDomElement root = reread.documentElement();
        ObjectSelectorModel other;
        sample::fill(other);
        QVERIFY(other.decode(root));
        QCOMPARE(checkedIds(other), QStringList({"12", "22", "34", "PAR-1"}));
    }

    // A refused state leaves the ticks alone; an accepted one whose selection
    // is garbage reads as an empty selection.
    void decodeRefusalsAndGarbage_data()
    {
        QTest::addColumn<QString>("xml");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("version 1.0") << fragment("1.0", payload({"12"})) << false;
        QTest::newRow("version 2.0 with spaces") << fragment(" 2.0", payload({"12"})) << false;
        QTest::newRow("no version") << QStringLiteral(
            "<ObjectSelectorModel><SelectedItems>x</SelectedItems></ObjectSelectorModel>")
                                    << false;
        QTest::newRow("no element") << QStringLiteral("<Other><Version>2.0</Version></Other>") << false;
        QTest::newRow("no content") << QString() << false;
        const auto bytes = [](const char* data, int size) {
            return fragment("2.0", QString::fromLatin1(QByteArray(data, size).toBase64()));
        };
        QTest::newRow("not base64") << fragment("2.0", "!!!* not base64 *!!!") << true;
        QTest::newRow("empty") << fragment("2.0", QString()) << true;
        QTest::newRow("truncated stream") << fragment("2.0", payload({"12", "21"}, 14)) << true;
        QTest::newRow("count too large") << bytes("\x7f\xff\xff\xff", 4) << true;
        QTest::newRow("count 2^32-1") << bytes("\xff\xff\xff\xff\x00\x00\x00\x0a", 8) << true;
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::darkGreen); // written out whole: no unset pixels
        QTest::newRow("image variant") << fragment("2.0", payload({QVariant(image)})) << true;
        QTest::newRow("nested list") << fragment("2.0", payload({QVariant(QVariantList{"12"})})) << true;
        QTest::newRow("huge nested list") << bytes("\x00\x00\x00\x01\x00\x00\x00\x09\x00\x7f\xff\xff\xff", 13) << true;
    }

    // Only checkable items are ticked. Entries that name nothing, or that
    // cannot be read, are dropped; the ids read before them still tick their
    // items. An integer id matches the item whose id is its text (QVariant
    // equality).
    void decodeTicksWhatItCanRead_data()
    {
        QTest::addColumn<QList<QVariant>>("ids");
        QTest::addColumn<QStringList>("ticked");
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::red);
        QTest::newRow("category, unknown id")
            << QList<QVariant>{"12", "1", "PAR-2", "not-an-item"} << QStringList{"12", "PAR-2"};
        QTest::newRow("integer id") << QList<QVariant>{31, "PAR-2"} << QStringList{"31", "PAR-2"};
        QTest::newRow("entry without a value") << QList<QVariant>{"12", QVariant(), "21"} << QStringList{"12", "21"};
        QTest::newRow("image after two ids")
            << QList<QVariant>{"12", "PAR-2", QVariant(image), "21"} << QStringList{"12", "PAR-2"};
        QTest::newRow("date first") << QList<QVariant>{QVariant(QDate(2026, 11, 24)), "12"} << QStringList();
    }

    void decodeTicksWhatItCanRead()
    {
        QFETCH(QList<QVariant>, ids);
        QFETCH(QStringList, ticked);
        ObjectSelectorModel model;
        sample::fill(model);
        tick(model, {"13", "11"});
        sample::find(model, "11")->setIsCheckable(false);
        QVERIFY(decodeXml(model, fragment("2.0", payload(ids))));
        QCOMPARE(checkedIds(model), ticked);
        QVERIFY(sample::find(model, "11")->isChecked()); // not checkable: left as it was
        QVERIFY(!sample::find(model, "1")->isChecked());
    }

    void decodeRefusalsAndGarbage()
    {
        QFETCH(QString, xml);
        QFETCH(bool, accepted);
        ObjectSelectorModel model;
        sample::fill(model);
        tick(model, {"13", "PAR-4"});
        QDomElement null;
        QVERIFY(!model.decode(null));
        QCOMPARE(decodeXml(model, xml), accepted);
        QCOMPARE(checkedIds(model), accepted ? QStringList() : QStringList({"13", "PAR-4"}));
    }

    void itemsThatAreNotQObjectsAreSkipped()
    {
        ObjectSelectorModel model;
        sample::fill(model);
        auto* plain = new PlainItem;
        plain->setId("99");
        sample::Node* node = sample::appendNode(&model.root(), nullptr);
        node->attribute = plain;
        sample::appendNode(node, sample::makeItem("98", "Below a plain item", QString(), true))
            ->attribute->setChecked(true);
        QCOMPARE(checkedIds(model), QStringList({"98"}));
        QCOMPARE(model.getAllItems().size(), 24);
        model.uncheckAll();
        QVERIFY(plain->isChecked());
    }

    void filters()
    {
        ObjectSelectorModel model;
        QList<QString> available;
        model.availableFilters(available);
        QVERIFY(available.isEmpty());
        QVERIFY(!model.enableFilter("MasterName")); // nothing carries it yet
        QVERIFY(!model.updateVisibleFilterValue("Name", "MasterName"));

        sample::fill(model);
        model.availableFilters(available);
        QCOMPARE(available,
                 QList<QString>({"MasterName", "formula", "CAS", "AnalysisType", "StudyType", "DisplayFormula"}));

        QVERIFY(!model.enableFilter("TITLE")); // declared properties are not filters
        QVERIFY(!model.enableFilter("family"));
        QVERIFY(!model.updateFilterValue("CAS", "629")); // not active yet

        QVERIFY(model.enableFilter("CAS"));
        QVERIFY(model.updateFilterValue("CAS", "629"));
        QVERIFY(!model.enableFilter("CAS")); // already active: value kept
        QCOMPARE(model.filterValue("CAS"), QStringLiteral("629"));
        QVERIFY(model.enableFilter("formula"));

        QList<QString> names;
        model.activeFilters(names);
        std::sort(names.begin(), names.end());
        QCOMPARE(names, QList<QString>({"CAS", "formula"}));
        QHash<QString, QString> values;
        model.activeFilters(values);
        QCOMPARE(values.value("CAS"), QStringLiteral("629"));
        QVERIFY(values.contains("formula") && values.value("formula").isNull());
        model.activeFiltersDisplay(values);
        QCOMPARE(values.value("CAS"), QStringLiteral("629"));
        QVERIFY(values.contains("Compound formula"));

        QVERIFY(model.disableFilter("CAS"));
        QVERIFY(!model.disableFilter("CAS"));
        model.disableAllFilters();
        model.activeFilters(names);
        QVERIFY(names.isEmpty());
    }

    void visibleFilters()
    {
        ObjectSelectorModel model;
        sample::fill(model);
        QStringList labels;
        model.visibleFilters(labels);
        QCOMPARE(labels,
                 QStringList({"Analysis type", "CAS", "Compound formula", "Name", "Parameter formula", "Study type"}));
        QCOMPARE(model.visibleFilterValue("Name"), QStringLiteral("MasterName"));
        QVERIFY(model.visibleFilterValue("Nom").isNull());
        QCOMPARE(model.visibleFilterKey("formula"), QStringLiteral("Compound formula"));
        QVERIFY(model.visibleFilterKey("family").isNull());

        QVERIFY(model.updateVisibleFilterValue("Name", "CAS")); // replaces the earlier entry
        QCOMPARE(model.visibleFilterValue("Name"), QStringLiteral("CAS"));
        QVERIFY(!model.updateVisibleFilterValue("Familly", "family"));
        model.visibleFilters(labels);
        QVERIFY(!labels.contains("Familly"));
        model.updateVisibleFilterValue("Name", "MasterName");

        QMap<QString, QString> shown;
        model.visibleFilters(dynamic_cast<QObject*>(sample::find(model, "34")), shown);
        QCOMPARE(shown.value("CAS"), QStringLiteral("13849-96-9"));
        QCOMPARE(shown.value("Compound formula"), QStringLiteral("C30H52"));
        QVERIFY(!shown.contains("Parameter formula"));
        model.visibleFilters(dynamic_cast<QObject*>(sample::find(model, "33")), shown);
        QVERIFY(!shown.contains("CAS")); // not stored for that compound
        model.visibleFilters(nullptr, shown);
        QVERIFY(shown.isEmpty());
    }

    void collapsedItems()
    {
        ObjectSelectorModel model;
        sample::fill(model);
        QVERIFY(model.getCollapsedItems().isEmpty()); // items start expanded
        sample::find(model, "3")->setExpanded(false);
        sample::find(model, "PAR-1")->setExpanded(false); // not a number: never reported
        QCOMPARE(model.getCollapsedItems(), QList<int>({3}));

        QVERIFY(model.loadCollapsedItems({1, 4, 77}));
        QCOMPARE(model.getCollapsedItems(), QList<int>({1, 3, 4}));
        QVERIFY(model.loadCollapsedItems({})); // nothing is re-expanded
        QCOMPARE(model.getCollapsedItems(), QList<int>({1, 3, 4}));
        QVERIFY(!sample::find(model, "PAR-1")->isExpanded());
    }
};

QTEST_MAIN(TestObjectSelectorModel)
#include "tst_objectselectormodel.moc"
