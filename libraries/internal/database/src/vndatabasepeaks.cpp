// The project database's peaks and identification: chromatograms read from
// the analyses' files, their peaks kept as peak detections, and the reference
// compounds looked for in them.
#include "vnchromatogram.h"
#include "vndatabase.h"
#include "vndatabaselogging.h"
#include "vntovidatabaseinterface.h"

#include <tacquisitionrun.h>
#include <tanalysisnoise.h>
#include <tassert.h>
#include <tcmfile.h>
#include <tdetectorfile.h>
#include <theaderdatabase.h>
#include <tpeakdetectmapper.h>
#include <tprogressbarmgr.h>
#include <ttovicompound.h>
#include <ttovieic.h>
#include <ttovijoint.h>
#include <vnobject2analysis.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMap>

#include <algorithm>
#include <cmath>

namespace {

QString translate(const char* english, const char* french)
{
    return QCoreApplication::translate("VNDatabase", english, french);
}

const QString PeaksProperty = QStringLiteral("Peaks");
const QString ChromatogramProperty = QStringLiteral("Chromatogram");

// The peak detection of one chromatogram of one analysis.
QString detectionName(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram)
{
    return QStringLiteral("%1 [%2]").arg(analysis->name(), chromatogram.key());
}

// One line per peak, the numbers in a fixed order; read back by readPeaks.
QString writePeaks(const QList<TPeak>& peaks)
{
    QStringList lines;
    for (const TPeak& p : peaks) {
        QStringList numbers;
        for (double v :
             {p.start, p.apex, p.end, p.baselineStart, p.baselineEnd, p.area, p.height, p.width, p.signalToNoise})
            numbers << QString::number(v, 'g', 17);
        lines << numbers.join(QLatin1Char(' '));
    }
    return lines.join(QLatin1Char('\n'));
}

QList<TPeak> readPeaks(const QString& text)
{
    QList<TPeak> peaks;
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList numbers = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (numbers.size() != 9)
            continue;
        double v[9];
        bool ok = true;
        for (int i = 0; i < 9 && ok; ++i)
            v[i] = numbers.at(i).toDouble(&ok);
        if (!ok)
            continue;
        TPeak p;
        p.start = v[0];
        p.apex = v[1];
        p.end = v[2];
        p.baselineStart = v[3];
        p.baselineEnd = v[4];
        p.area = v[5];
        p.height = v[6];
        p.width = v[7];
        p.signalToNoise = v[8];
        peaks.append(p);
    }
    return peaks;
}

// The acquisition file of the analysis with every scan readable; null (with
// the reason) when it cannot be.
TCMFile* loadedFile(const VNObject2Analysis* analysis, QString* error)
{
    TCMFile* tcm = nullptr;
    VNDatabase::analysisTCM(analysis, &tcm);
    if (!tcm || tcm->nbScans() < 1) {
        *error = translate("analysis '%1' has no readable acquisition file",
                           "l'analyse '%1' n'a pas de fichier d'acquisition lisible")
                     .arg(analysis->name());
        return nullptr;
    }
    const long last = tcm->nbScans() - 1;
    if (tcm->isLoaded() && tcm->firstLoadedScan() == 0 && tcm->lastLoadedScan() == last)
        return tcm;
    if (!tcm->loadContent(-1.0f, -1.0f, 0, static_cast<unsigned long>(last))) {
        *error = translate("the acquisition file of analysis '%1' is damaged (%2)",
                           "le fichier d'acquisition de l'analyse '%1' est endommagé (%2)")
                     .arg(analysis->name(), tcm->errorString());
        return nullptr;
    }
    return tcm;
}

bool detectorChannels(const VNObject2Analysis* analysis, QVector<TDetectorChannel>* channels, QString* error)
{
    const QString folder = QFileInfo(VNDatabase::analysisTCMPath(analysis)).absolutePath();
    QString why;
    if (TDetectorFile::load(QDir(folder).filePath(QString::fromLatin1(TDetectorFile::fileName())), channels, &why))
        return true;
    *error = translate("the detector channels of analysis '%1' cannot be read: %2",
                       "les voies de détecteur de l'analyse '%1' sont illisibles : %2")
                 .arg(analysis->name(), why);
    return false;
}

