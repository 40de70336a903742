#include "cli/testsummary.h"

#include "context/deviceinfohelper.h"
#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/remoteinitialvalues.h"
#include "data/result.h"
#include "data/testdetails.h"
#include "data/testresults.h"
#include "data/testserver.h"
#include "data/testservertable.h"
#include "db/dbtestresults.h"
#include "measurement/testcontroller.h"
#include "utils/cleantext.h"
#include "utils/utils.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Number = TestSummary::Number;
using Real = TestSummary::Real;
using Text = TestSummary::Text;

/// No phase has more intervals; a table beyond that is broken.
constexpr int maxIntervals = 100'000;

Text text(const QString &value)
{
    const QString clean = cleanText(value);
    return clean.isEmpty() ? Text() : Text(clean);
}

Number number(const QString &value)
{
    bool ok = false;
    const qint64 result = value.toLongLong(&ok);
    return ok ? Number(result) : Number();
}

Number atLeast(qint64 minimum, Number value)
{
    return value && *value >= minimum ? value : Number();
}

Real realAtLeast(double minimum, double value)
{
    return std::isfinite(value) && value >= minimum ? Real(value) : Real();
}

TestSummary::Throughput throughput(const Result *result)
{
    TestSummary::Throughput phase;
    if (!result) {
        return phase;
    }
    phase.valid = result->isValid();
    // Bytes over time are no rate of the link when the stream was refused: they are an error page.
    if (result->isValid() || result->isCutByBudget()) {
        phase.averageRate = atLeast(0, result->getRateAvg());
        phase.minimumRate = atLeast(0, result->getRateMin());
        phase.maximumRate = atLeast(0, result->getRateMax());
    }
    phase.bytes = result->getAllBytesTransfered();
    phase.duration = atLeast(0, result->getRealDuration());
    phase.connectTime = atLeast(0, result->getConnectTime());
    phase.firstByteTime = atLeast(0, result->getGetTime());
    phase.longestPause = atLeast(0, result->getMaxPause());

    const IntervalTable &table = result->getIntervallValuesByte();
    const auto intervals = std::min<qsizetype>(table.size(), maxIntervals);
    QList<qint64> bytes;
    for (int i = 0; i < intervals; ++i) {
        bytes.append(table.value(i));
    }
    phase.intervalBytes = bytes;
    return phase;
}

TestSummary::RoundTrip roundTrip(const Result *result)
{
    TestSummary::RoundTrip phase;
    if (!result) {
        return phase;
    }
    phase.minimum = atLeast(1, result->getResponseMin());
    phase.average = atLeast(1, result->getResponseAvg());
    phase.maximum = atLeast(1, result->getResponseMax());
    phase.valid = result->isValid();

    QList<int> connects = result->getResponseTimes().keys();
    std::sort(connects.begin(), connects.end());
    QList<Number> samples;
    for (int connect : std::as_const(connects)) {
        samples.append(atLeast(1, result->getResponseTimes().value(connect)));
    }
    phase.samples = samples;
    return phase;
}

TestSummary::Tcp tcp(const TestResults &record)
{
    TestSummary::Tcp facts;
    const RemoteInitialValues &values = *record.getInitialValues();
    facts.congestion = text(record.getCongestionControl());
    facts.publicIp = text(values.getLocalIP());
    facts.deviceIp = text(values.getInternalIP());
    facts.clientHostname = text(values.getClientHostname());
    facts.mss = atLeast(1, values.getMss());
    facts.receiveWindow = atLeast(1, values.getRwin());
    // 0 is an answer here, but only from a service that did look.
    if (facts.mss && !values.isWeb100Error()) {
        facts.windowScale = values.getWscale();
        facts.sack = values.getSack();
        facts.timestamps = values.getTimestamp();
    }
    return facts;
}

TestSummary::Server server(const TestServer &from)
{
    return {text(from.getName()),  text(from.getHostname()), text(from.getCity()),
            text(from.getState()), text(from.getCountry()),  {},
            from.getPort()};
}

/// No receiver is exact: 0 and below say that the accuracy is not known.
Real accuracy(double metres)
{
    return metres > 0 ? realAtLeast(0, metres) : Real();
}

/// The details of a stored test, asked with the unknown in mind.
class Details
{
public:
    explicit Details(const TestDetails *from)
        : details(from)
    {}

