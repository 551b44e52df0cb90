#include "tretentionindexscale.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {
QString translate(const char* english, const char* french)
{
    return QCoreApplication::translate("TRetentionIndexScale", english, french);
}
} // namespace

TRetentionIndexScale TRetentionIndexScale::calibrate(QVector<Alkane> alkanes)
{
    TRetentionIndexScale scale;
    alkanes.erase(std::remove_if(alkanes.begin(), alkanes.end(),
                                 [](const Alkane& a) { return a.carbons < 1 || !std::isfinite(a.time); }),
                  alkanes.end());
    std::sort(alkanes.begin(), alkanes.end(), [](const Alkane& a, const Alkane& b) { return a.carbons < b.carbons; });
    if (alkanes.size() < 2) {
        scale.m_reason = translate("fewer than two n-alkanes found (%1): no retention indices",
                                   "moins de deux n-alcanes trouvés (%1) : pas d'indices de rétention")
                             .arg(alkanes.size());
        return scale;
    }
    for (int i = 1; i < alkanes.size(); ++i) {
        if (alkanes[i].carbons == alkanes[i - 1].carbons || !(alkanes[i].time > alkanes[i - 1].time)) {
            scale.m_reason = translate("the n-alkanes C%1 and C%2 do not elute in order of carbon number",
                                       "les n-alcanes C%1 et C%2 n'éluent pas dans l'ordre du nombre de carbones")
                                 .arg(alkanes[i - 1].carbons)
                                 .arg(alkanes[i].carbons);
            return scale;
        }
    }
    scale.m_alkanes = alkanes;
    return scale;
}

bool TRetentionIndexScale::indexAt(double time, double* index, QString* reason) const
{
    if (!isValid()) {
        if (reason)
            *reason = m_reason;
        return false;
    }
    if (!(time >= m_alkanes.first().time && time <= m_alkanes.last().time)) {
        if (reason)
            *reason = translate("%1 min lies outside the n-alkanes found (C%2 to C%3)",
                                "%1 min est en dehors des n-alcanes trouvés (C%2 à C%3)")
                          .arg(time)
                          .arg(m_alkanes.first().carbons)
                          .arg(m_alkanes.last().carbons);
        return false;
    }
    int i = 1;
    while (i < m_alkanes.size() - 1 && time > m_alkanes[i].time)
        ++i;
    const Alkane& a = m_alkanes[i - 1];
    const Alkane& b = m_alkanes[i];
    *index = 100.0 * (a.carbons + (b.carbons - a.carbons) * (time - a.time) / (b.time - a.time));
    return true;
}

bool TRetentionIndexScale::timeOf(double index, double* time) const
{
    if (!isValid() || !(index >= 100.0 * m_alkanes.first().carbons && index <= 100.0 * m_alkanes.last().carbons))
        return false;
    int i = 1;
    while (i < m_alkanes.size() - 1 && index > 100.0 * m_alkanes[i].carbons)
        ++i;
    const Alkane& a = m_alkanes[i - 1];
    const Alkane& b = m_alkanes[i];
    *time = a.time + (index / 100.0 - a.carbons) / (b.carbons - a.carbons) * (b.time - a.time);
    return true;
}
