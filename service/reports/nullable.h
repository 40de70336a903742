#pragma once

#include <QVariant>

#include <optional>

namespace velometer {

/// What may be absent as a column holds it: NULL.
template <typename Value>
QVariant nullable(const std::optional<Value> &value)
{
    return value ? QVariant::fromValue(*value) : QVariant();
}

inline std::optional<qint64> optionalNumber(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toLongLong());
}

inline std::optional<double> optionalReal(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toDouble());
}

} // namespace velometer