// Nominal mass of a measured one: hydrocarbon ions sit a little above their
// nominal mass, and halogenated ones a little below.
long nominal(double mass)
{
    return long(std::floor(mass + 0.3));
}

bool hasScans(const VNObject2Analysis* analysis)
{
    TCMFile* tcm = nullptr;
    VNDatabase::analysisTCM(analysis, &tcm);
    return tcm && tcm->nbScans() > 0 && tcm->pointCount() > 0;
}

} // namespace

QString VNChromatogram::key() const
{
    switch (kind) {
    case Tic:
        return QStringLiteral("TIC");
    case Ion:
        return QStringLiteral("ion %1 %2").arg(mass).arg(window);
    case Transition:
        return QStringLiteral("transition %1 %2").arg(parent).arg(mass);
    case Channel:
        return QStringLiteral("channel %1").arg(channel);
    }
    return QString();
}

bool VNDatabase::analysisChromatogram(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram,
                                      QVector<double>* times, QVector<double>* values, QString* error)
{
    QString reason;
    QString* why = error ? error : &reason;
    if (!analysis) {
        *why = translate("no analysis", "aucune analyse");
        return false;
    }
    if (chromatogram.kind == VNChromatogram::Channel) {
        QVector<TDetectorChannel> channels;
        if (!detectorChannels(analysis, &channels, why))
            return false;
        QStringList names;
        for (const TDetectorChannel& one : qAsConst(channels)) {
            if (one.name == chromatogram.channel) {
                *times = one.times;
                *values = one.values;
                return true;
            }
            names << one.name;
        }
        // Channels recorded on the scans' own time base live in the acquisition file.
        TCMFile* tcm = nullptr;
        analysisTCM(analysis, &tcm);
        const QStringList inFile = tcm ? tcm->channelNames() : QStringList();
        const int index = inFile.indexOf(chromatogram.channel);
        if (index >= 0) {
            TCMFile* loaded = loadedFile(analysis, why);
            if (!loaded)
                return false;
            const int n = loaded->nbScans();
            const double* channel = loaded->channel(index);
            if (!channel) {
                *why = translate("the acquisition file of analysis '%1' is damaged (%2)",
                                 "le fichier d'acquisition de l'analyse '%1' est endommagé (%2)")
                           .arg(analysis->name(), loaded->errorString());
                return false;
            }
            *times = QVector<double>(loaded->rtime(), loaded->rtime() + n);
            *values = QVector<double>(channel, channel + n);
            return true;
        }
        names << inFile;
        *why = names.isEmpty()
            ? translate("analysis '%1' has no detector channel", "l'analyse '%1' n'a aucune voie de détecteur")
                  .arg(analysis->name())
            : translate("analysis '%1' has no channel '%2' (its channels: %3)",
                        "l'analyse '%1' n'a pas de voie '%2' (ses voies : %3)")
                  .arg(analysis->name(), chromatogram.channel, names.join(QStringLiteral(", ")));
        return false;
    }

    TCMFile* tcm = loadedFile(analysis, why);
    if (!tcm)
        return false;
    const int n = tcm->nbScans();
    *times = QVector<double>(tcm->rtime(), tcm->rtime() + n);
    if (chromatogram.kind == VNChromatogram::Tic) {
        *values = QVector<double>(tcm->tic(), tcm->tic() + n);
        return true;
    }
    float low = 0.0f, high = 0.0f;
    if (chromatogram.kind == VNChromatogram::Ion) {
        if (!(chromatogram.mass > 0.0) || !(chromatogram.window >= 0.0) || chromatogram.window > 1000.0) {
            *why = translate("the mass must be positive and the window between 0 and 1000",
                             "la masse doit être positive et la fenêtre comprise entre 0 et 1000");
            return false;
        }
        low = float(chromatogram.mass - chromatogram.window);
        high = float(chromatogram.mass + chromatogram.window);
        if (!tcm->mzRangeExist(low, high)) {
            *why = translate("m/z %1 is outside the masses of analysis '%2' (%3 to %4)",
                             "m/z %1 est hors des masses de l'analyse '%2' (%3 à %4)")
                       .arg(chromatogram.mass)
                       .arg(analysis->name())
                       .arg(tcm->lowMass())
                       .arg(tcm->highMass());
            return false;
        }
    } else {
        // A transition's key is its daughter x 100 plus the number of earlier
        // transitions with the same daughter.
        const auto transitions = tcm->transitions();
        int rank = 0;
        int found = -1;
        for (int i = 0; i < transitions.size() && found < 0; ++i) {
            const bool sameDaughter
                = std::lround(transitions[i].second * 100.0) == std::lround(chromatogram.mass * 100.0);
            if (sameDaughter && std::lround(transitions[i].first * 100.0) == std::lround(chromatogram.parent * 100.0))
                found = i;
            else if (sameDaughter)
                ++rank;
        }
        if (found < 0) {
            *why = translate("analysis '%1' has no transition %2->%3", "l'analyse '%1' n'a pas de transition %2->%3")
                       .arg(analysis->name())
                       .arg(chromatogram.parent)
                       .arg(chromatogram.mass);
            return false;
        }
        low = high = float((std::lround(chromatogram.mass * 100.0) + rank) / 100.0);
    }
    QVector<float> extracted(n);
    if (tcm->ionAtFullRange(extracted.data(), low, high) != n) {
        *why = translate("the acquisition file of analysis '%1' is damaged (%2)",
                         "le fichier d'acquisition de l'analyse '%1' est endommagé (%2)")
                   .arg(analysis->name(), tcm->errorString());
        return false;
    }
    values->resize(n);
    for (int i = 0; i < n; ++i)
        (*values)[i] = double(extracted[i]);
    return true;
}

