#include "track/trackfields.h"

#include "utils/cleantext.h"

#include <QHash>

#include <cmath>
#include <limits>
#include <type_traits>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double mostCell = 68'719'476'735; // 36 bits
constexpr double mostMetres = 1e6;
constexpr qsizetype mostText = 64;

/// A member that is a number, or may be one, from @p least to @p greatest.
template <typename Value>
TrackField number(const QString &name, Value TrackPoint::*member, double least, double greatest)
{
    const auto get = [member](const TrackPoint &point) -> QJsonValue {
        if constexpr (std::is_arithmetic_v<Value>) {
            return QJsonValue(static_cast<qint64>(point.*member));
        } else if (!(point.*member)) {
            return QJsonValue::Null;
        } else if constexpr (std::is_same_v<Value, std::optional<double>>) {
            return *(point.*member);
        } else {
            return static_cast<qint64>(*(point.*member));
        }
    };
    const auto set = [member, least, greatest](TrackPoint &point, const QJsonValue &value) {
        if (value.isNull()) {
            return !std::is_arithmetic_v<Value>;
        }
        const double told = value.toDouble(std::numeric_limits<double>::quiet_NaN());
        // Written so that NaN is refused.
        if (!(told >= least && told <= greatest)) {
            return false;
        }
        if constexpr (std::is_same_v<Value, std::optional<double>>) {
            point.*member = told;
        } else if (told != std::floor(told)) {
            return false;
        } else if constexpr (std::is_arithmetic_v<Value>) {
            point.*member = static_cast<Value>(told);
        } else {
            point.*member = static_cast<typename Value::value_type>(told);
        }
        return true;
    };
    return {name, get, set};
}

TrackField text(const QString &name, QString TrackPoint::*member)
{
    return {name,
            [member](const TrackPoint &point) {
                return (point.*member).isEmpty() ? QJsonValue(QJsonValue::Null)
                                                 : QJsonValue(point.*member);
            },
            [member](TrackPoint &point, const QJsonValue &value) {
                point.*member = cleanText(value.toString(), mostText);
                return value.isNull() || value.isString();
            }};
}

QList<TrackField> makeFields()
{
    return {
        number(u"time_ms"_s, &TrackPoint::time, 1, static_cast<double>(Tracks::latestMs)),
        number(u"segment"_s, &TrackPoint::segment, 0, Tracks::mostPoints),
        number(u"latitude"_s, &TrackPoint::latitude, -90, 90),
        number(u"longitude"_s, &TrackPoint::longitude, -180, 180),
        number(u"altitude_m"_s, &TrackPoint::altitude, -mostMetres, mostMetres),
        number(u"accuracy_m"_s, &TrackPoint::accuracy, 0, mostMetres * 100),
        number(u"speed_kmh"_s, &TrackPoint::speed, 0, mostMetres),
        text(u"mode"_s, &TrackPoint::mode),
        text(u"operator"_s, &TrackPoint::operatorName),
        text(u"mcc"_s, &TrackPoint::mcc),
        text(u"mnc"_s, &TrackPoint::mnc),
        number(u"cell"_s, &TrackPoint::cell, 0, mostCell),
        number(u"lac"_s, &TrackPoint::lac, 0, std::numeric_limits<int>::max()),
        number(u"signal_percent"_s, &TrackPoint::signal, 0, 100),
        number(u"rsrp_dbm"_s, &TrackPoint::rsrp, -200, 0),
        number(u"rsrq_db"_s, &TrackPoint::rsrq, -100, 50),
        number(u"snr_db"_s, &TrackPoint::snr, -100, 100),
        text(u"band"_s, &TrackPoint::band),
        text(u"test"_s, &TrackPoint::test),
    };
}

} // namespace

const QList<TrackField> &TrackFields::all()
{
    static const QList<TrackField> fields = makeFields();
    return fields;
}

QStringList TrackFields::names()
{
    QStringList names;
    for (const TrackField &field : all()) {
        names.append(field.name);
    }
    return names;
}

QJsonArray TrackFields::toJson(const TrackPoint &point)
{
    QJsonArray values;
    for (const TrackField &field : all()) {
        values.append(field.get(point));
    }
    return values;
}

std::optional<TrackPoint> TrackFields::fromJson(const QJsonValue &values,
                                                const QStringList &columns)
{
    static const QHash<QString, qsizetype> places = [] {
        QHash<QString, qsizetype> found;
        for (qsizetype i = 0; i < all().size(); ++i) {
            found.insert(all().at(i).name, i);
        }
        return found;
    }();
    const QJsonArray list = values.toArray();
    if (list.isEmpty() || list.size() > columns.size()) {
        return std::nullopt;
    }
    TrackPoint point;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const auto place = places.constFind(columns.at(i));
        if (place != places.cend() && !all().at(*place).set(point, list.at(i))) {
            return std::nullopt;
        }
    }
    const bool isWhole = point.latitude.has_value() == point.longitude.has_value();
    return point.time > 0 && isWhole ? std::optional(point) : std::nullopt;
}

} // namespace velometer
