#include "http/api.h"
#include "api/openapi.h"
#include "api/testanswer.h"
#include "http/apiview.h"

namespace velometer::Api {

namespace asio = boost::asio;

Handled test(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Read);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto view = std::make_shared<const ApiView>(std::get<ApiView>(std::move(opened)));
    using Tests = QList<ReportStore::StoredTest>;
    OneShot<std::optional<Tests>> value(connection.executor(), storeTime);
    service.store->test(view->scope, {.id = QString::fromStdString(request.segment).toLongLong()},
                        value.setter());
    const auto read = co_await value.wait();
    if (!read || !*read) {
        co_return storeFailed(service, 500);
    }
    const Tests tests = **read;
    if (tests.isEmpty()) {
        co_return Answer::sentence(404, "There is no such test.");
    }
    const auto make = [tests, view, compress = request.acceptsGzip] {
        return jsonAnswer(TestJson::test(tests.constFirst(), view->access), compress);
    };
    auto made = co_await offload(connection, service.pageMakers, make);
    if (!made) {
        co_return Answer::later("Too many questions are being answered for this address.");
    }
    co_return std::move(made);
}

Handled description(Connection &, const Request &, Service &)
{
    co_return Answer{.body = std::string(openApi()),
                     .contentType = "application/json",
                     .headers = {},
                     .cacheControl = "public, max-age=3600"};
}

} // namespace velometer::Api
