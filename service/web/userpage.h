#pragma once

#include "web/layout.h"

namespace velometer {

/// What a user's page, or a shared one, shows.
struct UserPage
{
    Viewer viewer;
    TestFilter filter;
    TestOrder order;
    qint64 start = 0; ///< number of the first row of the list, 0 when unknown
    qint64 today = 0; ///< ms since 1970
    Summary summary;
    TestPage tests;
    Facets facets; ///< of all tests that the viewer may see

    /// The document: summary and list as they are, charts and map drawn by scripts.
    std::string toHtml(const TileSource &tiles) const;
};

} // namespace velometer
