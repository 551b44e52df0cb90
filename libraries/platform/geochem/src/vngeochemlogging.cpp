#include "vngeochemlogging.h"

Q_LOGGING_CATEGORY(vnGeochem, "vn.geochem", QtInfoMsg)
