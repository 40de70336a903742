#pragma once

#include "http/answer.h"
#include "http/request.h"
#include "net/connection.h"

#include <boost/asio/awaitable.hpp>

#include <QJsonObject>

#include <string>
#include <variant>

namespace velometer {

/// The body of the request on @p connection, of at most @p most bytes, or the answer to one that
/// does not come.
boost::asio::awaitable<std::variant<std::string, Answer>>
readBody(Connection &connection, const Request &request, std::chrono::milliseconds timeout,
         std::size_t most);

/// The JSON object that the request on @p connection carries, or the answer to one that carries
/// none: bounded in size and time.
boost::asio::awaitable<std::variant<QJsonObject, Answer>>
readJson(Connection &connection, const Request &request, std::chrono::milliseconds timeout);

} // namespace velometer
