#include "tapplicationdata.h"

#include <QCoreApplication>
#include <QList>

namespace {
// The live instances, oldest first: the newest one answers getInstance(), and
// when it goes the one before it answers again.
QList<TApplicationData*>& instances()
{
    static QList<TApplicationData*> list;
    return list;
}
} // namespace

TApplicationData::TApplicationData()
{
    instances().append(this);
}

TApplicationData::~TApplicationData()
{
    instances().removeOne(this);
}

TApplicationData* TApplicationData::getInstance()
{
    return instances().isEmpty() ? nullptr : instances().last();
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
