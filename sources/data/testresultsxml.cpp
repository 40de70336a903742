// The report document of a test: TestResults::toXML.

#include "context/deviceinfohelper.h"
#include "context/networkinfohelper.h"
#include "data/reportdocument.h"
#include "data/result.h"
#include "data/testcontext.h"
#include "data/testresultlog.h"
#include "data/testresults.h"
#include "data/testserver.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

using ReportDocument::cdataElement;
using ReportDocument::element;

namespace {

/// The report's times are microseconds, ours nanoseconds.
constexpr qint64 nsPerUs = 1000;
constexpr qint64 intervalUs = 100000;
/// A rating above this was given.
constexpr float noRating = TestResults::noRating;

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QString locationElement(QLatin1StringView name, const DoubleLocation *location)
{
    if (!location) {
        return element(name, QString());
    }
    return element(
        name, QStringList{QString::number(location->getTime()), number(location->getLatitude()),
                          number(location->getLongitude()), number(location->getAltitude())}
                  .join(u' '));
}

QString byteList(const IntervalTable &bytes)
{
    QStringList counts;
    for (int key = 0; key < bytes.size(); ++key) {
        counts.append(QString::number(bytes.value(key)));
    }
    return counts.join(u',');
}

/// What the three phase blocks need of a result; all zero when the phase has none.
struct PhaseFigures
{
    explicit PhaseFigures(const Result *result)
    {
        if (!result) {
            return;
        }
        valid = 1;
        port = result->getPort();
        connectUs = result->getConnectTime() / nsPerUs;
        getUs = result->getGetTime() / nsPerUs;
        durationUs = result->getRealDuration() / nsPerUs;
        rateMin = result->getRateMin();
        rateAvg = result->getRateAvg();
        rateMax = result->getRateMax();
        pauseUs = result->getMaxPause() / nsPerUs;
        bytes = byteList(result->getIntervallValuesByte());
        bytesTotal = result->getBytesTransferd();
        responseMin = result->getResponseMin();
        responseAvg = result->getResponseAvg();
        responseMax = result->getResponseMax();
    }

