#include "modulelauncherinterface.h"

#include "tservicestack_p.h"

namespace {
TServiceStack<ModuleLauncherInterface>& launchers()
{
    static TServiceStack<ModuleLauncherInterface> stack;
    return stack;
}
} // namespace

ModuleLauncherInterface::~ModuleLauncherInterface()
{
    launchers().uninstall(this);
}

ModuleLauncherInterface* ModuleLauncherInterface::returnMe()
{
    return launchers().current();
}

void ModuleLauncherInterface::install(ModuleLauncherInterface* launcher)
{
    launchers().install(launcher);
}

void ModuleLauncherInterface::uninstall(ModuleLauncherInterface* launcher)
{
    launchers().uninstall(launcher);
}
