#include "objectselectoriteminterface.h"

ObjectSelectorItemInterface::~ObjectSelectorItemInterface() = default;
