#include "limits/connections.h"

#include "net/connection.h"

namespace velometer {

Connections::Connections(int mostPerAddress, std::size_t all)
    : perAddress(mostPerAddress)
    , most(all)
{}

Connections::Entry Connections::enter(const std::shared_ptr<Connection> &connection)
{
    const std::lock_guard lock(mutex);
    int &count = counts[Subscriber::of(connection->getOrigin())];
    // A proxy's are its clients'.
    const bool limited = !connection->isProxy();
    if (limited && count >= 2 * perAddress) {
        return Entry::Dropped;
    }
    if (connections.size() >= most && !dropIdle()) {
        if (count == 0) {
            counts.erase(Subscriber::of(connection->getOrigin()));
        }
        return Entry::Dropped;
    }
    connections.emplace(connection, ++lastNumber);
    idle.emplace(lastNumber, connection.get());
    return ++count > perAddress && limited ? Entry::Refused : Entry::Served;
}

bool Connections::dropOldestIdle()
{
    const std::lock_guard lock(mutex);
    return dropIdle();
}

bool Connections::dropIdle()
{
    while (!idle.empty()) {
        auto *oldest = idle.begin()->second;
        idle.erase(idle.begin());
        if (!oldest->hasHead()) {
            oldest->abortIfIdle();
            return true;
        }
    }
    return false;
}

void Connections::leave(const std::shared_ptr<Connection> &connection)
{
    const std::lock_guard lock(mutex);
    const auto entry = connections.find(connection);
    if (entry == connections.end()) {
        return;
    }
    idle.erase(entry->second);
    connections.erase(entry);
    const auto count = counts.find(Subscriber::of(connection->getOrigin()));
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
    for (const auto &[connection, number] : connections) {
        connection->abortIfIdle();
    }
}

void Connections::abortAll()
{
    const std::lock_guard lock(mutex);
    for (const auto &[connection, number] : connections) {
        connection->abort();
    }
}

bool Connections::waitUntilEmpty(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex);
    return empty.wait_for(lock, time, [this] { return connections.empty(); });
}

} // namespace velometer
