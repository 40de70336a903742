#include "limits/streams.h"

namespace velometer {

Streams::Streams(int total, int perAddress)
    : most(total)
    , mostPerAddress(perAddress)
{}

Streams::Place Streams::take(const boost::asio::ip::address &address)
{
    const auto subscriber = Subscriber::of(address);
    const std::lock_guard lock(mutex);
    const auto own = counts.find(subscriber);
    if (running >= most || (own != counts.end() && own->second >= mostPerAddress)) {
        return nullptr;
    }
    ++running;
    ++counts[subscriber];
    return {this, [subscriber](Streams *streams) { streams->leave(subscriber); }};
}

void Streams::leave(const Subscriber &subscriber)
{
    const std::lock_guard lock(mutex);
    --running;
    const auto own = counts.find(subscriber);
    if (--own->second == 0) {
        counts.erase(own);
    }
}

} // namespace velometer
