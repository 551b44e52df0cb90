#pragma once

#include "tobjectdatavalueabs.h"
#include "vnplavo_export.h"

#include <QString>

namespace Plavo {

/// One axis of a graph: its label, its range and scale, and data values naming
/// what is plotted on it (a TYPE_VALUE value holds the key of the datum).
///
/// Element: <axis><label/><minimum/><maximum/><logarithmic/><dataValues/></axis>
class VNPLAVO_EXPORT TAxis : public TObjectDataValueAbs
{
public:
    TAxis();
    explicit TAxis(const QString& label, double minimum = 0.0, double maximum = 1.0);
    TAxis(const TAxis&) = default;
    TAxis& operator=(const TAxis&) = default;
    ~TAxis() override;

    static QString tagName();

    const QString& label() const { return m_label; }
    void setLabel(const QString& label) { m_label = label; }
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }
    /// Sets the range; refused when a bound is not finite or minimum > maximum.
    bool setRange(double minimum, double maximum);
    bool isLogarithmic() const { return m_logarithmic; }
    void setLogarithmic(bool logarithmic) { m_logarithmic = logarithmic; }

    bool encode(QDomElement& parent) const override;
    bool decode(const QDomElement& element) override;

    bool operator==(const TAxis& other) const;
    bool operator!=(const TAxis& other) const { return !(*this == other); }

private:
    QString m_label;
    double m_minimum = 0.0;
    double m_maximum = 1.0;
    bool m_logarithmic = false;
};

} // namespace Plavo
