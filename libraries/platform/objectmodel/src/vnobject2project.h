#pragma once

#include "vnobject2.h"

/// A project: the root of a project folder and of its database.
class VNOBJECTMODEL_EXPORT VNObject2Project : public VNObject2
{
public:
    explicit VNObject2Project(const QString& name = QString());
    ~VNObject2Project() override;
    int type() const override { return VNObjectTypeProject; }
};
