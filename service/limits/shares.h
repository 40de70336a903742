#pragma once

#include "limits/subscriber.h"

#include <map>
#include <memory>
#include <mutex>

namespace velometer {

/// So many at once of something for each subscriber. Safe from every thread.
class Shares
{
public:
    explicit Shares(int mostPerSubscriber)
        : most(mostPerSubscriber)
    {}

    /// Given back when it is destroyed; the shares outlive it.
    using Share = std::shared_ptr<void>;

    /// Nothing when @p subscriber has all of his already.
    Share take(const Subscriber &subscriber);

private:
    const int most;
    std::mutex mutex;
    std::map<Subscriber, int> counts; ///< without zeros
};

} // namespace velometer
