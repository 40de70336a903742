#include "ops/hostnames.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include <netdb.h>

namespace velometer {

namespace {

constexpr int threadCount = 4;

/// Look-ups that may wait for a thread; those behind them would outlast their callers' patience.
constexpr std::size_t queueLength = 64;

std::string systemName(const std::string &address)
{
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo *found = nullptr;
    if (getaddrinfo(address.c_str(), nullptr, &hints, &found) != 0) {
        return {};
    }
    std::array<char, NI_MAXHOST> name{};
    const int error = getnameinfo(found->ai_addr, found->ai_addrlen, name.data(), name.size(),
                                  nullptr, 0, NI_NAMEREQD);
    freeaddrinfo(found);
    return error == 0 ? std::string(name.data()) : std::string();
}

/// Whoever owns an address writes its name; it ends up in answers and documents.
bool isHarmless(const std::string &name)
{
    return !name.empty() && name.size() <= 253 && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '.' || c == '-' || c == '_' || c == ':';
    });
}

} // namespace

/// Outlives the object as long as a look-up hangs.
struct HostNames::State
{
    struct Job
    {
        std::string address;
        Callback done;
    };
    Resolver resolver;
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::uint64_t> queue;
    std::map<std::uint64_t, Job> jobs; ///< queued and running ones
    std::uint64_t lastJob = 0;
    bool closed = false;
};

HostNames::HostNames(Resolver resolver)
    : state(std::make_shared<State>())
{
    state->resolver = resolver ? std::move(resolver) : systemName;
    for (int i = 0; i < threadCount; ++i) {
        // Detached: a thread inside a resolver that hangs cannot be waited for.
        std::thread([state = state] { work(state); }).detach();
    }
}

HostNames::~HostNames()
{
    close();
}

void HostNames::close()
{
    const std::lock_guard lock(state->mutex);
    state->closed = true;
    state->jobs.clear();
    state->queue.clear();
    state->wake.notify_all();
}

void HostNames::lookUp(const std::string &address, Callback done)
{
    {
        const std::lock_guard lock(state->mutex);
        if (state->queue.size() < queueLength && !state->closed) {
            const auto job = ++state->lastJob;
            state->jobs.emplace(job, State::Job{address, std::move(done)});
            state->queue.push_back(job);
            state->wake.notify_one();
            return;
        }
    }
    done(address);
}

void HostNames::work(const std::shared_ptr<State> &state)
{
    std::unique_lock lock(state->mutex);
    while (true) {
        state->wake.wait(lock, [&] { return state->closed || !state->queue.empty(); });
        if (state->closed) {
            return;
        }
        const auto job = state->queue.front();
        state->queue.pop_front();
        const std::string address = state->jobs.at(job).address;
        lock.unlock();
        const std::string name = state->resolver(address);
        lock.lock();
        // Called under the lock, so that the callback's target cannot go away meanwhile.
        if (const auto found = state->jobs.find(job); found != state->jobs.end()) {
            found->second.done(isHarmless(name) ? name : address);
            state->jobs.erase(found);
        }
    }
}

} // namespace velometer
