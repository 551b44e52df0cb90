#pragma once

#include <tdatabase.h>
#include <theaderdatabase.h>
#include <theadertoviconnector.h>
#include <tmapperfactory.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

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

// Writes a small drawing file where a file record says it lives.
inline bool writeDrawing(const QString& path, const QByteArray& content = QByteArray("<graph/>"))
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// Rows of one kind in a header file, read through a connection of our own.
inline int rowCount(const QString& file, int type)
{
    const QString name = QStringLiteral("tovi-test-count");
    int count = -1;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(file);
        if (db.open()) {
            QSqlQuery query(db);
            query.prepare(QStringLiteral("SELECT count(*) FROM objects WHERE type = ?"));
            query.addBindValue(type);
            if (query.exec() && query.next())
                count = query.value(0).toInt();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return count;
}
