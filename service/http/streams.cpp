#include "http/streams.h"

Streams::Streams(int most, int mostPerAddress)
    : m_most(most)
    , m_mostPerAddress(mostPerAddress)
{}

Streams::Place Streams::take(const boost::asio::ip::address &address)
{
    const auto subscriber = Subscriber::of(address);
    const std::lock_guard lock(m_mutex);
    const auto own = m_counts.find(subscriber);
    if (m_running >= m_most || (own != m_counts.end() && own->second >= m_mostPerAddress)) {
        return nullptr;
    }
    ++m_running;
    ++m_counts[subscriber];
    return {this, [subscriber](Streams *streams) { streams->leave(subscriber); }};
}

void Streams::leave(const Subscriber &subscriber)
{
    const std::lock_guard lock(m_mutex);
    --m_running;
    const auto own = m_counts.find(subscriber);
    if (--own->second == 0) {
        m_counts.erase(own);
    }
}
