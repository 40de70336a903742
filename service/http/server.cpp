#include "http/server.h"

#include "http/endpoints.h"
#include "limits/connections.h"
#include "net/connection.h"
#include "net/oneshot.h"
#include "ops/log.h"
#include "reports/sqlreportstore.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <boost/asio/strand.hpp>

#include <algorithm>
#include <csignal>
#include <thread>

#include <sys/resource.h>

namespace velometer {

namespace asio = boost::asio;
using asio::ip::tcp;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// Pause after accepting failed for want of descriptors or memory: others must end first.
constexpr auto acceptPause = 100ms;

/// What the store gets to write what waits, and its answers to leave, after the grace: with it
/// less than ten seconds, which is what whoever ends a service waits before it kills.
constexpr auto storeGrace = 3s;
constexpr auto lastWords = 200ms;

/// Descriptors for the store, the listeners, the log and the look-ups of names.
constexpr rlim_t ownDescriptors = 64;

/// Each connection is one descriptor; the soft limit is a leftover of select(). Returns how many
/// connections there may be.
std::size_t raiseDescriptorLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    return std::max<rlim_t>(limit.rlim_cur, 2 * ownDescriptors) - ownDescriptors;
}

std::string toText(const tcp::endpoint &endpoint)
{
    const std::string address = endpoint.address().to_string();
    return (endpoint.address().is_v6() ? '[' + address + ']' : address) + ':' +
           std::to_string(endpoint.port());
}

} // namespace

struct Server::Private
{
    explicit Private(ServerOptions options)
        : service(std::make_unique<Service>(std::move(options)))
        , connections(service->options.maxConnectionsPerAddress,
                      service->options.maxConnections > 0 ? service->options.maxConnections
                                                          : raiseDescriptorLimit())
        , io(service->options.threads)
    {}

    bool listen(const Endpoint &endpoint, QString *error);
    asio::awaitable<void> accept(tcp::acceptor &acceptor);
    void serve(tcp::socket socket);

    std::unique_ptr<Service> service;
    Connections connections;
    asio::io_context io;
    asio::executor_work_guard<asio::io_context::executor_type> work{io.get_executor()};
    std::vector<std::unique_ptr<tcp::acceptor>> acceptors; ///< each on a strand of its own
    std::vector<std::string> addresses;
    std::vector<std::thread> threads;
};

bool Server::Private::listen(const Endpoint &endpoint, QString *error)
{
    boost::system::error_code failure;
    const auto address = asio::ip::make_address(endpoint.host.toStdString(), failure);
    const tcp::endpoint local(address, static_cast<std::uint16_t>(endpoint.port));
    auto acceptor = std::make_unique<tcp::acceptor>(asio::make_strand(io));
    if (!failure) {
        acceptor->open(local.protocol(), failure);
    }
    if (!failure) {
        acceptor->set_option(tcp::acceptor::reuse_address(true), failure);
    }
    if (!failure && address.is_v6()) {
        // "::" takes IPv4 as well, unless that has a listener of its own at the same port.
        const bool alone = std::ranges::any_of(service->options.listen, [&](const auto &other) {
            return other.port == endpoint.port && !other.host.contains(u':');
        });
        acceptor->set_option(asio::ip::v6_only(alone), failure);
    }
    if (!failure) {
        acceptor->bind(local, failure);
    }
    if (!failure) {
        acceptor->listen(tcp::acceptor::max_listen_connections, failure);
    }
    if (failure) {
        *error = u"Cannot listen on %1: %2."_s.arg(
            u"%1:%2"_s.arg(Endpoint::bracketed(endpoint.host)).arg(endpoint.port),
            QString::fromStdString(failure.message()));
        return false;
    }
    addresses.push_back(toText(acceptor->local_endpoint(failure)));
    acceptors.push_back(std::move(acceptor));
    return true;
}

