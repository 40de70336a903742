#include "platform/machine/linkwatch.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto linkLookInterval = 2s;
constexpr int linkLooksUntilLost = 2;

} // namespace

LinkWatch::LinkWatch(std::function<bool()> isThere, QObject *parent)
    : QObject(parent)
    , hasNetwork(std::move(isThere))
{
    connect(&timer, &ClockTimer::timeout, this, &LinkWatch::look);
}

void LinkWatch::start()
{
    looksWithout = 0;
    timer.start(linkLookInterval);
}

void LinkWatch::stop()
{
    timer.stop();
}

void LinkWatch::look()
{
    looksWithout = hasNetwork() ? 0 : looksWithout + 1;
    if (looksWithout < linkLooksUntilLost) {
        timer.start(linkLookInterval);
    } else {
        Q_EMIT lost();
    }
}

} // namespace velometer
