#include "platform/bus/busvalue.h"

#include "utils/cleantext.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// The contents of a container that came as @p signature; nothing when it came as something else:
/// taking it apart as what it is not is undefined.
std::optional<QDBusArgument> container(const QVariant &value, QLatin1StringView signature)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return std::nullopt;
    }
    auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != signature) {
        return std::nullopt;
    }
    return argument;
}

} // namespace

QString BusValue::cleanText(const QString &text)
{
    return velometer::cleanText(text.trimmed(), maxText).trimmed();
}

QString BusValue::text(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<QString>()
               ? BusValue::cleanText(value.toString())
               : QString();
}

QString BusValue::digits(const QVariant &value, qsizetype min, qsizetype max)
{
    const QString code = text(value);
    const bool plain =
        std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return plain && code.size() >= min && code.size() <= max ? code : QString();
}

QString BusValue::path(const QVariant &value)
{
    const QString path = value.metaType() == QMetaType::fromType<QDBusObjectPath>()
                             ? value.value<QDBusObjectPath>().path()
                             : QString();
    return path == "/"_L1 ? QString() : path;
}

QStringList BusValue::paths(const QVariant &value, qsizetype most)
{
    const auto list = container(value, "ao"_L1);
    QStringList paths;
    for (const QDBusObjectPath &each :
         list ? qdbus_cast<QList<QDBusObjectPath>>(*list) : QList<QDBusObjectPath>()) {
        const QString text = path(QVariant::fromValue(each));
        if (!text.isEmpty() && paths.size() < most) {
            paths.append(text);
        }
    }
    return paths;
}

QList<quint64> BusValue::numbers(const QVariant &value, qsizetype most)
{
    const auto list = container(value, "au"_L1);
    QList<quint64> numbers;
    for (const uint each : list ? qdbus_cast<QList<uint>>(*list) : QList<uint>()) {
        if (numbers.size() < most) {
            numbers.append(each);
        }
    }
    return numbers;
}

std::optional<bool> BusValue::flag(const QVariant &value)
{
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<qint64> BusValue::number(const QVariant &value, qint64 min, qint64 max)
{
    switch (value.typeId()) {
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong: break;
    default: return std::nullopt;
    }
    const qint64 result = value.toLongLong();
    return result >= min && result <= max ? std::optional(result) : std::nullopt;
}

std::optional<double> BusValue::real(const QVariant &value, double min, double max)
{
    if (value.typeId() != QMetaType::Double) {
        return std::nullopt;
    }
    const double result = value.toDouble();
    return std::isfinite(result) && result >= min && result <= max ? std::optional(result)
                                                                   : std::nullopt;
}

std::optional<qint64> BusValue::firstOfPair(const QVariant &value, qint64 min, qint64 max)
{
    const auto pair = container(value, "(ub)"_L1);
    if (!pair) {
        return std::nullopt;
    }
    uint first = 0;
    bool second = false;
    pair->beginStructure();
    *pair >> first >> second;
    pair->endStructure();
    return number(first, min, max);
}

QStringList BusValue::names(const QVariant &value)
{
    return value.typeId() == QMetaType::QStringList ? value.toStringList() : QStringList();
}

QVariantMap BusValue::dictionary(const QVariant &value)
{
    const auto map = container(value, "a{sv}"_L1);
    return map ? qdbus_cast<QVariantMap>(*map) : QVariantMap();
}

QString BusValue::textUnder(const QVariant &value, uint key)
{
    const auto map = container(value, "a{uv}"_L1);
    if (!map) {
        return {};
    }
    const auto values = qdbus_cast<QMap<uint, QDBusVariant>>(*map);
    const auto found = values.constFind(key);
    return found == values.cend() ? QString() : text(found->variant());
}

} // namespace velometer
