#include "ops/loopwatch.h"

#include "net/oneshot.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/this_coro.hpp>

namespace velometer {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::milliseconds period{50};

} // namespace

void LoopWatch::start(asio::io_context &io)
{
    asio::co_spawn(asio::make_strand(io), watch(), asio::detached);
}

std::int64_t LoopWatch::lateTimes() const
{
    return late.load() + (Clock::now() > due.load() + tolerance ? 1 : 0);
}

asio::awaitable<void> LoopWatch::watch()
{
    asio::steady_timer timer(co_await asio::this_coro::executor);
    while (true) {
        const auto next = Clock::now() + period;
        due = next;
        timer.expires_at(next);
        co_await timer.async_wait(quietly);
        if (const auto now = Clock::now(); now > next + tolerance) {
            ++late;
            lateMs += std::chrono::duration_cast<std::chrono::milliseconds>(now - next).count();
        }
    }
}

} // namespace velometer
