#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace velometer {

/// One moment of a track: where the device was and what it heard of its network. A plain value;
/// what is not known is not set, or an empty text.
struct TrackPoint
{
    qint64 time = 0; ///< ms since the epoch, by the device's clock
    /// From 0 on, one more after every pause or gap: no line joins two of them.
    int segment = 0;
    std::optional<double> latitude;  ///< degrees; there together with the longitude or not at all
    std::optional<double> longitude; ///< degrees
    std::optional<double> altitude;  ///< m
    std::optional<double> accuracy;  ///< m, horizontal
    std::optional<double> speed;     ///< km/h
    QString mode;                    ///< "LteMode", "WlanMode" ... as tests have it
    QString operatorName;
    QString mcc; ///< of the network
    QString mnc;
    std::optional<qint64> cell;
    std::optional<int> lac;     ///< TAC with LTE and 5G
    std::optional<int> signal;  ///< percent, of the modem
    std::optional<double> rsrp; ///< dBm
    std::optional<double> rsrq; ///< dB
    std::optional<double> snr;  ///< dB
    QString band;               ///< "B20", "n78"
    QString test;               ///< "3/12", series and test that ended at this point

    bool hasPlace() const { return latitude.has_value() && longitude.has_value(); }
    bool operator==(const TrackPoint &other) const = default;
};

/// What is known of a track as a whole. A plain value.
struct Track
{
    qulonglong row = 0;          ///< in the store; 0 of one that has none
    QString id;                  ///< 32 hexadecimal digits, drawn at random: the same everywhere
    qint64 started = 0;          ///< ms since the epoch
    std::optional<qint64> ended; ///< nothing while it is being recorded, or was cut off
    qint64 points = 0;
    qint64 tests = 0;    ///< points that have one
    double metres = 0;   ///< along its segments
    qint64 sent = 0;     ///< points that the service has acknowledged
    bool isSent = false; ///< the service has all of it and knows that it has ended
};

namespace Tracks {

/// The year 2100, ms since the epoch: no clock of a device shows more.
inline constexpr qint64 latestMs = 4'102'444'800'000;
/// A day and a half at a point a second; the bound of every part of the system.
inline constexpr qint64 mostPoints = 131'072;
/// Points that travel together.
inline constexpr int partPoints = 4'096;

QString newId();
bool isId(const QString &text);

/// Metres on a sphere between two points, 0 when either has no place or they are of two segments.
/// Haversine formula, R. W. Sinnott, Sky and Telescope 68 (1984); the sphere is wrong by up to
/// 0.5 %.
double metresBetween(const TrackPoint &one, const TrackPoint &other);

} // namespace Tracks

} // namespace velometer
