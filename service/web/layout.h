#pragma once

#include "web/html.h"
#include "web/viewer.h"

#include <string>

namespace velometer {

/// The tiles that maps are made of: an address with {z}, {x} and {y}, and whom to thank for them.
/// Without an address the built-in outline is drawn.
struct TileSource
{
    QString address;
    QString attribution;

    /// "https://tiles.example", for the policy; empty without tiles.
    std::string origin() const;
};

/// The frame around every page.
struct Layout
{
    const Viewer &viewer;
    QString title;
    QString otherLanguage; ///< this page's address in the other language
    QString script;        ///< entry module, "user.js"; empty for a page without any
    QString current;       ///< the page's name in the navigation
    TileSource tiles;
    bool libraries = false; ///< charts and maps are drawn here

    /// The whole document around @p body.
    std::string around(const Html &body) const;

    /// The header lines of every page: nothing is loaded from anybody but this service and the
    /// map's tiles, nothing runs but its own scripts, and no address leaves, because it is the key
    /// to what it shows.
    static std::string headers(const TileSource &tiles);
};

} // namespace velometer
