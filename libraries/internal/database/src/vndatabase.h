#pragma once

#include "vndatabase_export.h"

#include <databasetype.h>
#include <tdatabase.h>
#include <vnobjecttype.h>

#include <QDomElement>
#include <QList>
#include <QString>
#include <QStringList>

class VNMapperFactory;
class VNObject2;
class VNObject2Dataset;
class VNObject2Project;
class VNObject2Variable;

/// The project database: the storage library's database bound to a project
/// folder. It keeps the folder's layout in shape, guards the synchronisation
/// of the header with the folder (read-only project, module running), and
/// gives the typed operations that reach the storage through one row mapper
/// per kind of object.
class VNDATABASE_EXPORT VNDatabase : public Sedra::TDatabase
{
    Q_OBJECT
public:
    /// The mapper factory shared by every project database. Made when the
    /// module is loaded; null after s_mapperFactoryClear().
    static VNMapperFactory* s_mapperFactory;
    /// Deletes the shared mapper factory (if any) and forgets it. Only the
    /// application calls it, once no project database remains.
    static void s_mapperFactoryClear();

    /// An empty database of `type`, in memory only: no folder is touched and
    /// no header is started.
    explicit VNDatabase(const Sedra::DatabaseType& type);
    /// Opens, or creates, the project database kept in the folder `path`.
    /// A non-null `serial` is written to the header. When the header cannot
    /// be bound (a damaged or foreign file), the object is left without
    /// mappers and every typed operation then answers its neutral result.
    VNDatabase(const QString& path, const QString& serial);
    ~VNDatabase() override;

    bool loadDatabase() override;
    void clearDB() override;
    /// Refused, with a message, for a read-only project or while a module
    /// uses the project now open; otherwise the storage's synchronisation.
    void synchronizeSQLRoot() override;

    /// Empties the database, then binds it to `project`.
    virtual bool setProject(const VNObject2Project* project);
    /// The sub-folders that every project folder holds.
    virtual QStringList folderNameList();
    virtual bool datasetObjectSave(const VNObject2Dataset* dataset, bool flush);
    virtual bool variableObjectSave(const VNObject2Variable* variable, bool flush);

    /// The names in the folder of the objects of `type`; empty for a kind
    /// without a folder.
    QStringList scanDir(VNObjectType type, bool withSuffix) const;
    /// The names of the non-empty files in `path`. A missing folder is part of
    /// an older project layout: it is created, and said so.
    QStringList scanDir(const QString& path, bool withSuffix) const;
    /// The non-empty files of `path` whose last suffix is `suffix` (any when
    /// empty), or, when `files` is false, its sub-folders. A missing folder is
    /// created silently.
    QStringList scanDir(const QString& path, bool withSuffix, const QString& suffix, bool files) const;

    /// Starts the external SQL browser from the application's folder.
    bool openSQLBase() const;
    /// The document element of the XML file `path`; a null element when the
    /// file cannot be read, with `*ok` telling which.
    static QDomElement getModelViewer(const QString& path, bool* ok);
    /// The name of the variable stored for the pair of reference keys, or a
    /// null string when there is none.
    QString getReferenceName(const QString& key1, const QString& key2);

private:
    void connectDeletion();

    // Reserved for the subclasses' bookkeeping; initialised and released here only.
    bool m_flag = false;
    QList<const VNObject2*> m_list;
};
