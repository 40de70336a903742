#include "api/statisticsanswer.h"
#include "http/api.h"
#include "http/apiview.h"

namespace velometer::Api {

namespace asio = boost::asio;
using namespace std::chrono_literals;

namespace {

/// After a start everything is read once.
constexpr auto readTime = 60s;

} // namespace

Handled statistics(Connection &connection, const Request &request, Service &service)
{
    const auto place = service.apiRequests.take(Subscriber::of(connection.getPeer()));
    if (!place) {
        co_return Answer::later("Too many questions are being answered for this address.");
    }
    const auto query = UrlQuery::parse(request.query).value_or(UrlQuery());
    const auto by = StatisticsAnswer::by(query.value(u"by").value_or(QString()));
    const QString format = query.value(u"format").value_or(QStringLiteral("json"));
    if (!by) {
        co_return Answer::sentence(400,
                                   "The parameter by is month, type, operator, server or cell.");
    }
    const bool isTable = format == QLatin1StringView("csv");
    if (!isTable && format != QLatin1StringView("json")) {
        co_return Answer::sentence(400, "The parameter format is json or csv.");
    }
    OneShot<std::optional<Statistics>> value(connection.executor(), readTime);
    service.store->statistics(*by, value.setter());
    const auto read = co_await value.wait();
    if (!read || !*read) {
        co_return storeFailed(service, 500);
    }
    const auto found = std::make_shared<const Statistics>(**read);
    const auto make = [found, wanted = *by, isTable, licence = service.options.licence,
                       compress = request.acceptsGzip] {
        Answer answer = jsonAnswer({}, false);
        if (isTable) {
            answer.contentType = "text/csv; charset=utf-8";
            answer.body = StatisticsAnswer::csv(*found, wanted, licence).toStdString();
        } else {
            answer = jsonAnswer(StatisticsAnswer::json(*found, wanted, licence), compress);
        }
        answer.cacheControl = "public, max-age=300";
        return answer;
    };
    auto made = co_await offload(connection, service.pageMakers, make);
    if (!made) {
        co_return Answer::later("Too many questions are being answered for this address.");
    }
    co_return std::move(made);
}

} // namespace velometer::Api
