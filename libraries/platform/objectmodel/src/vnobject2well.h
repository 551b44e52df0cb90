#pragma once

#include "vnobject2.h"

/// A well, the origin of samples.
class VNOBJECTMODEL_EXPORT VNObject2Well : public VNObject2
{
public:
    explicit VNObject2Well(const QString& name = QString());
    ~VNObject2Well() override;
    int type() const override { return VNObjectTypeWell; }
    /// The sub-folder of the project folder that holds these objects.
    static QString folderName();
};
