#pragma once

#include "http/handler.h"
#include "http/request.h"

namespace velometer {

/// The pages on which users find their measurements.
boost::asio::awaitable<MaybeAnswer> userReport(Connection &connection, const Request &request,
                                               Service &service);

} // namespace velometer
