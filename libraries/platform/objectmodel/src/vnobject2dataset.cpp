#include "vnobject2dataset.h"

VNObject2Dataset::VNObject2Dataset(const QString& name)
    : VNObject2(name)
{ }

VNObject2Dataset::~VNObject2Dataset() = default;

QString VNObject2Dataset::folderName()
{
    return QStringLiteral("Datasets");
}
