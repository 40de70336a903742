#include "track/trackformat.h"

#include "figures/csvformat.h"
#include "figures/jsonformat.h"
#include "track/trackfields.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamWriter>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// About a centimetre; more digits than any receiver has.
constexpr int placeDecimals = 7;
constexpr int valueDigits = 12;

/// What a document of its own has in place of a number of ms.
const QString timeName = u"time"_s;

QString nameOf(const TrackField &field)
{
    return field.name == "time_ms"_L1 ? timeName : field.name;
}

QJsonValue valueOf(const TrackField &field, const TrackPoint &point)
{
    return field.name == "time_ms"_L1 ? QJsonValue(JsonFormat::timestamp(point.time))
                                      : field.get(point);
}

QString plainText(const QJsonValue &value)
{
    return value.isString() ? value.toString()
           : value.isNull() ? QString()
                            : QString::number(value.toDouble(), 'g', valueDigits);
}

QJsonObject objectOf(const TrackPoint &point)
{
    QJsonObject object;
    for (const TrackField &field : TrackFields::all()) {
        object.insert(nameOf(field), valueOf(field, point));
    }
    return object;
}

QByteArray geoJsonPoint(const TrackPoint &point)
{
    QJsonObject feature{{u"type"_s, u"Feature"_s},
                        {u"geometry"_s, QJsonValue::Null},
                        {u"properties"_s, objectOf(point)}};
    if (point.hasPlace()) {
        QJsonArray coordinates{point.longitude.value_or(0), point.latitude.value_or(0)};
        if (point.altitude) {
            coordinates.append(*point.altitude);
        }
        feature.insert("geometry"_L1,
                       QJsonObject{{u"type"_s, u"Point"_s}, {u"coordinates"_s, coordinates}});
    }
    return QJsonDocument(feature).toJson(QJsonDocument::Compact);
}

QByteArray csvPoint(const TrackPoint &point)
{
    QStringList cells;
    for (const TrackField &field : TrackFields::all()) {
        const QJsonValue value = valueOf(field, point);
        cells.append(value.isString() ? CsvFormat::cell(value.toString()) : plainText(value));
    }
    return CsvFormat::line(cells);
}

} // namespace

TrackFormat::TrackFormat(Kind documentKind, Track whole)
    : kind(documentKind)
    , track(std::move(whole))
{}

QByteArray TrackFormat::begin() const
{
    switch (kind) {
    case Kind::Json: break;
    case Kind::Csv: {
        QStringList names;
        for (const TrackField &field : TrackFields::all()) {
            names.append(nameOf(field));
        }
        return CsvFormat::line(names);
    }
    case Kind::GeoJson:
        return R"({"type":"FeatureCollection","features":[)"
               "\n";
    case Kind::Gpx:
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<gpx version=\"1.1\" creator=\"Velometer\" "
               "xmlns=\"http://www.topografix.com/GPX/1/1\" "
               "xmlns:v=\"urn:velometer:track:1\">\n<trk><name>" +
               JsonFormat::timestamp(track.started).toUtf8() + "</name>\n";
    }
    return {};
}

QByteArray TrackFormat::point(const TrackPoint &point)
{
    const bool first = std::exchange(isFirst, false);
    switch (kind) {
    case Kind::Csv: return csvPoint(point);
    case Kind::Json: break;
    case Kind::GeoJson: return (first ? QByteArray() : ",\n"_ba) + geoJsonPoint(point);
    case Kind::Gpx: return gpxPoint(point);
    }
    return JsonFormat::line(objectOf(point));
}

QByteArray TrackFormat::gpxPoint(const TrackPoint &point)
{
    if (!point.hasPlace()) {
        return {};
    }
    QByteArray document;
    if (point.segment != segment) {
        document = segment < 0 ? "<trkseg>\n" : "</trkseg>\n<trkseg>\n";
        segment = point.segment;
    }
    QByteArray element;
    QXmlStreamWriter xml(&element);
    xml.writeStartElement(u"trkpt"_s);
    xml.writeAttribute(u"lat"_s, QString::number(point.latitude.value_or(0), 'f', placeDecimals));
    xml.writeAttribute(u"lon"_s, QString::number(point.longitude.value_or(0), 'f', placeDecimals));
    if (point.altitude) {
        xml.writeTextElement(u"ele"_s, QString::number(*point.altitude, 'f', 1));
    }
    xml.writeTextElement(u"time"_s, JsonFormat::timestamp(point.time));
    xml.writeStartElement(u"extensions"_s);
    static const QStringList elsewhere{u"time_ms"_s, u"segment"_s, u"latitude"_s, u"longitude"_s,
                                       u"altitude_m"_s};
    for (const TrackField &field : TrackFields::all()) {
        const QJsonValue value = field.get(point);
        if (!value.isNull() && !elsewhere.contains(field.name)) {
            xml.writeTextElement("v:"_L1 + field.name, plainText(value));
        }
    }
    xml.writeEndElement();
    xml.writeEndElement();
    return document + element + '\n';
}

QByteArray TrackFormat::end() const
{
    switch (kind) {
    case Kind::Csv:
    case Kind::Json: break;
    case Kind::GeoJson: return "\n]}\n";
    case Kind::Gpx: return (segment < 0 ? QByteArray() : "</trkseg>\n"_ba) + "</trk></gpx>\n";
    }
    return {};
}

} // namespace velometer
