#include "parsers.h"

#include "data/remoteinitialvalues.h"
#include "figures/loadfigures.h"
#include "http/request.h"
#include "platform/position/nmeaepoch.h"
#include "platform/position/nmealines.h"
#include "platform/scripted/platformscript.h"
#include "reports/reportparser.h"
#include "ui/map/outline.h"
#include "utils/endpoint.h"

#include <QFile>
#include <QImage>
#include <QPainter>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

void require(bool holds, const char *what)
{
    if (!holds) {
        qFatal("does not hold: %s", what);
    }
}

bool isPlace(double latitude, double longitude)
{
    return std::abs(latitude) <= 90 && std::abs(longitude) <= 180;
}

QByteArray contents(const char *file)
{
    QFile input(QString::fromUtf8(file));
    require(input.open(QIODevice::ReadOnly), file);
    return input.readAll();
}

bool takeReport(const QByteArray &bytes)
{
    const auto result = ReportParser::parse(bytes, {u"8352"_s}, false);
    const auto *report = std::get_if<Report>(&result);
    if (report == nullptr) {
        return false;
    }
    require(report->userId > 0 && report->clientTime >= 0, "a report has its numbers");
    require(report->latitude.has_value() == report->longitude.has_value() &&
                isPlace(report->latitude.value_or(0), report->longitude.value_or(0)),
            "a report's place is one");
    for (const auto *rate : {&report->download, &report->upload, &report->uploadClient}) {
        require(std::min({rate->min.value_or(0), rate->avg.value_or(0), rate->max.value_or(0)}) >=
                    0,
                "a rate is not negative");
    }
    // What was kept is what a reader of the stored document finds.
    const auto again = ReportParser::parse(report->document.toUtf8(), {u"8352"_s}, false);
    require(std::holds_alternative<Report>(again) &&
                std::get<Report>(again).document == report->document,
            "a stored document is as good as the one that came");
    return true;
}

QList<QByteArray> reports()
{
    return {contents(FUZZ_SEEDS "service/data/report.xml"),
            contents(FUZZ_SEEDS "data/golden/report.txt")};
}

bool takeRequest(const QByteArray &bytes)
{
    const std::string head = bytes.toStdString();
    const auto request = Request::parse(head);
    if (!request) {
        return false;
    }
    require(!request->method.empty(), "a request has a method");
    require(request->path.size() + request->query.size() <= head.size(), "nothing is made up");
    require(request->path.find('?') == std::string::npos, "a path has no query");
    for (const auto *key : {"userid", "testid", ""}) {
        require(request->number(key).value_or(0) >= 0, "a number consists of digits");
    }
    return true;
}

QList<QByteArray> requests()
{
    return {"GET /velometer/Controller?page=UserReport&userid=52077 HTTP/1.1\r\nHost: a\r\n"
            "Accept-Encoding: gzip;q=0.5, br;q=0\r\n\r\n",
            "POST http://a:80/velometer/uploadtest.php?testid=3&logtraffic=7 HTTP/1.1\r\n"
            "Host: a:80\r\nContent-Length: 163840000\r\nExpect: 100-continue\r\n"
            "Accept-Language: de\r\n\r\n"};
}

bool takeNmea(const QByteArray &bytes)
{
    NmeaLines whole;
    NmeaLines pieces;
    NmeaEpoch epoch;
    const auto sentences = whole.take(bytes);
    qsizetype count = 0;
    for (qsizetype at = 0; at < bytes.size(); at += 7) {
        count += pieces.take(bytes.sliced(at, std::min<qsizetype>(7, bytes.size() - at))).size();
    }
    require(count == sentences.size(), "the size of the pieces does not matter");
    for (const NmeaSentence &sentence : sentences) {
        require(sentence.line.startsWith('$') && sentence.line.endsWith("\r\n"), "lines are whole");
        if (epoch.isEndedBy(sentence)) {
            if (const auto position = epoch.takePosition()) {
                require(position->isValid() && isPlace(position->coordinate().latitude(),
                                                       position->coordinate().longitude()),
                        "a position is a place");
            }
            epoch.takeSatellites();
        }
        epoch.add(sentence);
    }
    return !sentences.isEmpty();
}

QList<QByteArray> nmea()
{
    return {"$GPRMC,120001.00,A,4713.5600,N,00849.0800,E,2.9,270.0,290224,,,A*52\r\n"
            "$GPGGA,120001.00,4713.5600,N,00849.0800,E,1,08,0.9,410.0,M,46.9,M,,*6E\r\n"
            "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n"
            "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n"
            "$GPGSV,2,2,08,15,40,083,46,16,17,308,41,17,07,344,39,18,22,228,45*7F\r\n",
            "$GNGLL,4713.5600,S,00849.0800,W,120002.00,A,A*76\r\n"
            "$GNRMC,235959.99,V,,,,,,,311299,,,N*63\r\n"};
}

bool takeScript(const QByteArray &bytes)
{
    QString error;
    const auto script = PlatformScript::parse(bytes, u"script"_s, &error);
    require(script.has_value() == error.isEmpty(), "who refuses says why");
    std::chrono::milliseconds last{};
    for (const ScriptEvent &event : script ? script->events : QList<ScriptEvent>()) {
        require(event.at >= last, "lines are in order of time");
        last = event.at;
        if (event.position && event.position->coordinate().isValid()) {
            require(isPlace(event.position->coordinate().latitude(),
                            event.position->coordinate().longitude()),
                    "a script's place is one");
        }
    }
    return script.has_value();
}

