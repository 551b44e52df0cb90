#pragma once

#include "tpropertyobject.h"

namespace Sedra {

/// An alias: the value that a vendor gives to one field of a reference object
/// (a compound's master name under a vendor's naming, ...). Its parent is the
/// record of the object it names; it is identified by (object, field,
/// vendor), and its value is its content. Values change through
/// TToviAliasMapper::aliasUpdate, which keeps the index by value current.
class VNSEDRA_EXPORT TToviAlias : public TPropertyObject
{
public:
    /// Takes ownership of `object`.
    explicit TToviAlias(VNObject2* object);
    ~TToviAlias() override;

    static constexpr const char* KeyField = "Field";
    static constexpr const char* KeyVendor = "Vendor";
    static constexpr const char* KeyValue = "Value";

    QString getField() const { return property(QLatin1String(KeyField)); }
    QString getVendor() const { return property(QLatin1String(KeyVendor)); }
    QString getValue() const { return property(QLatin1String(KeyValue)); }

    /// The key of the alias of (object kind, object key, field, vendor).
    static QString makeKey(int parentType, const QString& parentKey, const QString& field, const QString& vendor);
};

} // namespace Sedra
