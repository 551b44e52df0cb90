#include "tapplicationdata.h"

#include <QCoreApplication>

namespace {
TApplicationData* s_instance = nullptr;
}

TApplicationData::TApplicationData()
{
    // The newest instance wins; the destructor of an older one does not clear it.
    s_instance = this;
}

TApplicationData::~TApplicationData()
{
    if (s_instance == this)
        s_instance = nullptr;
}

TApplicationData* TApplicationData::getInstance()
{
    return s_instance;
}

bool TApplicationData::contains(const QString& name) const
{
    return m_values.contains(name);
}

QVariant TApplicationData::value(const QString& name, const QVariant& fallback) const
{
    return m_values.value(name, fallback);
}

QString TApplicationData::getString(const QString& name) const
{
    return m_values.value(name).toString();
}

void TApplicationData::setValue(const QString& name, const QVariant& value)
{
    m_values.insert(name, value);
}

void TApplicationData::removeValue(const QString& name)
{
    m_values.remove(name);
}

QStringList TApplicationData::names() const
{
    return m_values.keys();
}

QString TApplicationData::applicationRootPath() const
{
    if (!m_rootPath.isEmpty() || !QCoreApplication::instance())
        return m_rootPath;
    return QCoreApplication::applicationDirPath();
}

void TApplicationData::setApplicationRootPath(const QString& path)
{
    m_rootPath = path;
}

QString TApplicationData::language() const
{
    return m_language;
}

void TApplicationData::setLanguage(const QString& language)
{
    m_language = language;
}
