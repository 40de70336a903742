#pragma once

#include "platform/positionsource.h"

#include <QDateTime>
#include <QGeoPositionInfo>
#include <QMap>

#include <memory>
#include <optional>

namespace velometer {

struct NmeaSentence;

/// What a receiver tells of one moment: a bundle of sentences, in any order and spread over up to a
/// second, each of which knows a part. Those with a time carry the same one; the others belong to
/// those around them. Asked when the bundle is complete, it answers with all of it at once.
class NmeaEpoch
{
public:
    NmeaEpoch();
    ~NmeaEpoch();

    /// Whether @p sentence is of another moment than those before it, so that these are complete.
    bool isEndedBy(const NmeaSentence &sentence) const;
    void add(const NmeaSentence &sentence);

    /// What has been told since the last call, if that makes a position: a place and its time. The
    /// receiver may not tell the date; then it is the day on which its time is nearest to now.
    std::optional<QGeoPositionInfo> takePosition();
    /// All systems' satellites; nothing when none were told since the last call.
    std::optional<Satellites> takeSatellites();

    /// The next sentence with another time, or without one, begins a new moment: the receiver is
    /// silent.
    void close() { closed = true; }

private:
    class Parser;
    Q_DISABLE_COPY_MOVE(NmeaEpoch)

    void begin();
    void merge(const QGeoPositionInfo &told);
    QDateTime moment() const;

    const std::unique_ptr<Parser> parser;
    QGeoPositionInfo info; ///< without a time stamp
    std::optional<int> timeOfDay;
    QDateTime dated; ///< the last moment that was told with its date
    bool closed = false;
    bool hasNewPosition = false;
    bool hasNewSatellites = false;
    QMap<QByteArray, QList<int>> inUse;  ///< by system, of one moment
    bool inUseIsOld = false;             ///< of the moment before
    QMap<QByteArray, QList<int>> inView; ///< by system, of several moments
    // Of the moments before.
    QDateTime lastMoment;
    std::optional<double> lastVerticalAccuracy;
    QDateTime accuracyTold;
};

} // namespace velometer
