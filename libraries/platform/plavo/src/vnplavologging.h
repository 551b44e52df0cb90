#pragma once

#include <QLoggingCategory>

// Developer diagnostics of plotting data: documents refused by their readers ("vn.plavo"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.plavo.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnPlavo)
