#include "http/api.h"
#include "http/apiview.h"
#include "http/body.h"
#include "http/gzip.h"
#include "track/trackfields.h"
#include "track/trackformat.h"
#include "track/trackpart.h"

#include "reports/connectionclass.h"

#include <QJsonArray>

#include <algorithm>
#include <array>

namespace velometer::Api {

namespace asio = boost::asio;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A part of full length is a tenth of it, packed; unpacked a quarter.
constexpr std::size_t maxPacked = std::size_t{1} << 20;
constexpr std::size_t maxPart = std::size_t{4} << 20;

/// Points of a track that a map is given, unless it asks for fewer.
constexpr qint64 pointsOnMap = 2'000;

/// A reader that takes nothing for so long has gone.
constexpr auto patience = 60s;

struct Kind
{
    QLatin1StringView name;
    TrackFormat::Kind kind;
    std::string_view contentType;
};

constexpr std::array kinds{
    Kind{"csv"_L1, TrackFormat::Kind::Csv, "text/csv; charset=utf-8"},
    Kind{"json"_L1, TrackFormat::Kind::Json, "application/x-ndjson"},
    Kind{"geojson"_L1, TrackFormat::Kind::GeoJson, "application/geo+json"},
    Kind{"gpx"_L1, TrackFormat::Kind::Gpx, "application/gpx+xml"},
};

Answer noSuchTrack()
{
    return Answer::sentence(404, "There is no such track.");
}

Answer tooBusy()
{
    return Answer::later("Too many questions are being answered for this address.");
}

QJsonObject objectOf(const Track &track)
{
    return {{u"track"_s, track.id},
            {u"started_ms"_s, track.started},
            {u"ended_ms"_s, track.ended ? QJsonValue(*track.ended) : QJsonValue(QJsonValue::Null)},
            {u"points"_s, track.points}};
}

bool isPacked(const std::string &body)
{
    return body.starts_with("\x1f\x8b");
}

std::optional<TrackPart> read(const std::string &body)
{
    const std::string text = isPacked(body) ? gunzip(body, maxPart) : body;
    return TrackPart::fromJson(QByteArray::fromStdString(text));
}

/// The part of the track from its point @p first on: nothing when the store failed.
asio::awaitable<std::optional<QList<TrackPart>>>
partOf(Connection &connection, Service &service, qint64 user, const QString &id, qint64 first)
{
    OneShot<std::optional<QList<TrackPart>>> value(connection.executor(), storeTime);
    service.store->trackPart(user, id, first, value.setter());
    auto told = co_await value.wait();
    co_return told ? *std::move(told) : std::nullopt;
}

/// What a map draws of a point; the mode as its key for colours.
QJsonArray drawn(const TrackPoint &point)
{
    const auto orNull = [](const auto &value) {
        return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
    };
    return {point.time,
            point.segment,
            orNull(point.latitude),
            orNull(point.longitude),
            ConnectionClasses::key(ConnectionClasses::ofReport(point.mode)),
            orNull(point.signal),
            orNull(point.rsrp)};
}

} // namespace

Handled tracks(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::OwnRead);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    OneShot<std::optional<QList<Track>>> value(connection.executor(), storeTime);
    service.store->tracks(std::get<ApiView>(opened).scope.userId, value.setter());
    const auto told = co_await value.wait();
    if (!told || !*told) {
        co_return storeFailed(service, 500);
    }
    QJsonArray list;
    for (const Track &track : **told) {
        list.append(objectOf(track));
    }
    co_return jsonAnswer({{u"tracks"_s, list}}, request.acceptsGzip);
}

Handled takeTrack(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Change);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const QString id = QString::fromStdString(request.segment);
    if (!Tracks::isId(id)) {
        co_return Answer::sentence(400, "A track is named by 32 hexadecimal digits.");
    }
    auto body = co_await readBody(connection, request, service.options.reportTimeout, maxPacked);
    if (auto *refusal = std::get_if<Answer>(&body)) {
        co_return std::move(*refusal);
    }
    const auto text = std::make_shared<const std::string>(std::get<std::string>(std::move(body)));
    const auto work = [text] { return read(*text); };
    auto made = co_await offload(connection, service.pageMakers, work);
    if (!made) {
        co_return tooBusy();
    }
    if (!*made) {
        co_return Answer::sentence(400, "The request's body is no part of a track.");
    }
    TrackPart part = **std::move(made);
    part.track.id = id;
    OneShot<std::optional<ReportStore::TrackTaken>> value(connection.executor(), storeTime);
    service.store->takeTrack(std::get<ApiView>(opened).scope.userId, part, value.setter());
    const auto told = co_await value.wait();
    if (!told || !*told) {
        co_return storeFailed(service, 500);
    }
    switch ((*told)->state) {
    case ReportStore::TrackState::Taken: break;
    case ReportStore::TrackState::Gap:
        co_return jsonAnswer({{u"points"_s, (*told)->points}}, false, 409);
    case ReportStore::TrackState::Full:
        co_return Answer::sentence(403, "This user has as many tracks as are kept.");
    case ReportStore::TrackState::Deleted:
        co_return Answer::sentence(410, "The measurements of this user id were deleted.");
    }
    co_return jsonAnswer({{u"points"_s, (*told)->points}}, false);
}

