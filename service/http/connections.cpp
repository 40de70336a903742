#include "http/connections.h"

#include "http/connection.h"

Connections::Connections(int perAddress)
    : m_perAddress(perAddress)
{}

Connections::Entry Connections::enter(const std::shared_ptr<Connection> &connection)
{
    const std::lock_guard lock(m_mutex);
    int &count = m_counts[Subscriber::of(connection->peer())];
    if (count >= 2 * m_perAddress) {
        return Entry::Dropped;
    }
    m_connections.insert(connection);
    return ++count > m_perAddress ? Entry::Refused : Entry::Served;
}

void Connections::leave(const std::shared_ptr<Connection> &connection)
{
    const std::lock_guard lock(m_mutex);
    if (m_connections.erase(connection) == 0) {
        return;
    }
    const auto count = m_counts.find(Subscriber::of(connection->peer()));
    if (--count->second == 0) {
        m_counts.erase(count);
    }
    if (m_connections.empty()) {
        m_empty.notify_all();
    }
}

void Connections::abortIdle()
{
    const std::lock_guard lock(m_mutex);
    for (const auto &connection : m_connections) {
        connection->abortIfIdle();
    }
}

void Connections::abortAll()
{
    const std::lock_guard lock(m_mutex);
    for (const auto &connection : m_connections) {
        connection->abort();
    }
}

bool Connections::waitUntilEmpty(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return m_empty.wait_for(lock, time, [this] { return m_connections.empty(); });
}
