#include "filesizelimit.h"

#include <trecordinglogger.h>
#include <ttranslator.h>
#include <txmlmethod.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

namespace {

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

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
        TTranslator::install(QStringLiteral("en"));
    }

    void createChildElementAppendsInOrder()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot(QStringLiteral("root"), &root);
        const QDomElement first = TXMLMethod::createChildElement(root, QStringLiteral("axis"));
        const QDomElement second = TXMLMethod::createChildElement(root, QStringLiteral("axis"));
        QVERIFY(!first.isNull() && !second.isNull());
        QCOMPARE(root.childNodes().size(), 2);
        QCOMPARE(root.firstChildElement(), first);
        QCOMPARE(first.nextSiblingElement(), second);
        QCOMPARE(first.ownerDocument(), document);

        QDomElement none;
        QVERIFY(TXMLMethod::createChildElement(none, QStringLiteral("axis")).isNull());
        QVERIFY(TXMLMethod::createChildElement(root, QString()).isNull());
        QCOMPARE(root.childNodes().size(), 2);
    }

    void keyedValuesRoundTrip_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("plain") << QStringLiteral("Pristane/Phytane");
        QTest::newRow("markup characters") << QStringLiteral("a < b && c > \"d\" 'e' ]]> <![CDATA[");
        QTest::newRow("non-ASCII") << QStringLiteral("Stérane 20S/(20S+20R) – αββ C₂₉");
        QTest::newRow("lines") << QStringLiteral("first line\nsecond line");
        QTest::newRow("inner spaces") << QStringLiteral("  padded value  ");
        QTest::newRow("only spaces") << QStringLiteral("   ");
        QTest::newRow("empty") << QString();
    }

    // A value written with addToElement reads back the same, in memory and
    // after a save and a load of the document.
    void keyedValuesRoundTrip()
    {
        QFETCH(QString, value);
        QDomElement root;
        QDomDocument document = documentWithRoot(QStringLiteral("informations"), &root);
        QVERIFY(TXMLMethod::addToElement(root, QStringLiteral("Name"), value));
        QVERIFY(TXMLMethod::addToElement(root, QStringLiteral("Other"), QStringLiteral("x")));
        QCOMPARE(TXMLMethod::getInfoString(root, QStringLiteral("Name")), value);

        const QString path = m_dir.filePath(QStringLiteral("roundtrip.xml"));
        QVERIFY(TXMLMethod::save(&document, path, false, false));
        QDomDocument loaded;
        QVERIFY(TXMLMethod::load(&loaded, path, false, false));
        const QDomElement again = loaded.documentElement();
        QCOMPARE(again.tagName(), QStringLiteral("informations"));
        QCOMPARE(TXMLMethod::getInfoString(again, QStringLiteral("Name")), value);
        QCOMPARE(TXMLMethod::getInfoString(again, QStringLiteral("Other")), QStringLiteral("x"));
    }

    // Characters that XML cannot carry are dropped instead of making the saved
    // document unreadable; characters outside the BMP are kept.
    void unwritableCharactersAreDropped()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot(QStringLiteral("root"), &root);
        QString value = QStringLiteral("a\x01" "b\tc");
        value += QChar(0xFFFE);
        value += QChar(0xD800); // a lone surrogate
        value += QString::fromUcs4(U"\U0001F600");
        QVERIFY(TXMLMethod::addToElement(root, QStringLiteral("Name"), value));
        const QString expected = QStringLiteral("ab\tc") + QString::fromUcs4(U"\U0001F600");
        QCOMPARE(TXMLMethod::getInfoString(root, QStringLiteral("Name")), expected);

        const QString path = m_dir.filePath(QStringLiteral("control.xml"));
        QVERIFY(TXMLMethod::save(&document, path, false, false));
        QDomDocument loaded;
        QVERIFY(TXMLMethod::load(&loaded, path, false, false));
        QCOMPARE(TXMLMethod::getInfoString(loaded.documentElement(), QStringLiteral("Name")), expected);
    }

    void addToElementReplacesAndRefuses()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot(QStringLiteral("root"), &root);
        QVERIFY(TXMLMethod::addToElement(root, QStringLiteral("Title"), QStringLiteral("old")));
        QVERIFY(TXMLMethod::addToElement(root, QStringLiteral("Title"), QStringLiteral("new")));
        QCOMPARE(root.elementsByTagName(QStringLiteral("Title")).size(), 1);
        QCOMPARE(TXMLMethod::getInfoString(root, QStringLiteral("Title")), QStringLiteral("new"));

        QVERIFY(!TXMLMethod::addToElement(QDomElement(), QStringLiteral("Title"), QStringLiteral("v")));
        QVERIFY(!TXMLMethod::addToElement(root, QString(), QStringLiteral("v")));
        // Keys that are not XML names would make the saved file unreadable.
        for (const QString& bad : {QStringLiteral("two words"), QStringLiteral("1st"), QStringLiteral("a<b"),
                                   QStringLiteral("-dash"), QStringLiteral("x&y")}) {
            QVERIFY2(!TXMLMethod::addToElement(root, bad, QStringLiteral("v")), qPrintable(bad));
        }
        QCOMPARE(root.childNodes().size(), 1);
        for (const QString& good : {QStringLiteral("Compound_ID"), QStringLiteral("_x.y-z"),
                                    QStringLiteral("Étiquette"), QStringLiteral("a1")}) {
            QVERIFY2(TXMLMethod::addToElement(root, good, QStringLiteral("v")), qPrintable(good));
        }
    }

    void readingKeyedValues()
    {
        QDomDocument document;
        QVERIFY(document.setContent(QByteArrayLiteral(
            "<root>"
            "<Formula><![CDATA[C29H52 <isomer> & co]]></Formula>"
            "<Mixed>a<![CDATA[<b>]]>c</Mixed>"
            "<Empty/>"
            "<Twice>first</Twice><Twice>second</Twice>"
            "<group><Deep>inner</Deep></group>"
            "</root>")));
        const QDomElement root = document.documentElement();
        QCOMPARE(TXMLMethod::getInfoString(root, QStringLiteral("Formula")), QStringLiteral("C29H52 <isomer> & co"));
        QCOMPARE(TXMLMethod::getInfoString(root, QStringLiteral("Mixed")), QStringLiteral("a<b>c"));
        QCOMPARE(TXMLMethod::getInfoString(root, QStringLiteral("Twice")), QStringLiteral("first"));

        // Absent, empty and deeper-than-a-child keys read as empty.
        QVERIFY(TXMLMethod::getInfoString(root, QStringLiteral("Empty")).isEmpty());
        QVERIFY(TXMLMethod::getInfoString(root, QStringLiteral("Missing")).isEmpty());
        QVERIFY(TXMLMethod::getInfoString(root, QStringLiteral("Deep")).isEmpty());
        QVERIFY(TXMLMethod::getInfoString(QDomElement(), QStringLiteral("Formula")).isEmpty());

        QCOMPARE(TXMLMethod::getChildElement(root, QStringLiteral("group")).tagName(), QStringLiteral("group"));
        QCOMPARE(TXMLMethod::getChildElement(document, QStringLiteral("root")), root);
        QVERIFY(TXMLMethod::getChildElement(root, QStringLiteral("Deep")).isNull());
        QVERIFY(TXMLMethod::getChildElement(QDomNode(), QStringLiteral("root")).isNull());
    }

    void loadRefusesMissingAndBrokenFiles()
    {
        TRecordingLogger logger;
        QDomDocument document;
        QVERIFY(document.setContent(QByteArrayLiteral("<kept/>")));

        const QString missing = m_dir.filePath(QStringLiteral("missing.xml"));
        QVERIFY(!TXMLMethod::load(&document, missing, true, false));
        QCOMPARE(document.documentElement().tagName(), QStringLiteral("kept"));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning),
                 QStringList{QStringLiteral("Unable to open the file <b>%1</b>").arg(missing)});

        const QString broken = m_dir.filePath(QStringLiteral("broken.xml"));
        QVERIFY(writeAll(broken, "<root>\n  <open>\n</root>\n"));
        logger.clear();
        QVERIFY(!TXMLMethod::load(&document, broken, true, false));
        QCOMPARE(document.documentElement().tagName(), QStringLiteral("kept"));
        QCOMPARE(logger.count(), 1);
        QVERIFY(logger.messages(MessageLoggerInterface::LevelWarning).value(0).contains(QStringLiteral("line 3")));

        // Quiet when asked, and for a null document.
        logger.clear();
        QVERIFY(!TXMLMethod::load(&document, missing, false, false));
        QVERIFY(!TXMLMethod::load(&document, broken, false, false));
        QVERIFY(!TXMLMethod::load(nullptr, broken, true, false));
        QVERIFY(!TXMLMethod::load(&document, m_dir.path(), false, false));
        QCOMPARE(logger.count(), 0);

        const QString empty = m_dir.filePath(QStringLiteral("empty.xml"));
        QVERIFY(writeAll(empty, QByteArray()));
        QVERIFY(!TXMLMethod::load(&document, empty, false, false));
        QCOMPARE(document.documentElement().tagName(), QStringLiteral("kept"));
    }

    void loadRefusalsInFrench()
    {
        TTranslator::install(QStringLiteral("fr"));
        TRecordingLogger logger;
        QDomDocument document;
        const QString missing = m_dir.filePath(QStringLiteral("absent.xml"));
        QVERIFY(!TXMLMethod::load(&document, missing, true, false));
        const QString broken = m_dir.filePath(QStringLiteral("cassé.xml"));
        QVERIFY(writeAll(broken, "<a><b></a>"));
        QVERIFY(!TXMLMethod::load(&document, broken, true, false));
        QDomDocument saved;
        saved.appendChild(saved.createElement(QStringLiteral("a")));
        QVERIFY(!TXMLMethod::save(&saved, missing + QStringLiteral("/sous/doc.xml"), false, true));
        const QStringList warnings = logger.messages(MessageLoggerInterface::LevelWarning);
        QCOMPARE(warnings.size(), 3);
        QCOMPARE(warnings.at(0), QStringLiteral("Impossible d'ouvrir le fichier <b>%1</b>").arg(missing));
        QVERIFY(warnings.at(1).startsWith(QStringLiteral("Le fichier <b>%1</b> n'est pas un XML valide (ligne 1")
                                              .arg(broken)));
        QVERIFY(warnings.at(2).startsWith(QStringLiteral("Impossible d'écrire le fichier")));
    }

    void loadNamespaceProcessing()
    {
        const QString path = m_dir.filePath(QStringLiteral("ns.xml"));
        QVERIFY(writeAll(path, "<g:graph xmlns:g=\"urn:vn:graph\"><g:axis>x</g:axis></g:graph>"));
        QDomDocument plain;
        QVERIFY(TXMLMethod::load(&plain, path, false, false));
        QCOMPARE(plain.documentElement().tagName(), QStringLiteral("g:graph"));
        QVERIFY(plain.documentElement().namespaceURI().isEmpty());
        QCOMPARE(TXMLMethod::getInfoString(plain.documentElement(), QStringLiteral("g:axis")), QStringLiteral("x"));

        QDomDocument processed;
        QVERIFY(TXMLMethod::load(&processed, path, false, true));
        QCOMPARE(processed.documentElement().localName(), QStringLiteral("graph"));
        QCOMPARE(processed.documentElement().namespaceURI(), QStringLiteral("urn:vn:graph"));
    }

    void saveCreatesFoldersOnlyWhenAsked()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot(QStringLiteral("root"), &root);
        TXMLMethod::addToElement(root, QStringLiteral("k"), QStringLiteral("v"));
        const QString nested = m_dir.filePath(QStringLiteral("a/b/c/doc.xml"));

        TRecordingLogger logger;
        QVERIFY(!TXMLMethod::save(&document, nested, false, true));
        QVERIFY(!QFile::exists(nested));
        QCOMPARE(logger.messages(MessageLoggerInterface::LevelWarning).size(), 1);

        QVERIFY(TXMLMethod::save(&document, nested, true, true));
        QDomDocument loaded;
        QVERIFY(TXMLMethod::load(&loaded, nested, false, false));
        QCOMPARE(TXMLMethod::getInfoString(loaded.documentElement(), QStringLiteral("k")), QStringLiteral("v"));

        QVERIFY(!TXMLMethod::save(nullptr, nested, true, false));
        QVERIFY(!TXMLMethod::save(&document, QString(), true, false));
    }

    // The folder cannot be written: below a regular file, or the target is a folder.
    void saveIntoUnwritablePlaceFails()
    {
        QDomElement root;
        QDomDocument document = documentWithRoot(QStringLiteral("root"), &root);
        const QString file = m_dir.filePath(QStringLiteral("plain.txt"));
        QVERIFY(writeAll(file, "not a folder"));
        TRecordingLogger logger;
        QVERIFY(!TXMLMethod::save(&document, file + QStringLiteral("/doc.xml"), false, false));
        QVERIFY(!TXMLMethod::save(&document, file + QStringLiteral("/sub/doc.xml"), true, false));
        QVERIFY(!TXMLMethod::save(&document, m_dir.path(), false, false));
        QCOMPARE(readAll(file), QByteArray("not a folder"));
        QCOMPARE(logger.count(), 0);

        if (geteuid() != 0) {
            const QString locked = m_dir.filePath(QStringLiteral("locked"));
            QVERIFY(QDir().mkdir(locked));
            QVERIFY(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner));
            QVERIFY(!TXMLMethod::save(&document, locked + QStringLiteral("/doc.xml"), false, false));
            QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }

    // A save that fails halfway through (here: the file-size cap is hit) keeps
    // the previous file whole and leaves no partial file beside it.
    void failedSaveKeepsTheOldFile()
    {
        const QString path = m_dir.filePath(QStringLiteral("atomic/graph.xml"));
        QDomElement root;
        QDomDocument small = documentWithRoot(QStringLiteral("graph"), &root);
        TXMLMethod::addToElement(root, QStringLiteral("Title"), QStringLiteral("old"));
        QVERIFY(TXMLMethod::save(&small, path, true, false));
        const QByteArray before = readAll(path);

        QDomElement bigRoot;
        QDomDocument big = documentWithRoot(QStringLiteral("graph"), &bigRoot);
        TXMLMethod::addToElement(bigRoot, QStringLiteral("Title"), QString(64 * 1024, QLatin1Char('x')));
        {
            FileSizeLimit limit(4096);
            QVERIFY(limit.active());
            QVERIFY(!TXMLMethod::save(&big, path, false, false));
        }
        QCOMPARE(readAll(path), before);
        QCOMPARE(QDir(m_dir.filePath(QStringLiteral("atomic"))).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("graph.xml")});

        // A successful save replaces the file as a whole: a second name of the
        // old file still shows the old content.
        const QString link = m_dir.filePath(QStringLiteral("atomic-old.xml"));
        QVERIFY(::link(QFile::encodeName(path).constData(), QFile::encodeName(link).constData()) == 0);
        QVERIFY(TXMLMethod::save(&big, path, false, false));
        QCOMPARE(readAll(link), before);
        QVERIFY(readAll(path).size() > 64 * 1024);
    }

