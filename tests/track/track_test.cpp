#include "support/registeredtest.h"
#include "support/rows.h"
#include "track/trackfields.h"
#include "track/trackformat.h"
#include "track/trackpart.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

TrackPoint wholePoint(int segment)
{
    TrackPoint point;
    point.time = 1'700'000'000'123;
    point.segment = segment;
    point.latitude = 47.2265;
    point.longitude = -8.8184;
    point.altitude = 408.5;
    point.accuracy = 6;
    point.speed = 50.4;
    point.mode = u"LteMode"_s;
    point.operatorName = u"=Demo, \"AG\" <&>"_s;
    point.mcc = u"228"_s;
    point.mnc = u"01"_s;
    point.cell = 68'719'476'735;
    point.lac = 901;
    point.signal = 71;
    point.rsrp = -97.5;
    point.rsrq = -11;
    point.snr = 0;
    point.band = u"B20"_s;
    point.test = u"3/12"_s;
    return point;
}

TrackPoint barePoint(qint64 time)
{
    TrackPoint point;
    point.time = time;
    return point;
}

} // namespace

class TrackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPartIsReadAsItWasWritten()
    {
        TrackPart part;
        part.track.started = 1'700'000'000'000;
        part.first = 17;
        part.points = {wholePoint(0), barePoint(1)};
        for (const auto &ended : {std::optional<qint64>(), std::optional<qint64>(5)}) {
            part.track.ended = ended;
            const auto read = TrackPart::fromJson(part.toJson());
            QVERIFY(read && read->track.ended == ended);
            QCOMPARE(read->track.started, part.track.started);
            QCOMPARE(read->first, 17);
            QVERIFY(read->points == part.points);
        }
    }

    void whatIsNoPartIsRefused_data()
    {
        const Rows<QString, QString> row("from", "to");
        row("no JSON", "{", "[");
        row("version", R"("schema_version":1)", R"("schema_version":2)");
        row("start", R"("started_ms":1700000000000)", R"("started_ms":-1)");
        row("start is a text", R"("started_ms":1700000000000)", R"("started_ms":"now")");
        row("end", R"("ended_ms":null)", R"("ended_ms":"never")");
        row("negative number", R"("first":17)", R"("first":-17)");
        row("beyond the bound", R"("first":17)", R"("first":131072)");
        row("time", "[1700000000123,", "[0,");
        row("time is a fraction", "[1700000000123,", "[1700000000123.5,");
        row("no latitude", "47.2265", "null");
        row("latitude", "47.2265", "90.1");
        row("latitude is a text", "47.2265", R"("47.2265")");
        row("longitude", "-8.8184", "-180.1");
        row("huge", "-97.5", "1e999");
        row("cell", "68719476735", "68719476736");
        row("signal", "901,71", "901,101");
        row("text is a number", R"("B20")", "20");
        row("too many values", R"("3/12")", R"("3/12",1)");
        row("a point is a number", "[[", "[7,[");
    }
    void whatIsNoPartIsRefused()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        TrackPart part;
        part.track.started = 1'700'000'000'000;
        part.first = 17;
        part.points = {wholePoint(0)};
        QString document = QString::fromUtf8(part.toJson());
        QVERIFY(document.contains(from));
        document.replace(document.indexOf(from), from.size(), to);
        QVERIFY(!TrackPart::fromJson(document.toUtf8()));
        part.points.resize(Tracks::partPoints + 1, wholePoint(0));
        QVERIFY(!TrackPart::fromJson(part.toJson()));
    }

    void rowsOfBeforeAndColumnsToComeAreRead()
    {
        const QStringList names{u"time_ms"_s, u"colour"_s, u"signal_percent"_s};
        const auto point = TrackFields::fromJson(QJsonArray{5, u"red"_s, 50}, names);
        QVERIFY(point && point->signal == 50);
        QVERIFY(TrackFields::fromJson(QJsonArray{5}, TrackFields::names()));
    }

    void documentsSayTheSame()
    {
        const QList<TrackPoint> points{barePoint(1'700'000'000'000), wholePoint(0), wholePoint(2)};
        const auto document = [&](TrackFormat::Kind kind) {
            TrackFormat format(kind, {});
            QByteArray text = format.begin();
            for (const TrackPoint &point : points) {
                text += format.point(point);
            }
            return text + format.end();
        };
        const QList<QByteArray> csv = document(TrackFormat::Kind::Csv).split('\n');
        QCOMPARE(csv.size(), 5);
        QCOMPARE(csv[1], "2023-11-14T22:13:20.000Z,0" + QByteArray(17, ',') + '\r');
        QCOMPARE(csv[2], R"(2023-11-14T22:13:20.123Z,0,47.2265,-8.8184,408.5,6,50.4,LteMode,)"
                         R"("'=Demo, ""AG"" <&>",228,01,68719476735,901,71,-97.5,-11,0,B20,3/12)"
                         "\r");

        const auto features =
            QJsonDocument::fromJson(document(TrackFormat::Kind::GeoJson))[u"features"_s].toArray();
        QCOMPARE(features.size(), 3);
        QVERIFY(features[0][u"geometry"_s].isNull());
        QCOMPARE(features[2][u"geometry"_s][u"coordinates"_s].toArray(),
                 (QJsonArray{-8.8184, 47.2265, 408.5}));
        const QJsonValue properties = features[2][u"properties"_s];
        QCOMPARE(properties, QJsonDocument::fromJson(
                                 document(TrackFormat::Kind::Json).trimmed().split('\n').last())
                                 .object());
        QCOMPARE(properties[u"cell"_s].toInteger(), 68'719'476'735);
        QCOMPARE(properties[u"segment"_s].toInt(), 2);

        // Two segments of one point each: no line joins them, and what has no place is not there.
        QXmlStreamReader xml(document(TrackFormat::Kind::Gpx));
        QStringList elements;
        QStringList texts;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() != u"gpx"_s) {
                elements.append(xml.name().toString());
            } else if (xml.isCharacters() && !xml.isWhitespace()) {
                texts.append(xml.text().toString());
            }
        }
        QVERIFY2(!xml.hasError(), qUtf8Printable(xml.errorString()));
        QCOMPARE(elements.count(u"trkseg"_s), 2);
        QCOMPARE(elements.count(u"trkpt"_s), 2);
        QVERIFY(texts.contains(u"=Demo, \"AG\" <&>"_s) && texts.contains(u"3/12"_s));
    }

    void measuresAlongASegment()
    {
        // A degree of latitude is 111.2 km on the sphere.
        TrackPoint one = wholePoint(0);
        TrackPoint other = one;
        other.latitude = 48.2265;
        QVERIFY(qAbs(Tracks::metresBetween(one, other) - 111'195) < 1);
        other.segment = 1;
        QCOMPARE(Tracks::metresBetween(one, other), 0.0);
        // Over the date line the short way.
        one.latitude = other.latitude = 0.0;
        one.longitude = 179.5;
        other.longitude = -179.5;
        other.segment = 0;
        QVERIFY(qAbs(Tracks::metresBetween(one, other) - 111'195) < 1);
        QCOMPARE(Tracks::metresBetween(one, barePoint(1)), 0.0);
    }

    void idsAreDrawn()
    {
        QVERIFY(Tracks::isId(Tracks::newId()) && Tracks::newId() != Tracks::newId());
        for (const QString &text : {QString(), QString(33, u'0'), QString(32, u'A'),
                                    QString(32, u'/'), QString(32, u'\u0660')}) {
            QVERIFY2(!Tracks::isId(text), qUtf8Printable(text));
        }
    }
};

} // namespace velometer

VELOMETER_TEST(TrackTest)
#include "track_test.moc"
