#include "http/measurements.h"

#include "http/held.h"
#include "measure/tcpfacts.h"
#include "measure/uploadstream.h"
#include "net/oneshot.h"

#include <QDateTime>

#include <algorithm>

namespace velometer::Measurements {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

/// What a stream's result may be late behind the question for it.
constexpr auto resultTime = 2s;
constexpr auto resultPause = 20ms;
/// What another service takes to store what it has measured.
constexpr auto recordTime = 300ms;

/// A stream asks for its duration; its client's clock starts later, and may run longer.
constexpr auto downloadSurplus = 2s;
constexpr auto uploadSurplus = 3s;

constexpr qint64 minRecordedMs = 500;

/// The test that @p request belongs to, when it has all of its numbers.
std::optional<StreamKey> testOf(const Request &request, std::int64_t offset)
{
    const auto user = request.number("testuserid");
    const auto series = request.number("seriesid");
    const auto test = request.number("testid");
    if (!user || !series || !test) {
        return std::nullopt;
    }
    return StreamKey{.user = *user, .series = *series, .test = *test - offset};
}

std::optional<std::chrono::seconds> streamTime(const Request &request, const Service &service)
{
    const auto seconds = request.number("logtraffic");
    if (!seconds) {
        return std::nullopt;
    }
    const std::int64_t longest = service.options.longestStream.count();
    return std::chrono::seconds(std::clamp(*seconds, std::int64_t{1}, longest));
}

/// The congestion control that is asked for; an empty name when none is, nothing of what cannot be
/// one.
std::optional<std::string> congestionControl(const Request &request)
{
    const std::string name(request.parameter("cc").value_or(""));
    const bool isName = name.size() <= 15 && std::ranges::all_of(name, [](char c) {
                            return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
                        });
    return isName ? std::optional(name) : std::nullopt;
}

Answer badParameters()
{
    return Answer::sentence(400, "A parameter is missing or is not what it should be.");
}

Answer noRoom(const Connection &connection, Service &service)
{
    noteRefusal(connection, service, "streams_full");
    return Answer::later("Too many measurements are running here. Please try again later.");
}

/// A test was counted when it was let in; a stream that belongs to none is counted by itself.
asio::awaitable<MaybeAnswer> spendStream(Connection &connection, Service &service,
                                         const std::optional<StreamKey> &test)
{
    if (test && service.streams.isReserved(*test)) {
        co_return std::nullopt;
    }
    co_return co_await spend(connection, service, Spent::Streams, test ? test->user : 0);
}

/// Keeps what a stream came to, unless it was too short for any report's rate. @p lateTimes are the
/// loop's when it began.
void record(Service &service, StreamRecord stream, std::int64_t lateTimes, bool heldUp)
{
    stream.late = heldUp || service.watch.lateTimes() != lateTimes;
    service.metrics.streamsLate += stream.late ? 1 : 0;
    if (stream.lasted >= minRecordedMs) {
        stream.ended = QDateTime::currentMSecsSinceEpoch();
        service.store->storeStream(stream);
    }
}

} // namespace

asio::awaitable<MaybeAnswer> userId(Connection &connection, const Request &request,
                                    Service &service)
{
    const auto uuid = request.parameter("UUID");
    if (!uuid || uuid->empty() || uuid->size() > 64 || !std::ranges::all_of(*uuid, [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                   c == '-';
        })) {
        co_return Answer::sentence(400, "UUID must be 1 to 64 letters, digits or hyphens.");
    }
    OneShot<std::optional<ReportStore::User>> user(connection.executor(), storeTime);
    service.store->findOrCreateUser(QString::fromLatin1(uuid->data(), qsizetype(uuid->size())),
                                    user.setter());
    const auto found = co_await user.wait();
    if (!found || !*found) {
        co_return storeFailed(service, 500);
    }
    Answer answer;
    answer.body = std::to_string((*found)->id) + ';' + std::to_string((*found)->lastSeries);
    answer.headers = "Cache-Control: no-store\r\n";
    co_return answer;
}

asio::awaitable<MaybeAnswer> initialise(Connection &connection, const Request &request,
                                        Service &service)
{
    // A test that would be refused in its middle leaves half a result; here it costs nothing.
    const auto test = testOf(request, TestIdOffset::initialise);
    if (service.uplink.isFull()) {
        noteRefusal(connection, service, "bandwidth");
        co_return Answer::comeBack(503, "The line of this service is full.", Streams::testTime);
    }
    const std::string bytesOf = service.payerOf(connection.getPeer(), test ? test->user : 0);
    if (const auto wait =
            service.allowances.look(Spent::Bytes, bytesOf, Allowances::Clock::now())) {
        co_return overSpent(connection, service, Spent::Bytes, *wait);
    }
    if (test) {
        if (const auto wait = service.streams.reserve(connection.getPeer(), *test)) {
            noteRefusal(connection, service, "streams_full");
            co_return Answer::comeBack(503, "Too many measurements are running here.", *wait);
        }
    } else if (!service.streams.hasRoom(connection.getPeer())) {
        co_return noRoom(connection, service);
    }
    const auto facts = TcpFacts::of(connection.getSocket().native_handle());
    std::string body = "Client-Hostname:" + co_await hostName(connection, service);
    body += ";Server-IP:" + connection.getLocal().to_string();
    body += ";Remote-IP:" + connection.getPeer().to_string();
    if (facts) {
        body += ";MSS:" + std::to_string(facts->mss);
        body += ";WinScaleRcvd:" + std::to_string(facts->windowScale);
        body += ";MaxRwinRcvd:" + std::to_string(facts->receiveWindow);
        body += facts->selectiveAck ? ";SACK:1" : ";SACK:0";
        body += facts->timestamps ? ";Timestamp:1;" : ";Timestamp:0;";
    } else {
        body += ";Web100:unavailable;";
    }
    Answer answer;
    answer.body = std::move(body);
    co_return answer;
}

