#include "vnheader.h"

VNHeader::VNHeader(const QString& runName)
    : name(runName)
{ }
