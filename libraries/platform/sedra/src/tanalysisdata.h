#pragma once

#include "vnsedra_export.h"

#include <tdescriptionacquisition.h>

#include <QString>

namespace Sedra {

/// What the storage knows of an analysis' measurements without reading them:
/// where its files are, its description ("acquisition.xml", or the
/// acquisition file's header when the description is missing or unreadable),
/// its scan count and its stored modulation.
struct VNSEDRA_EXPORT TAnalysisData
{
    QString tcmPath;
    QString descriptionPath;
    TDescriptionAcquisition description;
    /// True when `description` was read from "acquisition.xml".
    bool descriptionFromFile = false;
    /// -1 when the acquisition file is missing or refused.
    int scanCount = -1;
    /// -9999.0 when none is stored.
    double modulation = -9999.0;
};

} // namespace Sedra
