// The reference selector without a window (vndb select) and in its window
// (vndb-browser --screenshot): search, filters, ticks, saved selections and
// their refusals.
#include "vndbrunner.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {
// The JSON answer of a selection that must succeed; empty (with its error
// printed) when it did not, so that every check on it fails.
QJsonObject select(const QStringList& words)
{
    const VndbResult result = VndbRunner::run(QStringList{"select", "--json"} + words);
    if (result.exitCode != 0)
        qWarning("vndb select %s failed: %s", qPrintable(words.join(' ')), qPrintable(result.err));
    return result.exitCode == 0 ? QJsonDocument::fromJson(result.out.toUtf8()).object() : QJsonObject();
}

// The ids shown in one category of a JSON answer.
QStringList shownIds(const QJsonObject& answer, const QString& category)
{
    QStringList ids;
    for (const QJsonValue& c : answer.value("categories").toArray()) {
        if (c.toObject().value("id").toString() != category)
            continue;
        for (const QJsonValue& item : c.toObject().value("items").toArray())
            ids << item.toObject().value("id").toString();
    }
    return ids;
}

struct BrowserResult
{
    int exitCode = -1;
    QString err;
};

BrowserResult browser(const QStringList& arguments)
{
    QProcess process;
#ifdef VNDB_BROWSER_EXE
    process.start(QStringLiteral(VNDB_BROWSER_EXE), arguments);
#else
    Q_UNUSED(arguments)
#endif
    BrowserResult result;
    if (!process.waitForFinished(60000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}
} // namespace

class TestVndbSelect : public QObject
{
    Q_OBJECT
    QTemporaryDir m_reference;

private slots:
    // The selector lists a merged reference database: one made from the
    // sample content, which both programs find through TOVIDBDIR.
    void initTestCase()
    {
        QVERIFY(m_reference.isValid());
        QCOMPARE(VndbRunner::run({"ref", "init", "--dir", m_reference.path()}).exitCode, 0);
        qputenv("TOVIDBDIR", m_reference.path().toLocal8Bit());
    }

    void searchMatchesNamesAnywhereIgnoringCase()
    {
        const auto before = VndbRunner::snapshot(m_reference.path());
        const QJsonObject all = select({});
        const int total = all.value("total").toInt();
        QVERIFY(total > 200);
        QCOMPARE(all.value("shown").toInt(), total);

        const QJsonObject pristane = select({"--search", "PRISTANE"});
        const QStringList compounds = shownIds(pristane, "compounds");
        QVERIFY2(compounds.contains("C:Pr"), qPrintable(compounds.join(',')));
        QVERIFY(compounds.contains("C:iC18")); // Norpristane: inside the name
        QVERIFY(!compounds.contains("C:Ph"));
        // Categories stay, even when nothing in them matches.
        QCOMPARE(pristane.value("categories").toArray().size(), 4);
        QVERIFY(shownIds(pristane, "ions").isEmpty());

        const QJsonObject kinds = select({"--kind", "ions", "--kind", "parameters"});
        QCOMPARE(kinds.value("categories").toArray().size(), 2);
        QVERIFY(shownIds(kinds, "ions").contains("I:m/z 191"));
        // Parameters come in their display order.
        QCOMPARE(shownIds(kinds, "parameters").value(0), "P:R001");
        // Listing leaves the reference databases as they were.
        QCOMPARE(VndbRunner::snapshot(m_reference.path()), before);
    }

    void filtersByLabelKeyOrPresence()
    {
        // A label the selector shows, in English or French, or the stored key.
        const QStringList byLabel = shownIds(select({"--filter", "CAS=638-36-8"}), "compounds");
        QCOMPARE(byLabel, QStringList{"C:Ph"});
        const QStringList french
            = shownIds(select({"--lang", "fr", "--filter", "Formule du composé=C19H40"}), "compounds");
        const QStringList byKey = shownIds(select({"--filter", "formula=c19h40"}), "compounds");
        QVERIFY(byKey.contains("C:Pr"));
        QCOMPARE(french, byKey);

        // An empty value keeps the objects that carry the property at all.
        const QJsonObject withCas = select({"--kind", "compounds", "--filter", "CAS="});
        const int shown = withCas.value("shown").toInt();
        QVERIFY(shown > 0 && shown <= withCas.value("total").toInt());

        // Filters and search together narrow down.
        const QStringList both = shownIds(select({"--search", "hopane", "--filter", "Carbons=30"}), "compounds");
        QVERIFY(both.contains("C:C30H"));
        QVERIFY(!both.contains("C:C29H"));
    }

    void ticksAreSavedAndLoaded()
    {
        QTemporaryDir tmp;
        const QString file = tmp.filePath("selection.xml");
        const QJsonObject saved = select({"--tick", "C:Pr", "--tick", "P:R001", "--save", file});
        QCOMPARE(saved.value("ticked").toArray().size(), 2);
        const QByteArray xml = VndbRunner::readFile(file);
        QVERIFY(xml.contains("<ObjectSelectorModel>") && xml.contains("<Version>2.0</Version>"));

        // Loaded, then a new tick is added; hidden ticks stay ticked.
        const QJsonObject loaded = select({"--load", file, "--tick", "I:m/z 191", "--search", "phytane"});
        QCOMPARE(loaded.value("ticked").toVariant().toStringList(), QStringList({"C:Pr", "P:R001", "I:m/z 191"}));

        // The text form marks the ticks.
        const VndbResult text
            = VndbRunner::run({"select", "--load", file, "--kind", "compounds", "--search", "pristane"});
        QCOMPARE(text.exitCode, 0);
        QVERIFY2(text.out.contains("[x] Pristane"), qPrintable(text.out));
        QVERIFY(text.out.contains("[ ] Norpristane"));
    }

    void refusalsWriteNothing_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("unknown id") << QStringList{"--tick", "C:nothing"} << 1 << "no object with the ID 'C:nothing'"
                                    << "aucun objet d'ID 'C:nothing'";
        QTest::newRow("unknown filter") << QStringList{"--filter", "Colour=red"} << 1 << "unknown filter 'Colour'"
                                        << "filtre inconnu 'Colour'";
        QTest::newRow("filter without a value")
            << QStringList{"--filter", "CAS"} << 2 << "--filter 'CAS' is not KEY=VALUE"
            << "--filter 'CAS' n'est pas de la forme CLÉ=VALEUR";
        QTest::newRow("not a selection") << QStringList{"--load", "@/garbage.xml"} << 1 << "holds no selector selection"
                                         << "ne contient pas de sélection du sélecteur";
        QTest::newRow("missing selection") << QStringList{"--load", "@/none.xml"} << 1 << "holds no selector selection"
                                           << "ne contient pas de sélection du sélecteur";
        QTest::newRow("no reference databases") << QStringList{"--dir", "@/none"} << 1 << "does not exist"
                                                << "n'existe pas";
        QTest::newRow("unknown kind") << QStringList{"--kind", "rocks"} << 2 << "unknown kind 'rocks'"
                                      << "type inconnu 'rocks'";
    }

    void refusalsWriteNothing()
    {
        QFETCH(QStringList, words);
        QFETCH(int, exitCode);
        QFETCH(QString, english);
        QFETCH(QString, french);
        QTemporaryDir tmp;
        QVERIFY(VndbRunner::writeFile(tmp.filePath("garbage.xml"), "<a><b>not closed</a>"));
        words.replaceInStrings("@", tmp.path());
        const QString saved = tmp.filePath("out.xml");
        const auto before = VndbRunner::snapshot(tmp.path());
        for (const auto& language : {qMakePair(QString("en"), english), qMakePair(QString("fr"), french)}) {
            const VndbResult result = VndbRunner::run(QStringList{"select"} + words
                                                      + QStringList{"--save", saved, "--lang", language.first});
            VNDB_REFUSED(result, exitCode, language.second);
            QCOMPARE(VndbRunner::snapshot(tmp.path()), before);
        }
    }

    void browserDrawsTheSelectorOffScreen()
    {
#ifndef VNDB_BROWSER_EXE
        QSKIP("vndb-browser is not part of this build");
#endif
        QTemporaryDir tmp;
        const QString file = tmp.filePath("browser.png");
        BrowserResult result = browser(
            {"--screenshot", file, "--size", "800x500", "--search", "hopane", "--tick", "C:C30H", "--lang", "fr"});
        QCOMPARE(result.exitCode, 0);
        QImage picture;
        QVERIFY(picture.load(file));
        QCOMPARE(picture.size(), QSize(800, 500));
        // Not blank: the window holds text, lines and icons of many colours.
        QSet<QRgb> colours;
        for (int y = 0; y < picture.height(); y += 7) {
            for (int x = 0; x < picture.width(); x += 7)
                colours.insert(picture.pixel(x, y));
        }
        QVERIFY2(colours.size() > 20, qPrintable(QString::number(colours.size())));

        // Refusals: one line, exit code, no picture.
        const QString none = tmp.filePath("none.png");
        result = browser({"--screenshot", none, "--tick", "C:nothing", "--lang", "fr"});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.trimmed() == "vndb-browser: aucun objet d'ID 'C:nothing'", qPrintable(result.err));
        QVERIFY(!QFileInfo::exists(none));
        result = browser({"--screenshot", none, "--kind", "rocks"});
        QCOMPARE(result.exitCode, 2);
        QVERIFY(!QFileInfo::exists(none));
    }
};

QTEST_GUILESS_MAIN(TestVndbSelect)
#include "tst_vndb_select.moc"
