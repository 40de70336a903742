#include "data/testreport.h"

#include "data/reportdocument.h"
#include "figures/finishedtest.h"
#include "figures/loadfigures.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

using ReportDocument::cdataElement;
using ReportDocument::element;

namespace {

using ReportOnly = FinishedTest::ReportOnly;
using Number = FinishedTest::Number;

/// The report's times are microseconds, ours nanoseconds.
constexpr qint64 nsPerUs = 1000;
constexpr qint64 intervalUs = 100000;

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QString orEmpty(const FinishedTest::Text &value)
{
    return value.value_or(QString());
}

QString digits(const Number &value, qint64 whenUnknown)
{
    return QString::number(value.value_or(whenUnknown));
}

QString pointElement(QLatin1StringView name, const std::optional<ReportOnly::Point> &point)
{
    if (!point) {
        return element(name, QString());
    }
    return element(name, QStringList{QString::number(point->time), number(point->latitude),
                                     number(point->longitude), number(point->altitude)}
                             .join(u' '));
}

QString byteList(const QList<qint64> &bytes)
{
    QStringList counts;
    for (const qint64 count : bytes) {
        counts.append(QString::number(count));
    }
    return counts.join(u',');
}

/// A time that a phase did not get to is -1 ns; one of a phase that did not run is 0.
qint64 microseconds(const Number &ns, const ReportOnly::Phase &phase)
{
    return phase.ran ? ns.value_or(-1) / nsPerUs : 0;
}

QString throughputHead(const FinishedTest::Throughput &figures, const ReportOnly::Phase &phase,
                       QLatin1StringView waitName)
{
    return element("Valid"_L1, phase.ran ? 1 : 0) + element("Limited"_L1, 0) +
           element("Testport"_L1, phase.port) +
           element("TcpResponseTime"_L1, microseconds(figures.connectTime, phase)) +
           element(waitName, microseconds(figures.firstByteTime, phase)) +
           element("Duration"_L1, microseconds(figures.duration, phase)) +
           element("Interval"_L1, intervalUs);
}

QString throughputTail(const FinishedTest::Throughput &figures, const ReportOnly::Phase &phase)
{
    return element("MaxPause"_L1, microseconds(figures.longestPause, phase)) +
           pointElement("StartLocation"_L1, phase.start) +
           pointElement("EndLocation"_L1, phase.end) +
           element("Bytes"_L1, byteList(figures.intervalBytes.value_or(QList<qint64>()))) +
           element("BytesTotal"_L1, phase.bytes);
}

QString locationPath(const QList<MyLocation> &locations)
{
    QString path;
    for (const MyLocation &sample : locations) {
        path += QString::number(sample.datetime / 1000) + u' ';
        for (const double value : {sample.latitude, sample.longitude, sample.altitude,
                                   sample.accuracyhor, sample.accuracyvert}) {
            path += number(value) + u' ';
        }
        path += sample.lock ? "true,"_L1 : "false,"_L1;
    }
    return path;
}

QString serverData(QLatin1StringView name, QLatin1StringView placeholder)
{
    return u'<' + name + "><![CDATA[\n"_L1 + placeholder + "\n]]>\n</"_L1 + name + u'>';
}

} // namespace