asio::awaitable<void> Server::Private::accept(tcp::acceptor &acceptor)
{
    asio::steady_timer pause(acceptor.get_executor());
    while (acceptor.is_open()) {
        tcp::socket socket(asio::make_strand(io));
        const auto [error] = co_await acceptor.async_accept(socket, quietly);
        if (!error) {
            serve(std::move(socket));
        } else if (error == asio::error::no_descriptors || error == asio::error::no_memory ||
                   error == asio::error::no_buffer_space ||
                   error == boost::system::errc::too_many_files_open_in_system) {
            Log::write(Log::Level::Warning, "cannot accept: " + error.message());
            connections.dropOldestIdle();
            pause.expires_after(acceptPause);
            co_await pause.async_wait(quietly);
        }
    }
}

void Server::Private::serve(tcp::socket socket)
{
    auto executor = socket.get_executor();
    auto connection = std::make_shared<Connection>(std::move(socket));
    ++service->metrics.connectionsTotal;
    const auto entry = connections.enter(connection);
    if (entry == Connections::Entry::Dropped) {
        return;
    }
    ++service->metrics.connections;
    auto done = [this, connection](const std::exception_ptr &failure) {
        try {
            if (failure) {
                std::rethrow_exception(failure);
            }
        } catch (const std::exception &exception) {
            Log::write(Log::Level::Error, std::string("a request failed: ") + exception.what());
        }
        --service->metrics.connections;
        connections.leave(connection);
    };
    auto request = entry == Connections::Entry::Served ? serveRequest(connection, *service)
                                                       : refuseRequest(connection, *service);
    asio::co_spawn(executor, std::move(request), std::move(done));
}

Server::Server(ServerOptions options)
    : d(std::make_unique<Private>(std::move(options)))
{}

Server::~Server()
{
    stop();
}

bool Server::start(QString *error)
{
    // sendfile has no other way of saying that the peer has gone.
    std::signal(SIGPIPE, SIG_IGN);
    if (!d->service->block.create()) {
        *error = u"There is no memory for the random bytes of the downloads."_s;
        return false;
    }
    // The address comes first: a second service started by mistake leaves the database alone.
    for (const auto &endpoint : d->service->options.listen) {
        if (!d->listen(endpoint, error)) {
            return false;
        }
    }
    d->service->store = SqlReportStore::open(d->service->options.databaseFile, error);
    if (!d->service->store) {
        return false;
    }
    for (auto &acceptor : d->acceptors) {
        asio::co_spawn(acceptor->get_executor(), d->accept(*acceptor), asio::detached);
    }
    d->service->watch.start(d->io);
    for (int i = 0; i < d->service->options.threads; ++i) {
        d->threads.emplace_back([this] { d->io.run(); });
    }
    return true;
}

std::vector<std::string> Server::addresses() const
{
    return d->addresses;
}

void Server::stop()
{
    for (auto &acceptor : d->acceptors) {
        asio::post(acceptor->get_executor(), [&acceptor = *acceptor] {
            boost::system::error_code ignored;
            acceptor.close(ignored);
        });
    }
    if (!d->threads.empty()) {
        d->connections.abortIdle();
        const bool empty = d->connections.waitUntilEmpty(d->service->options.shutdownGrace);
        d->service->stopping = true;
        // Another program may hold the file. What was acknowledged is on the disk, and what is not
        // stored by then stays with its client.
        d->service->store->close(std::chrono::steady_clock::now() + storeGrace);
        if (!empty) {
            d->connections.waitUntilEmpty(lastWords);
            d->connections.abortAll();
            d->connections.waitUntilEmpty(1s);
        }
    }
    d->work.reset();
    d->io.stop();
    for (auto &thread : d->threads) {
        thread.join();
    }
    d->threads.clear();
    // What these still have to say goes to the strands, so they end before those do.
    d->service->hostNames.close();
    d->service->parsers.join();
    d->service->pageMakers.join();
    d->service->store.reset();
}

} // namespace velometer
