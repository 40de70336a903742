#pragma once

#include <QObject>

namespace velometer {

/// Altitude of a position without one, m: where a plain number is wanted.
inline constexpr double noAltitude = -1.0;

/// The position as numbers, frozen at one moment; all zeros when new. Degrees and metres.
class DoubleLocation : public QObject
{
    Q_OBJECT

public:
    explicit DoubleLocation(QObject *parent = nullptr);

    qint64 getTime() const; ///< ms since the epoch
    void setTime(qint64 value);
    double getLongitude() const;
    void setLongitude(double value);
    double getLatitude() const;
    void setLatitude(double value);
    double getAltitude() const;
    void setAltitude(double value);
    double getAccuracyHor() const;
    void setAccuracyHor(double value);
    double getAccuracyVert() const;
    void setAccuracyVert(double value);

private:
    qint64 time = 0;
    double longitude = 0;
    double latitude = 0;
    double altitude = 0;
    double accuracyhor = 0;
    double accuracyvert = 0;
};

} // namespace velometer
