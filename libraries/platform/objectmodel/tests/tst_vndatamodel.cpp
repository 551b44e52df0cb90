#include <vndatamodel.h>

#include <ttranslator.h>

#include "tst_shapespies.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return path;
}

QStringList rowNames(const QAbstractItemModel& model)
{
    QStringList names;
    for (int r = 0; r < model.rowCount(); ++r)
        names << model.headerData(r, Qt::Vertical, VNDataModel::HeaderTextRole).toString();
    return names;
}

} // namespace

class TestVNDataModel : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void fillingIsAFullReset()
    {
        VNDataModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        ShapeSpies spies(&model);
        QVERIFY(!model.isValid());

        QVERIFY(model.setHeadersData({"Pr/Ph", "Ts/(Ts+Tm)"}, {"Well A 1520 m", "Well A 1610 m", "Well B"}));
        QVERIFY(model.isValid());
        QCOMPARE(model.columnCount(), 2);
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Ts/(Ts+Tm)"));
        QVERIFY(!model.data(0, 0).isValid());

        QSignalSpy headers(&model, &QAbstractItemModel::headerDataChanged);
        QVERIFY(model.renameRow(2, QStringLiteral("Well B 980 m")));
        QVERIFY(model.renameColumn(0, QStringLiteral("Pristane/Phytane")));
        QVERIFY(!model.renameRow(3, QStringLiteral("none")));
        QVERIFY(!model.renameRow(-1, QStringLiteral("none")));
        QVERIFY(!model.renameColumn(2, QStringLiteral("none")));
        QCOMPARE(headers.count(), 2);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Pristane/Phytane"));

        QVERIFY(model.insertRows(1, 2));
        QCOMPARE(rowNames(model), QStringList({"Well A 1520 m", "", "", "Well A 1610 m", "Well B 980 m"}));
        QVERIFY(!model.insertRows(6, 1));
        QVERIFY(!model.insertRows(0, 0));
        QList<int> remove{2, 1, 2};
        QVERIFY(model.removeRows(remove));
        QCOMPARE(remove, QList<int>({1, 2}));
        QList<int> outside{0, 3};
        QVERIFY(!model.removeRows(outside));
        QCOMPARE(model.rowCount(), 3);
        QVERIFY(model.removeRows(0, 1));
        QVERIFY(!model.removeRows(1, 5));

        model.clear();
        QCOMPARE(model.columnCount(), 0);
        QCOMPARE(spies.partial(), 0);
        QCOMPARE(spies.resets(), 5);
    }

    void shapesBeyondTheLimitsAreRefused()
    {
        VNDataModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(model.setHeadersData({"a"}, {"1"}));
        ShapeSpies spies(&model);
        QStringList tooWide;
        for (int i = 0; i <= VNDataModel::kMaxColumns; ++i)
            tooWide << QString::number(i);
        QVERIFY(!model.setHeadersData(tooWide, {"1"}));
        QCOMPARE(model.columnCount(), 1);
        QCOMPARE(spies.resets(), 0);
        QVERIFY(!model.insertRows(0, VNDataModel::kMaxRows));
        QVERIFY(!model.insertRows(0, -4));
        QCOMPARE(model.rowCount(), 1);
    }

    void editsAndReadOnly()
    {
        VNDataModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(model.setHeadersData({"CPI", "OEP"}, {"S1", "S2"}));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QVERIFY(model.setData(1, 0, 1.12));
        QCOMPARE(model.data(1, 0).toDouble(), 1.12);
        QVERIFY(!model.setData(2, 0, 3.0));
        QVERIFY(!model.setData(0, -1, 3.0));
        QVERIFY(!model.setData(model.index(0, 0), 3.0, Qt::ToolTipRole));
        QVERIFY(!model.index(0, 0, model.index(0, 0)).isValid());
        QCOMPARE(changed.count(), 1);

        model.setReadOnly(true);
        QVERIFY(!model.flags(model.index(0, 0)).testFlag(Qt::ItemIsEditable));
        QVERIFY(!model.setData(0, 0, 9.0));
        QVERIFY(!model.setHeaderData(0, Qt::Horizontal, QStringLiteral("x")));
        QVERIFY(!model.insertRows(0, 1));
        QList<int> rows{0};
        QVERIFY(!model.removeRows(rows));
        QCOMPARE(model.paste(model.index(0, 0), QStringLiteral("1\t2"), true), QStringList({"1", "2"}));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(model.data(1, 0).toDouble(), 1.12);
    }

    void pasteWithinAndBeyond()
    {
        VNDataModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(model.setHeadersData({"a", "b"}, {"1", "2"}));
        ShapeSpies spies(&model);
        // Windows line ends and a final line break are what spreadsheets copy.
        QCOMPARE(model.paste(model.index(1, 1), QStringLiteral("x\ty\r\nz\r\n"), false), QStringList({"y", "z"}));
        QCOMPARE(model.data(1, 1).toString(), QStringLiteral("x"));
        QCOMPARE(spies.resets(), 0);

        QVERIFY(model.paste(model.index(1, 1), QStringLiteral("x\ty\nz"), true).isEmpty());
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(model.data(1, 2).toString(), QStringLiteral("y"));
        QCOMPARE(model.data(2, 1).toString(), QStringLiteral("z"));
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("a"));
        QCOMPARE(spies.resets(), 1);
        QCOMPARE(spies.partial(), 0);
    }

    void openReadsTablesAndRefusesDamagedOnes_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("en") << QStringLiteral("en");
        QTest::newRow("fr") << QStringLiteral("fr");
    }

    void openReadsTablesAndRefusesDamagedOnes()
    {
        QFETCH(QString, language);
        TTranslator::install(language);
        const bool french = language == QLatin1String("fr");
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        VNDataModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);

        const QString tabs = writeFile(dir, "tabs.txt", "\tPr/Ph\tCPI\r\nS1\t1.8\t1.05\r\nS2\t0.6\n");
        QVERIFY(model.open(tabs));
        QCOMPARE(rowNames(model), QStringList({"S1", "S2"}));
        QCOMPARE(model.data(0, 1).toString(), QStringLiteral("1.05"));
        QVERIFY(!model.data(1, 1).isValid());

        const QString semicolons = writeFile(dir, "semi.csv", ";Ts/(Ts+Tm)\nSample \xc3\xa9t\xc3\xa9;0.52\n");
        QVERIFY(model.open(semicolons));
        QCOMPARE(model.headerData(0, Qt::Vertical).toString(), QStringLiteral("Sample été"));

        ShapeSpies spies(&model);
        const QString ragged = writeFile(dir, "ragged.txt", "\ta\nS1\t1\t2\t3\n");
        QVERIFY(!model.open(ragged));
        QVERIFY(
            model.errorString().contains(french ? QStringLiteral("plus de valeurs") : QStringLiteral("more values")));
        QVERIFY(!model.open(dir.filePath("missing.txt")));
        QVERIFY(model.errorString().startsWith(french ? QStringLiteral("Impossible de lire")
                                                      : QStringLiteral("Cannot read")));
        QVERIFY(!model.open(writeFile(dir, "empty.txt", "\n\n")));
        QVERIFY(!model.open(dir.path()));
        QCOMPARE(spies.resets(), 0);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Ts/(Ts+Tm)"));
    }
};

QTEST_MAIN(TestVNDataModel)
#include "tst_vndatamodel.moc"
