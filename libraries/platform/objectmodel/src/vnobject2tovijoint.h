#pragma once

#include "vnobject2tovicompound.h"
#include "vnobject2tovieic.h"

/// A joint: a compound paired with the ion through which it is measured.
/// The compound and the ion belong to the same database as the joint, which
/// keeps the pointers current (a joint goes when either of them goes).
class VNOBJECTMODEL_EXPORT VNObject2ToviJoint : public VNObject2Tovi
{
public:
    explicit VNObject2ToviJoint(const QString& name = QString(), const VNObject2ToviCompound* compound = nullptr,
                                const VNObject2ToviEIC* eic = nullptr, const QString& key = QString());
    ~VNObject2ToviJoint() override;
    int type() const override { return VNObjectTypeJoint; }

    const VNObject2ToviCompound* compound() const { return m_compound; }
    void setCompound(const VNObject2ToviCompound* compound) { m_compound = compound; }
    const VNObject2ToviEIC* eic() const { return m_eic; }
    void setEic(const VNObject2ToviEIC* eic) { m_eic = eic; }

private:
    const VNObject2ToviCompound* m_compound;
    const VNObject2ToviEIC* m_eic;
};
