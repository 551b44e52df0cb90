#pragma once

#include "vnfileformats_export.h"

#include <QDateTime>
#include <QDomElement>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

class TAcquisitionRun;
class TCMFile;

/// The description of an acquisition kept beside its ".tcm" file as
/// "acquisition.xml": name, date, acquisition system, scan count, time and
/// mass ranges, signals and MS/MS transitions. A default description (all
/// empty, no signal but "TIC") is valid and is what new analyses get.
class VNFILEFORMATS_EXPORT TDescriptionAcquisition
{
public:
    static const char* fileName() { return "acquisition.xml"; }
    static const char* rootTag() { return "acquisition"; }
    static constexpr int Version = 1;

    TDescriptionAcquisition();

    static TDescriptionAcquisition fromRun(const TAcquisitionRun& run);
    /// From an open acquisition file (its header only: the times need the content loaded).
    static TDescriptionAcquisition fromFile(TCMFile& file);

    QString name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }
    QDateTime date() const { return m_date; }
    void setDate(const QDateTime& date) { m_date = date; }
    quint32 acquisitionSystem() const { return m_system; }
    void setAcquisitionSystem(quint32 system) { m_system = system; }
    int scanCount() const { return m_scanCount; }
    void setScanCount(int count) { m_scanCount = count; }
    double startTime() const { return m_startTime; }
    double endTime() const { return m_endTime; }
    void setTimeRange(double start, double end)
    {
        m_startTime = start;
        m_endTime = end;
    }
    double lowMass() const { return m_lowMass; }
    double highMass() const { return m_highMass; }
    void setMassRange(double low, double high)
    {
        m_lowMass = low;
        m_highMass = high;
    }
    /// The signals of the acquisition, the main one ("TIC") first.
    QStringList signalNames() const { return m_signals; }
    void setSignalNames(const QStringList& names) { m_signals = names; }
    QVector<QPair<float, float>> transitions() const { return m_transitions; }
    void setTransitions(const QVector<QPair<float, float>>& transitions) { m_transitions = transitions; }

    /// Writes the description into `element` (its children are replaced).
    bool encode(QDomElement& element) const;
    /// Reads a description written by `encode`; changes nothing and logs why on failure.
    bool decode(const QDomElement& element);

    /// Writes the file atomically, making its folder when needed.
    bool save(const QString& path) const;
    /// Reads the file; a missing file, bad XML or bad values are refused with a message.
    bool load(const QString& path);

    bool operator==(const TDescriptionAcquisition& other) const;
    bool operator!=(const TDescriptionAcquisition& other) const { return !(*this == other); }

private:
    QString m_name;
    QDateTime m_date;
    quint32 m_system = 0;
    int m_scanCount = 0;
    double m_startTime = 0.0;
    double m_endTime = 0.0;
    double m_lowMass = 0.0;
    double m_highMass = 0.0;
    QStringList m_signals;
    QVector<QPair<float, float>> m_transitions;
};
