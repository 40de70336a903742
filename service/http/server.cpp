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
#include <array>
#include <atomic>
#include <csignal>
#include <deque>
#include <thread>

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

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

/// How much later than this one others know what was spent here.
constexpr auto allowancePeriod = 5s;

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

    using Role = Connection::Role;
    struct Listener
    {
        std::unique_ptr<tcp::acceptor> acceptor; ///< on a strand of its own
        Role role = Role::Public;
        std::string address;
    };

    bool listen(const Endpoint &endpoint, Role role, QString *error);
    bool adopt(const Inherited &socket, QString *error);
    bool loadCertificate(QString *error);
    asio::awaitable<void> accept(Listener &listener);
    asio::awaitable<void> shareAllowances();
    asio::awaitable<void> watchUplink();
    void tellAllowances();
    void serve(tcp::socket socket, Role role);

    std::unique_ptr<Service> service;
    Connections connections;
    asio::io_context io;
    asio::executor_work_guard<asio::io_context::executor_type> work{io.get_executor()};
    std::deque<Listener> listeners;
    std::atomic<std::shared_ptr<TlsContext>> tls;
    std::vector<std::thread> threads;
};

bool Server::Private::listen(const Endpoint &endpoint, Role role, QString *error)
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
    std::string text = toText(acceptor->local_endpoint(failure));
    listeners.push_back(
        {.acceptor = std::move(acceptor), .role = role, .address = std::move(text)});
    return true;
}

bool Server::Private::adopt(const Inherited &inherited, QString *error)
{
    sockaddr_storage name{};
    socklen_t size = sizeof name;
    int type = 0;
    socklen_t typeSize = sizeof type;
    int listening = 0;
    socklen_t listeningSize = sizeof listening;
    const bool isSocket =
        ::getsockname(inherited.descriptor, reinterpret_cast<sockaddr *>(&name), &size) == 0 &&
        ::getsockopt(inherited.descriptor, SOL_SOCKET, SO_TYPE, &type, &typeSize) == 0 &&
        ::getsockopt(inherited.descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listening, &listeningSize) ==
            0 &&
        type == SOCK_STREAM && listening == 1 &&
        (name.ss_family == AF_INET || name.ss_family == AF_INET6);
    auto acceptor = std::make_unique<tcp::acceptor>(asio::make_strand(io));
    boost::system::error_code failure;
    if (isSocket) {
        acceptor->assign(name.ss_family == AF_INET ? tcp::v4() : tcp::v6(), inherited.descriptor,
                         failure);
    }
    if (!isSocket || failure) {
        *error = u"Descriptor %1, which was passed, is no TCP socket that listens."_s.arg(
            inherited.descriptor);
        return false;
    }
    std::string text = toText(acceptor->local_endpoint(failure));
    listeners.push_back(
        {.acceptor = std::move(acceptor), .role = inherited.role, .address = std::move(text)});
    return true;
}

bool Server::Private::loadCertificate(QString *error)
{
    if (service->options.tlsCertificate.isEmpty()) {
        return true;
    }
    auto loaded = makeTlsContext(service->options.tlsCertificate, service->options.tlsKey, error);
    if (!loaded) {
        return false;
    }
    service->metrics.certificateExpires = loaded->expires / 1000;
    tls = std::move(loaded);
    return true;
}

asio::awaitable<void> Server::Private::accept(Listener &listener)
{
    tcp::acceptor &acceptor = *listener.acceptor;
    asio::steady_timer pause(acceptor.get_executor());
    while (acceptor.is_open()) {
        tcp::socket socket(asio::make_strand(io));
        const auto [error] = co_await acceptor.async_accept(socket, quietly);
        if (!error) {
            serve(std::move(socket), listener.role);
        } else if (error == asio::error::no_descriptors || error == asio::error::no_memory ||
                   error == asio::error::no_buffer_space ||
                   error == boost::system::errc::too_many_files_open_in_system) {
            Log::write(Log::Level::Warning, "accept", "cannot accept: " + error.message());
            connections.dropOldestIdle();
            pause.expires_after(acceptPause);
            co_await pause.async_wait(quietly);
        }
    }
}

/// Services that share the store, and this one after its next start, know what was spent.
asio::awaitable<void> Server::Private::shareAllowances()
{
    asio::steady_timer pause(co_await asio::this_coro::executor);
    while (true) {
        pause.expires_after(allowancePeriod);
        co_await pause.async_wait(quietly);
        tellAllowances();
    }
}

void Server::Private::tellAllowances()
{
    auto news = service->allowances.takeNews();
    if (!news.empty()) {
        service->store->addAllowances(service->options.allowances, std::move(news),
                                      [this](const auto &levels) {
                                          if (levels) {
                                              service->allowances.learn(*levels);
                                          }
                                      });
    }
}

