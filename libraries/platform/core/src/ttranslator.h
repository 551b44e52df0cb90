#pragma once

#include "vncore_export.h"

#include <QTranslator>

/// The application's bilingual translator. Every user-visible text is written
/// in English as the source and carries its French text as the disambiguation:
///     tr("Loading database...", "Chargement de la base de données...")
/// In French this translator answers the disambiguation; in English it answers
/// nothing, so Qt shows the source text. Qt's own contexts (QWidget, QLineEdit,
/// ...) are left alone, since their disambiguations are not translations.
class VNCORE_EXPORT TTranslator : public QTranslator
{
    Q_OBJECT
public:
    explicit TTranslator(const QString& language, QObject* parent = nullptr);

    QString language() const { return m_language; }
    bool isFrench() const;

    QString translate(const char* context, const char* sourceText, const char* disambiguation = nullptr,
                      int n = -1) const override;
    bool isEmpty() const override;

    /// Makes `language` ("en" or "fr", anything else reads as English) the
    /// language of the running application: installs one process-wide
    /// translator, replacing the previous one, and records the language in
    /// TApplicationData when it exists. Needs a QCoreApplication.
    static void install(const QString& language);
    static QString currentLanguage();

private:
    QString m_language;
};