    bool has(const QString &key) const { return details && details->contains(key); }
    Text text(const QString &key) const
    {
        return has(key) ? velometer::text(details->getString(key)) : Text();
    }
    Number integer(const QString &key, qint64 minimum) const
    {
        return has(key) ? atLeast(minimum, details->getLong(key)) : Number();
    }
    /// A whole number that is stored as a double.
    Number rounded(const QString &key, qint64 minimum) const
    {
        const Real value = real(key, static_cast<double>(minimum));
        return value && *value < 9e18 ? Number(std::llround(*value)) : Number();
    }
    Real real(const QString &key, double minimum) const
    {
        return has(key) ? realAtLeast(minimum, details->getDouble(key)) : Real();
    }

    std::optional<TestSummary::Position> position() const
    {
        if (!details || !details->hasGPSCoordinates()) {
            return std::nullopt;
        }
        TestSummary::Position where;
        where.latitude = details->getDouble(u"deviceLatitude"_s);
        where.longitude = details->getDouble(u"deviceLongitude"_s);
        if (!(std::abs(where.latitude) <= 90 && std::abs(where.longitude) <= 180)) {
            return std::nullopt;
        }
        const double altitude = details->getDouble(u"deviceAltitude"_s);
        if (altitude != -1.0 && std::isfinite(altitude)) {
            where.altitude = altitude;
        }
        where.horizontalAccuracy = accuracy(details->getDouble(u"deviceAccuracyHor"_s));
        where.verticalAccuracy = accuracy(details->getDouble(u"deviceAccuracyVert"_s));
        where.velocity = real(u"deviceVelocity"_s, 0);
        where.distance = real(u"deviceDistance"_s, 0);
        return where;
    }

private:
    const TestDetails *details;
};

} // namespace

TestSummary TestSummary::ofTest(const TestController &controller, const TestResults *record)
{
    TestSummary summary;
    const TestOutcome &outcome = controller.getOutcome();
    summary.timestamp = Utils::getTimeInMs();
    summary.schedule = text(controller.getScheduleInfo());
    summary.location = text(controller.getUserLocation());
    summary.userId = atLeast(1, controller.getUserId());
    summary.server = velometer::server(*controller.getTestServer());
    summary.network = networkOf(*controller.getNetWorkInfoHelper());
    summary.position = positionOf(*controller.getLocationHelper());
    summary.device = deviceOf(*controller.getDeviceInfoHelper());
    summary.report.delivered = outcome.reportDelivered;
    summary.report.queueId = atLeast(0, outcome.queueId);
    summary.report.resent = outcome.resent;
    if (!record) {
        return summary;
    }

    summary.storedId = atLeast(1, static_cast<qint64>(outcome.storedId));
    summary.testId = record->getTestId();
    summary.seriesId = record->getSeriesId();
    if (record->getTimestamp() > 0) {
        summary.timestamp = record->getTimestamp();
    }
    summary.download = throughput(record->getDownloadResult());
    summary.upload = throughput(record->getUploadResult());
    summary.serverMinimumRate = atLeast(1, record->getServerUploadMin());
    summary.serverAverageRate = atLeast(1, record->getServerUploadAvg());
    summary.serverMaximumRate = atLeast(1, record->getServerUploadMax());
    summary.rtt = roundTrip(record->getRTTResult());
    summary.budgetReached = text(record->phasesCutByBudget().join(u','));
    summary.budget = record->getDataBudget();
    summary.tcp = velometer::tcp(*record);
    summary.server.ip = text(record->getInitialValues()->getRemoteIP());
    if (!record->getTestResultLogs().isEmpty()) {
        summary.network.type = text(record->storedConnectionType());
    }
    if (summary.position) {
        summary.position->velocity = realAtLeast(0, record->getVelocity());
        summary.position->distance = realAtLeast(0, record->getDistance());
    }
    return summary;
}

