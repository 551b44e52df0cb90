#include "tpropertyobject.h"

#include <QHash>

namespace Sedra {

TPropertyObject::TPropertyObject(VNObject2* object)
    : TDatabaseObject(object)
{ }

TPropertyObject::~TPropertyObject() = default;

QString TPropertyObject::property(const QString& name) const
{
    for (const TProperty& p : m_properties) {
        if (p.name() == name)
            return p.value();
    }
    return QString();
}

bool TPropertyObject::hasProperty(const QString& name) const
{
    for (const TProperty& p : m_properties) {
        if (p.name() == name)
            return true;
    }
    return false;
}

void TPropertyObject::setProperty(const QString& name, const QString& value)
{
    for (TProperty& p : m_properties) {
        if (p.name() == name) {
            if (p.value() != value) {
                p.setValue(value);
                setModified(true);
            }
            return;
        }
    }
    m_properties.append(TProperty(name, value));
    setModified(true);
}

bool TPropertyObject::removeProperty(const QString& name)
{
    for (int i = 0; i < m_properties.size(); ++i) {
        if (m_properties.at(i).name() == name) {
            m_properties.removeAt(i);
            setModified(true);
            return true;
        }
    }
    return false;
}

void TPropertyObject::setPropertyList(const QList<TProperty>& properties)
{
    QList<TProperty> unique;
    QHash<QString, int> place;
    for (const TProperty& p : properties) {
        const auto seen = place.constFind(p.name());
        if (seen != place.constEnd()) {
            unique[*seen].setValue(p.value());
            continue;
        }
        place.insert(p.name(), unique.size());
        unique.append(p);
    }
    if (unique == m_properties)
        return;
    m_properties = unique;
    setModified(true);
}

void TPropertyObject::setProperties(const QList<TProperty>& properties)
{
    m_properties = properties;
}

} // namespace Sedra
