#include "http/userpages.h"

#include "http/gzip.h"
#include "net/oneshot.h"
#include "web/userreportpage.h"

namespace velometer {

namespace asio = boost::asio;

namespace {

constexpr int rowsPerPage = 100;

Answer html(int status, const QByteArray &page)
{
    return Answer{.status = status,
                  .body = page.toStdString(),
                  .contentType = "text/html; charset=utf-8",
                  .headers = UserReportPage::headers()};
}

} // namespace

asio::awaitable<MaybeAnswer> userReport(Connection &connection, const Request &request,
                                        Service &service)
{
    if (request.parameter("page") != "UserReport") {
        co_return Answer::sentence(404, "There is no such page.");
    }
    const auto language =
        UserReportPage::choose(request.parameter("language").value_or(""), request.acceptLanguage);
    const auto user = request.number("userid");
    if (!user) {
        co_return html(404, UserReportPage::unknownUser(language));
    }
    const auto share = service.pages.take(Subscriber::of(connection.getPeer()));
    if (!share) {
        co_return Answer::later("Too many pages are being made for this address.");
    }
    OneShot<std::optional<ReportStore::UserReports>> reports(connection.executor(), storeTime);
    service.store->reportsOfUser(*user, request.number("before"), rowsPerPage, reports.setter());
    auto read = co_await reports.wait();
    if (!read || !*read) {
        co_return storeFailed(service, 500);
    }
    const auto found = **std::move(read);
    if (!found.userKnown) {
        co_return html(404, UserReportPage::unknownUser(language));
    }
    const bool compress = request.acceptsGzip;
    const auto make = [found, language, user = *user, compress] {
        auto answer = html(200, UserReportPage::measurements(found, user, language));
        if (auto packed = compress ? gzip(answer.body) : std::string(); !packed.empty()) {
            answer.body = std::move(packed);
            answer.headers += "Content-Encoding: gzip\r\n";
        }
        answer.headers += "Vary: Accept-Encoding\r\n";
        return answer;
    };
    auto made = co_await offload(connection, service.pageMakers, make);
    if (!made) {
        co_return Answer::later("Too many pages are being made for this address.");
    }
    co_return std::move(made);
}

} // namespace velometer
