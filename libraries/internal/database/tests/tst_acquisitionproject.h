#pragma once

// A real project folder with its database, installed as the project manager's
// current one, and the runs the acquisition tests write into it.
#include <tacquisitionrun.h>
#include <tcmfile.h>
#include <tcmfileregistry.h>
#include <tprojectmgr.h>
#include <tsyntheticrun.h>
#include <vndatabase.h>
#include <vndatabaseimport.h>
#include <vnmcdata.h>
#include <vnobject2analysis.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class AcquisitionProject
{
public:
    AcquisitionProject()
        : m_manager(true)
    {
        m_path = m_tmp.filePath(QStringLiteral("project"));
        m_db = new VNDatabase(m_path, QString());
        m_manager.setCurrentDatabase(m_db, true);
    }
    ~AcquisitionProject() { TCMFileRegistry::clear(); }

    VNDatabase* db() const { return m_db; }
    TProjectMgr& manager() { return m_manager; }
    const QString& path() const { return m_path; }
    QString file(const QString& relative) const { return m_path + QLatin1Char('/') + relative; }
    QString scratch(const QString& name) const { return m_tmp.filePath(name); }

    /// Every file under the project with its size and time, and every
    /// folder: what "nothing changed on disk" compares.
    QMap<QString, QString> snapshot() const
    {
        QMap<QString, QString> files;
        QDirIterator it(m_path, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            const QFileInfo info = it.fileInfo();
            // A folder's time moves when a refused entry was made and removed
            // again inside it: only its presence counts.
            if (info.isDir()) {
                files.insert(info.absoluteFilePath(), QStringLiteral("folder"));
                continue;
            }
            files.insert(info.absoluteFilePath(),
                         QStringLiteral("%1 %2").arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch()));
        }
        return files;
    }

    /// A new analysis `name` holding `run`, through saveNewMCData.
    const VNObject2Analysis* add(const TAcquisitionRun& run, QString name)
    {
        std::unique_ptr<VNMCData> data(VNDatabaseImport::fromRun(run));
        if (!m_db->saveNewMCData(data.get(), name))
            return nullptr;
        return m_db->getAnalysis(name);
    }

    static bool write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    static TAcquisitionRun run(TSyntheticRun::Kind kind, int scans, quint32 seed = 7)
    {
        TSyntheticRun::Options options;
        options.kind = kind;
        options.seed = seed;
        options.scanCount = scans;
        options.pointsPerScan = 60;
        return TSyntheticRun::generate(options);
    }

private:
    QTemporaryDir m_tmp;
    QString m_path;
    TProjectMgr m_manager;
    VNDatabase* m_db = nullptr;
};
