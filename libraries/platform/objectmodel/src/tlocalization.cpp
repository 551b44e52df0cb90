#include "tlocalization.h"

#include "vnobjectmodellogging.h"

#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>

namespace {
const QString kKmlNamespace = QStringLiteral("http://www.opengis.net/kml/2.2");

QString number(double value)
{
    // Eight decimals of a degree are about a millimetre; never an exponent,
    // which map viewers do not all read.
    QString text = QString::number(value, 'f', 8);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

TLocalization parseCoordinates(const QString& text)
{
    const QStringList parts = text.trimmed().split(QLatin1Char(','));
    if (parts.size() < 2 || parts.size() > 3)
        return TLocalization();
    bool ok = false;
    const double longitude = parts.at(0).trimmed().toDouble(&ok);
    if (!ok)
        return TLocalization();
    const double latitude = parts.at(1).trimmed().toDouble(&ok);
    if (!ok)
        return TLocalization();
    double altitude = 0.0;
    if (parts.size() == 3) {
        altitude = parts.at(2).trimmed().toDouble(&ok);
        if (!ok)
            return TLocalization();
    }
    const TLocalization position(latitude, longitude, altitude);
    return position.isValid() ? position : TLocalization();
}
} // namespace

TLocalization::TLocalization(double latitude, double longitude, double altitude)
    : m_latitude(latitude)
    , m_longitude(longitude)
    , m_altitude(altitude)
{ }

bool TLocalization::isValid() const
{
    return std::isfinite(m_latitude) && std::isfinite(m_longitude) && std::isfinite(m_altitude) && m_latitude >= -90.0
        && m_latitude <= 90.0 && m_longitude >= -180.0 && m_longitude <= 180.0;
}

QByteArray TLocalization::toKml(const QString& placeName) const
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDefaultNamespace(kKmlNamespace);
    xml.writeStartElement(kKmlNamespace, QStringLiteral("kml"));
    xml.writeStartElement(kKmlNamespace, QStringLiteral("Placemark"));
    xml.writeTextElement(kKmlNamespace, QStringLiteral("name"), placeName);
    xml.writeStartElement(kKmlNamespace, QStringLiteral("Point"));
    // KML orders a position as longitude, latitude, altitude.
    xml.writeTextElement(kKmlNamespace, QStringLiteral("coordinates"),
                         number(m_longitude) + QLatin1Char(',') + number(m_latitude) + QLatin1Char(',')
                             + number(m_altitude));
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return out;
}

TLocalization TLocalization::fromKml(const QByteArray& kml, QString* placeName)
{
    QXmlStreamReader xml(kml);
    QString name;
    bool inPlacemark = false;
    bool inPoint = false;
    bool sawKml = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QStringRef tag = xml.name();
            if (!sawKml) {
                if (tag != QLatin1String("kml")) {
                    qCInfo(vnObjectModel, "position refused: <%s> instead of <kml>", qUtf8Printable(tag.toString()));
                    return TLocalization();
                }
                sawKml = true;
            } else if (tag == QLatin1String("Placemark")) {
                inPlacemark = true;
                name.clear();
            } else if (inPlacemark && !inPoint && tag == QLatin1String("name")) {
                name = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            } else if (inPlacemark && tag == QLatin1String("Point")) {
                inPoint = true;
            } else if (inPoint && tag == QLatin1String("coordinates")) {
                const TLocalization position
                    = parseCoordinates(xml.readElementText(QXmlStreamReader::IncludeChildElements));
                // A document cut short inside the coordinates may have lost digits.
                if (position.isValid() && !xml.hasError()) {
                    if (placeName)
                        *placeName = name;
                    return position;
                }
            }
        } else if (xml.isEndElement()) {
            if (xml.name() == QLatin1String("Placemark"))
                inPlacemark = false;
            else if (xml.name() == QLatin1String("Point"))
                inPoint = false;
        }
    }
    return TLocalization();
}
