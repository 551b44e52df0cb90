#pragma once

#include <tcmfile.h>

#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QVector>

class ProjectFolder;

/// Points to print or draw: a chromatogram (one point per scan, x in minutes)
/// or a spectrum (one bar per mass, x in m/z, with a label per bar).
struct AnalysisSeries
{
    enum Kind { Chromatogram, Spectrum };
    Kind kind = Chromatogram;
    QString analysis;
    QString title; ///< "TIC", "EIC m/z 191.0 ± 0.5", "scan 120" ...
    QVector<double> x;
    QVector<double> y;
    QStringList labels; ///< spectra only: "191.2", or "370->191" for MS/MS
    int firstScan = 0;  ///< chromatograms: scan of x[0]
    bool msms = false;

    /// Keeps the points of a chromatogram whose time lies in [from, to]
    /// (minutes); false, leaving the series as it was, when none does.
    bool cropTime(double from, double to);
    /// Index of the highest point, -1 when there is none.
    int apex() const;
    QJsonObject toJson() const;
    /// Tab-separated lines with a header: "scan time abundance" or "m/z abundance label".
    QStringList toText() const;
};

/// The measured data of one analysis of a project, read from its acquisition
/// file: total-ion and extracted-ion chromatograms, spectra at one scan or
/// averaged over a range. Every failure is a translated reason, never a crash.
class AnalysisData : public QObject
{
    Q_OBJECT
public:
    AnalysisData();

    bool open(const ProjectFolder& project, const QString& analysis, QString* error);
    /// Opens an acquisition file directly (tests, the demo's checks).
    bool openFile(const QString& path, const QString& analysis, QString* error);

    int scanCount() const { return m_file.nbScans(); }
    quint32 acquisitionSystem() const { return m_file.acquisitionSystem(); }
    double lowMass() const { return m_file.lowMass(); }
    double highMass() const { return m_file.highMass(); }

    bool tic(AnalysisSeries* series, QString* error);
    /// Sum of the masses in [mass - window, mass + window] at every scan.
    bool eic(double mass, double window, AnalysisSeries* series, QString* error);
    /// The spectrum of scan `first` (first == last) or the mean spectrum of
    /// the scans first..last. MS/MS bars are labelled parent->daughter.
    bool spectrum(int first, int last, AnalysisSeries* series, QString* error);

    /// The refusal for an acquisition file that cannot be read, with the
    /// reader's reason.
    static QString damaged(const QString& analysis, const QString& reason);

private:
    bool loadAll(QString* error);
    QStringList transitionLabels(const TCMFile::Spectrum& spectrum) const;

    TCMFile m_file;
    QString m_analysis;
};
