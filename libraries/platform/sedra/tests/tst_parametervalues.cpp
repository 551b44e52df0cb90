// Parameter values stored per analysis in the project header: read back after
// reopening, replaced whole, gone with their analysis, refused (and said) in a
// read-only project with nothing changed on disk, and a header of the previous
// schema gaining the table when it is opened for writing.

#include "sedra_testproject.h"

#include <tparametervalue.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <vnobject2analysis.h>

#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using namespace Sedra;

namespace {

TParameterValueRow withValue(const QString& key, const QString& name, double value)
{
    TParameterValueRow row;
    row.parameter = key;
    row.name = name;
    row.hasValue = true;
    row.value = value;
    return row;
}

TParameterValueRow without(const QString& key, const QString& name, const QString& reason)
{
    TParameterValueRow row;
    row.parameter = key;
    row.name = name;
    row.reason = reason;
    return row;
}

const QList<TParameterValueRow> Values{withValue("R008", "Ts/(Ts+Tm)", 0.25), withValue("R001", "Pr/Ph", 1.0 / 3.0),
                                       without("R005", "CPI", "no value for nC33"),
                                       withValue("R002", "Pr/n-C17", std::numeric_limits<double>::max()),
                                       withValue("R003", "Ph/n-C18", -0.0)};

const VNObject2Analysis* analysis(const TestProject& p, const QString& name)
{
    return static_cast<const VNObject2Analysis*>(p.analyses()->get(name));
}

} // namespace

class TestParameterValues : public QObject
{
    Q_OBJECT

private slots:
    void init() { TTranslator::install(QStringLiteral("en")); }

    void readBackAfterReopening()
    {
        QTemporaryDir dir;
        {
            TestProject p(dir.path());
            QVERIFY(p.analyses()->createAnalysis("Oil 1") && p.analyses()->createAnalysis("Oil 2"));
            QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 1"), Values));
            QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 2"), Values.mid(0, 1)));
            QCOMPARE(p.db->parameterValues(analysis(p, "Oil 1")), Values);
        }
        TestProject p(dir.path());
        QCOMPARE(p.db->parameterValues(analysis(p, "Oil 1")), Values); // in the order saved
        QCOMPARE(p.db->parameterValues(analysis(p, "Oil 2")), Values.mid(0, 1));
        // A new computation replaces the old values whole.
        QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 1"), Values.mid(2, 2)));
        QCOMPARE(p.db->parameterValues(analysis(p, "Oil 1")), Values.mid(2, 2));
        QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 2"), {}));
        QVERIFY(p.db->parameterValues(analysis(p, "Oil 2")).isEmpty());
        // A value's reason is not kept beside a value.
        TParameterValueRow both = withValue("R009", "Ts/Tm", 2.0);
        both.reason = "ignored";
        QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 2"), {both}));
        QVERIFY(p.db->parameterValues(analysis(p, "Oil 2")).first().reason.isEmpty());
    }

    void valuesGoWithTheirAnalysis()
    {
        QTemporaryDir dir;
        TestProject p(dir.path());
        QVERIFY(p.analyses()->createAnalysis("Oil 1") && p.analyses()->createAnalysis("Oil 2"));
        QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 1"), Values));
        QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 2"), Values));
        QVERIFY(p.db->removeObject(analysis(p, "Oil 1"), true));
        QCOMPARE(runSql(p.headerFile(), {"SELECT count(*) FROM parameter_values"}).toInt(), Values.size());
        QCOMPARE(p.db->parameterValues(analysis(p, "Oil 2")), Values);
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("message");
        QTest::newRow("en") << "en"
                            << "Impossible to modify a <b>read only</b> database";
        QTest::newRow("fr") << "fr"
                            << "Impossible de modifier une base de données en <b>lecture seule</b>";
    }

    void refusals()
    {
        QFETCH(QString, language);
        QFETCH(QString, message);
        QTemporaryDir dir;
        QTemporaryDir otherDir;
        {
            TestProject p(dir.path());
            QVERIFY(p.analyses()->createAnalysis("Oil 1"));
            QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 1"), Values.mid(0, 2)));
        }
        const auto before = folderPicture(dir.path());
        TTranslator::install(language);
        {
            TestProject p(dir.path(), true);
            TRecordingLogger log;
            QVERIFY(!p.db->parameterValuesSave(analysis(p, "Oil 1"), Values));
            QCOMPARE(log.messages(MessageLoggerInterface::LevelWarning), QStringList{message});
            QCOMPARE(p.db->parameterValues(analysis(p, "Oil 1")), Values.mid(0, 2));
        }
        QCOMPARE(folderPicture(dir.path()), before);
        TestProject p(dir.path());
        TestProject other(otherDir.path());
        QVERIFY(other.analyses()->createAnalysis("Oil 1"));
        QVERIFY(!p.db->parameterValuesSave(analysis(other, "Oil 1"), Values)); // not one of ours
        QVERIFY(!p.db->parameterValuesSave(nullptr, Values));
        QVERIFY(p.db->parameterValues(analysis(other, "Oil 1")).isEmpty());
        QCOMPARE(p.db->parameterValues(analysis(p, "Oil 1")), Values.mid(0, 2));
    }

    void aHeaderOfThePreviousSchemaGainsTheTable()
    {
        QTemporaryDir dir;
        QString file;
        {
            TestProject p(dir.path());
            QVERIFY(p.analyses()->createAnalysis("Oil 1"));
            file = p.headerFile();
        }
        QVERIFY(
            runSql(file, {"DROP TABLE parameter_values", "UPDATE meta SET value = '2' WHERE name = 'schema_version'"})
                .isValid());
        const auto before = folderPicture(dir.path());
        {
            // Read-only: read as it is, no values and nothing written.
            TestProject p(dir.path(), true);
            QVERIFY(p.opened);
            QVERIFY(p.db->parameterValues(analysis(p, "Oil 1")).isEmpty());
        }
        QCOMPARE(folderPicture(dir.path()), before);
        {
            TestProject p(dir.path());
            QVERIFY(p.opened);
            QVERIFY(p.db->parameterValuesSave(analysis(p, "Oil 1"), Values));
        }
        QCOMPARE(runSql(file, {"SELECT value FROM meta WHERE name = 'schema_version'"}).toString(), "3");
        TestProject p(dir.path());
        QCOMPARE(p.db->parameterValues(analysis(p, "Oil 1")), Values);
    }
};

QTEST_GUILESS_MAIN(TestParameterValues)
#include "tst_parametervalues.moc"
