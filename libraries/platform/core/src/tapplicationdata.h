#pragma once

#include "vncore_export.h"

#include <QHash>
#include <QString>
#include <QVariant>

/// Process-wide named values of the application ("TOVIDBDIR", "VARNELDIR", ...)
/// and its root folder. The application (or a test) owns the instance:
/// getInstance() answers the newest live one, the previous one again once the
/// newest is destroyed, and null when none is alive.
class VNCORE_EXPORT TApplicationData
{
public:
    TApplicationData();
    ~TApplicationData();
    TApplicationData(const TApplicationData&) = delete;
    TApplicationData& operator=(const TApplicationData&) = delete;

    static TApplicationData* getInstance();

    bool contains(const QString& name) const;
    QVariant value(const QString& name, const QVariant& fallback = QVariant()) const;
    QString getString(const QString& name) const;
    void setValue(const QString& name, const QVariant& value);
    void removeValue(const QString& name);
    QStringList names() const;

    /// The folder the application runs from; the executable's folder unless set.
    QString applicationRootPath() const;
    void setApplicationRootPath(const QString& path);

    /// "en" or "fr": the language of user-visible texts.
    QString language() const;
    void setLanguage(const QString& language);

private:
    QHash<QString, QVariant> m_values;
    QString m_rootPath;
    QString m_language = QStringLiteral("en");
};
