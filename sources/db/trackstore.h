#pragma once

#include "track/track.h"

#include <QList>
#include <QSqlDatabase>

#include <optional>

namespace velometer {

/// The tracks in the database: a row each, and their points by number, which only ever grow at
/// their end. What an operation has acknowledged survives a kill at any moment; one that failed has
/// changed nothing. SQL errors go to the diagnostic log. DatabaseManager is how others reach it.
class TrackStore
{
public:
    /// @p connection is borrowed, and open whenever one of these is called.
    explicit TrackStore(QSqlDatabase &connection)
        : db(connection)
    {}

    /// Makes the tables where they are missing: files of before have none.
    void createTables();

    /// A new one that begins at @p started, ms since the epoch.
    std::optional<Track> begin(qint64 started);
    /// Puts @p points behind those that @p track has, together @p metres long, and brings @p track
    /// up to date.
    bool append(Track &track, const QList<TrackPoint> &points, double metres);
    /// It has ended at @p ended; nothing: it goes on.
    bool setEnded(Track &track, std::optional<qint64> ended);
    /// The service has @p points of it, and knows its end.
    bool setSent(Track &track, qint64 points, bool isSent);
    /// With all its points.
    bool remove(qulonglong row);

    /// The newest first.
    QList<Track> all();
    std::optional<Track> track(qulonglong row);
    /// The last point of it.
    std::optional<TrackPoint> lastPoint(qulonglong row);
    /// At most @p most points from number @p first on; a damaged one has nothing but a time.
    QList<TrackPoint> points(qulonglong row, qint64 first, int most);

private:
    bool run(const QString &statement, const QVariantList &values);
    QList<Track> read(const QString &condition, const QVariantList &values);

    QSqlDatabase &db;
};

} // namespace velometer
