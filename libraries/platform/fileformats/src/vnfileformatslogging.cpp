#include "vnfileformatslogging.h"

Q_LOGGING_CATEGORY(vnFileFormats, "vn.fileformats", QtInfoMsg)
