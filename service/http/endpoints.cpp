#include "http/endpoints.h"

#include "http/handler.h"
#include "http/held.h"
#include "http/pages.h"
#include "http/reportsubmission.h"
#include "http/request.h"
#include "measure/tcpfacts.h"
#include "measure/uploadstream.h"
#include "net/oneshot.h"
#include "web/assets.h"

#include <QDateTime>

#include <algorithm>

namespace velometer {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A peer that takes nothing of its answer for so long has gone, or left the network.
constexpr auto answerPatience = 60s;

/// What is left of a stream when it has ended is of no use to anybody.
constexpr auto streamPatience = 2s;

/// What a stream's result may be late behind the question for it.
constexpr auto resultTime = 2s;
constexpr auto resultPause = 20ms;

/// A stream asks for its duration; its client's clock starts later, and may run longer.
constexpr auto downloadSurplus = 2s;
constexpr auto uploadSurplus = 3s;

constexpr qint64 minRecordedMs = 500;

using Handler = asio::awaitable<MaybeAnswer> (*)(Connection &, const Request &, Service &);

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

Answer badParameters()
{
    return Answer::sentence(400, "A parameter is missing or is not a number.");
}

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

Answer noRoom()
{
    return Answer::later("Too many measurements are running here. Please try again later.");
}

asio::awaitable<MaybeAnswer> initialise(Connection &connection, const Request &request,
                                        Service &service)
{
    // A test that would be refused in its middle leaves half a result; here it costs nothing.
    const auto test = testOf(request, TestIdOffset::initialise);
    if (!(test ? service.streams.reserve(connection.getPeer(), *test)
               : service.streams.hasRoom(connection.getPeer()))) {
        co_return noRoom();
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

/// Keeps what a stream came to, unless it was too short for any report's rate. @p lateTimes are the
/// loop's when it began.
void record(Service &service, StreamRecord stream, std::int64_t lateTimes)
{
    stream.late = service.watch.lateTimes() != lateTimes;
    service.metrics.streamsLate += stream.late ? 1 : 0;
    if (stream.lasted >= minRecordedMs) {
        stream.ended = QDateTime::currentMSecsSinceEpoch();
        service.store->storeStream(stream);
    }
}

asio::awaitable<MaybeAnswer> download(Connection &connection, const Request &request,
                                      Service &service)
{
    const auto seconds = streamTime(request, service);
    if (!seconds) {
        co_return badParameters();
    }
    // A download can be had without ids; then nobody asks for its result.
    const auto key = testOf(request, TestIdOffset::download);
    const auto place = service.streams.take(connection.getPeer(), Direction::Download, key);
    if (!place) {
        co_return noRoom();
    }
    const Held running(service.metrics.downloads);
    ++service.metrics.downloadsTotal;
    const auto lateTimes = service.watch.lateTimes();
    const auto ticket = key ? service.downloads.begin(*key) : 0;
    const auto totals = co_await sendStream(connection, service.block, *seconds + downloadSurplus,
                                            service.metrics.bytesDown);
    if (key) {
        service.downloads.end(*key, ticket, Subscriber::of(connection.getPeer()),
                              totals.bytes > 0 ? std::optional(totals) : std::nullopt);
        record(service,
               {.test = *key,
                .direction = Direction::Download,
                .bytes = totals.bytes,
                .lasted = totals.lasted.count(),
                .avg = totals.rate()},
               lateTimes);
    }
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
    const auto place = service.streams.take(connection.getPeer(), Direction::Upload, key);
    if (!place) {
        co_return noRoom();
    }
    const Held running(service.metrics.uploads);
    ++service.metrics.uploadsTotal;
    const auto lateTimes = service.watch.lateTimes();
    const auto ticket = service.uploads.begin(*key);
    if (request.expectsContinue) {
        co_await connection.write(goOn);
    }
    const std::string answer = Answer::sentence(200, "received").toBytes();
    const auto meter = co_await receiveStream(connection, request.contentLength, answer,
                                              *seconds + uploadSurplus, service.metrics.bytesUp);
    const auto figures = meter.figures();
    service.uploads.end(*key, ticket, Subscriber::of(connection.getPeer()), figures);
    if (figures) {
        record(service,
               {.test = *key,
                .direction = Direction::Upload,
                .bytes = meter.getTotal(),
                .lasted = meter.lasted().count(),
                .min = figures->min,
                .avg = figures->avg,
                .max = figures->max},
               lateTimes);
    }
    co_return std::nullopt;
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
    if (!found.result) {
        co_return Answer::sentence(404, "There is no result of such an upload.");
    }
    Answer answer;
    answer.body = found.result->toText();
    co_return answer;
}

asio::awaitable<MaybeAnswer> healthz(Connection &connection, const Request &, Service &service)
{
    OneShot<QString> problem(connection.executor(), 2s);
    service.store->ping(problem.setter());
    const auto answered = co_await problem.wait();
    if (!answered || !answered->isEmpty()) {
        ++service.metrics.storeErrors;
        co_return Answer::sentence(
            503, "The store takes no reports: " +
                     answered.value_or(u"it does not answer"_s).toStdString() + '.');
    }
    co_return Answer::sentence(200, "ok");
}

asio::awaitable<MaybeAnswer> metrics(Connection &, const Request &, Service &service)
{
    Answer answer;
    answer.contentType = "text/plain; version=0.0.4; charset=utf-8";
    answer.body = service.metrics.toText();
    co_return answer;
}

struct Route
{
    std::string_view path; ///< with a slash at its end also all below it, but for the root
    std::string_view method;
    Handler handler;
};

/// In the order of Metrics::endpoints, which counts what is found nowhere last.
constexpr std::array<Route, Metrics::endpoints.size() - 1> endpoints{{
    {"/velometer/getIDwithUUID.jsp", "GET", userId},
    {"/velometer/initialise.php", "GET", initialise},
    {"/velometer/downloadtest.php", "GET", download},
    {"/velometer/uploadtest.php", "POST", upload},
    {"/velometer/getuploadresult.php", "GET", uploadResult},
    {"/velometer/redirect_iphone.php", "POST", submitReport},
    {"/velometer/Controller", "GET", controllerPage},
    {"/", "GET", homePage},
    {Assets::root, "GET", assetFile},
    {"/healthz", "GET", healthz},
    {"/metrics", "GET", metrics},
}};

asio::awaitable<void> send(Connection &connection, Service &service, std::size_t endpoint,
                           const Answer &answer)
{
    service.metrics.countRequest(endpoint, answer.status);
    const std::string bytes = answer.toBytes();
    co_await connection.write(bytes, answerPatience);
}

} // namespace

asio::awaitable<void> serveRequest(std::shared_ptr<Connection> connection, Service &service)
{
    constexpr std::size_t other = endpoints.size();
    std::chrono::milliseconds patience = answerPatience;
    connection->expireAt(Connection::Clock::now() + service.options.headTimeout);
    const auto head = co_await connection->readHead();
    if (head == Connection::Head::Gone) {
        co_return;
    }
    std::optional<Request> request;
    if (head == Connection::Head::Complete) {
        request = Request::parse(connection->head());
    }
    if (head == Connection::Head::TooLarge) {
        const auto answer = Answer::sentence(431, "The request's head is too large.");
        co_await send(*connection, service, other, answer);
    } else if (request && !request->namesHost) {
        const auto answer = Answer::sentence(400, "The request must name one Host.");
        co_await send(*connection, service, other, answer);
    } else if (request && request->transferEncoded) {
        const auto answer =
            Answer::sentence(501, "Only bodies without a transfer coding are taken.");
        co_await send(*connection, service, other, answer);
    } else if (!request) {
        const auto answer = Answer::sentence(400, "This is no HTTP request.");
        co_await send(*connection, service, other, answer);
    } else {
        const std::string_view path = request->path;
        const auto endpoint = std::ranges::find_if(endpoints, [path](const Route &route) {
            return path == route.path || (route.path.size() > 1 && route.path.ends_with('/') &&
                                          path.starts_with(route.path));
        });
        const auto index = static_cast<std::size_t>(endpoint - endpoints.begin());
        MaybeAnswer answer;
        if (endpoint == endpoints.end()) {
            answer = Answer::sentence(404, "There is nothing here.");
        } else if (endpoint->method != request->method) {
            answer = Answer::sentence(405, "This path takes another method.");
            answer->headers = "Allow: " + std::string(endpoint->method) + "\r\n";
        } else {
            answer = co_await endpoint->handler(*connection, *request, service);
        }
        if (answer && request->method == "HEAD") {
            answer->body.clear();
        }
        if (answer) {
            co_await send(*connection, service, index, *answer);
        } else {
            service.metrics.countRequest(index, 200);
            patience = streamPatience;
        }
    }
    co_await connection->finish(patience);
}

asio::awaitable<void> refuseRequest(std::shared_ptr<Connection> connection, Service &service)
{
    const auto answer = Answer::later("Too many connections from this address.");
    co_await send(*connection, service, endpoints.size(), answer);
    co_await connection->finish(answerPatience);
}

} // namespace velometer
