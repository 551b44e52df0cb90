#include "vnobject2indexation.h"

VNObject2Indexation::VNObject2Indexation(const QString& name, int type)
    : VNObject2(name)
    , m_type(type == VNObjectTypePeakDetection || type == VNObjectTypeGlobalIndexation ? type : VNObjectTypeIndexation)
{ }

VNObject2Indexation::~VNObject2Indexation() = default;

QString VNObject2Indexation::folderName()
{
    return QStringLiteral("Indexations");
}
