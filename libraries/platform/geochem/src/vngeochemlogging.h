#pragma once

#include <QLoggingCategory>

// Developer diagnostics of the interpretation library ("vn.geochem"). What a
// user reads (why a parameter has no value) is in the results, translated.
Q_DECLARE_LOGGING_CATEGORY(vnGeochem)
