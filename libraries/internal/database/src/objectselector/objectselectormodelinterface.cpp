#include "objectselectormodelinterface.h"

ObjectSelectorModelInterface::~ObjectSelectorModelInterface() = default;
