#include "filesizelimit.h"
#include <testfiles.h>

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <txmlmethod.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

namespace {

QDomDocument documentWithRoot(const QString& tag, QDomElement* root)
{
    QDomDocument document;
    *root = document.createElement(tag);
    document.appendChild(*root);
    return document;
}

} // namespace

class TestXMLMethod : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        TTranslator::install("en");
    }

    // addToElement replaces a key's element where it stands; createChildElement appends.
    void buildingElements()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot("root", &root);
        QVERIFY(TXMLMethod::addToElement(root, "Title", "old"));
        const QDomElement first = TXMLMethod::createChildElement(root, "axis");
        const QDomElement second = TXMLMethod::createChildElement(root, "axis");
        QVERIFY(TXMLMethod::addToElement(root, "Title", "new"));
        QCOMPARE(root.firstChildElement().text(), "new");
        QCOMPARE(root.firstChildElement().nextSiblingElement(), first);
        QCOMPARE(first.nextSiblingElement(), second);
        QCOMPARE(first.ownerDocument(), document);
        QCOMPARE(root.childNodes().size(), 3);

        QDomElement none;
        QVERIFY(TXMLMethod::createChildElement(none, "axis").isNull());
        QVERIFY(TXMLMethod::createChildElement(root, QString()).isNull());
        QVERIFY(!TXMLMethod::addToElement(QDomElement(), "Title", "v"));
        QVERIFY(!TXMLMethod::addToElement(root, QString(), "v"));
        // Keys that are not XML names would make the saved file unreadable.
        for (const QString bad : {"two words", "1st", "a<b", "-dash", "x&y"})
            QVERIFY2(!TXMLMethod::addToElement(root, bad, "v"), qPrintable(bad));
        QCOMPARE(root.childNodes().size(), 3);
        for (const QString good : {"Compound_ID", "_x.y-z", "Étiquette", "a1"})
            QVERIFY2(TXMLMethod::addToElement(root, good, "v"), qPrintable(good));
    }

    void keyedValuesRoundTrip_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");
        for (const QString value :
             {"Pristane/Phytane", "a < b && c > \"d\" 'e' ]]> <![CDATA[", "Stérane 20S/(20S+20R) – αββ C₂₉",
              "first line\nsecond line", "  padded value  ", "   "})
            QTest::newRow(qPrintable(value)) << value << value;
        QTest::newRow("empty") << QString() << QString();
        // Characters that XML cannot carry are dropped instead of making the
        // saved document unreadable; characters outside the BMP are kept.
        const QString emoji = QString::fromUcs4(U"\U0001F600");
        QTest::newRow("unwritable") << QString("a\x01"
                                               "b\tc")
                + QChar(0xFFFE) + QChar(0xD800)
                + emoji << "ab\tc" + emoji;
    }

    // A value written with addToElement reads back the same, in memory and
    // after a save and a load of the document.
    void keyedValuesRoundTrip()
    {
        QFETCH(QString, value);
        QFETCH(QString, expected);
        QDomElement root;
        QDomDocument document = documentWithRoot("informations", &root);
        QVERIFY(TXMLMethod::addToElement(root, "Name", value));
        QVERIFY(TXMLMethod::addToElement(root, "Other", "x"));
        QCOMPARE(TXMLMethod::getInfoString(root, "Name"), expected);

        const QString path = m_dir.filePath("roundtrip.xml");
        QVERIFY(TXMLMethod::save(&document, path, false, false));
        QDomDocument loaded;
        QVERIFY(TXMLMethod::load(&loaded, path, false, false));
        const QDomElement again = loaded.documentElement();
        QCOMPARE(TXMLMethod::getInfoString(again, "Name"), expected);
        QCOMPARE(TXMLMethod::getInfoString(again, "Other"), "x");
    }

    void readingKeyedValues()
    {
        QDomDocument document;
        QVERIFY(document.setContent(QByteArrayLiteral("<root>"
                                                      "<Formula><![CDATA[C29H52 <isomer> & co]]></Formula>"
                                                      "<Mixed>a<![CDATA[<b>]]>c</Mixed>"
                                                      "<Empty/>"
                                                      "<Twice>first</Twice><Twice>second</Twice>"
                                                      "<group><Deep>inner</Deep></group>"
                                                      "</root>")));
        const QDomElement root = document.documentElement();
        QCOMPARE(TXMLMethod::getInfoString(root, "Formula"), "C29H52 <isomer> & co");
        QCOMPARE(TXMLMethod::getInfoString(root, "Mixed"), "a<b>c");
        QCOMPARE(TXMLMethod::getInfoString(root, "Twice"), "first");

        // Absent, empty and deeper-than-a-child keys read as empty.
        for (const QString key : {"Empty", "Missing", "Deep"})
            QVERIFY2(TXMLMethod::getInfoString(root, key).isEmpty(), qPrintable(key));
        QVERIFY(TXMLMethod::getInfoString(QDomElement(), "Formula").isEmpty());

        QCOMPARE(TXMLMethod::getChildElement(root, "group").tagName(), "group");
        QCOMPARE(TXMLMethod::getChildElement(document, "root"), root);
        QVERIFY(TXMLMethod::getChildElement(root, "Deep").isNull());
        QVERIFY(TXMLMethod::getChildElement(QDomNode(), "root").isNull());
    }

    // A refused load leaves the document as it was and is told only when asked
    // to, in the user's language.
    void loadRefusals()
    {
        const QString missing = m_dir.filePath("missing.xml");
        const QString broken = m_dir.filePath("cassé.xml");
        const QString empty = m_dir.filePath("empty.xml");
        QVERIFY(writeAll(broken, "<root>\n  <open>\n</root>\n"));
        QVERIFY(writeAll(empty, QByteArray()));
        QDomDocument document;
        QVERIFY(document.setContent(QByteArrayLiteral("<kept/>")));

        TRecordingLogger logger;
        for (const QString& path : {missing, broken, empty, m_dir.path()}) {
            QVERIFY2(!TXMLMethod::load(&document, path, false, false), qPrintable(path));
            QVERIFY(!TXMLMethod::load(nullptr, path, true, false));
        }
        QCOMPARE(logger.count(), 0);
        for (const QString language : {"en", "fr"}) {
            TTranslator::install(language);
            QVERIFY(!TXMLMethod::load(&document, missing, true, false));
            QVERIFY(!TXMLMethod::load(&document, broken, true, false));
        }
        const QStringList warnings = logger.messages(MessageLoggerInterface::LevelWarning);
        QCOMPARE(warnings.size(), 4);
        QCOMPARE(warnings.at(0), QString("Unable to open the file <b>%1</b>").arg(missing));
        QVERIFY(warnings.at(1).startsWith(QString("The file <b>%1</b> is not valid XML (line 3").arg(broken)));
        QCOMPARE(warnings.at(2), QString("Impossible d'ouvrir le fichier <b>%1</b>").arg(missing));
        QVERIFY(
            warnings.at(3).startsWith(QString("Le fichier <b>%1</b> n'est pas un XML valide (ligne 3").arg(broken)));
        QCOMPARE(document.documentElement().tagName(), "kept");
    }

    void loadNamespaceProcessing()
    {
        const QString path = m_dir.filePath("ns.xml");
        QVERIFY(writeAll(path, "<g:graph xmlns:g=\"urn:vn:graph\"><g:axis>x</g:axis></g:graph>"));
        QDomDocument plain;
        QVERIFY(TXMLMethod::load(&plain, path, false, false));
        QCOMPARE(plain.documentElement().tagName(), "g:graph");
        QVERIFY(plain.documentElement().namespaceURI().isEmpty());
        QCOMPARE(TXMLMethod::getInfoString(plain.documentElement(), "g:axis"), "x");

        QDomDocument processed;
        QVERIFY(TXMLMethod::load(&processed, path, false, true));
        QCOMPARE(processed.documentElement().localName(), "graph");
        QCOMPARE(processed.documentElement().namespaceURI(), "urn:vn:graph");
    }

    // Nor can a folder be made below a regular file, nor a folder be replaced
    // by the document.
    void saveCreatesFoldersOnlyWhenAsked()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot("root", &root);
        const QString nested = m_dir.filePath("a/b/c/doc.xml");
        const QString file = m_dir.filePath("plain.txt");
        QVERIFY(writeAll(file, "not a folder"));

        TRecordingLogger logger;
        QVERIFY(!TXMLMethod::save(&document, file + "/doc.xml", false, false));
        QVERIFY(!TXMLMethod::save(&document, file + "/sub/doc.xml", true, false));
        QVERIFY(!TXMLMethod::save(&document, m_dir.path(), false, false));
        QVERIFY(!TXMLMethod::save(nullptr, nested, true, false));
        QVERIFY(!TXMLMethod::save(&document, QString(), true, false));
        QCOMPARE(logger.count(), 0);
        QCOMPARE(readAll(file), QByteArray("not a folder"));

        QVERIFY(!TXMLMethod::save(&document, nested, false, true));
        TTranslator::install("fr");
        QVERIFY(!TXMLMethod::save(&document, nested, false, true));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList({QString("Unable to write the file <b>%1</b>").arg(nested),
                              QString("Impossible d'écrire le fichier <b>%1</b>").arg(nested)}));
        QVERIFY(!QFile::exists(nested));
        QVERIFY(TXMLMethod::save(&document, nested, true, true));
        QVERIFY(QFile::exists(nested));

        if (geteuid() != 0) {
            const QString locked = m_dir.filePath("locked");
            QVERIFY(QDir().mkdir(locked));
            QVERIFY(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner));
            QVERIFY(!TXMLMethod::save(&document, locked + "/doc.xml", false, false));
            QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }

    // A save that fails halfway through (here: the file-size cap is hit) keeps
    // the previous file whole and leaves no partial file beside it.
    void failedSaveKeepsTheOldFile()
    {
        const QString path = m_dir.filePath("atomic/graph.xml");
        QDomElement root;
        QDomDocument small = documentWithRoot("graph", &root);
        TXMLMethod::addToElement(root, "Title", "old");
        QVERIFY(TXMLMethod::save(&small, path, true, false));
        const QByteArray before = readAll(path);

        QDomElement bigRoot;
        QDomDocument big = documentWithRoot("graph", &bigRoot);
        TXMLMethod::addToElement(bigRoot, "Title", QString(64 * 1024, QLatin1Char('x')));
        {
            FileSizeLimit limit(4096);
            QVERIFY(limit.active());
            QVERIFY(!TXMLMethod::save(&big, path, false, false));
        }
        QCOMPARE(readAll(path), before);
        QCOMPARE(QDir(m_dir.filePath("atomic")).entryList(QDir::Files | QDir::Hidden), QStringList{"graph.xml"});

        // A successful save replaces the file as a whole: a second name of the
        // old file still shows the old content.
        const QString link = m_dir.filePath("atomic-old.xml");
        QVERIFY(::link(QFile::encodeName(path).constData(), QFile::encodeName(link).constData()) == 0);
        QVERIFY(TXMLMethod::save(&big, path, false, false));
        QCOMPARE(readAll(link), before);
        QVERIFY(readAll(path).size() > 64 * 1024);
    }

    void detachedCopyOutlivesItsDocument()
    {
        QDomElement copy;
        QDomElement second;
        {
            QDomDocument document;
            QVERIFY(document.setContent(QByteArray("<file><viewer kind=\"3\"><axis>Pr/Ph</axis></viewer></file>")));
            const QDomElement viewer = document.documentElement().firstChildElement();
            copy = TXMLMethod::detachedCopy(viewer);
            second = TXMLMethod::detachedCopy(viewer);
        }
        QCOMPARE(copy.tagName(), "viewer");
        QCOMPARE(TXMLMethod::getInfoString(copy, "axis"), "Pr/Ph");
        // Nodes can still be made for it, through its own document.
        QVERIFY(copy.parentNode().isNull());
        QVERIFY(TXMLMethod::addToElement(copy, "title", "Ternaire"));
        QVERIFY(!TXMLMethod::createChildElement(copy, "legend").isNull());
        // Each copy is its own: changing one leaves the other.
        QVERIFY(TXMLMethod::getChildElement(second, "title").isNull());
        // And it moves into another document whole.
        QDomDocument other;
        other.appendChild(other.importNode(copy, true));
        QCOMPARE(TXMLMethod::getInfoString(other.documentElement(), "title"), "Ternaire");
        QCOMPARE(other.documentElement().attribute("kind"), "3");
        QVERIFY(TXMLMethod::detachedCopy(QDomElement()).isNull());
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestXMLMethod)
#include "tst_txmlmethod.moc"
