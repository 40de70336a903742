#include "app/trackupload.h"

#include "app/userpage.h"
#include "db/databasemanager.h"
#include "track/trackpart.h"
#include "utils/deployment.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// A part is some ten kilobytes; a link that moves nothing for so long is gone.
constexpr auto answerPatience = 30s;
constexpr qint64 longestAnswer = 4096;
/// A service that takes parts and forgets them is not asked for ever.
constexpr int mostParts = 2 * static_cast<int>(Tracks::mostPoints / Tracks::partPoints);
constexpr int statusConflict = 409;
constexpr int statusOk = 200;

/// As gzip's format has it; what fails here is memory, and then nothing is sent.
QByteArray gzipped(const QByteArray &text)
{
    constexpr int gzipWindow = 15 + 16;
    constexpr int memoryLevel = 8;
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, memoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        return {};
    }
    QByteArray packed(
        static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(text.size()))),
        Qt::Uninitialized);
    // zlib does not write to its input; its old interface does not say so.
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    packed.resize(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return done ? packed : QByteArray();
}

QList<Track> waitingTracks()
{
    QList<Track> waiting;
    for (const Track &track : gDB->tracks().all()) {
        if (track.ended && !track.isSent) {
            waiting.prepend(track);
        }
    }
    return waiting;
}

} // namespace

TrackUpload::TrackUpload(QObject *parent)
    : QObject(parent)
    , network(nullptr)
{}

TrackUpload::~TrackUpload()
{
    cancel();
}

int TrackUpload::countWaiting()
{
    return static_cast<int>(waitingTracks().size());
}

void TrackUpload::start(std::optional<qulonglong> row)
{
    if (active) {
        return;
    }
    active = true;
    outcome = {};
    parts = 0;
    queue = waitingTracks();
    if (row) {
        queue.removeIf([row](const Track &track) { return track.row != *row; });
    }
    if (!queue.isEmpty() && UserPage::userId().isEmpty()) {
        return finish(tr("The service does not know you yet: run one test, then send the track."));
    }
    sendPart();
}

void TrackUpload::cancel()
{
    active = false;
    queue.clear();
    if (reply) {
        disconnect(reply, nullptr, this, nullptr);
        reply->abort();
        reply->deleteLater();
    }
}

void TrackUpload::sendPart()
{
    if (queue.isEmpty()) {
        return finish({});
    }
    Track &track = queue.first();
    if (++parts > mostParts) {
        return finish(tr("The service does not keep the track."));
    }
    const TrackPart part{track, track.sent,
                         gDB->tracks().points(track.row, track.sent, Tracks::partPoints)};
    QNetworkRequest request(
        QUrl(u"%1/velometer/api/v1/tracks/%2"_s.arg(Deployment::current().webAddress(), track.id)));
    request.setTransferTimeout(std::chrono::milliseconds(answerPatience).count());
    request.setRawHeader("Velometer-User", UserPage::userId().toLatin1());
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    request.setRawHeader("Content-Encoding", "gzip");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    reply = network.put(request, gzipped(part.toJson()));
    connect(reply, &QNetworkReply::finished, this, &TrackUpload::answered);
}

void TrackUpload::answered()
{
    QNetworkReply *const told = reply;
    reply = nullptr;
    told->deleteLater();
    const int status = told->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray text = told->read(longestAnswer);
    outcome.answered = status > 0;
    if (status == 0) {
        return finish(tr("The service cannot be reached; the track waits for it."));
    }
    const qint64 points = QJsonDocument::fromJson(text).object().value("points"_L1).toInteger(-1);
    if ((status == statusOk || status == statusConflict) && points >= 0) {
        return taken(points);
    }
    // The service's own sentence, if it is one.
    const QString sentence = QString::fromUtf8(text).simplified().left(200);
    finish(sentence.isEmpty() || sentence.startsWith(u'<')
               ? tr("The service did not take the track (%1).").arg(status)
               : tr("The service did not take the track: %1").arg(sentence));
}

void TrackUpload::taken(qint64 points)
{
    Track &track = queue.first();
    // A service that has lost some, or has more than there are, is told what is missing, or
    // nothing.
    const bool isWhole = points >= track.points;
    if (!gDB->tracks().setSent(track, std::min(points, track.points), isWhole)) {
        return finish(tr("The results in %1 cannot be opened or written.")
                          .arg(DatabaseManager::databaseFile()));
    }
    if (isWhole) {
        ++outcome.sent;
        parts = 0;
        queue.removeFirst();
    }
    sendPart();
}

void TrackUpload::finish(const QString &problem)
{
    active = false;
    queue.clear();
    outcome.problem = problem;
    outcome.waiting = countWaiting();
    Q_EMIT ended(outcome);
}

} // namespace velometer
