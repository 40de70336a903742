#include "data/testdetails.h"

#include "context/doublelocation.h"
#include "data/databudget.h"
#include "figures/testfields.h"
#include "utils/units.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velometer {

using Units::whole;

namespace {

/// A movement below this multiple of the vertical accuracy cannot be told from position noise; both
/// the distance and the velocity are then shown as an upper bound.
constexpr double noiseFactor = 5.0;

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
    return ok ? Units::megabytes(count) : u"Format Error"_s;
}

QString TestDetails::getFormatedStringByKey(const QString &key) const
{
    const QVariant value = data.value(key);
    const double number = value.toDouble();
    const QString notAvailable = tr("n/a");

    if (key == "testDate"_L1) {
        return value.toDateTime().toString(u"yyyy-MM-dd"_s);
    }
    if (key == "testTime"_L1) {
        return value.toTime().toString(u"hh:mm"_s);
    }
    if (key == "networkCell"_L1) {
        return QString::number(value.toLongLong());
    }
    if (key == "deviceAltitude"_L1) {
        return contains(key) && number != noAltitude ? whole(number, " m"_L1) : notAvailable;
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
    const TestField *field = TestFields::ofDetail(key);
    switch (field ? field->unit : Unit::None) {
    case Unit::Identity: return whole(number, ""_L1);
    case Unit::Bytes: return formatMegaBytes(value);
    case Unit::Percent: return QString::number(value.toLongLong());
    case Unit::BitsPerSecond: return number > 0 ? Units::kiloBitRate(number) : notAvailable;
    case Unit::Nanoseconds: return number > 0 ? Units::milliseconds(number, 0) : notAvailable;
    case Unit::Metres: return number > 0 ? whole(number, " m"_L1) : notAvailable;
    case Unit::Decibels:
        return QString::number(number, 'f', 1) +
               (field->key.endsWith("dbm"_L1) ? " dBm"_L1 : " dB"_L1);
    case Unit::None:
    case Unit::Moment:
    case Unit::Degrees:
    case Unit::KilometresPerHour: break;
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
