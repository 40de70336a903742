#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace velometer {

/// Completion token of all awaited operations: they yield their error code, they do not throw.
inline constexpr auto quietly = boost::asio::as_tuple(boost::asio::use_awaitable);

/// One value that another thread delivers to a coroutine, waited for no longer than a time-out.
/// wait() runs on @p executor, a strand; the function that setter() gives may be called from any
/// thread, once, also after the coroutine has given up.
template <typename Value>
class OneShot
{
public:
    OneShot(const boost::asio::any_io_executor &executor, std::chrono::milliseconds timeout)
        : state(std::make_shared<State>(executor, timeout))
    {}

    std::function<void(Value)> setter() const
    {
        return [state = state](Value value) {
            boost::asio::post(state->executor, [state, value = std::move(value)]() mutable {
                state->value = std::move(value);
                state->timer.cancel();
            });
        };
    }

    /// Nothing when the time-out passed first.
    boost::asio::awaitable<std::optional<Value>> wait()
    {
        // setter()'s value arrives on this strand: it cannot slip in between test and wait.
        if (!state->value) {
            co_await state->timer.async_wait(quietly);
        }
        co_return std::move(state->value);
    }

private:
    struct State
    {
        State(const boost::asio::any_io_executor &strand, std::chrono::milliseconds timeout)
            : executor(strand)
            , timer(strand, timeout)
        {}
        boost::asio::any_io_executor executor;
        boost::asio::steady_timer timer;
        std::optional<Value> value;
    };
    std::shared_ptr<State> state;
};

} // namespace velometer
