#include "net/urlquery.h"

#include <QStringDecoder>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// More than any page or program asks with.
constexpr qsizetype maxParts = 64;

int hexDigit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::optional<QString> unescape(std::string_view text)
{
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(text.size()));
    while (!text.empty()) {
        std::size_t used = 1;
        if (text.front() == '%') {
            const int high = text.size() < 3 ? -1 : hexDigit(text.at(1));
            const int low = text.size() < 3 ? -1 : hexDigit(text.at(2));
            if (high < 0 || low < 0) {
                return std::nullopt;
            }
            bytes += static_cast<char>(high * 16 + low);
            used = 3;
        } else {
            bytes += text.front() == '+' ? ' ' : text.front();
        }
        text.remove_prefix(used);
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(decoded);
}

} // namespace

std::optional<UrlQuery> UrlQuery::parse(std::string_view text)
{
    UrlQuery query;
    while (!text.empty()) {
        const auto item = text.substr(0, text.find('&'));
        text.remove_prefix(std::min(item.size() + 1, text.size()));
        if (item.empty()) {
            continue;
        }
        const auto equals = std::min(item.find('='), item.size());
        const auto key = unescape(item.substr(0, equals));
        const auto value = unescape(item.substr(std::min(equals + 1, item.size())));
        if (!key || !value || query.parts.size() == maxParts) {
            return std::nullopt;
        }
        query.add(*key, *value);
    }
    return query;
}

std::optional<QString> UrlQuery::value(QStringView key) const
{
    const auto part = std::ranges::find(parts, key, &std::pair<QString, QString>::first);
    return part == parts.end() ? std::nullopt : std::optional(part->second);
}

QString UrlQuery::toString() const
{
    QString text = u""_s; // not null: a column may hold it
    for (const auto &[key, value] : parts) {
        // What separates the entries of a list needs no escape and reads better without.
        text += (text.isEmpty() ? u""_s : u"&"_s) +
                QString::fromLatin1(QUrl::toPercentEncoding(key)) + u'=' +
                QString::fromLatin1(QUrl::toPercentEncoding(value, ","));
    }
    return text;
}

} // namespace velometer
