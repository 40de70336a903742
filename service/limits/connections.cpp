#include "limits/connections.h"

#include "net/connection.h"

namespace velometer {

Connections::Connections(int mostPerAddress)
    : perAddress(mostPerAddress)
{}

Connections::Entry Connections::enter(const std::shared_ptr<Connection> &connection)
{
    const std::lock_guard lock(mutex);
    int &count = counts[Subscriber::of(connection->getPeer())];
    if (count >= 2 * perAddress) {
        return Entry::Dropped;
    }
    connections.insert(connection);
    return ++count > perAddress ? Entry::Refused : Entry::Served;
}

void Connections::leave(const std::shared_ptr<Connection> &connection)
{
    const std::lock_guard lock(mutex);
    if (connections.erase(connection) == 0) {
        return;
    }
    const auto count = counts.find(Subscriber::of(connection->getPeer()));
    if (--count->second == 0) {
        counts.erase(count);
    }
    if (connections.empty()) {
        empty.notify_all();
    }
}

void Connections::abortIdle()
{
    const std::lock_guard lock(mutex);
    for (const auto &connection : connections) {
        connection->abortIfIdle();
    }
}

void Connections::abortAll()
{
    const std::lock_guard lock(mutex);
    for (const auto &connection : connections) {
        connection->abort();
    }
}

bool Connections::waitUntilEmpty(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex);
    return empty.wait_for(lock, time, [this] { return connections.empty(); });
}

} // namespace velometer
