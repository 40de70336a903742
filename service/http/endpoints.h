#pragma once

#include "http/service.h"
#include "net/connection.h"

#include <boost/asio/awaitable.hpp>

#include <memory>

namespace velometer {

/// Serves the one request of @p connection: reads its head, finds the endpoint, answers, and ends
/// the connection. Runs on the connection's strand; @p service outlives it.
boost::asio::awaitable<void> serveRequest(std::shared_ptr<Connection> connection, Service &service);

/// Tells @p connection that there is no room for it, and ends it.
boost::asio::awaitable<void> refuseRequest(std::shared_ptr<Connection> connection,
                                           Service &service);

} // namespace velometer
