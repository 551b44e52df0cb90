#pragma once

#include <QLoggingCategory>

// Developer diagnostics of helpers: failed assertions ("vn.core"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.core.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnCore)
