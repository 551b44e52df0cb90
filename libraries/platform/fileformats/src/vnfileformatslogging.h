#pragma once

#include <QLoggingCategory>

// Developer diagnostics of acquisition files: why a file was refused ("vn.fileformats"). What a user
// reads goes through MessageLoggerInterface, translated; this category is for
// whoever debugs the library (QT_LOGGING_RULES="vn.fileformats.debug=true").
Q_DECLARE_LOGGING_CATEGORY(vnFileFormats)
