#include "tdatabase.h"
#include "tdatabase_p.h"

#include "tdatabaseobject.h"
#include "tdbtransaction.h"
#include "theaderconnector.h"
#include "theaderdatabase.h"
#include "tparametervalue.h"
#include "vnsedralogging.h"

#include <vnobject2analysis.h>

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace Sedra {

namespace {

// The row of an analysis of this database, written first when it is new:
// values hang on the row, so that they go with it.
qint64 analysisRow(const TDatabase* db, const VNObject2Analysis* analysis, bool write)
{
    TDatabaseObject* found = analysis ? db->record(analysis) : nullptr;
    if (!found || found->object()->type() != VNObjectTypeAnalysis)
        return -1;
    if (found->id() < 0 && write)
        db->headerDb()->saveObjectToFile(found, true);
    return found->id();
}

bool hasTable(const THeaderDatabase* header)
{
    return header && header->isOpen() && header->connector() && header->connector()->hasParameterValues();
}

} // namespace

bool TDatabase::parameterValuesSave(const VNObject2Analysis* analysis, const QList<TParameterValueRow>& values)
{
    if (!analysis || !record(analysis))
        return false;
    if (isReadOnly()) {
        logReadOnly();
        return false;
    }
    if (!hasTable(m_header))
        return false;
    const qint64 row = analysisRow(this, analysis, true);
    if (row < 0)
        return false;
    QSqlDatabase db = m_header->connector()->database();
    TDbTransaction transaction(db);
    QSqlQuery clear(db);
    QSqlQuery insert(db);
    bool ok = transaction.isActive() && clear.prepare(QStringLiteral("DELETE FROM parameter_values WHERE object = ?"))
        && insert.prepare(
            QStringLiteral("INSERT OR REPLACE INTO parameter_values "
                           "(object, parameter, name, value, reason, position) VALUES (?, ?, ?, ?, ?, ?)"));
    if (ok) {
        clear.addBindValue(row);
        ok = clear.exec();
    }
    for (int i = 0; ok && i < values.size(); ++i) {
        const TParameterValueRow& value = values.at(i);
        insert.addBindValue(row);
        insert.addBindValue(value.parameter);
        insert.addBindValue(value.name.isNull() ? QStringLiteral("") : value.name);
        insert.addBindValue(value.hasValue ? QVariant(value.value) : QVariant(QVariant::Double));
        insert.addBindValue(value.hasValue || value.reason.isNull() ? QStringLiteral("") : value.reason);
        insert.addBindValue(i);
        ok = insert.exec();
    }
    if (ok)
        ok = m_header->connector()->beforeCommit(db) && transaction.commit();
    if (!ok) {
        const QString error = insert.lastError().isValid() ? insert.lastError().text() : clear.lastError().text();
        qCWarning(vnSedra, "header %s: parameter values of %s not written: %s",
                  qUtf8Printable(m_header->connector()->getDbFilename()), qUtf8Printable(analysis->name()),
                  qUtf8Printable(error.isEmpty() ? db.lastError().text() : error));
    }
    return ok;
}

QList<TParameterValueRow> TDatabase::parameterValues(const VNObject2Analysis* analysis) const
{
    QList<TParameterValueRow> values;
    if (!hasTable(m_header))
        return values;
    const qint64 row = analysisRow(this, analysis, false);
    if (row < 0)
        return values;
    QSqlQuery query(m_header->connector()->database());
    // A file of an older schema opened read-only has no table: no values.
    if (!query.prepare(QStringLiteral("SELECT parameter, name, value, reason FROM parameter_values "
                                      "WHERE object = ? ORDER BY position")))
        return values;
    query.addBindValue(row);
    if (!query.exec())
        return values;
    while (query.next()) {
        TParameterValueRow value;
        value.parameter = query.value(0).toString();
        value.name = query.value(1).toString();
        value.hasValue = !query.value(2).isNull();
        value.value = value.hasValue ? query.value(2).toDouble() : 0.0;
        value.reason = query.value(3).toString();
        values.append(value);
    }
    return values;
}

} // namespace Sedra
