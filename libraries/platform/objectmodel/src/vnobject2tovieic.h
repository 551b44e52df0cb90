#pragma once

#include "vnobject2tovi.h"

/// An ion: the definition of an extracted-ion chromatogram. Its name is what
/// users pick ("m/z 191"); its value is the mass or masses extracted ("191",
/// "217;218"), or the text of -9999 for the placeholder ion "none".
class VNOBJECTMODEL_EXPORT VNObject2ToviEIC : public VNObject2Tovi
{
public:
    explicit VNObject2ToviEIC(const QString& name = QString(), const QString& value = QString(),
                              const QString& key = QString());
    ~VNObject2ToviEIC() override;
    int type() const override { return VNObjectTypeIon; }

    const QString& EICName() const { return name(); }
    const QString& value() const { return m_value; }
    void setValue(const QString& value) { m_value = value; }

private:
    QString m_value;
};
