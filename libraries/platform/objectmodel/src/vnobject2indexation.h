#pragma once

#include "vnobject2.h"

/// An indexation of analyses. The same class carries the three kinds that
/// share its storage: indexation (256), peak detection (264) and global
/// indexation (528).
class VNOBJECTMODEL_EXPORT VNObject2Indexation : public VNObject2
{
public:
    explicit VNObject2Indexation(const QString& name = QString(), int type = VNObjectTypeIndexation);
    ~VNObject2Indexation() override;
    int type() const override { return m_type; }
    /// The sub-folder of the project folder that holds the indexations.
    static QString folderName();

private:
    int m_type;
};
