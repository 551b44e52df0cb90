// The reference selector without a window (vndb select) and in its window
// (vndb-browser --screenshot): search, filters, ticks, saved selections and
// their refusals.
#include "vndbrunner.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {
QJsonObject select(const QStringList& words, int expectedExit = 0)
{
    const VndbResult result = VndbRunner::run(QStringList{QStringLiteral("select"), QStringLiteral("--json")} + words);
    [&] { QCOMPARE(result.exitCode, expectedExit); }();
    return QJsonDocument::fromJson(result.out.toUtf8()).object();
}

// The ids shown in one category of a JSON answer.
QStringList shownIds(const QJsonObject& answer, const QString& category)
{
    QStringList ids;
    for (const QJsonValue& c : answer.value(QStringLiteral("categories")).toArray()) {
        if (c.toObject().value(QStringLiteral("id")).toString() != category)
            continue;
        for (const QJsonValue& item : c.toObject().value(QStringLiteral("items")).toArray())
            ids << item.toObject().value(QStringLiteral("id")).toString();
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
        QCOMPARE(VndbRunner::run({QStringLiteral("ref"), QStringLiteral("init"), QStringLiteral("--dir"), m_reference.path()})
                     .exitCode,
                 0);
        qputenv("TOVIDBDIR", m_reference.path().toLocal8Bit());
    }

    void searchMatchesNamesAnywhereIgnoringCase()
    {
        const auto before = VndbRunner::snapshot(m_reference.path());
        const QJsonObject all = select({});
        const int total = all.value(QStringLiteral("total")).toInt();
        QVERIFY(total > 200);
        QCOMPARE(all.value(QStringLiteral("shown")).toInt(), total);

        const QJsonObject pristane = select({QStringLiteral("--search"), QStringLiteral("PRISTANE")});
        const QStringList compounds = shownIds(pristane, QStringLiteral("compounds"));
        QVERIFY2(compounds.contains(QStringLiteral("C:Pr")), qPrintable(compounds.join(',')));
        QVERIFY(compounds.contains(QStringLiteral("C:iC18"))); // Norpristane: inside the name
        QVERIFY(!compounds.contains(QStringLiteral("C:Ph")));
        // Categories stay, even when nothing in them matches.
        QCOMPARE(pristane.value(QStringLiteral("categories")).toArray().size(), 4);
        QVERIFY(shownIds(pristane, QStringLiteral("ions")).isEmpty());

        const QJsonObject kinds = select({QStringLiteral("--kind"), QStringLiteral("ions"), QStringLiteral("--kind"),
                                          QStringLiteral("parameters")});
        QCOMPARE(kinds.value(QStringLiteral("categories")).toArray().size(), 2);
        QVERIFY(shownIds(kinds, QStringLiteral("ions")).contains(QStringLiteral("I:m/z 191")));
        // Parameters come in their display order.
        QCOMPARE(shownIds(kinds, QStringLiteral("parameters")).value(0), QStringLiteral("P:R001"));
        // Listing leaves the reference databases as they were.
        QCOMPARE(VndbRunner::snapshot(m_reference.path()), before);
    }

    void filtersByLabelKeyOrPresence()
    {
        // A label the selector shows, in English or French, or the stored key.
        const QStringList byLabel = shownIds(select({QStringLiteral("--filter"), QStringLiteral("CAS=638-36-8")}),
                                             QStringLiteral("compounds"));
        QCOMPARE(byLabel, QStringList{QStringLiteral("C:Ph")});
        const QStringList french = shownIds(select({QStringLiteral("--lang"), QStringLiteral("fr"), QStringLiteral("--filter"),
                                                    QStringLiteral("Formule du composé=C19H40")}),
                                            QStringLiteral("compounds"));
        const QStringList byKey = shownIds(select({QStringLiteral("--filter"), QStringLiteral("formula=c19h40")}),
                                           QStringLiteral("compounds"));
        QVERIFY(byKey.contains(QStringLiteral("C:Pr")));
        QCOMPARE(french, byKey);

        // An empty value keeps the objects that carry the property at all.
        const QJsonObject withCas = select({QStringLiteral("--kind"), QStringLiteral("compounds"), QStringLiteral("--filter"),
                                            QStringLiteral("CAS=")});
        const int shown = withCas.value(QStringLiteral("shown")).toInt();
        QVERIFY(shown > 0 && shown <= withCas.value(QStringLiteral("total")).toInt());

        // Filters and search together narrow down.
        const QStringList both = shownIds(select({QStringLiteral("--search"), QStringLiteral("hopane"), QStringLiteral("--filter"),
                                                  QStringLiteral("Carbons=30")}),
                                          QStringLiteral("compounds"));
        QVERIFY(both.contains(QStringLiteral("C:C30H")));
        QVERIFY(!both.contains(QStringLiteral("C:C29H")));
    }

    void ticksAreSavedAndLoaded()
    {
        QTemporaryDir tmp;
        const QString file = tmp.filePath(QStringLiteral("selection.xml"));
        QJsonObject saved = select({QStringLiteral("--tick"), QStringLiteral("C:Pr"), QStringLiteral("--tick"),
                                    QStringLiteral("P:R001"), QStringLiteral("--save"), file});
        QCOMPARE(saved.value(QStringLiteral("ticked")).toArray().size(), 2);
        QVERIFY(VndbRunner::readFile(file).contains("<ObjectSelectorModel>"));
        QVERIFY(VndbRunner::readFile(file).contains("<Version>2.0</Version>"));

        // Loaded, then a new tick is added; hidden ticks stay ticked.
        const QJsonObject loaded = select({QStringLiteral("--load"), file, QStringLiteral("--tick"), QStringLiteral("I:m/z 191"),
                                           QStringLiteral("--search"), QStringLiteral("phytane")});
        QStringList ticked;
        for (const QJsonValue& id : loaded.value(QStringLiteral("ticked")).toArray())
            ticked << id.toString();
        QCOMPARE(ticked, QStringList({QStringLiteral("C:Pr"), QStringLiteral("P:R001"), QStringLiteral("I:m/z 191")}));

        // The text form marks the ticks.
        const VndbResult text = VndbRunner::run({QStringLiteral("select"), QStringLiteral("--load"), file,
                                                 QStringLiteral("--kind"), QStringLiteral("compounds"), QStringLiteral("--search"),
                                                 QStringLiteral("pristane")});
        QCOMPARE(text.exitCode, 0);
        QVERIFY2(text.out.contains(QStringLiteral("[x] Pristane")), qPrintable(text.out));
        QVERIFY(text.out.contains(QStringLiteral("[ ] Norpristane")));
    }

    void refusalsWriteNothing_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("unknown id") << QStringList{QStringLiteral("--tick"), QStringLiteral("C:nothing")} << 1
                                    << QStringLiteral("no object with the ID 'C:nothing'")
                                    << QStringLiteral("aucun objet d'ID 'C:nothing'");
        QTest::newRow("unknown filter") << QStringList{QStringLiteral("--filter"), QStringLiteral("Colour=red")} << 1
                                        << QStringLiteral("unknown filter 'Colour'") << QStringLiteral("filtre inconnu 'Colour'");
        QTest::newRow("not a selection") << QStringList{QStringLiteral("--load"), QStringLiteral("@/garbage.xml")} << 1
                                         << QStringLiteral("holds no selector selection")
                                         << QStringLiteral("ne contient pas de sélection du sélecteur");
        QTest::newRow("missing selection") << QStringList{QStringLiteral("--load"), QStringLiteral("@/none.xml")} << 1
                                           << QStringLiteral("holds no selector selection")
                                           << QStringLiteral("ne contient pas de sélection du sélecteur");
        QTest::newRow("no reference databases") << QStringList{QStringLiteral("--dir"), QStringLiteral("@/none")} << 1
                                                << QStringLiteral("does not exist") << QStringLiteral("n'existe pas");
        QTest::newRow("unknown kind") << QStringList{QStringLiteral("--kind"), QStringLiteral("rocks")} << 2
                                      << QStringLiteral("unknown kind 'rocks'") << QStringLiteral("type inconnu 'rocks'");
    }

    void refusalsWriteNothing()
    {
        QFETCH(QStringList, words);
        QFETCH(int, exitCode);
        QFETCH(QString, english);
        QFETCH(QString, french);
        QTemporaryDir tmp;
        QVERIFY(VndbRunner::writeFile(tmp.filePath(QStringLiteral("garbage.xml")), "<a><b>not closed</a>"));
        words.replaceInStrings(QStringLiteral("@"), tmp.path());
        const QString saved = tmp.filePath(QStringLiteral("out.xml"));
        const auto before = VndbRunner::snapshot(tmp.path());
        for (const auto& language : {qMakePair(QStringLiteral("en"), english), qMakePair(QStringLiteral("fr"), french)}) {
            const VndbResult result = VndbRunner::run(QStringList{QStringLiteral("select")} + words
                                                      + QStringList{QStringLiteral("--save"), saved, QStringLiteral("--lang"),
                                                                    language.first});
            QVERIFY(!result.crashed);
            QCOMPARE(result.exitCode, exitCode);
            QCOMPARE(result.errLines().size(), 1);
            QVERIFY2(result.err.contains(language.second), qPrintable(result.err));
            QCOMPARE(VndbRunner::snapshot(tmp.path()), before);
        }
    }

    void browserDrawsTheSelectorOffScreen()
    {
#ifndef VNDB_BROWSER_EXE
        QSKIP("vndb-browser is not part of this build");
#endif
        QTemporaryDir tmp;
        const QString file = tmp.filePath(QStringLiteral("browser.png"));
        BrowserResult result = browser({QStringLiteral("--screenshot"), file, QStringLiteral("--size"), QStringLiteral("800x500"),
                                        QStringLiteral("--search"), QStringLiteral("hopane"), QStringLiteral("--tick"),
                                        QStringLiteral("C:C30H"), QStringLiteral("--lang"), QStringLiteral("fr")});
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
        const QString none = tmp.filePath(QStringLiteral("none.png"));
        result = browser({QStringLiteral("--screenshot"), none, QStringLiteral("--tick"), QStringLiteral("C:nothing"),
                          QStringLiteral("--lang"), QStringLiteral("fr")});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.trimmed() == QStringLiteral("vndb-browser: aucun objet d'ID 'C:nothing'"), qPrintable(result.err));
        QVERIFY(!QFileInfo::exists(none));
        result = browser({QStringLiteral("--screenshot"), none, QStringLiteral("--kind"), QStringLiteral("rocks")});
        QCOMPARE(result.exitCode, 2);
        QVERIFY(!QFileInfo::exists(none));
    }
};

QTEST_GUILESS_MAIN(TestVndbSelect)
#include "tst_vndb_select.moc"
