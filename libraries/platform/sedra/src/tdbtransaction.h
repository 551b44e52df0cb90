#pragma once

#include "vnsedra_export.h"

#include <QSqlDatabase>

namespace Sedra {

/// One SQL transaction for the life of the object: committed by commit(),
/// rolled back when the object dies uncommitted (early return, failure).
class VNSEDRA_EXPORT TDbTransaction
{
public:
    explicit TDbTransaction(const QSqlDatabase& db);
    ~TDbTransaction();
    TDbTransaction(const TDbTransaction&) = delete;
    TDbTransaction& operator=(const TDbTransaction&) = delete;

    /// True when the transaction could be opened.
    bool isActive() const { return m_active; }
    bool commit();
    void rollback();

private:
    QSqlDatabase m_db;
    bool m_active = false;
};

} // namespace Sedra
