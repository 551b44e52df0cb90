#include "vnobject2well.h"

VNObject2Well::VNObject2Well(const QString& name)
    : VNObject2(name)
{ }

VNObject2Well::~VNObject2Well() = default;

QString VNObject2Well::folderName()
{
    return QStringLiteral("Wells");
}
