#include "tapplicationdataloader.h"

#include "tapplicationdata.h"

#include <QFileInfo>
#include <QSettings>

TApplicationDataLoader* TApplicationDataLoader::getInstance()
{
    static TApplicationDataLoader loader;
    return &loader;
}

QString TApplicationDataLoader::settingsFile() const
{
    if (!m_settingsFile.isEmpty())
        return m_settingsFile;
    return qEnvironmentVariable("VNDB_SETTINGS");
}

bool TApplicationDataLoader::loadParameterNoPrefix(const QString& name)
{
    TApplicationData* data = TApplicationData::getInstance();
    if (!data || name.isEmpty())
        return false;
    const QByteArray variable = name.toLocal8Bit();
    if (qEnvironmentVariableIsSet(variable.constData())) {
        data->setValue(name, qEnvironmentVariable(variable.constData()));
        return true;
    }
    const QString file = settingsFile();
    if (file.isEmpty() || !QFileInfo(file).isFile())
        return false;
    QSettings settings(file, QSettings::IniFormat);
    if (!settings.contains(name))
        return false;
    data->setValue(name, settings.value(name));
    return true;
}
