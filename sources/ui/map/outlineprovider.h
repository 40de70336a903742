#pragma once

#include "ui/map/mapprovider.h"

#include <QCache>

namespace velometer {

class Outline;

/// Tiles of the built-in outline, painted when they are asked for and kept while there is room.
/// What a map shows where it has nothing better.
class OutlineProvider : public MapProvider
{
    Q_OBJECT

public:
    OutlineProvider();

    QPixmap tile(const TileId &tile) override;
    void setVisible(const QList<TileId> &tiles) override;
    QString attribution() const override { return {}; }

    /// Pixels of the screen to a logical one, so that lines are sharp on dense screens.
    void setDevicePixelRatio(qreal ratio);

private:
    QCache<TileId, QPixmap> painted;
    qreal devicePixelRatio = 1;
};

} // namespace velometer
