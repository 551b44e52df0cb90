#include "tdbtransaction.h"

namespace Sedra {

TDbTransaction::TDbTransaction(const QSqlDatabase& db)
    : m_db(db)
{
    m_active = m_db.isOpen() && m_db.transaction();
}

TDbTransaction::~TDbTransaction()
{
    rollback();
}

bool TDbTransaction::commit()
{
    if (!m_active)
        return false;
    m_active = false;
    if (m_db.commit())
        return true;
    m_db.rollback();
    return false;
}

void TDbTransaction::rollback()
{
    if (!m_active)
        return;
    m_active = false;
    m_db.rollback();
}

} // namespace Sedra
