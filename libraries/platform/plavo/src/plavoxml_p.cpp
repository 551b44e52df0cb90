#include "plavoxml_p.h"

#include <QList>

#include <cmath>
#include <limits>

namespace Plavo {
namespace Xml {

bool readInt(const QString& text, int* value)
{
    bool ok = false;
    const int v = text.trimmed().toInt(&ok, 10);
    if (!ok)
        return false;
    *value = v;
    return true;
}

bool readFiniteDouble(const QString& text, double* value)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return false;
    *value = v;
    return true;
}

bool readFiniteFloat(const QString& text, float* value)
{
    // Read as a double and round once: the shortest text of the largest float
    // reads back a little above it, which a float reader calls an overflow.
    double d = 0.0;
    if (!readFiniteDouble(text, &d))
        return false;
    constexpr double kLargest = double(std::numeric_limits<float>::max());
    // Halfway between the largest float and the next power of two: beyond
    // it a double no longer rounds to a finite float.
    constexpr double kRoundsToLargest = 3.4028235677973366e38;
    if (std::fabs(d) > kLargest) {
        if (std::fabs(d) >= kRoundsToLargest)
            return false;
        d = d < 0 ? -kLargest : kLargest;
    }
    *value = float(d);
    return true;
}

bool readBool(const QString& text, bool* value)
{
    const QString t = text.trimmed();
    if (t == QLatin1String("1") || t == QLatin1String("true")) {
        *value = true;
        return true;
    }
    if (t == QLatin1String("0") || t == QLatin1String("false")) {
        *value = false;
        return true;
    }
    return false;
}

QString writeDouble(double value)
{
    return QString::number(value, 'g', 17);
}

QString writeFloat(float value)
{
    return QString::number(double(value), 'g', 9);
}

bool childElements(const QDomElement& parent, const QString& tag, int limit, bool exclusive,
                   QList<QDomElement>* children)
{
    QList<QDomElement> found;
    for (QDomElement e = parent.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        if (e.tagName() != tag) {
            if (exclusive)
                return false;
            continue;
        }
        if (found.size() >= limit)
            return false;
        found.append(e);
    }
    *children = found;
    return true;
}

} // namespace Xml
} // namespace Plavo
