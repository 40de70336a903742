#include "data/testresults.h"

#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/result.h"
#include "data/testcontext.h"
#include "data/testdetails.h"
#include "data/testresultlog.h"
#include "data/testserver.h"
#include "utils/utils.h"

#include <QDateTime>
#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Altitude of a position without a fix.
constexpr double noAltitude = -1.0;
constexpr double earthRadiusKm = 6371.0;
/// 3.14159 / 180; the service computes distances with the same short pi.
constexpr double radiansPerDegree = 0.017453277777777776;
constexpr double msPerHour = 3600000.0;
constexpr int velocityStep = 5;

const QString mixedWithWlan = u"Mixed(WLAN,Mobile)"_s;
const QString mixedMobile = u"Mobile(mixed)"_s;

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

// The store cannot hold an apostrophe, and an address has none.
QString withoutApostrophes(QString text)
{
    return text.remove(u'\'');
}

QString combined(const QStringList &modes)
{
    const bool wlan = std::any_of(modes.begin(), modes.end(),
                                  [](const QString &mode) { return mode.contains("Wlan"_L1); });
    return wlan ? mixedWithWlan : mixedMobile;
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
    const auto setAccuracies = [&] {
        accuracyvert = (start.getAccuracyVert() + end.getAccuracyVert()) * 0.5;
        accuracyhor = (start.getAccuracyHor() + end.getAccuracyHor()) * 0.5;
    };

    if (start.getAltitude() == noAltitude || end.getAltitude() == noAltitude) {
        velocity = distance = distanceDurationInSeconds = -1.0;
        setAccuracies();
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
    setAccuracies();
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

std::unique_ptr<TestDetails> TestResults::getDetailsResults(TestContext *controller) const
{
    auto details = std::make_unique<TestDetails>(nullptr, testid);
    const NetworkInfoHelper *network = controller->getNetWorkInfoHelper();
    const LocationHelper *location = controller->getLocationHelper();
    const TestServer *server = controller->getTestServer();
    const bool serverMeasured = getServerUploadAvg() > 0;
    const bool serverMeasuredMax = getServerUploadMax() > 0;
    qlonglong downloaded = 0;
    qlonglong uploaded = 0;

    if (downloadResult) {
        details->putDouble(u"downloadAverage"_s, static_cast<double>(downloadResult->getRateAvg()));
        details->putDouble(u"downloadMaximum"_s, static_cast<double>(downloadResult->getRateMax()));
        downloaded = downloadResult->getAllBytesTransfered();
    }
    if (serverMeasured) {
        details->putDouble(u"uploadAverage"_s, static_cast<double>(getServerUploadAvg()));
    } else if (uploadResult) {
        details->putDouble(u"uploadAverage"_s, static_cast<double>(uploadResult->getRateAvg()));
    }
    if (serverMeasuredMax) {
        details->putDouble(u"uploadMaximum"_s, static_cast<double>(getServerUploadMax()));
    } else if (uploadResult) {
        details->putDouble(u"uploadMaximum"_s, static_cast<double>(uploadResult->getRateMax()));
    }
    if (uploadResult) {
        uploaded = uploadResult->getAllBytesTransfered();
    }
    if (rttResult) {
        details->putDouble(u"rttAverage"_s, rttResult->getResponseAvg());
        details->putDouble(u"rttMinimum"_s, rttResult->getResponseMin());
    }
    details->putLong(u"downloadedBytes"_s, downloaded);
    details->putLong(u"uploadedBytes"_s, uploaded);
    details->putLong(u"totalBytes"_s, downloaded + uploaded);
    if (const QStringList cut = phasesCutByBudget(); !cut.isEmpty()) {
        details->putString(u"budgetReached"_s, cut.join(u','));
        details->putLong(u"dataBudget"_s, dataBudget.bytes().value_or(0));
    }

    details->putString(u"connectionType"_s, storedConnectionType());
    details->putDouble(u"networkCell"_s, network->getNetworkcell().toDouble());
    details->putLong(u"gsmSignalStrength"_s, network->getNetworksignal().toLongLong());
    details->putString(u"deviceIP"_s, withoutApostrophes(initValues->getInternalIP()));
    details->putString(u"externalIP"_s, withoutApostrophes(initValues->getLocalIP()));
    details->putDouble(u"deviceLatitude"_s, location->getLatitude().toDouble());
    details->putDouble(u"deviceLongitude"_s, location->getLongitude().toDouble());
    details->putDouble(u"deviceAltitude"_s, location->getAltitude().toDouble());
    details->putDouble(u"deviceVelocity"_s, velocity);
    details->putDouble(u"deviceDistance"_s, distance);
    details->putDouble(u"deviceAccuracyVert"_s, accuracyvert);
    details->putDouble(u"deviceAccuracyHor"_s, accuracyhor);
    details->putDouble(u"deviceDistanceDuration"_s, distanceDurationInSeconds);

    details->putString(u"testServerName"_s, server->getHostname());
    details->putString(u"testServerDomain"_s, server->getDomain());
    details->putString(u"testServerIP"_s, withoutApostrophes(initValues->getRemoteIP()));
    details->putDouble(u"testServerPort"_s, server->getPort());
    details->putString(u"testServerCity"_s, server->getCity());
    details->putString(u"testServerState"_s, server->getState());
    details->putString(u"testServerCountry"_s, server->getCountry());

    details->putLong(u"testTestId"_s, testid);
    details->putLong(u"testSeriesId"_s, seriesid);
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(timestamp);
    details->putString(u"testDate"_s, time.toString(u"yyyy-MM-dd"_s));
    details->putString(u"testTime"_s, time.toString(u"hh:mm"_s));
    return details;
}

} // namespace velometer