TestSummary TestSummary::ofStored(const DBTestResults &row, const TestDetails *stored,
                                  const TestServerTable &table)
{
    const Details details(stored);
    TestSummary summary;
    summary.storedId = static_cast<qint64>(row.myTestId);
    summary.testId = row.testId;
    summary.seriesId = row.seriesId;
    if (row.timestamp > 0 && row.timestamp < 9e15) {
        summary.timestamp = std::llround(row.timestamp);
    }
    summary.location = text(row.location);

    summary.server.host = text(row.testServer);
    summary.server.port = details.rounded(u"testServerPort"_s, 1);
    summary.server.city = details.text(u"testServerCity"_s);
    summary.server.state = details.text(u"testServerState"_s);
    summary.server.country = details.text(u"testServerCountry"_s);
    const TestServer *known =
        table.find(row.testServer, static_cast<int>(summary.server.port.value_or(0)));
    if (known) {
        summary.server = velometer::server(*known);
    }
    summary.server.ip = details.text(u"testServerIP"_s);

    const auto rate = [](double value) {
        return value > 0 && value < 9e18 ? Number(std::llround(value)) : Number();
    };
    summary.download.averageRate = rate(row.downloadSpeed);
    summary.download.maximumRate = details.rounded(u"downloadMaximum"_s, 1);
    summary.download.bytes = details.integer(u"downloadedBytes"_s, 0);
    summary.upload.averageRate = rate(row.uploadSpeedClient);
    summary.upload.bytes = details.integer(u"uploadedBytes"_s, 0);
    // The row holds one upload figure for all: it is the server's where it is not the client's own.
    const Number maximum = details.rounded(u"uploadMaximum"_s, 1);
    if (row.uploadSpeed != row.uploadSpeedClient) {
        summary.serverAverageRate = rate(row.uploadSpeed);
        summary.serverMaximumRate = maximum;
    } else {
        summary.upload.maximumRate = maximum;
    }
    summary.rtt.average = details.rounded(u"rttAverage"_s, 1);
    if (!summary.rtt.average && row.rtt > 0) {
        summary.rtt.average = row.rtt * 1'000'000;
    }
    summary.rtt.minimum = details.rounded(u"rttMinimum"_s, 1);

    summary.budgetReached = details.text(u"budgetReached"_s);
    summary.budget = DataBudget(details.integer(u"dataBudget"_s, 1));
    summary.tcp.publicIp = details.text(u"externalIP"_s);
    summary.tcp.deviceIp = details.text(u"deviceIP"_s);
    summary.network.type = text(row.connectionType);
    summary.network.cell = details.rounded(u"networkCell"_s, 1);
    summary.network.signal = details.integer(u"gsmSignalStrength"_s, 0);
    summary.position = details.position();
    return summary;
}

TestSummary::Network TestSummary::networkOf(const NetworkInfoHelper &helper)
{
    Network network;
    const QString mode = helper.getNetworkmode();
    const QString status = helper.getNetworkstatus();
    network.mode = text(mode);
    network.type = text(Utils::connectionTypeKey(mode));
    network.name = text(helper.getNetworkname());
    network.mcc = text(helper.getMcc());
    network.mnc = text(helper.getMnc());
    network.homeMcc = text(helper.getHomemcc());
    network.homeMnc = text(helper.getHomemnc());
    network.lac = atLeast(0, number(helper.getNetworklac()));
    network.cell = atLeast(0, number(helper.getNetworkcell()));
    const QString signal =
        mode == "WlanMode"_L1 ? helper.getWlansignal() : helper.getNetworksignal();
    network.signal = atLeast(0, number(signal));
    if (!status.isEmpty() && status != "UndefinedStatus"_L1) {
        network.roaming = status == "Roaming"_L1;
    }
    return network;
}

std::optional<TestSummary::Position> TestSummary::positionOf(const LocationHelper &helper)
{
    if (helper.getLocationStatus() == 0) {
        return std::nullopt;
    }
    Position position;
    position.latitude = helper.getLatitude().toDouble();
    position.longitude = helper.getLongitude().toDouble();
    if (helper.getLocationStatus() == 2) {
        position.altitude = helper.getAltitude().toDouble();
    }
    position.horizontalAccuracy = accuracy(helper.getAccuracyHor().toDouble());
    position.verticalAccuracy = accuracy(helper.getAccuracyVert().toDouble());
    return position;
}

TestSummary::Device TestSummary::deviceOf(const DeviceInfoHelper &helper)
{
    return {text(helper.getManufacturer()), text(helper.getProductName()), text(helper.getModel()),
            text(helper.getPlattform())};
}

} // namespace velometer
