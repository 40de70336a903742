#include "http/handler.h"

#include "net/oneshot.h"
#include "ops/log.h"

#include <array>

namespace velometer {

namespace asio = boost::asio;

void noteRefusal(const Connection &connection, Service &service, std::string_view reason)
{
    service.metrics.countRefusal(reason);
    Log::write(Log::Level::Warning, "refusal", {},
               {{"reason", std::string(reason)}, {"client", connection.getPeer().to_string()}});
}

Answer overSpent(const Connection &connection, Service &service, Spent kind,
                 std::chrono::seconds wait)
{
    static constexpr std::array<std::string_view, Allowances::kinds> words{
        "user ids", "reports", "measurements", "pages", "exports", "bytes"};
    noteRefusal(connection, service, wordOf(kind));
    return Answer::comeBack(429,
                            "So many " + std::string(words.at(static_cast<std::size_t>(kind))) +
                                " are not served to one address or user in such a time.",
                            wait);
}

asio::awaitable<MaybeAnswer> spend(Connection &connection, Service &service, Spent kind,
                                   std::int64_t user)
{
    if (user != 0 && !service.allowances.isProven(user)) {
        OneShot<std::optional<bool>> proven(connection.executor(), storeTime);
        service.store->isProven(user, proven.setter());
        const auto answer = co_await proven.wait();
        if (answer && answer->value_or(false)) {
            service.allowances.prove(user);
        }
    }
    const std::string address =
        service.store->pseudonym(Subscriber::of(connection.getPeer()).name());
    const int share = service.allowances.seen(address, user);
    const bool isProven = service.allowances.isProven(user);
    const auto wait = service.allowances.spend(
        kind, isProven ? service.payerOf(connection.getPeer(), user) : address,
        Allowances::Clock::now(), isProven ? 1 : share);
    co_return wait ? std::optional(overSpent(connection, service, kind, *wait)) : std::nullopt;
}

Answer storeFailed(Service &service, int status)
{
    ++service.metrics.storeErrors;
    return Answer::sentence(status, "The store does not answer.");
}

asio::awaitable<std::string> hostName(Connection &connection, Service &service)
{
    const std::string address = connection.getPeer().to_string();
    OneShot<std::string> name(connection.executor(), service.options.nameTimeout);
    service.hostNames.lookUp(address, name.setter());
    auto found = co_await name.wait();
    co_return found ? *std::move(found) : address;
}

} // namespace velometer
