#include "measurement/reportdelivery.h"

#include "data/testserver.h"
#include "db/databasemanager.h"
#include "measurement/controlrequests.h"
#include "measurement/httpgetrequester.h"
#include "utils/utils.h"

#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int requestTimeoutMs = 10'000;

} // namespace

ReportDelivery::ReportDelivery(HttpGetRequester &httpRequester, QObject *parent)
    : QObject(parent)
    , requester(httpRequester)
{}

ReportDelivery::~ReportDelivery() = default;

void ReportDelivery::begin(const TestServer *testServer)
{
    cancel();
    server = testServer;
    outcome = {};
}

void ReportDelivery::submit(const QString &own, std::function<void()> done)
{
    whenDone = std::move(done);
    report = {};
    report.xml = own;
    submitting = true;
    post();
}

void ReportDelivery::keep(const QString &own)
{
    report = {};
    report.xml = own;
    enqueue();
}

void ReportDelivery::enqueue()
{
    const int row = gDB->insertOrUpdateXMLFile(&report);
    if (row > 0) {
        outcome.queueId = row;
    } else {
        outcome.storeFailed = true;
    }
}

void ReportDelivery::keepSubmitted()
{
    if (std::exchange(submitting, false)) {
        enqueue();
    }
    cancel();
}

void ReportDelivery::walkQueue(std::function<void()> done)
{
    whenDone = std::move(done);
    offerNext(0);
}

void ReportDelivery::cancel()
{
    submitting = false;
    whenDone = nullptr;
    scope.reset();
    requester.cancel();
}

void ReportDelivery::answered(bool ok, const QString &header, const QString &body)
{
    if (!whenDone) {
        return;
    }
    report.successfull = ok && header.contains("200 OK"_L1);
    outcome.answered |= ok;
    if (!report.successfull) {
        Utils::addLogEntry(u"Error saving results: %1"_s.arg(body));
        ++report.numberofretries;
    }
    if (std::exchange(submitting, false)) {
        ownAnswered(report.successfull);
    } else {
        queuedAnswered(report.successfull);
    }
}

void ReportDelivery::ownAnswered(bool taken)
{
    outcome.delivered = taken;
    if (!taken) {
        enqueue();
    }
    later([this] { finish(); });
}

void ReportDelivery::queuedAnswered(bool taken)
{
    const int row = report.identification;
    if (!taken) {
        outcome.storeFailed |= gDB->insertOrUpdateXMLFile(&report) <= 0;
    } else if (gDB->deleteUnsentXMLFile(row)) {
        Utils::addLogEntry(u"Result retry successfull!"_s);
        ++outcome.resent;
    }
    later([this, row] { offerNext(row); });
}

void ReportDelivery::offerNext(int afterRow)
{
    auto next = gDB->getNextUnsentXMLFile(afterRow);
    if (next && outcome.queueId == next->identification) {
        next = gDB->getNextUnsentXMLFile(next->identification);
    }
    if (!next) {
        return finish();
    }
    report = *next;
    Utils::addLogEntry(u"Found old result: %1,%2"_s.arg(QString::number(report.identification),
                                                        QString::number(report.numberofretries)));
    report.xml.replace(
        "</ClientTime>"_L1,
        u"</ClientTime><ClientRetryTime>%1</ClientRetryTime>"_s.arg(Utils::getTimeInMs()));
    post();
}

// The requester's handler returns before the next request begins.
void ReportDelivery::later(const std::function<void()> &step)
{
    scope = std::make_unique<QObject>();
    QTimer::singleShot(0, scope.get(), step);
}

void ReportDelivery::post()
{
    requester.doRequest(server->getHostname(), server->getPort(),
                        ControlRequests::report(server->getHostHeader(), report.xml),
                        requestTimeoutMs);
}

void ReportDelivery::finish()
{
    if (const auto done = std::exchange(whenDone, nullptr)) {
        done();
    }
}

} // namespace velometer
