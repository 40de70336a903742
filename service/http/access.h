#pragma once

#include "http/handler.h"
#include "reports/testquery.h"

#include <boost/asio/awaitable.hpp>

#include <optional>
#include <string_view>

namespace velometer {

/// By what somebody asks for measurements: a share's key, which stands above everything else, or a
/// user's id.
struct Credential
{
    QString share;   ///< empty without one
    qint64 user = 0; ///< 0 for what is no user's id

    /// Of a request's @p query, and of its header Velometer-User where that is not empty.
    static Credential of(const UrlQuery &query, std::string_view header = {});

    bool isNone() const { return share.isEmpty() && user == 0; }
};

/// What @p credential lets one see now; nothing when the store fails. The one place that asks it.
boost::asio::awaitable<std::optional<Access>> findAccess(Connection &connection, Service &service,
                                                         const Credential &credential);

} // namespace velometer
