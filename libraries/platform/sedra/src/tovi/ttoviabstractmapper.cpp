#include "ttoviabstractmapper.h"

#include "tdatabase.h"
#include "tdatabaseobject.h"
#include "theaderdatabase.h"
#include "theadertoviconnector.h"

namespace Sedra {

TToviAbstractMapper::TToviAbstractMapper(int type)
    : TAbstractMapper(type)
{
}

TToviAbstractMapper::~TToviAbstractMapper() = default;

THeaderToviConnector* TToviAbstractMapper::toviConnector() const
{
    return database() ? dynamic_cast<THeaderToviConnector*>(database()->getConnector()) : nullptr;
}

void TToviAbstractMapper::bindConnector() const
{
    THeaderToviConnector* connector = toviConnector();
    if (connector && !connector->referenceDatabase())
        connector->setReferenceDatabase(database());
}

bool TToviAbstractMapper::isMine(const THeaderRow& row) const
{
    return !row.key.isEmpty() && row.type == type();
}

bool TToviAbstractMapper::canStore() const
{
    return database() && header() && header()->isOpen();
}

bool TToviAbstractMapper::writeNow(bool flush) const
{
    if (!flush)
        return false;
    const THeaderToviConnector* connector = toviConnector();
    return !connector || !connector->inBatch();
}

TDatabaseObject* TToviAbstractMapper::store(TDatabaseObject* record, bool flush) const
{
    bindConnector();
    const bool now = writeNow(flush);
    TDatabaseObject* stored = insertRecord(record, now);
    THeaderToviConnector* connector = toviConnector();
    if (stored && flush && !now && connector)
        connector->noteCreated(stored->type(), stored->key());
    return stored;
}

QString TToviAbstractMapper::newKey(const QString& kindLetter) const
{
    QString prefix;
    switch (database() ? database()->getDatabaseType() : DatabaseUndefined) {
    case DatabaseToviDelivered: prefix = QStringLiteral("ORL"); break;
    case DatabaseToviUser: prefix = QStringLiteral("USR"); break;
    case DatabaseToviMerged: prefix = QStringLiteral("MRG"); break;
    default: prefix = QStringLiteral("DB"); break;
    }
    prefix += QLatin1Char('-') + kindLetter;
    // Starting from the count finds a free number at once unless keys were
    // given by hand in the same range.
    for (qint64 n = count() + 1;; ++n) {
        const QString key = prefix + QStringLiteral("%1").arg(n, 6, 10, QLatin1Char('0'));
        if (!exists(key))
            return key;
    }
}

} // namespace Sedra
