#pragma once

#include "limits/streamkey.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace velometer {

/// One report as its client sent it: the figures that the service looks at, and the document.
/// A figure that was not measured is absent, not 0.
struct Report
{
    struct Rate
    {
        std::optional<qint64> min; ///< bit/s
        std::optional<qint64> avg; ///< bit/s
        std::optional<qint64> max; ///< bit/s
    };

    qint64 userId = 0;
    qint64 seriesId = 0;
    qint64 testId = 0;
    qint64 clientTime = 0; ///< ms since 1970, by the client's clock
    qint64 serverTime = 0; ///< ms since 1970, by ours
    QString publicIp;      ///< the address the report came from
    QString testServer;
    QString connectionType;
    QString location; ///< code of the place the user chose
    QString networkName;
    QString mcc;
    QString mnc;
    QString platform;
    QString model;
    QString manufacturer;
    QString appletVersion;
    Rate download;
    Rate upload;                       ///< as the service measured it
    Rate uploadClient;                 ///< as the client measured it
    std::optional<qint64> rttMin;      ///< ns
    std::optional<qint64> rttAvg;      ///< ns
    std::optional<qint64> rttMax;      ///< ns
    int downloadIntervals = 0;         ///< of 100 ms, up to the last one with bytes
    int uploadIntervals = 0;           ///< likewise
    bool verified = false;             ///< its rates are those of streams that were served
    bool serviceLate = false;          ///< in one of them the service itself was the bottleneck
    std::optional<double> latitude;    ///< degrees
    std::optional<double> longitude;   ///< degrees
    std::optional<double> accuracy;    ///< m, horizontal, of the sample nearest in time
    qint64 bytes = 0;                  ///< that both streams moved
    std::optional<qint64> downloadRtt; ///< ns, median beside the download, if BBR has made its load
    std::optional<qint64> uploadRtt;   ///< likewise beside the upload
    QString document;

    StreamKey key() const { return {.user = userId, .series = seriesId, .test = testId}; }

    /// The service's figure, else the client's.
    const Rate &bestUpload() const { return upload.avg ? upload : uploadClient; }
};

} // namespace velometer
