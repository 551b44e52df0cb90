#include "objectselectorctrlinterface.h"

ObjectSelectorCtrlInterface::~ObjectSelectorCtrlInterface() = default;