QList<QByteArray> scripts()
{
    return {"# a walk\n{\"device\": {\"imei\": \"356938035643809\"}, \"mcc\": \"228\"}\n"
            "{\"mode\": \"LteMode\", \"status\": \"Roaming\", \"signal\": 71, \"cell\": 4711}\n"
            "{\"at_ms\": 30, \"position\": {\"latitude\": -47.5, \"longitude\": 151.25, "
            "\"altitude\": 410, \"timestamp\": \"2024-02-29T12:00:01Z\"}}\n"
            "{\"at_ms\": 1e3, \"position\": null, \"satellites_in_use\": [4, 5]}\n"
            "{\"at_ms\": 2000, \"session\": \"error:2\", \"metered\": \"yes-guessed\"}\n"};
}

bool takeInitialValues(const QByteArray &bytes)
{
    RemoteInitialValues once(nullptr);
    RemoteInitialValues twice(nullptr);
    once.remoteInitialValuesLoaded(QString::fromUtf8(bytes));
    twice.remoteInitialValuesLoaded(QString::fromUtf8(bytes));
    twice.remoteInitialValuesLoaded(QString::fromUtf8(bytes));
    require(once.getClientHostname() == twice.getClientHostname() &&
                once.getMss() == twice.getMss() && once.getRwin() == twice.getRwin() &&
                once.isWeb100Error() == twice.isWeb100Error(),
            "an answer says the same when it comes again");
    return !once.getClientHostname().isEmpty();
}

QList<QByteArray> initialValues()
{
    return {"Client-Hostname:host.example;Server-IP:192.0.2.1;Remote-IP:2001:db8::1;Local-IP:::1;"
            "MSS:1460;WinScaleRcvd:7;MaxRwinRcvd:65535;SACK:1;Timestamp:1;",
            "Client-Hostname:a;Server-IP:b;Remote-IP:c;Web100:unavailable;"};
}

bool takeEndpoint(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    bool taken = false;
    for (const auto &endpoint : {Endpoint::parse(text, 80), Endpoint::parseAddress(text)}) {
        if (!endpoint) {
            continue;
        }
        require(endpoint->port >= 0 && endpoint->port <= 65535, "a port has 16 bits");
        require(endpoint->port == 0 || Endpoint::parse(Endpoint::bracketed(endpoint->host) + u':' +
                                                           QString::number(endpoint->port),
                                                       1) == endpoint,
                "an endpoint is read as it is written");
        taken = true;
    }
    return taken;
}

QList<QByteArray> endpoints()
{
    return {"speed.example:8080", "[2001:db8::1]:65535", "::1", "192.0.2.1:0", "z\xc3\xbcrich.ch"};
}

bool takeOutline(const QByteArray &bytes)
{
    const auto outline = Outline::parse(bytes);
    if (!outline) {
        return false;
    }
    QImage image(64, 64, QImage::Format_RGB32);
    QPainter painter(&image);
    for (const double size : {64.0, 1e6}) {
        outline->paint(painter, QRectF(size / 2, size / 3, 64, 64), size);
    }
    return true;
}

/// Two rings and a border, as the file has them.
QList<QByteArray> outlines()
{
    return {QByteArray::fromHex("564d415001"
                                "02" // rings
                                "04808008808008a01f00009f1f0000"
                                "0380010080020080018002"
                                "01" // borders
                                "02808008808004a01fa01f")};
}

bool takeLoadFigures(const QByteArray &bytes)
{
    FinishedTest test;
    if (!LoadFigures::read(QString::fromUtf8(bytes), test)) {
        require(LoadFigures::line(test).isEmpty(), "who refuses takes nothing");
        return false;
    }
    FinishedTest again;
    const QString line = LoadFigures::line(test);
    require(line.isEmpty() || (LoadFigures::read(line, again) && LoadFigures::line(again) == line),
            "delays are read as they are written");
    return true;
}

QList<QByteArray> loadFigures()
{
    return {"1: x\r\nLoadFigures: {\"v\":1,\"idle_ns\":[31400000,-1],\"download\":{\"cc\":\"bbr\","
            "\"rtt_ns\":[41001000,-1],\"t_ns\":[200000000,401000000]}}\r\n",
            "LoadFigures: {\"extra_upload\":{\"rtt_ns\":[3000000000],\"t_ns\":[0]},\"v\":1}"};
}

constexpr std::array parsers{
    FuzzedParser{"report", takeReport, reports},
    FuzzedParser{"request", takeRequest, requests},
    FuzzedParser{"nmea", takeNmea, nmea},
    FuzzedParser{"script", takeScript, scripts},
    FuzzedParser{"initialvalues", takeInitialValues, initialValues},
    FuzzedParser{"endpoint", takeEndpoint, endpoints},
    FuzzedParser{"outline", takeOutline, outlines},
    FuzzedParser{"loadfigures", takeLoadFigures, loadFigures},
};

} // namespace

std::span<const FuzzedParser> fuzzedParsers()
{
    return parsers;
}

} // namespace velometer
