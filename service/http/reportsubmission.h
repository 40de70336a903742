#pragma once

#include "http/handler.h"
#include "http/request.h"

namespace velometer {

/// Takes the report that the request on @p connection carries: reads it to its end, checks it,
/// fills in what only the service knows, and stores it. Answers 200 after the commit, or why not.
boost::asio::awaitable<MaybeAnswer> submitReport(Connection &connection, const Request &request,
                                                 Service &service);

} // namespace velometer
