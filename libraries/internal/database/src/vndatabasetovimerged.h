#pragma once

#include "vndatabase_export.h"

#include <QCoreApplication>

class VNToviDatabaseInterface;

/// Keeps the merged reference database current: a copy of the delivered
/// database into which every object of the user's database is imported, stamped with the two sources' serial numbers so that a stale
/// copy is told cheaply. Works only through the databases registered with
/// VNDatabaseToviMGR. A rebuild replaces the registered merged database:
/// fetch it again with db(Sedra::DatabaseToviMerged) afterwards.
class VNDATABASE_EXPORT VNDatabaseToviMerged
{
    Q_DECLARE_TR_FUNCTIONS(VNDatabaseToviMerged)
public:
    /// Loads the delivered and the user database (those registered).
    VNDatabaseToviMerged();
    VNDatabaseToviMerged(const VNDatabaseToviMerged& other) = default;
    VNDatabaseToviMerged& operator=(const VNDatabaseToviMerged& other) = default;
    virtual ~VNDatabaseToviMerged();

    /// Reloads the merged database when it is current, rebuilds it otherwise.
    /// False only when the delivered or the user database (or the database
    /// factory) is missing. When no copy of the delivered file can be made,
    /// a warning says so and the old merged database stays as it was, stale.
    bool synchronize();
    /// After a graph or an overlay was saved in either source: brings their
    /// graphs and overlays into the merged database, without a rebuild.
    bool updateMergedAfterGraphSaveORLorUSR();

private:
    bool synchronizeAll();
    bool isUpToDate();
    void resetToVIDB();
    void saveMerged();
    bool copyFromTo(VNToviDatabaseInterface* from, VNToviDatabaseInterface* to);
};
