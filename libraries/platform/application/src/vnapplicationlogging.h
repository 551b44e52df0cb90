#pragma once

#include <QLoggingCategory>

// Developer diagnostics of application services ("vn.application"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.application.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnApplication)
