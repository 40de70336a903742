#include "api/testjson.h"
#include "http/api.h"
#include "http/apiview.h"
#include "http/body.h"
#include "utils/cleantext.h"

#include <QDateTime>
#include <QJsonValue>
#include <QRandomGenerator>

#include <array>

namespace velometer::Api {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maxNote = 500;
constexpr int maxDays = 365;
constexpr qint64 msPerDay = 86'400'000;

/// Own tests and the body that says what is to be done with them.
struct Order
{
    ApiView view;
    QJsonObject body;
};

asio::awaitable<std::variant<Order, Answer>> openOrder(Connection &connection,
                                                       const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Change);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    auto body = co_await readJson(connection, request, service.options.bodyTimeout);
    if (auto *refusal = std::get_if<Answer>(&body)) {
        co_return std::move(*refusal);
    }
    co_return Order{.view = std::get<ApiView>(std::move(opened)),
                    .body = std::get<QJsonObject>(std::move(body))};
}

std::optional<qint64> idOf(const QString &text)
{
    bool isNumber = false;
    const qint64 id = text.toLongLong(&isNumber);
    return isNumber && id > 0 ? std::optional(id) : std::nullopt;
}

std::optional<qint64> idOf(const std::string &segment)
{
    return idOf(QString::fromStdString(segment));
}

Answer noSuchTest()
{
    return Answer::sentence(404, "There is no such test.");
}

Answer deleted(qint64 count)
{
    return jsonAnswer({{u"deleted"_s, count}}, false);
}

/// What the service remembers of the tests' streams goes with them.
void forget(Service &service, const QList<StreamKey> &tests)
{
    for (const auto &test : tests) {
        service.downloads.remove(test);
        service.uploads.remove(test);
    }
}

/// Deletes @p scope; nothing when the store failed, an answer without a count when it goes on.
Handled deleteScope(Connection &connection, Service &service, const TestScope &scope,
                    bool mustExist)
{
    OneShot<std::optional<QList<StreamKey>>> gone(connection.executor(),
                                                  service.options.deletePatience);
    const auto done = [&service, set = gone.setter()](std::optional<QList<StreamKey>> tests) {
        forget(service, tests.value_or(QList<StreamKey>()));
        set(std::move(tests));
    };
    service.store->deleteTests(scope, done);
    const auto result = co_await gone.wait();
    if (!result) {
        co_return jsonAnswer({{u"deleted"_s, QJsonValue::Null}}, false, 202);
    }
    if (!*result) {
        co_return storeFailed(service, 500);
    }
    const auto count = (*result)->size();
    co_return count == 0 && mustExist ? noSuchTest() : deleted(count);
}

/// The filter that a text in a body says, or what is wrong with it.
std::variant<TestFilter, QString> filterOf(const QJsonValue &text)
{
    const auto query = UrlQuery::parse(text.toString().toStdString());
    if (!text.isString() || !query) {
        return u"The filter is the text of a query as in from=2024-01-01&type=lte."_s;
    }
    return TestFilter::parse(*query);
}

QString randomKey()
{
    std::array<quint32, 4> bits{};
    QRandomGenerator::system()->fillRange(bits.data(), bits.size());
    const QByteArray bytes(reinterpret_cast<const char *>(bits.data()), sizeof bits);
    return QString::fromLatin1(
        bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

} // namespace

Handled deleteTest(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Change);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto id = idOf(request.segment);
    if (!id) {
        co_return noSuchTest();
    }
    TestScope scope = std::get<ApiView>(opened).scope;
    scope.bounds.test = id;
    co_return co_await deleteScope(connection, service, scope, true);
}

Handled deleteTests(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openOrder(connection, request, service);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto &order = std::get<Order>(opened);
    if (order.body.value("confirm"_L1) != "DELETE"_L1) {
        co_return Answer::sentence(400, "Deleting must be confirmed with the word DELETE.");
    }
    const auto filter = filterOf(order.body.value("filter"_L1));
    if (const auto *problem = std::get_if<QString>(&filter)) {
        co_return Answer::sentence(400, problem->toStdString());
    }
    const TestScope scope{
        .userId = order.view.scope.userId, .filter = std::get<TestFilter>(filter), .bounds = {}};
    co_return co_await deleteScope(connection, service, scope, false);
}

