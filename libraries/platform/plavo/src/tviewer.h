#pragma once

#include "type_view.h"
#include "vnplavo_export.h"

#include <QDomElement>
#include <QString>

namespace Plavo {

/// The base of the plot viewers that a graph document holds. A viewer writes
/// itself as one element named after its class (tagName()) with the
/// attributes "version" and "typeView" and a "title" child; subclasses add
/// their own content.
class VNPLAVO_EXPORT TViewer
{
public:
    /// Version written into every viewer element; newer documents are refused.
    static constexpr int kVersion = 1;

    virtual ~TViewer();

    TYPE_VIEW getTypeView() const { return m_typeView; }
    const QString& getTitle() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }

    virtual QString tagName() const = 0;

    /// Appends the viewer's element under `parent`; false (nothing written)
    /// when the viewer is not in a state that could be read back.
    bool encode(QDomElement& parent) const;
    /// Reads the viewer from its element. On false nothing has changed.
    bool decode(const QDomElement& element);

protected:
    explicit TViewer(TYPE_VIEW type);
    TViewer(const TViewer&) = default;
    TViewer& operator=(const TViewer&) = default;

    /// Only subclasses change the kind, since it constrains their content.
    void setTypeViewValue(TYPE_VIEW type) { m_typeView = type; }

    /// Whether the content may be written for this kind of view.
    virtual bool canEncode() const = 0;
    virtual void encodeContent(QDomElement& element) const = 0;
    /// Reads the subclass content for a view of kind `type`; must change
    /// nothing when it returns false.
    virtual bool decodeContent(const QDomElement& element, TYPE_VIEW type) = 0;

private:
    TYPE_VIEW m_typeView;
    QString m_title;
};

} // namespace Plavo
