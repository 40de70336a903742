#include "db/dbtestresults.h"

#include "data/result.h"
#include "data/testresults.h"

namespace velometer {

namespace {

constexpr qint64 nsPerMs = 1000000;

double averageRate(const Result *result)
{
    return result ? static_cast<double>(result->getRateAvg()) : 0.0;
}

} // namespace

DBTestResults::DBTestResults(QObject *parent)
    : QObject(parent)
{}

void DBTestResults::createDBTestResultFromTestResult(const TestResults *results)
{
    const Result *rttResult = results->getRTTResult();
    timestamp = static_cast<double>(results->getTimestamp());
    seriesId = results->getSeriesId();
    testId = results->getTestId();
    downloadSpeed = averageRate(results->getDownloadResult());
    uploadSpeedClient = averageRate(results->getUploadResult());
    uploadSpeed = results->getServerUploadAvg() > 0
                      ? static_cast<double>(results->getServerUploadAvg())
                      : uploadSpeedClient;
    rtt = rttResult ? rttResult->getResponseAvg() / nsPerMs : 0; // -1 ns is 0 ms
    connectionType = results->storedConnectionType();
    location = results->getUserLocation();
    testServer = results->getTestServer();
    velocity = results->getVelocity();
    distance = results->getDistance();
    accuracyvert = results->getAccuracyVert();
    accuracyhor = results->getAccuracyHor();
    distanceDurationInSeconds = results->getDistanceDurationInSeconds();
}

} // namespace velometer
