#include "ttoviabstractmapper.h"

#include "tdatabase.h"
#include "tdatabaseobject.h"
#include "theaderdatabase.h"
#include "theadertoviconnector.h"

namespace Sedra {

TToviAbstractMapper::TToviAbstractMapper(int type)
    : TAbstractMapper(type)
{ }

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
    case DatabaseToviDelivered:
        prefix = QStringLiteral("ORL");
        break;
    case DatabaseToviUser:
        prefix = QStringLiteral("USR");
        break;
    case DatabaseToviMerged:
        prefix = QStringLiteral("MRG");
        break;
    default:
        prefix = QStringLiteral("DB");
        break;
    }
    prefix += QLatin1Char('-') + kindLetter;
    THeaderToviConnector* connector = toviConnector();
    auto last = m_lastNumber.find(prefix);
    if (last == m_lastNumber.end()) {
        // Once per prefix: the number kept in the header, or the largest one
        // in use when the header has none (keys given by hand included).
        qint64 largest = connector ? connector->metaValue(counterName(prefix)).toLongLong() : 0;
        for (const TDatabaseObject* r : records()) {
            if (r->key().startsWith(prefix)) {
                bool ok = false;
                const qint64 n = r->key().midRef(prefix.size()).toLongLong(&ok);
                if (ok && n > largest)
                    largest = n;
            }
        }
        last = m_lastNumber.insert(prefix, largest);
    }
    QString key;
    do {
        ++last.value();
        key = prefix + QStringLiteral("%1").arg(last.value(), 6, 10, QLatin1Char('0'));
    } while (exists(key));
    if (connector)
        connector->noteMetaValue(counterName(prefix), QString::number(last.value()));
    return key;
}

QString TToviAbstractMapper::counterName(const QString& prefix)
{
    return QStringLiteral("last_key/") + prefix;
}

} // namespace Sedra
