#include "vnsedralogging.h"

Q_LOGGING_CATEGORY(vnSedra, "vn.sedra", QtInfoMsg)
