#include "ui/map/tilesource.h"

#include "ui/map/tileimage.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QHostAddress>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Tile servers redirect once at most, to another host or to https.
constexpr int maximumRedirects = 3;
/// More than any view shows; beyond it only those in view are remembered.
constexpr qsizetype maximumFailures = 512;

qint64 steadyMs()
{
    return Utils::getTimeInNs() / 1'000'000;
}

/// A header's value must be one line of plain characters, whatever the configuration says.
QString printable(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        if (c >= u' ' && c <= u'~') {
            result += c;
        }
    }
    return result;
}

bool leadsToAnotherMachine(const QString &address)
{
    const QString host = QUrl(address).host();
    return !host.isEmpty() && host != "localhost"_L1 && !host.endsWith(".localhost"_L1) &&
           !QHostAddress(host).isLoopback();
}

} // namespace

TileSource::TileSource(const Deployment &deployment, const QString &directory)
    : addressTemplate(deployment.tileUrl)
    , attributionText(deployment.attribution)
    , userAgent(userAgentOf(deployment))
    , network(this)
    , decoded(keptTiles)
{
    if (!isValidTemplate(addressTemplate)) {
        Utils::addLogEntry(u"No map tiles: the tile address makes no sense"_s);
        addressTemplate.clear();
    }
    auto *cache = new QNetworkDiskCache(&network);
    cache->setCacheDirectory(directory);
    cache->setMaximumCacheSize(diskCacheSize);
    network.setCache(cache);
    network.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    retryTimer.setSingleShot(true);
    connect(&retryTimer, &QTimer::timeout, this, &TileSource::askForNext);
}

TileSource::~TileSource()
{
    const auto replies = requests.keys();
    for (QNetworkReply *reply : replies) {
        giveUp(reply);
    }
}

QString TileSource::cacheDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + "/tiles"_L1;
}

QByteArray TileSource::userAgentOf(const Deployment &deployment)
{
    const QString maker =
        printable(deployment.makerUrl.isEmpty() ? deployment.webAddress() : deployment.makerUrl);
    const QString mailbox = printable(deployment.feedbackMailbox);
    QString contact;
    if (leadsToAnotherMachine(maker)) {
        contact = u" (+%1)"_s.arg(maker);
    } else if (mailbox.contains(u'@') && !mailbox.endsWith(".invalid"_L1, Qt::CaseInsensitive)) {
        contact = u" (+mailto:%1)"_s.arg(mailbox);
    }
    return (u"Velometer/"_s + Utils::getPlainVersion() + contact).toLatin1();
}

QPixmap TileSource::tile(const TileId &tile)
{
    const QPixmap *known = decoded.object(tile);
    return known ? *known : QPixmap();
}

void TileSource::setVisible(const QList<TileId> &tiles)
{
    if (tiles == visible) {
        return;
    }
    visible = tiles;
    decoded.setMaxCost(std::max(keptTiles, static_cast<int>(visible.size())));
    const auto replies = requests.keys();
    for (QNetworkReply *reply : replies) {
        if (!visible.contains(requests[reply].tile)) {
            giveUp(reply);
        }
    }
    askForNext();
}

void TileSource::setPaused(bool on)
{
    if (paused == on) {
        return;
    }
    paused = on;
    const auto replies = requests.keys();
    for (QNetworkReply *reply : replies) {
        giveUp(reply);
    }
    if (!paused) {
        notBefore.clear();
    }
    askForNext();
}

bool TileSource::isValidTemplate(const QString &address)
{
    QString example = address;
    for (const auto placeholder : {"{z}"_L1, "{x}"_L1, "{y}"_L1}) {
        if (!example.contains(placeholder)) {
            return false;
        }
        example.replace(placeholder, "1"_L1);
    }
    const QUrl url(example, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == "http"_L1 || url.scheme() == "https"_L1);
}

QUrl TileSource::addressOf(const TileId &tile) const
{
    QString address = addressTemplate;
    address.replace("{z}"_L1, QString::number(tile.zoom));
    address.replace("{x}"_L1, QString::number(tile.x));
    address.replace("{y}"_L1, QString::number(tile.y));
    return QUrl(address, QUrl::StrictMode);
}

bool TileSource::isAskedFor(const TileId &tile) const
{
    return std::any_of(requests.cbegin(), requests.cend(),
                       [&](const Request &request) { return request.tile == tile; });
}

