#include "api/apiquery.h"
#include "api/testjson.h"
#include "api/visible.h"
#include "http/api.h"
#include "http/apiview.h"

namespace velometer::Api {

namespace asio = boost::asio;

namespace {

/// What the store is to be asked, or what is wrong with the question.
template <typename Value>
using Question = std::variant<std::function<void(ReportStore::Answer<Value>)>, QString>;

/// Asks the store what @p ask makes of the request, and renders the answer away from the threads
/// that serve streams.
template <typename Value, typename Ask, typename Render>
Handled answerWith(Connection &connection, const Request &request, Service &service, const Ask &ask,
                   const Render &render)
{
    auto opened = co_await openView(connection, request, service, Wants::Read);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto view = std::make_shared<const ApiView>(std::get<ApiView>(std::move(opened)));
    const Question<Value> question = ask(*view);
    if (const auto *problem = std::get_if<QString>(&question)) {
        co_return Answer::sentence(400, problem->toStdString());
    }
    OneShot<std::optional<Value>> value(connection.executor(), storeTime);
    std::get<0>(question)(value.setter());
    auto read = co_await value.wait();
    if (!read || !*read) {
        co_return storeFailed(service, 500);
    }
    const auto found = std::make_shared<const Value>(**std::move(read));
    const auto make = [render, found, view, compress = request.acceptsGzip] {
        return jsonAnswer(render(*found, *view), compress);
    };
    auto made = co_await offload(connection, service.pageMakers, make);
    if (!made) {
        co_return Answer::later("Too many questions are being answered for this address.");
    }
    co_return std::move(made);
}

} // namespace

Handled tests(Connection &connection, const Request &request, Service &service)
{
    const auto ask = [&service](const ApiView &view) -> Question<TestPage> {
        const auto order = TestOrder::parse(view.query);
        if (const auto *problem = std::get_if<QString>(&order)) {
            return *problem;
        }
        return [&service, scope = view.scope, wanted = std::get<TestOrder>(order)](auto done) {
            service.store->tests(scope, wanted, std::move(done));
        };
    };
    const auto render = [](const TestPage &page, const ApiView &view) {
        return TestJson::page(Visible::page(page, view.access));
    };
    co_return co_await answerWith<TestPage>(connection, request, service, ask, render);
}

Handled summary(Connection &connection, const Request &request, Service &service)
{
    const auto ask = [&service](const ApiView &view) -> Question<Summary> {
        return [&service, scope = view.scope](auto done) {
            service.store->summary(scope, std::move(done));
        };
    };
    const auto render = [](const Summary &figures, const ApiView &) {
        return TestJson::summary(figures);
    };
    co_return co_await answerWith<Summary>(connection, request, service, ask, render);
}

Handled buckets(Connection &connection, const Request &request, Service &service)
{
    const auto ask = [&service](const ApiView &view) -> Question<Buckets> {
        const auto query = ApiQuery::buckets(view.query);
        if (const auto *problem = std::get_if<QString>(&query)) {
            return *problem;
        }
        return [&service, scope = view.scope, wanted = std::get<BucketQuery>(query)](auto done) {
            service.store->buckets(scope, wanted, std::move(done));
        };
    };
    const auto render = [](const Buckets &found, const ApiView &view) {
        const auto query = ApiQuery::buckets(view.query);
        return TestJson::buckets(found, std::get<BucketQuery>(query).metric);
    };
    co_return co_await answerWith<Buckets>(connection, request, service, ask, render);
}

Handled distribution(Connection &connection, const Request &request, Service &service)
{
    const auto ask = [&service](const ApiView &view) -> Question<Distribution> {
        const auto query = ApiQuery::distribution(view.query);
        if (const auto *problem = std::get_if<QString>(&query)) {
            return *problem;
        }
        return [&service, scope = view.scope, wanted = std::get<DistributionQuery>(query)](
                   auto done) { service.store->distribution(scope, wanted, std::move(done)); };
    };
    const auto render = [](const Distribution &found, const ApiView &view) {
        const auto query = ApiQuery::distribution(view.query);
        return TestJson::distribution(found, std::get<DistributionQuery>(query));
    };
    co_return co_await answerWith<Distribution>(connection, request, service, ask, render);
}

Handled map(Connection &connection, const Request &request, Service &service)
{
    const auto ask = [&service](const ApiView &view) -> Question<MapData> {
        const auto query = ApiQuery::map(view.query);
        if (const auto *problem = std::get_if<QString>(&query)) {
            return *problem;
        }
        return [&service, scope = view.scope, wanted = std::get<MapQuery>(query)](auto done) {
            service.store->map(scope, wanted, std::move(done));
        };
    };
    const auto render = [](const MapData &found, const ApiView &view) {
        return TestJson::map(Visible::map(found, view.access));
    };
    co_return co_await answerWith<MapData>(connection, request, service, ask, render);
}

Handled facets(Connection &connection, const Request &request, Service &service)
{
    const auto ask = [&service](const ApiView &view) -> Question<Facets> {
        return [&service, scope = view.scope](auto done) {
            service.store->facets(scope, std::move(done));
        };
    };
    const auto render = [](const Facets &found, const ApiView &) {
        return TestJson::facets(found);
    };
    co_return co_await answerWith<Facets>(connection, request, service, ask, render);
}

} // namespace velometer::Api