asio::awaitable<void> Server::Private::watchUplink()
{
    asio::steady_timer pause(co_await asio::this_coro::executor);
    while (true) {
        pause.expires_after(Uplink::period);
        co_await pause.async_wait(quietly);
        service->uplink.look(Uplink::Clock::now());
    }
}

void Server::Private::serve(tcp::socket socket, Role role)
{
    auto executor = socket.get_executor();
    auto connection = std::make_shared<Connection>(std::move(socket), role,
                                                   role == Role::Tls ? tls.load() : nullptr);
    if (service->isTrusted(connection->getOrigin())) {
        connection->setProxy();
    }
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
            Log::write(Log::Level::Error, "exception",
                       std::string("a request failed: ") + exception.what());
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
    const auto &options = d->service->options;
    using Role = Connection::Role;
    const auto listen = [&](const std::vector<Endpoint> &endpoints, Role role) {
        return std::ranges::all_of(
            endpoints, [&](const Endpoint &each) { return d->listen(each, role, error); });
    };
    if (!d->loadCertificate(error) || !listen(options.listen, Role::Public) ||
        !listen(options.listenTls, Role::Tls) || !listen(options.listenAdmin, Role::Admin) ||
        !std::ranges::all_of(options.inherited,
                             [&](const auto &each) { return d->adopt(each, error); })) {
        return false;
    }
    if (d->listeners.empty()) {
        *error = u"There is nothing to listen on."_s;
        return false;
    }
    const auto is = [](Role role) {
        return [role](const auto &listener) { return listener.role == role; };
    };
    if (std::ranges::any_of(d->listeners, is(Role::Tls)) && !d->tls.load()) {
        *error = u"A TLS listener needs --tls-cert and --tls-key."_s;
        return false;
    }
    d->service->hasAdmin = std::ranges::any_of(d->listeners, is(Role::Admin));
    d->service->store = SqlReportStore::open(d->service->options.store, error);
    if (!d->service->store) {
        return false;
    }
    for (auto &listener : d->listeners) {
        asio::co_spawn(listener.acceptor->get_executor(), d->accept(listener), asio::detached);
    }
    d->service->watch.start(d->io);
    d->service->store->allowances(options.allowances, [this](const auto &levels) {
        if (levels) {
            d->service->allowances.learn(*levels);
        }
    });
    asio::co_spawn(asio::make_strand(d->io), d->shareAllowances(), asio::detached);
    if (options.maxBandwidth > 0) {
        asio::co_spawn(asio::make_strand(d->io), d->watchUplink(), asio::detached);
    }
    std::string where;
    for (const auto &address : addresses()) {
        where += (where.empty() ? "" : ", ") + address;
    }
    Log::write(Log::Level::Info, "start", "serving",
               {{"version", std::string(VELOMETER_VERSION)},
                {"listen", where},
                {"database",
                 SqlReportStore::databaseOf(options.store.database)->shownName().toStdString()},
                {"pid", std::int64_t{::getpid()}},
                {"threads", std::int64_t{options.threads}},
                {"max_streams", std::int64_t{options.maxStreams}}});
    for (int i = 0; i < d->service->options.threads; ++i) {
        d->threads.emplace_back([this] { d->io.run(); });
    }
    return true;
}

std::vector<std::string> Server::addresses() const
{
    std::vector<std::string> list;
    for (const auto &listener : d->listeners) {
        constexpr std::array<std::string_view, 3> words{"", " (TLS)", " (admin)"};
        list.push_back(listener.address +
                       std::string(words.at(static_cast<std::size_t>(listener.role))));
    }
    return list;
}

bool Server::reload(const ServerOptions &options, QString *error)
{
    d->service->setSalts(options.salts);
    return d->loadCertificate(error);
}

std::vector<Inherited> Server::sockets() const
{
    std::vector<Inherited> list;
    for (const auto &listener : d->listeners) {
        list.push_back({.descriptor = listener.acceptor->native_handle(), .role = listener.role});
    }
    return list;
}

int Server::storeLock() const
{
    return d->service->store->lockDescriptor();
}

bool Server::isAlive() const
{
    return d->service->watch.isAlive();
}

void Server::stop()
{
    d->connections.abortIdle();
    stopWithin(d->service->options.shutdownGrace);
}

void Server::stopGently()
{
    const auto &options = d->service->options;
    stopWithin(options.longestStream + options.headTimeout + options.reportTimeout);
}

void Server::stopWithin(std::chrono::milliseconds grace)
{
    for (auto &listener : d->listeners) {
        asio::post(listener.acceptor->get_executor(), [&acceptor = *listener.acceptor] {
            boost::system::error_code ignored;
            acceptor.close(ignored);
        });
    }
    if (!d->threads.empty()) {
        const bool empty = d->connections.waitUntilEmpty(grace);
        d->service->stopping = true;
        d->tellAllowances();
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
