#include "utils/clock.h"

#include <chrono>

namespace velometer {

namespace {

using namespace std::chrono;

class SystemClock : public Clock
{
public:
    qint64 wallMs() const override
    {
        return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    }

    qint64 steadyUs() const override
    {
        return duration_cast<microseconds>(wallAtStart.time_since_epoch() +
                                           (steady_clock::now() - steadyAtStart))
            .count();
    }

private:
    const system_clock::time_point wallAtStart = system_clock::now();
    const steady_clock::time_point steadyAtStart = steady_clock::now();
};

const SystemClock systemClock;
const Clock *installed = nullptr;

} // namespace

const Clock &Clock::current()
{
    return installed ? *installed : systemClock;
}

void Clock::install(const Clock *clock)
{
    installed = clock;
}

bool Clock::runsByItself()
{
    return !installed;
}

} // namespace velometer
