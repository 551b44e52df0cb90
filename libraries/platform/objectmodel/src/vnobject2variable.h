#pragma once

#include "vnobject2.h"

/// A variable of a dataset. It is found by the pair of reference keys it
/// stands for (for example a ratio key and a compound key).
class VNOBJECTMODEL_EXPORT VNObject2Variable : public VNObject2
{
public:
    explicit VNObject2Variable(const QString& name = QString(), const QString& reference1 = QString(),
                               const QString& reference2 = QString());
    ~VNObject2Variable() override;
    int type() const override { return VNObjectTypeVariable; }

    const QString& reference1() const { return m_reference1; }
    const QString& reference2() const { return m_reference2; }

private:
    QString m_reference1;
    QString m_reference2;
};