QList<TPeak> VNDatabase::analysisDetectPeaks(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram,
                                             QString* error, bool flush)
{
    QString reason;
    QString* why = error ? error : &reason;
    QVector<double> times, values;
    if (!analysisChromatogram(analysis, chromatogram, &times, &values, why))
        return QList<TPeak>();
    double noise = 0.0;
    if (chromatogram.kind == VNChromatogram::Tic) {
        const TAnalysisNoise* record = analysisNoise(analysis);
        if (record && record->valid && record->level > 0.0)
            noise = record->level;
    }
    const QVector<TPeak> found = TPeakFinder::find(times, values, noise);
    QList<TPeak> peaks(found.begin(), found.end());

    const auto* mapper = dynamic_cast<const Sedra::TPeakDetectMapper*>(getMapper(VNObjectTypePeakDetection));
    if (!mapper) {
        t_assert("mapper != 0", "vndatabase", __LINE__, true);
        *why = translate("the peaks of analysis '%1' cannot be stored",
                         "les pics de l'analyse '%1' ne peuvent être enregistrés")
                   .arg(analysis->name());
        return peaks;
    }
    const QString name = detectionName(analysis, chromatogram);
    const VNObject2* detection = mapper->get(name);
    if (!detection) {
        const Sedra::TPropertyObject* made = mapper->createIndexation(name, QStringList{analysis->name()}, false);
        detection = made ? made->object() : nullptr;
    }
    const bool stored = detection && setObjectProperty(detection, ChromatogramProperty, chromatogram.key(), false)
        && setObjectProperty(detection, PeaksProperty, writePeaks(peaks), flush);
    if (!stored)
        *why = translate("the peaks of analysis '%1' cannot be stored",
                         "les pics de l'analyse '%1' ne peuvent être enregistrés")
                   .arg(analysis->name());
    qCDebug(vnDatabase) << peaks.size() << "peaks on" << name << (stored ? "stored" : "not stored");
    return peaks;
}

QList<TPeak> VNDatabase::analysisPeaks(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram) const
{
    const auto* mapper = dynamic_cast<const Sedra::TPeakDetectMapper*>(getMapper(VNObjectTypePeakDetection));
    if (!mapper) {
        t_assert("mapper != 0", "vndatabase", __LINE__, true);
        return QList<TPeak>();
    }
    const VNObject2* detection = analysis ? mapper->get(detectionName(analysis, chromatogram)) : nullptr;
    bool found = false;
    const Sedra::TProperty property
        = detection ? getObjectProperties(detection, PeaksProperty, &found) : Sedra::TProperty();
    return found ? readPeaks(property.value()) : QList<TPeak>();
}

