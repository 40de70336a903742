#include "http/endpoints.h"

#include "http/api.h"
#include "http/handler.h"
#include "http/measurements.h"
#include "http/pages.h"
#include "http/reportsubmission.h"
#include "http/request.h"
#include "net/oneshot.h"
#include "net/proxyheader.h"
#include "ops/log.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace velometer {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A peer that takes nothing of its answer for so long has gone, or left the network.
constexpr auto answerPatience = 60s;

/// What is left of a stream when it has ended is of no use to anybody.
constexpr auto streamPatience = 2s;

asio::awaitable<MaybeAnswer> healthz(Connection &connection, const Request &, Service &service)
{
    OneShot<QString> problem(connection.executor(), 2s);
    service.store->ping(problem.setter());
    const auto answered = co_await problem.wait();
    if (!answered || !answered->isEmpty()) {
        ++service.metrics.storeErrors;
        if (service.hasAdmin && connection.getRole() != Connection::Role::Admin) {
            co_return Answer::sentence(503, "The store takes no reports.");
        }
        co_return Answer::sentence(
            503, "The store takes no reports: " +
                     answered.value_or(u"it does not answer"_s).toStdString() + '.');
    }
    co_return Answer::sentence(200, "ok");
}

asio::awaitable<MaybeAnswer> metrics(Connection &, const Request &, Service &service)
{
    const StoreLoad load = service.store->load();
    const auto waitingIn = [](FairPool &pool) {
        return static_cast<std::int64_t>(pool.waitingTasks());
    };
    std::vector<Metrics::Gauge> gauges{
        {"store_writes_waiting", "Operations that wait for the store to write.", load.writes},
        {"store_reads_waiting", "Operations that wait for the store to read.", load.reads},
        {"parsers_waiting", "Reports that wait to be parsed.", waitingIn(service.parsers)},
        {"page_makers_waiting", "Pages and answers that wait to be made.",
         waitingIn(service.pageMakers)},
        {"tests_waiting", "Tests that were told to come back.",
         static_cast<std::int64_t>(service.streams.waiting())},
        {"line_full", "1 while the service's own line is nearly full.",
         service.uplink.isFull() ? 1 : 0}};
    if (load.freeBytes) {
        gauges.push_back({"store_free_bytes", "Room on the store's disk.", *load.freeBytes});
    }
    if (service.metrics.certificateExpires > 0) {
        gauges.push_back({"certificate_expires_seconds",
                          "When the certificate expires, in seconds since 1970.",
                          service.metrics.certificateExpires});
    }
    Answer answer;
    answer.contentType = "text/plain; version=0.0.4; charset=utf-8";
    answer.body = service.metrics.toText(gauges);
    co_return answer;
}

/// What stands for the {} or the * of @p pattern in @p path, which must not be empty; an empty text
/// for a pattern without. Nothing when the path is another.
std::optional<std::string_view> match(std::string_view pattern, std::string_view path)
{
    if (pattern.ends_with('*')) {
        const auto before = pattern.substr(0, pattern.size() - 1);
        return path.starts_with(before) ? std::optional(path.substr(before.size())) : std::nullopt;
    }
    const auto place = pattern.find("{}");
    if (place == std::string_view::npos) {
        return pattern == path ? std::optional(std::string_view()) : std::nullopt;
    }
    const auto before = pattern.substr(0, place);
    const auto after = pattern.substr(place + 2);
    if (path.size() <= before.size() + after.size() || !path.starts_with(before) ||
        !path.ends_with(after)) {
        return std::nullopt;
    }
    const auto segment = path.substr(before.size(), path.size() - before.size() - after.size());
    return segment.find('/') == std::string_view::npos ? std::optional(segment) : std::nullopt;
}

using Handler = asio::awaitable<MaybeAnswer> (*)(Connection &, const Request &, Service &);

/// How long what was sent may wait for a peer that takes nothing of it.
enum class After { Answer, Stream };

/// On which listeners a path is there.
enum class Where {
    Public,     ///< not on the operator's
    Everywhere, ///< on all
    Admin,      ///< on the operator's alone, where there is one
};

struct Route
{
    std::string_view path; ///< {} stands for one segment, * at the end for any number of them
    std::string_view method;
    std::string_view name; ///< in the metrics
    Handler handler;
    After after = After::Answer;
    Where where = Where::Public;
    // NOLINTNEXTLINE(readability-redundant-member-init): lets it be left out
    std::optional<Spent> spends{}; ///< what is counted before it is answered

    constexpr Route spending(Spent kind) const
    {
        Route route = *this;
        route.spends = kind;
        return route;
    }

