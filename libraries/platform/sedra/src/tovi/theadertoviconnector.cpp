#include "theadertoviconnector.h"

#include "tabstractmapper.h"
#include "tdatabase.h"
#include "tdatabaseobject.h"
#include "tdbtransaction.h"
#include "tfileobject.h"
#include "theaderdatabase.h"
#include "tpropertyobject.h"

#include <vnobject2.h>
#include <vnobjecttype.h>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace Sedra {

THeaderToviConnector::THeaderToviConnector(TDatabase* db)
    : m_owner(db)
{ }

THeaderToviConnector::~THeaderToviConnector() = default;

QString THeaderToviConnector::readSerialNumber(QSqlDatabase* db) const
{
    return THeaderConnector::readSerialNumber(db);
}

bool THeaderToviConnector::writeSerialNumber(const QString& serial, QSqlDatabase* db)
{
    if (!db)
        return setSerialNumber(serial);
    if (!db->isOpen())
        return false;
    QSqlQuery query(*db);
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO meta (name, value) VALUES (?, ?)"));
    query.addBindValue(QString::fromLatin1(SerialKey));
    query.addBindValue(serial.isNull() ? QString(QLatin1String("")) : serial);
    return query.exec();
}

// A source database (delivered or user) gets a new serial with every change
// of its data; the merged database's serial is the stamp of the sources it
// was built from, written by the merge alone. Serials are unique identifiers
// rather than counters: a file copied back over a newer one must not meet an
// old stamp again.
bool THeaderToviConnector::stampsChanges() const
{
    return databaseType() == DatabaseToviDelivered || databaseType() == DatabaseToviUser;
}

QString THeaderToviConnector::newSerialNumber()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

bool THeaderToviConnector::beforeCommit(QSqlDatabase& db)
{
    return !stampsChanges() || writeSerialNumber(newSerialNumber(), &db);
}

bool THeaderToviConnector::initializeNewFile(QSqlDatabase& db)
{
    return writeSerialNumber(newSerialNumber(), &db);
}

bool THeaderToviConnector::endBatch()
{
    if (m_batchDepth <= 0)
        return true;
    if (--m_batchDepth > 0)
        return true;
    // Without a database nothing was created through the mappers: nothing
    // waits to be written.
    bool meta = true;
    for (auto it = m_meta.constBegin(); it != m_meta.constEnd(); ++it)
        meta = setMetaValue(it.key(), it.value()) && meta;
    m_meta.clear();
    if (!m_owner || !m_owner->headerDb()) {
        m_created.clear();
        return meta;
    }
    const bool created = writeCreated() && meta;
    m_created.clear();
    // Whatever else changed meanwhile (removals, updated values), and the
    // new records again when their fast write failed.
    const bool rest = m_owner->headerDb()->flushDatabase();
    return created && rest;
}

void THeaderToviConnector::noteCreated(int type, const QString& key)
{
    if (inBatch())
        m_created.append(qMakePair(type, key));
}

void THeaderToviConnector::noteMetaValue(const QString& name, const QString& value)
{
    if (inBatch())
        m_meta.insert(name, value);
    else
        setMetaValue(name, value);
}

bool THeaderToviConnector::writeCreated()
{
    THeaderDatabase* header = m_owner->headerDb();
    if (m_created.isEmpty() || header->connector() != this || !isOpen() || isReadOnly())
        return true;
    QSqlDatabase db = THeaderConnector::database();
    TDbTransaction transaction(db);
    if (!transaction.isActive())
        return false;
    QSqlQuery insertObject(db);
    insertObject.prepare(QStringLiteral("INSERT INTO objects (type, key, name, parent_type, parent, path) "
                                        "VALUES (?, ?, ?, ?, ?, ?)"));
    QSqlQuery insertProperty(db);
    insertProperty.prepare(
        QStringLiteral("INSERT INTO properties (object, name, value, position) VALUES (?, ?, ?, ?)"));
    const QString empty(QLatin1String(""));
    QList<QPair<TDatabaseObject*, qint64>> written;
    bool ok = true;
    for (int i = 0; ok && i < m_created.size(); ++i) {
        TDatabaseObject* record = header->findByKey(m_created.at(i).first, m_created.at(i).second);
        // Records removed, written or changed by other means meanwhile are
        // left to the header's own flush.
        if (!record || record->id() >= 0 || !record->isModified())
            continue;
        const auto* file = dynamic_cast<const TFileObject*>(record);
        insertObject.addBindValue(record->type());
        insertObject.addBindValue(record->key());
        insertObject.addBindValue(record->name());
        insertObject.addBindValue(record->parentType());
        insertObject.addBindValue(record->parentKey().isNull() ? empty : record->parentKey());
        insertObject.addBindValue(file ? file->relativePath() : empty);
        ok = insertObject.exec();
        if (!ok)
            break;
        const qint64 id = insertObject.lastInsertId().toLongLong();
        written.append(qMakePair(record, id));
        const auto* withProperties = dynamic_cast<const TPropertyObject*>(record);
        if (!withProperties)
            continue;
        int position = 0;
        for (const TProperty& property : withProperties->properties()) {
            insertProperty.addBindValue(id);
            insertProperty.addBindValue(property.name());
            insertProperty.addBindValue(property.value().isNull() ? empty : property.value());
            insertProperty.addBindValue(position++);
            ok = insertProperty.exec();
            if (!ok)
                break;
        }
    }
    if (!ok || !beforeCommit(db) || !transaction.commit())
        return false;
    for (const auto& entry : written) {
        entry.first->setId(entry.second);
        entry.first->setModified(false);
    }
    return true;
}

