#pragma once

#include "tabstractmapper.h"

#include <QHash>
#include <QList>

namespace Sedra {

class THeaderToviConnector;

/// What the mappers of the reference kinds share: identifiers made for
/// records created without one, writes held back while a batch is open, and
/// the link from the header's connector back to the database.
class VNSEDRA_EXPORT TToviAbstractMapper : public TAbstractMapper
{
public:
    explicit TToviAbstractMapper(int type);
    ~TToviAbstractMapper() override;

    /// The reference connector of the database, or null.
    THeaderToviConnector* toviConnector() const;

    /// A key never used by a record of the kind in this database: a prefix
    /// naming the database ("ORL", "USR", "MRG", "DB") and the kind, then a
    /// number, so that records made in the delivered and in the user database
    /// never share an identifier ("USR-C000012"). Numbers only grow, also
    /// across removals and reopenings (the last one is kept in the header), so
    /// that a key still named elsewhere (a graph's axis) never comes back
    /// for another record.
    QString newKey(const QString& kindLetter) const;

protected:
    /// The records of `found` that are of the record class `Record`, in order.
    template <typename Record>
    static QList<Record*> only(const QList<TDatabaseObject*>& found)
    {
        QList<Record*> result;
        result.reserve(found.size());
        for (TDatabaseObject* r : found) {
            if (auto* typed = dynamic_cast<Record*>(r))
                result.append(typed);
        }
        return result;
    }
    /// True when a header row is one of this kind's and can make a record.
    bool isMine(const THeaderRow& row) const;

    /// True when records can be created: the database's header file is open.
    /// A reference record kept only in memory would be lost without a word
    /// (a header file refused as damaged, a database without a folder).
    bool canStore() const;
    /// Whether a creation asked to flush really writes now: not while a batch
    /// is open on the connector (the batch writes everything at its end).
    bool writeNow(bool flush) const;
    /// Adds a record made by the mapper (see TAbstractMapper::insertRecord),
    /// writing it now or, inside a batch, at the end of the batch.
    TDatabaseObject* store(TDatabaseObject* record, bool flush) const;
    /// The name under which the header keeps the last number of a prefix.
    static QString counterName(const QString& prefix);
    /// Tells the connector which database it serves (graphOverlaySync() then
    /// keeps the records in memory in step with the file).
    void bindConnector() const;

private:
    mutable QHash<QString, qint64> m_lastNumber;
};

} // namespace Sedra
