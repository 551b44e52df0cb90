#pragma once

// Shared by the storage tests: a project database bound to a real folder, a
// byte-and-time picture of a folder, and SQL run on a header file through a
// connection of the test's own.

#include <databasetype.h>
#include <tanalysismapper.h>
#include <tdatabase.h>
#include <tdatasetmapper.h>
#include <tsignalmapper.h>
#include <tvariablemapper.h>
#include <twellmapper.h>
#include <theaderconnector.h>
#include <theaderdatabase.h>
#include <vnmapperfactory.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <memory>

// A project database as the module opens one: folder, shared factory (left
// out with `withMappers` false, as a database is before it gets its
// factory), header bound and read back.
struct TestProject
{
    explicit TestProject(const QString& folder, bool readOnly = false, bool withMappers = true)
        : db(std::make_unique<Sedra::TDatabase>(Sedra::DatabaseProjectFolder))
    {
        db->setWorkingPath(folder);
        db->setReadOnly(readOnly);
        if (withMappers)
            db->setMapperFactory(&factory());
        opened = db->headerDb()->setCurrentProject(db.get());
        if (opened)
            db->headerDb()->start();
    }

    static VNMapperFactory& factory()
    {
        static VNMapperFactory shared;
        return shared;
    }

    template <typename Mapper>
    Mapper* mapper(int type) const
    {
        return dynamic_cast<Mapper*>(db->mapper(type));
    }
    Sedra::TAnalysisMapper* analyses() const { return mapper<Sedra::TAnalysisMapper>(VNObjectTypeAnalysis); }
    Sedra::TSignalMapper* signalMapper() const { return mapper<Sedra::TSignalMapper>(VNObjectTypeSignal); }
    Sedra::TWellMapper* wells() const { return mapper<Sedra::TWellMapper>(VNObjectTypeWell); }
    Sedra::TDatasetMapper* datasets() const { return mapper<Sedra::TDatasetMapper>(VNObjectTypeDataset); }
    Sedra::TVariableMapper* variables() const { return mapper<Sedra::TVariableMapper>(VNObjectTypeVariable); }

    QString headerFile() const
    {
        return QDir(db->getCurrentWorkingPath())
            .filePath(Sedra::THeaderConnector::fileNameForType(Sedra::DatabaseProjectFolder));
    }

    std::unique_ptr<Sedra::TDatabase> db;
    bool opened = false;
};

// Every file and folder under `root` with its size, modification time and
// content hash: two equal pictures mean nothing on disk changed.
inline QMap<QString, QString> folderPicture(const QString& root)
{
    QMap<QString, QString> picture;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        QString entry = info.isDir() ? QStringLiteral("dir") : QString::number(info.size());
        entry += QLatin1Char(' ') + QString::number(info.lastModified().toMSecsSinceEpoch());
        if (info.isFile()) {
            QFile file(info.filePath());
            if (file.open(QIODevice::ReadOnly))
                entry += QLatin1Char(' ')
                    + QString::fromLatin1(QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex());
        }
        picture.insert(QDir(root).relativeFilePath(info.filePath()), entry);
    }
    return picture;
}

// Runs `statements` on a header file through a connection of our own; the
// first value of the last statement, or an invalid QVariant on failure.
inline QVariant runSql(const QString& file, const QStringList& statements)
{
    const QString name = QStringLiteral("sedra-test-outside");
    QVariant result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(file);
        if (db.open()) {
            bool ok = true;
            for (const QString& statement : statements) {
                QSqlQuery query(db);
                ok = query.exec(statement);
                if (!ok)
                    break;
                result = query.next() ? query.value(0) : QVariant(0);
            }
            if (!ok)
                result = QVariant();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

inline int rowsOfKind(const QString& file, int type)
{
    const QVariant count = runSql(file, {QStringLiteral("SELECT count(*) FROM objects WHERE type = %1").arg(type)});
    return count.isValid() ? count.toInt() : -1;
}

inline bool writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}
