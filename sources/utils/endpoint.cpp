#include "utils/endpoint.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

std::optional<int> parsePort(QStringView text)
{
    static const QRegularExpression digits(u"^[0-9]{1,5}$"_s);
    const int port = digits.match(text.toString()).hasMatch() ? text.toInt() : 0;
    if (port < 1 || port > 65535) {
        return std::nullopt;
    }
    return port;
}

bool isIpv6(const QString &text)
{
    // A scope id may be anything to QHostAddress; it goes into requests and statements.
    static const QRegularExpression literal(u"^[0-9A-Fa-f:.]+(%[A-Za-z0-9._-]{1,16})?$"_s);
    return literal.match(text).hasMatch() &&
           QHostAddress(text).protocol() == QAbstractSocket::IPv6Protocol;
}

std::optional<Endpoint> checked(const QString &host, std::optional<int> port)
{
    static const QRegularExpression name(u"^[A-Za-z0-9_]([A-Za-z0-9._-]{0,251}[A-Za-z0-9_.])?$"_s);
    if (!port) {
        return std::nullopt;
    }
    if (isIpv6(host)) {
        return Endpoint{host, *port};
    }
    const QString ascii = QString::fromLatin1(QUrl::toAce(host));
    const QString candidate = ascii.isEmpty() ? host : ascii;
    if (!name.match(candidate).hasMatch()) {
        return std::nullopt;
    }
    return Endpoint{candidate, *port};
}

} // namespace

std::optional<Endpoint> Endpoint::parse(const QString &text, int defaultPort)
{
    if (text.startsWith(u'[')) {
        const qsizetype end = text.indexOf(u']');
        const QStringView rest = end < 0 ? QStringView() : QStringView(text).mid(end + 1);
        const QString host = end < 0 ? QString() : text.mid(1, end - 1);
        if (!isIpv6(host) || (!rest.isEmpty() && !rest.startsWith(u':'))) {
            return std::nullopt;
        }
        return checked(host, rest.isEmpty() ? std::optional(defaultPort) : parsePort(rest.mid(1)));
    }
    if (text.count(u':') > 1) {
        return isIpv6(text) ? checked(text, defaultPort) : std::nullopt;
    }
    const qsizetype colon = text.indexOf(u':');
    if (colon < 0) {
        return checked(text, defaultPort);
    }
    return checked(text.left(colon), parsePort(QStringView(text).mid(colon + 1)));
}

std::optional<Endpoint> Endpoint::parseAddress(const QString &text)
{
    static const QRegularExpression form(
        u"\\A(?:\\[([0-9A-Fa-f:.]+)\\]|([0-9.]+)):([0-9]{1,5})\\z"_s);
    const auto match = form.match(text);
    const bool six = !match.captured(1).isEmpty();
    const QHostAddress address(match.captured(six ? 1 : 2));
    const int port = match.captured(3).toInt();
    if (!match.hasMatch() || port > 65535 ||
        address.protocol() !=
            (six ? QAbstractSocket::IPv6Protocol : QAbstractSocket::IPv4Protocol)) {
        return std::nullopt;
    }
    return Endpoint{address.toString(), port};
}

QString Endpoint::bracketed(const QString &host)
{
    return host.contains(u':') ? u'[' + host + u']' : host;
}

QString Endpoint::domain(const QString &host)
{
    const qsizetype dot = host.indexOf(u'.');
    return dot < 0 ? host : host.mid(dot + 1);
}

} // namespace velometer
