#pragma once

#include "vnsedra_export.h"

#include <vnobjecttype.h>

#include <QList>
#include <QString>

class VNObject2;

namespace Sedra {

class TDatabase;
class TDatabaseObject;
class THeaderDatabase;
struct THeaderRow;

/// The mapper of one kind of object in one database: it makes the kind's
/// objects and records, finds them (by key, by name: through the header's
/// in-memory index, no scan), lists them and removes them. The operations are
/// const because databases hand their mappers out as const; they change the
/// database, not the mapper.
class VNSEDRA_EXPORT TAbstractMapper
{
public:
    explicit TAbstractMapper(int type);
    virtual ~TAbstractMapper();
    TAbstractMapper(const TAbstractMapper&) = delete;
    TAbstractMapper& operator=(const TAbstractMapper&) = delete;

    int type() const { return m_type; }
    TDatabase* database() const { return m_db; }
    /// Called by the database that owns the mapper.
    void setDatabase(TDatabase* db) { m_db = db; }

    /// The object of `key`, or null.
    const VNObject2* get(const QString& key) const;
    /// The first object created with `name`, or null.
    const VNObject2* getByName(const QString& name) const;
    TDatabaseObject* record(const QString& key) const;
    TDatabaseObject* recordByName(const QString& name) const;
    TDatabaseObject* record(const VNObject2* object) const;
    bool exists(const QString& key) const { return record(key) != nullptr; }
    /// The objects of the kind, in creation order.
    virtual QList<const VNObject2*> list() const;
    QList<TDatabaseObject*> records() const;
    int count() const;

    /// A new object named `name` (its key is the name), refused (null) when
    /// the name is empty, the key is taken or the database is read-only.
    /// Written at once when `flush` is true and the header is bound.
    virtual TDatabaseObject* create(const QString& name, bool flush = true) const;
    /// Renames an object (its key follows); false when the new name is taken.
    virtual bool rename(const VNObject2* object, const QString& name, bool flush = true) const;
    /// Removes the object and, with `withDependants`, the records that belong
    /// to it; rows go at once when `flush` is true.
    virtual bool remove(const VNObject2* object, bool flush, bool withDependants) const;

    /// A record for a row read back from the header file; null to skip it.
    virtual TDatabaseObject* recordFromRow(const THeaderRow& row) const;

    /// The folder of the object's files under the working path of `db` (or of
    /// the object's database when `db` is null); empty when neither is known.
    static QString objectFolderPath(const VNObject2* object, TDatabase* db);
    /// The object's file (file records) or its folder for other kinds.
    static QString objectFilePath(const VNObject2* object, TDatabase* db);
    /// True for a path that stays below the working folder whatever the
    /// system: relative, '/'-separated, no "." or ".." part, no drive or
    /// backslash. A stored path is trusted only then.
    static bool isContainedRelativePath(const QString& path);
    /// The objects of kind `type` that belong to `object`.
    static QList<const VNObject2*> getObjectChildLst(const VNObject2* object, const VNObjectType& type);

protected:
    /// A new object of the kind; the default makes a TPlainObject.
    virtual VNObject2* newObject(const QString& name) const;
    /// A new record for `object`; the default makes a TPropertyObject.
    virtual TDatabaseObject* newRecord(VNObject2* object) const;
    /// Gives a record read back its id, parent, path and properties, without
    /// marking it modified.
    void fillFromRow(TDatabaseObject* record, const THeaderRow& row) const;
    /// Adds a record made by this mapper to the database (writing it when
    /// `flush` is true), or deletes it and answers null when it is refused.
    TDatabaseObject* insertRecord(TDatabaseObject* record, bool flush) const;
    /// False (with a message) when the database may not change.
    bool checkWritable() const;
    THeaderDatabase* header() const;

private:
    int m_type;
    TDatabase* m_db = nullptr;
};

} // namespace Sedra
