#pragma once

#include "limits/subscriber.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace velometer {

/// Threads for work that is too long for those that serve streams. Subscribers take turns: whoever
/// brings a hundred tasks delays another's one by a single task. Safe from every thread.
class FairPool
{
public:
    /// Tasks of one subscriber that may wait.
    static constexpr std::size_t mostWaiting = 128;

    explicit FairPool(int threads);
    ~FairPool(); ///< joins
    FairPool(const FairPool &) = delete;
    FairPool &operator=(const FairPool &) = delete;

    /// False, and @p task is not taken, when too many of @p subscriber wait, or after join().
    bool post(const Subscriber &subscriber, std::function<void()> task);

    std::size_t waitingTasks();

    /// Runs what waits, then ends the threads.
    void join();

private:
    void work();

    std::mutex mutex;
    std::condition_variable wake;
    std::map<Subscriber, std::deque<std::function<void()>>> waiting; ///< without empty ones
    std::deque<Subscriber> turns;                                    ///< of all who wait, once each
    bool closing = false;
    std::vector<std::thread> threads;
};

} // namespace velometer
