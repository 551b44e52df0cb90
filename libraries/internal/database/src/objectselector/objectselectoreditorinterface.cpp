#include "objectselectoreditorinterface.h"

ObjectSelectorEditorInterface::~ObjectSelectorEditorInterface() = default;
