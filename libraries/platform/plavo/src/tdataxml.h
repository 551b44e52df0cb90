#pragma once

#include "vnplavo_export.h"

#include <QByteArray>
#include <QDomDocument>
#include <QDomElement>
#include <QString>

namespace Plavo {

/// An XML document of the plotting library, or one element of such a document:
/// what a graph editor saves and reads back. Opened from a file or from bytes,
/// its content element is the document element; wrapped round an element, its
/// content element is that element.
///
/// Reading refuses what a plot document never holds and what would make
/// parsing expensive: a document type declaration (and so any entity
/// expansion), nesting deeper than a few hundred levels, millions of nodes,
/// files beyond a few hundred megabytes.
class VNPLAVO_EXPORT TDataXml
{
public:
    TDataXml() = default;
    explicit TDataXml(const QDomElement& element);
    explicit TDataXml(const QDomDocument& document);

    /// Reads the file `path`. On false nothing has changed and errorString() says why.
    bool open(const QString& path);
    /// Reads a document from bytes. On false nothing has changed.
    bool setContent(const QByteArray& bytes);
    /// Writes the whole document atomically, making missing folders.
    bool save(const QString& path) const;

    bool isNull() const { return m_element.isNull(); }
    QDomElement contentElement() const { return m_element; }
    QDomDocument document() const { return m_document; }
    const QString& errorString() const { return m_error; }

private:
    QDomDocument m_document;
    QDomElement m_element;
    QString m_error;
};

} // namespace Plavo
