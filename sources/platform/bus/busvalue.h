#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

/// Values that came over a bus, checked. What has another type or is out of range is not there.
namespace velometer::BusValue {

/// Longer texts than this are cut; names of makers, networks and models are far shorter.
inline constexpr qsizetype maxText = 128;

/// Without control characters and surrounding blanks.
QString cleanText(const QString &text);
/// An empty text when @p value is none.
QString text(const QVariant &value);
/// Decimal digits only, @p min to @p max of them, else empty.
QString digits(const QVariant &value, qsizetype min, qsizetype max);
/// A text or an object path; empty when it leads nowhere ("/").
QString path(const QVariant &value);
std::optional<bool> flag(const QVariant &value);
std::optional<qint64> number(const QVariant &value, qint64 min, qint64 max);
std::optional<double> real(const QVariant &value, double min, double max);
/// The first number of a pair (ub).
std::optional<qint64> firstOfPair(const QVariant &value, qint64 min, qint64 max);
/// The first @p most numbers of a list (au).
QList<quint64> numbers(const QVariant &value, qsizetype most);
/// The first @p most object paths of a list, without those that lead nowhere.
QStringList paths(const QVariant &value, qsizetype most);
/// A list of names, as they came.
QStringList names(const QVariant &value);
/// A dictionary a{sv}.
QVariantMap dictionary(const QVariant &value);
/// The text under @p key of a dictionary a{uv}.
QString textUnder(const QVariant &value, uint key);

} // namespace velometer::BusValue
