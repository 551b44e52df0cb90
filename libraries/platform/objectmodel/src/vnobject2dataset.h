#pragma once

#include "vnobject2.h"

/// A dataset: a table of variables computed over analyses.
class VNOBJECTMODEL_EXPORT VNObject2Dataset : public VNObject2
{
public:
    explicit VNObject2Dataset(const QString& name = QString());
    ~VNObject2Dataset() override;
    int type() const override { return VNObjectTypeDataset; }
    /// The sub-folder of the project folder that holds these objects.
    static QString folderName();
};
