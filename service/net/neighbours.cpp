#include "net/neighbours.h"

#include "net/oneshot.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/connect.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/write.hpp>

#include <array>

namespace velometer {

namespace asio = boost::asio;

namespace {

/// "HTTP/1.1 200": enough to tell how a server is.
constexpr std::size_t statusBytes = 12;

asio::awaitable<Neighbours::State> ask(asio::ip::tcp::socket &socket,
                                       asio::ip::tcp::resolver &resolver, std::string host,
                                       std::string port)
{
    const auto [unknown, places] = co_await resolver.async_resolve(host, port, quietly);
    if (unknown) {
        co_return Neighbours::State::Silent;
    }
    const auto [failed, place] = co_await asio::async_connect(socket, places, quietly);
    if (failed) {
        co_return Neighbours::State::Silent;
    }
    const std::string request =
        "GET /healthz HTTP/1.1\r\nHost: velometer\r\nConnection: close\r\n\r\n";
    co_await asio::async_write(socket, asio::buffer(request), quietly);
    std::array<char, statusBytes> status{};
    const auto [cut, count] = co_await asio::async_read(socket, asio::buffer(status), quietly);
    const std::string_view text(status.data(), count);
    co_return cut || !text.starts_with("HTTP/1.") ? Neighbours::State::Silent
    : text.ends_with(" 200")                      ? Neighbours::State::Good
                                                  : Neighbours::State::Ill;
}

/// Asks one server, on a strand of its own; whoever takes too long is silent.
asio::awaitable<void> askInTime(Endpoint endpoint, std::function<void(Neighbours::State)> done)
{
    const auto executor = co_await asio::this_coro::executor;
    const auto socket = std::make_shared<asio::ip::tcp::socket>(executor);
    const auto resolver = std::make_shared<asio::ip::tcp::resolver>(executor);
    asio::steady_timer timer(executor, Neighbours::patience);
    timer.async_wait([socket, resolver](const boost::system::error_code &error) {
        if (!error) {
            boost::system::error_code ignored;
            resolver->cancel();
            socket->close(ignored);
        }
    });
    done(co_await ask(*socket, *resolver, endpoint.host.toStdString(),
                      std::to_string(endpoint.port)));
}

} // namespace

asio::awaitable<std::vector<Neighbours::State>> Neighbours::look(asio::any_io_executor executor)
{
    {
        const std::lock_guard guard(mutex);
        const auto now = Clock::now();
        if (asked != Clock::time_point::min() && now - asked < freshness) {
            co_return states;
        }
        // Whoever comes meanwhile is told what was known before.
        asked = now;
    }
    std::vector<OneShot<State>> answers;
    for (const auto &server : all) {
        auto &answer = answers.emplace_back(executor, patience + patience / 10);
        auto asking = askInTime(server.endpoint, answer.setter());
        asio::co_spawn(asio::make_strand(executor), std::move(asking), asio::detached);
    }
    std::vector<State> found;
    for (auto &answer : answers) {
        const auto told = co_await answer.wait();
        found.push_back(told.value_or(State::Silent));
    }
    const std::lock_guard guard(mutex);
    states = found;
    co_return found;
}

} // namespace velometer
