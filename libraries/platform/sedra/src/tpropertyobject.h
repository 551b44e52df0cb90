#pragma once

#include "tdatabaseobject.h"
#include "tproperty.h"

#include <QList>

namespace Sedra {

/// A record with named values, kept in their order of first setting.
class VNSEDRA_EXPORT TPropertyObject : public TDatabaseObject
{
public:
    explicit TPropertyObject(VNObject2* object);
    ~TPropertyObject() override;

    const QList<TProperty>& properties() const { return m_properties; }
    const QList<TProperty>& getPropertyList() const { return m_properties; }
    /// Replaces every value and marks the record modified when they differ.
    /// A name given twice is kept once, at its first place, with its last
    /// value: the header file holds one value per name.
    void setPropertyList(const QList<TProperty>& properties);
    /// The value of `name`, or a null string when the record has none.
    QString property(const QString& name) const;
    bool hasProperty(const QString& name) const;
    /// Sets or adds a value and marks the record modified when it changed.
    void setProperty(const QString& name, const QString& value);
    bool removeProperty(const QString& name);
    /// Replaces every value without marking the record (used when it is read back).
    void setProperties(const QList<TProperty>& properties);

private:
    QList<TProperty> m_properties;
};

} // namespace Sedra
