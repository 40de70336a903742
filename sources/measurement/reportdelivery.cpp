#include "measurement/reportdelivery.h"

#include "data/testserver.h"
#include "db/databasemanager.h"
#include "db/storewriter.h"
#include "measurement/controlrequests.h"
#include "measurement/httpgetrequester.h"
#include "utils/utils.h"

#include <QTimer>

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int requestTimeoutMs = 10'000;

bool isGone(const QString &header)
{
    return header.startsWith("HTTP/1."_L1) && header.sliced(8).startsWith(" 410"_L1);
}

qlonglong userOf(const XMLData &report)
{
    const QString &xml = report.xml;
    const qsizetype begin = xml.indexOf("<UserID>"_L1) + 8;
    return QStringView(xml).sliced(begin, xml.indexOf(u'<', begin) - begin).toLongLong();
}

} // namespace

ReportDelivery::ReportDelivery(HttpGetRequester &httpRequester, StoreWriter &storeWriter,
                               QObject *parent)
    : QObject(parent)
    , requester(httpRequester)
    , writer(storeWriter)
{}

ReportDelivery::~ReportDelivery() = default;

void ReportDelivery::begin(const TestServer *testServer)
{
    cancel();
    server = testServer;
    keptForLater = false;
    outcome = {};
}

void ReportDelivery::setOwn(std::optional<qint64> row, bool kept)
{
    outcome.queueId = row;
    keptForLater = kept;
}

void ReportDelivery::submit(const XMLData &own, std::function<void()> done)
{
    whenDone = std::move(done);
    report = own;
    submitting = true;
    post();
}

void ReportDelivery::keep(const QString &own, std::function<void()> done)
{
    whenDone = std::move(done);
    report = {};
    report.xml = own;
    writer.write([this] { return enqueue(); },
                 [this](bool kept) {
                     outcome.storeFailed |= !kept;
                     finish();
                 });
}

bool ReportDelivery::enqueue()
{
    const auto row = gDB->insertOrUpdateXMLFile(&report);
    if (row) {
        outcome.queueId = row;
    }
    return row.has_value();
}

void ReportDelivery::walkQueue(std::function<void()> done)
{
    whenDone = std::move(done);
    offerNext(std::numeric_limits<qint64>::min());
}

void ReportDelivery::cancel()
{
    submitting = false;
    whenDone = nullptr;
    scope.reset();
    requester.cancel();
    writer.cancel();
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
    if (ok && isGone(header)) {
        outcome.goneUser = userOf(report);
        return forgetReport();
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
    if (!report.identification && (taken || keptForLater)) {
        return later([this] { finish(); });
    }
    settle(taken, [this, taken](bool done) {
        if (taken && done) {
            outcome.queueId.reset();
        }
        later([this] { finish(); });
    });
}

void ReportDelivery::queuedAnswered(bool taken)
{
    settle(taken, [this, taken](bool done) {
        if (taken && done) {
            Utils::addLogEntry(u"Result retry successfull!"_s);
            ++outcome.resent;
        }
        later([this] { offerNext(*report.identification); });
    });
}

// No later try would end otherwise.
void ReportDelivery::forgetReport()
{
    const bool own = std::exchange(submitting, false);
    const auto next = [this, own] {
        later([this, own] { own ? finish() : offerNext(*report.identification); });
    };
    if (!report.identification) {
        return next();
    }
    writer.write([this] { return gDB->deleteUnsentXMLFile(*report.identification, false); },
                 [this, own, next](bool done) {
                     if (own && done) {
                         outcome.queueId.reset();
                     }
                     next();
                 });
}

// What was taken leaves the queue; what was not counts one attempt more there.
void ReportDelivery::settle(bool taken, const std::function<void(bool)> &settled)
{
    const bool isOwn = !report.identification || outcome.queueId == report.identification;
    writer.write(
        [this, taken, isOwn] {
            if (taken) {
                return gDB->deleteUnsentXMLFile(*report.identification);
            }
            return isOwn ? enqueue() : gDB->insertOrUpdateXMLFile(&report).has_value();
        },
        [this, taken, settled](bool done) {
            outcome.storeFailed |= !taken && !done;
            settled(done);
        });
}

void ReportDelivery::offerNext(qint64 afterRow)
{
    auto next = gDB->getNextUnsentXMLFile(afterRow);
    qint64 row = next ? next->identification.value_or(afterRow) : afterRow;
    if (next && outcome.queueId == row) {
        next = gDB->getNextUnsentXMLFile(row);
        row = next ? next->identification.value_or(row) : row;
    }
    if (!next) {
        return finish();
    }
    report = *next;
    Utils::addLogEntry(u"Found old result: %1,%2"_s.arg(QString::number(row),
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
