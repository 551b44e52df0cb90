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
    void cleanup() { TTranslator::install("en"); }

    void englishIsTheSource()
    {
        QCOMPARE(TTranslator::currentLanguage(), "en");
        QCOMPARE(hello(), "Loading database...");
    }

    void frenchIsTheDisambiguation()
    {
        TTranslator::install("fr");
        QCOMPARE(TTranslator::currentLanguage(), "fr");
        QCOMPARE(hello(), "Chargement de la base de données...");
        QCOMPARE(QCoreApplication::translate("SedraTr", "Read-only database", "Base de données en lecture seule"),
                 "Base de données en lecture seule");
        // %n is still replaced in the French text.
        QCOMPARE(QCoreApplication::translate("VNDatabase", "%n file(s)", "%n fichier(s)", 3), "3 fichier(s)");
        // Texts without a French form fall back to the English source.
        QCOMPARE(QCoreApplication::translate("VNDatabase", "Untranslated"), "Untranslated");
        QCOMPARE(QCoreApplication::translate("VNDatabase", "Untranslated", ""), "Untranslated");
        // Qt's own contexts use disambiguations that are not French texts.
        QCOMPARE(QCoreApplication::translate("QLineEdit", "&Undo", "edit action"), "&Undo");
    }

    void languageNames_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("french");
        QTest::newRow("fr") << "fr" << true;
        QTest::newRow("FR") << "FR" << true;
        QTest::newRow("fr_CA") << "fr_CA" << true;
        QTest::newRow("en_GB") << "en_GB" << false;
        QTest::newRow("de") << "de" << false;
        QTest::newRow("empty") << QString() << false;
    }

    void languageNames()
    {
        QFETCH(QString, language);
        QFETCH(bool, french);
        TTranslator::install(language);
        QCOMPARE(hello() == "Chargement de la base de données...", french);
        TTranslator translator(language);
        QCOMPARE(translator.isFrench(), french);
        QVERIFY(!translator.isEmpty());
    }

    // Switching back and forth keeps one translator: the last one decides.
    void switchingReplacesTheTranslator()
    {
        TApplicationData data;
        TTranslator::install("fr");
        QCOMPARE(data.language(), "fr");
        TTranslator::install("en");
        QCOMPARE(data.language(), "en");
        QCOMPARE(hello(), "Loading database...");
        for (int i = 0; i < 5; ++i)
            TTranslator::install("fr");
        QCOMPARE(hello(), "Chargement de la base de données...");
        QCOMPARE(QCoreApplication::instance()->findChildren<TTranslator*>().size(), 1);
    }

    void directCalls()
    {
        const TTranslator french("fr");
        QCOMPARE(french.translate("Ctx", "Yes", "Oui"), "Oui");
        QVERIFY(french.translate("Ctx", "Yes", nullptr).isNull());
        QVERIFY(french.translate("QDialog", "Yes", "Oui").isNull());
        QCOMPARE(french.translate(nullptr, "Yes", "Oui"), "Oui");
        QCOMPARE(french.translate("Q", "Yes", "Oui"), "Oui");
        const TTranslator english("en");
        QVERIFY(english.translate("Ctx", "Yes", "Oui").isNull());
    }
};

QTEST_GUILESS_MAIN(TestTranslator)
#include "tst_ttranslator.moc"
