#include "reports/testquery.h"

#include <QDate>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 msPerDay = 86'400'000;

/// Values of one list, and their length: a filter is kept with a share.
constexpr qsizetype maxValues = 50;
constexpr qsizetype maxValueLength = 256;

std::optional<qint64> digits(QStringView text)
{
    constexpr qsizetype most = 18;
    const bool plain = !text.isEmpty() && text.size() <= most &&
                       std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
    return plain ? std::optional(text.toLongLong()) : std::nullopt;
}

/// The start of a day, or a moment, moved by @p day or by @p moment.
bool readTime(const UrlQuery &query, QStringView key, qint64 day, qint64 moment,
              std::optional<qint64> &value)
{
    const auto text = query.value(key);
    if (!text || text->isEmpty()) {
        return true;
    }
    if (const auto ms = digits(*text)) {
        value = *ms + moment;
        return true;
    }
    const QDate date = QDate::fromString(*text, u"yyyy-MM-dd"_s);
    if (date.isValid()) {
        value = date.startOfDay(QTimeZone::utc()).toMSecsSinceEpoch() + day;
    }
    return value.has_value();
}

/// The entries of the list @p key; false when there are too many or one is too long.
bool readList(const UrlQuery &query, QStringView key, QStringList &list)
{
    const QString text = query.value(key).value_or(QString());
    for (const auto entry : QStringView(text).tokenize(u',', Qt::SkipEmptyParts)) {
        if (list.size() == maxValues || entry.size() > maxValueLength) {
            return false;
        }
        list += entry.toString();
    }
    list.sort();
    list.removeDuplicates();
    return true;
}

QString timeParameter(qint64 ms, qint64 day, qint64 moment)
{
    return ms % msPerDay == 0
               ? QDateTime::fromMSecsSinceEpoch(ms - day, QTimeZone::utc()).toString(u"yyyy-MM-dd")
               : QString::number(ms - moment);
}

constexpr std::array<std::pair<QLatin1StringView, TestOrder::By>, 6> orders{{
    {"time"_L1, TestOrder::By::Time},
    {"download"_L1, TestOrder::By::Download},
    {"upload"_L1, TestOrder::By::Upload},
    {"rtt"_L1, TestOrder::By::Rtt},
    {"type"_L1, TestOrder::By::Type},
    {"server"_L1, TestOrder::By::Server},
}};

} // namespace

std::variant<TestFilter, QString> TestFilter::parse(const UrlQuery &query)
{
    TestFilter filter;
    if (!readTime(query, u"from", 0, 0, filter.from) ||
        !readTime(query, u"to", msPerDay, 1, filter.to)) {
        return u"A time is neither YYYY-MM-DD nor milliseconds since 1970."_s;
    }
    QStringList types;
    QStringList series;
    if (!readList(query, u"type", types) || !readList(query, u"server", filter.servers) ||
        !readList(query, u"series", series) || !readList(query, u"location", filter.locations) ||
        !readList(query, u"operator", filter.operators)) {
        return u"A list has more than %1 entries, or an entry is too long."_s.arg(maxValues);
    }
    for (const QString &key : std::as_const(types)) {
        const auto type = ConnectionClasses::ofKey(key);
        if (!type) {
            return u"There is no connection type of that name."_s;
        }
        filter.types += *type;
    }
    for (const QString &text : std::as_const(series)) {
        const auto number = digits(text);
        if (!number) {
            return u"A series is a number."_s;
        }
        filter.series += *number;
    }
    const QString verified = query.value(u"verified").value_or(QString());
    if (!verified.isEmpty() && verified != "0"_L1 && verified != "1"_L1) {
        return u"The parameter verified is 0 or 1."_s;
    }
    filter.verified = verified == "1"_L1;
    if (const auto test = query.value(u"test")) {
        filter.test = digits(*test);
        if (!filter.test) {
            return u"A test is named by a number."_s;
        }
    }
    return filter;
}

QString TestFilter::toQuery() const
{
    UrlQuery query;
    if (from) {
        query.add(u"from"_s, timeParameter(*from, 0, 0));
    }
    if (to) {
        query.add(u"to"_s, timeParameter(*to, msPerDay, 1));
    }
    const auto add = [&](const QString &key, const QStringList &list) {
        if (!list.isEmpty()) {
            query.add(key, list.join(u','));
        }
    };
    QStringList keys;
    for (const auto type : types) {
        keys += ConnectionClasses::key(type);
    }
    QStringList numbers;
    for (const qint64 number : series) {
        numbers += QString::number(number);
    }
    add(u"type"_s, keys);
    add(u"server"_s, servers);
    add(u"series"_s, numbers);
    add(u"location"_s, locations);
    add(u"operator"_s, operators);
    if (verified) {
        query.add(u"verified"_s, u"1"_s);
    }
    if (test) {
        query.add(u"test"_s, QString::number(*test));
    }
    return query.toString();
}

std::optional<Cursor> Cursor::parse(const QString &text)
{
    const auto dot = text.indexOf(u'.');
    const auto number = dot < 0 ? std::nullopt : digits(QStringView(text).left(dot));
    if (!number) {
        return std::nullopt;
    }
    Cursor cursor{.value = {}, .id = *number};
    if (const auto value = QStringView(text).sliced(dot + 1); !value.isEmpty()) {
        const auto decoded = QByteArray::fromBase64Encoding(
            value.sliced(1).toLatin1(),
            QByteArray::Base64UrlEncoding | QByteArray::AbortOnBase64DecodingErrors);
        if (value.front() != u'v' || !decoded) {
            return std::nullopt;
        }
        cursor.value = QString::fromUtf8(*decoded);
    }
    return cursor;
}

QString Cursor::toText() const
{
    const QString known =
        value ? u'v' + QString::fromLatin1(value->toUtf8().toBase64(QByteArray::Base64UrlEncoding |
                                                                    QByteArray::OmitTrailingEquals))
              : QString();
    return QString::number(id) + u'.' + known;
}

std::variant<TestOrder, QString> TestOrder::parse(const UrlQuery &query)
{
    TestOrder order;
    if (const auto sort = query.value(u"sort")) {
        const auto *const known =
            std::ranges::find_if(orders, [&](const auto &each) { return *sort == each.first; });
        if (known == orders.end()) {
            return u"The tests cannot be sorted by that."_s;
        }
        order.by = known->second;
    }
    if (const auto direction = query.value(u"order")) {
        if (*direction != "asc"_L1 && *direction != "desc"_L1) {
            return u"The parameter order is asc or desc."_s;
        }
        order.ascending = *direction == "asc"_L1;
    }
    if (const auto text = query.value(u"limit")) {
        const auto limit = digits(*text);
        if (!limit || *limit < 1 || *limit > maxLimit) {
            return u"The parameter limit is a number from 1 to %1."_s.arg(maxLimit);
        }
        order.limit = static_cast<int>(*limit);
    }
    if (const auto text = query.value(u"after"); text && !text->isEmpty()) {
        order.after = Cursor::parse(*text);
        if (!order.after) {
            return u"The parameter after is not what an answer's next was."_s;
        }
    }
    return order;
}

} // namespace velometer
