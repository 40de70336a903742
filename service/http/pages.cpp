#include "http/pages.h"

#include "api/testanswer.h"
#include "api/visible.h"
#include "http/access.h"
#include "http/gzip.h"
#include "web/assets.h"
#include "web/comparepage.h"
#include "web/homepage.h"
#include "web/messagepage.h"
#include "web/statisticspage.h"
#include "web/testpage.h"
#include "web/userpage.h"

#include <QDateTime>

namespace velometer {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Rows of a page's list: what is read at a time, and what comes over a slow link in one go.
constexpr int rowsPerPage = 50;

/// What a page loads is our own, and none of it longer.
constexpr std::size_t largestAsset = std::size_t{1} << 26;

/// After a start all reports are read for the public figures, once.
constexpr auto statisticsTime = 60s;

Answer html(const Service &service, int status, std::string page)
{
    return Answer{.status = status,
                  .body = std::move(page),
                  .contentType = "text/html; charset=utf-8",
                  .headers = Layout::headers(service.options.tiles)};
}

Answer busy()
{
    return Answer::later("Too many pages are being made for this address.");
}

Answer badQuery(const QString &sentence)
{
    return Answer::sentence(400, sentence.toStdString());
}

/// What the store says to @p call; nothing when it does not. @p call has a name where this is
/// called, for GCC 12's sake.
template <typename Value, typename Call>
asio::awaitable<std::optional<Value>> ask(Connection &connection, const Call &call,
                                          std::chrono::seconds patience = storeTime)
{
    OneShot<std::optional<Value>> answer(connection.executor(), patience);
    call(answer.setter());
    auto told = co_await answer.wait();
    co_return told ? *std::move(told) : std::nullopt;
}

/// Runs @p make, which gives a document, where pages are made, and packs it.
template <typename Make>
asio::awaitable<MaybeAnswer> makePage(Connection &connection, const Request &request,
                                      Service &service, const Make &make)
{
    const bool compress = request.acceptsGzip;
    const auto work = [make, compress, &service] {
        Answer answer = html(service, 200, make());
        if (compress) {
            answer.body = gzip(answer.body);
            answer.headers += "Content-Encoding: gzip\r\n";
        }
        answer.headers += "Vary: Accept-Encoding\r\n";
        return answer;
    };
    auto made = co_await offload(connection, service.pageMakers, work);
    co_return made ? std::move(*made) : busy();
}

struct Asked
{
    UrlQuery query;
    Viewer viewer;
    Access access;
};

/// Who asks and what he may see, or the answer that says that he may not.
asio::awaitable<std::variant<Asked, Answer>> whoAsks(Connection &connection, const Request &request,
                                                     Service &service)
{
    Asked asked;
    asked.viewer.language =
        Languages::choose(request.parameter("language").value_or(""), request.acceptLanguage);
    const auto query = UrlQuery::parse(request.query);
    if (!query) {
        co_return badQuery(u"The address is damaged."_s);
    }
    asked.query = *query;
    const auto credential = Credential::of(*query);
    const auto access = co_await findAccess(connection, service, credential);
    if (!access) {
        co_return storeFailed(service, 500);
    }
    asked.access = *access;
    switch (access->state) {
    case Access::State::Granted: break;
    case Access::State::Unknown:
        co_return html(service, 404,
                       MessagePage::make(asked.viewer.language, credential.share.isEmpty()
                                                                    ? Texts::unknownUser
                                                                    : Texts::unknownShare));
    case Access::State::Deleted:
        co_return html(service, 410, MessagePage::make(asked.viewer.language, Texts::deletedUser));
    }
    asked.viewer.showsPositions = access->showsPositions;
    asked.viewer.userId = access->isShare ? 0 : access->userId;
    asked.viewer.share = access->isShare ? credential.share : QString();
    co_return asked;
}

asio::awaitable<MaybeAnswer> listPage(Connection &connection, const Request &request,
                                      Service &service, const Asked &asked)
{
    UserPage page;
    page.viewer = asked.viewer;
    page.today = QDateTime::currentMSecsSinceEpoch();
    auto filter = TestFilter::parse(asked.query);
    auto order = TestOrder::parse(asked.query);
    for (const auto *problem : {std::get_if<QString>(&filter), std::get_if<QString>(&order)}) {
        if (problem) {
            co_return badQuery(*problem);
        }
    }
    page.filter = std::get<TestFilter>(std::move(filter));
    page.order = std::get<TestOrder>(std::move(order));
    page.order.limit = rowsPerPage;
    page.start = !page.order.after ? 1 : request.number("start").value_or(0);
    const TestScope all{.userId = asked.access.userId, .filter = {}, .bounds = asked.access.bounds};
    TestScope scope = all;
    scope.filter = page.filter;

    const auto summarise = [&](auto done) { service.store->summary(scope, std::move(done)); };
    const auto list = [&](auto done) { service.store->tests(scope, page.order, std::move(done)); };
    const auto choices = [&](auto done) { service.store->facets(all, std::move(done)); };
    auto summary = co_await ask<Summary>(connection, summarise);
    auto tests = co_await ask<TestPage>(connection, list);
    auto facets = co_await ask<Facets>(connection, choices);
    if (!summary || !tests || !facets) {
        co_return storeFailed(service, 500);
    }
    page.summary = *std::move(summary);
    page.tests = Visible::page(*std::move(tests), asked.access);
    page.facets = *std::move(facets);
    const auto make = [page, tiles = service.options.tiles] { return page.toHtml(tiles); };
    co_return co_await makePage(connection, request, service, make);
}

asio::awaitable<MaybeAnswer> testPage(Connection &connection, const Request &request,
                                      Service &service, const Asked &asked)
{
    // A device knows its tests by series and number.
    const TestName name{.id = asked.access.bounds.test.value_or(request.number("test").value_or(0)),
                        .series = request.number("seriesid").value_or(0),
                        .test = request.number("testid").value_or(0)};
    const TestScope scope{
        .userId = asked.access.userId, .filter = {}, .bounds = asked.access.bounds};
    const auto find = [&](auto done) { service.store->test(scope, name, std::move(done)); };
    const auto found = co_await ask<QList<ReportStore::StoredTest>>(connection, find);
    if (!found) {
        co_return storeFailed(service, 500);
    }
    if (found->isEmpty()) {
        co_return html(service, 404, MessagePage::make(asked.viewer.language, Texts::unknownTest));
    }
    const auto make = [stored = found->constFirst(), viewer = asked.viewer, access = asked.access,
                       tiles = service.options.tiles] {
        return SingleTestPage{.viewer = viewer,
                              .row = Visible::row(stored.row, access),
                              .test = TestJson::test(stored, access)}
            .toHtml(tiles);
    };
    co_return co_await makePage(connection, request, service, make);
}

asio::awaitable<MaybeAnswer> comparePage(Connection &connection, const Request &request,
                                         Service &service, const Asked &asked)
{
    ComparePage page;
    page.viewer = asked.viewer;
    page.today = QDateTime::currentMSecsSinceEpoch();
    const TestScope all{.userId = asked.access.userId, .filter = {}, .bounds = asked.access.bounds};
    for (const auto &[side, prefix] : {std::pair{&page.left, u"l_"_s}, {&page.right, u"r_"_s}}) {
        auto filter = ComparePage::parse(asked.query, prefix);
        if (const auto *problem = std::get_if<QString>(&filter)) {
            co_return badQuery(*problem);
        }
        side->filter = std::get<TestFilter>(std::move(filter));
        TestScope scope = all;
        scope.filter = side->filter;
        const auto summarise = [&](auto done) { service.store->summary(scope, std::move(done)); };
        auto summary = co_await ask<Summary>(connection, summarise);
        if (!summary) {
            co_return storeFailed(service, 500);
        }
        side->summary = *std::move(summary);
    }
    const auto choices = [&](auto done) { service.store->facets(all, std::move(done)); };
    auto facets = co_await ask<Facets>(connection, choices);
    if (!facets) {
        co_return storeFailed(service, 500);
    }
    page.facets = *std::move(facets);
    const auto make = [page, tiles = service.options.tiles] { return page.toHtml(tiles); };
    co_return co_await makePage(connection, request, service, make);
}

} // namespace

