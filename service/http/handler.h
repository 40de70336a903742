#pragma once

#include "http/answer.h"
#include "http/service.h"
#include "net/connection.h"

#include <boost/asio/awaitable.hpp>

#include <chrono>
#include <optional>
#include <string>

namespace velometer {

/// What a request's handler returns; nothing when it has answered by itself.
using MaybeAnswer = std::optional<Answer>;

/// Longest wait for the store: it commits in milliseconds, and a client waits ten seconds at most.
inline constexpr std::chrono::seconds storeTime{8};

/// The answer with @p status when the store did not do its work; counts it.
Answer storeFailed(Service &service, int status);

/// The name of the peer's address, or the address when nobody knows it in time.
boost::asio::awaitable<std::string> hostName(Connection &connection, Service &service);

} // namespace velometer
