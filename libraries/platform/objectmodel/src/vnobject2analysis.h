#pragma once

#include "vnobject2.h"

/// An analysis: one measured run, kept in its own folder under the project's
/// analysis folder.
class VNOBJECTMODEL_EXPORT VNObject2Analysis : public VNObject2
{
public:
    explicit VNObject2Analysis(const QString& name = QString());
    ~VNObject2Analysis() override;
    int type() const override { return VNObjectTypeAnalysis; }
    /// The sub-folder of the project folder that holds the analyses.
    static QString folderName();
};
