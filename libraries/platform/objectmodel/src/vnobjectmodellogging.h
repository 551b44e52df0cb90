#pragma once

#include <QLoggingCategory>

// Developer diagnostics of the object model ("vn.objectmodel"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.objectmodel.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnObjectModel)
