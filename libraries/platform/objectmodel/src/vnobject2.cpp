#include "vnobject2.h"

#include "vnobject2analysis.h"
#include "vnobject2dataset.h"
#include "vnobject2indexation.h"
#include "vnobject2pixmap.h"
#include "vnobject2well.h"

VNObject2::VNObject2(const QString& name)
    : m_name(name)
{ }

VNObject2::~VNObject2() = default;

QString VNObject2::folderName(int type)
{
    switch (type) {
    case VNObjectTypeAnalysis:
        return VNObject2Analysis::folderName();
    case VNObjectTypeWell:
        return VNObject2Well::folderName();
    case VNObjectTypePixmap:
        return VNObject2Pixmap::folderName();
    case VNObjectTypeIndexation:
    case VNObjectTypePeakDetection:
    case VNObjectTypeGlobalIndexation:
        return VNObject2Indexation::folderName();
    case VNObjectTypeDataset:
        return VNObject2Dataset::folderName();
    default:
        return QString();
    }
}
