#include "nicescale.h"

#include <algorithm>
#include <cmath>

NiceScale::NiceScale(double minimum, double maximum, int wishedTicks)
{
    if (!std::isfinite(minimum) || !std::isfinite(maximum)) {
        minimum = 0.0;
        maximum = 1.0;
    }
    if (minimum > maximum)
        std::swap(minimum, maximum);
    if (maximum - minimum < 1e-12 * std::max(1.0, std::fabs(maximum))) {
        const double half = minimum == 0.0 ? 1.0 : std::fabs(minimum) * 0.5;
        minimum -= half;
        maximum += half;
    }
    const int intervals = std::max(2, wishedTicks - 1);
    m_step = niceNumber((maximum - minimum) / intervals, true);
    m_min = std::floor(minimum / m_step + 1e-9) * m_step;
    m_max = std::ceil(maximum / m_step - 1e-9) * m_step;
}

QVector<double> NiceScale::ticks() const
{
    QVector<double> values;
    const int count = int(std::lround((m_max - m_min) / m_step));
    for (int i = 0; i <= count; ++i) {
        double value = m_min + i * m_step;
        if (std::fabs(value) < m_step * 1e-9)
            value = 0.0;
        values << value;
    }
    return values;
}

QString NiceScale::label(double value) const
{
    // Enough decimals for the step (2.5 needs one, 0.25 two), never more.
    int decimals = 0;
    double scaled = m_step;
    while (decimals < 10 && std::fabs(scaled - std::round(scaled)) > 1e-6 * std::max(1.0, std::fabs(scaled))) {
        scaled *= 10.0;
        ++decimals;
    }
    if (std::fabs(value) < m_step * 1e-9)
        value = 0.0;
    return QString::number(value, 'f', decimals);
}

int NiceScale::displayExponent(double maximum)
{
    const double magnitude = std::fabs(maximum);
    if (!std::isfinite(magnitude) || magnitude < 10000.0)
        return 0;
    return int(std::floor(std::log10(magnitude)));
}

double NiceScale::niceNumber(double value, bool round)
{
    if (!(value > 0.0) || !std::isfinite(value))
        return 1.0;
    const double exponent = std::floor(std::log10(value));
    const double power = std::pow(10.0, exponent);
    const double fraction = value / power;
    double nice;
    if (round)
        nice = fraction < 1.5 ? 1.0 : fraction < 2.25 ? 2.0 : fraction < 3.5 ? 2.5 : fraction < 7.5 ? 5.0 : 10.0;
    else
        nice = fraction <= 1.0 ? 1.0 : fraction <= 2.0 ? 2.0 : fraction <= 2.5 ? 2.5 : fraction <= 5.0 ? 5.0 : 10.0;
    return nice * power;
}
