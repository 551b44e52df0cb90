#include "vndatabaselogging.h"

Q_LOGGING_CATEGORY(vnDatabase, "vn.database", QtInfoMsg)