    bool isOn(Connection::Role role, bool hasAdmin) const
    {
        switch (where) {
        case Where::Public:
            return role == Connection::Role::Public ||
                   (role == Connection::Role::Tls && after != After::Stream);
        case Where::Everywhere: return true;
        case Where::Admin: return role == Connection::Role::Admin || !hasAdmin;
        }
        return false;
    }
};

/// All that the service answers to.
constexpr std::array endpoints{
    Route{"/velometer/getIDwithUUID.jsp", "GET", "user_id", Measurements::userId}.spending(
        Spent::Ids),
    Route{"/velometer/initialise.php", "GET", "initialise", Measurements::initialise}.spending(
        Spent::Streams),
    Route{"/velometer/downloadtest.php", "GET", "download", Measurements::download, After::Stream},
    Route{"/velometer/uploadtest.php", "POST", "upload", Measurements::upload, After::Stream},
    Route{"/velometer/getuploadresult.php", "GET", "upload_result", Measurements::uploadResult},
    Route{"/velometer/redirect_iphone.php", "POST", "submit_report", submitReport},
    Route{"/velometer/Controller", "GET", "pages", controllerPage}.spending(Spent::Pages),
    Route{"/velometer/statistics", "GET", "statistics", statisticsPage}.spending(Spent::Pages),
    Route{"/", "GET", "home", homePage}.spending(Spent::Pages),
    Route{"/velometer/assets/*", "GET", "assets", assetFile},
    Route{"/velometer/api/v1/tests", "GET", "api_tests", Api::tests}.spending(Spent::Pages),
    Route{"/velometer/api/v1/tests/{}", "GET", "api_test", Api::test}.spending(Spent::Pages),
    Route{"/velometer/api/v1/tests/{}", "DELETE", "api_delete_test", Api::deleteTest}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/tests/{}/note", "PUT", "api_note", Api::setNote}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/summary", "GET", "api_summary", Api::summary}.spending(Spent::Pages),
    Route{"/velometer/api/v1/buckets", "GET", "api_buckets", Api::buckets}.spending(Spent::Pages),
    Route{"/velometer/api/v1/distribution", "GET", "api_distribution", Api::distribution}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/map", "GET", "api_map", Api::map}.spending(Spent::Pages),
    Route{"/velometer/api/v1/facets", "GET", "api_facets", Api::facets}.spending(Spent::Pages),
    Route{"/velometer/api/v1/export", "GET", "api_export", Api::exportTests}.spending(
        Spent::Exports),
    Route{"/velometer/api/v1/delete", "POST", "api_delete", Api::deleteTests}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/user", "DELETE", "api_delete_user", Api::deleteUser}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/shares", "GET", "api_shares", Api::shares}.spending(Spent::Pages),
    Route{"/velometer/api/v1/shares", "POST", "api_share", Api::addShare}.spending(Spent::Pages),
    Route{"/velometer/api/v1/shares/{}", "DELETE", "api_revoke", Api::removeShare}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/tracks", "GET", "api_tracks", Api::tracks}.spending(Spent::Pages),
    Route{"/velometer/api/v1/tracks/{}", "GET", "api_track", Api::track}.spending(Spent::Pages),
    Route{"/velometer/api/v1/tracks/{}", "PUT", "api_take_track", Api::takeTrack}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/tracks/{}", "DELETE", "api_delete_track", Api::removeTrack}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/tracks/{}/export", "GET", "api_export_track", Api::exportTrack}
        .spending(Spent::Exports),
    Route{"/velometer/api/v1/statistics", "GET", "api_statistics", Api::statistics}.spending(
        Spent::Pages),
    Route{"/velometer/api/v1/openapi.json", "GET", "api_description", Api::description},
    Route{"/healthz", "GET", "healthz", healthz, After::Answer, Where::Everywhere},
    Route{"/metrics", "GET", "metrics", metrics, After::Answer, Where::Admin},
};

/// Of a method in the log; none of ours is longer.
constexpr std::size_t longestMethod = 16;

/// Of what is found nowhere.
constexpr std::string_view otherName = "other";

/// Whose measurements a request is about, as far as its head tells; 0 for nobody's.
std::int64_t userOf(const Request &request)
{
    std::int64_t user = 0;
    const auto *const end = request.user.data() + request.user.size();
    if (!request.user.empty() && std::from_chars(request.user.data(), end, user).ptr == end) {
        return std::max(user, std::int64_t{0});
    }
    return request.number("testuserid").value_or(request.number("userid").value_or(0));
}

/// The last address that no trusted proxy has written of itself is the client's: what stands before
/// it may be anybody's invention.
void takeForwarded(Connection &connection, const Request &request, const Service &service)
{
    std::string_view list = request.forwardedFor;
    while (!list.empty() && service.isTrusted(connection.getPeer())) {
        const auto address = ProxyHeader::takeLast(list);
        if (!address) {
            return;
        }
        connection.setPeer(*address);
    }
}