// The drawing of a record exists when its path stays inside the working
// folder and names a file there.
static bool drawingExists(const QString& workingFolder, const QString& relative)
{
    if (relative.isEmpty() || QDir::isAbsolutePath(relative) || relative.contains(QLatin1Char('\\')))
        return false;
    const QString root = QDir::cleanPath(workingFolder);
    const QString path = QDir::cleanPath(root + QLatin1Char('/') + relative);
    return path.startsWith(root + QLatin1Char('/')) && QFileInfo(path).isFile();
}

bool THeaderToviConnector::syncRecords()
{
    THeaderDatabase* header = m_owner->headerDb();
    if (!header || header->connector() != this)
        return true;
    QList<TDatabaseObject*> stale;
    QSet<const TDatabaseObject*> staleSet;
    const auto addWithDependants = [&](TDatabaseObject* record) {
        QList<TDatabaseObject*> pending{record};
        while (!pending.isEmpty()) {
            TDatabaseObject* r = pending.takeFirst();
            if (staleSet.contains(r))
                continue;
            staleSet.insert(r);
            stale.append(r);
            pending += r->getDependantObjects();
        }
    };
    for (int type : {int(VNObjectTypeGraph), int(VNObjectTypeOverlay)}) {
        for (TDatabaseObject* record : header->getObjectsList(type)) {
            if (staleSet.contains(record))
                continue;
            const bool orphan = type == VNObjectTypeOverlay && !record->getParent();
            const QString file = TAbstractMapper::objectFilePath(record->object(), m_owner);
            if (orphan || file.isEmpty() || !QFileInfo(file).isFile())
                addWithDependants(record);
        }
    }
    if (stale.isEmpty())
        return true;
    if (m_owner->isReadOnly() || header->isReadOnly()) {
        m_report.error = QStringLiteral("records without drawing in a read-only database");
        return false;
    }
    QStringList keys;
    for (const TDatabaseObject* record : stale) {
        if (record->type() == VNObjectTypeGraph || record->type() == VNObjectTypeOverlay)
            keys.append(record->key());
    }
    if (!header->removeObjects(stale, true)) {
        m_report.error = header->lastError();
        return false;
    }
    m_report.removed += keys;
    return true;
}

bool THeaderToviConnector::syncRows()
{
    QSqlDatabase db = THeaderConnector::database();
    QSqlQuery rows(db);
    rows.prepare(QStringLiteral("SELECT id, type, key, parent_type, parent, path FROM objects "
                                "WHERE type = ? OR type = ? ORDER BY type, id"));
    rows.addBindValue(int(VNObjectTypeGraph));
    rows.addBindValue(int(VNObjectTypeOverlay));
    if (!rows.exec()) {
        m_report.error = rows.lastError().text();
        return false;
    }
    const QString folder = QFileInfo(getDbFilename()).absolutePath();
    QSet<QString> liveGraphs;
    QList<QPair<int, QString>> stale;
    QList<qint64> staleIds;
    while (rows.next()) {
        const int type = rows.value(1).toInt();
        const QString key = rows.value(2).toString();
        bool ok = drawingExists(folder, rows.value(5).toString());
        if (type == VNObjectTypeOverlay)
            ok = ok && rows.value(3).toInt() == VNObjectTypeGraph && liveGraphs.contains(rows.value(4).toString());
        if (ok && type == VNObjectTypeGraph)
            liveGraphs.insert(key);
        if (!ok) {
            stale.append(qMakePair(type, key));
            staleIds.append(rows.value(0).toLongLong());
        }
    }
    rows.finish();
    if (stale.isEmpty())
        return true;
    if (isReadOnly()) {
        m_report.error = QStringLiteral("records without drawing in a read-only database");
        return false;
    }
    TDbTransaction transaction(db);
    QSqlQuery children(db);
    children.prepare(QStringLiteral("SELECT id, type, key FROM objects WHERE parent_type = ? AND parent = ?"));
    QSqlQuery deleteProperties(db);
    deleteProperties.prepare(QStringLiteral("DELETE FROM properties WHERE object = ?"));
    QSqlQuery deleteObject(db);
    deleteObject.prepare(QStringLiteral("DELETE FROM objects WHERE id = ?"));
    bool ok = transaction.isActive();
    QSet<qint64> done;
    QStringList removed;
    // Breadth first: the stale records, then whatever names them as parent.
    for (int i = 0; ok && i < stale.size(); ++i) {
        const qint64 id = staleIds.at(i);
        if (done.contains(id))
            continue;
        done.insert(id);
        if (stale.at(i).first == VNObjectTypeGraph || stale.at(i).first == VNObjectTypeOverlay)
            removed.append(stale.at(i).second);
        children.addBindValue(stale.at(i).first);
        children.addBindValue(stale.at(i).second);
        ok = children.exec();
        while (ok && children.next()) {
            staleIds.append(children.value(0).toLongLong());
            stale.append(qMakePair(children.value(1).toInt(), children.value(2).toString()));
        }
        deleteProperties.addBindValue(id);
        deleteObject.addBindValue(id);
        ok = ok && deleteProperties.exec() && deleteObject.exec();
    }
    if (!ok || !beforeCommit(db) || !transaction.commit()) {
        m_report.error = db.lastError().text();
        if (m_report.error.isEmpty())
            m_report.error = QStringLiteral("the header file could not be changed");
        return false;
    }
    m_report.removed += removed;
    return true;
}

bool THeaderToviConnector::graphOverlaySync()
{
    m_report = TToviSyncReport();
    if (!isOpen()) {
        m_report.error = QStringLiteral("the header is not open");
        return false;
    }
    if (m_owner && !syncRecords())
        return false;
    return syncRows();
}

} // namespace Sedra
