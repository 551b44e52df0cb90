#pragma once

#include "vnapplication_export.h"

/// The application's launcher of analysis modules, as the libraries see it:
/// while a module runs, it may be reading the open project, so whatever
/// rewrites the project's structure asks first. returnMe() is null while no
/// launcher is installed, which reads as "no module in use".
class VNAPPLICATION_EXPORT ModuleLauncherInterface
{
public:
    ModuleLauncherInterface() = default;
    ModuleLauncherInterface(const ModuleLauncherInterface&) = default;
    ModuleLauncherInterface& operator=(const ModuleLauncherInterface&) = default;
    /// An installed launcher uninstalls itself: returnMe() never dangles.
    virtual ~ModuleLauncherInterface();

    /// The launcher installed last and still installed, or null.
    static ModuleLauncherInterface* returnMe();
    /// Makes `launcher` the current one; the caller keeps ownership.
    static void install(ModuleLauncherInterface* launcher);
    /// Removes `launcher`; the one installed before it comes back.
    static void uninstall(ModuleLauncherInterface* launcher);

    /// True while at least one analysis module is running.
    virtual bool isModuleInUse() const = 0;
};
