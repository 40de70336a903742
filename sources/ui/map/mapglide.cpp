#include "ui/map/mapglide.h"

#include "utils/clock.h"

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto period = 16ms;
constexpr double usPerMs = 1000;
constexpr double stillMs = 100;  ///< a finger that rested this long before it was lifted lets go
constexpr double memoryMs = 40;  ///< over which moves are averaged
constexpr double decayMs = 200;  ///< to a third of the speed
constexpr double slowest = 0.03; ///< px per ms
constexpr double fastest = 4;    ///< px per ms

double sinceMs(qint64 us)
{
    return static_cast<double>(Clock::current().steadyUs() - us) / usPerMs;
}

} // namespace

MapGlide::MapGlide(QObject *parent)
    : QObject(parent)
{
    connect(&timer, &ClockTimer::timeout, this, &MapGlide::step);
}

void MapGlide::stop()
{
    timer.stop();
    velocity = {};
    lastUs = Clock::current().steadyUs();
}

void MapGlide::dragged(QPointF way)
{
    const double passed = std::max(1.0, sinceMs(lastUs));
    const double weight = 1 - std::exp(-passed / memoryMs);
    velocity += weight * (way / passed - velocity);
    lastUs = Clock::current().steadyUs();
}

void MapGlide::release()
{
    const double speed = std::hypot(velocity.x(), velocity.y());
    if (sinceMs(lastUs) > stillMs || speed < slowest) {
        return;
    }
    velocity *= std::min(1.0, fastest / speed);
    lastUs = Clock::current().steadyUs();
    timer.start(period);
}

void MapGlide::step()
{
    const double passed = sinceMs(lastUs);
    lastUs = Clock::current().steadyUs();
    rest += velocity * passed;
    const QPoint whole = rest.toPoint();
    rest -= whole;
    Q_EMIT moved(whole.x(), whole.y());
    velocity *= std::exp(-passed / decayMs);
    if (std::hypot(velocity.x(), velocity.y()) >= slowest) {
        timer.start(period);
    }
}

} // namespace velometer
