#include "tdataxml.h"

#include "plavoxml_p.h"

#include <txmlmethod.h>

#include <QCoreApplication>
#include <QFile>
#include <QXmlStreamReader>

namespace Plavo {

namespace {
constexpr qint64 kMaxNodes = 4 * 1000 * 1000;

// A streaming pass before the DOM is built: the DOM builder and its
// destructor recurse once per nesting level, and a DTD could expand entities
// without bound, so both are refused here where they cost nothing.
bool screen(const QByteArray& bytes, QString* error)
{
    QXmlStreamReader reader(bytes);
    int depth = 0;
    qint64 nodes = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (++nodes > kMaxNodes) {
            *error = QCoreApplication::translate("Plavo::TDataXml", "The document holds too many nodes",
                                                 "Le document contient trop de nœuds");
            return false;
        }
        switch (token) {
        case QXmlStreamReader::DTD:
            *error = QCoreApplication::translate("Plavo::TDataXml", "Document type declarations are not accepted",
                                                 "Les déclarations de type de document ne sont pas acceptées");
            return false;
        case QXmlStreamReader::EntityReference:
            *error = QCoreApplication::translate("Plavo::TDataXml", "Entity references are not accepted",
                                                 "Les références d'entités ne sont pas acceptées");
            return false;
        case QXmlStreamReader::StartElement:
            if (++depth > Xml::kMaxDepth) {
                *error = QCoreApplication::translate("Plavo::TDataXml", "The document is nested too deeply",
                                                     "Le document est trop profondément imbriqué");
                return false;
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (reader.hasError()) {
        *error = QCoreApplication::translate("Plavo::TDataXml", "Invalid XML (line %1, column %2): %3",
                                             "XML invalide (ligne %1, colonne %2) : %3")
                     .arg(reader.lineNumber())
                     .arg(reader.columnNumber())
                     .arg(reader.errorString());
        return false;
    }
    return true;
}
} // namespace

TDataXml::TDataXml(const QDomElement& element)
    : m_document(element.ownerDocument())
    , m_element(element)
{ }

TDataXml::TDataXml(const QDomDocument& document)
    : m_document(document)
    , m_element(document.documentElement())
{ }

bool TDataXml::open(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_error = QCoreApplication::translate("Plavo::TDataXml", "Unable to open the file <b>%1</b>",
                                              "Impossible d'ouvrir le fichier <b>%1</b>")
                      .arg(path);
        return false;
    }
    // Read with a bound rather than trusting the size: devices and pipes report none.
    const QByteArray bytes = file.read(Xml::kMaxFileSize + 1);
    if (bytes.size() > Xml::kMaxFileSize) {
        m_error = QCoreApplication::translate("Plavo::TDataXml", "The file <b>%1</b> is too large",
                                              "Le fichier <b>%1</b> est trop volumineux")
                      .arg(path);
        return false;
    }
    return setContent(bytes);
}

bool TDataXml::setContent(const QByteArray& bytes)
{
    QString error;
    if (bytes.size() > Xml::kMaxFileSize) {
        m_error = QCoreApplication::translate("Plavo::TDataXml", "The document is too large",
                                              "Le document est trop volumineux");
        return false;
    }
    if (!screen(bytes, &error)) {
        m_error = error;
        return false;
    }
    QDomDocument document;
    int line = 0;
    int column = 0;
    if (!document.setContent(bytes, false, &error, &line, &column)) {
        m_error = QCoreApplication::translate("Plavo::TDataXml", "Invalid XML (line %1, column %2): %3",
                                              "XML invalide (ligne %1, colonne %2) : %3")
                      .arg(line)
                      .arg(column)
                      .arg(error);
        return false;
    }
    if (document.documentElement().isNull()) {
        m_error = QCoreApplication::translate("Plavo::TDataXml", "The document has no element",
                                              "Le document n'a pas d'élément");
        return false;
    }
    m_document = document;
    m_element = document.documentElement();
    m_error.clear();
    return true;
}

bool TDataXml::save(const QString& path) const
{
    if (m_document.isNull() || m_element.isNull())
        return false;
    return TXMLMethod::save(&m_document, path, true, true);
}

} // namespace Plavo
