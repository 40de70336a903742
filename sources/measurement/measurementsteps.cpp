#include "measurement/measurementsteps.h"

#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/result.h"
#include "data/testresultlog.h"
#include "data/testresults.h"
#include "data/testserver.h"
#include "measurement/downloadtest.h"
#include "measurement/measurementcontext.h"
#include "measurement/rtttest.h"
#include "measurement/testcontroller.h"
#include "measurement/testobserver.h"
#include "measurement/testrecorder.h"
#include "measurement/uploadtest.h"
#include "utils/units.h"
#include "utils/utils.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int logEntryTimeoutMs = 3000;

QString rateText(qint64 bitsPerSecond)
{
    return bitsPerSecond > 0 ? Units::kiloBitRate(static_cast<double>(bitsPerSecond))
                             : TestController::tr("na");
}

const QString queueFiller = u"cubic"_s;
constexpr int extraSeconds = 5;

/// Of the bytes that a measurement may move, its probes have theirs.
void limit(ThroughputTest &test, std::optional<qint64> bytes)
{
    const auto probes = bytes ? std::optional(LoadProbe::shareOf(*bytes)) : std::nullopt;
    test.setByteLimit(bytes ? std::optional(*bytes - *probes) : std::nullopt);
    test.setProbes(probes);
}

} // namespace

MeasurementSteps::MeasurementSteps(MeasurementContext &testContext, TestRecorder &testRecorder,
                                   QObject *parent)
    : QObject(parent)
    , context(testContext)
    , recorder(testRecorder)
{}

void MeasurementSteps::cancel()
{
    if (const auto step = std::exchange(cancelStep, nullptr)) {
        step();
    }
}

void MeasurementSteps::mark(const QString &name)
{
    TestResultLog *entry = recorder.newEntry(name);
    cancelStep = [entry] { entry->cancel(); };
    entry->takeMeasurement(logEntryTimeoutMs);
}

void MeasurementSteps::markDownloadStart()
{
    recorder.record()->setDownloadLocationStart(context.getLocationHelper()->getDoubleLocation());
    mark(u"DownloadStart"_s);
}

void MeasurementSteps::runDownload(int seconds)
{
    context.getTestObserver()->setStatus(TestController::tr("testphase_download"));
    auto *test = new DownloadTest(&context, recorder.record());
    test->setCongestionControl(plan.congestionControl);
    limit(*test, recorder.record()->getDataBudget().downloadShare());
    cancelStep = [test] { test->cancel(); };
    test->doMeasurement(seconds);
}

void MeasurementSteps::markDownloadEnd()
{
    TestResults &record = *recorder.record();
    context.getTestObserver()->setDownloadText(rateText(record.getDownloadResult()->getRateAvg()));
    showWaiting();
    record.setDownloadLocationEnd(context.getLocationHelper()->getDoubleLocation());
    mark(u"DownloadEnd"_s);
}

void MeasurementSteps::markUploadStart()
{
    recorder.record()->setUploadLocationStart(context.getLocationHelper()->getDoubleLocation());
    mark(u"UploadStart"_s);
}

void MeasurementSteps::runUpload(int seconds)
{
    context.getTestObserver()->setStatus(TestController::tr("testphase_upload"));
    const TestResults &record = *recorder.record();
    auto *test = new UploadTest(&context, recorder.record());
    test->setCongestionControl(plan.congestionControl);
    const Result &download = *record.getDownloadResult();
    const auto downloaded = static_cast<qint64>(download.getAllBytesTransfered());
    limit(*test, record.getDataBudget().uploadShare(downloaded + download.getProbeBytes()));
    cancelStep = [test] { test->cancel(); };
    test->doMeasurement(seconds);
}

// The server saw the bytes arrive: its figure comes first.
void MeasurementSteps::markUploadEnd()
{
    TestResults &record = *recorder.record();
    context.getTestObserver()->setUploadText(
        rateText(record.hasServerUpload() ? record.getServerUploadAvg()
                                          : record.getUploadResult()->getRateAvg()));
    showWaiting();
    record.setUploadLocationEnd(context.getLocationHelper()->getDoubleLocation());
    mark(u"UploadEnd"_s);
}

void MeasurementSteps::markRttStart()
{
    recorder.record()->setRttLocationStart(context.getLocationHelper()->getDoubleLocation());
    mark(u"RttStart"_s);
}

