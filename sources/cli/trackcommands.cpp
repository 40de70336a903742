#include "cli/trackcommands.h"

#include "cli/output.h"
#include "cli/textformat.h"
#include "cli/trackrunner.h"
#include "db/databasemanager.h"
#include "figures/csvformat.h"
#include "figures/jsonformat.h"
#include "track/trackformat.h"

#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Format = CommandLine::Format;

QJsonObject objectOf(const Track &track)
{
    return {{u"id"_s, static_cast<qint64>(track.row)},
            {u"track"_s, track.id},
            {u"started"_s, JsonFormat::timestamp(track.started)},
            {u"ended"_s, track.ended ? QJsonValue(JsonFormat::timestamp(*track.ended))
                                     : QJsonValue(QJsonValue::Null)},
            {u"points"_s, track.points},
            {u"tests"_s, track.tests},
            {u"metres"_s, std::round(track.metres)},
            {u"sent"_s, track.isSent}};
}

} // namespace

QString TrackCommands::missing(qulonglong row)
{
    return tr("There is no track %1.").arg(row);
}

void TrackCommands::list(Format format, Output &out)
{
    static const QStringList names{u"id"_s,     u"track"_s, u"started"_s, u"ended"_s,
                                   u"points"_s, u"tests"_s, u"metres"_s,  u"sent"_s};
    const QList<Track> tracks = gDB->tracks().all();
    QList<QStringList> rows{
        {tr("ID"), tr("Start"), tr("Duration"), tr("Length"), tr("Points"), tr("Tests")}};
    if (format == Format::Csv) {
        out.write(CsvFormat::line(names));
    }
    for (const Track &track : tracks) {
        const QJsonObject object = objectOf(track);
        if (format == Format::Json) {
            out.write(JsonFormat::line(object));
        } else if (format == Format::Csv) {
            QStringList cells;
            for (const QString &name : names) {
                cells.append(object.value(name).toVariant().toString());
            }
            out.write(CsvFormat::line(cells));
        } else {
            rows.append({QString::number(track.row), TextFormat::localTime(track.started),
                         track.ended ? TextFormat::duration(
                                           std::chrono::milliseconds(*track.ended - track.started))
                                     : TextFormat::unknown(),
                         TrackRunner::length(track.metres), QString::number(track.points),
                         QString::number(track.tests)});
        }
    }
    if (rows.size() > 1) {
        out.write(TextFormat::aligned(rows).toUtf8());
    }
}

bool TrackCommands::print(qulonglong row, Format format, Output &out)
{
    const auto track = gDB->tracks().track(row);
    if (!track) {
        return false;
    }
    TrackFormat document(format == Format::Csv       ? TrackFormat::Kind::Csv
                         : format == Format::GeoJson ? TrackFormat::Kind::GeoJson
                         : format == Format::Gpx     ? TrackFormat::Kind::Gpx
                                                     : TrackFormat::Kind::Json,
                         *track);
    out.write(document.begin());
    for (qint64 first = 0; first < track->points && !out.isGone(); first += Tracks::partPoints) {
        for (const TrackPoint &point : gDB->tracks().points(row, first, Tracks::partPoints)) {
            out.write(document.point(point));
        }
    }
    out.write(document.end());
    return true;
}

} // namespace velometer
