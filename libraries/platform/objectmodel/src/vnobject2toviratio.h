#pragma once

#include "vnobject2tovi.h"

/// A ratio, shown to users as a parameter (Pr/Ph, CPI, ...). Its name is its
/// master name; its key is its "Ratio ID".
class VNOBJECTMODEL_EXPORT VNObject2ToviRatio : public VNObject2Tovi
{
public:
    explicit VNObject2ToviRatio(const QString& name = QString(), const QString& key = QString());
    ~VNObject2ToviRatio() override;
    int type() const override { return VNObjectTypeRatio; }

    /// Where the parameter stands in lists; smaller first.
    int displayOrder() const { return m_displayOrder; }
    void setDisplayOrder(int order) { m_displayOrder = order; }

private:
    int m_displayOrder = 0;
};
