#include "limits/fairpool.h"

#include "ops/background.h"

namespace velometer {

FairPool::FairPool(int threadCount)
{
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([this] { work(); });
    }
}

FairPool::~FairPool()
{
    join();
}

bool FairPool::post(const Subscriber &subscriber, std::function<void()> task)
{
    const std::lock_guard lock(mutex);
    const auto own = waiting.find(subscriber);
    if (closing || (own != waiting.end() && own->second.size() >= mostWaiting)) {
        return false;
    }
    if (own == waiting.end()) {
        turns.push_back(subscriber);
    }
    waiting[subscriber].push_back(std::move(task));
    wake.notify_one();
    return true;
}

std::size_t FairPool::waitingTasks()
{
    const std::lock_guard lock(mutex);
    std::size_t count = 0;
    for (const auto &[subscriber, tasks] : waiting) {
        count += tasks.size();
    }
    return count;
}

void FairPool::join()
{
    {
        const std::lock_guard lock(mutex);
        closing = true;
        wake.notify_all();
    }
    for (auto &thread : threads) {
        thread.join();
    }
    threads.clear();
}

void FairPool::work()
{
    stepBack();
    std::unique_lock lock(mutex);
    while (true) {
        wake.wait(lock, [this] { return closing || !turns.empty(); });
        if (turns.empty()) {
            return;
        }
        const auto own = waiting.find(turns.front());
        turns.pop_front();
        const auto task = std::move(own->second.front());
        own->second.pop_front();
        if (own->second.empty()) {
            waiting.erase(own);
        } else {
            turns.push_back(own->first);
        }
        lock.unlock();
        task();
        lock.lock();
    }
}

} // namespace velometer
