#include "vnplavologging.h"

Q_LOGGING_CATEGORY(vnPlavo, "vn.plavo", QtInfoMsg)
