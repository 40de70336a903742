#include "reports/reporttest.h"

#include "figures/loadfigures.h"
#include "utils/intervalrates.h"
#include "utils/utils.h"

#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using ElementTexts = QHash<QString, QString>;
using Seen = FinishedTest::Number;

constexpr qint64 nsPerUs = 1000;
/// Longer lists of intervals, which no client writes, are cut.
constexpr qsizetype maxListed = 10'000;

/// The texts of a document by their paths below the root, and those of each log entry by their
/// paths below it.
struct Document
{
    ElementTexts texts;
    QList<ElementTexts> entries;

    static std::optional<Document> read(const QString &text);

    QString text(const QString &path) const { return texts.value(path); }
    Seen number(const QString &path) const { return Known::number(texts.value(path)); }
};

std::optional<Document> Document::read(const QString &text)
{
    const QString entryPath = u"Mobile/Log/LogEntry"_s;
    Document document;
    QXmlStreamReader reader(text);
    QStringList path;
    QString current;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            current.clear();
            path += reader.name().toString();
            const QString place = path.sliced(1).join(u'/');
            if (place == entryPath && document.entries.size() < ReportTest::maxPhases) {
                document.entries += ElementTexts();
            }
            if (!document.entries.isEmpty() && reader.attributes().hasAttribute(u"GPSLock"_s)) {
                document.entries.last().insert(u"GPSLock"_s,
                                               reader.attributes().value(u"GPSLock"_s).toString());
            }
            break;
        }
        case QXmlStreamReader::EndElement: {
            const QString place = path.sliced(1).join(u'/');
            if (!place.startsWith(entryPath)) {
                document.texts.insert(place, current);
            } else if (place.size() > entryPath.size()) {
                document.entries.last().insert(place.sliced(entryPath.size() + 1), current);
            }
            path.removeLast();
            current.clear();
            break;
        }
        case QXmlStreamReader::Characters: current += reader.text(); break;
        default: break;
        }
    }
    return reader.hasError() ? std::nullopt : std::optional(document);
}

/// Above 0: what was not measured is 0 or -1.
Seen positive(const Seen &value)
{
    return Known::atLeast(1, value);
}

Seen nanoseconds(const Seen &us)
{
    constexpr qint64 most = std::numeric_limits<qint64>::max() / nsPerUs;
    return us && *us <= most ? Seen(*us * nsPerUs) : Seen();
}

std::optional<QList<qint64>> byteList(const QString &text)
{
    QList<qint64> bytes;
    for (const auto each : QStringView(text).tokenize(u',', Qt::SkipEmptyParts)) {
        if (bytes.size() == maxListed) {
            break;
        }
        bytes += std::max(each.toLongLong(), 0LL);
    }
    return bytes.isEmpty() ? std::nullopt : std::optional(bytes);
}

/// @p wait is the element with the time to the first byte, @p rates what stands before the names of
/// the client's rates.
FinishedTest::Throughput throughput(const Document &document, const QString &phase,
                                    const QString &wait, const QString &rates)
{
    const QString place = u"TestResult/"_s + phase + u'/';
    FinishedTest::Throughput figures;
    if (document.number(place + u"Valid"_s) != 1) {
        return figures;
    }
    figures.averageRate = document.number(place + rates + u"Avg"_s);
    figures.minimumRate = document.number(place + rates + u"Min"_s);
    figures.maximumRate = document.number(place + rates + u"Max"_s);
    figures.bytes = document.number(place + u"BytesTotal"_s);
    figures.duration = nanoseconds(document.number(place + u"Duration"_s));
    figures.connectTime = nanoseconds(positive(document.number(place + u"TcpResponseTime"_s)));
    figures.firstByteTime = nanoseconds(positive(document.number(place + wait)));
    figures.longestPause = nanoseconds(document.number(place + u"MaxPause"_s));
    figures.intervalBytes = byteList(document.text(place + u"Bytes"_s));
    // "Valid" says that the phase ran; valid is one with a rate, and bytes after its ramp-up.
    constexpr auto rampUp = static_cast<qsizetype>(IntervalRates::rampUp);
    const auto bytes = figures.intervalBytes.value_or(QList<qint64>());
    figures.valid =
        figures.averageRate && bytes.size() > rampUp &&
        std::any_of(bytes.begin() + rampUp, bytes.end(), [](qint64 count) { return count > 0; });
    return figures;
}

