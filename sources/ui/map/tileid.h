#pragma once

#include "ui/map/projection.h"

#include <QHashFunctions>

namespace velometer {

/// One square of 256 px of the map: of the 2^zoom by 2^zoom squares of the world, the one in column
/// x, counted from the west, and row y, counted from the north.
struct TileId
{
    int zoom = 0;
    int x = 0;
    int y = 0;

    bool isValid() const
    {
        const int count = 1 << std::clamp(zoom, 0, Mercator::maximumZoom);
        return zoom >= 0 && zoom <= Mercator::maximumZoom && x >= 0 && x < count && y >= 0 &&
               y < count;
    }

    /// The tile @p levels above that holds this one.
    TileId ancestor(int levels) const { return {zoom - levels, x >> levels, y >> levels}; }

    bool operator==(const TileId &) const = default;
};

inline size_t qHash(const TileId &tile, size_t seed = 0) noexcept
{
    return qHashMulti(seed, tile.zoom, tile.x, tile.y);
}

} // namespace velometer
