#pragma once
// What the reference-database tests share: a working folder named by the
// application settings, databases made as the application makes them, and a
// compound with a few stored properties.
#include <tapplicationdata.h>
#include <ttovicompound.h>
#include <vndatabasefactory.h>
#include <vndatabasetovi.h>

#include <QTemporaryDir>

#include <memory>

namespace ToviTest {

/// Fresh application settings whose "TOVIDBDIR" names a fresh temporary folder.
inline void useNewFolder(std::unique_ptr<TApplicationData>& data, std::unique_ptr<QTemporaryDir>& dir)
{
    data.reset(new TApplicationData);
    dir.reset(new QTemporaryDir);
    data->setValue(QStringLiteral("TOVIDBDIR"), dir->path());
}

/// A reference database of `type` from the factory (null when the factory
/// made something else), loaded when `load` is true.
inline VNDatabaseTovi* makeTovi(Sedra::DatabaseType type, bool load = true)
{
    VNDatabaseFactory factory;
    Sedra::TDatabase* db = factory.createDatabase(Sedra::DatabaseType(type));
    auto* tovi = qobject_cast<VNDatabaseTovi*>(db);
    if (!tovi)
        delete db;
    else if (load)
        tovi->loadDatabase();
    return tovi;
}

/// A compound `id` named `name` with the reference keys `keys` (";"-separated),
/// a CAS number and a formula.
inline Sedra::TToviCompound* addCompound(VNDatabaseTovi* db, const QString& id, const QString& name,
                                         const QString& keys)
{
    Sedra::TToviCompound model;
    model.setMasterName(name);
    model.setToviKey(keys);
    model.setCas(QStringLiteral("1921-70-6"));
    model.setFormula(QStringLiteral("C19H40"));
    return db->createCompound(&model, id);
}

} // namespace ToviTest