Handled deleteUser(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openOrder(connection, request, service);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto &order = std::get<Order>(opened);
    const qint64 user = order.view.scope.userId;
    if (order.body.value("confirm"_L1) != QString::number(user)) {
        co_return Answer::sentence(400, "Deleting everything must be confirmed with the user id.");
    }
    OneShot<std::optional<qint64>> gone(connection.executor(), service.options.deletePatience);
    const auto done = [&service, user, set = gone.setter()](std::optional<qint64> count) {
        service.downloads.removeUser(user);
        service.uploads.removeUser(user);
        set(count);
    };
    service.store->deleteUser(user, done);
    const auto result = co_await gone.wait();
    if (!result) {
        co_return jsonAnswer({{u"deleted"_s, QJsonValue::Null}}, false, 202);
    }
    if (!*result) {
        co_return storeFailed(service, 500);
    }
    co_return deleted(**result);
}

Handled setNote(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openOrder(connection, request, service);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto &order = std::get<Order>(opened);
    const auto id = idOf(request.segment);
    const QJsonValue text = order.body.value("note"_L1);
    if (!text.isString() || text.toString().size() > maxNote) {
        co_return Answer::sentence(400, "A note is a text of at most 500 characters.");
    }
    const QString note = cleanText(text.toString(), maxNote);
    OneShot<std::optional<bool>> kept(connection.executor(), storeTime);
    service.store->setNote(order.view.scope, id.value_or(0), note, kept.setter());
    const auto result = co_await kept.wait();
    if (!result || !*result) {
        co_return storeFailed(service, 500);
    }
    co_return **result ? jsonAnswer({{u"note"_s, note}}, false) : noSuchTest();
}

Handled shares(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::OwnRead);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    OneShot<std::optional<QList<Share>>> found(connection.executor(), storeTime);
    service.store->shares(std::get<ApiView>(opened).scope.userId,
                          QDateTime::currentMSecsSinceEpoch(), found.setter());
    const auto result = co_await found.wait();
    if (!result || !*result) {
        co_return storeFailed(service, 500);
    }
    co_return jsonAnswer(TestJson::shares(**result), request.acceptsGzip);
}

Handled addShare(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openOrder(connection, request, service);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const auto &order = std::get<Order>(opened);
    const QJsonValue one = order.body.value("test"_L1);
    const QJsonValue several = order.body.value("filter"_L1);
    const QJsonValue positions = order.body.value("positions"_L1);
    const int days = order.body.value("days"_L1).toInt();
    if (one.isUndefined() == several.isUndefined()) {
        co_return Answer::sentence(400, "A share is of one test or of a filter.");
    }
    if (!positions.isBool() || days < 1 || days > maxDays) {
        co_return Answer::sentence(
            400, "A share needs positions, true or false, and days from 1 to 365.");
    }
    Share share;
    share.showsPositions = positions.toBool();
    share.created = QDateTime::currentMSecsSinceEpoch();
    share.expires = share.created + days * msPerDay;
    share.key = randomKey();
    if (one.isUndefined()) {
        const auto filter = filterOf(several);
        if (const auto *problem = std::get_if<QString>(&filter)) {
            co_return Answer::sentence(400, problem->toStdString());
        }
        share.bounds = std::get<TestFilter>(filter);
    } else {
        share.bounds.test = idOf(one.toString());
        if (!share.bounds.test) {
            co_return Answer::sentence(400, "A test is named by the text of its id.");
        }
    }
    OneShot<std::optional<bool>> kept(connection.executor(), storeTime);
    service.store->addShare(order.view.scope.userId, share, kept.setter());
    const auto result = co_await kept.wait();
    if (!result || !*result) {
        co_return storeFailed(service, 500);
    }
    if (!**result) {
        co_return Answer::sentence(403, "There are too many shares; please revoke some.");
    }
    co_return jsonAnswer(TestJson::share(share), false, 201);
}

Handled removeShare(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Change);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    OneShot<std::optional<bool>> gone(connection.executor(), storeTime);
    service.store->removeShare(std::get<ApiView>(opened).scope.userId,
                               QString::fromStdString(request.segment), gone.setter());
    const auto result = co_await gone.wait();
    if (!result || !*result) {
        co_return storeFailed(service, 500);
    }
    co_return **result ? deleted(1) : Answer::sentence(404, "There is no such share.");
}

} // namespace velometer::Api
