#pragma once

#include "vnsedra_export.h"

#include <QString>

namespace Sedra {

/// One named value of a stored object ("MasterName", "CAS", ...).
class VNSEDRA_EXPORT TProperty
{
public:
    TProperty() = default;
    TProperty(const QString& name, const QString& value)
        : m_name(name)
        , m_value(value)
    { }
    const QString& name() const { return m_name; }
    const QString& value() const { return m_value; }
    void setValue(const QString& value) { m_value = value; }
    bool operator==(const TProperty& other) const { return m_name == other.m_name && m_value == other.m_value; }

private:
    QString m_name;
    QString m_value;
};

} // namespace Sedra
