#include "http/access.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace asio = boost::asio;

namespace {

constexpr qsizetype maxKey = 64;

qint64 userNumber(const QString &text)
{
    bool isNumber = false;
    const qint64 value = text.toLongLong(&isNumber);
    // A sign or a blank is no part of an id.
    const bool digits = std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isNumber && digits ? value : 0;
}

} // namespace

Credential Credential::of(const UrlQuery &query, std::string_view header)
{
    const QString inAddress = query.value(u"userid").value_or(QString());
    return {.share = query.value(u"share").value_or(QString()).left(maxKey),
            .user = userNumber(header.empty()
                                   ? inAddress
                                   : QString::fromLatin1(header.data(), qsizetype(header.size())))};
}

asio::awaitable<std::optional<Access>> findAccess(Connection &connection, Service &service,
                                                  const Credential &credential)
{
    OneShot<std::optional<Access>> access(connection.executor(), storeTime);
    if (credential.share.isEmpty()) {
        service.store->accessOfUser(credential.user, access.setter());
    } else {
        service.store->accessOfShare(credential.share, QDateTime::currentMSecsSinceEpoch(),
                                     access.setter());
    }
    const auto found = co_await access.wait();
    co_return found ? *found : std::nullopt;
}

} // namespace velometer
