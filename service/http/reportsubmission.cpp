#include "http/reportsubmission.h"

#include "http/held.h"
#include "http/measurements.h"
#include "net/oneshot.h"
#include "ops/log.h"
#include "reports/placeholders.h"
#include "reports/reportparser.h"

#include <boost/asio/buffer.hpp>

#include <QDateTime>

#include <algorithm>

namespace velometer {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;

namespace {

/// What reports on their way may hold of memory, all together; one of the largest size always fits.
constexpr std::size_t maxMemory = std::size_t{256} << 20;

/// Why a report was not taken.
enum class Rejection : std::size_t { Damaged, Hash, TooLarge, Timeout, Busy, Deleted };

Answer reject(const Connection &connection, Service &service, Rejection reason)
{
    Log::write(Log::Level::Warning, "report_rejected", {},
               {{"reason", std::string(Metrics::rejections.at(static_cast<std::size_t>(reason)))},
                {"client", connection.getPeer().to_string()}});
    ++service.metrics.reportsRejected.at(static_cast<std::size_t>(reason));
    switch (reason) {
    case Rejection::Damaged: return Answer::sentence(400, "The report is damaged.");
    case Rejection::Hash: return Answer::sentence(403, "The report's hash is wrong.");
    case Rejection::TooLarge: return Answer::sentence(413, "The report is too large.");
    case Rejection::Timeout: return Answer::sentence(408, "The report did not arrive in time.");
    case Rejection::Deleted:
        return Answer::sentence(
            410, "The measurements of this user id were deleted; reports of it are not taken.");
    case Rejection::Busy: break;
    }
    return Answer::later("Too many reports are being received. Please try again later.");
}

using Body = std::variant<QByteArray, Rejection>;
using Memory = Held<std::atomic<std::size_t>>;

/// Reads a report up to its closing tag, whatever length was announced: text encoded twice is
/// longer.
asio::awaitable<Body> readReport(Connection &connection, const Request &request, Service &service,
                                 Memory &memory)
{
    const auto &options = service.options;
    if (request.contentLength && *request.contentLength > options.maxReportBytes) {
        co_return Rejection::TooLarge;
    }
    const auto deadline = Connection::Clock::now() + options.reportTimeout;
    if (request.expectsContinue) {
        connection.expireAt(deadline);
        co_await connection.write(goOn);
    }
    std::string body;
    bool ascii = true;
    std::string_view added = connection.rest();
    while (true) {
        const auto searchFrom = std::max(body.size(), ReportParser::closingTag.size()) -
                                ReportParser::closingTag.size();
        memory.add(added.size());
        body += added;
        ascii = ascii && std::ranges::all_of(added, [](char c) { return c >= 0; });
        const auto tag = body.find(ReportParser::closingTag, searchFrom);
        if (tag != std::string::npos) {
            body.resize(tag + ReportParser::closingTag.size());
        }
        if (body.size() > options.maxReportBytes) {
            co_return Rejection::TooLarge;
        }
        if (service.reportBytes > std::max(maxMemory, 2 * options.maxReportBytes)) {
            co_return Rejection::Busy;
        }
        if (tag != std::string::npos) {
            break;
        }
        if (ascii && request.contentLength && body.size() >= *request.contentLength) {
            // Only other letters than ASCII's make a report longer than it said.
            co_return Rejection::Damaged;
        }
        connection.expireAt(std::min(Connection::Clock::now() + options.reportPause, deadline));
        const auto scratch = connection.scratch();
        const auto [error, count] =
            co_await connection.readSome(asio::buffer(scratch.data(), scratch.size()));
        if (connection.isExpired()) {
            co_return Rejection::Timeout;
        }
        if (error) {
            co_return Rejection::Damaged;
        }
        added = std::string_view(scratch.data(), count);
    }
    co_return QByteArray(body.data(), qsizetype(body.size()));
}

/// What was seen of the streams of a report's test, here or by another service.
struct StreamsSeen
{
    std::optional<StreamRecord> download, upload;
};

asio::awaitable<StreamsSeen> streamsOf(Connection &connection, Service &service,
                                       const StreamKey &test)
{
    StreamsSeen seen;
    if (const auto down = service.downloads.find(test).result) {
        seen.download = StreamRecord{.test = test,
                                     .bytes = down->bytes,
                                     .lasted = down->lasted.count(),
                                     .kernel = QString::fromStdString(down->kernel)};
    } else {
        seen.download =
            co_await Measurements::storedStream(connection, service, test, Direction::Download);
    }
    if (const auto up = service.uploads.find(test).result) {
        seen.upload = StreamRecord{.test = test,
                                   .direction = Direction::Upload,
                                   .min = up->figures.min,
                                   .avg = up->figures.avg,
                                   .max = up->figures.max,
                                   .kernel = QString::fromStdString(up->kernel)};
    } else {
        seen.upload =
            co_await Measurements::storedStream(connection, service, test, Direction::Upload);
    }
    co_return seen;
}

/// The places in the document that only the service can fill in.
QHash<QString, QString> serverValues(const Connection &connection, const Report &report,
                                     const std::string &name, const StreamsSeen &seen)
{
    const QString nothing = u"no stream recorded"_s;
    return {
        {u"PUBLICIP"_s, report.publicIp},
        {u"CLIENTNAME"_s, QString::fromStdString(name)},
        {u"TIME"_s, QString::number(report.serverTime)},
        {u"DOWNLOADFILE"_s, seen.download
                                ? u"sent %1 bytes in %2 ms; %3"_s.arg(seen.download->bytes)
                                      .arg(seen.download->lasted)
                                      .arg(seen.download->kernel)
                                : nothing},
        {u"UPLOADFILE"_s, seen.upload
                              ? u"received min %1, avg %2, max %3 bit/s; %4"_s.arg(seen.upload->min)
                                    .arg(seen.upload->avg)
                                    .arg(seen.upload->max)
                                    .arg(seen.upload->kernel)
                              : nothing},
        {u"ACCESSINFO"_s,
         u"received over %1"_s.arg(connection.getPeer().is_v6() ? u"IPv6"_s : u"IPv4"_s)},
    };
}

} // namespace

asio::awaitable<MaybeAnswer> submitReport(Connection &connection, const Request &request,
                                          Service &service)
{
    const auto share = service.reports.take(Subscriber::of(connection.getPeer()));
    if (!share) {
        co_return reject(connection, service, Rejection::Busy);
    }
    Memory memory(service.reportBytes, 0);
    auto body = co_await readReport(connection, request, service, memory);
    if (const auto *reason = std::get_if<Rejection>(&body)) {
        co_return reject(connection, service, *reason);
    }
    const auto bytes = std::get<QByteArray>(std::move(body));
    const auto parse = [bytes, &service] {
        return ReportParser::parse(bytes, *service.salts(), service.stopping);
    };
    auto result = co_await offload(connection, service.parsers, parse);
    if (!result) {
        co_return reject(connection, service, Rejection::Busy);
    }
    if (const auto *problem = std::get_if<ReportParser::Problem>(&*result)) {
        switch (*problem) {
        case ReportParser::Problem::Damaged:
            co_return reject(connection, service, Rejection::Damaged);
        case ReportParser::Problem::WrongHash:
            co_return reject(connection, service, Rejection::Hash);
        case ReportParser::Problem::Stopped: co_return reject(connection, service, Rejection::Busy);
        }
    }
    Report report = std::get<Report>(*std::move(result));
    if (auto refusal = co_await spend(connection, service, Spent::Reports, report.userId)) {
        co_return refusal;
    }
    const std::string name = co_await hostName(connection, service);
    report.publicIp = QString::fromStdString(connection.getPeer().to_string());
    report.serverTime = QDateTime::currentMSecsSinceEpoch();
    const StreamsSeen seen = co_await streamsOf(connection, service, report.key());
    const auto values = serverValues(connection, report, name, seen);
    const auto fill = [document = report.document, values] {
        return Placeholders::fill(document, values);
    };
    auto filled = co_await offload(connection, service.parsers, fill);
    if (!filled) {
        co_return reject(connection, service, Rejection::Busy);
    }
    report.document = *std::move(filled);

    OneShot<ReportStore::Outcome> outcome(connection.executor(), storeTime);
    service.store->storeReport(std::move(report), outcome.setter());
    const auto stored = co_await outcome.wait();
    if (!stored || *stored == ReportStore::Outcome::Failed) {
        co_return storeFailed(service, 500);
    }
    if (*stored == ReportStore::Outcome::Deleted) {
        co_return reject(connection, service, Rejection::Deleted);
    }
    ++(*stored == ReportStore::Outcome::Stored ? service.metrics.reportsStored
                                               : service.metrics.reportsRepeated);
    co_return Answer::sentence(200, "stored");
}

} // namespace velometer