bool VNDatabase::analysisHasPeaks(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram) const
{
    const auto* mapper = dynamic_cast<const Sedra::TPeakDetectMapper*>(getMapper(VNObjectTypePeakDetection));
    return mapper && analysis && mapper->get(detectionName(analysis, chromatogram));
}

VNChromatogram VNDatabase::alkaneChromatogram(const VNObject2Analysis* analysis)
{
    if (analysis && !hasScans(analysis)) {
        QVector<TDetectorChannel> channels;
        QString error;
        if (detectorChannels(analysis, &channels, &error)) {
            for (const TDetectorChannel& one : qAsConst(channels)) {
                if (one.name.contains(QLatin1String("FID"), Qt::CaseInsensitive))
                    return VNChromatogram::detector(one.name);
            }
        }
        TCMFile* tcm = nullptr;
        analysisTCM(analysis, &tcm);
        for (const QString& name : tcm ? tcm->channelNames() : QStringList()) {
            if (name.contains(QLatin1String("FID"), Qt::CaseInsensitive))
                return VNChromatogram::detector(name);
        }
    }
    return VNChromatogram::ion(57.0);
}

namespace {

// The scale drawn from the peaks of the n-alkane chromatogram.
TRetentionIndexScale scaleOf(const VNObject2Analysis* analysis, const VNChromatogram& chromatogram,
                             const QVector<TPeak>& peaks, const QVector<int>& alkaneCarbons,
                             const QVector<double>& markerIndices)
{
    TIdentifier::AlkaneEvidence evidence;
    TCMFile* tcm = nullptr;
    if (chromatogram.kind == VNChromatogram::Ion && !peaks.isEmpty())
        VNDatabase::analysisTCM(analysis, &tcm);
    if (tcm && tcm->isLoaded() && tcm->acquisitionSystem() != TAcquisitionRun::SystemMSMS) {
        // An n-alkane's spectrum shows its molecular ion (14n + 2) and not
        // that of the next homologue: that names the series.
        evidence = [tcm, &peaks](int peak, int carbons) {
            const double* times = tcm->rtime();
            const int n = tcm->nbScans();
            int scan = int(std::lower_bound(times, times + n, peaks[peak].apex) - times);
            scan = std::min(std::max(scan, 0), n - 1);
            const quint32* keys = nullptr;
            const float* abundances = nullptr;
            const int count = tcm->scanPoints(static_cast<unsigned long>(scan), &keys, &abundances);
            double base = 0.0, here = 0.0, next = 0.0;
            for (int p = 0; p < count; ++p) {
                const long mass = nominal(keys[p] / 100.0);
                base = std::max(base, double(abundances[p]));
                if (mass == 14 * carbons + 2)
                    here += double(abundances[p]);
                else if (mass == 14 * (carbons + 1) + 2)
                    next += double(abundances[p]);
            }
            const double floor = 0.003 * base;
            return here > floor && next <= floor ? 1.0 : 0.0;
        };
    } else {
        // Without spectra, the isoprenoids just after n-C17 and n-C18 do.
        evidence = TIdentifier::markerEvidence(peaks, markerIndices);
    }
    return TIdentifier::calibrate(peaks, alkaneCarbons, evidence);
}

} // namespace

TRetentionIndexScale VNDatabase::analysisRetentionIndexScale(const VNObject2Analysis* analysis,
                                                             const QVector<int>& alkaneCarbons,
                                                             const QVector<double>& markerIndices)
{
    const VNChromatogram chromatogram = alkaneChromatogram(analysis);
    QString error;
    const QList<TPeak> list = analysisDetectPeaks(analysis, chromatogram, &error);
    if (list.isEmpty() && !error.isEmpty())
        qCDebug(vnDatabase) << "no n-alkane chromatogram:" << error;
    return scaleOf(analysis, chromatogram, QVector<TPeak>(list.begin(), list.end()), alkaneCarbons, markerIndices);
}

