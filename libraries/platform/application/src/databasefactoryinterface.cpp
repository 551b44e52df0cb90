#include "databasefactoryinterface.h"

#include "tservicestack_p.h"

namespace {
TServiceStack<DatabaseFactoryInterface>& factories()
{
    static TServiceStack<DatabaseFactoryInterface> stack;
    return stack;
}
} // namespace

DatabaseFactoryInterface::~DatabaseFactoryInterface()
{
    factories().uninstall(this);
}

DatabaseFactoryInterface* DatabaseFactoryInterface::returnMe()
{
    return factories().current();
}

void DatabaseFactoryInterface::install(DatabaseFactoryInterface* factory)
{
    factories().install(factory);
}

void DatabaseFactoryInterface::uninstall(DatabaseFactoryInterface* factory)
{
    factories().uninstall(factory);
}
