#include "tsyntheticrun.h"

#include "tcmfile.h"
#include "tdescriptionacquisition.h"

#include <QDir>

#include <algorithm>
#include <climits>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr double H = 1.0078250319;
constexpr double C = 12.0;
constexpr int LowMass = 40;

struct Ion
{
    double mass;
    double relative; // % of the base peak
};

struct Compound
{
    QString name;
    double retentionIndex;
    double amount; // apex abundance of the base peak
    int parent;    // nominal molecular mass, the MS/MS parent
    int carbons;   // flame detector response
    std::vector<Ion> ions;
};

// Portable generator: the standard distributions are not the same on every
// library, the raw Mersenne Twister output is.
class Random
{
public:
    explicit Random(quint32 seed)
        : m_engine(seed)
    { }
    double uniform() { return (m_engine() >> 8) * (1.0 / 16777216.0); }
    double exponential(double mean) { return -std::log(1.0 - uniform()) * mean; }
    int jitter(int amplitude) { return int(m_engine() % quint32(2 * amplitude + 1)) - amplitude; }

private:
    std::mt19937 m_engine;
};

double alkyl(int k)
{
    return C * k + H * (2 * k + 1);
}
double alkenyl(int k)
{
    return C * k + H * (2 * k - 1);
}
double alkane(int n)
{
    return C * n + H * (2 * n + 2);
}

std::vector<Compound> compounds()
{
    std::vector<Compound> list;
    // n-alkanes of a mature marine oil: a smooth envelope centred near C17-C20.
    for (int n = 10; n <= 40; ++n) {
        Compound c{QStringLiteral("nC%1").arg(n), 100.0 * n, 2.0e6 * std::exp(-std::pow((n - 18) / 9.0, 2.0)) + 2.0e4,
                   int(std::lround(alkane(n))),   n,         {}};
        const double base[] = {80, 100, 65, 45, 28};
        for (int k = 3; k < n; ++k) {
            const double relative = k - 3 < 5 ? base[k - 3] : 28.0 * std::pow(0.78, k - 7);
            c.ions.push_back({alkyl(k), std::max(relative, 0.4)});
        }
        const double alkenes[] = {35, 25, 15, 10, 6};
        for (int k = 3; k <= 7 && k < n; ++k)
            c.ions.push_back({alkenyl(k), alkenes[k - 3]});
        c.ions.push_back({alkane(n), std::max(6.0 - 0.15 * n, 0.8)});
        list.push_back(c);
    }
    // Isoprenoids just after n-C17 and n-C18; their 113 and 183 ions come from
    // cleavage at the branch points.
    const double c17 = 2.0e6 * std::exp(-std::pow(-1 / 9.0, 2.0));
    list.push_back({QStringLiteral("Pr"),
                    1707,
                    0.7 * c17,
                    268,
                    19,
                    {{alkyl(3), 90},
                     {alkyl(4), 100},
                     {alkyl(5), 70},
                     {alkyl(6), 30},
                     {alkyl(8), 40},
                     {alkyl(13), 15},
                     {alkane(19), 0.5}}});
    list.push_back({QStringLiteral("Ph"),
                    1811,
                    0.45 * c17,
                    282,
                    20,
                    {{alkyl(3), 80},
                     {alkyl(4), 100},
                     {alkyl(5), 70},
                     {alkyl(6), 35},
                     {alkyl(8), 25},
                     {alkyl(9), 10},
                     {alkyl(13), 12},
                     {alkane(20), 0.5}}});

    const double bio = 4.0e4;
    // Hopanes: ring A/B fragment C14H23+ at m/z 191.18, molecular ions
    // C(n)H(2n-8) (five rings): Ts and Tm at 370, hopane at 412.
    auto hopane
        = [&](const QString& name, double ri, double amount, int n, double m191, double extraMass, double extra) {
              const double molecular = C * n + H * (2 * n - 8);
              Compound c{name,
                         ri,
                         amount * bio,
                         int(std::lround(molecular)),
                         n,
                         {{C * 14 + H * 23, m191},
                          {molecular, 15},
                          {molecular - C - 3 * H, 6},
                          {C * 11 + H * 16 + 0.0, 25},
                          {C * 7 + H * 11, 30}}};
              if (extra > 0)
                  c.ions.push_back({extraMass, extra});
              list.push_back(c);
          };
    hopane(QStringLiteral("Ts"), 2880, 0.6, 27, 60, C * 27 + H * 46, 45); // strong molecular ion
    hopane(QStringLiteral("Tm"), 2920, 0.5, 27, 100, 0, 0);
    hopane(QStringLiteral("C29H"), 3075, 1.2, 29, 100, C * 13 + H * 21, 40); // 30-norhopane, m/z 177
    hopane(QStringLiteral("C30H"), 3140, 2.0, 30, 100, C * 27 + H * 45, 15); // hopane, m/z 369
    for (int n = 31; n <= 35; ++n) {                                         // homohopanes, 22S before 22R
        const double amount = 0.9 * std::pow(0.68, n - 31);
        const double sideChain = C * (n - 16) + H * (2 * (n - 16) - 5); // ring E fragment, m/z 205, 219 ...
        const double ri = 3235 + 88.0 * (n - 31);
        hopane(QStringLiteral("C%1H22S").arg(n), ri, amount, n, 100, sideChain, 30);
        hopane(QStringLiteral("C%1H22R").arg(n), ri + 18, amount * 0.7, n, 100, sideChain, 30);
    }
    // Regular steranes C27-C30: ring fragment C16H25+ at m/z 217.20 (218 for
    // the 14beta,17beta isomers), molecular ions C(n)H(2n-6).
    const double steranes[][2] = {{27, 1.0}, {28, 0.7}, {29, 1.1}, {30, 0.15}};
    for (const auto& s : steranes) {
        const int n = int(s[0]);
        const double molecular = C * n + H * (2 * n - 6);
        const double ri0 = 2790 + 70.0 * (n - 27);
        const double isomers[][2] = {{0, 0.8}, {22, 0.9}, {30, 0.8}, {60, 1.0}};
        const char* isomerNames[] = {"aaa20S", "abb20R", "abb20S", "aaa20R"};
        for (int i = 0; i < 4; ++i) {
            const bool abb = i == 1 || i == 2;
            Compound c{QStringLiteral("C%1%2").arg(n).arg(QLatin1String(isomerNames[i])),
                       ri0 + isomers[i][0],
                       s[1] * isomers[i][1] * bio,
                       int(std::lround(molecular)),
                       n,
                       {{C * 16 + H * 25, abb ? 50.0 : 100.0},
                        {C * 16 + H * 26, abb ? 100.0 : 40.0},
                        {C * 11 + H * 17, 45},
                        {C * 8 + H * 13, 30},
                        {C * 7 + H * 11, 35},
                        {molecular, 25},
                        {molecular - C - 3 * H, 10}}};
            list.push_back(c);
        }
    }
    std::sort(list.begin(), list.end(),
              [](const Compound& a, const Compound& b) { return a.retentionIndex < b.retentionIndex; });
    return list;
}

