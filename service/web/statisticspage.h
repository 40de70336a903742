#pragma once

#include "reports/statistics.h"
#include "web/layout.h"

namespace velometer {

/// The public figures: tables as they are, chart and map drawn by scripts.
struct StatisticsPage
{
    Language language = Language::English;
    QString licence; ///< on whose terms everybody may use the figures
    Statistics types, operators, servers, months;

    std::string toHtml(const TileSource &tiles) const;
};

} // namespace velometer
