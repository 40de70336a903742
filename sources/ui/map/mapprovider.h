#pragma once

#include "ui/map/tileid.h"

#include <QList>
#include <QObject>
#include <QPixmap>

namespace velometer {

/// Where a map gets its pictures from, tile by tile. tile() never blocks on a network: a picture
/// that is not there yet is announced by tileReady() when it has come. Main thread only.
class MapProvider : public QObject
{
    Q_OBJECT

public:
    /// The picture of @p tile, Mercator::tileSize logical px wide; null while it is not there.
    virtual QPixmap tile(const TileId &tile) = 0;

    /// What the view shows at present, most wanted first. Everything else may be forgotten.
    virtual void setVisible(const QList<TileId> &tiles) = 0;

    /// While paused a provider causes no traffic and makes do with what the device holds.
    virtual void setPaused(bool) {}

    /// The credit that the map has to show, in the words of the deployment; empty for none.
    virtual QString attribution() const = 0;

    /// The last try to reach the source of the pictures was answered by nobody.
    virtual bool isOffline() const { return false; }

Q_SIGNALS:
    void offlineChanged();
    void tileReady(const TileId &tile);

protected:
    MapProvider() = default;
};

} // namespace velometer
