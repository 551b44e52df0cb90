#pragma once

#include "vnobjectmodel_export.h"

#include <QByteArray>
#include <QString>

/// Where an object lies on the Earth: WGS84 latitude and longitude in decimal
/// degrees, altitude in metres (0 when unknown). Stored next to the object as
/// a small KML document so that any map viewer shows it; the document keeps
/// eight decimals (about a millimetre).
class VNOBJECTMODEL_EXPORT TLocalization
{
public:
    /// An unset position (isValid() is false).
    TLocalization() = default;
    TLocalization(double latitude, double longitude, double altitude = 0.0);

    double latitude() const { return m_latitude; }
    double longitude() const { return m_longitude; }
    double altitude() const { return m_altitude; }

    /// Finite values, latitude within [-90, 90] and longitude within [-180, 180].
    bool isValid() const;

    /// A KML document with one placemark named `placeName` at this position.
    QByteArray toKml(const QString& placeName) const;
    /// The first point placemark of a KML document; an unset position when
    /// the text is not KML or holds no valid point. `placeName` receives the
    /// placemark's name.
    static TLocalization fromKml(const QByteArray& kml, QString* placeName = nullptr);

private:
    double m_latitude = 1000.0;
    double m_longitude = 1000.0;
    double m_altitude = 0.0;
};
