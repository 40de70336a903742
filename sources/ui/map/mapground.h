#pragma once

#include "ui/map/outlineprovider.h"
#include "ui/map/projection.h"

#include <QCoreApplication>

#include <vector>

class QPainter;

namespace velometer {

class MapProvider;

/// What lies below everything on the map: the provider's tiles, in their place what is coarser, and
/// the built-in outline where there is neither. Main thread only.
class MapGround
{
    Q_DECLARE_TR_FUNCTIONS(MapGround)

public:
    /// Borrows @p provider, which outlives the ground.
    explicit MapGround(MapProvider &provider);

    /// Asks for the tiles of @p view, those in its middle first; for none when it has no size.
    void setVisible(const MapView &view);

    /// True when the provider had a picture of any part.
    bool paint(QPainter &painter, const MapView &view);
    /// At the lower left: whose work the pictures are when there are any, else that the network
    /// does not answer.
    void paintNote(QPainter &painter, const MapView &view, bool pictured) const;

private:
    /// A column and row of tiles in the view; the column runs on over the ends of the world.
    struct Square
    {
        TileId tile;
        QRectF place; ///< px of the map item
    };

    static std::vector<Square> squares(const MapView &view);
    QString note(bool pictured) const;
    bool paintSquare(QPainter &painter, const Square &square);

    MapProvider &provider;
    OutlineProvider outline;
};

} // namespace velometer
