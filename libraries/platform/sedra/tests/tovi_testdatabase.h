#pragma once

#include "sedra_testproject.h"

#include <theadertoviconnector.h>
#include <tmapperfactory.h>

// A reference database as the module makes one: a folder, the shared mapper
// factory, a reference connector, the header bound and read back.
class ToviTestDatabase : public Sedra::TDatabase
{
public:
    ToviTestDatabase(Sedra::DatabaseType type, const QString& folder, Sedra::TMapperFactory* factory,
                     bool readOnly = false, bool ownConnector = true)
        : Sedra::TDatabase(type)
        , m_ownConnector(ownConnector)
    {
        setWorkingPath(folder);
        setReadOnly(readOnly);
        setMapperFactory(factory);
        opened = headerDb()->setCurrentProject(this);
        if (opened)
            headerDb()->start();
    }

    Sedra::THeaderConnector* getNewConnector() override
    {
        // The module hands itself to the connector; a bare connector learns
        // its database from the mappers.
        return new Sedra::THeaderToviConnector(m_ownConnector ? this : nullptr);
    }

    Sedra::THeaderToviConnector* tovi() const { return dynamic_cast<Sedra::THeaderToviConnector*>(getConnector()); }

    template <typename Mapper>
    Mapper* get(int type) const
    {
        return dynamic_cast<Mapper*>(mapper(type));
    }

    QString fileName() const { return getConnector() ? getConnector()->getDbFilename() : QString(); }

    bool opened = false;

private:
    bool m_ownConnector;
};
