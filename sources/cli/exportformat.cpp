#include "cli/exportformat.h"

#include "cli/jsonformat.h"

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

QString description(const TestSummary &summary)
{
    QStringList parts;
    const auto add = [&](QLatin1StringView name, const TestSummary::Number &value,
                         QLatin1StringView unit) {
        if (value) {
            parts.append(u"%1 %2 %3"_s.arg(name, QString::number(*value), unit));
        }
    };
    add("download"_L1, summary.download.averageRate, "bit/s"_L1);
    add("upload"_L1, summary.uploadRate(), "bit/s"_L1);
    add("round-trip time"_L1, summary.rtt.average, "ns"_L1);
    if (summary.network.type) {
        parts.append(*summary.network.type);
    }
    if (summary.server.host) {
        parts.append(*summary.server.host);
    }
    return parts.join(u"; "_s);
}

} // namespace

namespace ExportFormat {

QByteArray geoJsonBegin()
{
    return R"({"type":"FeatureCollection","features":[)"
           "\n";
}

QByteArray geoJsonFeature(const TestSummary &summary, bool first)
{
    QJsonObject feature{{u"type"_s, u"Feature"_s},
                        {u"geometry"_s, QJsonValue::Null},
                        {u"properties"_s, JsonFormat::test(summary)}};
    if (summary.position) {
        QJsonArray coordinates{summary.position->longitude, summary.position->latitude};
        if (summary.position->altitude) {
            coordinates.append(*summary.position->altitude);
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

QByteArray gpxWaypoint(const TestSummary &summary)
{
    if (!summary.position) {
        return {};
    }
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.writeStartElement(u"wpt"_s);
    xml.writeAttribute(u"lat"_s, degrees(summary.position->latitude));
    xml.writeAttribute(u"lon"_s, degrees(summary.position->longitude));
    if (summary.position->altitude) {
        xml.writeTextElement(u"ele"_s, QString::number(*summary.position->altitude, 'f', 1));
    }
    if (summary.timestamp) {
        xml.writeTextElement(u"time"_s, JsonFormat::timestamp(*summary.timestamp));
    }
    xml.writeTextElement(
        u"name"_s, u"%1/%2"_s.arg(summary.seriesId.value_or(0)).arg(summary.testId.value_or(0)));
    xml.writeTextElement(u"desc"_s, description(summary));
    xml.writeEndElement();
    return text + '\n';
}

QByteArray gpxEnd()
{
    return "</gpx>\n";
}

} // namespace ExportFormat

} // namespace velometer
