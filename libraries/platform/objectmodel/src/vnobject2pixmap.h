#pragma once

#include "vnobject2.h"

/// An image stored with the project.
class VNOBJECTMODEL_EXPORT VNObject2Pixmap : public VNObject2
{
public:
    explicit VNObject2Pixmap(const QString& name = QString());
    ~VNObject2Pixmap() override;
    int type() const override { return VNObjectTypePixmap; }
    /// The sub-folder of the project folder that holds these objects.
    static QString folderName();
};
