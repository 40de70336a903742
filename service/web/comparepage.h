#pragma once

#include "web/layout.h"

namespace velometer {

/// Two sets of a user's tests side by side.
struct ComparePage
{
    struct Side
    {
        TestFilter filter;
        Summary summary;
    };

    Viewer viewer;
    Side left, right;
    Facets facets;    ///< of all tests
    qint64 today = 0; ///< ms since 1970

    /// The filter that a form's fields describe whose names begin with @p prefix ("l_", "r_").
    static std::variant<TestFilter, QString> parse(const UrlQuery &query, const QString &prefix);

    std::string toHtml(const TileSource &tiles) const;
};

} // namespace velometer
