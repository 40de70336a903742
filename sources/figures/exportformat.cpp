#include "figures/exportformat.h"

#include "figures/csvformat.h"
#include "figures/jsonformat.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>
#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// About a centimetre; more digits than any receiver has.
constexpr int degreeDecimals = 7;

QString degrees(double value)
{
    return QString::number(value, 'f', degreeDecimals);
}

QString description(const FinishedTest &test)
{
    QStringList parts;
    const auto add = [&](QLatin1StringView name, const FinishedTest::Number &value,
                         QLatin1StringView unit) {
        if (value) {
            parts.append(u"%1 %2 %3"_s.arg(name, QString::number(*value), unit));
        }
    };
    add("download"_L1, test.download.averageRate, "bit/s"_L1);
    add("upload"_L1, test.uploadRate(), "bit/s"_L1);
    add("round-trip time"_L1, test.rtt.average, "ns"_L1);
    if (test.network.type) {
        parts.append(*test.network.type);
    }
    if (test.server.host) {
        parts.append(*test.server.host);
    }
    return parts.join(u"; "_s);
}

} // namespace

namespace ExportFormat {

QByteArray begin(Kind kind)
{
    switch (kind) {
    case Kind::Csv: return CsvFormat::testHeader();
    case Kind::Json: break;
    case Kind::GeoJson: return geoJsonBegin();
    case Kind::Gpx: return gpxBegin();
    }
    return {};
}

QByteArray piece(Kind kind, const FinishedTest &test, bool first)
{
    switch (kind) {
    case Kind::Csv: return CsvFormat::test(test);
    case Kind::Json: break;
    case Kind::GeoJson: return geoJsonFeature(test, first);
    case Kind::Gpx: return gpxWaypoint(test);
    }
    return JsonFormat::line(JsonFormat::test(test));
}

QByteArray end(Kind kind)
{
    switch (kind) {
    case Kind::Csv:
    case Kind::Json: break;
    case Kind::GeoJson: return geoJsonEnd();
    case Kind::Gpx: return gpxEnd();
    }
    return {};
}

QByteArray geoJsonBegin()
{
    return R"({"type":"FeatureCollection","features":[)"
           "\n";
}

QByteArray geoJsonFeature(const FinishedTest &test, bool first)
{
    QJsonObject feature{{u"type"_s, u"Feature"_s},
                        {u"geometry"_s, QJsonValue::Null},
                        {u"properties"_s, JsonFormat::test(test)}};
    const FinishedTest::Position &position = test.position;
    if (position.latitude && position.longitude) {
        QJsonArray coordinates{*position.longitude, *position.latitude};
        if (position.altitude) {
            coordinates.append(*position.altitude);
        }
        feature.insert("geometry"_L1,
                       QJsonObject{{u"type"_s, u"Point"_s}, {u"coordinates"_s, coordinates}});
    }
    return (first ? QByteArray() : ",\n"_ba) +
           QJsonDocument(feature).toJson(QJsonDocument::Compact);
}

QByteArray geoJsonEnd()
{
    return "\n]}\n";
}

QByteArray gpxBegin()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<gpx version=\"1.1\" creator=\"Velometer\" "
           "xmlns=\"http://www.topografix.com/GPX/1/1\">\n";
}

QByteArray gpxWaypoint(const FinishedTest &test)
{
    const FinishedTest::Position &position = test.position;
    if (!position.latitude || !position.longitude) {
        return {};
    }
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.writeStartElement(u"wpt"_s);
    xml.writeAttribute(u"lat"_s, degrees(*position.latitude));
    xml.writeAttribute(u"lon"_s, degrees(*position.longitude));
    if (position.altitude) {
        xml.writeTextElement(u"ele"_s, QString::number(*position.altitude, 'f', 1));
    }
    if (test.timestamp) {
        xml.writeTextElement(u"time"_s, JsonFormat::timestamp(*test.timestamp));
    }
    xml.writeTextElement(u"name"_s,
                         u"%1/%2"_s.arg(test.seriesId.value_or(0)).arg(test.testId.value_or(0)));
    xml.writeTextElement(u"desc"_s, description(test));
    xml.writeEndElement();
    return text + '\n';
}

QByteArray gpxEnd()
{
    return "</gpx>\n";
}

} // namespace ExportFormat

} // namespace velometer
