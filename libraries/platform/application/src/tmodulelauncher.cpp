#include "tmodulelauncher.h"

TModuleLauncher::TModuleLauncher(bool install, QObject* parent)
    : QObject(parent)
{
    if (install)
        ModuleLauncherInterface::install(this);
}

TModuleLauncher::~TModuleLauncher()
{
    ModuleLauncherInterface::uninstall(this);
}

bool TModuleLauncher::isModuleInUse() const
{
    return !m_running.isEmpty();
}

void TModuleLauncher::moduleStarted(const QString& name)
{
    const bool wasInUse = isModuleInUse();
    ++m_running[name];
    if (!wasInUse)
        emit moduleInUseChanged(true);
}

bool TModuleLauncher::moduleFinished(const QString& name)
{
    auto it = m_running.find(name);
    if (it == m_running.end())
        return false;
    if (--it.value() == 0)
        m_running.erase(it);
    if (!isModuleInUse())
        emit moduleInUseChanged(false);
    return true;
}

QStringList TModuleLauncher::runningModules() const
{
    QStringList names = m_running.keys();
    names.sort();
    return names;
}