asio::awaitable<MaybeAnswer> controllerPage(Connection &connection, const Request &request,
                                            Service &service)
{
    const auto share = service.pages.take(Subscriber::of(connection.getPeer()));
    if (!share) {
        co_return busy();
    }
    const auto who = co_await whoAsks(connection, request, service);
    if (const auto *answer = std::get_if<Answer>(&who)) {
        co_return *answer;
    }
    const auto &asked = std::get<Asked>(who);
    const auto name = request.parameter("page");
    const bool list = name == (asked.access.isShare ? "Shared" : "UserReport");
    // What was shared may be one test alone.
    if (name == "Test" || (list && asked.access.bounds.test)) {
        co_return co_await testPage(connection, request, service, asked);
    }
    if (list) {
        co_return co_await listPage(connection, request, service, asked);
    }
    if (name == "Compare" && !asked.access.isShare) {
        co_return co_await comparePage(connection, request, service, asked);
    }
    co_return html(service, 404, MessagePage::make(asked.viewer.language, Texts::unknownPage));
}

asio::awaitable<MaybeAnswer> statisticsPage(Connection &connection, const Request &request,
                                            Service &service)
{
    const auto share = service.pages.take(Subscriber::of(connection.getPeer()));
    if (!share) {
        co_return busy();
    }
    StatisticsPage page;
    page.licence = service.options.licence;
    page.language =
        Languages::choose(request.parameter("language").value_or(""), request.acceptLanguage);
    for (const auto &[by, part] : {std::pair{StatisticsBy::Type, &page.types},
                                   {StatisticsBy::Operator, &page.operators},
                                   {StatisticsBy::Server, &page.servers},
                                   {StatisticsBy::Month, &page.months}}) {
        const auto count = [&service, by](auto done) {
            service.store->statistics(by, std::move(done));
        };
        auto statistics = co_await ask<Statistics>(connection, count, statisticsTime);
        if (!statistics) {
            co_return storeFailed(service, 500);
        }
        *part = *std::move(statistics);
    }
    const auto make = [page, tiles = service.options.tiles] { return page.toHtml(tiles); };
    co_return co_await makePage(connection, request, service, make);
}

