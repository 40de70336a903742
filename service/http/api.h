#pragma once

#include "http/handler.h"
#include "http/request.h"

/// The interface for programs under /velometer/api/v1, one handler for each path and method; see
/// docs/openapi.json.
namespace velometer::Api {

using Handled = boost::asio::awaitable<MaybeAnswer>;

Handled tests(Connection &connection, const Request &request, Service &service);
Handled test(Connection &connection, const Request &request, Service &service);
Handled summary(Connection &connection, const Request &request, Service &service);
Handled buckets(Connection &connection, const Request &request, Service &service);
Handled distribution(Connection &connection, const Request &request, Service &service);
Handled map(Connection &connection, const Request &request, Service &service);
Handled facets(Connection &connection, const Request &request, Service &service);
Handled exportTests(Connection &connection, const Request &request, Service &service);
Handled statistics(Connection &connection, const Request &request, Service &service);
Handled description(Connection &connection, const Request &request, Service &service);

// For the owner alone: a track is where he was.
Handled tracks(Connection &connection, const Request &request, Service &service);
Handled track(Connection &connection, const Request &request, Service &service);
Handled takeTrack(Connection &connection, const Request &request, Service &service);
Handled removeTrack(Connection &connection, const Request &request, Service &service);
Handled exportTrack(Connection &connection, const Request &request, Service &service);

// For the owner alone.
Handled deleteTest(Connection &connection, const Request &request, Service &service);
Handled deleteTests(Connection &connection, const Request &request, Service &service);
Handled deleteUser(Connection &connection, const Request &request, Service &service);
Handled setNote(Connection &connection, const Request &request, Service &service);
Handled shares(Connection &connection, const Request &request, Service &service);
Handled addShare(Connection &connection, const Request &request, Service &service);
Handled removeShare(Connection &connection, const Request &request, Service &service);

} // namespace velometer::Api
