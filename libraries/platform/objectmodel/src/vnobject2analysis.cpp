#include "vnobject2analysis.h"

VNObject2Analysis::VNObject2Analysis(const QString& name)
    : VNObject2(name)
{ }

VNObject2Analysis::~VNObject2Analysis() = default;

QString VNObject2Analysis::folderName()
{
    return QStringLiteral("Analyses");
}
