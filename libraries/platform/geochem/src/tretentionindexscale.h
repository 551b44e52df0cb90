#pragma once

#include "vngeochem_export.h"

#include <QString>
#include <QVector>

/// Retention indices of one analysis, calibrated on its n-alkanes: between
/// the two alkanes that bracket a time, the index grows linearly from 100 x
/// the carbon number of the first to that of the second (the temperature-
/// programmed form of the index, after van den Dool and Kratz). Outside the
/// alkanes found, and with fewer than two of them, there is no index, and the
/// scale says why.
class VNGEOCHEM_EXPORT TRetentionIndexScale
{
public:
    struct Alkane
    {
        int carbons = 0;
        double time = 0.0; ///< retention time of its apex
    };

    TRetentionIndexScale() = default;
    /// The scale of the alkanes found (any order). Alkanes must elute in the
    /// order of their carbon numbers; a pair that does not is refused.
    static TRetentionIndexScale calibrate(QVector<Alkane> alkanes);

    bool isValid() const { return m_reason.isEmpty() && m_alkanes.size() >= 2; }
    /// Why there is no scale (translated); empty for a valid one.
    const QString& reason() const { return m_reason; }
    const QVector<Alkane>& alkanes() const { return m_alkanes; }

    /// The index at `time`; false (with `reason`) outside the calibrated range.
    bool indexAt(double time, double* index, QString* reason = nullptr) const;
    /// The time of `index`; false outside the calibrated range.
    bool timeOf(double index, double* time) const;

private:
    QVector<Alkane> m_alkanes;
    QString m_reason;
};
