#include "http/apiview.h"

#include "http/gzip.h"

#include <QJsonDocument>

namespace velometer {

namespace asio = boost::asio;

namespace {

/// Below it the head of gzip costs more than it saves.
constexpr std::size_t worthPacking = 1000;

Answer noAccess(const Access &access)
{
    if (access.isShare) {
        return Answer::sentence(404, "This share does not exist, or has expired.");
    }
    if (access.state == Access::State::Deleted) {
        return Answer::sentence(410, "The measurements of this user id were deleted.");
    }
    return Answer::sentence(404, "We know no measurements of this user id.");
}

} // namespace

asio::awaitable<std::variant<ApiView, Answer>>
openView(Connection &connection, const Request &request, Service &service, Wants wants)
{
    ApiView opened;
    opened.place = service.apiRequests.take(Subscriber::of(connection.getPeer()));
    if (!opened.place) {
        co_return Answer::later("Too many questions are being answered for this address.");
    }
    const auto query = UrlQuery::parse(request.query);
    if (!query) {
        co_return Answer::sentence(400, "The address has a parameter that is not encoded well.");
    }
    opened.query = *query;
    const auto credential = Credential::of(*query, request.user);
    if (wants != Wants::Read && !credential.share.isEmpty()) {
        co_return Answer::sentence(403, "A share shows measurements; it changes nothing.");
    }
    if (wants == Wants::Change && request.user.empty()) {
        co_return Answer::sentence(
            403, "What changes something takes the user id from the header Velometer-User.");
    }
    if (credential.isNone()) {
        co_return Answer::sentence(
            400, "The header Velometer-User, or the parameter userid or share, must say whose.");
    }
    const auto found = co_await findAccess(connection, service, credential);
    if (!found) {
        co_return storeFailed(service, 500);
    }
    opened.access = *found;
    if (opened.access.state != Access::State::Granted) {
        co_return noAccess(opened.access);
    }
    const auto filter = TestFilter::parse(*query);
    if (const auto *problem = std::get_if<QString>(&filter)) {
        co_return Answer::sentence(400, problem->toStdString());
    }
    opened.scope = {.userId = opened.access.userId,
                    .filter = std::get<TestFilter>(filter),
                    .bounds = opened.access.bounds};
    co_return opened;
}

Answer jsonAnswer(const QJsonObject &object, bool compress, int status)
{
    Answer answer{.status = status,
                  .body = QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(),
                  .contentType = "application/json",
                  .headers = "Vary: Accept-Encoding\r\n"};
    answer.body += '\n';
    if (compress && answer.body.size() >= worthPacking) {
        answer.body = gzip(answer.body);
        answer.headers += "Content-Encoding: gzip\r\n";
    }
    return answer;
}

} // namespace velometer
