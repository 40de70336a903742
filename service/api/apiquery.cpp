#include "api/apiquery.h"

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer::ApiQuery {

namespace {

constexpr int minutesPerDay = 1440;
constexpr int maxZoom = 22;

/// A number of few digits from @p least to @p most; @p standard where there is none.
std::optional<int> number(const UrlQuery &query, QStringView key, int standard, int least, int most)
{
    const auto text = query.value(key);
    if (!text) {
        return standard;
    }
    bool isNumber = false;
    const int value = text->toInt(&isNumber);
    return isNumber && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

std::optional<Metric> metric(const UrlQuery &query)
{
    const QString name = query.value(u"metric").value_or(QString());
    if (name == "download"_L1) {
        return Metric::Download;
    }
    if (name == "upload"_L1) {
        return Metric::Upload;
    }
    return name == "rtt"_L1 ? std::optional(Metric::Rtt) : std::nullopt;
}

const QString wrongMetric = u"The parameter metric is download, upload or rtt."_s;

} // namespace

Parsed<BucketQuery> buckets(const UrlQuery &query)
{
    const auto wanted = metric(query);
    if (!wanted) {
        return wrongMetric;
    }
    const auto count = number(query, u"buckets", BucketQuery().buckets, 1, BucketQuery::maxBuckets);
    if (!count) {
        return u"The parameter buckets is a number from 1 to %1."_s.arg(BucketQuery::maxBuckets);
    }
    return BucketQuery{.metric = *wanted, .buckets = *count};
}

Parsed<DistributionQuery> distribution(const UrlQuery &query)
{
    const auto wanted = metric(query);
    if (!wanted) {
        return wrongMetric;
    }
    const QString by = query.value(u"by").value_or(QString());
    if (by != "hour"_L1 && by != "type"_L1) {
        return u"The parameter by is hour or type."_s;
    }
    const auto offset = number(query, u"offset_min", 0, -minutesPerDay, minutesPerDay);
    if (!offset) {
        return u"The parameter offset_min is a number of minutes within a day."_s;
    }
    return DistributionQuery{.metric = *wanted,
                             .by = by == "hour"_L1 ? DistributionQuery::By::Hour
                                                   : DistributionQuery::By::Type,
                             .offsetMinutes = *offset};
}

Parsed<MapQuery> map(const UrlQuery &query)
{
    MapQuery wanted;
    const auto zoom = number(query, u"zoom", 0, 0, maxZoom);
    if (!zoom) {
        return u"The parameter zoom is a number from 0 to %1."_s.arg(maxZoom);
    }
    wanted.zoom = *zoom;
    const auto box = query.value(u"bbox");
    if (!box || box->isEmpty()) {
        return wanted;
    }
    const QStringList parts = box->split(u',');
    std::array<double, 4> sides{};
    bool ok = parts.size() == 4;
    for (std::size_t i = 0; i < sides.size() && ok; ++i) {
        sides.at(i) = parts.at(static_cast<qsizetype>(i)).toDouble(&ok);
        ok = ok && std::isfinite(sides.at(i));
    }
    if (!ok) {
        return u"The parameter bbox is west,south,east,north in degrees."_s;
    }
    std::tie(wanted.west, wanted.south, wanted.east, wanted.north) =
        std::tie(sides[0], sides[1], sides[2], sides[3]);
    return wanted;
}

} // namespace velometer::ApiQuery
