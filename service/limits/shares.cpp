#include "limits/shares.h"

namespace velometer {

Shares::Share Shares::take(const Subscriber &subscriber)
{
    const std::lock_guard lock(mutex);
    const auto own = counts.find(subscriber);
    if (own != counts.end() && own->second >= most) {
        return nullptr;
    }
    ++counts[subscriber];
    return {this, [subscriber](Shares *shares) {
                const std::lock_guard leaving(shares->mutex);
                const auto count = shares->counts.find(subscriber);
                if (--count->second == 0) {
                    shares->counts.erase(count);
                }
            }};
}

} // namespace velometer
