#pragma once

#include "http/serveroptions.h"
#include "limits/streams.h"
#include "measure/downloadstream.h"
#include "measure/randomblock.h"
#include "measure/recentresults.h"
#include "measure/uploadmeter.h"
#include "ops/hostnames.h"
#include "ops/metrics.h"
#include "reports/reportstore.h"

#include <boost/asio/thread_pool.hpp>

#include <atomic>
#include <memory>

namespace velometer {

/// What all requests share. Every member is safe from every thread; options and block do not change
/// once requests are served.
struct Service
{
    explicit Service(ServerOptions serverOptions)
        : options(std::move(serverOptions))
        , hostNames(options.resolver)
        , streams(options.maxStreams, options.maxStreamsPerAddress)
    {}

    /// How many results of streams are kept for their clients, and how long.
    static constexpr std::size_t resultCount = 10'000;
    static constexpr std::chrono::minutes resultAge{10};

    const ServerOptions options;
    Metrics metrics;
    HostNames hostNames;
    Streams streams;
    RandomBlock block;
    RecentResults<UploadFigures> uploads{resultCount, resultAge};
    RecentResults<DownloadTotals> downloads{resultCount, resultAge};
    std::unique_ptr<ReportStore> store;

    /// Reports are parsed here, because a large one takes long enough to be seen in a measurement.
    boost::asio::thread_pool parsers{1};
    std::atomic<bool> stopping{false};       ///< the grace is over: what is parsed now is dropped
    std::atomic<std::size_t> reportBytes{0}; ///< memory that unfinished reports hold
};

} // namespace velometer
