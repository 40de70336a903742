#pragma once

#include "reports/testquery.h"

/// The parameters of the interface for programs, beside those of TestFilter and TestOrder. Pure
/// functions; the text is one sentence that says what is wrong.
namespace velometer::ApiQuery {

template <typename Value>
using Parsed = std::variant<Value, QString>;

Parsed<BucketQuery> buckets(const UrlQuery &query);
Parsed<DistributionQuery> distribution(const UrlQuery &query);
Parsed<MapQuery> map(const UrlQuery &query);

} // namespace velometer::ApiQuery