double sigmaAt(double time)
{
    return 0.02 + 0.0004 * time;
}

} // namespace

double TSyntheticRun::retentionTime(const Options& options, double retentionIndex)
{
    // n-C10 elutes two minutes after the start and n-C40 four minutes before
    // the end of a linear programme: retention is linear in the index between them.
    const double t10 = options.startTime + 0.04 * (options.endTime - options.startTime);
    const double t40 = options.endTime - 0.07 * (options.endTime - options.startTime);
    return t10 + (retentionIndex - 1000.0) / 3000.0 * (t40 - t10);
}

QVector<TSyntheticRun::PlacedPeak> TSyntheticRun::placedPeaks(const Options& options)
{
    QVector<PlacedPeak> placed;
    for (const Compound& c : compounds()) {
        PlacedPeak p;
        p.name = c.name;
        p.retentionIndex = c.retentionIndex;
        p.time = retentionTime(options, c.retentionIndex);
        p.sigma = sigmaAt(p.time);
        p.amount = c.amount;
        p.carbons = c.carbons;
        p.parent = c.parent;
        for (const Ion& ion : c.ions)
            p.ions.append(qMakePair(ion.mass, ion.relative));
        placed.append(p);
    }
    return placed;
}

TSyntheticRun::PlacedPeak TSyntheticRun::placedPeak(const Options& options, const QString& name)
{
    for (const PlacedPeak& p : placedPeaks(options)) {
        if (p.name == name)
            return p;
    }
    return PlacedPeak();
}