asio::awaitable<MaybeAnswer> download(Connection &connection, const Request &request,
                                      Service &service)
{
    const auto seconds = streamTime(request, service);
    const auto control = congestionControl(request);
    if (!seconds || !control) {
        co_return badParameters();
    }
    // A download can be had without ids; then nobody asks for its result.
    const auto key = testOf(request, TestIdOffset::download);
    if (auto refusal = co_await spendStream(connection, service, key)) {
        co_return refusal;
    }
    const auto place = service.streams.take(connection.getPeer(), Direction::Download, key);
    if (!place) {
        co_return noRoom(connection, service);
    }
    const Held running(service.metrics.downloads);
    ++service.metrics.downloadsTotal;
    const auto lateTimes = service.watch.lateTimes();
    const auto ticket = key ? service.downloads.begin(*key) : 0;
    const auto use = service.uplink.join(Direction::Download);
    const auto totals = co_await sendStream(connection, service.block, *seconds + downloadSurplus,
                                            *control, {service.metrics.bytesDown, *use});
    if (key) {
        service.downloads.end(*key, ticket, Subscriber::of(connection.getPeer()),
                              totals.bytes > 0 ? std::optional(totals) : std::nullopt);
        record(service,
               {.test = *key,
                .direction = Direction::Download,
                .bytes = totals.bytes,
                .lasted = totals.lasted.count(),
                .avg = totals.rate(),
                .kernel = QString::fromStdString(totals.kernel)},
               lateTimes, use->wasHeldUp());
    }
    service.allowances.charge(Spent::Bytes,
                              service.payerOf(connection.getPeer(), key ? key->user : 0),
                              totals.bytes, Allowances::Clock::now());
    co_return std::nullopt;
}

asio::awaitable<MaybeAnswer> upload(Connection &connection, const Request &request,
                                    Service &service)
{
    const auto seconds = streamTime(request, service);
    const auto key = testOf(request, TestIdOffset::upload);
    if (!seconds || !key) {
        co_return badParameters();
    }
    if (auto refusal = co_await spendStream(connection, service, key)) {
        co_return refusal;
    }
    const auto place = service.streams.take(connection.getPeer(), Direction::Upload, key);
    if (!place) {
        co_return noRoom(connection, service);
    }
    const Held running(service.metrics.uploads);
    ++service.metrics.uploadsTotal;
    const auto lateTimes = service.watch.lateTimes();
    const auto ticket = service.uploads.begin(*key);
    const auto use = service.uplink.join(Direction::Upload);
    if (request.expectsContinue) {
        co_await connection.write(goOn);
    }
    const std::string answer = Answer::sentence(200, "received").toBytes();
    const auto totals =
        co_await receiveStream(connection, request.contentLength, answer, *seconds + uploadSurplus,
                               {service.metrics.bytesUp, *use});
    const auto figures = totals.meter.figures();
    service.uploads.end(*key, ticket, Subscriber::of(connection.getPeer()),
                        figures ? std::optional(UploadResult{*figures, totals.kernel})
                                : std::nullopt);
    service.allowances.charge(Spent::Bytes, service.payerOf(connection.getPeer(), key->user),
                              totals.meter.getTotal(), Allowances::Clock::now());
    if (figures) {
        record(service,
               {.test = *key,
                .direction = Direction::Upload,
                .bytes = totals.meter.getTotal(),
                .lasted = totals.meter.lasted().count(),
                .min = figures->min,
                .avg = figures->avg,
                .max = figures->max,
                .kernel = QString::fromStdString(totals.kernel)},
               lateTimes, use->wasHeldUp());
    }
    co_return std::nullopt;
}

asio::awaitable<std::optional<StreamRecord>>
storedStream(Connection &connection, Service &service, const StreamKey &test, Direction direction)
{
    OneShot<std::optional<QList<StreamRecord>>> found(connection.executor(), storeTime);
    service.store->stream(test, direction, found.setter());
    const auto answer = co_await found.wait();
    co_return answer && *answer && !(*answer)->isEmpty() ? std::optional((*answer)->constFirst())
                                                         : std::nullopt;
}

asio::awaitable<MaybeAnswer> uploadResult(Connection &connection, const Request &request,
                                          Service &service)
{
    const auto key = testOf(request, TestIdOffset::upload);
    if (!key) {
        co_return badParameters();
    }
    const auto deadline = Connection::Clock::now() + resultTime;
    auto found = service.uploads.find(*key);
    asio::steady_timer timer(connection.executor());
    while (found.running && Connection::Clock::now() < deadline) {
        timer.expires_after(resultPause);
        co_await timer.async_wait(quietly);
        found = service.uploads.find(*key);
    }
    Answer answer;
    if (found.result) {
        answer.body = found.result->figures.toText();
        co_return answer;
    }
    // Another service may have measured it; its record is on its way into the store they share.
    auto stored = co_await storedStream(connection, service, *key, Direction::Upload);
    if (!stored) {
        timer.expires_after(recordTime);
        co_await timer.async_wait(quietly);
        stored = co_await storedStream(connection, service, *key, Direction::Upload);
    }
    if (!stored) {
        co_return Answer::sentence(404, "There is no result of such an upload.");
    }
    answer.body =
        UploadFigures{.min = stored->min, .avg = stored->avg, .max = stored->max}.toText();
    co_return answer;
}

} // namespace velometer::Measurements
