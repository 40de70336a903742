#pragma once

#include "http/access.h"
#include "http/request.h"
#include "limits/shares.h"
#include "reports/testquery.h"

#include <variant>

namespace velometer {

/// Who asks, for which tests, and what he may see.
struct ApiView
{
    UrlQuery query;
    TestScope scope;
    Access access;
    Shares::Share place; ///< among the requests of the address, held until the answer is made
};

enum class Wants {
    Read,
    OwnRead, ///< what a share does not show at all
    Change,  ///< the user id comes from the header alone: no foreign page's form can send that
};

/// Finds out whose tests @p request is about, by the user's id or a share's key, and which by its
/// filter. Else the answer that says what is wrong.
boost::asio::awaitable<std::variant<ApiView, Answer>>
openView(Connection &connection, const Request &request, Service &service, Wants wants);

/// @p object as an answer, compressed where @p request takes it. Off the threads that serve
/// streams.
Answer jsonAnswer(const QJsonObject &object, bool compress, int status = 200);

} // namespace velometer