Handled removeTrack(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::Change);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    OneShot<std::optional<bool>> value(connection.executor(), storeTime);
    service.store->removeTrack(std::get<ApiView>(opened).scope.userId,
                               QString::fromStdString(request.segment), value.setter());
    const auto told = co_await value.wait();
    if (!told || !*told) {
        co_return storeFailed(service, 500);
    }
    co_return **told ? jsonAnswer({{u"deleted"_s, 1}}, false) : noSuchTrack();
}

Handled track(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::OwnRead);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const ApiView &view = std::get<ApiView>(opened);
    const QString id = QString::fromStdString(request.segment);
    const qint64 most = std::clamp(
        view.query.value(u"points"_s).value_or(QString::number(pointsOnMap)).toLongLong(),
        qint64{2}, pointsOnMap);
    const auto points = std::make_shared<QJsonArray>();
    Track whole;
    for (qint64 first = 0; first == 0 || first < whole.points;) {
        const auto parts = co_await partOf(connection, service, view.scope.userId, id, first);
        if (!parts) {
            co_return storeFailed(service, 500);
        }
        if (parts->isEmpty()) {
            co_return noSuchTrack();
        }
        const auto part = std::make_shared<const TrackPart>(parts->constFirst());
        whole = part->track;
        if (part->points.isEmpty()) {
            break;
        }
        // Of a long one every so many; its last one in any case.
        const qint64 step = (whole.points + most - 1) / most;
        const auto work = [part, points, step] {
            for (qsizetype i = 0; i < part->points.size(); ++i) {
                const qint64 number = part->first + i;
                if (number % step == 0 || number == part->track.points - 1) {
                    points->append(drawn(part->points.at(i)));
                }
            }
            return true;
        };
        if (!co_await offload(connection, service.pageMakers, work)) {
            co_return tooBusy();
        }
        first = part->first + part->points.size();
    }
    QJsonObject object = objectOf(whole);
    object.insert("columns"_L1,
                  QJsonArray{u"time_ms"_s, u"segment"_s, u"latitude"_s, u"longitude"_s, u"type"_s,
                             u"signal_percent"_s, u"rsrp_dbm"_s});
    object.insert("rows"_L1, *points);
    co_return jsonAnswer(object, request.acceptsGzip);
}

Handled exportTrack(Connection &connection, const Request &request, Service &service)
{
    auto opened = co_await openView(connection, request, service, Wants::OwnRead);
    if (auto *refusal = std::get_if<Answer>(&opened)) {
        co_return std::move(*refusal);
    }
    const ApiView &view = std::get<ApiView>(opened);
    const QString id = QString::fromStdString(request.segment);
    const QString name = view.query.value(u"format"_s).value_or(QString());
    const auto *const kind =
        std::ranges::find_if(kinds, [&](const Kind &each) { return name == each.name; });
    if (kind == kinds.end()) {
        co_return Answer::sentence(400, "The parameter format is csv, json, geojson or gpx.");
    }
    Answer answer;
    answer.contentType = kind->contentType;
    answer.headers = "Content-Disposition: attachment; filename=\"track." + name.toStdString() +
                     "\"\r\n" + (request.takesChunks ? "Transfer-Encoding: chunked\r\n" : "");
    std::shared_ptr<TrackFormat> format;
    Track whole;
    for (qint64 first = 0; first == 0 || first < whole.points;) {
        const auto parts = co_await partOf(connection, service, view.scope.userId, id, first);
        if (!parts) {
            // Without its last chunk the reader knows that the document is not whole.
            co_return format ? std::nullopt : std::optional(storeFailed(service, 500));
        }
        if (parts->isEmpty()) {
            co_return format ? std::nullopt : std::optional(noSuchTrack());
        }
        const auto part = std::make_shared<const TrackPart>(parts->constFirst());
        whole = part->track;
        const bool isFirst = !format;
        format = format ? format : std::make_shared<TrackFormat>(kind->kind, whole);
        first = part->first + part->points.size();
        const bool isLast = part->points.isEmpty() || first >= whole.points;
        const auto work = [part, format, isFirst, isLast, chunked = request.takesChunks] {
            QByteArray text = isFirst ? format->begin() : QByteArray();
            for (const TrackPoint &point : part->points) {
                text += format->point(point);
            }
            text += isLast ? format->end() : QByteArray();
            if (!chunked) {
                return text.toStdString();
            }
            const QByteArray chunk =
                text.isEmpty() ? text
                               : QByteArray::number(text.size(), 16) + "\r\n" + text + "\r\n";
            return (isLast ? chunk + "0\r\n\r\n" : chunk).toStdString();
        };
        const auto made = co_await offload(connection, service.pageMakers, work);
        if (!made) {
            co_return isFirst ? std::optional(tooBusy()) : std::nullopt;
        }
        const std::string bytes = (isFirst ? answer.head(std::nullopt) : std::string()) + *made;
        if (!co_await connection.write(bytes, patience) || isLast) {
            co_return std::nullopt;
        }
    }
    co_return std::nullopt;
}

} // namespace velometer::Api
