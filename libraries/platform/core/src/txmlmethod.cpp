#include "txmlmethod.h"

#include "messageloggerinterface.h"
#include "tfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

// An XML name: what createElement accepts silently but a parser would refuse
// when the document is read back.
bool isXmlName(const QString& name)
{
    if (name.isEmpty())
        return false;
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        const bool start = c.isLetter() || c == QLatin1Char('_') || c == QLatin1Char(':');
        if (i == 0 ? !start : !(start || c.isDigit() || c.isMark() || c == QLatin1Char('-') || c == QLatin1Char('.')))
            return false;
    }
    return true;
}

// Characters that XML 1.0 cannot carry (control characters, lone surrogates,
// U+FFFE/U+FFFF) are dropped: written as they are, they would make the whole
// saved document unreadable.
QString xmlText(const QString& value)
{
    QString text;
    text.reserve(value.size());
    for (int i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        const ushort u = c.unicode();
        if (c.isHighSurrogate() && i + 1 < value.size() && value.at(i + 1).isLowSurrogate()) {
            text.append(c).append(value.at(++i));
            continue;
        }
        if ((u < 0x20 && u != 0x9 && u != 0xA && u != 0xD) || c.isSurrogate() || u == 0xFFFE || u == 0xFFFF)
            continue;
        text.append(c);
    }
    return text;
}

bool isBlank(const QString& text)
{
    for (const QChar c : text) {
        if (!c.isSpace())
            return false;
    }
    return true;
}

} // namespace

QDomElement TXMLMethod::createChildElement(QDomElement& parent, const QString& tag)
{
    if (parent.isNull() || tag.isEmpty())
        return QDomElement();
    QDomElement child = parent.ownerDocument().createElement(tag);
    parent.appendChild(child);
    return child;
}

bool TXMLMethod::addToElement(QDomElement element, const QString& key, const QString& value)
{
    if (element.isNull() || !isXmlName(key))
        return false;
    QDomDocument document = element.ownerDocument();
    QDomElement child = document.createElement(key);
    const QString text = xmlText(value);
    // A parser drops text made of white space only; in a CDATA section it survives.
    if (!text.isEmpty() && isBlank(text))
        child.appendChild(document.createCDATASection(text));
    else
        child.appendChild(document.createTextNode(text));
    const QDomElement existing = element.firstChildElement(key);
    if (existing.isNull())
        element.appendChild(child);
    else
        element.replaceChild(child, existing);
    return true;
}

QString TXMLMethod::getInfoString(const QDomNode& node, const QString& key)
{
    const QDomElement child = getChildElement(node, key);
    return child.isNull() ? QString(QLatin1String("")) : child.text();
}

QDomElement TXMLMethod::getChildElement(const QDomNode& node, const QString& tag)
{
    if (node.isNull())
        return QDomElement();
    return node.firstChildElement(tag);
}

bool TXMLMethod::load(QDomDocument* document, const QString& path, bool logErrors, bool namespaceProcessing)
{
    if (!document)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (logErrors) {
            MessageLoggerInterface::Warning(QCoreApplication::translate("TXMLMethod",
                                                                        "Unable to open the file <b>%1</b>",
                                                                        "Impossible d'ouvrir le fichier <b>%1</b>")
                                                .arg(path));
        }
        return false;
    }
    QDomDocument parsed;
    QString error;
    int line = 0;
    int column = 0;
    if (!parsed.setContent(&file, namespaceProcessing, &error, &line, &column)) {
        if (logErrors) {
            MessageLoggerInterface::Warning(
                QCoreApplication::translate("TXMLMethod",
                                            "The file <b>%1</b> is not valid XML (line %2, column %3): %4",
                                            "Le fichier <b>%1</b> n'est pas un XML valide (ligne %2, colonne %3) : %4")
                    .arg(path)
                    .arg(line)
                    .arg(column)
                    .arg(error));
        }
        return false;
    }
    *document = parsed;
    return true;
}

bool TXMLMethod::save(const QDomDocument* document, const QString& path, bool createFolder, bool logErrors)
{
    if (!document || path.isEmpty())
        return false;
    if (createFolder)
        TFile::mkdirs(QFileInfo(path).absolutePath(), false);
    QSaveFile file(path);
    bool ok = file.open(QIODevice::WriteOnly);
    if (ok) {
        const QByteArray bytes = document->toByteArray(2);
        ok = file.write(bytes) == bytes.size();
        ok = ok ? file.commit() : (file.cancelWriting(), false);
    }
    if (!ok && logErrors) {
        MessageLoggerInterface::Warning(QCoreApplication::translate("TXMLMethod", "Unable to write the file <b>%1</b>",
                                                                    "Impossible d'écrire le fichier <b>%1</b>")
                                            .arg(path));
    }
    return ok;
}

QDomElement TXMLMethod::detachedCopy(const QDomElement& element)
{
    if (element.isNull())
        return QDomElement();
    thread_local QDomDocument keeper;
    return keeper.importNode(element, true).toElement();
}
