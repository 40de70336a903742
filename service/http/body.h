#pragma once

#include "http/answer.h"
#include "http/request.h"
#include "net/connection.h"

#include <boost/asio/awaitable.hpp>

#include <QJsonObject>

#include <variant>

namespace velometer {

/// The JSON object that the request on @p connection carries, or the answer to one that carries
/// none: bounded in size and time.
boost::asio::awaitable<std::variant<QJsonObject, Answer>>
readJson(Connection &connection, const Request &request, std::chrono::milliseconds timeout);

} // namespace velometer