void MeasurementSteps::runRtt()
{
    context.getTestObserver()->setStatus(TestController::tr("testphase_rtt"));
    auto *test = new RttTest(&context, recorder.record());
    cancelStep = [test] { test->cancel(); };
    test->doMeasurement();
}

void MeasurementSteps::markRttEnd()
{
    TestResults &record = *recorder.record();
    const int average = record.getRTTResult()->getResponseAvg();
    context.getTestObserver()->setRTTText(average >= 1 ? Units::wholeMilliseconds(average)
                                                       : TestController::tr("na"));
    showWaiting();
    record.setRttLocationEnd(context.getLocationHelper()->getDoubleLocation());
    mark(u"RttEnd"_s);
}

void MeasurementSteps::runIdleDelays()
{
    context.getTestObserver()->setStatus(TestController::tr("testphase_delays"));
    auto *test =
        new RttTest(&context, recorder.record(), plan.idleSamples - DelayPlan::countedSamples);
    cancelStep = [test] { test->cancel(); };
    test->doMeasurement();
}

void MeasurementSteps::takeIdleDelays(const Result &result)
{
    TestResults &record = *recorder.record();
    record.setIdleDelays(record.getRTTResult()->getResponseDelays() + result.getResponseDelays());
}

// Loss tells CUBIC to slow down: unlike BBR it fills the queue on the way first, and what is in
// that queue is what a call waits for.
void MeasurementSteps::runExtraDownload()
{
    context.getTestObserver()->setStatus(TestController::tr("testphase_delays"));
    auto *test = new DownloadTest(&context, recorder.record(), TestIdOffset::extraDownload);
    test->setCongestionControl(queueFiller);
    const auto left = recorder.record()->getDataBudget().uploadShare(movedBytes());
    limit(*test, left ? std::optional(*left / 2) : std::nullopt);
    cancelStep = [test] { test->cancel(); };
    test->doMeasurement(extraSeconds);
}

void MeasurementSteps::runExtraUpload()
{
    auto *test = new UploadTest(&context, recorder.record(), TestIdOffset::extraUpload);
    test->setCongestionControl(queueFiller);
    limit(*test, recorder.record()->getDataBudget().uploadShare(movedBytes()));
    cancelStep = [test] { test->cancel(); };
    test->doMeasurement(extraSeconds);
}

bool MeasurementSteps::mayLoadMore() const
{
    const auto left = recorder.record()->getDataBudget().uploadShare(movedBytes());
    return !left || *left >= DataBudget::minimum;
}

qint64 MeasurementSteps::movedBytes() const
{
    const TestResults &record = *recorder.record();
    qint64 bytes = 0;
    for (const Result *each :
         {record.getDownloadResult(), record.getUploadResult(), record.getExtraDownloadResult()}) {
        bytes +=
            each ? static_cast<qint64>(each->getAllBytesTransfered()) + each->getProbeBytes() : 0;
    }
    return bytes;
}

void MeasurementSteps::showWaiting() const
{
    showInformation();
    context.getTestObserver()->setStatus(TestController::tr("testphase_wait"));
}

void MeasurementSteps::showInformation() const
{
    const LocationHelper &location = *context.getLocationHelper();
    const auto metres = [](const QString &number) {
        return QString::number(static_cast<qint64>(number.toFloat()));
    };
    QString position;
    switch (location.getLocationStatus()) {
    case 0: position = TestController::tr("positionunknown"); break;
    case 2:
        position = TestController::tr("positionknown")
                       .arg(metres(location.getAccuracyHor()), metres(location.getAltitude()));
        break;
    default: position = TestController::tr("positionabout"); break;
    }
    context.getTestObserver()->setInformation(context.getTestServer()->getHostname(),
                                              QString::number(context.getSeriesId()),
                                              QString::number(context.getTestId()), position);
}

void MeasurementSteps::showTransferred() const
{
    const QString mode = context.getNetWorkInfoHelper()->getNetworkmode();
    const QString prefix = mode.isEmpty() ? QString() : Utils::trConnectionTypeShort(mode) + u' ';
    showInformation();
    context.getTestObserver()->setDataTransferred(
        TestController::tr("DataTransferred") + prefix + ": "_L1 +
        Units::megabytes(recorder.finished().totalBytes()));
}

} // namespace velometer
