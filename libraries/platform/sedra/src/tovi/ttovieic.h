#pragma once

#include "tpropertyobject.h"

class VNObject2ToviEIC;

namespace Sedra {

/// The record of an ion (an extracted-ion chromatogram definition). Its key
/// is its "Ion ID", which is its name unless the ion was created with another
/// identifier, so that the same ion has the same key in every reference
/// database; its value is the mass or masses extracted ("191", "217;218").
class VNSEDRA_EXPORT TToviEIC : public TPropertyObject
{
public:
    /// Takes ownership of `object`.
    explicit TToviEIC(VNObject2ToviEIC* object);
    ~TToviEIC() override;

    static constexpr const char* KeyId = "Ion ID";
    static constexpr const char* KeyMasterName = "MasterName";
    static constexpr const char* KeyValue = "Value";

    VNObject2ToviEIC* eic();
    const VNObject2ToviEIC* eic() const;

    QString ionId() const { return key(); }
    QString EICName() const { return name(); }
    QString value() const { return property(QLatin1String(KeyValue)); }
    /// Changes the value of the record and of its object; save the record to
    /// write it.
    void setValue(const QString& value);
};

} // namespace Sedra
