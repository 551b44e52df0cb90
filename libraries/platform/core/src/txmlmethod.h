#pragma once

#include "vncore_export.h"

#include <QDomDocument>
#include <QDomElement>
#include <QString>

/// The one helper through which every keyed XML document of the application is
/// read and written. A keyed value is a child element whose text is the value:
/// <key>value</key>. Reading takes the text content of that child, so a value
/// held in a CDATA section reads back as its text too.
class VNCORE_EXPORT TXMLMethod
{
public:
    /// Appends a new child element named `tag` to `parent` and returns it.
    /// A null parent gives a null element.
    static QDomElement createChildElement(QDomElement& parent, const QString& tag);

    /// Stores `value` under `element` as the child element `key`; an existing
    /// child of that name is replaced. False for a null element or a key that
    /// is not an XML name. Characters that XML cannot carry are dropped, and a
    /// value of white space only is kept in a CDATA section, so that whatever
    /// is stored reads back the same after a save and a load.
    static bool addToElement(QDomElement element, const QString& key, const QString& value);

    /// The text of the first child element `key` of `node`; empty when absent.
    static QString getInfoString(const QDomNode& node, const QString& key);

    /// The first child element of `node` named `tag`; null when absent.
    static QDomElement getChildElement(const QDomNode& node, const QString& tag);

    /// Reads the XML file `path` into `document`. On failure `document` is left
    /// as it was and false is returned; with `logErrors` the reason (missing
    /// file, parse error with line and column) goes to the logger as a warning.
    static bool load(QDomDocument* document, const QString& path, bool logErrors, bool namespaceProcessing);

    /// Writes `document` to `path` atomically: the file is complete or untouched.
    /// With `createFolder` the missing parent folders are made first.
    static bool save(const QDomDocument* document, const QString& path, bool createFolder, bool logErrors);

    /// A deep copy of `element` that outlives the document it was read from.
    /// An element does not keep its document alive: handed out after its
    /// document is gone, it has no owner document and no node can be made for
    /// it. The copy belongs to a document kept for the calling thread, which
    /// never holds it as a child: the copy is freed with its last handle. Use
    /// it on the thread that made it. A null element gives a null element.
    static QDomElement detachedCopy(const QDomElement& element);
};
