#pragma once

#include "http/handler.h"
#include "http/request.h"

/// What a client asks for in the course of a test, in this order. Parameters and answers are those
/// of docs/protocol.md.
namespace velometer::Measurements {

using Handled = boost::asio::awaitable<MaybeAnswer>;

Handled userId(Connection &connection, const Request &request, Service &service);
Handled initialise(Connection &connection, const Request &request, Service &service);

/// The streams: they answer by themselves.
Handled download(Connection &connection, const Request &request, Service &service);
Handled upload(Connection &connection, const Request &request, Service &service);

/// What the store knows of a stream: this service kept it, or another one with which it is shared.
boost::asio::awaitable<std::optional<StreamRecord>>
storedStream(Connection &connection, Service &service, const StreamKey &test, Direction direction);

Handled uploadResult(Connection &connection, const Request &request, Service &service);

} // namespace velometer::Measurements