    qint64 valid = 0;
    qint64 port = 0;
    qint64 connectUs = 0;
    qint64 getUs = 0;
    qint64 durationUs = 0;
    qint64 rateMin = 0;
    qint64 rateAvg = 0;
    qint64 rateMax = 0;
    qint64 pauseUs = 0;
    QString bytes;
    qint64 bytesTotal = 0;
    qint64 responseMin = 0;
    qint64 responseAvg = 0;
    qint64 responseMax = 0;
};

QString throughputHead(const PhaseFigures &figures, QLatin1StringView waitName)
{
    return element("Valid"_L1, figures.valid) + element("Limited"_L1, 0) +
           element("Testport"_L1, figures.port) + element("TcpResponseTime"_L1, figures.connectUs) +
           element(waitName, figures.getUs) + element("Duration"_L1, figures.durationUs) +
           element("Interval"_L1, intervalUs);
}

QString throughputTail(const PhaseFigures &figures, const DoubleLocation *start,
                       const DoubleLocation *end)
{
    return element("MaxPause"_L1, figures.pauseUs) + locationElement("StartLocation"_L1, start) +
           locationElement("EndLocation"_L1, end) + element("Bytes"_L1, figures.bytes) +
           element("BytesTotal"_L1, figures.bytesTotal);
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

std::unique_ptr<XMLData> TestResults::toXML(TestContext *controller) const
{
    const Deployment &deployment = Deployment::current();
    const DeviceInfoHelper *device = controller->getDeviceInfoHelper();
    const NetworkInfoHelper *network = controller->getNetWorkInfoHelper();
    const QString userId = QString::number(controller->getUserId());
    const QString host = controller->getTestServer()->getHostname();
    const QString schedule = controller->getScheduleInfo();
    const PhaseFigures download(downloadResult);
    const PhaseFigures upload(uploadResult);
    const PhaseFigures response(rttResult);

    const QString hash = ReportDocument::hash(
        deployment.salt,
        {userId, host, QString::number(testid), QString::number(seriesid),
         QString::number(download.rateAvg), QString::number(getServerUploadAvg()),
         QString::number(response.responseAvg / nsPerUs), QString::number(timestamp)});
    Utils::addLogEntry(u"Public IP: ###SERVER_PUBLICIP###"_s);
    if (!schedule.isEmpty()) {
        Utils::addLogEntry("ScheduleInfo:"_L1 + schedule);
    }

    const QString publicIp = initValues->getLocalIP();
    const QString clientName = initValues->getClientHostname();
    const QString internalIp = initValues->getInternalIP();
    const QString rating = userRating > noRating
                               ? QString::number(static_cast<double>(userRating), 'f', 6)
                               : QString();

    QString doc = u"<?xml version=\"1.0\"?>"_s;
    doc += "<!DOCTYPE PerformanceIPhone SYSTEM \"http://"_L1 +
           Endpoint::bracketed(deployment.importHost) + "/import/HSI-QRT-Mobile.dtd\">"_L1;
    doc += "<PerformanceIPhone Hash=\""_L1 + hash + "\">"_L1;

    doc += "<UserData>"_L1 + element("UserID"_L1, userId) +
           element("ConnectionType"_L1, reportConnectionType()) + element("Rating"_L1, rating) +
           "</UserData>"_L1;
    doc += "<UserInstallation>"_L1 + element("AppletVersion"_L1, Utils::getVersion()) +
           cdataElement("OS"_L1, device->getPlattform()) + "</UserInstallation>"_L1;

    doc += "<TestResult>"_L1 + element("TestID"_L1, testid) + element("SeriesID"_L1, seriesid);
    if (!schedule.isEmpty()) {
        doc += element("ScheduleInfo"_L1, schedule);
    }
    doc += element("TestServer"_L1, host) + element("ClientTime"_L1, timestamp) +
           element("ServerTime"_L1, u"###SERVER_TIME###"_s) +
           element("PublicIP"_L1, publicIp.isEmpty() ? u"###SERVER_PUBLICIP###"_s : publicIp) +
           element("Domain"_L1, clientName.isEmpty() ? u"###SERVER_CLIENTNAME###"_s : clientName) +
           element("ImportPublicIP"_L1, u"###SERVER_PUBLICIP###"_s) +
           element("ImportDomain"_L1, u"###SERVER_CLIENTNAME###"_s);

    doc += "<Download>"_L1 + throughputHead(download, "HttpGetResponseTime"_L1) +
           element("Min"_L1, download.rateMin) + element("Avg"_L1, download.rateAvg) +
           element("Max"_L1, download.rateMax) +
           throughputTail(download, downloadLocationStart.get(), downloadLocationEnd.get()) +
           "</Download>"_L1;

    doc += "<Upload>"_L1 + throughputHead(upload, "DataWriteWaitTime"_L1) +
           element("Min"_L1, getServerUploadMin()) + element("Avg"_L1, getServerUploadAvg()) +
           element("Max"_L1, getServerUploadMax()) + element("ClientMin"_L1, upload.rateMin) +
           element("ClientAvg"_L1, upload.rateAvg) + element("ClientMax"_L1, upload.rateMax) +
           throughputTail(upload, uploadLocationStart.get(), uploadLocationEnd.get()) +
           "</Upload>"_L1;

    doc += "<ResponseTime>"_L1 + element("Valid"_L1, response.valid) +
           element("Testport"_L1, response.port) + element("Min"_L1, response.responseMin) +
           element("Avg"_L1, response.responseAvg) + element("Max"_L1, response.responseMax) +
           locationElement("StartLocation"_L1, rttLocationStart.get()) +
           locationElement("EndLocation"_L1, rttLocationEnd.get()) + "</ResponseTime>"_L1;
    doc += "</TestResult>"_L1;

    doc += "<TCPParameter>"_L1 + element("LocalIP"_L1, internalIp) +
           element("LocalIP80"_L1, internalIp) + element("Web100Output"_L1, 1) +
           element("MSS"_L1, initValues->getMss()) + element("RWIN"_L1, initValues->getRwin()) +
           element("WScale"_L1, initValues->getWscale()) +
           element("Timestamps"_L1, initValues->getTimestamp()) +
           element("SACK"_L1, initValues->getSack()) + "</TCPParameter>"_L1;

    const QString nothing;
    doc += "<Mobile>"_L1 + element("UUID"_L1, device->getImei()) +
           cdataElement("Platform"_L1, device->getProductName()) +
           cdataElement("Model"_L1, device->getModel()) +
           cdataElement("Manufacturer"_L1, device->getManufacturer()) +
           element("Location"_L1, controller->getUserLocation()) +
           cdataElement("Network"_L1, network->getNetworkname()) +
           element("MNC"_L1, network->getMnc()) + element("MCC"_L1, network->getMcc()) +
           element("NetworkCountryISO"_L1, nothing) + element("NetworkSpecial"_L1, nothing) +
           "<Sim>"_L1 + element("Operator"_L1, nothing) + element("MNC"_L1, network->getHomemnc()) +
           element("MCC"_L1, network->getHomemcc()) + element("CountryISO"_L1, nothing) +
           "</Sim>"_L1 + element("LAC"_L1, network->getNetworklac()) +
           element("CellIDs"_L1, getCsvStringWithCellIds()) +
           element("LocationPath"_L1, locationPath(allLocations)) + "<Log>"_L1;
    for (const TestResultLog *entry : log) {
        doc += entry->appendXmlToMutableString();
    }
    doc += "</Log></Mobile>"_L1;

    doc += serverData("ServerDataDownload"_L1, "###SERVER_DOWNLOADFILE###"_L1) +
           serverData("ServerDataUpload"_L1, "###SERVER_UPLOADFILE###"_L1) +
           "<JavaConsoleOutput><![CDATA["_L1 + Utils::getLogEntries() +
           "]]></JavaConsoleOutput>"_L1 + element("AccessInfo"_L1, u"###SERVER_ACCESSINFO###"_s) +
           "</PerformanceIPhone>"_L1;

    auto data = std::make_unique<XMLData>();
    data->xml = ReportDocument::withoutForbiddenCharacters(ReportDocument::withoutUmlauts(doc));
    return data;
}

} // namespace velometer
