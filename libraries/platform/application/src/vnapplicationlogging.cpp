#include "vnapplicationlogging.h"

Q_LOGGING_CATEGORY(vnApplication, "vn.application", QtInfoMsg)
