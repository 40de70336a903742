#include "data/testresults.h"

#include "data/result.h"
#include "data/testresultlog.h"
#include "utils/utils.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace velometer {

using Known::atLeast;
using Known::text;

namespace {

constexpr double earthRadiusKm = 6371.0;
/// 3.14159 / 180; the service computes distances with the same short pi.
constexpr double radiansPerDegree = 0.017453277777777776;
constexpr double msPerHour = 3600000.0;
constexpr int velocityStep = 5;

const QString mixedWithWlan = u"Mixed(WLAN,Mobile)"_s;
const QString mixedMobile = u"Mobile(mixed)"_s;

/// Of two accuracies in m, 0 and below unknown: half of what is known would be a better fix than
/// there was. -1 when neither is known.
double meanOfKnown(double a, double b)
{
    if (a > 0 && b > 0) {
        return (a + b) * 0.5;
    }
    const double known = std::max(a, b);
    return known > 0 ? known : -1.0;
}

QStringList distinctModes(const QList<TestResultLog *> &log)
{
    QStringList modes;
    for (const TestResultLog *entry : log) {
        if (!modes.contains(entry->getConnectionType())) {
            modes.append(entry->getConnectionType());
        }
    }
    return modes;
}

/// The median of what the entries tell.
std::optional<double> median(const QList<TestResultLog *> &log,
                             std::optional<double> RadioSignal::*member)
{
    QList<double> values;
    for (const TestResultLog *entry : log) {
        if (const auto value = entry->getRadio().*member) {
            values.append(*value);
        }
    }
    if (values.isEmpty()) {
        return std::nullopt;
    }
    std::ranges::sort(values);
    return std::midpoint(values.at((values.size() - 1) / 2), values.at(values.size() / 2));
}

QString combined(const QStringList &modes)
{
    const bool wlan = std::any_of(modes.begin(), modes.end(),
                                  [](const QString &mode) { return mode.contains("Wlan"_L1); });
    return wlan ? mixedWithWlan : mixedMobile;
}

FinishedTest::Throughput throughput(const Result *result)
{
    FinishedTest::Throughput phase;
    if (!result) {
        return phase;
    }
    phase.valid = result->isValid();
    phase.averageRate = atLeast(0, result->getRateAvg());
    phase.minimumRate = atLeast(0, result->getRateMin());
    phase.maximumRate = atLeast(0, result->getRateMax());
    phase.bytes = result->getAllBytesTransfered();
    phase.duration = atLeast(0, result->getRealDuration());
    phase.connectTime = atLeast(0, result->getConnectTime());
    phase.firstByteTime = atLeast(0, result->getGetTime());
    phase.longestPause = atLeast(0, result->getMaxPause());

    if (!result->isMeasured()) {
        return phase;
    }
    const IntervalTable &table = result->getIntervallValuesByte();
    QList<qint64> bytes;
    for (int i = 0; i < table.size(); ++i) {
        bytes.append(table.value(i));
    }
    phase.intervalBytes = bytes;
    if (!result->getConfirmedBytes().isEmpty()) {
        phase.confirmedBytes = result->getConfirmedBytes();
    }
    return phase;
}

FinishedTest::RoundTrip roundTrip(const Result *result)
{
    FinishedTest::RoundTrip phase;
    if (!result) {
        return phase;
    }
    phase.minimum = atLeast(1, result->getResponseMin());
    phase.average = atLeast(1, result->getResponseAvg());
    phase.maximum = atLeast(1, result->getResponseMax());
    phase.valid = result->isValid();

    phase.samples = result->getResponseDelays();
    return phase;
}

LoadDelays loadDelays(const Result *result)
{
    return result ? result->getLoadDelays() : LoadDelays();
}

FinishedTest::Tcp tcp(const RemoteInitialValues &values)
{
    FinishedTest::Tcp facts;
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

std::optional<FinishedTest::ReportOnly::Point> point(const TestResults::Location &location)
{
    if (!location) {
        return std::nullopt;
    }
    return FinishedTest::ReportOnly::Point{location->getTime(), location->getLatitude(),
                                           location->getLongitude(), location->getAltitude()};
}

FinishedTest::ReportOnly::Phase phase(const Result *result, const TestResults::Location &start,
                                      const TestResults::Location &end)
{
    FinishedTest::ReportOnly::Phase facts;
    facts.start = point(start);
    facts.end = point(end);
    if (result) {
        facts.ran = true;
        facts.port = result->getPort();
        facts.minimumRate = result->getRateMin();
        facts.averageRate = result->getRateAvg();
        facts.maximumRate = result->getRateMax();
        facts.bytes = result->getBytesTransferd();
    }
    return facts;
}

} // namespace

TestResults::TestResults(QObject *parent)
    : QObject(parent)
    , initValues(new RemoteInitialValues(this))
{
    initialize();
}

TestResults::TestResults(qlonglong series, qlonglong test, QObject *parent)
    : TestResults(parent)
{
    seriesid = series;
    testid = test;
}

TestResults::~TestResults() = default;

void TestResults::initialize()
{
    timestamp = 0;
    myTestId = 0;
    connectionType.clear();
    userLocation.clear();
    testServer.clear();
    userRating = noRating;
    downloadResult = uploadResult = rttResult = nullptr;
    extraDownloadResult = extraUploadResult = nullptr;
    idleDelays.reset();
    sizeOfXmInBytes = 0;
    setServerSideUploadSpeeds(0, 0, 0);
}

QStringList TestResults::phasesCutByBudget() const
{
    QStringList cut;
    if (downloadResult && downloadResult->isCutByBudget()) {
        cut.append(u"download"_s);
    }
    if (uploadResult && uploadResult->isCutByBudget()) {
        cut.append(u"upload"_s);
    }
    return cut;
}

QString TestResults::getCongestionControl() const
{
    return uploadResult ? uploadResult->getCongestionControl() : QString();
}

void TestResults::addTestResultLog(TestResultLog *entry)
{
    log.append(entry);
    entry->setLogid(static_cast<int>(log.size()));
}

void TestResults::setServerSideUploadSpeeds(qint64 min, qint64 avg, qint64 max)
{
    ssUploadSpeeds = {{TR_MIN, min}, {TR_AVG, avg}, {TR_MAX, max}};
}

void TestResults::setServerSideUpload(const QString &answer)
{
    const QStringList parts = answer.split(u';');
    if (parts.size() != 3) {
        Utils::addLogEntry(
            u"setServerSideUpload was passed a string without 3 parts: %1"_s.arg(answer));
        return;
    }
    setServerSideUploadSpeeds(parts[TR_MIN].toLongLong(), parts[TR_AVG].toLongLong(),
                              parts[TR_MAX].toLongLong());
}

bool TestResults::hasServerUpload() const
{
    return uploadResult && uploadResult->isMeasured() && getServerUploadAvg() > 0;
}

QString TestResults::getCsvStringWithCellIds() const
{
    QStringList cells;
    for (const TestResultLog *entry : log) {
        cells.append(QString::number(entry->getCellId()));
    }
    return cells.join(u',');
}

double TestResults::deg2rad(double degrees)
{
    return degrees * radiansPerDegree;
}

double TestResults::distanceInKMFrom(const DoubleLocation &a, const DoubleLocation &b)
{
    const double phiA = deg2rad(a.getLatitude());
    const double phiB = deg2rad(b.getLatitude());
    const double sinPhi = std::sin((phiA - phiB) / 2);
    const double sinLambda = std::sin(deg2rad(a.getLongitude() - b.getLongitude()) / 2);
    const double h = sinPhi * sinPhi + std::cos(phiA) * std::cos(phiB) * sinLambda * sinLambda;
    return 2 * std::atan2(std::sqrt(h), std::sqrt(1 - h)) * earthRadiusKm;
}

void TestResults::calculateAdditionalValues()
{
    if (!downloadLocationStart || !rttLocationEnd) {
        return;
    }
    const DoubleLocation &start = *downloadLocationStart;
    const DoubleLocation &end = *rttLocationEnd;
    accuracyvert = meanOfKnown(start.getAccuracyVert(), end.getAccuracyVert());
    accuracyhor = meanOfKnown(start.getAccuracyHor(), end.getAccuracyHor());

    if (start.getAltitude() == noAltitude || end.getAltitude() == noAltitude) {
        velocity = distance = distanceDurationInSeconds = -1.0;
        return;
    }
    if (start.getAccuracyVert() <= 0 || end.getAccuracyVert() <= 0) {
        velocity = -1001.0;
        return;
    }
    const double km = distanceInKMFrom(start, end);
    const qlonglong ms = end.getTime() - start.getTime();
    distance = km * 1000.0;
    const qlonglong seconds = ms / 1000;
    distanceDurationInSeconds = static_cast<double>(seconds);
    // Two samples of the same moment tell no speed.
    velocity = ms > 0 ? std::trunc(km / (static_cast<double>(ms) / msPerHour) / velocityStep) *
                            velocityStep
                      : -1.0;
}

QString TestResults::reportConnectionType() const
{
    const QStringList modes = distinctModes(log);
    return modes.size() == 1 ? modes.first() : combined(modes);
}

QString TestResults::storedConnectionType() const
{
    const QStringList modes = distinctModes(log);
    if (modes.size() != 1) {
        return combined(modes);
    }
    const QString key = Utils::connectionTypeKey(modes.first());
    return key.isEmpty() ? modes.first() : key;
}

FinishedTest TestResults::finished(FinishedTest test) const
{
    test.storedId = atLeast(1, myTestId);
    test.testId = testid;
    test.seriesId = seriesid;
    if (timestamp > 0) {
        test.timestamp = timestamp;
    }
    test.download = throughput(downloadResult);
    test.upload = throughput(uploadResult);
    if (hasServerUpload()) {
        test.serverMinimumRate = atLeast(1, getServerUploadMin());
        test.serverAverageRate = getServerUploadAvg();
        test.serverMaximumRate = atLeast(1, getServerUploadMax());
    }
    test.rtt = roundTrip(rttResult);
    test.idleDelays = idleDelays;
    test.downloadLoad = loadDelays(downloadResult);
    test.uploadLoad = loadDelays(uploadResult);
    test.extraDownloadLoad = loadDelays(extraDownloadResult);
    test.extraUploadLoad = loadDelays(extraUploadResult);
    test.tcp = tcp(*initValues);
    test.tcp.congestion = text(getCongestionControl());
    test.server.ip = text(initValues->getRemoteIP());
    test.movement = {velocity, distance, distanceDurationInSeconds, accuracyhor, accuracyvert};
    test.budget = {dataBudget.bytes(), text(phasesCutByBudget().join(u','))};
    if (!log.isEmpty()) {
        test.network.type = text(storedConnectionType());
        test.network.rsrp = median(log, &RadioSignal::rsrp);
        test.network.rsrq = median(log, &RadioSignal::rsrq);
        test.network.snr = median(log, &RadioSignal::snr);
        test.network.band = text(log.last()->getRadio().band);
    }
    fillReportOnly(test.reportOnly);
    return test;
}

void TestResults::fillReportOnly(FinishedTest::ReportOnly &report) const
{
    report.download = phase(downloadResult, downloadLocationStart, downloadLocationEnd);
    report.upload = phase(uploadResult, uploadLocationStart, uploadLocationEnd);
    report.rtt = phase(rttResult, rttLocationStart, rttLocationEnd);
    report.connectionType = reportConnectionType();
    if (userRating > noRating) {
        report.rating = userRating;
    }
    report.mss = initValues->getMss();
    report.receiveWindow = initValues->getRwin();
    report.windowScale = initValues->getWscale();
    report.timestamps = initValues->getTimestamp();
    report.sack = initValues->getSack();
    report.cellIds = getCsvStringWithCellIds();
    for (const TestResultLog *entry : log) {
        report.log += entry->appendXmlToMutableString();
    }
    report.path = allLocations;
}

} // namespace velometer