void TileSource::askForNext()
{
    if (addressTemplate.isEmpty()) {
        return;
    }
    const qint64 now = steadyMs();
    qint64 earliest = 0;
    for (const TileId &tile : std::as_const(visible)) {
        if (requests.size() >= maximumRequests) {
            return;
        }
        if (!tile.isValid() || decoded.contains(tile) || isAskedFor(tile)) {
            continue;
        }
        const qint64 waits = notBefore.value(tile) - now;
        if (waits <= 0) {
            ask(tile);
        } else if (earliest == 0 || waits < earliest) {
            earliest = waits;
        }
    }
    if (earliest > 0) {
        retryTimer.start(std::chrono::milliseconds(earliest));
    }
}

void TileSource::ask(const TileId &tile)
{
    Request record;
    record.tile = tile;
    record.fromCacheOnly = paused || steadyMs() < offlineUntil;

    QNetworkRequest request(addressOf(tile));
    request.setRawHeader("User-Agent", userAgent);
    // A compressed answer could be larger than it looks, and pictures are compressed already.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("Accept", "image/png,image/jpeg");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         record.fromCacheOnly ? QNetworkRequest::AlwaysCache
                                              : QNetworkRequest::PreferNetwork);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    QNetworkReply *reply = network.get(request);
    reply->setReadBufferSize(maximumAnswer);
    requests.insert(reply, record);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] { readAnswer(reply); });
    // An answer from the cache may have ended before anybody listened to it.
    connect(
        reply, &QNetworkReply::finished, this, [this, reply] { finish(reply); },
        Qt::QueuedConnection);
    // The total time counts, not the time between two bytes: a trickle must not hold a place.
    QTimer::singleShot(requestTimeout, reply, [this, reply] {
        if (!requests.contains(reply)) {
            return;
        }
        const Request late = requests.value(reply);
        giveUp(reply);
        failed(late);
    });
}

void TileSource::readAnswer(QNetworkReply *reply)
{
    const auto request = requests.find(reply);
    if (request == requests.end()) {
        return;
    }
    request->body += reply->read(maximumAnswer + 1 - request->body.size());
    if (request->body.size() <= maximumAnswer) {
        return;
    }
    Request tooLarge = *request;
    tooLarge.answered = true;
    giveUp(reply);
    failed(tooLarge);
}

void TileSource::finish(QNetworkReply *reply)
{
    // A signal on its way when its reply was given up may find a later reply at the same address.
    if (!requests.contains(reply) || !reply->isFinished()) {
        return;
    }
    readAnswer(reply);
    if (!requests.contains(reply)) {
        return;
    }
    Request request = requests.take(reply);
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    request.answered = status != 0;
    if (request.answered && !request.fromCacheOnly) {
        setOffline(false);
    }
    QImage picture;
    if (reply->error() == QNetworkReply::NoError && status == 200) {
        picture = decodeTile(request.body);
    }
    if (picture.isNull()) {
        return failed(request);
    }
    decoded.insert(request.tile, new QPixmap(QPixmap::fromImage(std::move(picture))));
    Q_EMIT tileReady(request.tile);
    askForNext();
}

/// Nobody hears of the reply again.
void TileSource::giveUp(QNetworkReply *reply)
{
    requests.remove(reply);
    reply->disconnect(this);
    // What has begun to arrive is taken out of the disk cache again. Before that there is nothing
    // to take back, and a reply may have an error of its own on its way, of which Qt takes only
    // one.
    if (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()) {
        reply->abort();
    }
    reply->deleteLater();
}

void TileSource::setOffline(bool on)
{
    if (std::exchange(offline, on) != on) {
        Q_EMIT offlineChanged();
    }
}

void TileSource::failed(const Request &request)
{
    const qint64 again = steadyMs() + retryPause.count();
    if (!request.answered && !request.fromCacheOnly) {
        // No server was reached: the disk cache gets a chance at this tile and the others.
        offlineUntil = again;
        setOffline(true);
    } else {
        if (notBefore.size() >= maximumFailures) {
            notBefore.removeIf([this](auto entry) { return !visible.contains(entry.key()); });
        }
        notBefore.insert(request.tile, again);
    }
    askForNext();
}

} // namespace velometer
