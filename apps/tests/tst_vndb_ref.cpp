// vndb ref: the delivered, user and merged reference databases of a folder,
// made from the sample content, listed, added to, their aliases kept, the
// merged one rebuilt, and the refusals that leave the folder as it was.
#include "vndbrunner.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {
VndbResult ref(const QString& dir, const QStringList& words)
{
    return VndbRunner::run(QStringList{QStringLiteral("ref")} + words + QStringList{QStringLiteral("--dir"), dir});
}

QJsonObject json(const QString& dir, const QStringList& words)
{
    const VndbResult result = ref(dir, words + QStringList{QStringLiteral("--json")});
    [&] { QVERIFY2(result.exitCode == 0, qPrintable(result.err)); }();
    return QJsonDocument::fromJson(result.out.toUtf8()).object();
}

QStringList keys(const QJsonObject& list)
{
    QStringList found;
    for (const QJsonValue& item : list.value(QStringLiteral("items")).toArray())
        found << item.toObject().value(QStringLiteral("key")).toString();
    return found;
}
} // namespace

class TestVndbRef : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_tmp;
    QString m_dir;

private slots:
    void initTestCase()
    {
        QVERIFY(m_tmp.isValid());
        m_dir = m_tmp.filePath(QStringLiteral("reference"));
        const VndbResult init = ref(m_dir, {QStringLiteral("init")});
        QVERIFY2(init.exitCode == 0, qPrintable(init.err));
        for (const char* file : {"tovi-delivered.sqlite", "tovi-user.sqlite", "tovi-merged.sqlite"})
            QVERIFY(QFileInfo(m_dir + QLatin1Char('/') + QLatin1String(file)).isFile());
    }

    void initTwiceKeepsTheDeliveredDatabase()
    {
        const VndbResult again = ref(m_dir, {QStringLiteral("init")});
        QCOMPARE(again.exitCode, 0);
        QVERIFY2(again.out.contains(QLatin1String("delivered: kept")), qPrintable(again.out));
    }

    void listsSearchesAndFilters()
    {
        const QJsonObject all = json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds")});
        QVERIFY(all.value(QStringLiteral("total")).toInt() > 50);
        const QJsonObject delivered = json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds"), QStringLiteral("--db"),
                                                   QStringLiteral("delivered")});
        QCOMPARE(delivered.value(QStringLiteral("total")).toInt(), all.value(QStringLiteral("total")).toInt());
        const QJsonObject user = json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds"), QStringLiteral("--db"),
                                              QStringLiteral("user")});
        QVERIFY(user.value(QStringLiteral("items")).toArray().size() <= 1);

        const QJsonObject pristane = json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds"), QStringLiteral("--search"),
                                                  QStringLiteral("PRISTANE")});
        QVERIFY(!pristane.value(QStringLiteral("items")).toArray().isEmpty());
        const QJsonObject byCas = json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds"), QStringLiteral("--filter"),
                                               QStringLiteral("CAS=1921-70-6")});
        QCOMPARE(byCas.value(QStringLiteral("items")).toArray().size(), 1);
        const QString key = keys(byCas).value(0);
        const QJsonObject shown = json(m_dir, {QStringLiteral("show"), key});
        QCOMPARE(shown.value(QStringLiteral("kind")).toString(), QStringLiteral("compound"));
        QCOMPARE(shown.value(QStringLiteral("properties")).toObject().value(QStringLiteral("formula")).toString(),
                 QStringLiteral("C19H40"));

        const QJsonObject ions = json(m_dir, {QStringLiteral("list"), QStringLiteral("ions")});
        QVERIFY(ions.value(QStringLiteral("total")).toInt() > 5);
        QVERIFY(json(m_dir, {QStringLiteral("list"), QStringLiteral("parameters"), QStringLiteral("--search"), QStringLiteral("Pr/Ph")})
                    .value(QStringLiteral("items"))
                    .toArray()
                    .size()
                >= 1);
    }

    void additionsGoToTheUserDatabaseAndTheMergedOne()
    {
        QJsonObject added = json(m_dir, {QStringLiteral("add-compound"), QStringLiteral("Lycopane"), QStringLiteral("--formula"),
                                         QStringLiteral("C40H82"), QStringLiteral("--cas"), QStringLiteral("45316-02-8")});
        const QString compound = added.value(QStringLiteral("key")).toString();
        QVERIFY(!compound.isEmpty());
        added = json(m_dir, {QStringLiteral("add-ion"), QStringLiteral("m/z 183"), QStringLiteral("183")});
        const QString ion = added.value(QStringLiteral("key")).toString();
        QVERIFY(!ion.isEmpty());
        QVERIFY(!json(m_dir, {QStringLiteral("add-joint"), compound, ion}).value(QStringLiteral("key")).toString().isEmpty());
        QVERIFY(!json(m_dir, {QStringLiteral("add-parameter"), QStringLiteral("U001"), QStringLiteral("Lycopane/n-C31")})
                     .value(QStringLiteral("key"))
                     .toString()
                     .isEmpty());

        QVERIFY(keys(json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds"), QStringLiteral("--db"), QStringLiteral("user")}))
                    .contains(compound));
        QCOMPARE(json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds"), QStringLiteral("--search"),
                              QStringLiteral("lycopane")})
                     .value(QStringLiteral("items"))
                     .toArray()
                     .size(),
                 1);
        QVERIFY(json(m_dir, {QStringLiteral("merge"), QStringLiteral("--check")}).value(QStringLiteral("current")).toBool());

        // Aliases of the user's compound, by vendor.
        QCOMPARE(ref(m_dir, {QStringLiteral("alias"), QStringLiteral("add"), compound, QStringLiteral("masterName"),
                             QStringLiteral("VendorZ"), QStringLiteral("Perhydrolycopene")})
                     .exitCode,
                 0);
        QVERIFY(json(m_dir, {QStringLiteral("alias"), QStringLiteral("vendors")})
                    .value(QStringLiteral("vendors"))
                    .toArray()
                    .contains(QStringLiteral("VendorZ")));
        QCOMPARE(ref(m_dir, {QStringLiteral("alias"), QStringLiteral("update"), compound, QStringLiteral("masterName"),
                             QStringLiteral("VendorZ"), QStringLiteral("Lycopane (C40)")})
                     .exitCode,
                 0);
        // The merged copy carries the user's compound with its alias as updated.
        const QJsonObject shown = json(m_dir, {QStringLiteral("show"), compound});
        QCOMPARE(shown.value(QStringLiteral("properties")).toObject().value(QStringLiteral("CAS")).toString(),
                 QStringLiteral("45316-02-8"));
        const QJsonArray aliases = shown.value(QStringLiteral("aliases")).toArray();
        QCOMPARE(aliases.size(), 1);
        QCOMPARE(aliases.at(0).toObject().value(QStringLiteral("value")).toString(), QStringLiteral("Lycopane (C40)"));
        QCOMPARE(ref(m_dir, {QStringLiteral("alias"), QStringLiteral("delete-vendor"), QStringLiteral("VendorZ")}).exitCode, 0);
        QVERIFY(!json(m_dir, {QStringLiteral("alias"), QStringLiteral("vendors"), QStringLiteral("--db"), QStringLiteral("user")})
                     .value(QStringLiteral("vendors"))
                     .toArray()
                     .contains(QStringLiteral("VendorZ")));
    }

    void aStaleMergedDatabaseIsToldAndRebuilt()
    {
        // A merged file that is another database (its stamp is not the two
        // sources' serials) lacks the delivered content.
        const QString merged = m_dir + QStringLiteral("/tovi-merged.sqlite");
        QVERIFY(QFile::remove(merged));
        QVERIFY(QFile::copy(m_dir + QStringLiteral("/tovi-user.sqlite"), merged));
        const VndbResult stale = ref(m_dir, {QStringLiteral("merge"), QStringLiteral("--check")});
        QCOMPARE(stale.exitCode, 1);
        QVERIFY2(stale.err.contains(QLatin1String("lacks")), qPrintable(stale.err));
        QVERIFY(!json(m_dir, {QStringLiteral("merge")}).value(QStringLiteral("merged")).toString().isEmpty());
        QVERIFY(json(m_dir, {QStringLiteral("merge"), QStringLiteral("--check")}).value(QStringLiteral("current")).toBool());
        QVERIFY(json(m_dir, {QStringLiteral("list"), QStringLiteral("compounds")}).value(QStringLiteral("total")).toInt() > 90);
    }

    void refusalsChangeNothing_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("existing compound") << QStringList{QStringLiteral("add-compound"), QStringLiteral("n-Decane")}
                                           << QStringLiteral("exists already") << QStringLiteral("existe déjà");
        QTest::newRow("existing key") << QStringList{QStringLiteral("add-compound"), QStringLiteral("Decane again"),
                                                     QStringLiteral("--key"), QStringLiteral("nC10")}
                                      << QStringLiteral("'nC10' exists already") << QStringLiteral("'nC10' existe déjà");
        QTest::newRow("key of two keys") << QStringList{QStringLiteral("add-compound"), QStringLiteral("Lycopene"), QStringLiteral("--key"),
                                                        QStringLiteral("a;b")}
                                         << QStringLiteral("is not a compound key") << QStringLiteral("n'est pas une clé de composé");
        QTest::newRow("delivered is read-only") << QStringList{QStringLiteral("add-ion"), QStringLiteral("m/z 999"), QStringLiteral("999"),
                                                              QStringLiteral("--db"), QStringLiteral("delivered")}
                                                << QStringLiteral("cannot be changed") << QStringLiteral("ne peut pas être modifiée");
        QTest::newRow("not a mass") << QStringList{QStringLiteral("add-ion"), QStringLiteral("m/z x"), QStringLiteral("x")}
                                    << QStringLiteral("is not a mass") << QStringLiteral("n'est pas une masse");
        QTest::newRow("joint of unknown compound") << QStringList{QStringLiteral("add-joint"), QStringLiteral("nothing"), QStringLiteral("m/z 57")}
                                                   << QStringLiteral("is not in the user database")
                                                   << QStringLiteral("n'est pas dans la base utilisateur");
        QTest::newRow("unknown object") << QStringList{QStringLiteral("show"), QStringLiteral("nothing")}
                                        << QStringLiteral("no object 'nothing'") << QStringLiteral("aucun objet 'nothing'");
        QTest::newRow("alias of unknown object") << QStringList{QStringLiteral("alias"), QStringLiteral("add"), QStringLiteral("nothing"),
                                                                QStringLiteral("masterName"), QStringLiteral("V"), QStringLiteral("x")}
                                                 << QStringLiteral("no object 'nothing'") << QStringLiteral("aucun objet 'nothing'");
        QTest::newRow("unknown vendor") << QStringList{QStringLiteral("alias"), QStringLiteral("delete-vendor"), QStringLiteral("Nobody")}
                                        << QStringLiteral("no alias of vendor 'Nobody'") << QStringLiteral("aucun alias du fournisseur 'Nobody'");
    }

    void refusalsChangeNothing()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const auto before = VndbRunner::snapshot(m_dir);
        for (const auto& language : {qMakePair(QStringLiteral("en"), english), qMakePair(QStringLiteral("fr"), french)}) {
            const VndbResult result = ref(m_dir, words + QStringList{QStringLiteral("--lang"), language.first});
            QVERIFY(!result.crashed);
            QCOMPARE(result.exitCode, 1);
            QCOMPARE(result.errLines().size(), 1);
            QVERIFY2(result.err.contains(language.second), qPrintable(result.err));
            QCOMPARE(VndbRunner::snapshot(m_dir), before);
        }
    }

    void missingFolderIsRefusedAndNotMade()
    {
        const QString absent = m_tmp.filePath(QStringLiteral("absent"));
        const VndbResult result = ref(absent, {QStringLiteral("list"), QStringLiteral("compounds")});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.err.contains(QLatin1String("does not exist")));
        QVERIFY(!QFileInfo::exists(absent));
        const QString empty = m_tmp.filePath(QStringLiteral("empty"));
        QVERIFY(QDir().mkpath(empty));
        QCOMPARE(ref(empty, {QStringLiteral("merge")}).exitCode, 1);
        QVERIFY(QDir(empty).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestVndbRef)
#include "tst_vndb_ref.moc"
