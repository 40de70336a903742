#pragma once

#include "http/answer.h"
#include "http/service.h"
#include "net/connection.h"
#include "net/oneshot.h"

#include <boost/asio/awaitable.hpp>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace velometer {

/// What a request's handler returns; nothing when it has answered by itself.
using MaybeAnswer = std::optional<Answer>;

/// Tells a client that waits with its body to send it.
inline constexpr std::string_view goOn = "HTTP/1.1 100 Continue\r\n\r\n";

/// Longest wait for the store: it commits in milliseconds, and a client waits ten seconds at most.
inline constexpr std::chrono::seconds storeTime{8};

/// Longest wait for work on a pool.
inline constexpr std::chrono::seconds workTime{60};

/// Runs @p work on @p pool, in its subscriber's turn. Nothing when too much of that subscriber's
/// waits already, or when it took too long. @p work has a name where this is called: GCC 12
/// destroys twice what a temporary holds that a coroutine is called with.
template <typename Work>
boost::asio::awaitable<std::optional<std::invoke_result_t<Work>>>
offload(Connection &connection, FairPool &pool, const Work &work)
{
    using Value = std::invoke_result_t<Work>;
    OneShot<Value> value(connection.executor(), workTime);
    const auto subscriber = Subscriber::of(connection.getPeer());
    if (!pool.post(subscriber, [work, done = value.setter()] { done(work()); })) {
        co_return std::nullopt;
    }
    co_return co_await value.wait();
}

/// Counts a request that is refused for one of a few reasons, and writes it down.
void noteRefusal(const Connection &connection, Service &service, std::string_view reason);

/// The answer to whoever has had as much of @p kind as he may; counts it.
Answer overSpent(const Connection &connection, Service &service, Spent kind,
                 std::chrono::seconds wait);

/// Takes one of @p kind for @p user (0: nobody's) at the peer's address; nothing when there was
/// one, else the answer that refuses it. A user that has proven that he measures is asked of the
/// store.
boost::asio::awaitable<MaybeAnswer> spend(Connection &connection, Service &service, Spent kind,
                                          std::int64_t user);

/// The answer with @p status when the store did not do its work; counts it.
Answer storeFailed(Service &service, int status);

/// The name of the peer's address, or the address when nobody knows it in time.
boost::asio::awaitable<std::string> hostName(Connection &connection, Service &service);

} // namespace velometer
