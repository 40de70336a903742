#include "http/body.h"

#include "http/handler.h"
#include "net/oneshot.h"

#include <boost/asio/buffer.hpp>

#include <QJsonDocument>

namespace velometer {

namespace asio = boost::asio;

namespace {

/// A filter and a note are a hundredth of it.
constexpr std::size_t maxBody = 65'536;

} // namespace

asio::awaitable<std::variant<std::string, Answer>> readBody(Connection &connection,
                                                            const Request &request,
                                                            std::chrono::milliseconds timeout,
                                                            std::size_t most)
{
    if (!request.contentLength) {
        co_return Answer::sentence(411, "The request must say how long its body is.");
    }
    if (*request.contentLength > most) {
        co_return Answer::sentence(413, "The request's body is too large.");
    }
    connection.expireAt(Connection::Clock::now() + timeout);
    if (request.expectsContinue) {
        co_await connection.write(goOn);
    }
    std::string body(connection.rest());
    while (body.size() < *request.contentLength) {
        const auto scratch = connection.scratch();
        const auto [error, count] =
            co_await connection.readSome(asio::buffer(scratch.data(), scratch.size()));
        if (error || connection.isExpired()) {
            co_return Answer::sentence(408, "The request did not arrive in time.");
        }
        body.append(scratch.data(), count);
    }
    body.resize(*request.contentLength);
    co_return body;
}

asio::awaitable<std::variant<QJsonObject, Answer>>
readJson(Connection &connection, const Request &request, std::chrono::milliseconds timeout)
{
    auto body = co_await readBody(connection, request, timeout, maxBody);
    if (auto *refusal = std::get_if<Answer>(&body)) {
        co_return std::move(*refusal);
    }
    QJsonParseError problem;
    const auto document =
        QJsonDocument::fromJson(QByteArray::fromStdString(std::get<std::string>(body)), &problem);
    if (problem.error != QJsonParseError::NoError || !document.isObject()) {
        co_return Answer::sentence(400, "The request's body is no JSON object.");
    }
    co_return document.object();
}

} // namespace velometer
