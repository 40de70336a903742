#include "web/figures.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer::Figures {

namespace {

const QString dash = u"–"_s;

constexpr qint64 firstTime = 946'684'800'000;      // ms: 2000-01-01
constexpr qint64 lastTime = 4'133'980'800'000 - 1; // ms: before 2101-01-01

QLocale localeOf(Language language)
{
    return language == Language::German ? QLocale(QLocale::German, QLocale::Switzerland)
                                        : QLocale(QLocale::English, QLocale::UnitedStates);
}

QString format(qint64 ms, const QString &pattern)
{
    return ms < firstTime || ms > lastTime
               ? dash
               : QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc()).toString(pattern);
}

/// Three digits that count, as many as anybody compares.
QString threeDigits(double value, Language language)
{
    const int decimals = value >= 99.95 ? 0 : value >= 9.995 ? 1 : 2;
    return localeOf(language).toString(value, 'f', decimals);
}

} // namespace

QString rate(std::optional<qint64> bitsPerSecond, Language language)
{
    if (!bitsPerSecond) {
        return dash;
    }
    const auto value = static_cast<double>(*bitsPerSecond);
    return value >= 1e9   ? threeDigits(value / 1e9, language) + u" Gbit/s"_s
           : value >= 1e6 ? threeDigits(value / 1e6, language) + u" Mbit/s"_s
                          : threeDigits(value / 1e3, language) + u" kbit/s"_s;
}

QString roundTrip(std::optional<qint64> nanoseconds, Language language)
{
    return nanoseconds ? threeDigits(static_cast<double>(*nanoseconds) / 1e6, language) + u" ms"_s
                       : dash;
}

QString range(const QString &least, const QString &greatest, const Phrase &phrase,
              Language language)
{
    const QString unit = greatest.sliced(std::max(greatest.lastIndexOf(u' '), qsizetype{0}));
    const QString first =
        unit.startsWith(u' ') && least.endsWith(unit) ? least.chopped(unit.size()) : least;
    return QString::fromUtf8(phrase.in(language)).arg(first, greatest);
}

QString bytes(qint64 count, Language language)
{
    constexpr std::array units{"B", "kB", "MB", "GB", "TB", "PB"};
    auto value = static_cast<double>(count);
    std::size_t unit = 0;
    for (; value >= 999.5 && unit + 1 < units.size(); ++unit) {
        value /= 1000;
    }
    const QString text = unit == 0 ? QString::number(count) : threeDigits(value, language);
    return text + u' ' + QLatin1StringView(units.at(unit));
}

QString number(qint64 value, Language language)
{
    return localeOf(language).toString(value);
}

QString decimal(double value, int decimals, Language language)
{
    return localeOf(language).toString(value, 'f', decimals);
}

QString percent(std::optional<double> change, Language language)
{
    if (!change || !std::isfinite(*change)) {
        return dash;
    }
    return (*change > 0 ? u"+"_s : u""_s) + localeOf(language).toString(*change, 'f', 0) + u" %"_s;
}

QString time(qint64 ms)
{
    return format(ms, u"yyyy-MM-dd HH:mm"_s);
}

QString day(qint64 ms)
{
    return format(ms, u"yyyy-MM-dd"_s);
}

QString moment(qint64 ms)
{
    return format(ms, u"yyyy-MM-dd HH:mm:ss"_s);
}

} // namespace velometer::Figures
