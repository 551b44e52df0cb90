#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

class TAcquisitionRun;
struct TDetectorChannel;

/// The files of a project folder that vndb reads and writes: every analysis
/// lives in `<project>/<analysis folder>/<name>/` with its acquisition file
/// `<name>.tcm` and its description "acquisition.xml". The folder names come
/// from the object model, so vndb and the library agree on the layout.
class ProjectFolder : public QObject
{
    Q_OBJECT
public:
    explicit ProjectFolder(const QString& path);

    QString path() const { return m_path; }
    /// False, with a translated reason, when the project folder does not exist.
    bool exists(QString* error) const;
    /// False, with a translated reason, unless the folder exists and holds a
    /// project: its project database or one of a project's sub-folders.
    /// Commands that would write into any other folder refuse it, so that
    /// no folder becomes a project by accident (`vndb project init` makes one).
    bool holdsProject(QString* error) const;
    /// True when an analysis may be added here: a project, or a folder that
    /// is missing or empty (it becomes the project). False with `error` for
    /// a file or a folder that holds other things.
    bool acceptsAnalyses(QString* error) const;

    QString analysesPath() const;
    QString analysisPath(const QString& name) const;
    QString acquisitionFile(const QString& name) const;
    QString descriptionFile(const QString& name) const;

    /// Names of the analysis folders, sorted; hidden folders (work in progress) are left out.
    QStringList analyses() const;
    bool hasAnalysis(const QString& name) const;

    /// The acquisition file of analysis `name`, or a null string with a
    /// translated reason (no project, unknown analysis, no acquisition file).
    QString findAcquisitionFile(const QString& name, QString* error) const;

    /// A name usable as an analysis folder: not empty, no separator, no
    /// leading dot, no control character, at most 120 characters.
    static bool isValidName(const QString& name, QString* error);

    /// Adds analysis `name` holding `run`. The acquisition file and its
    /// description are written in a hidden folder and checked, and only then
    /// is the folder renamed into place: on any failure the project is left as
    /// it was. Refuses an existing name.
    /// The file holding the detector channels of analysis `name` (absent when it has none).
    QString detectorFile(const QString& name) const;
    /// The detector channels of analysis `name`; false with a translated reason for a damaged file.
    bool channels(const QString& name, QVector<TDetectorChannel>* channels, QString* error) const;
    /// Removes analysis `name` whole (used to undo a partly done import).
    bool removeAnalysis(const QString& name) const;
    bool addAnalysis(const QString& name, const TAcquisitionRun& run, QString* error) const;

private:
    QString m_path;
};