private:
    QTemporaryDir m_dir;

    void detachedCopyOutlivesItsDocument()
    {
        QDomElement copy;
        QDomElement second;
        {
            QDomDocument document;
            QVERIFY(document.setContent(QStringLiteral("<file><viewer kind=\"3\"><axis>Pr/Ph</axis></viewer></file>")));
            const QDomElement viewer = document.documentElement().firstChildElement();
            copy = TXMLMethod::detachedCopy(viewer);
            second = TXMLMethod::detachedCopy(viewer);
        }
        QCOMPARE(copy.tagName(), QStringLiteral("viewer"));
        QCOMPARE(TXMLMethod::getInfoString(copy, QStringLiteral("axis")), QStringLiteral("Pr/Ph"));
        // Nodes can still be made for it, through its own document.
        QVERIFY(!copy.ownerDocument().isNull());
        QVERIFY(copy.parentNode().isNull());
        QVERIFY(TXMLMethod::addToElement(copy, QStringLiteral("title"), QStringLiteral("Ternaire")));
        QDomElement made = TXMLMethod::createChildElement(copy, QStringLiteral("legend"));
        QVERIFY(!made.isNull());
        // Each copy is its own: changing one leaves the other.
        QVERIFY(TXMLMethod::getChildElement(second, QStringLiteral("title")).isNull());
        // And it moves into another document whole.
        QDomDocument other;
        other.appendChild(other.importNode(copy, true));
        QCOMPARE(TXMLMethod::getInfoString(other.documentElement(), QStringLiteral("title")), QStringLiteral("Ternaire"));
        QCOMPARE(other.documentElement().attribute(QStringLiteral("kind")), QStringLiteral("3"));
        QVERIFY(TXMLMethod::detachedCopy(QDomElement()).isNull());
    }
};

QTEST_GUILESS_MAIN(TestXMLMethod)
#include "tst_txmlmethod.moc"
