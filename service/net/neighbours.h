#pragma once

#include "utils/endpoint.h"

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>

#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

namespace velometer {

/// The measurement servers of a deployment, and how they are: each is asked for its health by HTTP,
/// at most twice a minute however many ask here. Safe from every thread.
class Neighbours
{
public:
    enum class State { Good, Ill /**< it answers, but says that it takes nothing */, Silent };
    struct Server
    {
        QString name;
        Endpoint endpoint;
    };
    static constexpr std::chrono::seconds freshness{30};
    /// What a server gets to answer.
    static constexpr std::chrono::milliseconds patience{1500};

    explicit Neighbours(std::vector<Server> servers)
        : all(std::move(servers))
        , states(all.size(), State::Silent)
    {}

    const std::vector<Server> &servers() const { return all; }

    /// The state of each server, in their order. Asks them when what is known is old.
    boost::asio::awaitable<std::vector<State>> look(boost::asio::any_io_executor executor);

private:
    using Clock = std::chrono::steady_clock;

    const std::vector<Server> all;
    std::mutex mutex;
    std::vector<State> states;
    Clock::time_point asked = Clock::time_point::min(); ///< when they were asked last
};

} // namespace velometer
