#include "db/storewriter.h"

#include "db/transaction.h"
#include "utils/utils.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto lockedRetryPeriod = 200ms;
/// Another program's transaction lasts milliseconds: only what lasts longer is told.
constexpr std::chrono::nanoseconds tellAfter = 2s;
/// A program that holds the store for longer will not let it go.
constexpr std::chrono::nanoseconds patience = 1min;

} // namespace

StoreWriter::StoreWriter(QObject *parent)
    : QObject(parent)
{
    connect(&retry, &ClockTimer::timeout, this, &StoreWriter::tryOnce);
}

void StoreWriter::write(std::function<bool()> toDo, std::function<void(bool)> whenDone)
{
    attempt = std::move(toDo);
    done = std::move(whenDone);
    since = Utils::getTimeInNs();
    told = false;
    tryOnce();
}

void StoreWriter::cancel()
{
    retry.stop();
    attempt = nullptr;
    done = nullptr;
}

void StoreWriter::tryOnce()
{
    const bool written = attempt();
    const qint64 passed = Utils::getTimeInNs() - since;
    if (!written && failedOnLock() && passed < patience.count()) {
        retry.start(lockedRetryPeriod);
        if (passed >= tellAfter.count() && !std::exchange(told, true)) {
            Q_EMIT waiting();
        }
        return;
    }
    const auto whenDone = std::exchange(done, nullptr);
    cancel();
    whenDone(written);
}

} // namespace velometer