std::unique_ptr<XMLData> TestReport::document(const FinishedTest &test)
{
    const Deployment &deployment = Deployment::current();
    const ReportOnly &only = test.reportOnly;
    const QString userId = digits(test.userId, 0);
    const QString testId = digits(test.testId, 0);
    const QString seriesId = digits(test.seriesId, 0);
    const QString timestamp = digits(test.timestamp, 0);
    const QString host = orEmpty(test.server.host);
    const QString schedule = orEmpty(test.schedule);
    const auto response = [&](const Number &ns) {
        return only.rtt.ran ? ns.value_or(-1) : qint64(0);
    };

    const QString hash = ReportDocument::hash(
        deployment.salt,
        {userId, host, testId, seriesId, QString::number(only.download.averageRate),
         digits(test.serverAverageRate, 0), QString::number(response(test.rtt.average) / nsPerUs),
         timestamp});
    Utils::addLogEntry(u"Public IP: ###SERVER_PUBLICIP###"_s);
    if (!schedule.isEmpty()) {
        Utils::addLogEntry("ScheduleInfo:"_L1 + schedule);
    }

    const QString publicIp = orEmpty(test.tcp.publicIp);
    const QString clientName = orEmpty(test.tcp.clientHostname);
    const QString internalIp = orEmpty(test.tcp.deviceIp);
    const QString rating =
        only.rating ? QString::number(static_cast<double>(*only.rating), 'f', 6) : QString();

    QString doc = u"<?xml version=\"1.0\"?>"_s;
    doc += "<!DOCTYPE PerformanceIPhone SYSTEM \"http://"_L1 +
           Endpoint::bracketed(deployment.importHost) + "/import/HSI-QRT-Mobile.dtd\">"_L1;
    doc += "<PerformanceIPhone Hash=\""_L1 + hash + "\">"_L1;

    doc += "<UserData>"_L1 + element("UserID"_L1, userId) +
           element("ConnectionType"_L1, only.connectionType) + element("Rating"_L1, rating) +
           "</UserData>"_L1;
    doc += "<UserInstallation>"_L1 + element("AppletVersion"_L1, Utils::getVersion()) +
           cdataElement("OS"_L1, orEmpty(test.device.platform)) + "</UserInstallation>"_L1;

    doc += "<TestResult>"_L1 + element("TestID"_L1, testId) + element("SeriesID"_L1, seriesId);
    if (!schedule.isEmpty()) {
        doc += element("ScheduleInfo"_L1, schedule);
    }
    doc += element("TestServer"_L1, host) + element("ClientTime"_L1, timestamp) +
           element("ServerTime"_L1, u"###SERVER_TIME###"_s) +
           element("PublicIP"_L1, publicIp.isEmpty() ? u"###SERVER_PUBLICIP###"_s : publicIp) +
           element("Domain"_L1, clientName.isEmpty() ? u"###SERVER_CLIENTNAME###"_s : clientName) +
           element("ImportPublicIP"_L1, u"###SERVER_PUBLICIP###"_s) +
           element("ImportDomain"_L1, u"###SERVER_CLIENTNAME###"_s);

    doc += "<Download>"_L1 +
           throughputHead(test.download, only.download, "HttpGetResponseTime"_L1) +
           element("Min"_L1, only.download.minimumRate) +
           element("Avg"_L1, only.download.averageRate) +
           element("Max"_L1, only.download.maximumRate) +
           throughputTail(test.download, only.download) + "</Download>"_L1;

    doc += "<Upload>"_L1 + throughputHead(test.upload, only.upload, "DataWriteWaitTime"_L1) +
           element("Min"_L1, digits(test.serverMinimumRate, 0)) +
           element("Avg"_L1, digits(test.serverAverageRate, 0)) +
           element("Max"_L1, digits(test.serverMaximumRate, 0)) +
           element("ClientMin"_L1, only.upload.minimumRate) +
           element("ClientAvg"_L1, only.upload.averageRate) +
           element("ClientMax"_L1, only.upload.maximumRate) +
           throughputTail(test.upload, only.upload) + "</Upload>"_L1;

    doc += "<ResponseTime>"_L1 + element("Valid"_L1, only.rtt.ran ? 1 : 0) +
           element("Testport"_L1, only.rtt.port) + element("Min"_L1, response(test.rtt.minimum)) +
           element("Avg"_L1, response(test.rtt.average)) +
           element("Max"_L1, response(test.rtt.maximum)) +
           pointElement("StartLocation"_L1, only.rtt.start) +
           pointElement("EndLocation"_L1, only.rtt.end) + "</ResponseTime>"_L1;
    doc += "</TestResult>"_L1;

    doc += "<TCPParameter>"_L1 + element("LocalIP"_L1, internalIp) +
           element("LocalIP80"_L1, internalIp) + element("Web100Output"_L1, 1) +
           element("MSS"_L1, only.mss) + element("RWIN"_L1, only.receiveWindow) +
           element("WScale"_L1, only.windowScale) + element("Timestamps"_L1, only.timestamps) +
           element("SACK"_L1, only.sack) + "</TCPParameter>"_L1;

    const QString nothing;
    doc += "<Mobile>"_L1 + element("UUID"_L1, only.deviceId) +
           cdataElement("Platform"_L1, orEmpty(test.device.product)) +
           cdataElement("Model"_L1, orEmpty(test.device.model)) +
           cdataElement("Manufacturer"_L1, orEmpty(test.device.manufacturer)) +
           element("Location"_L1, orEmpty(test.location)) +
           cdataElement("Network"_L1, orEmpty(test.network.name)) +
           element("MNC"_L1, orEmpty(test.network.mnc)) +
           element("MCC"_L1, orEmpty(test.network.mcc)) + element("NetworkCountryISO"_L1, nothing) +
           element("NetworkSpecial"_L1, nothing) + "<Sim>"_L1 + element("Operator"_L1, nothing) +
           element("MNC"_L1, orEmpty(test.network.homeMnc)) +
           element("MCC"_L1, orEmpty(test.network.homeMcc)) + element("CountryISO"_L1, nothing) +
           "</Sim>"_L1 +
           element("LAC"_L1, test.network.lac ? QString::number(*test.network.lac) : QString()) +
           element("CellIDs"_L1, only.cellIds) +
           element("LocationPath"_L1, locationPath(only.path)) + "<Log>"_L1 + only.log +
           "</Log></Mobile>"_L1;

    doc += serverData("ServerDataDownload"_L1, "###SERVER_DOWNLOADFILE###"_L1) +
           serverData("ServerDataUpload"_L1, "###SERVER_UPLOADFILE###"_L1) +
           "<JavaConsoleOutput><![CDATA["_L1 + Utils::getLogEntries(LoadFigures::line(test)) +
           "]]></JavaConsoleOutput>"_L1 + element("AccessInfo"_L1, u"###SERVER_ACCESSINFO###"_s) +
           "</PerformanceIPhone>"_L1;

    auto data = std::make_unique<XMLData>();
    data->xml = ReportDocument::withoutForbiddenCharacters(ReportDocument::withoutUmlauts(doc));
    return data;
}

} // namespace velometer
