#include "vnobjectmodellogging.h"

Q_LOGGING_CATEGORY(vnObjectModel, "vn.objectmodel", QtInfoMsg)