/// One request on its way: what is counted and written down of it when it has its answer. The path
/// is not, because it may hold a user's id.
class Visit
{
public:
    Visit(Connection &visiting, Service &visited)
        : connection(visiting)
        , service(visited)
    {}
    void setMethod(const std::string &name) { method = name; }

    void end(std::string_view endpoint, int status)
    {
        const auto took =
            std::chrono::duration_cast<std::chrono::microseconds>(Connection::Clock::now() - begun);
        service.metrics.countRequest(endpoint, status, took);
        Log::write(Log::Level::Info, "access", {},
                   {{"endpoint", std::string(endpoint)},
                    {"method", method},
                    {"status", std::int64_t{status}},
                    {"ms", took.count() / 1000},
                    {"client", connection.getPeer().to_string()}});
    }

private:
    Connection &connection;
    Service &service;
    std::string method;
    Connection::Clock::time_point begun = Connection::Clock::now();
};

asio::awaitable<void> send(Connection &connection, Visit &visit, std::string_view endpoint,
                           const Answer &answer)
{
    const std::string bytes = answer.toBytes();
    co_await connection.write(bytes, answerPatience);
    visit.end(endpoint, answer.status);
}

} // namespace

asio::awaitable<void> serveRequest(std::shared_ptr<Connection> connection, Service &service)
{
    std::chrono::milliseconds patience = answerPatience;
    connection->expireAt(Connection::Clock::now() + service.options.headTimeout);
    // Each await stands alone: GCC 12 runs what stands behind an && in any case.
    bool isOpen = true;
    if (connection->isProxy()) {
        isOpen = co_await connection->readProxyHeader();
    }
    if (isOpen) {
        isOpen = co_await connection->handshake();
    }
    if (!isOpen) {
        co_return;
    }
    const auto head = co_await connection->readHead();
    if (head == Connection::Head::Gone) {
        co_return;
    }
    Visit visit(*connection, service);
    std::optional<Request> request;
    if (head == Connection::Head::Complete) {
        request = Request::parse(connection->head());
    }
    if (request) {
        visit.setMethod(request->method.substr(0, longestMethod));
    }
    if (request && connection->isProxy()) {
        takeForwarded(*connection, *request, service);
    }
    if (head == Connection::Head::TooLarge) {
        const auto answer = Answer::sentence(431, "The request's head is too large.");
        co_await send(*connection, visit, otherName, answer);
    } else if (request && !request->namesHost) {
        const auto answer = Answer::sentence(400, "The request must name one Host.");
        co_await send(*connection, visit, otherName, answer);
    } else if (request && request->transferEncoded) {
        const auto answer =
            Answer::sentence(501, "Only bodies without a transfer coding are taken.");
        co_await send(*connection, visit, otherName, answer);
    } else if (!request) {
        const auto answer = Answer::sentence(400, "This is no HTTP request.");
        co_await send(*connection, visit, otherName, answer);
    } else {
        const Route *endpoint = nullptr;
        std::string methods;
        for (const auto &route : endpoints) {
            const auto segment = match(route.path, request->path);
            if (segment && route.isOn(connection->getRole(), service.hasAdmin)) {
                methods += (methods.empty() ? "" : ", ") + std::string(route.method);
                if (route.method == request->method) {
                    endpoint = &route;
                    request->segment = *segment;
                }
            }
        }
        MaybeAnswer answer;
        if (methods.empty()) {
            answer = Answer::sentence(404, "There is nothing here.");
        } else if (!endpoint) {
            answer = Answer::sentence(405, "This path takes another method.");
            answer->headers = "Allow: " + methods + "\r\n";
        } else {
            if (endpoint->spends) {
                answer = co_await spend(*connection, service, *endpoint->spends, userOf(*request));
            }
            if (!answer) {
                answer = co_await endpoint->handler(*connection, *request, service);
            }
        }
        const auto name = endpoint ? endpoint->name : otherName;
        if (answer && request->method == "HEAD") {
            answer->body.clear();
        }
        if (answer) {
            co_await send(*connection, visit, name, *answer);
        } else {
            visit.end(name, 200);
            patience = endpoint->after == After::Stream ? streamPatience : patience;
        }
    }
    co_await connection->finish(patience);
}

asio::awaitable<void> refuseRequest(std::shared_ptr<Connection> connection, Service &service)
{
    Visit visit(*connection, service);
    noteRefusal(*connection, service, "connections");
    const auto answer = Answer::later("Too many connections from this address.");
    co_await send(*connection, visit, otherName, answer);
    co_await connection->finish(answerPatience);
}

} // namespace velometer
