#pragma once

#include "vnsedra_export.h"

#include <QPointer>

namespace Sedra {

class TDatabase;
class THeaderToviConnector;

/// A batch of creations in a reference database for the life of the object:
/// the reference mappers keep new records in memory and the end of the
/// outermost batch writes them all in one transaction. A database without a
/// reference connector gets no batch (every creation writes at once).
///
///     TToviBatch batch(db);
///     for (...) compounds->createCompound(&model, id);
///     ok = batch.commit();
class VNSEDRA_EXPORT TToviBatch
{
public:
    explicit TToviBatch(TDatabase* db);
    /// Ends the batch when commit() was not called: the records are in
    /// memory already, so they are written all the same.
    ~TToviBatch();
    TToviBatch(const TToviBatch&) = delete;
    TToviBatch& operator=(const TToviBatch&) = delete;

    /// Ends the batch; true when everything held back was written (or when
    /// this batch was nested in another, which writes at its end).
    bool commit();
    bool isActive() const { return m_connector != nullptr; }

private:
    // The database is watched: a batch that outlives its database, or whose
    // header was bound anew meanwhile, ends without touching what is gone.
    QPointer<TDatabase> m_db;
    THeaderToviConnector* m_connector = nullptr;
};

} // namespace Sedra
