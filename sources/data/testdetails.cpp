#include "data/testdetails.h"

#include "data/databudget.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// A movement below this multiple of the vertical accuracy cannot be told from position noise; both
/// the distance and the velocity are then shown as an upper bound.
constexpr double noiseFactor = 5.0;
constexpr double mebi = 1.0 / 1024.0;

QString whole(double value, QLatin1StringView unit)
{
    return QString::number(value, 'f', 0) + unit;
}

} // namespace

TestDetails::TestDetails(QObject *parent, qlonglong id)
    : QObject(parent)
    , myTestId(id)
{}

bool TestDetails::hasGPSCoordinates() const
{
    return getDouble(u"deviceLongitude"_s) != 0.0 || getDouble(u"deviceLatitude"_s) != 0.0;
}

QString TestDetails::formatMegaBytes(const QVariant &bytes) const
{
    bool ok = false;
    const qlonglong count = bytes.toLongLong(&ok);
    if (!ok) {
        return u"Format Error"_s;
    }
    return QString::number(static_cast<double>(count) * mebi * mebi, 'f', 2) + " MB"_L1;
}

QString TestDetails::getFormatedStringByKey(const QString &key) const
{
    const QVariant value = data.value(key);
    const double number = value.toDouble();
    const QString notAvailable = tr("n/a");

    if (key == "testTestId"_L1 || key == "testSeriesId"_L1) {
        return whole(number, ""_L1);
    }
    if (key == "testDate"_L1) {
        return value.toDateTime().toString(u"yyyy-MM-dd"_s);
    }
    if (key == "testTime"_L1) {
        return value.toTime().toString(u"hh:mm"_s);
    }
    if (key == "downloadedBytes"_L1 || key == "uploadedBytes"_L1 || key == "totalBytes"_L1) {
        return formatMegaBytes(value);
    }
    if (key.startsWith("download"_L1) || key.startsWith("upload"_L1)) {
        return number > 0 ? whole(number / 1000.0, " kBit/s"_L1) : notAvailable;
    }
    if (key.startsWith("rtt"_L1)) {
        return number > 0 ? whole(number / 1000000.0, " ms"_L1) : notAvailable;
    }
    if (key == "networkCell"_L1 || key == "gsmSignalStrength"_L1) {
        return QString::number(value.toLongLong());
    }
    if (key == "deviceAltitude"_L1) {
        return number == -1.0 ? notAvailable : whole(number, " m"_L1);
    }
    if (key == "deviceAccuracyHor"_L1 || key == "deviceAccuracyVert"_L1) {
        return number > 0 ? whole(number, " m"_L1) : notAvailable;
    }
    if (key == "deviceVelocity"_L1) {
        return formattedVelocity();
    }
    if (key == "deviceDistance"_L1) {
        return formattedDistance();
    }
    if (key == "budgetReached"_L1) {
        return DataBudget(getLong(u"dataBudget"_s)).endedEarly(value.toString());
    }

    bool isInteger = false;
    const qlonglong integer = value.toLongLong(&isInteger);
    return isInteger ? QString::number(integer) : value.toString();
}

QString TestDetails::formattedVelocity() const
{
    const double velocity = getDouble(u"deviceVelocity"_s);
    const double accuracy = getDouble(u"deviceAccuracyVert"_s);
    const double distance = getDouble(u"deviceDistance"_s);
    const double hours = getDouble(u"deviceDistanceDuration"_s) / 3600.0;
    if (velocity <= 0 || accuracy <= 0) {
        return tr("n/a");
    }
    if (distance > noiseFactor * accuracy) {
        return whole(velocity, " km/h"_L1);
    }
    if (hours <= 0) {
        return tr("n/a");
    }
    return "< "_L1 + whole(qMax(noiseFactor * accuracy / 1000.0 / hours, 5.0), " km/h"_L1);
}

QString TestDetails::formattedDistance() const
{
    const double accuracy = getDouble(u"deviceAccuracyVert"_s);
    const double distance = getDouble(u"deviceDistance"_s);
    if (distance == -1.0 || accuracy <= 0) {
        return tr("n/a");
    }
    if (distance > noiseFactor * accuracy) {
        return whole(std::trunc(distance), " m"_L1);
    }
    return "< "_L1 + whole(qMax(std::trunc(noiseFactor * accuracy), 1.0), " m"_L1);
}

} // namespace velometer