FinishedTest::RoundTrip roundTrip(const Document &document)
{
    FinishedTest::RoundTrip figures;
    if (document.number(u"TestResult/ResponseTime/Valid"_s) == 1) {
        figures.minimum = positive(document.number(u"TestResult/ResponseTime/Min"_s));
        figures.average = positive(document.number(u"TestResult/ResponseTime/Avg"_s));
        figures.maximum = positive(document.number(u"TestResult/ResponseTime/Max"_s));
        figures.valid = figures.average.has_value();
    }
    return figures;
}

FinishedTest::Tcp tcp(const Document &document)
{
    FinishedTest::Tcp facts;
    facts.publicIp = Known::text(document.text(u"TestResult/PublicIP"_s));
    facts.deviceIp = Known::text(document.text(u"TCPParameter/LocalIP"_s));
    facts.clientHostname = Known::text(document.text(u"TestResult/Domain"_s));
    facts.mss = positive(document.number(u"TCPParameter/MSS"_s));
    facts.receiveWindow = positive(document.number(u"TCPParameter/RWIN"_s));
    if (facts.mss) {
        facts.windowScale = document.number(u"TCPParameter/WScale"_s);
        facts.sack = document.number(u"TCPParameter/SACK"_s);
        facts.timestamps = document.number(u"TCPParameter/Timestamps"_s);
    }
    return facts;
}

FinishedTest::Network network(const Document &document)
{
    FinishedTest::Network network;
    const QString code = document.text(u"UserData/ConnectionType"_s);
    const QString key = Utils::connectionTypeKey(code);
    network.type = Known::text(key.isEmpty() ? code : key);
    if (!key.isEmpty()) {
        network.mode = Known::text(code);
    }
    // Line feeds of a document that somebody has looked at are no part of the name.
    network.name = Known::text(document.text(u"Mobile/Network"_s));
    network.mcc = Known::text(document.text(u"Mobile/MCC"_s));
    network.mnc = Known::text(document.text(u"Mobile/MNC"_s));
    network.homeMcc = Known::text(document.text(u"Mobile/Sim/MCC"_s));
    network.homeMnc = Known::text(document.text(u"Mobile/Sim/MNC"_s));
    network.lac = document.number(u"Mobile/LAC"_s);
    if (!document.entries.isEmpty()) {
        const ElementTexts &last = document.entries.constLast();
        network.cell = positive(Known::number(last.value(u"CellID"_s)));
        if (code != "WlanMode"_L1) {
            network.signal = positive(Known::number(last.value(u"SignalStrength"_s)));
        }
    }
    return network;
}

std::optional<double> real(const ElementTexts &entry, const QString &key)
{
    bool isNumber = false;
    const double value = entry.value(u"Position/"_s + key).toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

/// Zeros where the device did not know its place.
bool hasPlace(const ElementTexts &entry)
{
    const double latitude = real(entry, u"Latitude"_s).value_or(0);
    const double longitude = real(entry, u"Longitude"_s).value_or(0);
    return (latitude != 0 || longitude != 0) && std::abs(latitude) <= 90 &&
           std::abs(longitude) <= 180;
}

FinishedTest::Position position(const QList<ElementTexts> &entries)
{
    FinishedTest::Position position;
    if (entries.isEmpty() || !hasPlace(entries.constLast())) {
        return position;
    }
    constexpr double noAltitude = -1;
    const ElementTexts &last = entries.constLast();
    position.latitude = real(last, u"Latitude"_s);
    position.longitude = real(last, u"Longitude"_s);
    const auto altitude = real(last, u"Altitude"_s);
    if (last.value(u"GPSLock"_s) == u'1' && altitude != noAltitude) {
        position.altitude = altitude;
    }
    position.horizontalAccuracy = Known::above(0, real(last, u"HorizontalAccuracy"_s).value_or(0));
    position.verticalAccuracy = Known::above(0, real(last, u"VerticalAccuracy"_s).value_or(0));
    return position;
}

ReportTest::Phase phaseOf(const ElementTexts &entry)
{
    ReportTest::Phase phase;
    phase.name = Known::text(entry.value(u"Phase"_s)).value_or(QString());
    phase.time = Known::number(entry.value(u"Timestamp"_s));
    if (hasPlace(entry)) {
        phase.latitude = real(entry, u"Latitude"_s);
        phase.longitude = real(entry, u"Longitude"_s);
    }
    phase.cell = positive(Known::number(entry.value(u"CellID"_s)));
    phase.mode = Known::text(entry.value(u"ConnectionType"_s)).value_or(QString());
    phase.signal = positive(Known::number(entry.value(u"SignalStrength"_s)));
    phase.hasLock = entry.value(u"GPSLock"_s) == u'1';
    return phase;
}

} // namespace

