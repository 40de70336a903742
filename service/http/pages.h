#pragma once

#include "http/handler.h"
#include "http/request.h"

/// The pages for people, and what they load.
namespace velometer {

/// A user's tests, one of them, two sets of them beside each other, or what somebody has shared.
boost::asio::awaitable<MaybeAnswer> controllerPage(Connection &connection, const Request &request,
                                                   Service &service);

/// What all users' tests together say.
boost::asio::awaitable<MaybeAnswer> statisticsPage(Connection &connection, const Request &request,
                                                   Service &service);

/// What this service is, and how it is.
boost::asio::awaitable<MaybeAnswer> homePage(Connection &connection, const Request &request,
                                             Service &service);

/// A file that is built in, for good under the address with its hash.
boost::asio::awaitable<MaybeAnswer> assetFile(Connection &connection, const Request &request,
                                              Service &service);

} // namespace velometer
