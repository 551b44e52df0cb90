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
    return VndbRunner::run(QStringList{"ref"} + words + QStringList{"--dir", dir});
}

// The JSON answer of a command that must succeed; empty (with its error
// printed) when it did not.
QJsonObject json(const QString& dir, const QStringList& words)
{
    const VndbResult result = ref(dir, words + QStringList{"--json"});
    if (result.exitCode != 0)
        qWarning("vndb ref %s failed: %s", qPrintable(words.join(' ')), qPrintable(result.err));
    return result.exitCode == 0 ? QJsonDocument::fromJson(result.out.toUtf8()).object() : QJsonObject();
}

QStringList keys(const QJsonObject& list)
{
    QStringList found;
    for (const QJsonValue& item : list.value("items").toArray())
        found << item.toObject().value("key").toString();
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
        m_dir = m_tmp.filePath("reference");
        const VndbResult init = ref(m_dir, {"init"});
        QVERIFY2(init.exitCode == 0, qPrintable(init.err));
        for (const char* file : {"tovi-delivered.sqlite", "tovi-user.sqlite", "tovi-merged.sqlite"})
            QVERIFY(QFileInfo(m_dir + QLatin1Char('/') + QLatin1String(file)).isFile());
        const VndbResult again = ref(m_dir, {"init"});
        QCOMPARE(again.exitCode, 0);
        QVERIFY2(again.out.contains("delivered: kept"), qPrintable(again.out));
    }

    // An answer that failed is empty: every check below then fails.
    void listsSearchesAndFilters()
    {
        const int total = json(m_dir, {"list", "compounds"}).value("total").toInt();
        QVERIFY(total > 50);
        QCOMPARE(json(m_dir, {"list", "compounds", "--db", "delivered"}).value("total").toInt(), total);
        const QJsonObject user = json(m_dir, {"list", "compounds", "--db", "user"});
        QVERIFY(!user.isEmpty());
        QVERIFY(user.value("items").toArray().size() <= 1);

        QVERIFY(!json(m_dir, {"list", "compounds", "--search", "PRISTANE"}).value("items").toArray().isEmpty());
        const QJsonObject byCas = json(m_dir, {"list", "compounds", "--filter", "CAS=1921-70-6"});
        QCOMPARE(byCas.value("items").toArray().size(), 1);
        const QJsonObject shown = json(m_dir, {"show", keys(byCas).value(0)});
        QCOMPARE(shown.value("kind").toString(), "compound");
        QCOMPARE(shown.value("properties").toObject().value("formula").toString(), "C19H40");

        QVERIFY(json(m_dir, {"list", "ions"}).value("total").toInt() > 5);
        QVERIFY(json(m_dir, {"list", "parameters", "--search", "Pr/Ph"}).value("items").toArray().size() >= 1);
    }

    void additionsGoToTheUserDatabaseAndTheMergedOne()
    {
        const QString compound = json(m_dir, {"add-compound", "Lycopane", "--formula", "C40H82", "--cas", "45316-02-8"})
                                     .value("key")
                                     .toString();
        QVERIFY(!compound.isEmpty());
        const QString ion = json(m_dir, {"add-ion", "m/z 183", "183"}).value("key").toString();
        QVERIFY(!ion.isEmpty());
        QVERIFY(!json(m_dir, {"add-joint", compound, ion}).value("key").toString().isEmpty());
        QVERIFY(!json(m_dir, {"add-parameter", "U001", "Lycopane/n-C31"}).value("key").toString().isEmpty());

        QVERIFY(keys(json(m_dir, {"list", "compounds", "--db", "user"})).contains(compound));
        QCOMPARE(json(m_dir, {"list", "compounds", "--search", "lycopane"}).value("items").toArray().size(), 1);
        QVERIFY(json(m_dir, {"merge", "--check"}).value("current").toBool());

        // Aliases of the user's compound, by vendor.
        QCOMPARE(ref(m_dir, {"alias", "add", compound, "masterName", "VendorZ", "Perhydrolycopene"}).exitCode, 0);
        QVERIFY(json(m_dir, {"alias", "vendors"}).value("vendors").toArray().contains("VendorZ"));
        QCOMPARE(ref(m_dir, {"alias", "update", compound, "masterName", "VendorZ", "Lycopane (C40)"}).exitCode, 0);
        // The merged copy carries the user's compound with its alias as updated.
        const QJsonObject shown = json(m_dir, {"show", compound});
        QCOMPARE(shown.value("properties").toObject().value("CAS").toString(), "45316-02-8");
        const QJsonArray aliases = shown.value("aliases").toArray();
        QCOMPARE(aliases.size(), 1);
        QCOMPARE(aliases.at(0).toObject().value("value").toString(), "Lycopane (C40)");
        QCOMPARE(ref(m_dir, {"alias", "delete-vendor", "VendorZ"}).exitCode, 0);
        QVERIFY(!json(m_dir, {"alias", "vendors", "--db", "user"}).value("vendors").toArray().contains("VendorZ"));
    }

    void aStaleMergedDatabaseIsToldAndRebuilt()
    {
        // A merged file that is another database (its stamp is not the two
        // sources' serials) lacks the delivered content.
        const QString merged = m_dir + "/tovi-merged.sqlite";
        QVERIFY(QFile::remove(merged));
        QVERIFY(QFile::copy(m_dir + "/tovi-user.sqlite", merged));
        const VndbResult stale = ref(m_dir, {"merge", "--check"});
        QCOMPARE(stale.exitCode, 1);
        QVERIFY2(stale.err.contains("lacks"), qPrintable(stale.err));
        QVERIFY(!json(m_dir, {"merge"}).value("merged").toString().isEmpty());
        QVERIFY(json(m_dir, {"merge", "--check"}).value("current").toBool());
        QVERIFY(json(m_dir, {"list", "compounds"}).value("total").toInt() > 90);
    }

    void refusalsChangeNothing_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("french");
        QTest::newRow("existing compound") << QStringList{"add-compound", "n-Decane"} << "exists already"
                                           << "existe déjà";
        QTest::newRow("existing key") << QStringList{"add-compound", "Decane again", "--key", "nC10"}
                                      << "'nC10' exists already"
                                      << "'nC10' existe déjà";
        QTest::newRow("key of two keys") << QStringList{"add-compound", "Lycopene", "--key", "a;b"}
                                         << "is not a compound key"
                                         << "n'est pas une clé de composé";
        QTest::newRow("delivered is read-only")
            << QStringList{"add-ion", "m/z 999", "999", "--db", "delivered"} << "cannot be changed"
            << "ne peut pas être modifiée";
        QTest::newRow("not a mass") << QStringList{"add-ion", "m/z x", "x"} << "is not a mass"
                                    << "n'est pas une masse";
        QTest::newRow("joint of unknown compound")
            << QStringList{"add-joint", "nothing", "m/z 57"} << "is not in the user database"
            << "n'est pas dans la base utilisateur";
        QTest::newRow("unknown object") << QStringList{"show", "nothing"} << "no object 'nothing'"
                                        << "aucun objet 'nothing'";
        QTest::newRow("alias of unknown object")
            << QStringList{"alias", "add", "nothing", "masterName", "V", "x"} << "no object 'nothing'"
            << "aucun objet 'nothing'";
        QTest::newRow("unknown vendor") << QStringList{"alias", "delete-vendor", "Nobody"}
                                        << "no alias of vendor 'Nobody'"
                                        << "aucun alias du fournisseur 'Nobody'";
    }

    void refusalsChangeNothing()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, english);
        QFETCH(QString, french);
        const auto before = VndbRunner::snapshot(m_dir);
        for (const auto& language : {qMakePair(QString("en"), english), qMakePair(QString("fr"), french)}) {
            const VndbResult result = ref(m_dir, words + QStringList{"--lang", language.first});
            VNDB_REFUSED(result, 1, language.second);
            QCOMPARE(VndbRunner::snapshot(m_dir), before);
        }
    }

    void aFilterWithoutAValueIsAUsageError()
    {
        const auto before = VndbRunner::snapshot(m_dir);
        const VndbResult result = ref(m_dir, {"list", "compounds", "--filter", "CAS"});
        VNDB_REFUSED(result, 2, "--filter 'CAS' is not KEY=VALUE");
        QCOMPARE(VndbRunner::snapshot(m_dir), before);
    }

    void missingFolderIsRefusedAndNotMade()
    {
        const QString absent = m_tmp.filePath("absent");
        const VndbResult result = ref(absent, {"list", "compounds"});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.err.contains("does not exist"));
        QVERIFY(!QFileInfo::exists(absent));
        const QString empty = m_tmp.filePath("empty");
        QVERIFY(QDir().mkpath(empty));
        QCOMPARE(ref(empty, {"merge"}).exitCode, 1);
        QVERIFY(QDir(empty).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestVndbRef)
#include "tst_vndb_ref.moc"
