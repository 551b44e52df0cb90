#include "projectmgrinterface.h"

#include "tservicestack_p.h"

namespace {
TServiceStack<ProjectMgrInterface>& managers()
{
    static TServiceStack<ProjectMgrInterface> stack;
    return stack;
}
} // namespace

ProjectMgrInterface::~ProjectMgrInterface()
{
    managers().uninstall(this);
}

ProjectMgrInterface* ProjectMgrInterface::returnMe()
{
    return managers().current();
}

void ProjectMgrInterface::install(ProjectMgrInterface* manager)
{
    managers().install(manager);
}

void ProjectMgrInterface::uninstall(ProjectMgrInterface* manager)
{
    managers().uninstall(manager);
}
