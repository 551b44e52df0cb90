#pragma once

#include <QLoggingCategory>

// Developer diagnostics of storage: SQL errors of the header databases ("vn.sedra"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.sedra.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnSedra)
