#pragma once

#include "objectselectoritem.h"
#include "vndatabase_export.h"

/// A category line of the reference-database selector ("Compounds",
/// "Parameters", "Graphs & Overlays", ...): the heading under which the
/// objects of one kind are listed.
class VNDATABASE_EXPORT ObjectSelectorDatabaseItem : public ObjectSelectorItem
{
    Q_OBJECT
public:
    ObjectSelectorDatabaseItem();
    ~ObjectSelectorDatabaseItem() override;
};
