#pragma once

#include "limits/allowances.h"
#include "net/addressrange.h"
#include "net/connection.h"
#include "net/neighbours.h"
#include "reports/storeoptions.h"
#include "utils/endpoint.h"
#include "web/layout.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velometer {

/// A socket that the program was started with.
struct Inherited
{
    int descriptor = -1;
    Connection::Role role = Connection::Role::Public;
};

/// What a server is started with. The limits keep one client, or a thousand bad ones, from taking
/// the service away from the others.
struct ServerOptions
{
    /// IPv4 or IPv6 addresses; port 0: any free one.
    std::vector<Endpoint> listen{{QStringLiteral("127.0.0.1"), 8080}};
    std::vector<Endpoint> listenTls;   ///< with everything but streams
    std::vector<Endpoint> listenAdmin; ///< for the figures that then are nowhere else
    std::vector<Inherited> inherited;  ///< sockets that listen already, of whoever started this
    QString tlsCertificate, tlsKey;    ///< PEM files; both or none
    std::vector<AddressRange> proxies; ///< that are believed whom they speak for
    StoreOptions store;
    std::vector<Neighbours::Server> servers;     ///< of the deployment, shown to visitors
    TileSource tiles;                            ///< of the pages' maps
    QString licence = QStringLiteral("CC0-1.0"); ///< of the public figures, in SPDX's words
    QStringList salts; ///< any of which clients may use, see the hash of a report
    int threads = 1;
    int maxStreams = 128;
    /// One client runs one stream at a time; so many share an address in a household or an office.
    int maxStreamsPerAddress = 16;
    int maxConnectionsPerAddress = 512;
    Allowances::Limits allowances = Allowances::usual();
    std::int64_t maxBandwidth = 0; ///< bit/s of all streams in one direction; 0: no bound
    /// 0: as many as the process may have descriptors, less those it needs itself.
    std::size_t maxConnections = 0;
    std::size_t maxReportBytes = std::size_t{1} << 20;

    /// A head is one segment; whoever needs longer holds a connection for nothing.
    std::chrono::milliseconds headTimeout{10'000};
    /// Longest pause inside a report, and longest time for all of it.
    std::chrono::milliseconds reportPause{10'000};
    std::chrono::milliseconds reportTimeout{60'000};
    /// Longest time for the body of a request that changes something.
    std::chrono::milliseconds bodyTimeout{10'000};
    /// Whoever has deleted is told after this time that deleting goes on: longer waits end his
    /// patience or his connection.
    std::chrono::milliseconds deletePatience{25'000};
    /// Longest stream that a client may ask for.
    std::chrono::seconds longestStream{60};
    /// What running streams and reports get when the service ends.
    std::chrono::milliseconds shutdownGrace{5'000};
    /// Longest wait for the name of an address, and who finds it; empty: the system's resolver.
    std::chrono::milliseconds nameTimeout{500};
    std::function<std::string(const std::string &address)> resolver;
};

} // namespace velometer
