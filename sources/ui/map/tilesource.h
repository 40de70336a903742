#pragma once

#include "ui/map/mapprovider.h"

#include <QByteArray>
#include <QCache>
#include <QHash>
#include <QNetworkAccessManager>
#include <QTimer>

#include <chrono>

class QNetworkReply;

namespace velometer {

struct Deployment;

/// Tiles from a tile server, as its cache headers allow from a disk cache of 50 MB, the last ones
/// also from memory. A server is asked for what the view shows and nothing else, two tiles at a
/// time; a request whose tile has left the view is given up.
///
/// Answers are bounded in size and time and must be tiles; a tile whose request failed is not asked
/// for again for half a minute. While the network does not answer, or while paused, tiles come from
/// the disk cache alone, even stale ones. None of this is an error to anybody.
class TileSource : public MapProvider
{
    Q_OBJECT

public:
    static constexpr int maximumRequests = 2;
    static constexpr qint64 maximumAnswer = 1024LL * 1024;      ///< bytes; real tiles have 20 KB
    static constexpr qint64 diskCacheSize = 50LL * 1024 * 1024; ///< bytes
    static constexpr int keptTiles = 64;                        ///< decoded ones, 16 MB
    static constexpr std::chrono::milliseconds requestTimeout{15'000};
    static constexpr std::chrono::milliseconds retryPause{30'000};

    /// @p directory of the disk cache is created as needed. A tile address in @p deployment that is
    /// no http or https address with {z}, {x} and {y} is logged; then there are no tiles.
    TileSource(const Deployment &deployment, const QString &directory);
    ~TileSource() override;

    /// tiles in the program's XDG cache directory.
    static QString cacheDirectory();

    /// How the program names itself to the tile server, with an address to complain at: the
    /// maker's, else the feedback mailbox. One that leads nowhere from there, as loopback, is left
    /// out.
    static QByteArray userAgentOf(const Deployment &deployment);

    QPixmap tile(const TileId &tile) override;
    void setVisible(const QList<TileId> &tiles) override;
    void setPaused(bool on) override;
    QString attribution() const override { return attributionText; }
    bool isOffline() const override { return offline; }

private:
    struct Request
    {
        TileId tile;
        QByteArray body;
        bool fromCacheOnly = false;
        bool answered = false; ///< by whatever server
    };

    static bool isValidTemplate(const QString &address);
    QUrl addressOf(const TileId &tile) const;
    void askForNext();
    void ask(const TileId &tile);
    bool isAskedFor(const TileId &tile) const;
    void readAnswer(QNetworkReply *reply);
    void finish(QNetworkReply *reply);
    void giveUp(QNetworkReply *reply);
    void failed(const Request &request);
    void setOffline(bool on);

    QString addressTemplate; ///< empty: no tiles
    QString attributionText;
    QByteArray userAgent;
    QNetworkAccessManager network;
    QCache<TileId, QPixmap> decoded;
    QList<TileId> visible; ///< most wanted first
    QHash<QNetworkReply *, Request> requests;
    QHash<TileId, qint64> notBefore; ///< steady ms at which a failed tile may be asked for again
    qint64 offlineUntil = 0;         ///< steady ms
    bool offline = false;
    QTimer retryTimer;
    bool paused = false;
};

} // namespace velometer
