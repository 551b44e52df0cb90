#pragma once

#include "vnapplication_export.h"

namespace Sedra {
class TDatabase;
}

/// The application's project manager as the libraries see it: it knows the
/// database of the project now open and is told when the project's content
/// changed behind its back. The application installs one; returnMe() is null
/// while none is installed, and callers must accept that.
class VNAPPLICATION_EXPORT ProjectMgrInterface
{
public:
    ProjectMgrInterface() = default;
    ProjectMgrInterface(const ProjectMgrInterface&) = default;
    ProjectMgrInterface& operator=(const ProjectMgrInterface&) = default;
    /// An installed manager uninstalls itself: returnMe() never dangles.
    virtual ~ProjectMgrInterface();

    /// The manager installed last and still installed, or null.
    static ProjectMgrInterface* returnMe();
    /// Makes `manager` the current one; the caller keeps ownership.
    static void install(ProjectMgrInterface* manager);
    /// Removes `manager`; the one installed before it comes back.
    static void uninstall(ProjectMgrInterface* manager);

    /// The database of the project now open, or null when no project is open.
    virtual Sedra::TDatabase* getCurrentDatabase() const = 0;
    /// Tells the manager that objects were added to (or tried to be added
    /// to) the current project, so that it refreshes what it shows.
    virtual void refreshProject() = 0;
};