QList<TIdentificationTarget> VNDatabase::identificationTargets(VNToviDatabaseInterface* reference)
{
    QList<TIdentificationTarget> targets;
    if (!reference)
        return targets;
    // The first ion joined to a compound is the one it is measured on.
    QHash<QString, double> ionOf;
    for (const VNObject2* object : reference->getAllJoints()) {
        const Sedra::TToviJoint* joint = reference->getJoint(object);
        if (!joint || ionOf.contains(joint->compoundKey()))
            continue;
        const Sedra::TToviEIC* eic = reference->getEIC(reference->getEIC(joint->eicKey()));
        bool ok = false;
        const double mass = eic ? eic->value().section(QLatin1Char(';'), 0, 0).trimmed().toDouble(&ok) : 0.0;
        if (ok && mass > 0.0)
            ionOf.insert(joint->compoundKey(), mass);
    }
    for (const Sedra::TToviCompound* compound : reference->getAllToviCompounds()) {
        if (!compound)
            continue;
        TIdentificationTarget target;
        target.compoundId = compound->compoundId();
        target.shortName = compound->orlName().isEmpty() ? compound->toviKey() : compound->orlName();
        bool ok = false;
        const double index = compound->retentionIndex().toDouble(&ok);
        if (ok)
            target.retentionIndex = index;
        target.carbons = compound->carbons().toInt();
        target.ion = ionOf.value(compound->compoundId(), ionOf.value(compound->toviKey()));
        if (!(target.ion > 0.0)) {
            const double expected = compound->expectedIons().section(QLatin1Char(';'), 0, 0).trimmed().toDouble(&ok);
            if (ok)
                target.ion = expected;
        }
        targets.append(target);
    }
    return targets;
}

TCompoundMeasures VNDatabase::analysisIdentify(const VNObject2Analysis* analysis,
                                               const QList<TIdentificationTarget>& targets, double window)
{
    TCompoundMeasures measures;
    // Every ion is read and searched once, however many compounds it measures.
    QMap<double, QVector<TPeak>> peaksOfIon;
    QMap<double, QString> ionProblem;
    const bool scans = analysis && hasScans(analysis);
    const VNChromatogram alkanes = alkaneChromatogram(analysis);
    for (const TIdentificationTarget& target : targets) {
        if (TIdentifier::missingReference(target).isEmpty())
            peaksOfIon.insert(scans ? target.ion : 0.0, QVector<TPeak>());
    }
    TProgressBarMgr progress(peaksOfIon.size() + 1,
                             translate("Identifying compounds in %1", "Identification des composés de %1")
                                 .arg(analysis ? analysis->name() : QString()));
    QString alkaneError;
    const QList<TPeak> alkaneList = analysisDetectPeaks(analysis, alkanes, &alkaneError, false);
    const QVector<TPeak> alkanePeaks(alkaneList.begin(), alkaneList.end());
    const TRetentionIndexScale scale
        = scaleOf(analysis, alkanes, alkanePeaks, TIdentifier::referenceAlkanes(targets.toVector()),
                  TIdentifier::alkaneMarkers(targets.toVector()));
    progress.setProgress(1);
    int done = 1;
    for (auto it = peaksOfIon.begin(); it != peaksOfIon.end(); ++it) {
        // Without scans, every compound is measured on the flame detector.
        const VNChromatogram chromatogram = scans ? VNChromatogram::ion(it.key()) : alkanes;
        if (chromatogram.key() == alkanes.key()) {
            it.value() = alkanePeaks;
            if (alkanePeaks.isEmpty() && !alkaneError.isEmpty())
                ionProblem.insert(it.key(), alkaneError);
        } else {
            QString error;
            const QList<TPeak> list = analysisDetectPeaks(analysis, chromatogram, &error, false);
            if (list.isEmpty() && !error.isEmpty())
                ionProblem.insert(it.key(), error);
            it.value() = QVector<TPeak>(list.begin(), list.end());
        }
        progress.setProgress(++done);
    }
    // Every chromatogram's peaks are written together: one transaction.
    if (headerDb() && headerDb()->isOpen() && !isReadOnly() && !headerDb()->flushDatabase())
        qCDebug(vnDatabase) << "the peaks of" << (analysis ? analysis->name() : QString()) << "were not written";
    for (const TIdentificationTarget& target : targets) {
        const double ion = scans ? target.ion : 0.0;
        if (ionProblem.contains(ion)) {
            measures.append(TIdentifier::notFound(target, ionProblem.value(ion)));
            continue;
        }
        TCompoundMeasure measure = TIdentifier::identify(target, peaksOfIon.value(ion), scale, window);
        measure.ion = ion;
        measures.append(measure);
    }
    return measures;
}
