#pragma once

#include "sedra_testproject.h"

#include <theadertoviconnector.h>
#include <tmapperfactory.h>
#include <ttovialiasmapper.h>
#include <ttovicompoundmapper.h>
#include <ttovieicmapper.h>
#include <ttovigraphmapper.h>
#include <ttovijointmapper.h>
#include <ttovioverlaymapper.h>
#include <ttoviratiomapper.h>

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

// The same database with each reference kind's mapper at hand (read once the
// database has its factory).
struct ToviKinds : ToviTestDatabase
{
    using ToviTestDatabase::ToviTestDatabase;

    Sedra::TToviCompoundMapper* compounds = get<Sedra::TToviCompoundMapper>(VNObjectTypeCompound);
    Sedra::TToviRatioMapper* ratios = get<Sedra::TToviRatioMapper>(VNObjectTypeRatio);
    Sedra::TToviEICMapper* ions = get<Sedra::TToviEICMapper>(VNObjectTypeIon);
    Sedra::TToviJointMapper* joints = get<Sedra::TToviJointMapper>(VNObjectTypeJoint);
    Sedra::TToviAliasMapper* aliases = get<Sedra::TToviAliasMapper>(VNObjectTypeAlias);
    Sedra::TToviGraphMapper* graphs = get<Sedra::TToviGraphMapper>(VNObjectTypeGraph);
    Sedra::TToviOverlayMapper* overlays = get<Sedra::TToviOverlayMapper>(VNObjectTypeOverlay);
};
