#pragma once

#include <QLoggingCategory>

// Developer diagnostics of the database module ("vn.database"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.database.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnDatabase)
