#include "context/doublelocation.h"

namespace velometer {

DoubleLocation::DoubleLocation(QObject *parent)
    : QObject(parent)
{}

qint64 DoubleLocation::getTime() const
{
    return time;
}

void DoubleLocation::setTime(qint64 value)
{
    time = value;
}

double DoubleLocation::getLongitude() const
{
    return longitude;
}

void DoubleLocation::setLongitude(double value)
{
    longitude = value;
}

double DoubleLocation::getLatitude() const
{
    return latitude;
}

void DoubleLocation::setLatitude(double value)
{
    latitude = value;
}

double DoubleLocation::getAltitude() const
{
    return altitude;
}

void DoubleLocation::setAltitude(double value)
{
    altitude = value;
}

double DoubleLocation::getAccuracyHor() const
{
    return accuracyhor;
}

void DoubleLocation::setAccuracyHor(double value)
{
    accuracyhor = value;
}

double DoubleLocation::getAccuracyVert() const
{
    return accuracyvert;
}

void DoubleLocation::setAccuracyVert(double value)
{
    accuracyvert = value;
}

} // namespace velometer
