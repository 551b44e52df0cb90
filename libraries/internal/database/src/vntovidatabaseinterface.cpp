#include "vntovidatabaseinterface.h"

VNToviDatabaseInterface::~VNToviDatabaseInterface() = default;

void VNToviDatabaseInterface::close()
{ }
