#pragma once

#include "vnplavo_export.h"

#include <QColor>
#include <QDomElement>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Plavo {

/// One plotted series: x and y values, the colour and label of the series,
/// and optionally a colour and a label per point (a mass spectrum shows its
/// peaks each with its own colour and mass label).
///
/// Point colours are kept as float numbers holding an RGB value, the form in
/// which the application's spectrum code hands them over; pointColor() turns
/// one back into a colour.
///
/// Element: <curve><label/><color/><points><p x="" y="" [c=""] [l=""]/>...</points></curve>
class VNPLAVO_EXPORT TData
{
public:
    TData() = default;
    /// Copies `count` values from `x` and `y`. A non-positive count or a null
    /// array gives an empty series.
    TData(int count, const float* x, const float* y);

    static QString tagName();

    int count() const { return m_x.size(); }
    bool isEmpty() const { return m_x.isEmpty(); }
    /// The values of point i; 0 outside the series.
    float x(int i) const;
    float y(int i) const;
    const QVector<float>& xValues() const { return m_x; }
    const QVector<float>& yValues() const { return m_y; }

    /// Copies one colour per point (an RGB value as a float). Null clears them.
    void setColor(const float* colors);
    const QVector<float>& colors() const { return m_colors; }
    /// The colour of point i; invalid when the series has no point colours.
    QColor pointColor(int i) const;

    /// Copies one label per point. Null clears them.
    void setLabels(const QString* labels);
    const QStringList& labels() const { return m_labels; }
    QString pointLabel(int i) const;

    /// Label and colour of the series as a whole.
    const QString& label() const { return m_label; }
    void setLabel(const QString& label) { m_label = label; }
    const QColor& curveColor() const { return m_curveColor; }
    /// Kept at 8 bits per channel, the precision in which documents store it.
    void setCurveColor(const QColor& color);

    /// Appends the series' element under `parent`. Refused (nothing written)
    /// when a value is not finite, since it could not be read back.
    bool encode(QDomElement& parent) const;
    /// Reads a series element; on false nothing has changed.
    bool decode(const QDomElement& element);

    bool operator==(const TData& other) const;
    bool operator!=(const TData& other) const { return !(*this == other); }

private:
    QVector<float> m_x;
    QVector<float> m_y;
    QVector<float> m_colors;
    QStringList m_labels;
    QString m_label;
    QColor m_curveColor;
};

} // namespace Plavo
