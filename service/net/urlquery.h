#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <string_view>
#include <utility>

namespace velometer {

/// The query of an address, decoded: "from=2024-01-01&location=A%20B". A plus sign is a blank, as
/// forms send it.
class UrlQuery
{
public:
    UrlQuery() = default;

    /// Nothing when an escape is none, when what is decoded is no UTF-8, or when there are too many
    /// parts.
    static std::optional<UrlQuery> parse(std::string_view text);

    /// The value of the first @p key; nothing without one.
    std::optional<QString> value(QStringView key) const;

    void add(const QString &key, const QString &value) { parts.append({key, value}); }
    QString toString() const;

private:
    QList<std::pair<QString, QString>> parts;
};

} // namespace velometer
