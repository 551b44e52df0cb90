#include "vnobject2pixmap.h"

VNObject2Pixmap::VNObject2Pixmap(const QString& name)
    : VNObject2(name)
{ }

VNObject2Pixmap::~VNObject2Pixmap() = default;

QString VNObject2Pixmap::folderName()
{
    return QStringLiteral("Pixmaps");
}