asio::awaitable<MaybeAnswer> homePage(Connection &connection, const Request &request,
                                      Service &service)
{
    OneShot<QString> problem(connection.executor(), 2s);
    service.store->ping(problem.setter());
    const auto told = co_await problem.wait();
    HomePage page;
    page.language =
        Languages::choose(request.parameter("language").value_or(""), request.acceptLanguage);
    page.stores = told && told->isEmpty();
    page.running = service.metrics.downloads + service.metrics.uploads;
    page.places = service.options.maxStreams;
    page.servers = service.neighbours.servers();
    page.states = co_await service.neighbours.look(connection.executor());
    const auto make = [page] { return page.toHtml(); };
    co_return co_await makePage(connection, request, service, make);
}

asio::awaitable<MaybeAnswer> assetFile(Connection &, const Request &request, Service &)
{
    const std::string_view rest = request.segment;
    const auto slash = std::min(rest.find('/'), rest.size());
    const bool current = rest.substr(0, slash) == Assets::version();
    const Asset *asset = Assets::find(rest.substr(std::min(slash + 1, rest.size())));
    if (!asset) {
        co_return Answer::sentence(404, "There is no such file.");
    }
    // Whoever asks for an earlier program's file while this one starts gets ours, and forgets it.
    Answer answer{.body = std::string(asset->gzip),
                  .contentType = std::string(asset->contentType),
                  .headers = "Vary: Accept-Encoding\r\n"};
    if (current) {
        answer.cacheControl = "public, max-age=31536000, immutable";
    }
    if (request.acceptsGzip) {
        answer.headers += "Content-Encoding: gzip\r\n";
    } else {
        answer.body = gunzip(answer.body, largestAsset);
    }
    co_return answer;
}

} // namespace velometer
