#include "ttovibatch.h"

#include "tdatabase.h"
#include "theaderdatabase.h"
#include "theadertoviconnector.h"

namespace Sedra {

TToviBatch::TToviBatch(TDatabase* db)
    : m_db(db)
{
    m_connector = db ? dynamic_cast<THeaderToviConnector*>(db->getConnector()) : nullptr;
    if (!m_connector)
        return;
    if (!m_connector->referenceDatabase())
        m_connector->setReferenceDatabase(db);
    m_connector->beginBatch();
}

TToviBatch::~TToviBatch()
{
    commit();
}

bool TToviBatch::commit()
{
    if (!m_connector)
        return true;
    THeaderToviConnector* connector = m_connector;
    m_connector = nullptr;
    if (!m_db)
        return false;
    if (m_db->getConnector() != connector)
        return m_db->headerDb()->flushDatabase();
    return connector->endBatch();
}

} // namespace Sedra
