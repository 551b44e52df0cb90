#include "txmlmethod.h"

#include "messageloggerinterface.h"
#include "tfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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
    if (element.isNull() || key.isEmpty())
        return false;
    QDomDocument document = element.ownerDocument();
    QDomElement child = document.createElement(key);
    if (child.tagName() != key)
        return false;
    child.appendChild(document.createTextNode(value));
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
            MessageLoggerInterface::Warning(QCoreApplication::translate(
                "TXMLMethod", "Unable to open the file <b>%1</b>", "Impossible d'ouvrir le fichier <b>%1</b>")
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
                QCoreApplication::translate("TXMLMethod", "The file <b>%1</b> is not valid XML (line %2, column %3): %4",
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
        MessageLoggerInterface::Warning(QCoreApplication::translate(
            "TXMLMethod", "Unable to write the file <b>%1</b>", "Impossible d'écrire le fichier <b>%1</b>")
                                            .arg(path));
    }
    return ok;
}
