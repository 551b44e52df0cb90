#pragma once

#include "vncore_export.h"

#include <QString>

/// Loads named values into TApplicationData: from the environment first, then
/// from an INI settings file ("VNDB_SETTINGS" or the one set here).
class VNCORE_EXPORT TApplicationDataLoader
{
public:
    static TApplicationDataLoader* getInstance();

    /// Looks `name` up and stores it in TApplicationData under the same name.
    /// False when it is found nowhere or there is no TApplicationData.
    bool loadParameterNoPrefix(const QString& name);

    void setSettingsFile(const QString& path) { m_settingsFile = path; }
    QString settingsFile() const;

private:
    TApplicationDataLoader() = default;
    QString m_settingsFile;
};
