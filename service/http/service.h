#pragma once

#include "http/serveroptions.h"
#include "limits/fairpool.h"
#include "limits/shares.h"
#include "limits/streams.h"
#include "limits/uplink.h"
#include "measure/downloadstream.h"
#include "measure/randomblock.h"
#include "measure/recentresults.h"
#include "measure/uploadstream.h"
#include "ops/hostnames.h"
#include "ops/loopwatch.h"
#include "ops/metrics.h"
#include "reports/reportstore.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

namespace velometer {

/// What all requests share. Every member is safe from every thread; options and block do not change
/// once requests are served.
struct Service
{
    explicit Service(ServerOptions serverOptions)
        : options(std::move(serverOptions))
        , hostNames(options.resolver)
        , streams(options.maxStreams, options.maxStreamsPerAddress)
    {
        setSalts(options.salts);
    }

    /// How many results of streams are kept for their clients, in all and for one subscriber, and
    /// how long.
    static constexpr std::size_t resultCount = 10'000;
    static constexpr std::size_t resultQuota = 1'000;
    static constexpr std::chrono::minutes resultAge{10};

    /// Whether @p address is that of a proxy that is believed whom it speaks for.
    bool isTrusted(const boost::asio::ip::address &address) const
    {
        return std::ranges::any_of(options.proxies,
                                   [&](const auto &range) { return range.contains(address); });
    }

    /// For whom a request of @p address and @p user (0: nobody's) is counted.
    std::string payerOf(const boost::asio::ip::address &address, std::int64_t user) const
    {
        return store->pseudonym(allowances.isProven(user) ? "user " + std::to_string(user)
                                                          : Subscriber::of(address).name());
    }

    /// Any of which a report's hash may be made with.
    std::shared_ptr<const QStringList> salts() const { return saltsNow.load(); }
    void setSalts(const QStringList &list) { saltsNow = std::make_shared<const QStringList>(list); }

    const ServerOptions options;
    bool hasAdmin = false; ///< a listener of its own has what the operator alone may know
    Metrics metrics;
    LoopWatch watch{metrics.loopLate, metrics.loopLateMs};
    HostNames hostNames;
    Neighbours neighbours{options.servers};
    Streams streams;
    Allowances allowances{options.allowances};
    Uplink uplink{options.maxBandwidth};
    RandomBlock block;
    RecentResults<UploadResult> uploads{resultCount, resultQuota, resultAge};
    RecentResults<DownloadTotals> downloads{resultCount, resultQuota, resultAge};
    std::unique_ptr<ReportStore> store;

    /// Reports and pages that one subscriber may have in hand.
    Shares reports{128};
    Shares pages{8};
    Shares apiRequests{32};

    /// Reports are parsed and filled in here, pages made there: a large one takes long enough to be
    /// seen in a measurement. One core is left to the streams, and a hundred readers of pages do
    /// not hold up the reports.
    FairPool parsers{std::max(static_cast<int>(std::thread::hardware_concurrency()) - 1, 1)};
    FairPool pageMakers{1};
    std::atomic<std::shared_ptr<const QStringList>> saltsNow;
    std::atomic<bool> stopping{false};       ///< the grace is over: what is parsed now is dropped
    std::atomic<std::size_t> reportBytes{0}; ///< memory that unfinished reports hold
};

} // namespace velometer
