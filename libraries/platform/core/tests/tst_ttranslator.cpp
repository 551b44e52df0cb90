#include <tapplicationdata.h>
#include <ttranslator.h>

#include <QCoreApplication>
#include <QtTest>

namespace {

QString hello()
{
    return QCoreApplication::translate("VNDatabaseTovi", "Loading database...", "Chargement de la base de données...");
}

} // namespace

class TestTranslator : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { TTranslator::install(QStringLiteral("en")); }

    void englishIsTheSource()
    {
        QCOMPARE(TTranslator::currentLanguage(), QStringLiteral("en"));
        QCOMPARE(hello(), QStringLiteral("Loading database..."));
        TTranslator::install(QStringLiteral("en"));
        QCOMPARE(hello(), QStringLiteral("Loading database..."));
    }

    void frenchIsTheDisambiguation()
    {
        TTranslator::install(QStringLiteral("fr"));
        QCOMPARE(TTranslator::currentLanguage(), QStringLiteral("fr"));
        QCOMPARE(hello(), QStringLiteral("Chargement de la base de données..."));
        QCOMPARE(QCoreApplication::translate("SedraTr", "Read-only database", "Base de données en lecture seule"),
                 QStringLiteral("Base de données en lecture seule"));
        // %n is still replaced in the French text.
        QCOMPARE(QCoreApplication::translate("VNDatabase", "%n file(s)", "%n fichier(s)", 3),
                 QStringLiteral("3 fichier(s)"));
        // Texts without a French form fall back to the English source.
        QCOMPARE(QCoreApplication::translate("VNDatabase", "Untranslated"), QStringLiteral("Untranslated"));
        QCOMPARE(QCoreApplication::translate("VNDatabase", "Untranslated", ""), QStringLiteral("Untranslated"));
        // Qt's own contexts use disambiguations that are not French texts.
        QCOMPARE(QCoreApplication::translate("QLineEdit", "&Undo", "edit action"), QStringLiteral("&Undo"));
    }

    void languageNames_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("french");
        QTest::newRow("fr") << QStringLiteral("fr") << true;
        QTest::newRow("FR") << QStringLiteral("FR") << true;
        QTest::newRow("fr_CA") << QStringLiteral("fr_CA") << true;
        QTest::newRow("en_GB") << QStringLiteral("en_GB") << false;
        QTest::newRow("de") << QStringLiteral("de") << false;
        QTest::newRow("empty") << QString() << false;
    }

    void languageNames()
    {
        QFETCH(QString, language);
        QFETCH(bool, french);
        TTranslator::install(language);
        QCOMPARE(hello() == QStringLiteral("Chargement de la base de données..."), french);
        TTranslator translator(language);
        QCOMPARE(translator.isFrench(), french);
        QVERIFY(!translator.isEmpty());
    }

    // Switching back and forth keeps one translator: the last one decides.
    void switchingReplacesTheTranslator()
    {
        TApplicationData data;
        TTranslator::install(QStringLiteral("fr"));
        QCOMPARE(data.language(), QStringLiteral("fr"));
        TTranslator::install(QStringLiteral("en"));
        QCOMPARE(data.language(), QStringLiteral("en"));
        QCOMPARE(hello(), QStringLiteral("Loading database..."));
        for (int i = 0; i < 5; ++i)
            TTranslator::install(QStringLiteral("fr"));
        QCOMPARE(hello(), QStringLiteral("Chargement de la base de données..."));
        QCOMPARE(QCoreApplication::instance()->findChildren<TTranslator*>().size(), 1);
    }

    void directCalls()
    {
        const TTranslator french(QStringLiteral("fr"));
        QCOMPARE(french.translate("Ctx", "Yes", "Oui"), QStringLiteral("Oui"));
        QVERIFY(french.translate("Ctx", "Yes", nullptr).isNull());
        QVERIFY(french.translate("QDialog", "Yes", "Oui").isNull());
        QCOMPARE(french.translate(nullptr, "Yes", "Oui"), QStringLiteral("Oui"));
        QCOMPARE(french.translate("Q", "Yes", "Oui"), QStringLiteral("Oui"));
        const TTranslator english(QStringLiteral("en"));
        QVERIFY(english.translate("Ctx", "Yes", "Oui").isNull());
    }
};

QTEST_GUILESS_MAIN(TestTranslator)
#include "tst_ttranslator.moc"