QString ReportTest::unescapedLog(QString text)
{
    // The client escapes "<" before "&"; undone in the opposite order.
    for (const auto &[escape, character] : {std::pair{"&quot;"_L1, u'"'},
                                            {"&apos;"_L1, u'\''},
                                            {"&amp;"_L1, u'&'},
                                            {"&gt;"_L1, u'>'},
                                            {"&lt;"_L1, u'<'}}) {
        text.replace(escape, QString(character));
    }
    return text.replace("\r\n"_L1, "\n"_L1);
}

std::optional<ReportTest> ReportTest::read(const QString &text)
{
    const auto document = Document::read(text);
    if (!document) {
        return std::nullopt;
    }
    ReportTest report;
    FinishedTest &test = report.test;
    test.testId = document->number(u"TestResult/TestID"_s);
    test.seriesId = document->number(u"TestResult/SeriesID"_s);
    test.userId = positive(document->number(u"UserData/UserID"_s));
    test.timestamp = document->number(u"TestResult/ClientTime"_s);
    test.schedule = Known::text(document->text(u"TestResult/ScheduleInfo"_s));
    test.location = Known::text(document->text(u"Mobile/Location"_s));
    test.server.host = Known::text(document->text(u"TestResult/TestServer"_s));
    for (const auto &phase : {u"Download"_s, u"Upload"_s, u"ResponseTime"_s}) {
        if (!test.server.port) {
            test.server.port = positive(document->number(u"TestResult/%1/Testport"_s.arg(phase)));
        }
    }
    test.download = throughput(*document, u"Download"_s, u"HttpGetResponseTime"_s, QString());
    test.upload = throughput(*document, u"Upload"_s, u"DataWriteWaitTime"_s, u"Client"_s);
    test.serverMinimumRate = positive(document->number(u"TestResult/Upload/Min"_s));
    test.serverAverageRate = positive(document->number(u"TestResult/Upload/Avg"_s));
    test.serverMaximumRate = positive(document->number(u"TestResult/Upload/Max"_s));
    test.rtt = roundTrip(*document);
    test.tcp = tcp(*document);
    test.network = network(*document);
    test.position = position(document->entries);
    test.device = {Known::text(document->text(u"Mobile/Manufacturer"_s)),
                   Known::text(document->text(u"Mobile/Platform"_s)),
                   Known::text(document->text(u"Mobile/Model"_s)),
                   Known::text(document->text(u"UserInstallation/OS"_s))};
    for (const ElementTexts &entry : document->entries) {
        report.phases += phaseOf(entry);
    }
    report.log = unescapedLog(document->text(u"JavaConsoleOutput"_s));
    LoadFigures::read(report.log, test);

    static const QRegularExpression sent(u"sent ([0-9]{1,18}) bytes in ([0-9]{1,18}) ms"_s);
    static const QRegularExpression received(
        u"received min ([0-9]{1,18}), avg ([0-9]{1,18}), max ([0-9]{1,18}) bit/s"_s);
    if (const auto found = sent.match(document->text(u"ServerDataDownload"_s)); found.hasMatch()) {
        report.sentBytes = found.captured(1).toLongLong();
        report.sentMs = found.captured(2).toLongLong();
    }
    if (const auto found = received.match(document->text(u"ServerDataUpload"_s));
        found.hasMatch()) {
        report.receivedMin = found.captured(1).toLongLong();
        report.receivedAvg = found.captured(2).toLongLong();
        report.receivedMax = found.captured(3).toLongLong();
    }
    return report;
}

} // namespace velometer
