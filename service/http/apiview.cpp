#include "http/apiview.h"

#include "http/gzip.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>
#include <charconv>

namespace velometer {

namespace asio = boost::asio;

namespace {

/// Below it the head of gzip costs more than it saves.
constexpr std::size_t worthPacking = 1000;

constexpr std::size_t maxKey = 64;

/// 0 for what is no user's id.
qint64 userNumber(std::string_view text)
{
    qint64 value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && value > 0 ? value : 0;
}

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
    const QString share = query->value(u"share").value_or(QString());
    const QString inAddress = query->value(u"userid").value_or(QString());
    if (wants != Wants::Read && !share.isEmpty()) {
        co_return Answer::sentence(403, "A share shows measurements; it changes nothing.");
    }
    if (wants == Wants::Change && request.user.empty()) {
        co_return Answer::sentence(
            403, "What changes something takes the user id from the header Velometer-User.");
    }
    const auto user = userNumber(request.user.empty() ? inAddress.toStdString() : request.user);
    if (share.isEmpty() && user == 0) {
        co_return Answer::sentence(
            400, "The header Velometer-User, or the parameter userid or share, must say whose.");
    }
    OneShot<std::optional<Access>> access(connection.executor(), storeTime);
    if (share.isEmpty()) {
        service.store->accessOfUser(user, access.setter());
    } else {
        service.store->accessOfShare(share.left(maxKey), QDateTime::currentMSecsSinceEpoch(),
                                     access.setter());
    }
    const auto found = co_await access.wait();
    if (!found || !*found) {
        co_return storeFailed(service, 500);
    }
    const Access granted = **found;
    if (granted.state != Access::State::Granted) {
        co_return noAccess(granted);
    }
    const auto filter = TestFilter::parse(*query);
    if (const auto *problem = std::get_if<QString>(&filter)) {
        co_return Answer::sentence(400, problem->toStdString());
    }
    opened.scope = {
        .userId = granted.userId, .filter = std::get<TestFilter>(filter), .bounds = granted.bounds};
    opened.view = {.isShare = granted.isShare, .positions = granted.showsPositions};
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
        if (auto packed = gzip(answer.body); !packed.empty()) {
            answer.body = std::move(packed);
            answer.headers += "Content-Encoding: gzip\r\n";
        }
    }
    return answer;
}

} // namespace velometer
