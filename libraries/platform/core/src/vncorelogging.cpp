#include "vncorelogging.h"

Q_LOGGING_CATEGORY(vnCore, "vn.core", QtInfoMsg)