namespace {
// The integral over time of a Gaussian of unit apex.
double gaussianArea(double sigma)
{
    return sigma * std::sqrt(2.0 * M_PI);
}
} // namespace

double TSyntheticRun::PlacedPeak::ionArea(double mass) const
{
    // The generator adds ions up on their nominal mass.
    double relative = 0.0;
    for (const auto& ion : ions) {
        if (std::lround(ion.first) == std::lround(mass))
            relative += ion.second;
    }
    return amount * relative / 100.0 * gaussianArea(sigma);
}

double TSyntheticRun::PlacedPeak::ticArea() const
{
    double relative = 0.0;
    for (const auto& ion : ions) {
        if (std::lround(ion.first) >= LowMass)
            relative += ion.second;
    }
    return amount * relative / 100.0 * gaussianArea(sigma);
}

double TSyntheticRun::PlacedPeak::flameArea() const
{
    return amount * carbons * 0.05 * gaussianArea(sigma);
}

double TSyntheticRun::PlacedPeak::transitionArea(int parentMass, int daughter) const
{
    return parentMass == parent ? 0.3 * ionArea(daughter) : 0.0;
}

TAcquisitionRun TSyntheticRun::generate(const Options& options)
{
    TAcquisitionRun run;
    run.name = options.name;
    run.date = QDateTime(QDate(2024, 1, 1).addDays(options.seed % 365), QTime(9, 0), Qt::UTC);
    run.acquisitionSystem = options.kind == MSMS ? TAcquisitionRun::SystemMSMS : TAcquisitionRun::SystemFullScan;
    const int n = std::max(options.scanCount, 0);
    Random random(options.seed);
    const std::vector<Compound> list = compounds();
    std::vector<double> times(std::size_t(list.size()));
    for (std::size_t i = 0; i < list.size(); ++i)
        times[i] = retentionTime(options, list[i].retentionIndex);
    const double step = n > 1 ? (options.endTime - options.startTime) / (n - 1) : 0.0;

    // MS/MS: hopanes to 191 and steranes to 217, ordered by daughter then parent.
    std::vector<int> transitionDaughter;
    std::vector<int> transitionParent;
    if (options.kind == MSMS) {
        for (int parent : {370, 384, 398, 412, 426, 440})
            transitionDaughter.push_back(191), transitionParent.push_back(parent);
        for (int parent : {372, 386, 400, 414})
            transitionDaughter.push_back(217), transitionParent.push_back(parent);
        for (std::size_t i = 0; i < transitionParent.size(); ++i)
            run.transitions.append(qMakePair(float(transitionParent[i]), float(transitionDaughter[i])));
    }

    const int highMass = std::max(600, LowMass + options.pointsPerScan - 1);
    const int massCount = highMass - LowMass + 1;
    std::vector<double> signal(static_cast<std::size_t>(massCount));
    std::vector<double> value(static_cast<std::size_t>(massCount));
    std::vector<int> order(static_cast<std::size_t>(massCount));
    std::vector<quint32> keys;
    std::vector<float> abundances;
    QVector<double> fid;
    if (options.kind == Multichannel)
        fid.reserve(n);

    run.rtimes.reserve(n);
    run.tic.reserve(n);
    run.scanOffsets.reserve(n + 1);
    const qint64 expected = qint64(n)
        * (options.kind == MSMS ? qint64(transitionParent.size()) : std::min(options.pointsPerScan, massCount));
    run.masses.reserve(int(std::min<qint64>(expected, INT_MAX / 8)));
    run.abundances.reserve(int(std::min<qint64>(expected, INT_MAX / 8)));

    std::size_t firstActive = 0;
    for (int scan = 0; scan < n; ++scan) {
        const double t = options.startTime + step * scan;
        const double window = 6.0 * sigmaAt(t);
        while (firstActive < list.size() && times[firstActive] < t - window)
            ++firstActive;
        keys.clear();
        abundances.clear();
        double flame = 0.0;

        if (options.kind == MSMS) {
            for (std::size_t k = 0; k < transitionParent.size(); ++k) {
                double v = 0.0;
                for (std::size_t i = firstActive; i < list.size() && times[i] <= t + window; ++i) {
                    if (list[i].parent != transitionParent[k])
                        continue;
                    const double g = std::exp(-0.5 * std::pow((t - times[i]) / sigmaAt(times[i]), 2.0));
                    for (const Ion& ion : list[i].ions) {
                        if (std::lround(ion.mass) == transitionDaughter[k])
                            v += list[i].amount * 0.3 * ion.relative / 100.0 * g;
                    }
                }
                v += random.exponential(options.noise * 0.2);
                int rank = 0;
                for (std::size_t j = 0; j < k; ++j)
                    rank += transitionDaughter[j] == transitionDaughter[k];
                keys.push_back(quint32(transitionDaughter[k] * 100 + rank));
                abundances.push_back(float(v));
            }
        } else {
            std::fill(signal.begin(), signal.end(), 0.0);
            for (std::size_t i = firstActive; i < list.size() && times[i] <= t + window; ++i) {
                const double g = std::exp(-0.5 * std::pow((t - times[i]) / sigmaAt(times[i]), 2.0));
                if (g < 1e-6)
                    continue;
                flame += list[i].amount * list[i].carbons * g;
                for (const Ion& ion : list[i].ions) {
                    const long nominal = std::lround(ion.mass);
                    if (nominal >= LowMass && nominal <= highMass)
                        signal[std::size_t(nominal - LowMass)] += list[i].amount * ion.relative / 100.0 * g;
                }
            }
            // Column bleed and electronic noise on every mass; the centroider
            // keeps the most intense points up to the requested count.
            for (int m = 0; m < massCount; ++m) {
                value[std::size_t(m)] = signal[std::size_t(m)] + random.exponential(options.noise);
                order[std::size_t(m)] = m;
            }
            const int keep = std::min(options.pointsPerScan, massCount);
            if (keep < massCount) {
                std::nth_element(order.begin(), order.begin() + keep, order.end(), [&value](int a, int b) {
                    return value[std::size_t(a)] > value[std::size_t(b)]
                        || (value[std::size_t(a)] == value[std::size_t(b)] && a < b);
                });
                std::sort(order.begin(), order.begin() + keep);
            }
            for (int j = 0; j < std::max(keep, 0); ++j) {
                const int nominal = LowMass + order[std::size_t(j)];
                // Hydrocarbon ions sit about 0.1 % above their nominal mass;
                // the centroid wanders by a few hundredths from scan to scan.
                const int key = int(std::lround(nominal * 100.11)) + random.jitter(2);
                keys.push_back(quint32(key));
                abundances.push_back(float(value[std::size_t(order[std::size_t(j)])]));
            }
        }
        run.appendScan(t, keys.data(), abundances.data(), int(keys.size()));
        if (options.kind == Multichannel)
            fid.append(flame * 0.05 + 500.0 + 20.0 * t + random.exponential(options.noise));
    }

    if (options.kind == Multichannel) {
        run.channelNames << QStringLiteral("FID") << QStringLiteral("m/z 191") << QStringLiteral("m/z 217");
        run.channels.append(fid);
        for (int target : {191, 217}) {
            QVector<double> trace(n, 0.0);
            for (int scan = 0; scan < n; ++scan) {
                const quint32* k = run.massesAtScan(scan);
                const float* a = run.abundancesAtScan(scan);
                for (int p = 0; p < run.pointsAtScan(scan); ++p) {
                    if (k[p] >= quint32(target * 100 - 50) && k[p] <= quint32(target * 100 + 50))
                        trace[scan] += a[p];
                }
            }
            run.channels.append(trace);
        }
    }
    return run;
}

bool TSyntheticRun::write(const TAcquisitionRun& run, const QString& folder, QString* tcmPath, QString* error)
{
    if (!QDir().mkpath(folder)) {
        if (error)
            *error = QStringLiteral("cannot create the folder %1").arg(folder);
        return false;
    }
    const QString path = QDir(folder).filePath(run.name + QStringLiteral(".tcm"));
    if (!TCMFile::save(path, run, error))
        return false;
    if (!TDescriptionAcquisition::fromRun(run).save(QDir(folder).filePath(QStringLiteral("acquisition.xml")))) {
        if (error)
            *error = QStringLiteral("cannot write the acquisition description in %1").arg(folder);
        return false;
    }
    if (tcmPath)
        *tcmPath = path;
    return true;
}
